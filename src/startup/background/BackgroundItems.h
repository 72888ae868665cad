#pragma once

#include "core/Flow.h"
#include "startup/background/BackgroundDisableTarget.h"
#include "startup/background/BackgroundFetch.h"
#include "startup/background/BackgroundLoginItemChangePlan.h"
#include "startup/background/BackgroundRecord.h"
#include "startup/background/BackgroundTaskList.h"
#include "startup/background/PlannedServices.h"
#include "startup/background/ServiceManagementBTM.h"
#include "startup/background/StartupMemory.h"
#include "startup/items/CleanReboot.h"
#include "startup/items/CloudSyncService.h"
#include "startup/items/LoginItem.h"
#include "startup/items/StartupItem.h"
#include "startup/launchd/KeptOff.h"
#include "startup/launchd/LaunchItemGuards.h"
#include "startup/launchd/OverrideRecord.h"

#include <QList>
#include <QSet>
#include <QString>

#include <optional>

namespace quorvane {

class AdminBatch;
class Launchd;
struct ApplyVerificationResult;

/// The background task list, and what is switched off of it.
///
/// The list needs root, so it comes with the line of a batch, as its last command. Until the batch is finished, what is to happen
/// is put into a plan. What the launch folders tell of it before is done by root in that line; the user's part is done as the
/// user when the line has run, and what the list has revealed too late for root waits for the next apply. Main thread.
class BackgroundItems : private Flow {
public:
    BackgroundItems(FlowEnvironment& environment, AdminBatch& batch, Launchd& launchd);

    // ---- The list: BackgroundItems+List.cpp

    /// As the last dump has shown it; none when it was never read.
    const std::optional<BackgroundTaskList>& list() const { return m_list; }
    /// Of the list; empty when it was never read.
    QList<BackgroundTaskItem> records() const;
    /// The files that the list shows to be audio software's.
    QSet<QString> protectedPaths() const;
    /// What the list, and what an organization has laid down, have against switching launch items off.
    QCoro::Task<LaunchItemGuards> launchItemGuards();
    /// Comparable paths of the applications that open at login by their own registration, by the last dump.
    QSet<QString> registeredPaths() const;
    /// Where an administrator run leaves the dump.
    QString dumpPath() const;
    /// Reads the file that an administrator run has left, and removes it. One that isn't whole, or without a record, wasn't read: it
    /// replaces no list.
    QCoro::Task<void> loadPrivilegedDump();
    /// What is kept between two runs of the program.
    StartupMemory memory() const;
    /// Applications that System Events lists are opened by their login items, whatever the dump said of them.
    void forgetRegistered(const QList<LoginItem>& listed);

    // ---- The plan of a batch: BackgroundItems+Plan.cpp

    /// Called before a batch that will need the list.
    void defer();
    /// True while something waits for the next apply.
    bool isSomethingWaiting() const { return !memory().waiting.isEmpty(); }
    BackgroundTaskItemsFetchMode fetchMode() const { return m_fetchMode; }
    bool isDeferred() const { return m_fetchMode == BackgroundTaskItemsFetchMode::deferredToAdminBatch; }
    const std::optional<BackgroundLoginItemChangePlan>& plan() const { return m_plan; }
    void planCleanReboot(const CleanReboot& cleanReboot);
    void planLabels(const QSet<QString>& labels);
    /// Called first in a flow: what the profile wants to have on isn't switched off for an earlier apply, nor by a label that it
    /// shares with what goes.
    void planKept(const StartupConfiguration& startup);
    /// A launch daemon of which nobody knows yet whether an organization manages it: the list will tell.
    void planHeldDaemon(const LaunchPlist& daemon);
    void planServices(const CloudSyncServices& services);

    /// What a batch does for the plan.
    struct Joined {
        bool isPrepared = true; ///< false when something that belongs into the batch couldn't be queued
        bool hasWork = false;   ///< there is a plan to carry out when the line has run
    };
    /// Called before the batch runs: adds what root does for the plan, as far as it is known, and what an earlier apply has left;
    /// then the dump. It joins no line that would be empty without it where the list is known.
    QCoro::Task<Joined> joinBatch();
    /// Called when the line has run, or was empty: reads the dump that it left, does what is the user's, and asks launchd what came
    /// of it all.
    /// @param hasRun  a prompt has stood open: what launchd said before it may be untrue by now
    QCoro::Task<void> followBatch(Joined joined, bool hasRun);
    void endDeferral();
    /// Called by the way back: nothing waits for the next apply any more.
    void forgetWaiting() { setWaiting({}); }
    /// What waits is this from now on.
    void setWaiting(const QList<WaitingService>& waiting);

    // ---- The way back: BackgroundItems+Restore.cpp

    /// Puts helpers back into their applications, allows what was disallowed, and loads as the user what was stopped; what root
    /// loads joins the open batch. Called when the user's overrides are lifted.
    /// @param kept  stays switched off
    QCoro::Task<void> restore(KeptOff kept = {});
    /// Called when that batch is finished: tells of what doesn't run before the next login.
    QCoro::Task<void> settleRestored();
    /// What is recorded; empty, with a line in the log, where that can't be read.
    BackgroundChanges changes();

    /// What a clean reboot leaves of the list; empty when the list was never read.
    QCoro::Task<ApplyVerificationResult> verify(QSet<QString> permittedNames,
                                                std::optional<StartupConfiguration> startup);

private:
    BackgroundLoginItemChangePlan& openPlan();
    bool isListRead() const { return m_list && !m_list->isEmpty(); }
    QString dumpCommand() const;
    bool queueDump();
    bool requireRoomForDump();
    std::optional<QString> removeDump();
    void removeStrayDumps();
    QString takeDump();
    void remember(const StartupMemory& memory);

    QCoro::Task<PlannedServices> resolvePlan(LaunchdReadings launchd);
    bool needsList(const LaunchdReadings& launchd) const;
    bool isNothingManaged() const;
    StartupMemory memoryWithHeld() const;
    QList<LaunchdService> servicesOfRunning(const LaunchdReadings& launchd) const;
    QCoro::Task<bool> queueForRoot(QList<PlannedService> services);
    QCoro::Task<QList<LaunchdService>> switchOff(QList<PlannedService> services);
    void tellOnce(const QStringList& lines);
    void leaveForNextApply(const QList<PlannedService>& services);
    void settleWaiting(const QList<LaunchdService>& settled, const LaunchdOverrides& overrides);
    void disallowTargets(const QList<BackgroundDisableTarget>& targets);
    bool recordDisallowed(const BackgroundDisableTarget& target);
    void forgetDisallowed(const BackgroundDisableTarget& target);
    void tellOfEndInCall();

    // BackgroundItems+Helpers.cpp
    QCoro::Task<void> settleHelpers(QList<BackgroundDisableTarget> targets, QList<LaunchdService> tried,
                                    LaunchdReadings launchd);
    QCoro::Task<bool> hasBrokenSeal(QString application);
    void quarantine(const BackgroundDisableTarget& target);
    bool recordTaken(const BackgroundDisableTarget& target);
    bool requireQuarantine(const BackgroundDisableTarget& target);
    QString quarantineDestination(const BackgroundDisableTarget& target) const;
    void makeRoom(const QString& destination);
    void logFailedQuarantine(const QString& source, const QString& error);
    void tellOfAppManagement();
    void settleLeftovers(const QList<BackgroundTaskItem>& records);

    // BackgroundItems+Restore.cpp
    std::optional<BackgroundChanges> changesToAddTo();
    bool saveChanges(const BackgroundChanges& changes);
    void putHelpersBack(const KeptOff& kept);
    bool putBack(const TakenHelper& helper, const QString& copy);
    void allowAgain(const KeptOff& kept);
    QCoro::Task<void> loadAgain(KeptOff kept);

    AdminBatch& m_batch;
    Launchd& m_launchd;
    ServiceManagementBTM m_serviceManagement;
    bool m_hasToldOfEndInCall = false;
    std::optional<BackgroundTaskList> m_list;
    BackgroundTaskItemsFetchMode m_fetchMode = BackgroundTaskItemsFetchMode::automatic;
    bool m_needsPrivilegedFetch = false; ///< the batch will leave a dump to read
    std::optional<BackgroundLoginItemChangePlan> m_plan;
    QList<StartupItem> m_running;      ///< of the profile at hand
    QList<WaitingService> m_held;      ///< launch daemons that wait for the list
    QList<LaunchdService> m_queued;    ///< what the line switches off
    QSet<QString> m_told;              ///< lines of what stays, each once a batch
    QList<RecordedOverride> m_loading; ///< what the way back loads again
    bool m_wasKeptOut = false;         ///< of an application, and not told yet
};

} // namespace quorvane
