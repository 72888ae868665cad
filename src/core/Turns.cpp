#include "core/Turns.h"

#include "platform/Clock.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <QElapsedTimer>

namespace quorvane {

namespace {

/// A quarter of the time that a frame of the display has.
constexpr qint64 kLongestTurn = 4; // milliseconds

} // namespace

QCoro::Task<void> inTurns(Clock& clock, std::function<bool()> step) {
    QElapsedTimer turn;
    turn.start();
    while (step()) {
        if (turn.elapsed() < kLongestTurn) {
            continue;
        }
        const QFuture<void> pause = clock.sleepFor(std::chrono::milliseconds(0));
        if (pause.isFinished()) {
            co_return; // no wait is that short: the clock is shut down, and the user mustn't wait for the rest
        }
        co_await pause;
        turn.start();
    }
}

} // namespace quorvane
