#pragma once

#include "core/Flow.h"
#include "startup/launchd/DisabledServices.h"
#include "startup/launchd/KeptOff.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

namespace QCoro {
template <typename T>
class Task;
}

namespace quorvane {

class LaunchdReadings;
struct RecordedOverride;
struct ServiceGoing;

/// launchd, as the user may ask and change it: its overrides, which are kept until somebody may have changed them, and which of
/// them the program itself has written. Main thread.
class Launchd : private Flow {
public:
    explicit Launchd(FlowEnvironment& environment);
    /// The same launchd, reached by another way: what one has read the other knows.
    Launchd(FlowEnvironment& environment, const Launchd& same);

    // ---- Reading

    /// From the cache if they were read before. A domain that launchd doesn't tell of is none.
    QCoro::Task<LaunchdOverrides> overrides();
    /// Together with the plists in the launch folders, which are read anew.
    QCoro::Task<LaunchdReadings> readings();
    /// As they were read last; of neither domain when nobody has asked.
    LaunchdOverrides known() const;
    /// Called when a reader must see launchd as it is now: at the beginning of each flow, and when a batch has run.
    void drop();
    /// Called at the beginning of each flow: forgets which jobs were loaded, too.
    void beginFlow();
    /// Whether a job is loaded, running or not; none where launchd doesn't tell. In a flow each is asked for once, those of the
    /// user's session all together: what the flow itself stops meanwhile was loaded.
    QCoro::Task<std::optional<bool>> isLoaded(LaunchdService service);

    // ---- Switching off

    /// Writes down, before they are switched off, those that launchd doesn't have as disabled yet. One of which nobody can say
    /// whether it has counts as well: else nothing would ever switch it on again.
    /// @return false, with a line in the log, when the record can't be saved: no override may be written then
    QCoro::Task<bool> recordOverrides(const QList<LaunchdService>& services);
    /// The same with what was before, as launchd tells it.
    QCoro::Task<bool> recordServices(QList<ServiceGoing> services);
    /// Takes back out of the record what was written down since the last call and isn't disabled all the same; the rest is
    /// confirmed. Called when a batch has run, or has failed: an override that the user writes by themselves later on is theirs.
    QCoro::Task<void> settleRecorded();
    /// The same of what a run has left that was killed before that: called before anything is lifted by the record. Whenever
    /// launchd is asked anew, that is done as well.
    QCoro::Task<void> settleInterrupted();
    /// Switches an agent or a login item off, now and after the next login. What became of it launchd's overrides tell.
    QCoro::Task<void> switchOff(QString label);
    /// "gui/501/com.example.agent", "system/com.example.daemon"
    QString target(const LaunchdService& service) const;
    enum class End {
        Now,
        AtRestart, ///< for a daemon that its application couldn't reach any more
    };
    /// The shell commands that switch a service off as root.
    QStringList rootsSwitchOffCommands(const LaunchdService& service, End end) const;

    // ---- Stopping a job by its plist: it starts again at the next login or restart, unless the plist goes, too

    QCoro::Task<void> stopAgent(QString plist);
    QString rootsStopCommand(LaunchdDomain domain, const QString& plist) const;

    // ---- The way back

    /// Those that the program has written and that haven't been lifted, of labels that it may override. None where the record
    /// can't be read.
    QList<LaunchdService> recordedOverrides() const;
    /// Of those the ones that a way back lifts, with all that was noted of them.
    QList<RecordedOverride> liftableOverrides(const KeptOff& kept) const;
    /// True for one that the program has written, or was about to, and that hasn't been lifted; whatever its label.
    bool hasRecorded(const LaunchdService& service) const;
    /// Asks launchd anew, and takes the service out of the record where it isn't disabled any more.
    /// @return true where launchd still has it as disabled
    QCoro::Task<bool> isStillDisabled(LaunchdService service);
    /// Lifts the recorded overrides of the user's domain; before plists are loaded: launchd loads none that is disabled.
    QCoro::Task<void> liftUsersOverrides(KeptOff kept = {});
    /// The shell commands that lift the recorded ones of the system's domain as root.
    QStringList rootsLiftCommands(const KeptOff& kept = {}) const;
    /// Called when that has been done: asks launchd, takes what is lifted out of the record, and tells of it and of the rest.
    QCoro::Task<void> settleLifted(KeptOff kept = {});

private:
    void forgetJobs();
    QCoro::Task<CommandResult> printDisabled(QString domain);
    QString domainTarget(LaunchdDomain domain) const;
    QString shellTarget(const LaunchdService& service) const;
    QCoro::Task<bool> record(QList<RecordedOverride> overrides);
    std::optional<QList<RecordedOverride>> recordToAddTo();
    QList<LaunchdService> interrupted() const;
    void settle(const QList<LaunchdService>& services, const LaunchdOverrides& now);
    void logLifted(const QList<LaunchdService>& recorded, const QList<LaunchdService>& lifted);

    struct Cache {
        LaunchdOverrides overrides;
        bool isCurrent = false;
        quint64 age = 0;                 ///< counts how often the overrides were dropped: a slow read may come too late
        QList<LaunchdService> unsettled; ///< written down since the last batch
        // Of the flow at hand:
        bool isSessionListed = false;
        std::optional<QSet<QString>> sessionJobs; ///< labels; none where launchd didn't tell
        QHash<QString, std::optional<bool>> daemons;
    };

    std::shared_ptr<Cache> m_cache = std::make_shared<Cache>();
};

} // namespace quorvane
