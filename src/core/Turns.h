#pragma once

#include <functional>

namespace QCoro {
template <typename T>
class Task;
}

namespace quorvane {

class Clock;

/// Calls `step` again and again until it gives false, on the thread that called. Whenever that has taken a few milliseconds,
/// the event loop comes round first, so that a window stays live while much is done that can be done here alone. When the
/// program quits, it stops between two steps. What a step throws comes out of the task.
QCoro::Task<void> inTurns(Clock& clock, std::function<bool()> step);

} // namespace quorvane
