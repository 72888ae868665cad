// The clock of tests: the contract, and what a wait leaves.

#include "fakes/ManualClock.h"
#include "contract/ClockContract.h"
#include "fakes/EventLoop.h"

namespace quorvane {

using namespace std::chrono_literals;

INSTANTIATE_TEST_SUITE_P(Manual, ClockContract, ::testing::Values(&makeSubject<Clock, ManualClock>));

TEST(ManualClock, aWaitHasTakenItsTimeAndIsWrittenDown) {
    ManualClock clock;
    const QDateTime before = clock.now();
    const QFuture<void> wait = clock.sleepFor(90s);
    processEventsUntil([&] { return wait.isFinished(); });
    EXPECT_EQ(before.secsTo(clock.now()), 90);
    EXPECT_EQ(clock.waits, QList<std::chrono::milliseconds>({90s}));
}

} // namespace quorvane
