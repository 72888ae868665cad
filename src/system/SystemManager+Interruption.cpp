#include "system/SystemManager.h"

#include "core/AdminBatch.h"
#include "core/AdminPrompts.h"
#include "core/JsonErrors.h"
#include "core/UserDefaultKeys.h"
#include "flows/FlowJournal.h"
#include "flows/FlowSteps.h"
#include "flows/InterruptedOutcome.h"
#include "flows/LastFlow.h"
#include "matching/SystemVerification.h"
#include "network/NetworkServicesBack.h"
#include "platform/Clock.h"
#include "platform/UserDefaults.h"
#include "profiles/UnifiedProfile.h"
#include "snapshots/FocusMark.h"
#include "snapshots/OwnSettings.h"
#include "snapshots/RestoreComparison.h"
#include "snapshots/SnapshotOfSettings.h"
#include "snapshots/SyncPlan.h"
#include "startup/apply/StartupVerification.h"
#include "startup/background/BackgroundItems.h"
#include "startup/launchd/LaunchItems.h"
#include "startup/launchd/Launchd.h"
#include "startup/login/LoginItems.h"
#include "tweaks/TweakCatalogue.h"
#include "tweaks/TweakCommands.h"

#include <QCoroTask>
#include <QUuid>

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

FlowRecord recordOf(RecordedFlow flow, const QString& name) {
    FlowRecord record;
    record.flow = flow;
    record.name = name;
    return record;
}

/// A record keeps a profile, which has an identity and a date: of tweaks or startup alone they say nothing.
UnifiedProfile halfOfProfile() {
    UnifiedProfile profile;
    profile.id = UnifiedProfile::defaultProfile().id;
    profile.dateCreated = UnifiedProfile::defaultProfile().dateCreated;
    return profile;
}

QString nameOfWayBack(RecordedFlow flow) {
    switch (flow) {
    case RecordedFlow::Undo:
        return u"Undo Performance Tweaks"_s;
    case RecordedFlow::Reinstate:
        return u"Reinstate System"_s;
    case RecordedFlow::Default:
    case RecordedFlow::Profile:
    case RecordedFlow::Tweaks:
    case RecordedFlow::Startup:
        break;
    }
    return UnifiedProfile::defaultProfile().name;
}

/// The user's own that are set and that the commands write or delete: only of these has the type to be known.
QList<MacPreference> preferencesThatAreChanged(const QList<TweakStep>& steps, const QStringList& systemCommands,
                                               const CurrentSettings& current) {
    QList<MacPreference> changed = preferencesThatAreSet(current);
    changed.removeIf([&](const MacPreference& preference) {
        const QString key = preference.key.toString();
        const auto isOfKey = [&key](const QStringList& command) { return command.contains(key); };
        const bool isInSteps = std::any_of(steps.begin(), steps.end(), [&](const TweakStep& step) {
            return std::any_of(step.commands.begin(), step.commands.end(), isOfKey);
        });
        const bool isInLine =
            preference.isSystems() && std::any_of(systemCommands.begin(), systemCommands.end(),
                                                  [&key](const QString& command) { return command.contains(key); });
        return !isInSteps && !isInLine;
    });
    return changed;
}

} // namespace

// ---- Written down

FlowRecording SystemManager::recordProfile(const UnifiedProfile& profile) {
    FlowRecord record = recordOf(RecordedFlow::Profile, profile.name);
    record.profile = profile;
    if (!profile.dateCreated.isValid()) {
        record.profile.dateCreated = m_host.clock.now(); // no file holds a profile without one
    }
    return m_journal->record(record);
}

FlowRecording SystemManager::recordTweaks(const PerformanceSettings& settings, const CleanReboot& cleanReboot) {
    FlowRecord record = recordOf(RecordedFlow::Tweaks, u"Performance Tweaks"_s);
    record.profile = halfOfProfile();
    record.profile.settings = settings;
    record.cleanReboot = cleanReboot;
    return m_journal->record(record);
}

FlowRecording SystemManager::recordStartup(const StartupConfiguration& configuration) {
    FlowRecord record = recordOf(RecordedFlow::Startup, u"Startup Changes"_s);
    record.profile = halfOfProfile();
    record.profile.startup = configuration;
    FlowRecording recording = m_journal->record(record);
    m_journal->begin({kStartupStep, kAdministratorsStep}, startupBefore());
    return recording;
}

FlowRecording SystemManager::recordWayBack(RecordedFlow flow, const FoundBaseline& found) {
    FlowRecord record = recordOf(flow, nameOfWayBack(flow));
    record.baseline = found.baseline;
    FlowRecording recording = m_journal->record(record);
    const QStringList steps = flow == RecordedFlow::Reinstate
                                  ? QStringList{kSettingsStep, kLoginItemsStep, kLaunchItemsStep, kAdministratorsStep}
                                  : QStringList{kApplicationsStep, kSettingsStep, kAdministratorsStep};
    m_journal->begin(steps, {});
    return recording;
}

/// Of an apply of tweaks, which has looked at all of them.
/// @param steps  those that it takes as the user
QCoro::Task<void> SystemManager::beginRecord(QList<TweakStep> steps, QStringList systemCommands,
                                             CurrentSettings current) {
    if (!m_journal->isToBegin()) {
        co_return;
    }
    QStringList names = flowSteps(steps);
    if (m_journal->underWay()->flow == RecordedFlow::Profile) {
        names.append(kStartupStep);
    }
    names.append(kAdministratorsStep);
    const QList<MacPreference> changed = preferencesThatAreChanged(steps, systemCommands, current);
    const TypedReadings typed = co_await m_verification->readings().readTypedValues(changed);
    if (systemCommands.contains(spotlightCommand(false))) {
        current.indexing = co_await m_verification->readings().readIndexingOfAll(); // it is for every volume
    }
    StateBefore before = startupBefore();
    before.settings = snapshotOf(current, typed);
    before.settings->id = QUuid::createUuid();
    before.settings->dateCreated = m_host.clock.now();
    m_journal->begin(names, before);
}

/// What the program has switched off of what runs at login, and what waits.
StateBefore SystemManager::startupBefore() {
    StateBefore before;
    before.keptOff = keptOff();
    before.waiting = m_backgroundItems->memory().waiting;
    return before;
}

/// Of a flow that is done.
void SystemManager::noteLeft(const ApplyVerificationResult& left) {
    const LastFlowFile file(m_host.files, m_host.machine);
    const LastFlow last = lastFlowOf(*m_journal->underWay(), left, m_host.clock.now(), file.load());
    m_scan.standing = standingOf(last, left);
    try {
        file.save(last);
    } catch (const FileError& error) {
        log(u"  [INFO] Not noted what this has left, to see what changes: "_s + error.message());
    } catch (const EncodingError& error) {
        log(u"  [INFO] Not noted what this has left, to see what changes: "_s + error.message());
    }
}

// ---- Taken up

std::optional<FlowRecord> SystemManager::interruptedFlow() const {
    return m_journal->interrupted();
}

void SystemManager::forgetInterrupted() {
    m_journal->forget();
}

QCoro::Task<InterruptedOutcome> SystemManager::finishInterrupted(FlowRecord interrupted) {
    InterruptedOutcome outcome;
    log(u"\n[RESUME] Finishing what was interrupted: "_s + interrupted.name);
    m_journal->takeUp(interrupted);
    const std::optional<FoundBaseline> found = FoundBaseline{interrupted.baseline};
    switch (interrupted.flow) {
    case RecordedFlow::Profile:
        outcome.succeeded = co_await applyProfile(interrupted.profile);
        break;
    case RecordedFlow::Tweaks:
        outcome.succeeded = co_await applyPerformanceTweaks(interrupted.profile.settings,
                                                            interrupted.cleanReboot.value_or(CleanReboot()));
        break;
    case RecordedFlow::Startup: {
        const StartupApplyResult result = co_await applyStartupChanges(interrupted.profile.startup);
        outcome.succeeded = result.applySucceeded;
        break;
    }
    case RecordedFlow::Undo:
        outcome.restore = co_await undoTweaks(found);
        break;
    case RecordedFlow::Default:
        outcome.restore = co_await restoreDefault(found);
        break;
    case RecordedFlow::Reinstate:
        outcome.restore = co_await reinstateWholeSystem(found);
        break;
    }
    outcome.succeeded = outcome.succeeded || (outcome.restore && outcome.restore->succeeded);
    co_return outcome;
}

// ---- Taken back

QCoro::Task<InterruptedOutcome> SystemManager::goBackFromInterrupted(FlowRecord interrupted) {
    if (isWayBack(interrupted.flow)) {
        co_return co_await finishInterrupted(interrupted);
    }
    const StateBefore before = interrupted.before;
    const KeptOff kept = before.keptOff;
    m_lastApplyVerification.reset();
    log(u"\n[ROLLBACK] Going back to what was there before: "_s + interrupted.name);
    beginAdminBatch();
    co_await m_launchItems->launchd().settleInterrupted();
    m_launchItems->queueKept(kept);
    const bool areSettingsBack = co_await settingsBackTo(before);
    co_await loginItemsBackTo(before);
    NetworkServicesBack network(*this, *m_adminBatch);
    bool hasNetwork = co_await network.queue({}, kept.services);
    co_await m_launchItems->restore(kept);
    co_await m_backgroundItems->restore(kept);
    const bool isFinished =
        co_await finishAdminBatch(u"Quorvane needs your administrator password to go back to what was there before."_s);
    co_await m_launchItems->settleKept(kept);
    co_await m_backgroundItems->settleRestored();
    m_backgroundItems->setWaiting(before.waiting);
    const bool isNetworkBack = co_await network.settle();
    hasNetwork = hasNetwork && (isNetworkBack || !isFinished);
    invalidateStartupCaches();
    QStringList missing;
    if (before.settings) {
        missing = co_await readBack(before.settings, ReadBackOf::Tweaks, std::nullopt, areSettingsBack);
    }
    InterruptedOutcome outcome;
    outcome.restore = RestoreOutcome{false, RestoreSource::Snapshot, isFinished ? missing : QStringList()};
    outcome.succeeded = areSettingsBack && hasNetwork && isFinished && missing.isEmpty() && !isQuitting();
    outcome.restore->succeeded = outcome.succeeded;
    if (outcome.succeeded) {
        writeProgramNotes(before.notes, m_host.defaults);
        m_journal->forget();
    }
    co_return outcome;
}

/// By what puts back a tweak that a profile leaves off: what is there already gets no command.
QCoro::Task<bool> SystemManager::settingsBackTo(StateBefore before) {
    if (!before.settings) {
        co_return true;
    }
    const LaunchdService agent{LaunchdDomain::User, kNotificationCenterLabel.toString()};
    const bool wasOff = before.keptOff.overrides.contains(agent);
    const CurrentSettings read = co_await lookAtTweaks(volumesFor(before.settings));
    const QList<MacPreference> compared = preferencesToCompareByType(*before.settings, read);
    const TypedReadings typed = co_await m_verification->readings().readTypedValues(compared);
    const CurrentSettings current = tellingTypes(read, *before.settings, typed);
    const bool isOff = co_await isNotificationCenterOff();
    PerformanceSettings wanted;
    wanted.notifications = wasOff && !isOff;
    const QStringList changed = m_host.defaults.stringArray(kQuorvaneChangedTweaks);
    OwnSettings own{before.settings, {changed.begin(), changed.end()}};
    if (m_host.defaults.boolean(kQuorvaneSwitchedBackupsOff) && !before.notes.hasSwitchedBackupsOff) {
        own.changedTweaks.insert(tweakOf(&PerformanceSettings::timeMachine).key);
    }
    for (const QString& earlier : before.notes.changedTweaks) {
        own.changedTweaks.remove(earlier);
    }
    const SyncPlan plan = syncPlan(wanted, own, current, notificationCenterPreferences(), isOff && !wasOff);
    const bool isNotificationCenterBack = co_await runStepsOfNotificationCenter(plan.steps);
    for (const QString& line : plan.systemLines) {
        log(line);
    }
    const QStringList systemCommands = co_await effectiveCommands(plan.systemCommands, BackupSwitch::OfWayBack);
    if (!systemCommands.isEmpty()) {
        co_await m_adminBatch->runTolerantly(systemCommands, kSystemChangesPrompt); // in the open batch
    }
    co_await runTweakSteps(QList<TweakStep>(1, plan.appRestoration));
    if (!before.notes.changedTweaks.contains(tweakOf(&PerformanceSettings::notifications).key)) {
        FocusMark focus(*this); // an earlier apply hasn't set it
        co_await focus.restore();
    }
    co_return isNotificationCenterBack;
}

/// What the apply has taken out comes back, and what it has added goes.
QCoro::Task<void> SystemManager::loginItemsBackTo(StateBefore before) {
    SystemSnapshot items;
    items.loginItems = before.loginItems;
    co_await restoreLoginItems(items);
    co_await hideLoginItemsAsCaptured(items);
    QSet<QString> added = managedStartupAppPaths();
    for (const QString& earlier : before.notes.managedPaths) {
        added.remove(comparablePath(earlier));
    }
    const RestoreBaseline own{items};
    const QSet<QString> going = startupAppsThatGo(added, {}, own);
    co_await takeOutAdded(going);
}

} // namespace quorvane
