#include "system/SystemManager.h"

#include "core/AdminBatch.h"
#include "core/AdminPrompts.h"
#include "core/AdminScript.h"
#include "flows/FlowJournal.h"
#include "flows/FlowSteps.h"
#include "matching/SystemVerification.h"
#include "network/NetworkServices.h"
#include "network/NetworkServicesBack.h"
#include "network/SwitchedOffServices.h"
#include "platform/CloudDrive.h"
#include "platform/Machine.h"
#include "snapshots/FirstBaseline.h"
#include "snapshots/FocusMark.h"
#include "snapshots/HomeBaselines.h"
#include "snapshots/RestoreCommands.h"
#include "startup/background/BackgroundDisableTarget.h"
#include "startup/background/BackgroundItems.h"
#include "startup/background/HelperReturn.h"
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

QSet<QString> namesOf(const std::optional<QMap<QString, bool>>& services) {
    return services ? QSet<QString>(services->keyBegin(), services->keyEnd()) : QSet<QString>();
}

QString notRestoredLine(const QString& service) {
    return u"  [INFO] Not restored: network service "_s + service;
}

/// Of items that are there, those that open hidden where they didn't, or the other way round. An item of the same file is meant
/// whatever its name, unless another captured one bears it.
QList<LoginItemHiding> hidingsAsCaptured(const QList<LoginItemSnapshot>& captured, const QList<LoginItem>& present) {
    QList<LoginItemHiding> hidings;
    for (const LoginItem& item : present) {
        const LoginItemSnapshot* before = nullptr;
        for (const LoginItemSnapshot& each : captured) {
            const bool isOfFile = !item.path.isEmpty() && comparablePath(each.path) == comparablePath(item.path);
            if (isOfFile && (!before || each.name == item.name)) {
                before = &each;
            }
        }
        if (before && before->hidden != item.hidden) {
            hidings.append({{item.name, item.path}, before->hidden});
        }
    }
    return hidings;
}

/// Of what neither a snapshot nor an archive is.
QString sourceLine(const RestoreBaseline& baseline) {
    if (baseline.source == RestoreSource::Chosen) {
        return u"  [INFO] Using the restore baseline that you have chosen."_s;
    }
    return baseline.snapshot.label == kFirstSeen ? u"  [INFO] Using your settings as Quorvane first saw them."_s
                                                 : u"  [INFO] Using your settings as they were before Quorvane."_s;
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
    KeptCaptures kept = capturesAtHome(m_host.files, m_host.machine);
    kept.master = co_await m_masterBaselines.loadLatestMasterBaseline();
    co_return FoundBaseline{restoreBaselineOf(kept, identityOf(m_host.machine))};
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
    } else if (baseline && baseline->source != RestoreSource::Snapshot) {
        log(sourceLine(*baseline));
    }
    if (baseline && !baseline->otherMac.isEmpty()) {
        log(u"  [INFO] This baseline was saved on %1."_s.arg(baseline->otherMac));
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

/// What is there opens hidden, or not, as it was: a profile may have taken an item out and added it anew.
QCoro::Task<void> SystemManager::hideLoginItemsAsCaptured(SystemSnapshot snapshot) {
    const QList<LoginItemSnapshot> captured = snapshot.loginItems.value_or(QList<LoginItemSnapshot>());
    if (captured.isEmpty()) {
        co_return;
    }
    const LoginItemList list = co_await m_loginItems->current();
    const QList<LoginItemHiding> hidings = hidingsAsCaptured(captured, list.items);
    if (hidings.isEmpty()) {
        co_return;
    }
    const QList<bool> done = co_await m_loginItems->hide(hidings);
    if (const qsizetype count = done.count(true); count > 0) {
        log(u"  [RESTORED] %1 login item(s) hidden or shown as before."_s.arg(count));
    }
    for (qsizetype place = 0; place < hidings.size(); ++place) {
        if (!done.at(place)) {
            log(u"  [INFO] Not restored: whether it opens hidden: "_s + hidings.at(place).item.name);
        }
    }
}

/// Applications that the program has added to the login items, or that a saved profile opens, but for the user's own. What isn't
/// listed is no more than forgotten.
QCoro::Task<void> SystemManager::removeAddedApplications(SystemSnapshot snapshot) {
    const QSet<QString> managed = managedStartupAppPaths();
    return takeOutAdded(startupAppsThatGo(managed, profileStartupAppPaths(), RestoreBaseline{std::move(snapshot)}));
}

QCoro::Task<void> SystemManager::takeOutAdded(QSet<QString> notUsers) {
    if (notUsers.isEmpty()) {
        co_return;
    }
    const LoginItemList list = co_await m_loginItems->current();
    if (!list.tellsAll()) {
        co_return; // which was told when they were to be restored
    }
    QSet<QString> going = notUsers;
    going.removeIf([&list](const QString& path) {
        return std::none_of(list.items.begin(), list.items.end(),
                            [&path](const LoginItem& item) { return isLoginItemOf(item, path); });
    });
    const QSet<QString> unlisted = notUsers - going;
    for (const QString& path : unlisted) {
        forgetManagedStartupAppPath(path);
    }
    co_await removeManagedStartupApps(going);
}

/// Those that are there; what became of them is seen when the batch has run.
/// @return what was queued; none where the services can't be listed
QCoro::Task<std::optional<QMap<QString, bool>>> SystemManager::queueNetworkServices(SystemSnapshot snapshot) {
    const QMap<QString, bool> captured = snapshot.networkServicesEnabled.value_or(QMap<QString, bool>());
    QMap<QString, bool> queued;
    if (captured.isEmpty()) {
        co_return queued;
    }
    const std::optional<QString> listing = co_await networkServiceListing(u"/usr/sbin/networksetup"_s);
    const QStringList listed = parsedNetworkServices(listing.value_or(QString()));
    for (auto service = captured.begin(); service != captured.end(); ++service) {
        if (listed.contains(service.key())) {
            const NetworkSwitch position = *service ? NetworkSwitch::On : NetworkSwitch::Off;
            m_adminBatch->open().queue(withoutStatus(networkServiceCommand(service.key(), position)));
            queued.insert(service.key(), *service);
        } else {
            log(notRestoredLine(service.key()));
        }
    }
    co_return listing ? std::optional(queued) : std::nullopt;
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

KeptOff SystemManager::keptOff() {
    const QString quarantine = quarantineFolder(m_host.machine.homeFolder());
    const QStringList services = SwitchedOffServices(m_host.files, m_host.machine).read();
    KeptOff kept;
    kept.overrides = m_launchItems->launchd().recordedOverrides();
    kept.plists = m_launchItems->placesOfPutAside();
    kept.services = QSet<QString>(services.begin(), services.end());
    const BackgroundChanges changes = m_backgroundItems->changes();
    for (const TakenHelper& helper : changes.helpers) {
        kept.helpers.insert(helperCopy(helper, quarantine));
    }
    for (const DisallowedItem& item : changes.disallowed) {
        kept.permissions.insert(item.label);
    }
    return kept;
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
    m_journal->strike(kSettingsStep);
    const bool isFinished =
        co_await finishAdminBatch(u"Quorvane needs your administrator password to restore performance tweaks."_s);
    const std::optional<SystemSnapshot> goneBackTo = baseline ? std::optional(baseline->snapshot) : std::nullopt;
    if (isFinished) {
        co_await lookAtRestoredBackups(goneBackTo ? goneBackTo->timeMachineEnabled : std::nullopt);
    }
    FocusMark focus(*this);
    co_await focus.restore();
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

/// The tweaks, and what the records tell: nobody needs a snapshot to know what is switched off by the program. Launch items that an
/// earlier version put aside stay there.
QCoro::Task<RestoreOutcome> SystemManager::reinstateStandardSettings() {
    RestoreOutcome outcome;
    log(u"  [INFO] No system snapshot found — using standard restore."_s);
    KeptOff kept;
    kept.plists = m_launchItems->unrecordedPlaces();
    m_launchItems->queueKept(kept);
    co_await m_launchItems->launchd().liftUsersOverrides();
    const bool isRestored = co_await undoPerformanceTweaks();
    m_journal->strike(kSettingsStep);
    m_journal->strike(kLoginItemsStep); // nothing is known of them
    NetworkServicesBack network(*this, *m_adminBatch);
    bool hasNetwork = co_await network.queue({}, {});
    co_await m_launchItems->bringBack(kept);
    m_journal->strike(kLaunchItemsStep);
    co_await m_backgroundItems->restore();
    const bool isFinished =
        co_await finishAdminBatch(u"Quorvane needs your administrator password to restore system defaults."_s);
    co_await m_launchItems->settleKept(kept);
    co_await m_backgroundItems->settleRestored();
    m_backgroundItems->forgetWaiting();
    const bool isNetworkBack = co_await network.settle();
    hasNetwork = hasNetwork && (isNetworkBack || !isFinished);
    if (isFinished) {
        co_await lookAtRestoredBackups(std::nullopt);
    }
    FocusMark focus(*this);
    co_await focus.restore();
    const QStringList missing = co_await readBack(std::nullopt, ReadBackOf::WholeSystem, std::nullopt, isRestored);
    takeReadBack(missing, isRestored && hasNetwork && isFinished && !isQuitting(), isFinished, outcome);
    co_return outcome;
}

/// The tweaks and everything that a startup configuration changed, in the batch that is open.
QCoro::Task<RestoreOutcome> SystemManager::reinstateFromSnapshot(SystemSnapshot snapshot) {
    RestoreOutcome outcome;
    log(u"\nReinstating from saved system snapshot%1..."_s.arg(suffixOf(snapshot)));
    queueKeptLaunchItems();
    const bool isRestored = co_await restoreFromSnapshot(snapshot);
    m_journal->strike(kSettingsStep);
    co_await restoreLoginItems(snapshot);
    m_journal->strike(kLoginItemsStep);
    const std::optional<QMap<QString, bool>> switched = co_await queueNetworkServices(snapshot);
    co_await restoreLaunchItems();
    m_journal->strike(kLaunchItemsStep);
    co_await m_backgroundItems->restore();
    NetworkServicesBack newer(*this, *m_adminBatch);
    const bool areNewerListed = co_await newer.queue(namesOf(snapshot.networkServicesEnabled), {});
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
    co_await m_backgroundItems->settleRestored();
    const bool areNewerBack = co_await newer.settle();
    const bool isNewerSettled = areNewerListed && (areNewerBack || !isFinished);
    FocusMark focus(*this);
    co_await focus.restore();
    co_await hideLoginItemsAsCaptured(snapshot);
    co_await removeAddedApplications(snapshot);
    const QStringList missing = co_await readBack(snapshot, ReadBackOf::WholeSystem, services, isRestored);
    takeReadBack(missing, isRestored && isNewerSettled && isFinished && !isQuitting(), isFinished, outcome);
    co_return outcome;
}

} // namespace quorvane
