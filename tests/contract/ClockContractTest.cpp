// What every clock promises.

#include "contract/ClockContract.h"
#include "fakes/EventLoop.h"

#include <QThread>

namespace quorvane {

using namespace std::chrono_literals;

namespace {

void expectOver(const QFuture<void>& wait) {
    EXPECT_TRUE(wait.isFinished());
    EXPECT_FALSE(wait.isCanceled());
}

} // namespace

TEST_P(ClockContract, theTimeIsInUtc) {
    EXPECT_TRUE(subject->now().isValid());
    EXPECT_EQ(subject->now().timeSpec(), Qt::UTC);
}

TEST_P(ClockContract, aWaitIsOverLaterOnTheThreadThatCalled) {
    const QFuture<void> wait = subject->sleepFor(5ms);
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
    const QFuture<void> wait = subject->sleepFor(0ms);
    EXPECT_FALSE(wait.isFinished());
    processEventsUntil([&] { return wait.isFinished(); });
    expectOver(wait);
    EXPECT_TRUE(hasHadItsTurn);
}

TEST_P(ClockContract, aTimeThatIsOverAlreadyIsAWaitOfNothing) {
    const QFuture<void> wait = subject->sleepFor(-5ms);
    processEventsUntil([&] { return wait.isFinished(); });
    expectOver(wait);
}

TEST_P(ClockContract, shutDownEndsAWaitOfAnHourAndEachLaterOneAtOnce) {
    const QFuture<void> wait = subject->sleepFor(1h);
    const QFuture<void> other = subject->sleepFor(1h);
    EXPECT_FALSE(wait.isFinished());
    subject->shutDown();
    expectOver(wait);
    expectOver(other);
    expectOver(subject->sleepFor(1h));
}

TEST_P(ClockContract, aWaitMayBeginAnotherOneWhenItEndsAlsoWhileShuttingDown) {
    QFuture<void> second;
    const QFuture<void> first = subject->sleepFor(1h).then([&] { second = subject->sleepFor(1h); });
    subject->shutDown();
    expectOver(first);
    expectOver(second);
}

TEST_P(ClockContract, aClockThatGoesLeavesNoWaitBehind) {
    const QFuture<void> wait = subject->sleepFor(1h);
    subject.reset();
    expectOver(wait);
}

} // namespace quorvane
