#include "core/Turns.h"

#include "fakes/ManualClock.h"

#include <QCoroTask>
#include <QTimer>

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <utility>

namespace quorvane {

using namespace std::chrono_literals;

namespace {

QCoro::Task<QByteArray> errorOf(Clock& clock, std::function<bool()> step) {
    QByteArray text;
    try {
        co_await inTurns(clock, step);
    } catch (const std::runtime_error& error) {
        text = error.what();
    }
    co_return std::as_const(text);
}

} // namespace

TEST(Turns, shortWorkIsDoneAtOnce) {
    ManualClock clock;
    int steps = 0;
    QCoro::waitFor(inTurns(clock, [&steps] { return ++steps < 3; }));
    EXPECT_EQ(steps, 3);
    EXPECT_TRUE(clock.waits.isEmpty());
}

TEST(Turns, theEventLoopComesRoundWhileLongWorkGoesOn) {
    ManualClock clock;
    int rounds = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&rounds] { ++rounds; });
    timer.start(0);
    QCoro::waitFor(inTurns(clock, [&rounds] { return rounds < 3; }));
    EXPECT_GE(rounds, 3);
    EXPECT_GE(clock.waits.size(), 3);
    EXPECT_EQ(clock.waits.count(0ms), clock.waits.size());
}

TEST(Turns, workStopsWhenTheProgramQuits) {
    ManualClock clock;
    clock.shutDown();
    qint64 steps = 0;
    QCoro::waitFor(inTurns(clock, [&steps] { return ++steps > 0; }));
    EXPECT_GT(steps, 0);
    EXPECT_EQ(clock.waits.size(), 1);
}

TEST(Turns, whatAStepThrowsComesOutAndEndsTheWork) {
    ManualClock clock;
    const auto step = [&clock]() -> bool {
        if (clock.waits.size() < 2) {
            return true;
        }
        throw std::runtime_error("broken");
    };
    EXPECT_EQ(QCoro::waitFor(errorOf(clock, step)), "broken");
    EXPECT_EQ(clock.waits.size(), 2);
}

} // namespace quorvane
