#include "system/SystemManager.h"

#include "core/AdminPrompts.h"
#include "core/AdminScript.h"
#include "network/NetworkServices.h"
#include "network/NetworkServicesBack.h"
#include "network/SwitchedOffServices.h"
#include "platform/FileManager.h"

#include <QCoroTask>

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

/// None where they can't be listed. The tool's errors come on standard output: of a failed run nothing is a name.
QCoro::Task<std::optional<QString>> SystemManager::networkServiceListing(QString tool) {
    const QStringList arguments{tool, u"-listallnetworkservices"_s};
    const CommandResult result = co_await runCommand(arguments, OutputCapture::Capture);
    co_return result.status == 0 ? std::optional(result.standardOutput) : std::nullopt;
}

QCoro::Task<QStringList> SystemManager::listNetworkServices() {
    const std::optional<QString> listing = co_await networkServiceListing(u"networksetup"_s);
    co_return parsedNetworkServices(listing.value_or(QString()));
}

/// The listing, with a line in the log when there is no service in it.
QCoro::Task<QString> SystemManager::servicesOfOperation() {
    const std::optional<QString> listing = co_await networkServiceListing(u"networksetup"_s);
    if (parsedNetworkServices(listing.value_or(QString())).isEmpty()) {
        log(u"  [INFO] No network services found."_s);
    }
    co_return listing.value_or(QString());
}

/// The lines that switch every service; none when no service is found. Which of them are on is written down before they go.
QCoro::Task<QStringList> SystemManager::networkSwitchCommands(NetworkSwitch position) {
    const QString listing = co_await servicesOfOperation();
    const QStringList names = parsedNetworkServices(listing);
    QStringList commands;
    if (names.isEmpty()) {
        co_return commands;
    }
    log(u"  [ACTION] Found %1 services: "_s.arg(names.size()) + names.join(u", "_s));
    for (const QString& name : names) {
        commands.append(networkServiceCommand(name, position));
    }
    if (position == NetworkSwitch::Off) {
        try {
            SwitchedOffServices(m_host.files, m_host.machine).note(networkServicesOn(listing));
        } catch (const FileError& error) {
            log(u"  [ERROR] Could not note which network services are switched off: "_s + error.message());
        }
    }
    co_return commands;
}

/// Where root's line failed or was refused: what is still on was written down for nothing.
QCoro::Task<void> SystemManager::settleSwitchedOff() {
    NetworkServicesBack written(*this, *m_adminBatch);
    co_await written.settle();
}

QCoro::Task<bool> SystemManager::disableAllNetworkConnections() {
    log(u"\nDisabling all network connections..."_s);
    const QStringList commands = co_await networkSwitchCommands(NetworkSwitch::Off);
    if (commands.isEmpty()) {
        co_return false;
    }
    log(u"  [ACTION] Requesting Administrator privileges to disable interfaces..."_s);
    const CommandResult result = co_await runAdminCommand(joinedAdminCommands(commands), kSystemChangesPrompt);
    if (result.status != 0) {
        log(u"  [ERROR] Failed to disable network: "_s + result.standardError);
        co_await settleSwitchedOff();
        co_return false;
    }
    log(u"  [APPLIED] All network connections disabled."_s);
    co_return !isQuitting();
}

} // namespace quorvane
