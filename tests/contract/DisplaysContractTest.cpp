// What the displays of every system promise.

#include "contract/DisplaysContract.h"

namespace quorvane {

TEST_P(DisplaysContract, everyDisplayHasANameAPlaceAndAScale) {
    for (const Display& display : displays.screens()) {
        EXPECT_FALSE(display.localizedName.isEmpty());
        EXPECT_FALSE(display.frame.isEmpty()) << display.localizedName.toStdString();
        EXPECT_GE(display.backingScaleFactor, 1) << display.localizedName.toStdString();
    }
}

TEST_P(DisplaysContract, aDisplayThatIsNotThereShowsNothingAndTakesNothing) {
    const Display gone{quint32{4'000'000'000}, u"Unplugged"_s, {20000, 20000, 640, 480}, 1};
    EXPECT_EQ(displays.desktopPicture(gone), std::nullopt);
    EXPECT_NE(displays.setDesktopPicture(gone, red), std::nullopt);
}

TEST_P(DisplaysContract, aPictureIsLoadedInItsNaturalSize) {
    EXPECT_EQ(load(red).size(), QSize(20, 10));
    EXPECT_EQ(load(red).pixelColor(3, 3), QColor(Qt::red));
}

TEST_P(DisplaysContract, whatCantBeReadIsNoPicture) {
    subject->addFile(path(u"text.jpg"_s), "text");
    EXPECT_TRUE(load(path(u"text.jpg"_s)).isNull());
    EXPECT_TRUE(load(path(u"missing.png"_s)).isNull());
    EXPECT_TRUE(load(subject->folder()).isNull());
}

} // namespace quorvane
