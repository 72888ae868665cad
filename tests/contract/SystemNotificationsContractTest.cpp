// What the system's parts tell all programs, and to whom.

#include "contract/SystemNotificationsContract.h"

namespace quorvane {

TEST_P(SystemNotificationsContract, aChangeByAnotherIsHeardThroughTheEventLoop) {
    int firsts = 0;
    int seconds = 0;
    const auto first = count(firstName, firsts);
    const auto second = count(secondName, seconds);
    subject->post(firstName);
    EXPECT_EQ(firsts, 0) << "not before the event loop comes round";
    waitFor(firsts, 1);
    subject->post(secondName);
    waitFor(seconds, 1);
    EXPECT_EQ(firsts, 1);
    EXPECT_EQ(seconds, 1);
}

TEST_P(SystemNotificationsContract, eachOfTwoChangesInTurnIsHeard) {
    int heard = 0;
    const auto second = count(secondName, heard);
    for (int round = 1; round <= 3; ++round) {
        subject->post(secondName);
        waitFor(heard, round);
        EXPECT_EQ(heard, round);
    }
}

TEST_P(SystemNotificationsContract, everybodyWhoObservesHears) {
    int one = 0;
    int two = 0;
    const auto first = count(firstName, one);
    const auto second = count(firstName, two);
    subject->post(firstName);
    waitFor(one, 1);
    waitFor(two, 1);
}

TEST_P(SystemNotificationsContract, nothingIsHeardOnceTheObservationHasEnded) {
    int ended = 0;
    int later = 0;
    auto observation = count(firstName, ended);
    const auto other = count(firstName, later);
    subject->post(firstName);
    observation.reset();
    waitFor(later, 1);
    EXPECT_EQ(ended, 0) << "not even of a change that was on its way";
}

TEST_P(SystemNotificationsContract, aHandlerMayEndItsOwnObservation) {
    int heard = 0;
    int later = 0;
    std::unique_ptr<NotificationObservation> once;
    once = notifications.observe(firstName, [&] {
        once.reset();
        ++heard;
    });
    const auto other = count(firstName, later);
    subject->post(firstName);
    waitFor(heard, 1);
    waitFor(later, 1);
    subject->post(firstName);
    waitFor(later, 2);
    EXPECT_EQ(heard, 1);
}

} // namespace quorvane
