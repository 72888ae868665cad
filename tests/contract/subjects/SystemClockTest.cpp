// The system's clock: the contract, and how long a wait really takes.

#include "platform/portable/SystemClock.h"
#include "contract/ClockContract.h"
#include "fakes/EventLoop.h"

namespace quorvane {

using namespace std::chrono_literals;

INSTANTIATE_TEST_SUITE_P(System, ClockContract, ::testing::Values(&makeSubject<Clock, SystemClock>));

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

} // namespace quorvane
