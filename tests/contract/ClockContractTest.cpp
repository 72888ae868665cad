// What every clock promises.

#include "fakes/EventLoop.h"
#include "fakes/ManualClock.h"

#include <QThread>

#include <memory>

namespace quorvane {

using namespace std::chrono_literals;

namespace {

class ClockContract : public ::testing::TestWithParam<std::unique_ptr<Clock> (*)()> {
protected:
    std::unique_ptr<Clock> clock = GetParam()();
};

template <typename Each>
std::unique_ptr<Clock> makeClock() {
    return std::make_unique<Each>();
}

void expectOver(const QFuture<void>& wait) {
    EXPECT_TRUE(wait.isFinished());
    EXPECT_FALSE(wait.isCanceled());
}

} // namespace

TEST_P(ClockContract, theTimeIsInUtc) {
    EXPECT_TRUE(clock->now().isValid());
    EXPECT_EQ(clock->now().timeSpec(), Qt::UTC);
}

TEST_P(ClockContract, aWaitIsOverLaterOnTheThreadThatCalled) {
    const QFuture<void> wait = clock->sleepFor(5ms);
    QThread* thread = nullptr;
    const QFuture<void> next = QFuture<void>(wait).then([&thread] { thread = QThread::currentThread(); });
    EXPECT_FALSE(wait.isFinished());
    processEventsUntil([&] { return next.isFinished(); });
    expectOver(wait);
    EXPECT_EQ(thread, QThread::currentThread());
}

TEST_P(ClockContract, aWaitOfNothingLetsTheEventLoopComeRound) {
    bool hasHadItsTurn = false;
    QObject other;
    QMetaObject::invokeMethod(
        &other, [&hasHadItsTurn] { hasHadItsTurn = true; }, Qt::QueuedConnection);
    const QFuture<void> wait = clock->sleepFor(0ms);
    EXPECT_FALSE(wait.isFinished());
    processEventsUntil([&] { return wait.isFinished(); });
    expectOver(wait);
    EXPECT_TRUE(hasHadItsTurn);
}

TEST_P(ClockContract, aTimeThatIsOverAlreadyIsAWaitOfNothing) {
    const QFuture<void> wait = clock->sleepFor(-5ms);
    processEventsUntil([&] { return wait.isFinished(); });
    expectOver(wait);
}

TEST_P(ClockContract, shutDownEndsAWaitOfAnHourAndEachLaterOneAtOnce) {
    const QFuture<void> wait = clock->sleepFor(1h);
    const QFuture<void> other = clock->sleepFor(1h);
    EXPECT_FALSE(wait.isFinished());
    clock->shutDown();
    expectOver(wait);
    expectOver(other);
    expectOver(clock->sleepFor(1h));
}

TEST_P(ClockContract, aWaitMayBeginAnotherOneWhenItEndsAlsoWhileShuttingDown) {
    QFuture<void> second;
    const QFuture<void> first = clock->sleepFor(1h).then([&] { second = clock->sleepFor(1h); });
    clock->shutDown();
    expectOver(first);
    expectOver(second);
}

TEST_P(ClockContract, aClockThatGoesLeavesNoWaitBehind) {
    const QFuture<void> wait = clock->sleepFor(1h);
    clock.reset();
    expectOver(wait);
}

INSTANTIATE_TEST_SUITE_P(System, ClockContract, ::testing::Values(&makeClock<SystemClock>));
INSTANTIATE_TEST_SUITE_P(Manual, ClockContract, ::testing::Values(&makeClock<ManualClock>));

TEST(SystemClock, aWaitTakesItsTimeAndNeitherItNorALongerOneHoldsUpTheOther) {
    SystemClock clock;
    const QFuture<void> longer = clock.sleepFor(24h * 60);
    QElapsedTimer timer;
    timer.start();
    const QFuture<void> wait = clock.sleepFor(20ms);
    processEventsUntil([&] { return wait.isFinished(); });
    EXPECT_GE(timer.nsecsElapsed(), 20'000'000);
    EXPECT_FALSE(longer.isFinished()) << "two months are more than a timer counts";
}

TEST(SystemClock, tellsTheTimeOfDay) {
    const qint64 before = QDateTime::currentMSecsSinceEpoch();
    const qint64 now = SystemClock().now().toMSecsSinceEpoch();
    EXPECT_NEAR(static_cast<double>(now - before), 0, 60'000);
}

TEST(ManualClock, aWaitHasTakenItsTimeAndIsWrittenDown) {
    ManualClock clock;
    const QDateTime before = clock.now();
    const QFuture<void> wait = clock.sleepFor(90s);
    processEventsUntil([&] { return wait.isFinished(); });
    EXPECT_EQ(before.secsTo(clock.now()), 90);
    EXPECT_EQ(clock.waits, QList<std::chrono::milliseconds>({90s}));
}

} // namespace quorvane
