#include "fakes/SteppedClock.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace quorvane {

QFuture<void> SteppedClock::sleepFor(std::chrono::milliseconds duration) {
    if (m_isShutDown || duration.count() <= 0) {
        return m_turns.sleepFor(std::chrono::milliseconds(0));
    }
    Wait& wait = m_waits.emplace_back(Wait{m_now.addMSecs(duration.count()), {}});
    wait.promise.start();
    return wait.promise.future();
}

void SteppedClock::shutDown() {
    m_isShutDown = true;
    m_turns.shutDown();
    for (Wait& wait : std::exchange(m_waits, {})) {
        wait.promise.finish();
    }
}

void SteppedClock::advance(std::chrono::milliseconds duration) {
    m_now = m_now.addMSecs(duration.count());
    endWaits(m_now);
}

/// Whoever is told may wait anew.
void SteppedClock::endWaits(const QDateTime& until) {
    const auto over =
        std::stable_partition(m_waits.begin(), m_waits.end(), [&until](const Wait& wait) { return wait.end > until; });
    std::vector<Wait> ended(std::make_move_iterator(over), std::make_move_iterator(m_waits.end()));
    m_waits.erase(over, m_waits.end());
    for (Wait& wait : ended) {
        wait.promise.finish();
    }
}

} // namespace quorvane
