#pragma once

#include "core/CommandResult.h"
#include "core/ExcludedNames.h"
#include "core/FlowEnvironment.h"
#include "matching/SystemConfigurationMatch.h"
#include "platform/Host.h"
#include "readings/SystemReadings.h"
#include "snapshots/MasterSystemBaselineManager.h"
#include "startup/apply/StartupChangePreview.h"
#include "startup/background/BackgroundLoginItemChangePlan.h"
#include "startup/background/ServiceManagementBTM.h"
#include "startup/items/CleanReboot.h"
#include "tweaks/PerformanceSettings.h"
#include "verification/ApplyVerificationResult.h"
#include "verification/UnselectedTweaks.h"

#include <QFuture>
#include <QHash>
#include <QObject>
#include <QString>
#include <QStringList>

#include <optional>

namespace QCoro {
template <typename T>
class Task;
}

namespace quorvane {

class FolderEntries;
class LoginItemRemoval;
class NotificationCenter;
class SnapshotManager;
struct BackgroundDisableTarget;
struct KeptLaunchPlist;
struct LaunchFolder;
struct MaintenanceOutcome;
struct MaintenanceSelection;
struct NamedLoginItems;
struct NetworkOperations;
struct NetworkOutcome;
struct NetworkServiceState;
enum class NetworkSwitch;
struct PowerSettings;
struct ProfileApplyPreview;
struct RestoreBaseline;
struct RestoreOutcome;
struct StartupApplyResult;
struct StartupReadings;
struct SystemSnapshot;
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
/// The class is divided by concern: each `SystemManager+Concern.cpp` stands in the folder of its concern.
class SystemManager : public QObject, public FlowEnvironment {
    Q_OBJECT

public:
    /// @param host           the ports
    /// @param notifications  where flows tell the rest of the program what has changed
    SystemManager(const Host& host, NotificationCenter& notifications, QObject* parent = nullptr);

    // ---- Log

    /// Appends one entry exactly as given: no time stamp, no prefix. An entry that contains "[WARNING]" is
    /// dropped without a trace: the log stays free of warnings, whoever composes them.
    void log(const QString& message) override;
    const QStringList& logMessages() const { return m_logMessages; }

    const Host& host() const override { return m_host; }

    // ---- Busy state

    /// Brackets a long operation. Brackets nest; the outermost text stays.
    void beginBusy(const QString& message);
    void endBusy();
    bool isBusy() const { return m_isBusy; }
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
    /// @param prompt  shown to the user; replaced by a neutral text once the last run of this process has succeeded,
    ///                because the system may then hold the authorization. One that holds a double quote fails the run
    ///                before the script engine sees it, and so does a line of more than 200,000 bytes.
    /// @return status 0 and the script's text; or 1 with the system's message: a cancel is a failure like any other
    QCoro::Task<CommandResult> executeAdminScript(QString script, QString prompt) override;

    /// Queues the line when a batch is open, and gives status 0 at once; otherwise runs it.
    QCoro::Task<CommandResult> runAdminCommand(QString script, QString prompt);

    /// Opens a batch: what needs root is queued until `finishAdminBatch` runs it as one line under one prompt.
    void beginAdminBatch();
    /// Adds commands to the open batch, tolerant and joined, as one entry.
    void queueAdminCommands(const QStringList& commands);
    /// Runs what was queued; with nothing queued no prompt appears. Closes the batch in every case.
    /// @return true when nothing failed
    QCoro::Task<bool> finishAdminBatch(QString prompt);
    int adminBatchDepth() const { return m_adminBatchDepth; }

    enum class BackgroundTaskItemsFetchMode { automatic, deferredToAdminBatch };
    /// Called before a batch that will need the background task list, whose dump needs root: until the batch is
    /// finished, what is to happen to background items is put into a plan, and the dump joins the batch.
    void deferBackgroundTaskFetchToAdminBatch();
    BackgroundTaskItemsFetchMode backgroundTaskItemsFetchMode() const { return m_backgroundTaskItemsFetchMode; }
    const std::optional<BackgroundLoginItemChangePlan>& pendingBackgroundLoginItemChanges() const {
        return m_pendingBackgroundLoginItemChanges;
    }

    /// Forgets that an administrator run succeeded: the next shows its caller's prompt. Called at termination.
    void clearAdminAuthorization() { m_adminAuthorizationFlag = false; }

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

    // ---- Snapshots

    enum class MasterArchive { No, Yes };
    /// Records the user's own settings as the latest snapshot, read from the live system. What can't be read is recorded as
    /// having no value.
    /// @param archive  also keeps it for good, as a master baseline; a failure of that is none of the capture
    /// @return true when the snapshot was written
    QCoro::Task<bool> captureSystemSnapshot(std::optional<QString> label, MasterArchive archive);
    /// The store of what is kept for good.
    MasterSystemBaselineManager& masterBaselines() { return m_masterBaselines; }

    // ---- The way back

    /// Whether there is a snapshot or a master baseline to go back to. Logs nothing.
    QCoro::Task<bool> hasRestoreBaseline();
    /// What a way back goes by; none when nothing was captured. Logs when it is a master baseline.
    QCoro::Task<std::optional<RestoreBaseline>> selectRestoreBaseline();
    /// Puts the captured preferences and system settings back. Uses the batch that its caller opened, if any.
    QCoro::Task<bool> restoreFromSnapshot(SystemSnapshot snapshot);
    /// The tweaks alone, from the baseline or to standard defaults: one batch, one prompt.
    QCoro::Task<RestoreOutcome> revertPerformanceTweaks();
    /// The whole system: with a baseline also login items, network services and launch items.
    QCoro::Task<RestoreOutcome> reinstateSystem();

    /// "Undo Performance Tweaks": takes the program's applications out of the login items and reverts, while it is busy.
    QCoro::Task<RestoreOutcome> undoTweaks();
    /// "Apply Default": the same, and makes Default the last applied profile when it succeeded.
    QCoro::Task<RestoreOutcome> restoreDefault();
    /// "Reinstate System", while it is busy.
    QCoro::Task<RestoreOutcome> reinstateWholeSystem();

    // ---- Startup: what runs at login

    enum class StartupRefresh { UseCache, Force };
    /// What runs when the user logs in, each item once, sorted by name. Callers share a run. A forced refresh drops
    /// what was found before; the background task list is taken as it stands.
    QCoro::Task<QList<StartupItem>> discoverStartupItems(StartupRefresh refresh);
    /// Forgets the discovered items and the login items, and lets a run that is under way end without a trace.
    void invalidateStartupCaches();

    // ---- Startup: login items

    /// As System Events lists them; from the cache if they were read before.
    QCoro::Task<QList<LoginItem>> rawLoginItems();
    QCoro::Task<LoginItemList> readLoginItemsFromSystemEvents();
    /// Those fit for showing: neither audio software nor an application's agents. Logs a missing permission.
    QCoro::Task<QList<LoginItem>> visibleLoginItems();
    /// True when it was deleted. Every item of the name goes, in any case.
    QCoro::Task<bool> removeLoginItemByName(QString name);
    QCoro::Task<bool> removeLoginItemAtPath(QString path);
    /// True when the item exists afterwards.
    QCoro::Task<bool> addLoginItem(QString path, bool hidden);
    /// Removes login items by their names and writes down which they were.
    /// @param excludedIds  agents that stay all the same, by id or name
    QCoro::Task<bool> disableLoginItems(QStringList names, QSet<QString> excludedIds);

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
    QCoro::Task<bool> removeUnconfiguredManagedApps(StartupConfiguration configuration);
    /// @param paths  the managed ones when absent
    QCoro::Task<bool> removeManagedStartupApps(std::optional<QSet<QString>> paths);
    QCoro::Task<bool> configureStartupApps(QList<StartupLaunchItem> launchItems);
    /// Stops windows and applications from reopening, and removes from login what isn't permitted.
    QCoro::Task<bool> applyCleanReboot(CleanReboot cleanReboot);

    // ---- Startup: the whole configuration

    /// Carries out the startup half of a profile. Shows no prompt of its own inside a batch.
    QCoro::Task<bool> applyStartupConfiguration(StartupConfiguration configuration);
    /// The same by itself: with its own batch and verification.
    QCoro::Task<StartupApplyResult> applyStartupChanges(StartupConfiguration configuration);
    /// Changes nothing and never prompts.
    QCoro::Task<StartupChangePreview> previewStartupChanges(StartupConfiguration configuration);
    QCoro::Task<ApplyVerificationResult> verifyStartupConfiguration(StartupConfiguration configuration);

    // ---- Startup: background items

    /// Where an administrator run leaves the dump of the background task list.
    QString backgroundDumpPath() const;
    /// The list, where the tool gives it without administrator rights and it isn't empty.
    QCoro::Task<std::optional<QList<BackgroundTaskItem>>> readBackgroundTaskDumpUnprivileged();
    /// Fills the cache without administrator rights when it can.
    QCoro::Task<void> loadBackgroundTaskItems();
    enum class PrivilegedFetch { Refused, Allowed };
    /// Fills the cache, or lets the open batch fill it. @param prompt  shown when administrator rights are needed
    QCoro::Task<void> ensureBackgroundTaskItems(QString prompt, PrivilegedFetch privileged);
    /// Reads the file that an administrator run has left, and removes it.
    QCoro::Task<void> loadPrivilegedBackgroundDump();
    void markBackgroundLabelDisabled(const QString& label);
    /// The list as it is known; none when it was never read.
    const std::optional<BackgroundTaskList>& backgroundTaskItems() const { return m_backgroundTaskItemsCache; }

    /// Switches records off by the strongest means that works, and takes their helpers out of their applications.
    /// @param kindWord  "background login item" or "cloud sync launch item"
    QCoro::Task<bool> disableBackgroundItems(QList<BackgroundTaskItem> items, QString kindWord);
    QCoro::Task<bool> disableBackgroundLabels(QSet<QString> labels);
    QCoro::Task<bool> disableCloudSyncBackgroundItems(CloudSyncServices services);
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
    /// @return false when the administrator run was refused or failed
    QCoro::Task<bool> clearSystemCaches();
    /// Tells of it in the log alone, whatever became of it.
    QCoro::Task<void> emptyTrash();
    /// Removes everything that is in the user's Downloads folder.
    QCoro::Task<void> purgeDownloads();
    /// What the user chose, one after the other: a step that fails doesn't keep the next from running.
    QCoro::Task<MaintenanceOutcome> runMaintenance(MaintenanceSelection selection);

    // ---- Reading the live system

    using PreferenceHost = quorvane::PreferenceHost;
    /// The value of a preference as the `defaults` tool prints it, trimmed; none when the key isn't set.
    QCoro::Task<std::optional<QString>> readDefaultValue(QString domain, QString key,
                                                         PreferenceHost host = PreferenceHost::Any);
    QCoro::Task<PowerSettings> readPowerSettings();
    /// True while a backup is running at this moment, whatever the automatic backups are set to; none when
    /// unknown.
    QCoro::Task<std::optional<bool>> readTimeMachineState();
    /// True while the boot volume is indexed; none when unknown.
    QCoro::Task<std::optional<bool>> readSpotlightState();

    /// The path of Notification Center's per-host preferences, a domain for `readDefaultValue`.
    QString notificationCenterPreferences() const;

    // ---- Verification

    using UnselectedTweaks = quorvane::UnselectedTweaks;
    /// Reads each tweak back from the live system, in a fixed order.
    /// @param cleanReboot  used when the settings select it
    QCoro::Task<ApplyVerificationResult>
    verifyAppliedSettings(PerformanceSettings settings, UnselectedTweaks unselected, CleanReboot cleanReboot = {});
    void logVerificationResult(const ApplyVerificationResult& result, const QString& section);
    /// The result of the last flow that verified.
    const std::optional<ApplyVerificationResult>& lastApplyVerification() const { return m_lastApplyVerification; }

    /// Which configuration this Mac is in: the first profile that fits, else Default, else none. The last applied profile is
    /// tried first and stays active when nothing fits. Records the outcome and posts QuorvaneSystemVerified.
    /// @param profiles     the saved ones, in their order
    /// @param appliedName  of the last applied profile; the stored one when none
    QCoro::Task<std::optional<SystemConfigurationMatch>> scanCurrentSystem(QList<UnifiedProfile> profiles,
                                                                           std::optional<QString> appliedName = {});
    /// The search alone.
    QCoro::Task<std::optional<SystemConfigurationMatch>> findSystemMatch(QList<UnifiedProfile> profiles,
                                                                         std::optional<QString> appliedName = {});
    bool isVerifyingSystem() const { return m_isVerifyingSystem; }
    bool hasVerifiedSystem() const { return m_hasVerifiedSystem; }
    const std::optional<SystemConfigurationMatch>& systemMatch() const { return m_systemMatch; }

Q_SIGNALS:
    void messageLogged(const QString& message);
    void isBusyChanged(bool isBusy);
    void busyMessageChanged(const QString& busyMessage);
    void debugModeChanged(bool debugMode);
    void isVerifyingSystemChanged(bool isVerifyingSystem);
    void systemMatchChanged();
    /// A profile has become the active one. What follows from that is a task of its own: connect with Qt::QueuedConnection.
    void appliedConfigurationRecorded(const QString& profileName);

private:
    // core/SystemManager+AdminBatch.cpp
    QCoro::Task<bool> flushAdminBatch(QString prompt);
    void closeAdminBatch();
    void endBackgroundTaskFetchDeferral();

    // tweaks/SystemManager+Tweaks.cpp
    QCoro::Task<void> runTweakSteps(QList<TweakStep> steps);
    QCoro::Task<CommandResult> runOrQueueSystemCommands(QStringList commands);
    QCoro::Task<bool> verifyTweaks(PerformanceSettings settings, UnselectedTweaks unselected, CleanReboot cleanReboot);

    // snapshots/SystemManager+Snapshots.cpp
    QCoro::Task<SystemSnapshot> readSystemSnapshot(std::optional<QString> label);
    std::optional<QString> saveSnapshot(const SystemSnapshot& snapshot);
    QCoro::Task<void> archiveAsMaster(SystemSnapshot snapshot);
    SnapshotManager snapshotManager() const;

    // snapshots/SystemManager+Restore.cpp
    QCoro::Task<std::optional<RestoreBaseline>> findRestoreBaseline();
    QCoro::Task<bool> reinstateFromSnapshot(SystemSnapshot snapshot);
    QCoro::Task<void> restoreLoginItems(SystemSnapshot snapshot);
    QCoro::Task<bool> restoreNetworkServices(SystemSnapshot snapshot);

    // snapshots/SystemManager+WaysBack.cpp
    QCoro::Task<RestoreOutcome> removeStartupAppsAndRevert();

    // startup/SystemManager+StartupDiscovery.cpp
    QCoro::Task<QList<StartupItem>> findStartupItems();

    // startup/SystemManager+LoginItems.cpp
    enum class SystemEventsReply { Done, Unchanged, Failed };
    QCoro::Task<LoginItemList> loginItems();
    /// Called when a reader must see the system as it is now.
    void dropLoginItems();
    QCoro::Task<void> logMissingSystemEventsPermission();
    QCoro::Task<SystemEventsReply> changeLoginItems(QString script);
    QCoro::Task<bool> removeLoginItem(LoginItem item, LoginItemRemoval removal);
    QCoro::Task<bool> removeLeftoverLoginItems(NamedLoginItems named, QSet<QString> excludedIds);
    bool holdsBack(const LoginItem& item, const QSet<QString>& excludedIds);
    void writeRemovedLoginItems(const QList<LoginItem>& items);
    QCoro::Task<bool> areLoginItemsGone(QSet<QString> names);

    // startup/SystemManager+LaunchItems.cpp
    struct SystemLaunchPlist;
    struct LaunchPlistPlaces;
    QList<LaunchFolder> launchFolders() const;
    void createBackupFolder();
    bool requireRealFolders(const QStringList& folders);
    LaunchPlistPlaces placesOfLaunchPlist(const QString& label) const;
    QStringList namesIn(const QString& folder) const;
    void rememberMove(const QString& path);
    bool isMoveQueued(const QString& path) const;
    QCoro::Task<bool> disableUsersLaunchPlist(QString label, LaunchFolder folder);
    QCoro::Task<bool> disableSystemLaunchPlists(QList<SystemLaunchPlist> plists);
    QString unusableBackupFolder(const LaunchFolder& folder) const;
    QStringList plistsPutAside(const LaunchFolder& folder) const;
    QCoro::Task<bool> restoreLaunchPlist(LaunchFolder folder, QString name);
    QCoro::Task<void> enableUsersJob(QString plist);
    QCoro::Task<void> loadLaunchPlist(QString plist);
    void logUnusableFolder(const QString& folder);

    // startup/SystemManager+KeptLaunchItems.cpp
    bool isRootsAlone(const QString& keepFolder) const;
    KeptLaunchPlist keptLaunchPlist(const LaunchFolder& folder, const QString& name) const;
    bool holdTheSame(const QString& path, const QString& otherPath) const;
    void removeBackup(const QString& backup);

    // startup/SystemManager+StartupApps.cpp
    struct ManagedAppRemoval;
    ManagedAppRemoval managedAppRemoval(const LoginItemList& list, const QSet<QString>& going) const;
    QCoro::Task<bool> removeManagedStartupApp(QString path, ManagedAppRemoval before);

    // startup/SystemManager+CleanReboot.cpp
    QCoro::Task<bool> removeNonPermittedLoginItems(CleanReboot cleanReboot);
    void planCleanReboot(const CleanReboot& cleanReboot);
    QCoro::Task<bool> disableNonPermittedBackgroundItems(CleanReboot cleanReboot);

    // startup/SystemManager+StartupApply.cpp
    QCoro::Task<bool> carryOutStartupChanges(StartupConfiguration configuration);
    QCoro::Task<bool> disableTargetLoginItems(QSet<QString> names);
    QCoro::Task<void> removeTargetLoginPaths(QSet<QString> paths);
    QCoro::Task<bool> disableTargetLaunchItems(QSet<QString> labels);
    QCoro::Task<bool> disableTargetBackgroundItems(QSet<QString> labels);
    QCoro::Task<bool> disableCloudServices(CloudSyncServices services);

    // startup/SystemManager+StartupVerification.cpp
    QCoro::Task<StartupReadings> startupReadings(StartupConfiguration configuration);
    bool hasLaunchPlist(const QString& label) const;

    // startup/SystemManager+BackgroundTasks.cpp
    QString backgroundDumpCommand() const;
    bool queueBackgroundDump();
    bool requireRoomForBackgroundDump();
    std::optional<QString> removeBackgroundDump();
    QString takeBackgroundDump();

    // startup/SystemManager+BackgroundLoginItems.cpp
    enum class PlanResolution { BeforeFlush, AfterFlush };
    /// @return false when a helper that belongs into the batch couldn't be queued; what fails after the flush is in the log
    QCoro::Task<bool> resolvePendingBackgroundPlan(PlanResolution resolution);
    QCoro::Task<bool> climbLadder(QList<BackgroundTaskItem> items, QSet<QString> labels, QString kindWord);
    void queueBackgroundLabels(const QSet<QString>& labels);
    void queueCloudSyncServices(const CloudSyncServices& services);
    void queueBackgroundLabelCommands(const QString& label);
    bool queueBackgroundLabel(const QString& label);
    void takeBackQueuedBackgroundLabels();
    QCoro::Task<bool> disableBackgroundLabel(QString label);
    QSet<QString> disableableLabels(const QSet<QString>& labels, const QString& kindWord);
    bool isProtectedBackgroundLabel(const QString& label) const;
    void queuePlannedLabels(const QSet<QString>& labels, const QString& logLine);
    QList<BackgroundDisableTarget> disableTargets(const QList<BackgroundTaskItem>& records,
                                                  const QSet<QString>& labels) const;
    enum class UnavailableLine { EachTarget, Once };
    void disallowTargets(const QList<BackgroundDisableTarget>& targets, UnavailableLine unavailableLine);

    // startup/SystemManager+Quarantine.cpp
    enum class QuarantineRights { User, Privileged, Queued };
    enum class QuarantineStep { Done, Failed, NeedsRoot };
    QCoro::Task<bool> quarantineBundledResources(QList<BackgroundDisableTarget> targets, QuarantineRights rights);
    QCoro::Task<QuarantineStep> quarantineBundledResource(BackgroundDisableTarget target, QuarantineRights rights);
    QCoro::Task<bool> quarantineAsUser(QString source, QString destination);
    QCoro::Task<bool> quarantineAsRoot(QList<BackgroundDisableTarget> targets);
    void logFailedQuarantine(const QString& source, const QString& error);
    QCoro::Task<void> retryQuarantineOfActiveTargets(QList<BackgroundDisableTarget> targets);
    QString quarantineDestination(const BackgroundDisableTarget& target) const;
    QList<BackgroundDisableTarget> withoutSharedPlaces(const QList<BackgroundDisableTarget>& targets);
    void removeHelper(const QString& source);

    // services/SystemManager+Network.cpp
    QCoro::Task<QStringList> networkSwitchCommands(NetworkSwitch position);

    // services/SystemManager+Maintenance.cpp
    QCoro::Task<QStringList> systemCacheCommands();
    bool takeSystemCacheEntry(FolderEntries& entries, const QString& folder, QStringList& commands);
    void logSkippedCacheItem(const QString& name);

    // verification/SystemManager+Verification.cpp
    QCoro::Task<bool> isAppRestorationOff();
    QCoro::Task<ApplyVerificationResult> verifyCleanReboot(CleanReboot cleanReboot);

    // verification/SystemManager+Matching.cpp
    std::optional<QString> lastAppliedName(const std::optional<QString>& given) const;
    void keepAppliedProfile(const UnifiedProfile& profile);
    void logSystemMatch();
    void postSystemMatch();
    void setVerifyingSystem(bool isVerifying);

    Host m_host;
    NotificationCenter& m_notifications;
    ServiceManagementBTM m_serviceManagement;
    MasterSystemBaselineManager m_masterBaselines;
    SystemReadings m_readings{*this};

    QStringList m_logMessages;
    bool m_isBusy = false;
    QString m_busyMessage;
    int m_busyDepth = 0;
    bool m_debugMode = false;

    int m_adminBatchDepth = 0;
    QStringList m_adminCommandBatch;
    QMultiHash<QString, QString>
        m_queuedMoves;                      ///< launch plists and bundled resources that the open batch moves, by their
                                            ///< folded paths: a second move would delete the only copy
    QStringList m_plistsBroughtBack;        ///< places to which the open batch brings launch plists back
    QSet<QString> m_queuedBackgroundLabels; ///< labels that the open batch switches off
    QHash<QString, QStringList> m_dispositionsBeforeBatch; ///< of these labels, put back when the batch fails
    bool m_adminAuthorizationFlag = false; ///< true when the last administrator script of this process succeeded

    std::optional<BackgroundTaskList> m_backgroundTaskItemsCache;
    BackgroundTaskItemsFetchMode m_backgroundTaskItemsFetchMode = BackgroundTaskItemsFetchMode::automatic;
    bool m_needsPrivilegedBackgroundTaskItemFetch = false; ///< the batch will leave a dump to read
    std::optional<BackgroundLoginItemChangePlan> m_pendingBackgroundLoginItemChanges;

    std::optional<LoginItemList> m_rawLoginItemsCache;
    quint64 m_loginItemsAge = 0; ///< counts how often the login items were dropped: a slow read may come too late
    std::optional<QList<StartupItem>> m_discoveredStartupItemsCache;
    std::optional<QFuture<QList<StartupItem>>> m_startupDiscoveryTask;
    quint64 m_startupCachesAge = 0; ///< counts how often the caches were invalidated
    std::optional<QList<StartupLaunchItem>> m_performanceApplicationsCache;

    bool m_isVerifyingSystem = false;
    bool m_hasVerifiedSystem = false;
    std::optional<SystemConfigurationMatch> m_systemMatch;
    std::optional<ApplyVerificationResult> m_lastApplyVerification;
};

} // namespace quorvane
