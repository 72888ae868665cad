#include "system/SystemManager.h"

#include "core/AdminBatch.h"
#include "core/AdminPrompts.h"
#include "core/AdminScript.h"
#include "matching/SystemVerification.h"
#include "network/NetworkServices.h"
#include "platform/CloudDrive.h"
#include "snapshots/RestoreCommands.h"
#include "snapshots/SnapshotManager.h"
#include "startup/background/BackgroundItems.h"
#include "startup/launchd/LaunchItems.h"
#include "startup/login/LoginItems.h"

#include <QCoroTask>

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

QString suffixOf(const SystemSnapshot& snapshot) {
    return snapshot.label ? u" (%1)"_s.arg(*snapshot.label) : QString();
}

QString notRestoredLine(const QString& service) {
    return u"  [INFO] Not restored: network service "_s + service;
}

/// A refused password says all that there is to say: what isn't back then isn't named.
void takeReadBack(const QStringList& missing, bool isCarriedOut, bool isFinished, RestoreOutcome& outcome) {
    outcome.missing = isFinished ? missing : QStringList();
    outcome.succeeded = isCarriedOut && missing.isEmpty();
}

/// False where none was known, or a name's tail behind a "|" stands there.
bool isFileKnown(const LoginItemSnapshot& item) {
    return item.path.startsWith(u'/');
}

} // namespace

QCoro::Task<FoundBaseline> SystemManager::findRestoreBaseline() {
    const std::optional<SystemSnapshot> local = snapshotManager().load();
    const std::optional<LatestBaseline> master = co_await m_masterBaselines.loadLatestMasterBaseline();
    co_return FoundBaseline{chosenRestoreBaseline(local, master)};
}

QCoro::Task<std::optional<RestoreBaseline>> SystemManager::selectRestoreBaseline(std::optional<FoundBaseline> found) {
    if (!found) {
        found = co_await findRestoreBaseline();
    }
    const std::optional<RestoreBaseline> baseline = found->baseline;
    if (baseline && baseline->source == RestoreSource::Baseline) {
        const QString place = m_host.cloud.hasAccount() ? u"iCloud"_s : u"~/.quorvane"_s;
        log(u"  [MASTER] Using %1 from %2."_s.arg(
            baseline->isNewer ? u"newer protected baseline"_s : u"protected baseline"_s, place));
        if (!baseline->otherMac.isEmpty()) {
            log(u"  [INFO] This baseline was saved on %1."_s.arg(baseline->otherMac));
        }
    }
    co_return baseline;
}

QCoro::Task<bool> SystemManager::restoreFromSnapshot(SystemSnapshot snapshot) {
    m_lastApplyVerification.reset();
    const CurrentSettings current = co_await lookAtTweaks(volumesFor(snapshot));
    const bool isNotificationCenterBack =
        co_await runStepsOfNotificationCenter(restoreSteps(snapshot, current, notificationCenterPreferences()));
    QStringList commands = restoreSystemCommands(snapshot, current);
    if (!snapshot.timeMachineEnabled && m_verification->readings().hasSwitchedBackupsOff()) {
        commands.append(timeMachineCommand(true)); // nobody knows what the user had, but who switched them off
    }
    const QStringList systemCommands = co_await effectiveCommands(commands, BackupSwitch::OfWayBack);
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
    co_return isNotificationCenterBack && !isQuitting();
}

/// Adds what is missing; what has come since stays.
QCoro::Task<void> SystemManager::restoreLoginItems(SystemSnapshot snapshot) {
    if (!snapshot.loginItems) {
        co_return;
    }
    m_loginItems->drop();
    const LoginItemList list = co_await m_loginItems->current();
    m_loginItems->tellUnread(list);
    QSet<QString> present;
    for (const LoginItem& item : list.items) {
        present.insert(comparablePath(item.path));
    }
    QList<LoginItemSnapshot> missing;
    QList<LoginItemAddition> additions;
    for (const LoginItemSnapshot& item : *snapshot.loginItems) {
        if (present.contains(comparablePath(item.path))) {
            continue;
        }
        missing.append(item);
        if (isFileKnown(item)) {
            additions.append({item.path, item.hidden});
        }
    }
    QList<bool> added = co_await addLoginItems(additions);
    int count = 0;
    for (const LoginItemSnapshot& item : missing) {
        if (!isFileKnown(item)) {
            log(u"  [INFO] Login item can't be added again, its file isn't known: "_s + item.name);
        } else if (added.takeFirst()) {
            ++count;
        } else {
            log(u"  [ERROR] Failed to add login item: "_s + item.name);
        }
    }
    if (count > 0) {
        log(u"  [RESTORED] %1 login item(s) from snapshot."_s.arg(count));
    }
}

/// Those that are there; what became of them is seen when the batch has run.
/// @return what was queued; none where the services can't be listed
QCoro::Task<std::optional<QMap<QString, bool>>> SystemManager::queueNetworkServices(SystemSnapshot snapshot) {
    const QMap<QString, bool> captured = snapshot.networkServicesEnabled.value_or(QMap<QString, bool>());
    QMap<QString, bool> queued;
    if (captured.isEmpty()) {
        co_return queued;
    }
    const std::optional<QStringList> listed = co_await networkServiceNames(u"/usr/sbin/networksetup"_s);
    for (auto service = captured.begin(); service != captured.end(); ++service) {
        if (listed && listed->contains(service.key())) {
            const NetworkSwitch position = *service ? NetworkSwitch::On : NetworkSwitch::Off;
            m_adminBatch->open().queue(withoutStatus(networkServiceCommand(service.key(), position)));
            queued.insert(service.key(), *service);
        } else {
            log(notRestoredLine(service.key()));
        }
    }
    co_return listed ? std::optional(queued) : std::nullopt;
}

/// Reads anew what has been switched.
/// @return the services as they are now
QCoro::Task<QList<NetworkServiceState>> SystemManager::settleNetworkServices(QMap<QString, bool> switched) {
    const QList<NetworkServiceState> services = co_await readNetworkServices();
    const QStringList missed = servicesNotAsCaptured(switched, services);
    if (missed.size() < switched.size()) {
        log(u"  [RESTORED] Network services from snapshot."_s);
    }
    for (const QString& name : missed) {
        log(notRestoredLine(name));
    }
    co_return std::as_const(services);
}

QCoro::Task<RestoreOutcome> SystemManager::revertPerformanceTweaks(std::optional<FoundBaseline> found) {
    RestoreOutcome outcome;
    m_lastApplyVerification.reset();
    beginAdminBatch();
    const std::optional<RestoreBaseline> baseline = co_await selectRestoreBaseline(std::move(found));
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
    const std::optional<SystemSnapshot> goneBackTo = baseline ? std::optional(baseline->snapshot) : std::nullopt;
    if (isFinished) {
        co_await lookAtRestoredBackups(goneBackTo ? goneBackTo->timeMachineEnabled : std::nullopt);
    }
    const QStringList missing = co_await readBack(goneBackTo, ReadBackOf::Tweaks, std::nullopt, isRestored);
    takeReadBack(missing, isRestored && isFinished && !isQuitting(), isFinished, outcome);
    co_return outcome;
}

QCoro::Task<RestoreOutcome> SystemManager::reinstateSystem(std::optional<FoundBaseline> found) {
    RestoreOutcome outcome;
    m_lastApplyVerification.reset();
    beginAdminBatch();
    co_await m_launchItems->launchd().settleInterrupted();
    const std::optional<RestoreBaseline> baseline = co_await selectRestoreBaseline(std::move(found));
    if (baseline) {
        outcome = co_await reinstateFromSnapshot(baseline->snapshot);
        outcome.source = baseline->source;
    } else {
        outcome = co_await reinstateStandardSettings();
    }
    invalidateStartupCaches();
    co_return outcome;
}

/// The tweaks, and what launchd was told: nobody needs a snapshot to know which overrides are the program's.
QCoro::Task<RestoreOutcome> SystemManager::reinstateStandardSettings() {
    RestoreOutcome outcome;
    log(u"  [INFO] No system snapshot found — using standard restore."_s);
    m_launchItems->queueLifts();
    co_await m_launchItems->launchd().liftUsersOverrides();
    const bool isRestored = co_await undoPerformanceTweaks();
    const bool isFinished =
        co_await finishAdminBatch(u"Quorvane needs your administrator password to restore system defaults."_s);
    co_await m_launchItems->launchd().settleLifted();
    m_backgroundItems->forgetWaiting();
    if (isFinished) {
        co_await lookAtRestoredBackups(std::nullopt);
    }
    const QStringList missing = co_await readBack(std::nullopt, ReadBackOf::WholeSystem, std::nullopt, isRestored);
    takeReadBack(missing, isRestored && isFinished && !isQuitting(), isFinished, outcome);
    co_return outcome;
}

/// The tweaks and everything that a startup configuration changed, in the batch that is open.
QCoro::Task<RestoreOutcome> SystemManager::reinstateFromSnapshot(SystemSnapshot snapshot) {
    RestoreOutcome outcome;
    log(u"\nReinstating from saved system snapshot%1..."_s.arg(suffixOf(snapshot)));
    queueKeptLaunchItems();
    const bool isRestored = co_await restoreFromSnapshot(snapshot);
    co_await restoreLoginItems(snapshot);
    const std::optional<QMap<QString, bool>> switched = co_await queueNetworkServices(snapshot);
    co_await restoreLaunchItems();
    const bool isFinished =
        co_await finishAdminBatch(u"Quorvane needs your administrator password to restore your system."_s);
    co_await settleKeptLaunchItems();
    std::optional<QList<NetworkServiceState>> services;
    if (!switched) {
        services = QList<NetworkServiceState>(); // they can't be listed
    } else if (isFinished && !switched->isEmpty()) {
        services = co_await settleNetworkServices(*switched);
    }
    if (isFinished) {
        co_await lookAtRestoredBackups(snapshot.timeMachineEnabled);
    }
    const QStringList missing = co_await readBack(snapshot, ReadBackOf::WholeSystem, services, isRestored);
    takeReadBack(missing, isRestored && isFinished && !isQuitting(), isFinished, outcome);
    co_return outcome;
}

} // namespace quorvane
