#include "system/SystemManager.h"

#include "core/AdminPrompts.h"
#include "core/AdminScript.h"
#include "network/NetworkOperations.h"
#include "network/NetworkServices.h"
#include "system/BusyBracket.h"

#include <QCoroTask>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kOperationsPrompt =
    u"Quorvane needs your administrator password to run the selected network operations."_s;

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
    QStringList commands = networkDiagnosticsCommands(operations);
    NetworkOperations failed; // for want of services
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
        co_return NetworkOutcome{messages + networkFailureMessages(operations), false};
    }
    for (const QString& line : networkSuccessLogLines(operations)) {
        log(line);
    }
    co_return NetworkOutcome{messages + networkSuccessMessages(operations), !isQuitting()};
}

} // namespace quorvane
