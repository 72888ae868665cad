#pragma once

#include "profiles/ProfileLabel.h"
#include "wallpaper/DesktopLabel.h"
#include "wallpaper/WallpaperPorts.h"

#include <QFuture>
#include <QObject>
#include <QPromise>

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace QCoro {
template <typename T>
class Task;
}

namespace quorvane {

class NotificationObservation;
class SystemManager;
enum class DesktopChange;

/// The active profile's name on the desktop pictures, so that a performer sees at a glance what their Mac is prepared
/// for: when it is shown, with which name, and when it goes. DesktopLabel does it.
///
/// Everything that changes a display stands in one queue and is done one at a time, in order; of several updates that wait
/// the last name wins. A picture that the user chooses while the label is on is labelled as well, and is then the one that
/// comes back. While the label is off, a display that still shows one gets its own picture back as soon as it can. The
/// system doesn't tell of every change, so the displays are also looked at when the user comes back to the program, the Mac
/// wakes, and another Space is visible.
///
/// A picture that macOS animates can't be put back, so only the option in Settings covers it; anything else leaves it as it is.
///
/// Nothing here is shown in a dialog: the log carries it all, and `displaysLabelled` what became of each display.
///
/// There is one for the life of the program, made at its first use, and it outlives its tasks. Main thread.
class WallpaperProfileOverlay : public ProfileLabel {
    Q_OBJECT

public:
    explicit WallpaperProfileOverlay(const WallpaperPorts& ports, QObject* parent = nullptr);
    ~WallpaperProfileOverlay() override;

    /// Where log lines go; without it nothing is logged.
    void setLogAction(LogAction logAction);
    /// Logs to the program's log, and takes up each profile that becomes the active one.
    void follow(SystemManager& system);

    // Each task ends when the displays show what was asked for, or what a later call has asked for instead.

    QCoro::Task<void> setOverlayEnabled(bool enabled, QString name) override;
    /// At start-up, with what updateForAppliedProfile takes, but no name is written down: nothing was applied. While Default stands there, a display that still shows a label
    /// gets its picture back, and nothing else happens.
    QCoro::Task<void> updateAtStart(QString name) override;
    QCoro::Task<void> updateForAppliedProfile(QString name) override;
    QCoro::Task<void> refreshForProfile(QString name) override;
    /// Shows a name on all displays while the option is on; "Default" takes the label away.
    QCoro::Task<void> applyOverlay(QString name);
    QCoro::Task<void> removeOverlay();

    QCoro::Task<void> finished() override;

    /// True while a change is under way or waits.
    bool isApplyingOverlay() const { return m_isApplyingOverlay; }
    bool isOverlayInPlace() const override;
    bool hasAnimatedPicture() const override;

private:
    struct Job {
        enum class Kind {
            Update,
            Removal,
            Check, ///< somebody may have changed a picture, or a display may have come
        };
        Kind kind;
        QString name;                  ///< of an update
        DesktopLabel::Attempt attempt; ///< of an update
        std::unique_ptr<QPromise<void>> promise;
    };

    bool isEnabled() const;
    bool isOff() const;
    QString storedName() const;
    QString comingName() const;
    std::optional<QString> resolvedProfileName(const QString& explicitName) const;
    std::optional<QString> resolvedOrLogged(const QString& explicitName) const;
    void log(const QString& line) const;
    QCoro::Task<void> showActive(QString name);

    void lookAgain(DesktopChange change);
    QFuture<void> enqueue(Job::Kind kind, const QString& name = {},
                          DesktopLabel::Attempt attempt = DesktopLabel::Attempt::All);
    Job* waitingJobToShare(Job::Kind kind);
    QCoro::Task<void> runQueue();
    QCoro::Task<void> carryOutGuarded(Job::Kind kind, QString name, DesktopLabel::Attempt attempt);
    QCoro::Task<void> carryOut(Job::Kind kind, QString name, DesktopLabel::Attempt attempt);
    QCoro::Task<void> carryOutUpdate(QString name, DesktopLabel::Attempt attempt);
    QCoro::Task<void> carryOutCheck();
    void carryOutRemoval();
    QCoro::Task<void> show(QString name, DesktopLabel::Attempt attempt);

    WallpaperPorts m_ports;
    LogAction m_logAction;
    DesktopLabel m_label;
    std::unique_ptr<NotificationObservation> m_notifications;
    std::unique_ptr<NotificationObservation> m_desktopChanges;

    std::deque<Job> m_waiting;
    std::optional<QString> m_nameOfJobAtHand; ///< what will stand there when it is done
    bool m_isApplyingOverlay = false;
};

} // namespace quorvane
