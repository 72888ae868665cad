#include "fakes/ManualClock.h"

namespace quorvane {

QFuture<void> ManualClock::sleepFor(std::chrono::milliseconds duration) {
    waits.append(duration);
    time = time.addMSecs(duration.count());
    if (whenAskedFor) {
        whenAskedFor(duration);
    }
    return m_turns.sleepFor(std::chrono::milliseconds(0));
}

} // namespace quorvane
