#include "platform/portable/SystemClock.h"

#include <QTimerEvent>

#include <algorithm>
#include <utility>

namespace quorvane {

using namespace std::chrono_literals;

namespace {

/// A timer counts its milliseconds in 31 bits, which are 24 days.
constexpr std::chrono::milliseconds kLongestTimer = 24h;

} // namespace

/// A wait that was dropped would leave its future cancelled.
SystemClock::~SystemClock() {
    SystemClock::shutDown();
}

QDateTime SystemClock::now() const {
    return QDateTime::currentDateTimeUtc();
}

QFuture<void> SystemClock::sleepFor(std::chrono::milliseconds duration) {
    Wait wait{QDeadlineTimer(std::max(duration, 0ms), Qt::PreciseTimer), {}};
    wait.promise.start();
    QFuture<void> future = wait.promise.future();
    if (m_isShutDown) {
        wait.promise.finish();
    } else {
        startTimerFor(std::move(wait));
    }
    return future;
}

void SystemClock::shutDown() {
    m_isShutDown = true;
    std::unordered_map<int, Wait> waits = std::exchange(m_waits, {});
    for (auto& [timer, wait] : waits) {
        killTimer(timer);
        wait.promise.finish();
    }
}

void SystemClock::timerEvent(QTimerEvent* event) {
    killTimer(event->timerId());
    auto ended = m_waits.extract(event->timerId());
    if (ended.empty()) {
        return;
    }
    if (ended.mapped().end.hasExpired()) {
        ended.mapped().promise.finish();
    } else {
        startTimerFor(std::move(ended.mapped()));
    }
}

void SystemClock::startTimerFor(Wait wait) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(wait.end.remainingTimeAsDuration());
    const int timer = startTimer(std::min(left, kLongestTimer), Qt::PreciseTimer);
    m_waits.emplace(timer, std::move(wait));
}

} // namespace quorvane
