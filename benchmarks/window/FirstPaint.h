#pragma once

#include <QObject>

#include <functional>

namespace quorvane {

/// Tells when the first picture of the main window has been painted, in a turn of the event loop of its own.
class FirstPaint : public QObject {
public:
    explicit FirstPaint(std::function<void()> painted);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::function<void()> m_painted;
};

/// Prints the nanoseconds of the steady clock, which is the same for all processes, at which the display shows all that has
/// been sent to it.
void printTimeOfDisplay();

} // namespace quorvane
