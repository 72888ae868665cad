// What is on the desktops of two displays.

#include "contract/DisplaysContract.h"

namespace quorvane {

TEST_P(TwoDisplaysContract, connectedDisplaysAreListedInTheirOrder) {
    EXPECT_EQ(displays.screens(), (QList<Display>{{7, u"Color LCD"_s, {0, 0, 1280, 800}, 2},
                                                  {std::nullopt, u"Booth"_s, {1280, -20, 1920.5, 1080}, 1}}));
    subject->unplugBuiltIn();
    ASSERT_EQ(displays.screens().size(), 1);
    EXPECT_EQ(displays.screens().first().localizedName, u"Booth"_s);
}

TEST_P(TwoDisplaysContract, aDisplayShowsWhatWasSet) {
    EXPECT_EQ(displays.desktopPicture(builtIn()), blue);
    EXPECT_EQ(displays.desktopPicture(monitor()), std::nullopt);
    EXPECT_EQ(displays.setDesktopPicture(monitor(), red), std::nullopt);
    EXPECT_EQ(displays.desktopPicture(monitor()), red);
    EXPECT_EQ(displays.desktopPicture(builtIn()), blue);
}

TEST_P(TwoDisplaysContract, aRefusedPictureLeavesTheOldOne) {
    subject->refuse(u"It is locked."_s);
    EXPECT_EQ(displays.setDesktopPicture(builtIn(), red), u"It is locked."_s);
    EXPECT_EQ(displays.desktopPicture(builtIn()), blue);
}

TEST_P(TwoDisplaysContract, anUnpluggedDisplayShowsNothingAndTakesNothing) {
    const Display gone = builtIn();
    subject->unplugBuiltIn();
    EXPECT_EQ(displays.desktopPicture(gone), std::nullopt);
    EXPECT_NE(displays.setDesktopPicture(gone, red), std::nullopt);
}

TEST_P(TwoDisplaysContract, aPathThatWasSetBeforeIsDrawnAsItWas) {
    EXPECT_EQ(displays.setDesktopPicture(builtIn(), red), std::nullopt);
    EXPECT_TRUE(subject->drawsTheFileOfNow());
    subject->addFile(red, pngFile(plainPicture({20, 10}, Qt::green)));
    EXPECT_EQ(displays.setDesktopPicture(builtIn(), red), std::nullopt);
    EXPECT_FALSE(subject->drawsTheFileOfNow());
    EXPECT_EQ(displays.setDesktopPicture(builtIn(), blue), std::nullopt);
    EXPECT_TRUE(subject->drawsTheFileOfNow());
    EXPECT_EQ(displays.setDesktopPicture(builtIn(), red), std::nullopt);
    EXPECT_FALSE(subject->drawsTheFileOfNow()) << "also after another one";
}

TEST_P(TwoDisplaysContract, theMomentsToLookAgainAreTold) {
    QList<DesktopChange> told;
    auto observation = displays.observe([&told](DesktopChange change) { told.append(change); });
    subject->wake();
    processEventsUntil([&told] { return !told.isEmpty(); });
    EXPECT_EQ(told, QList<DesktopChange>{DesktopChange::Other});
    subject->showAnotherSpace();
    processEventsUntil([&told] { return told.size() > 1; });
    EXPECT_EQ(told, (QList<DesktopChange>{DesktopChange::Other, DesktopChange::Space}));
}

TEST_P(TwoDisplaysContract, nothingIsToldOnceTheObservationHasEnded) {
    int ended = 0;
    int later = 0;
    std::unique_ptr<NotificationObservation> once;
    once = displays.observe([&](DesktopChange) {
        once.reset();
        ++ended;
    });
    auto never = displays.observe([&ended](DesktopChange) { ended += 100; });
    const auto other = displays.observe([&later](DesktopChange) { ++later; });
    never.reset();
    subject->wake();
    processEventsUntil([&] { return ended == 1 && later == 1; });
    subject->showAnotherSpace();
    processEventsUntil([&later] { return later == 2; });
    EXPECT_EQ(ended, 1);
}

} // namespace quorvane
