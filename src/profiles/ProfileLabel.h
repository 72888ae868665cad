#pragma once

#include <QList>
#include <QObject>
#include <QString>

namespace QCoro {
template <typename T>
class Task;
}

namespace quorvane {

/// What became of the label on one display.
struct DisplayLabel {
    QString display; ///< as the system calls it: "Color LCD"
    bool isShown = false;
    QString detail; ///< why it isn't shown, or what is amiss with it; empty where all is well

    bool operator==(const DisplayLabel&) const = default;
};

/// The active profile's name on the desktop pictures, as those see it who say when it changes: nothing of pixels. It
/// outlives its tasks. Main thread.
class ProfileLabel : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    // Each task ends when the displays show what was asked for, or what a later call has asked for instead.

    /// The option in Settings. It alone also covers pictures that macOS animates: who calls it with true has asked.
    /// @param name  of the active profile; empty when it isn't known
    virtual QCoro::Task<void> setOverlayEnabled(bool enabled, QString name) = 0;
    /// At start-up, with what updateForAppliedProfile takes. While Default stands there, a display that still shows a label
    /// gets its picture back, and nothing else happens.
    virtual QCoro::Task<void> updateAtStart(QString name) = 0;
    /// After an apply: brings the label up to date with the active profile.
    /// @param name  empty when it isn't known. The last applied profile, the first saved one, or the name that stands there
    ///              already is then taken.
    virtual QCoro::Task<void> updateForAppliedProfile(QString name) = 0;
    /// When another profile was chosen. The name that stands there already changes nothing.
    virtual QCoro::Task<void> refreshForProfile(QString name) = 0;

    /// Ends when nothing is under way any more.
    virtual QCoro::Task<void> finished() = 0;

    /// True when the option is on and every display shows the stored name's label.
    virtual bool isOverlayInPlace() const = 0;
    /// True when a display shows a picture that macOS animates or manages itself, as far as that can be told. Under a label
    /// it would be lost: a still one comes back.
    virtual bool hasAnimatedPicture() const = 0;

Q_SIGNALS:
    /// A label was put onto the displays, or couldn't be: what became of it on each of them. It comes before the task ends
    /// that asked for it.
    void displaysLabelled(const QList<quorvane::DisplayLabel>& labels);
};

} // namespace quorvane
