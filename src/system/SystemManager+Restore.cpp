#include "system/SystemManager.h"

#include "core/AdminBatch.h"
#include "core/AdminPrompts.h"
#include "core/AdminScript.h"
#include "core/DeviceName.h"
#include "network/NetworkServices.h"
#include "platform/CloudDrive.h"
#include "platform/Machine.h"
#include "snapshots/RestoreBaseline.h"
#include "snapshots/RestoreCommands.h"
#include "snapshots/SnapshotManager.h"
#include "startup/login/LoginItems.h"

#include <QCoroTask>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

QString suffixOf(const SystemSnapshot& snapshot) {
    return snapshot.label ? u" (%1)"_s.arg(*snapshot.label) : QString();
}

} // namespace

/// Without a line in the log.
QCoro::Task<std::optional<RestoreBaseline>> SystemManager::findRestoreBaseline() {
    const std::optional<SystemSnapshot> local = snapshotManager().load();
    const auto latest = co_await m_masterBaselines.loadLatestMasterBaseline();
    co_return chosenRestoreBaseline(local, latest ? std::optional(latest->baseline) : std::nullopt);
}

QCoro::Task<bool> SystemManager::hasRestoreBaseline() {
    const std::optional<RestoreBaseline> baseline = co_await findRestoreBaseline();
    co_return baseline.has_value();
}

QCoro::Task<std::optional<RestoreBaseline>> SystemManager::selectRestoreBaseline() {
    const std::optional<RestoreBaseline> baseline = co_await findRestoreBaseline();
    if (baseline && baseline->source == RestoreSource::Baseline) {
        const QString place = m_host.cloud.hasAccount() ? u"iCloud"_s : u"~/.quorvane"_s;
        log(u"  [MASTER] Using %1 from %2."_s.arg(
            baseline->isNewer ? u"newer protected baseline"_s : u"protected baseline"_s, place));
        if (baseline->deviceName != deviceNameOf(m_host.machine.computerName())) {
            log(u"  [INFO] This baseline was saved on %1."_s.arg(baseline->deviceName));
        }
    }
    co_return baseline;
}

QCoro::Task<bool> SystemManager::restoreFromSnapshot(SystemSnapshot snapshot) {
    m_lastApplyVerification.reset();
    co_await runTweakSteps(restoreSteps(snapshot, notificationCenterPreferences()));
    const QStringList systemCommands =
        co_await effectiveCommands(restoreSystemCommands(snapshot), BackupSwitch::OfWayBack);
    if (!systemCommands.isEmpty()) {
        log(u"  [ACTION] Requesting Admin rights to restore captured system settings..."_s);
        const CommandResult result = co_await m_adminBatch->runTolerantly(systemCommands, kSystemChangesPrompt);
        if (result.status != 0) {
            log(u"  [ERROR] Snapshot restoration was cancelled or failed: "_s + result.standardError);
            co_return false;
        }
    }
    log(u"  [RESTORED] System snapshot applied."_s);
    log(u"\nRestore Complete! (Restart your Mac for full effect.)"_s);
    co_return !isQuitting();
}

/// Adds what is missing; what has come since stays.
QCoro::Task<void> SystemManager::restoreLoginItems(SystemSnapshot snapshot) {
    if (!snapshot.loginItems) {
        co_return;
    }
    m_loginItems->drop();
    QSet<QString> present;
    for (const LoginItem& item : co_await rawLoginItems()) {
        present.insert(comparablePath(item.path));
    }
    int count = 0;
    for (const LoginItemSnapshot& item : *snapshot.loginItems) {
        if (present.contains(comparablePath(item.path))) {
            continue;
        }
        if (!item.path.startsWith(u'/')) { // none was known, or a name's tail behind a "|" stands there
            log(u"  [INFO] Login item can't be added again, its file isn't known: "_s + item.name);
            continue;
        }
        if (co_await addLoginItem(item.path, item.hidden)) {
            ++count;
        } else {
            log(u"  [ERROR] Failed to add login item: "_s + item.name);
        }
    }
    if (count > 0) {
        log(u"  [RESTORED] %1 login item(s) from snapshot."_s.arg(count));
    }
}

QCoro::Task<bool> SystemManager::restoreNetworkServices(SystemSnapshot snapshot) {
    const QMap<QString, bool> services = snapshot.networkServicesEnabled.value_or(QMap<QString, bool>());
    if (services.isEmpty()) {
        co_return true;
    }
    QStringList commands;
    for (auto service = services.begin(); service != services.end(); ++service) {
        commands.append(networkServiceCommand(service.key(), *service ? NetworkSwitch::On : NetworkSwitch::Off));
    }
    const CommandResult result = co_await runAdminCommand(joinedAdminCommands(commands), kSystemChangesPrompt);
    if (result.status != 0) {
        log(u"  [ERROR] Network restore was cancelled or failed: "_s + result.standardError);
        co_return false;
    }
    log(u"  [RESTORED] Network services from snapshot."_s);
    co_return true;
}

QCoro::Task<RestoreOutcome> SystemManager::revertPerformanceTweaks() {
    RestoreOutcome outcome;
    m_lastApplyVerification.reset();
    beginAdminBatch();
    const std::optional<RestoreBaseline> baseline = co_await selectRestoreBaseline();
    bool isRestored = false;
    if (baseline) {
        log(u"\nRestoring from saved system snapshot%1..."_s.arg(suffixOf(baseline->snapshot)));
        isRestored = co_await restoreFromSnapshot(baseline->snapshot);
        outcome.source = baseline->source;
    } else {
        isRestored = co_await undoPerformanceTweaks();
    }
    const bool isFinished =
        co_await finishAdminBatch(u"Quorvane needs your administrator password to restore performance tweaks."_s);
    if (isFinished) {
        co_await lookAtRestoredBackups(baseline ? baseline->snapshot.timeMachineEnabled : std::nullopt);
    }
    outcome.succeeded = isRestored && isFinished;
    co_return outcome;
}

QCoro::Task<RestoreOutcome> SystemManager::reinstateSystem() {
    RestoreOutcome outcome;
    m_lastApplyVerification.reset();
    beginAdminBatch();
    const std::optional<RestoreBaseline> baseline = co_await selectRestoreBaseline();
    if (baseline) {
        outcome.source = baseline->source;
        outcome.succeeded = co_await reinstateFromSnapshot(baseline->snapshot);
    } else {
        log(u"  [INFO] No system snapshot found — using standard restore."_s);
        const bool isRestored = co_await undoPerformanceTweaks();
        const bool isFinished =
            co_await finishAdminBatch(u"Quorvane needs your administrator password to restore system defaults."_s);
        if (isFinished) {
            co_await lookAtRestoredBackups(std::nullopt);
        }
        outcome.succeeded = isRestored && isFinished;
    }
    invalidateStartupCaches();
    co_return outcome;
}

/// The tweaks and everything that a startup configuration changed, in the batch that is open.
QCoro::Task<bool> SystemManager::reinstateFromSnapshot(SystemSnapshot snapshot) {
    log(u"\nReinstating from saved system snapshot%1..."_s.arg(suffixOf(snapshot)));
    queueKeptLaunchItems();
    const bool isRestored = co_await restoreFromSnapshot(snapshot);
    co_await restoreLoginItems(snapshot);
    const bool hasNetwork = co_await restoreNetworkServices(snapshot);
    co_await restoreLaunchItems();
    const bool isFinished =
        co_await finishAdminBatch(u"Quorvane needs your administrator password to restore your system."_s);
    co_await settleKeptLaunchItems();
    if (isFinished) {
        co_await lookAtRestoredBackups(snapshot.timeMachineEnabled);
    }
    const bool succeeded = isRestored && hasNetwork && isFinished && !isQuitting();
    co_return succeeded;
}

} // namespace quorvane
