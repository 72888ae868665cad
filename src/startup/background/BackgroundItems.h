#pragma once

#include "core/Flow.h"
#include "startup/background/BackgroundDisableTarget.h"
#include "startup/background/BackgroundFetch.h"
#include "startup/background/BackgroundLoginItemChangePlan.h"
#include "startup/background/BackgroundTaskList.h"
#include "startup/background/ServiceManagementBTM.h"
#include "startup/items/CleanReboot.h"
#include "startup/items/CloudSyncService.h"

#include <QList>
#include <QSet>
#include <QString>

#include <optional>

namespace quorvane {

class AdminBatch;
struct ApplyVerificationResult;

/// The background task list and what is switched off in it.
///
/// The list needs root, so a batch that will need it defers: until the batch is finished, what is to happen is put into a
/// plan, and the dump joins the batch. Records go by a ladder of means, of which the last takes their helpers out of their
/// applications. Main thread.
class BackgroundItems : private Flow {
public:
    BackgroundItems(FlowEnvironment& environment, AdminBatch& batch);

    // ---- The list: BackgroundItems+List.cpp

    /// As it is known; none when it was never read.
    const std::optional<BackgroundTaskList>& list() const { return m_list; }
    /// Of the list; empty when it was never read.
    QList<BackgroundTaskItem> records() const;
    /// The file names of launch plists, and the files, that the list shows to be audio software's.
    QSet<QString> protectedPlists() const;
    QSet<QString> protectedPaths() const;
    /// Where an administrator run leaves the dump.
    QString dumpPath() const;
    /// Where the tool gives it without administrator rights and it isn't empty.
    QCoro::Task<std::optional<QList<BackgroundTaskItem>>> readUnprivileged();
    /// Fills the cache without administrator rights when it can.
    QCoro::Task<void> load();
    /// Fills the cache, or lets the open batch fill it. @param prompt  shown when administrator rights are needed
    QCoro::Task<void> ensure(QString prompt, PrivilegedFetch privileged);
    /// Reads the file that an administrator run has left, and removes it. One without a record wasn't read: it replaces no list.
    QCoro::Task<void> loadPrivilegedDump();
    /// For good: no batch that fails takes it back.
    void markDisabled(const QString& label);
    /// Called when launch plists have come back, and with them what launchd had been told: the next dump counts as it stands.
    void forgetSwitchedOff() { m_switchedOff.clear(); }

    // ---- The plan of a batch: BackgroundItems+Plan.cpp

    /// Called before a batch that will need the list.
    void defer();
    BackgroundTaskItemsFetchMode fetchMode() const { return m_fetchMode; }
    bool isDeferred() const { return m_fetchMode == BackgroundTaskItemsFetchMode::deferredToAdminBatch; }
    const std::optional<BackgroundLoginItemChangePlan>& plan() const { return m_plan; }
    void planCleanReboot(const CleanReboot& cleanReboot);
    void planLabels(const QSet<QString>& labels);
    void planServices(const CloudSyncServices& services);

    /// What a batch does for the plan.
    struct Joined {
        bool isPrepared = true;       ///< false when something that belongs into the batch couldn't be queued
        bool isWaiting = false;       ///< the plan is carried out once the batch has left the dump
        QSet<QString> resolvedLabels; ///< what the plan has come to already, by the list as it was
    };
    /// Called before the batch runs: carries the plan out where the list is known, and lets the dump join the line, which shows
    /// newcomers, or the whole list. It joins no line that would be empty without it where the list is known.
    QCoro::Task<Joined> joinBatch();
    /// Called when the line has run, or was empty: reads the dump that it left, and carries out what of the plan waited for it.
    QCoro::Task<void> followBatch(Joined joined);
    /// Called when the line has failed: what was marked as off is on, and must be found so by the verification and by the
    /// next apply.
    void takeBackQueuedLabels();
    void endDeferral();

    // ---- Switching off: BackgroundItems.cpp

    /// Switches records off by the strongest means that works, and takes their helpers out of their applications.
    QCoro::Task<bool> disable(QList<BackgroundTaskItem> items, BackgroundItemKind kind);
    QCoro::Task<bool> disableLabels(QSet<QString> labels);
    QCoro::Task<bool> disableServices(CloudSyncServices services);
    QCoro::Task<bool> disableNonPermitted(CleanReboot cleanReboot);
    /// What a clean reboot leaves of the list; empty when the list was never read.
    QCoro::Task<ApplyVerificationResult> verify(QSet<QString> permittedNames,
                                                std::optional<StartupConfiguration> startup);

private:
    bool isListRead() const { return m_list && !m_list->isEmpty(); }
    QString dumpCommand() const;
    enum class PlaceInLine { First, Last };
    bool queueDump(PlaceInLine place);
    bool requireRoomForDump();
    std::optional<QString> removeDump();
    void removeStrayDumps();
    QString takeDump();

    QCoro::Task<bool> climbLadder(QList<BackgroundTaskItem> items, QSet<QString> labels, BackgroundItemKind kind);
    QCoro::Task<bool> disableLabel(QString label);
    QSet<QString> disableableLabels(const QSet<QString>& labels, BackgroundItemKind kind);
    bool isProtectedLabel(const QString& label) const;
    QList<BackgroundDisableTarget> targetsOf(const QList<BackgroundTaskItem>& records, const QSet<QString>& labels);
    bool runsForWholeMac(const BackgroundTaskItem& record) const;
    bool leavesADaemon(const QString& label) const;
    void markOverridden(const QString& label);
    enum class UnavailableLine { EachTarget, Once };
    void tellOfEndInCall();
    void disallowTargets(const QList<BackgroundDisableTarget>& targets, UnavailableLine unavailableLine);

    enum class PlanResolution { BeforeFlush, AfterFlush };
    /// @param joined  labels that are among its resolved ones are left out, and those that are resolved now join them
    /// @return the same; not prepared when a helper that belongs into the batch couldn't be queued. What fails after the flush is
    ///         in the log.
    QCoro::Task<Joined> resolvePlan(PlanResolution resolution, Joined joined);
    /// False when the open batch switches the label off already.
    bool queueLabel(const QString& label);
    void queuePlannedLabels(const QSet<QString>& labels, const QString& logLine);

    // BackgroundItems+Quarantine.cpp
    enum class QuarantineRights { User, Privileged, Queued };
    enum class QuarantineStep { Done, Failed, NeedsRoot };
    QCoro::Task<bool> quarantine(QList<BackgroundDisableTarget> targets, QuarantineRights rights);
    QCoro::Task<QuarantineStep> quarantineHelper(BackgroundDisableTarget target, QuarantineRights rights);
    bool queueQuarantine(const BackgroundDisableTarget& target);
    QCoro::Task<void> followQueuedQuarantine();
    bool requireQuarantine(const BackgroundDisableTarget& target);
    QCoro::Task<bool> quarantineAsUser(BackgroundDisableTarget target);
    std::optional<QString> rootsCommand(const BackgroundDisableTarget& target);
    QCoro::Task<bool> quarantineAsRoot(QList<BackgroundDisableTarget> targets);
    QCoro::Task<void> retryQuarantineOfActiveTargets(QList<BackgroundDisableTarget> targets);
    void tellOfAppManagement();
    void logFailedQuarantine(const QString& source, const QString& error);
    void makeRoom(const QString& destination);
    void settleLeftovers(const QList<BackgroundTaskItem>& records);
    QString quarantineDestination(const BackgroundDisableTarget& target) const;
    QList<BackgroundDisableTarget> withoutSharedPlaces(const QList<BackgroundDisableTarget>& targets);
    bool removeHelper(const QString& source);

    AdminBatch& m_batch;
    ServiceManagementBTM m_serviceManagement;
    bool m_hasToldOfEndInCall = false;
    std::optional<BackgroundTaskList> m_list;
    BackgroundTaskItemsFetchMode m_fetchMode = BackgroundTaskItemsFetchMode::automatic;
    bool m_needsPrivilegedFetch = false; ///< the batch will leave a dump to read
    std::optional<BackgroundLoginItemChangePlan> m_plan;
    QSet<QString> m_switchedOff;                    ///< labels whose overrides launchd keeps: they don't show in a dump
    bool m_wasKeptOut = false;                      ///< of an application, and not told yet
    QList<BackgroundDisableTarget> m_queuedHelpers; ///< that leave their applications with the open batch
};

} // namespace quorvane
