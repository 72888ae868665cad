#pragma once

#include <QElapsedTimer>

#include <functional>

namespace QCoro {
template <typename T>
class Task;
}

namespace quorvane {

class Clock;

/// How long a flow of much work has kept the thread to itself, since it began or the event loop last came round.
class Turn {
public:
    explicit Turn(Clock& clock);

    /// True after a few milliseconds.
    bool isOver() const;
    /// Lets the event loop come round. False when the program quits: no wait is that short.
    QCoro::Task<bool> next();

private:
    Clock& m_clock;
    QElapsedTimer m_timer;
};

/// Calls `step` again and again until it gives false, on the thread that called. Whenever that has taken a few milliseconds,
/// the event loop comes round first, so that a window stays live while much is done that can be done here alone. When the
/// program quits, it stops between two steps. What a step throws comes out of the task.
QCoro::Task<void> inTurns(Clock& clock, std::function<bool()> step);

} // namespace quorvane
