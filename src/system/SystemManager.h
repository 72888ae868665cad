#pragma once

#include "core/CommandResult.h"
#include "core/ExcludedNames.h"
#include "core/FlowEnvironment.h"
#include "matching/SystemConfigurationMatch.h"
#include "platform/Host.h"
#include "readings/Abandonment.h"
#include "readings/Reading.h"
#include "readings/TimeMachine.h"
#include "snapshots/MasterSystemBaselineManager.h"
#include "snapshots/RestoreBaseline.h"
#include "snapshots/SnapshotCapture.h"
#include "startup/apply/StartupChangePreview.h"
#include "startup/background/BackgroundFetch.h"
#include "startup/items/CleanReboot.h"
#include "startup/items/CloudSyncService.h"
#include "startup/items/DiscoveredStartup.h"
#include "startup/items/LoginItemTargets.h"
#include "tweaks/PerformanceSettings.h"
#include "tweaks/TweakPreferences.h"
#include "verification/ApplyVerificationResult.h"
#include "verification/LastFlowStanding.h"
#include "verification/UnselectedTweaks.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

namespace QCoro {
template <typename T>
class Task;
}

namespace quorvane {

class AdminBatch;
class BackgroundItems;
class BackgroundTaskList;
class FlowJournal;
class FlowRecording;
class FolderEntries;
class LaunchItems;
class LoginItems;
class NotificationCenter;
class SnapshotManager;
class StartupItems;
class SystemScan;
class SystemVerification;
struct BackgroundLoginItemChangePlan;
struct BackgroundTaskItem;
struct CurrentSettings;
struct FlowRecord;
struct InterruptedOutcome;
struct KeptOff;
struct LoginItemAddition;
struct LoginItemSelector;
struct MaintenanceOutcome;
struct MaintenanceSelection;
struct NetworkOperations;
struct NetworkOutcome;
struct NetworkServiceState;
enum class NetworkSwitch;
enum class RecordedFlow;
struct PowerSettings;
struct ProfileApplyPreview;
struct SeenEntry;
struct ServiceNameServers;
struct StartupApplyResult;
struct StartupReadings;
struct StateBefore;
struct SyncPlan;
struct SystemSnapshot;
struct TweaksApplyPreview;
struct TweakStep;
struct UnifiedProfile;

/// The one object through which everything passes that touches the operating system: the log, the busy state,
/// the process runner, administrator runs, and the flows that are built of them.
///
/// There is one for the life of the program, and it lives on the main thread. Flows are coroutines: they suspend at
/// each wait and resume on the main thread. A flow doesn't throw: each step leaves its log line and no failed step
/// stops the next, unless the flow says so. A flow that nobody awaits runs on: who ends the program shuts the ports
/// down first, so that every flow comes to its end before this object does.
///
/// What has state of its own stands in objects that know a FlowEnvironment and never this class: what runs as root, login
/// items, launch items, background items. The rest is divided by concern: `SystemManager+Concern.cpp`.
class SystemManager : public QObject, public FlowEnvironment {
    Q_OBJECT

public:
    /// @param host           the ports
    /// @param notifications  where flows tell the rest of the program what has changed
    SystemManager(const Host& host, NotificationCenter& notifications, QObject* parent = nullptr);
    ~SystemManager() override;

    // ---- Log

    /// Appends one entry exactly as given: no time stamp, no prefix. An entry whose own tag is "[WARNING]" is dropped
    /// without a trace: the log stays free of warnings. What the user is to see of a failure is an "[ERROR]" or "[INFO]".
    void log(const QString& message) override;
    const QStringList& logMessages() const { return m_logMessages; }
    void clearLog();

    const Host& host() const override { return m_host; }

    // ---- Busy state

    /// Brackets a long operation. Brackets nest; the outermost text stays.
    void beginBusy(const QString& message);
    void endBusy();
    bool isBusy() const { return m_busyDepth > 0; }
    const QString& busyMessage() const { return m_busyMessage; }
    int busyDepth() const { return m_busyDepth; }

    // ---- Commands

    /// "Verbose Debug Logging": commands and their output go to the log.
    bool debugMode() const { return m_debugMode; }
    void setDebugMode(bool debugMode);

    /// Runs a tool as the user, through "/usr/bin/env". The first argument is its path or its name.
    /// A failure shows in the result alone.
    QCoro::Task<CommandResult> runCommand(QStringList arguments, OutputCapture capture) override;

    // ---- Administrator runs

    /// Runs one shell line as root behind a single authorization prompt, off the main thread.
    /// See AdminBatch::execute.
    QCoro::Task<CommandResult> executeAdminScript(QString script, QString prompt) override;

    /// Queues the line when a batch is open, and gives status 0 at once; otherwise runs it.
    QCoro::Task<CommandResult> runAdminCommand(QString script, QString prompt);

    /// Opens a batch: what needs root is queued until `finishAdminBatch` runs it as one line under one prompt.
    void beginAdminBatch();
    /// Adds commands to the batch, tolerant and joined, as one entry. Where none is open they wait for `finishAdminBatch`, and
    /// are dropped when a batch begins before that.
    void queueAdminCommands(const QStringList& commands);
    /// Runs what was queued, whether or not a batch is open; with nothing queued no prompt appears. Closes the batch in every
    /// case.
    /// @return true when nothing failed
    QCoro::Task<bool> finishAdminBatch(QString prompt);
    int adminBatchDepth() const;

    using BackgroundTaskItemsFetchMode = quorvane::BackgroundTaskItemsFetchMode;
    /// Called before a batch that will need the background task list, whose dump needs root: until the batch is
    /// finished, what is to happen to background items is put into a plan, and the dump joins the batch.
    void deferBackgroundTaskFetchToAdminBatch();
    BackgroundTaskItemsFetchMode backgroundTaskItemsFetchMode() const;
    const std::optional<BackgroundLoginItemChangePlan>& pendingBackgroundLoginItemChanges() const;

    /// Forgets that an administrator run succeeded: the next shows its caller's prompt. Called at termination.
    void clearAdminAuthorization();

    // ---- Tweaks

    /// One-way: puts the selected tweaks in force and leaves all others as they are; opens its own batch; verifies.
    /// @param cleanReboot  used when the settings select it
    /// @return true when the administrator run succeeded and every selected tweak reads back as applied
    QCoro::Task<bool> applyPerformanceTweaks(PerformanceSettings settings, CleanReboot cleanReboot = {});

    enum class VerifyAfterSync { No, Yes };
    /// Two-way: puts every tweak into the state that the settings ask for. Uses the batch that its caller
    /// opened, if any.
    QCoro::Task<bool> syncPerformanceTweaks(PerformanceSettings settings, VerifyAfterSync verify,
                                            CleanReboot cleanReboot = {});

    /// Puts all tweaks back to what a fresh macOS has, whether they were applied or not.
    QCoro::Task<bool> undoPerformanceTweaks();

    // ---- Profiles

    /// Puts a whole profile onto the system under one prompt, reads the system back, and records the profile
    /// as the active one when every step succeeded. A failed check alone doesn't make the value false.
    QCoro::Task<bool> applyProfile(UnifiedProfile profile);
    QCoro::Task<ApplyVerificationResult> verifyProfile(UnifiedProfile profile);
    /// Makes a profile the active one, posts QuorvaneSystemVerified and emits appliedConfigurationRecorded.
    void recordAppliedConfiguration(const UnifiedProfile& profile, const ApplyVerificationResult& verification);

    /// What the review shows before an apply. Changes nothing and never prompts.
    QCoro::Task<ProfileApplyPreview> previewProfile(UnifiedProfile profile);
    /// The same of tweaks alone.
    QCoro::Task<TweaksApplyPreview> previewTweaks(PerformanceSettings settings, CleanReboot cleanReboot);

    // ---- Snapshots

    using MasterArchive = quorvane::MasterArchive;
    /// Records the user's own settings as the latest snapshot, read from the live system. What a tool can't tell is recorded
    /// as having no value. Where one didn't answer, or the login items can't be read, an earlier snapshot stays; without one
    /// these are left out, except for preferences, without which nothing is saved.
    /// @param archive  also keeps it for good, as a master baseline
    QCoro::Task<SnapshotCapture> captureSystemSnapshot(std::optional<QString> label, MasterArchive archive);
    /// The same before the program's first change to this Mac, into a file of its own that nothing replaces, which isn't the latest
    /// snapshot. Without what an earlier version is known to have changed.
    /// @return why not, as people know it; none where it is kept, or something was captured of this Mac before
    QCoro::Task<std::optional<QString>> keepSettingsBeforeFirstChange();
    /// The store of what is kept for good.
    MasterSystemBaselineManager& masterBaselines() { return m_masterBaselines; }

    // ---- The way back

    /// Looks for a snapshot or a master baseline to go back to. Logs nothing.
    QCoro::Task<FoundBaseline> findRestoreBaseline();
    /// What a way back goes by; none when nothing was captured. Logs when it is a master baseline.
    /// @param found  by an earlier search; it is searched for where there is none. The same holds for the flows below.
    QCoro::Task<std::optional<RestoreBaseline>> selectRestoreBaseline(std::optional<FoundBaseline> found = {});
    /// Puts the captured preferences and system settings back. Uses the batch that its caller opened, if any.
    QCoro::Task<bool> restoreFromSnapshot(SystemSnapshot snapshot);
    /// What is off by the program at this moment: an apply that is taken back by itself leaves it off.
    KeptOff keptOff();
    /// The tweaks alone, from the baseline or to standard defaults: one batch, one prompt.
    QCoro::Task<RestoreOutcome> revertPerformanceTweaks(std::optional<FoundBaseline> found = {});
    /// The whole system: with a baseline also login items, network services and launch items.
    QCoro::Task<RestoreOutcome> reinstateSystem(std::optional<FoundBaseline> found = {});

    /// "Undo Performance Tweaks": takes out of the login items what the program and the profiles have put there, and reverts,
    /// while it is busy.
    QCoro::Task<RestoreOutcome> undoTweaks(std::optional<FoundBaseline> found = {});
    /// "Apply Default": the same, and makes Default the last applied profile when it succeeded.
    QCoro::Task<RestoreOutcome> restoreDefault(std::optional<FoundBaseline> found = {});
    /// "Reinstate System", while it is busy.
    QCoro::Task<RestoreOutcome> reinstateWholeSystem(std::optional<FoundBaseline> found = {});

    // ---- What was cut off

    /// The flow that a run of the program was in when it ended; none where there is none, and where that run is still at work.
    std::optional<FlowRecord> interruptedFlow() const;
    /// Carries it out once more, from its beginning: what is done already stays as it is.
    QCoro::Task<InterruptedOutcome> finishInterrupted(FlowRecord interrupted);
    /// Brings back what its record says was there before an apply; a way back is finished.
    QCoro::Task<InterruptedOutcome> goBackFromInterrupted(FlowRecord interrupted);
    /// Leaves everything as it is.
    void forgetInterrupted();

    /// How what the last apply or way back has left stands now, as the last scan has found it. None before that.
    const std::optional<LastFlowStanding>& lastFlowStanding() const { return m_scan.standing; }

    // ---- Startup: what runs at login

    enum class StartupRefresh { UseCache, Force };
    /// What runs when the user logs in, each item once, sorted by name. Callers share a run. A forced refresh drops
    /// what was found before; the background task list is taken as it stands.
    QCoro::Task<QList<StartupItem>> discoverStartupItems(StartupRefresh refresh);
    /// The same, with what could be read, for somebody who looks on: a run of another caller's that is under way isn't waited
    /// for longer than ten seconds.
    QCoro::Task<DiscoveredStartup> discoverStartup(StartupRefresh refresh);
    /// Forgets the discovered items and the login items, and lets a run that is under way end without a trace.
    void invalidateStartupCaches();

    // ---- Startup: login items

    /// As System Events lists them; from the cache if they were read before.
    QCoro::Task<QList<LoginItem>> rawLoginItems();
    QCoro::Task<LoginItemList> readLoginItemsFromSystemEvents();
    /// Those fit for showing: neither audio software nor an application's agents. Tells of a list that couldn't be read.
    QCoro::Task<QList<LoginItem>> visibleLoginItems();
    /// For each, true when something was deleted.
    QCoro::Task<QList<bool>> removeLoginItems(QList<LoginItemSelector> selectors);
    /// For each, true when the item exists afterwards.
    QCoro::Task<QList<bool>> addLoginItems(QList<LoginItemAddition> additions);
    /// Removes login items and writes down which they were.
    /// @param excludedIds  agents that stay all the same, by id or name
    QCoro::Task<bool> disableLoginItems(LoginItemTargets targets, QSet<QString> excludedIds);

    // ---- Startup: launch agents and daemons

    /// Takes launch plists out of launchd and puts them aside; those of the system under administrator rights.
    /// @param labels       file names, with ".plist"
    /// @param excludedIds  agents that stay all the same, by id or file name
    QCoro::Task<bool> disableLaunchItems(QStringList labels, QSet<QString> excludedIds);
    /// Moves back what was put aside and can be moved back as the user; what the open batch brings back isn't touched.
    QCoro::Task<void> restoreLaunchItems();
    /// Adds to the open batch what brings back the system's plists, from the copies that root has kept.
    void queueKeptLaunchItems();
    /// Called when that batch is finished: loads what is back and removes its backup, and tells of what isn't back.
    QCoro::Task<void> settleKeptLaunchItems();

    // ---- Startup: applications

    /// Installed applications for performers, sorted by name; listed once.
    QList<StartupLaunchItem> performanceApplications();
    /// The applications that the program has put into the login items.
    QSet<QString> managedStartupAppPaths() const;
    void recordManagedStartupAppPath(const QString& path);
    void recordManagedStartupApps(const QList<StartupLaunchItem>& items);
    void forgetManagedStartupAppPath(const QString& path);
    /// The applications that any saved profile opens at login.
    QSet<QString> profileStartupAppPaths() const;
    /// Removes the managed applications that the configuration doesn't open.
    QCoro::Task<bool> removeUnconfiguredManagedApps(const StartupConfiguration& configuration);
    /// @param paths  the managed ones when absent
    QCoro::Task<bool> removeManagedStartupApps(const std::optional<QSet<QString>>& paths);
    QCoro::Task<bool> configureStartupApps(QList<StartupLaunchItem> launchItems);
    /// Stops windows and applications from reopening, and removes from login what isn't permitted.
    QCoro::Task<bool> applyCleanReboot(CleanReboot cleanReboot);

    // ---- Startup: the whole configuration

    /// Carries out the startup half of a profile. Shows no prompt of its own inside a batch.
    QCoro::Task<bool> applyStartupConfiguration(StartupConfiguration configuration);
    /// The same by itself: with its own batch and verification.
    QCoro::Task<StartupApplyResult> applyStartupChanges(StartupConfiguration configuration);
    /// Changes nothing and never prompts; with nothing to change it reads nothing either.
    /// @param cleanReboot  goes with the configuration
    QCoro::Task<StartupChangePreview> previewStartupChanges(StartupConfiguration configuration,
                                                            std::optional<CleanReboot> cleanReboot = std::nullopt);
    QCoro::Task<ApplyVerificationResult> verifyStartupConfiguration(StartupConfiguration configuration);

    // ---- Startup: background items

    /// Where an administrator run leaves the dump of the background task list.
    QString backgroundDumpPath() const;
    /// Reads the file that an administrator run has left, and removes it.
    QCoro::Task<void> loadPrivilegedBackgroundDump();
    /// As the last dump has shown it; none when it was never read.
    const std::optional<BackgroundTaskList>& backgroundTaskItems() const;

    /// What a clean reboot leaves of the background task list; empty when the list was never read.
    QCoro::Task<ApplyVerificationResult> verifyBackgroundLoginItems(QSet<QString> permittedNames,
                                                                    std::optional<StartupConfiguration> startup);

    // ---- Network

    QCoro::Task<QStringList> listNetworkServices();
    /// Each service with its state, in the order of the tool.
    QCoro::Task<QList<NetworkServiceState>> readNetworkServices();
    QCoro::Task<bool> disableAllNetworkConnections();
    /// What the user chose, under one prompt. Where no service is found, that operation alone has failed.
    QCoro::Task<NetworkOutcome> runNetworkOperations(NetworkOperations operations);
    /// The same by itself: with its own busy state.
    QCoro::Task<NetworkOutcome> executeNetworkOperations(NetworkOperations operations);

    // ---- Maintenance

    /// Removes what is in a folder, but for what audio software depends on, and tells of it in the log alone.
    /// @param label  what the log calls it: "User Caches"
    QCoro::Task<void> clearCacheDirectory(QString path, QString label);
    /// Removes the same from the folders of the system, under one prompt. With nothing to remove no prompt appears.
    /// @return why they aren't cleared; none when they are
    QCoro::Task<std::optional<QString>> clearSystemCaches();
    /// @return why the Trash isn't empty; none when the Finder has emptied it
    QCoro::Task<std::optional<QString>> emptyTrash();
    /// Removes everything that is in the user's Downloads folder.
    /// @return why not; none when nothing of it has stayed, and where there is no such folder
    QCoro::Task<std::optional<QString>> purgeDownloads();
    /// What the user chose, one after the other: a step that fails doesn't keep the next from running.
    QCoro::Task<MaintenanceOutcome> runMaintenance(MaintenanceSelection selection);

    // ---- Reading the live system

    using PreferenceHost = quorvane::PreferenceHost;
    /// The value of a preference as the `defaults` tool prints it, trimmed; none when the key isn't set.
    QCoro::Task<Reading<QString>> readDefaultValue(QString domain, QString key,
                                                   PreferenceHost host = PreferenceHost::Any);
    QCoro::Task<Reading<PowerSettings>> readPowerSettings();
    /// Whether automatic backups are made, by what is stored; none when unknown.
    QCoro::Task<Reading<TimeMachineState>> readTimeMachineState();
    /// True while the user's files are indexed; none when unknown.
    QCoro::Task<Reading<bool>> readSpotlightState();

    /// The path of Notification Center's per-host preferences, a domain for `readDefaultValue`.
    QString notificationCenterPreferences() const;

    // ---- Verification

    using UnselectedTweaks = quorvane::UnselectedTweaks;
    /// Reads each tweak back from the live system, in a fixed order.
    /// @param cleanReboot  used when the settings select it
    QCoro::Task<ApplyVerificationResult>
    verifyAppliedSettings(PerformanceSettings settings, UnselectedTweaks unselected, CleanReboot cleanReboot = {});
    void logNoteOf(const ApplyVerificationResult::Item& item);
    void logVerificationResult(const ApplyVerificationResult& result, const QString& section);
    /// The result of the last flow that verified; none since an apply or a way back has begun that hasn't.
    const std::optional<ApplyVerificationResult>& lastApplyVerification() const { return m_lastApplyVerification; }

    /// Which configuration this Mac is in: the first profile that fits, else Default, else none. The last applied profile is
    /// tried first and is kept when nothing fits; what was found before is kept when something wasn't answered. Each command
    /// runs once. Records the outcome and, unless it was kept, posts QuorvaneSystemVerified.
    /// @param profiles     the saved ones, in their order
    /// @param appliedName  of the last applied profile; the stored one when none
    /// @param abandonment  ends it at its next reading, without a trace from then on
    /// @return the match, kept or not; none when it was abandoned
    QCoro::Task<std::optional<SystemConfigurationMatch>> scanCurrentSystem(QList<UnifiedProfile> profiles,
                                                                           std::optional<QString> appliedName = {},
                                                                           Abandonment abandonment = {});
    /// The search alone; none as well when something wasn't answered.
    QCoro::Task<std::optional<SystemConfigurationMatch>> findSystemMatch(QList<UnifiedProfile> profiles,
                                                                         std::optional<QString> appliedName = {});
    bool isVerifyingSystem() const { return m_scan.underWay > 0; }
    bool hasVerifiedSystem() const { return m_scan.hasEnded; }
    const std::optional<SystemConfigurationMatch>& systemMatch() const { return m_scan.match; }
    /// To be called when a saved profile has become another one: where this Mac is in it, nothing of that is verified any more.
    /// @param now  what it is called from now on
    void forgetVerification(const QString& profile, const QString& now);

Q_SIGNALS:
    void messageLogged(const QString& message);
    void logCleared();
    void isBusyChanged(bool isBusy);
    void busyMessageChanged(const QString& busyMessage);
    void debugModeChanged(bool debugMode);
    void isVerifyingSystemChanged(bool isVerifyingSystem);
    void systemMatchChanged();
    /// A profile has become the active one. What follows from that is a task of its own: connect with Qt::QueuedConnection.
    void appliedConfigurationRecorded(const QString& profileName);

private:
    /// True once the ports are shut down: no flow that ends then has succeeded, because what failed since shows nowhere.
    bool isQuitting() const;
    QCoro::Task<bool> unlessQuitting(QCoro::Task<bool> flow) const;

    // SystemManager+Tweaks.cpp
    QCoro::Task<SyncPlan> planSync(PerformanceSettings settings);
    QCoro::Task<void> runTweakSteps(QList<TweakStep> steps);
    QCoro::Task<bool> verifyTweaks(PerformanceSettings settings, UnselectedTweaks unselected, CleanReboot cleanReboot);

    // SystemManager+OwnTweaks.cpp
    enum class LookedAtVolumes { OfTheSystem, All };
    QCoro::Task<CurrentSettings> lookAtTweaks(LookedAtVolumes volumes = LookedAtVolumes::OfTheSystem);
    static LookedAtVolumes volumesFor(const std::optional<SystemSnapshot>& goingBackTo);
    std::function<bool(const MacPreference&)> mayChange() const;
    void noteChangedTweaks(const PerformanceSettings& settings, const CurrentSettings& current);
    QCoro::Task<void> strikeRestoredTweaks(PerformanceSettings wanted);
    void strikeTweaksSeenBack(const CurrentSettings& current);
    QCoro::Task<bool> isNotificationCenterOff();
    QCoro::Task<bool> runStepsOfNotificationCenter(QList<TweakStep> steps);

    // SystemManager+Interruption.cpp
    FlowRecording recordProfile(const UnifiedProfile& profile);
    FlowRecording recordTweaks(const PerformanceSettings& settings, const CleanReboot& cleanReboot);
    FlowRecording recordStartup(const StartupConfiguration& configuration);
    FlowRecording recordWayBack(RecordedFlow flow, const FoundBaseline& found);
    QCoro::Task<void> beginRecord(QList<TweakStep> steps, QStringList systemCommands, CurrentSettings current);
    StateBefore startupBefore();
    QCoro::Task<bool> settingsBackTo(StateBefore before);
    QCoro::Task<void> loginItemsBackTo(StateBefore before);
    void noteLeft(const ApplyVerificationResult& left);

    // SystemManager+TimeMachine.cpp
    enum class BackupSwitch { OfProfile, OfWayBack };
    QCoro::Task<QStringList> effectiveCommands(QStringList commands, BackupSwitch origin);
    QCoro::Task<void> lookAtRestoredBackups(std::optional<bool> captured);
    void logUnreadableTimeMachine();

    // SystemManager+Snapshots.cpp
    struct ReadSnapshot;
    QCoro::Task<ReadSnapshot> readSystemSnapshot(std::optional<QString> label);
    std::optional<QString> refusalToSave(const ReadSnapshot& read) const;
    std::optional<QString> saveSnapshot(const SystemSnapshot& snapshot);
    QCoro::Task<bool> archiveAsMaster(ReadSnapshot read);
    SnapshotManager snapshotManager() const;

    // SystemManager+Restore.cpp
    QCoro::Task<RestoreOutcome> reinstateFromSnapshot(SystemSnapshot snapshot);
    QCoro::Task<RestoreOutcome> reinstateStandardSettings();
    QCoro::Task<void> restoreLoginItems(SystemSnapshot snapshot);
    QCoro::Task<void> hideLoginItemsAsCaptured(SystemSnapshot snapshot);
    QCoro::Task<void> removeAddedApplications(SystemSnapshot snapshot);
    QCoro::Task<void> takeOutAdded(QSet<QString> notUsers);
    QCoro::Task<std::optional<QMap<QString, bool>>> queueNetworkServices(SystemSnapshot snapshot);
    QCoro::Task<QList<NetworkServiceState>> settleNetworkServices(QMap<QString, bool> switched);

    // SystemManager+ReadBack.cpp
    enum class ReadBackOf { Tweaks, WholeSystem };
    QCoro::Task<QStringList> readBack(std::optional<SystemSnapshot> goneBackTo, ReadBackOf which,
                                      std::optional<QList<NetworkServiceState>> services,
                                      bool isNotificationCenterBack);

    // SystemManager+WaysBack.cpp
    QCoro::Task<RestoreOutcome> removeStartupAppsAndRevert(RecordedFlow flow, std::optional<FoundBaseline> found);

    // SystemManager+StartupApply.cpp
    QCoro::Task<bool> carryOutStartupChanges(StartupConfiguration configuration);
    QCoro::Task<bool> disableTargetLoginItems(LoginItemTargets targets);
    QCoro::Task<void> removeTargetLoginPaths(QSet<QString> paths);
    QCoro::Task<bool> disableTargetLaunchItems(QSet<QString> labels);
    void disableTargetBackgroundItems(const QSet<QString>& labels);
    void disableCloudServices(const CloudSyncServices& services);
    QCoro::Task<bool> finishPlanOutsideBatch();
    void forgetListedRegistrations();

    // SystemManager+Verification.cpp
    QCoro::Task<StartupChangePreview> previewCleanReboot(CleanReboot cleanReboot);
    QCoro::Task<StartupReadings> readingsForReview();

    // SystemManager+Network.cpp
    QCoro::Task<std::optional<QString>> networkServiceListing(QString tool);
    QCoro::Task<QString> servicesOfOperation();
    QCoro::Task<QStringList> networkSwitchCommands(NetworkSwitch position);
    QCoro::Task<void> settleSwitchedOff();

    // SystemManager+NetworkOperations.cpp
    QCoro::Task<ServiceNameServers> readNameServers(QString service);
    QCoro::Task<QList<ServiceNameServers>> nameServersToReset();
    QCoro::Task<QStringList> servicesNotReset(QList<ServiceNameServers> services);

    // SystemManager+Maintenance.cpp
    QCoro::Task<QList<SeenEntry>> removableSystemCaches();
    bool takeSystemCacheEntry(FolderEntries& entries, const QString& folder, QList<SeenEntry>& removable);
    std::optional<QString> clearedSystemCaches(const QList<SeenEntry>& named);
    void logSkippedCacheItem(const QString& name);

    // SystemManager+Matching.cpp
    QCoro::Task<std::optional<LastFlowStanding>> readStanding(SystemScan& scan);
    QCoro::Task<std::optional<LastFlowStanding>> readStandingForReview();
    void logStanding();
    std::optional<QString> lastAppliedName(const std::optional<QString>& given) const;
    void keepMatch(std::optional<SystemConfigurationMatch> match);
    void logSystemMatch();
    void postSystemMatch();
    void countScan(int change);

    /// What the scans have told.
    struct Scan {
        int underWay = 0;      ///< one that was abandoned may still be coming to its end
        bool hasEnded = false; ///< one has, or an apply has told it as well
        std::optional<SystemConfigurationMatch> match;
        std::optional<LastFlowStanding> standing;
    };

    Host m_host;
    NotificationCenter& m_notifications;
    MasterSystemBaselineManager m_masterBaselines;
    std::unique_ptr<FlowJournal> m_journal;
    std::unique_ptr<AdminBatch> m_adminBatch;
    std::unique_ptr<LoginItems> m_loginItems;
    std::unique_ptr<LaunchItems> m_launchItems;
    std::unique_ptr<BackgroundItems> m_backgroundItems;
    std::unique_ptr<StartupItems> m_startupItems;
    std::unique_ptr<SystemVerification> m_verification;

    QStringList m_logMessages;
    QString m_busyMessage;
    int m_busyDepth = 0;
    bool m_debugMode = false;
    Scan m_scan;
    std::optional<ApplyVerificationResult> m_lastApplyVerification;
};

} // namespace quorvane
