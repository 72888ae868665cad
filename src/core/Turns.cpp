#include "core/Turns.h"

#include "platform/Clock.h"

#include <QCoroFuture>
#include <QCoroTask>

namespace quorvane {

namespace {

/// An eighth of the time that a frame of the display has: several flows may take their turns in one round of the event loop,
/// and what they have done is painted.
constexpr qint64 kLongestTurn = 2; // milliseconds

} // namespace

Turn::Turn(Clock& clock)
    : m_clock(clock) {
    m_timer.start();
}

bool Turn::isOver() const {
    return m_timer.elapsed() >= kLongestTurn;
}

QCoro::Task<bool> Turn::next() {
    const QFuture<void> pause = m_clock.sleepFor(std::chrono::milliseconds(0));
    const bool isQuitting = pause.isFinished();
    if (!isQuitting) {
        co_await pause;
    }
    m_timer.start();
    co_return !isQuitting;
}

QCoro::Task<void> inTurns(Clock& clock, std::function<bool()> step) {
    Turn turn(clock);
    while (step()) {
        if (turn.isOver() && !co_await turn.next()) {
            co_return; // the user mustn't wait for the rest
        }
    }
}

} // namespace quorvane
