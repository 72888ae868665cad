// Pictures that macOS animates: the option in Settings covers them, and nothing else does.

#include "fakes/WallpaperSystem.h"
#include "wallpaper/AnimatedPictures.h"

namespace quorvane {

namespace {

const QString kLeft =
    u"  [INFO] macOS animates or manages the desktop picture of display-1: it stays without a label.\n"_s;
const QString kLeftDetail = u"Display 1: macOS animates or manages its picture."_s;
const QString kImage = u"com.apple.wallpaper.choice.image"_s;
const QString kAerials = u"com.apple.wallpaper.choice.aerials"_s;

QString labelledCount(const QString& name, int count) {
    return u"  [APPLIED] Wallpaper profile label set to \"%1\" on %2 display(s).\n"_s.arg(name).arg(count);
}

QVariantMap choice(const QString& provider) {
    return {{u"Content"_s, QVariantMap{{u"Choices"_s, QVariantList{QVariantMap{{u"Provider"_s, provider}}}}}}};
}

/// As the system keeps it: one choice for the desktop, and one for the screen saver.
QVariantMap storeOf(const QString& desktop, const QString& idle) {
    return {{u"AllSpacesAndDisplays"_s, QVariantMap{{u"Desktop"_s, choice(desktop)}, {u"Idle"_s, choice(idle)}}}};
}

/// The first display shows what the system says of an animated picture.
class WallpaperAnimated : public WallpaperSystem {
protected:
    WallpaperAnimated() {
        files.addFile(kDefaultDesktop, pngFile(plainPicture({20, 10}, Qt::darkGreen)));
        displays.connected[0].picture = kDefaultDesktop;
        defaults.values[kShowProfileOnWallpaper] = true;
    }
    void setStore(const QVariantMap& store) { propertyLists.lists[machine.homeFolder() + kWallpaperStore] = store; }
};

} // namespace

TEST_F(WallpaperAnimated, aPictureIsLeftUnlessTheOptionIsSwitchedOn) {
    EXPECT_TRUE(overlay->hasAnimatedPicture());
    update(u"Live"_s);
    EXPECT_EQ(takeTrace(), kLeft + labelledCount(u"Live"_s, 1));
    EXPECT_EQ(labels, (QStringList{kLeftDetail, u"Display 2: shown"_s}));
    refresh(u"Studio"_s);
    atStart(u"Studio"_s);
    EXPECT_EQ(takeTrace(), labelledCount(u"Studio"_s, 1) + labelledCount(u"Studio"_s, 1)) << "it is said once";
    EXPECT_EQ(shown(1), kDefaultDesktop);
    EXPECT_FALSE(overlay->isOverlayInPlace());
    EXPECT_TRUE(overlay->hasAnimatedPicture());
    EXPECT_FALSE(files.exists(original(1)));

    enable(u"Studio"_s);
    EXPECT_EQ(takeTrace(), labelledCount(u"Studio"_s, 2));
    EXPECT_EQ(shown(1), composited(1, u"studio"_s));
    EXPECT_TRUE(overlay->isOverlayInPlace());
    EXPECT_FALSE(overlay->hasAnimatedPicture());
}

TEST_F(WallpaperAnimated, theOptionCountsAlsoWhereItsNameIsOvertaken) {
    overlay->applyOverlay(u"First"_s);
    overlay->setOverlayEnabled(true, u"Second"_s);
    overlay->applyOverlay(u"Third"_s);
    QCoro::waitFor(overlay->finished());
    EXPECT_EQ(shown(1), composited(1, u"third"_s));
}

TEST_F(WallpaperAnimated, aStillPictureThatCameBackIsLabelledAgain) {
    enable(u"Live"_s);
    refresh(u"Default"_s);
    EXPECT_EQ(shown(1), kDefaultDesktop);
    EXPECT_FALSE(overlay->hasAnimatedPicture()) << "it is the picture itself now";
    tellOfChange();
    overlay.reset();
    start();
    takeTrace();
    update(u"Live"_s);
    EXPECT_EQ(takeTrace(), labelledCount(u"Live"_s, 2));
    disable();
    EXPECT_EQ(shown(1), kDefaultDesktop);
}

TEST_F(WallpaperAnimated, oneThatIsChosenLaterIsLeft) {
    displays.connected[0].picture = kPictures + u"blue.png"_s;
    enable(u"Live"_s);
    takeTrace();
    choose(1, kDefaultDesktop);
    EXPECT_EQ(shown(1), kDefaultDesktop);
    EXPECT_EQ(takeTrace(), kLeft + labelledCount(u"Live"_s, 1));
    EXPECT_EQ(labels.first(), kLeftDetail);
    displays.calls.clear();
    tellOfChange();
    tell(DesktopChange::Other);
    EXPECT_EQ(displays.calls, QStringList()) << "and nobody tries again";
    EXPECT_EQ(takeTrace(), u"\n"_s);
    disable();
    EXPECT_EQ(shown(1), kDefaultDesktop);
    EXPECT_EQ(shown(2), kPictures + u"light.png"_s);
}

TEST_F(WallpaperAnimated, oneThatIsChosenOverALabelIsLeftToo) {
    enable(u"Live"_s);
    choose(1, kDefaultDesktop);
    EXPECT_EQ(shown(1), kDefaultDesktop);
    choose(1, kPictures + u"blue.png"_s);
    EXPECT_EQ(shown(1), composited(1, u"live"_s));
    takeTrace();
    choose(1, kDefaultDesktop);
    EXPECT_EQ(takeTrace(), kLeft + labelledCount(u"Live"_s, 1)) << "another time";
}

TEST_F(WallpaperAnimated, aStillPictureIsForgottenWhenAnotherIsChosen) {
    enable(u"Live"_s);
    refresh(u"Default"_s);
    choose(1, kPictures + u"blue.png"_s);
    choose(1, kDefaultDesktop);
    EXPECT_TRUE(overlay->hasAnimatedPicture());
    update(u"Live"_s);
    EXPECT_EQ(shown(1), kDefaultDesktop);
    EXPECT_EQ(defaults.values.value(kQuorvaneStillDesktopPictures).toStringList(), QStringList());
}

TEST_F(WallpaperAnimated, theStoreMayTellThatItIsAPicture) {
    setStore(storeOf(kImage, kImage));
    EXPECT_FALSE(overlay->hasAnimatedPicture());
    setStore(storeOf(kImage, kAerials));
    EXPECT_TRUE(overlay->hasAnimatedPicture()) << "of which display it speaks can't be told";
    setStore({{u"AllSpacesAndDisplays"_s, u"unknown"_s}});
    EXPECT_TRUE(overlay->hasAnimatedPicture());
    setStore(storeOf(kImage, kImage));
    update(u"Live"_s);
    EXPECT_EQ(takeTrace(), labelledCount(u"Live"_s, 2));
}

TEST(AnimatedPictures, areToldByTheirStandIns) {
    const QStringList unknown;
    EXPECT_TRUE(mayBeAnimated(kDefaultDesktop, unknown));
    EXPECT_TRUE(mayBeAnimated(u"/System/Library/Desktop Pictures/.thumbnails/Sonoma Horizon.heic"_s, unknown));
    EXPECT_TRUE(mayBeAnimated(u"/System/Library/Desktop Pictures/Sequoia.madesktop"_s, unknown));
    EXPECT_TRUE(mayBeAnimated(u"/Users/alex/Movies/Sea.MOV"_s, unknown));
    EXPECT_FALSE(mayBeAnimated(u"/System/Library/Desktop Pictures/Sonoma.heic"_s, unknown));
    EXPECT_FALSE(mayBeAnimated(u"/Users/alex/.pictures/a.png"_s, unknown));
    EXPECT_FALSE(mayBeAnimated(u"/Users/alex/Pictures/a.heic"_s, {kAerials})) << "of another display";
}

TEST(AnimatedPictures, areNoneWhereTheStoreKnowsOnlyImages) {
    EXPECT_FALSE(mayBeAnimated(kDefaultDesktop, {kImage}));
    EXPECT_FALSE(mayBeAnimated(kDefaultDesktop, {kImage, kImage}));
    EXPECT_TRUE(mayBeAnimated(kDefaultDesktop, {kImage, u"com.apple.wallpaper.choice.of-tomorrow"_s}));
    EXPECT_TRUE(mayBeAnimated(u"/Users/alex/Movies/Sea.mov"_s, {kImage})) << "no picture, whatever it is called";
}

TEST(AnimatedPictures, areNamedByTheStoreWhereverTheyStand) {
    EXPECT_EQ(wallpaperProviders(storeOf(kImage, kAerials)), (QStringList{kImage, kAerials}));
    EXPECT_EQ(wallpaperProviders({}), QStringList());
    EXPECT_EQ(wallpaperProviders({{u"Provider"_s, 7}}), QStringList(u"7"_s)) << "not an image";
}

} // namespace quorvane
