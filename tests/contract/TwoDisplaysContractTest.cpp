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

} // namespace quorvane
