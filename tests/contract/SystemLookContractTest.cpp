// What the system's look promises, on a Mac that its user changes and on one that a test changes.

#include "contract/SystemLookContract.h"

#include "platform/SystemNotifications.h"

namespace quorvane {

using namespace Qt::StringLiterals;

TEST_P(SystemLookContract, aSystemThatSaysNothingIsLightAndMoves) {
    EXPECT_EQ(described(), u"light, motion normal, contrast normal"_s);
}

TEST_P(SystemLookContract, eachOfTheThreeIsToldOfAndReadAnew) {
    int heard = 0;
    const auto observation = look.observe([&heard] { ++heard; });
    subject->setDark(true);
    EXPECT_EQ(heard, 0) << "not before the event loop comes round";
    waitFor(heard, 1);
    EXPECT_EQ(described(), u"dark, motion normal, contrast normal"_s);
    subject->setReducesMotion(true);
    waitFor(heard, 2);
    EXPECT_EQ(described(), u"dark, motion reduced, contrast normal"_s);
    subject->setIncreasesContrast(true);
    waitFor(heard, 3);
    EXPECT_EQ(described(), u"dark, motion reduced, contrast increased"_s);
    subject->setReducesMotion(false);
    waitFor(heard, 4);
    subject->setIncreasesContrast(false);
    waitFor(heard, 5);
    subject->setDark(false);
    waitFor(heard, 6);
    EXPECT_EQ(described(), u"light, motion normal, contrast normal"_s);
    EXPECT_EQ(heard, 6);
}

TEST_P(SystemLookContract, aHandlerMayEndItsOwnObservation) {
    int heard = 0;
    int later = 0;
    std::unique_ptr<NotificationObservation> once;
    once = look.observe([&] {
        once.reset();
        ++heard;
    });
    const auto other = look.observe([&later] { ++later; });
    subject->setDark(true);
    waitFor(later, 1);
    subject->setDark(false);
    waitFor(later, 2);
    EXPECT_EQ(heard, 1);
}

} // namespace quorvane
