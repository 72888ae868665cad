#include "system/SystemManager.h"

#include "core/AdminPrompts.h"
#include "core/AdminScript.h"
#include "network/NetworkServices.h"

#include <QCoroTask>

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

/// None where they can't be listed. The tool's errors come on standard output: of a failed run nothing is a name.
QCoro::Task<std::optional<QStringList>> SystemManager::networkServiceNames(QString tool) {
    const QStringList arguments{tool, u"-listallnetworkservices"_s};
    const CommandResult result = co_await runCommand(arguments, OutputCapture::Capture);
    co_return result.status == 0 ? std::optional(parsedNetworkServices(result.standardOutput)) : std::nullopt;
}

QCoro::Task<QStringList> SystemManager::listNetworkServices() {
    const std::optional<QStringList> names = co_await networkServiceNames(u"networksetup"_s);
    co_return names.value_or(QStringList());
}

/// The same, with a line in the log when there is none.
QCoro::Task<QStringList> SystemManager::servicesOfOperation() {
    const QStringList names = co_await listNetworkServices();
    if (names.isEmpty()) {
        log(u"  [INFO] No network services found."_s);
    }
    co_return std::as_const(names);
}

/// The lines that switch every service; none when no service is found.
QCoro::Task<QStringList> SystemManager::networkSwitchCommands(NetworkSwitch position) {
    const QStringList names = co_await servicesOfOperation();
    QStringList commands;
    if (names.isEmpty()) {
        co_return commands;
    }
    log(u"  [ACTION] Found %1 services: "_s.arg(names.size()) + names.join(u", "_s));
    for (const QString& name : names) {
        commands.append(networkServiceCommand(name, position));
    }
    co_return commands;
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
        co_return false;
    }
    log(u"  [APPLIED] All network connections disabled."_s);
    co_return !isQuitting();
}

} // namespace quorvane
