#include "system/SystemManager.h"

#include "core/AdminPrompts.h"
#include "core/AdminScript.h"
#include "network/NameServers.h"
#include "network/NetworkOperations.h"
#include "network/NetworkServices.h"
#include "network/NetworkServicesBack.h"
#include "system/BusyBracket.h"

#include <QCoroTask>

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kOperationsPrompt =
    u"Quorvane needs your administrator password to run the selected network operations."_s;

/// The others need no command; of those that couldn't be read the servers would be lost.
QStringList servicesWithNameServers(const QList<ServiceNameServers>& services) {
    QStringList names;
    for (const ServiceNameServers& service : services) {
        if (service.hasServers()) {
            names.append(service.name);
        }
    }
    return names;
}

/// A flush and a reset have one message between them, and may have failed at different times.
QStringList withoutRepetition(QStringList messages) {
    messages.removeDuplicates();
    return messages;
}

} // namespace

QCoro::Task<NetworkOutcome> SystemManager::executeNetworkOperations(NetworkOperations operations) {
    const BusyBracket busy(*this, u"Running network operations…"_s);
    co_return co_await runNetworkOperations(operations);
}

QCoro::Task<NetworkOutcome> SystemManager::runNetworkOperations(NetworkOperations operations) {
    if (operations.flushDNS) {
        log(u"\nStarting DNS & DHCP Cache Flush..."_s);
    }
    if (operations.resetConfig) {
        log(u"\nStarting network configuration reset..."_s);
    }
    NetworkOperations failed; // for want of services
    QList<ServiceNameServers> services;
    if (operations.resetConfig) {
        services = co_await nameServersToReset();
        failed.resetConfig = services.isEmpty();
    }
    operations.resetConfig = operations.resetConfig && !failed.resetConfig;
    QStringList commands = networkDiagnosticsCommands(operations, servicesWithNameServers(services));
    if (operations.disableAll) {
        log(u"\nDisabling all network connections..."_s);
        const QStringList switches = co_await networkSwitchCommands(NetworkSwitch::Off);
        commands.append(switches);
        failed.disableAll = switches.isEmpty();
    }
    if (operations.enableAll) {
        log(u"\nEnabling all network connections..."_s);
        const QStringList switches = co_await networkSwitchCommands(NetworkSwitch::On);
        commands.append(switches);
        failed.enableAll = switches.isEmpty();
    }
    operations.disableAll = operations.disableAll && !failed.disableAll;
    operations.enableAll = operations.enableAll && !failed.enableAll;
    const QStringList messages = networkFailureMessages(failed);
    if (commands.isEmpty()) {
        co_return NetworkOutcome{messages, !isQuitting()};
    }
    log(u"  [ACTION] Requesting Administrator privileges for selected network operations..."_s);
    const CommandResult result = co_await runAdminCommand(joinedAdminCommands(commands), kOperationsPrompt);
    if (result.status != 0) {
        log(u"  [ERROR] Network operations were cancelled or failed: "_s + result.standardError);
        if (operations.disableAll) {
            co_await settleSwitchedOff();
        }
        co_return NetworkOutcome{withoutRepetition(messages + networkFailureMessages(operations)), false};
    }
    if (operations.enableAll) {
        NetworkServicesBack(*this, *m_adminBatch).forgetAll();
    }
    const QStringList notReset = co_await servicesNotReset(services);
    const QStringList lines = networkSuccessLogLines(operations, notReset);
    for (const QString& line : lines) {
        log(line);
    }
    co_return NetworkOutcome{messages + networkSuccessMessages(operations, notReset),
                             notReset.isEmpty() && !isQuitting()};
}

QCoro::Task<ServiceNameServers> SystemManager::readNameServers(QString service) {
    const QStringList arguments{u"networksetup"_s, u"-getdnsservers"_s, service};
    const CommandResult result = co_await runCommand(arguments, OutputCapture::Capture);
    ServiceNameServers read{service, std::nullopt};
    if (result.isAnswered && result.status == 0) {
        read.servers = parsedNameServers(result.standardOutput);
    }
    co_return std::as_const(read);
}

/// Every service with its name servers, those in the log that are about to go.
QCoro::Task<QList<ServiceNameServers>> SystemManager::nameServersToReset() {
    const QString listing = co_await servicesOfOperation();
    const QStringList names = parsedNetworkServices(listing);
    QList<ServiceNameServers> services;
    for (const QString& name : names) {
        const ServiceNameServers service = co_await readNameServers(name);
        if (service.hasServers()) {
            log(nameServersLogLine(service));
        }
        services.append(service);
    }
    co_return std::as_const(services);
}

/// Of a line of several commands only the last one's status is told, so the services are read again.
QCoro::Task<QStringList> SystemManager::servicesNotReset(QList<ServiceNameServers> services) {
    QStringList names;
    for (const ServiceNameServers& before : services) {
        ServiceNameServers now = before;
        if (before.hasServers()) {
            now = co_await readNameServers(before.name);
        }
        if (!now.servers || now.hasServers()) {
            names.append(before.name);
        }
    }
    co_return std::as_const(names);
}

} // namespace quorvane
