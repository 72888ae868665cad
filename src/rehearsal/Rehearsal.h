#pragma once

#include "actions/Session.h"
#include "platform/simulated/SimulatedHost.h"
#include "rehearsal/Arguments.h"
#include "rehearsal/TerminalListener.h"

#include <QCoroTask>
#include <QObject>

#include <optional>

namespace quorvane {

/// What a display shows.
struct ShownPicture {
    QString display; ///< its localized name
    QString path;    ///< empty when the system doesn't say
};

/// A backup of profiles as a list shows it.
struct ListedBackup {
    QString id; ///< by which it is restored
    QString title;
    QString detail;
};

/// What a command came to.
struct RehearsalOutcome : ActionOutcome {
    std::optional<QList<StartupItem>> startupItems;    ///< where the command looks for them
    std::optional<QList<ShownPicture>> displays;       ///< where the command changes what they show
    std::optional<QList<ListedBackup>> backups;        ///< where the command lists them
    std::optional<QList<DisplayLabel>> labels = {};    ///< where it has put a label onto the displays
    std::optional<QList<KeptRun>> runs = {};           ///< where the command lists those whose logs are kept
    std::optional<QStringList> keptLog = {};           ///< where it prints one
    std::optional<QList<ChoosableRow>> baselines = {}; ///< where the command lists what there is to go back to

    bool isDone() const { return succeeded && (!verification || verification->failed.isEmpty()); }
};

/// A session of the program on one simulated Mac, whose actions are started from a terminal. It has no lock: nobody can use
/// the terminal but who could also remove the Mac.
class Rehearsal : public QObject {
    Q_OBJECT

public:
    /// Throws std::exception when the folder holds no simulated Mac or an option's file can't be used.
    Rehearsal(const QString& macFolder, macsim::Authorization authorization, const SimulatedHostOptions& options);

    const QStringList& log() const { return m_session.system.logMessages(); }

    // The commands. Those with a profile's file throw UnusableInput for one that can't be used; nothing is changed then.

    QCoro::Task<RehearsalOutcome> apply(Arguments arguments);
    QCoro::Task<RehearsalOutcome> preview(Arguments arguments);
    QCoro::Task<RehearsalOutcome> applyStartup(Arguments arguments);
    QCoro::Task<RehearsalOutcome> applyTweaks(Arguments arguments);
    QCoro::Task<RehearsalOutcome> verify(Arguments arguments);
    /// Back to the settings that were saved, or to those of a fresh macOS. Only the restore decides whether it is done; the
    /// scan that follows tells in which configuration the Mac is then.
    QCoro::Task<RehearsalOutcome> restoreDefault(Arguments arguments);
    QCoro::Task<RehearsalOutcome> undoTweaks(Arguments arguments);
    QCoro::Task<RehearsalOutcome> reinstate(Arguments arguments);
    QCoro::Task<RehearsalOutcome> saveSnapshot(Arguments arguments);
    /// What an interrupted apply or way back was to do is done.
    QCoro::Task<RehearsalOutcome> resume(Arguments arguments);
    /// What was there before an interrupted apply is there again.
    QCoro::Task<RehearsalOutcome> rollBack(Arguments arguments);
    /// Done when a configuration fits.
    QCoro::Task<RehearsalOutcome> scan(Arguments arguments);
    QCoro::Task<RehearsalOutcome> discover(Arguments arguments);
    QCoro::Task<RehearsalOutcome> maintain(Arguments arguments);
    QCoro::Task<RehearsalOutcome> operateNetwork(Arguments arguments);
    /// Shows a profile's name on the desktop pictures, and is done when every display has it, or takes it away.
    QCoro::Task<RehearsalOutcome> changeOverlay(Arguments arguments);
    QCoro::Task<RehearsalOutcome> backUpProfiles(Arguments arguments);
    QCoro::Task<RehearsalOutcome> listBackups(Arguments arguments);
    QCoro::Task<RehearsalOutcome> restoreBackup(Arguments arguments);
    QCoro::Task<RehearsalOutcome> listBaselines(Arguments arguments);
    /// Throws UnusableInput for a number that isn't listed.
    QCoro::Task<RehearsalOutcome> useBaseline(Arguments arguments);

    /// Without a number lists the kept logs; done when they could be listed. With one it prints that one.
    QCoro::Task<RehearsalOutcome> showLogs(Arguments arguments);

    /// Ends when nothing runs on that a command has led to.
    QCoro::Task<void> finished() { return m_session.finished(); }

    /// Ends whatever runs, so that the command comes to its end.
    void quit() { m_session.endPorts(); }

Q_SIGNALS:
    /// A line for people, in the order in which things happen: the log, and what a review shows.
    void linePrinted(const QString& line);

private:
    SessionParts sessionParts();
    TerminalListener listener(TerminalListener::Manners manners);
    void print(const QStringList& lines);
    void showLabels(const QList<DisplayLabel>& labels);
    QCoro::Task<RehearsalOutcome> outcome(TerminalListener& listener, QCoro::Task<ActionOutcome> action);
    void requireOwnName(const UnifiedProfile& profile, const QString& hostPath) const;
    std::optional<UnifiedProfile> storedProfile(const UnifiedProfile& profile, const QString& hostPath);
    QList<ShownPicture> shownPictures();
    QCoro::Task<RehearsalOutcome> printKeptLog(QList<KeptRun> runs, int number);

    AuthorizationPolicy m_authorization;
    SimulatedHost m_host;
    Session m_session;
    std::optional<QList<DisplayLabel>> m_labels;
};

} // namespace quorvane
