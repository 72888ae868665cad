// No picture of the user's is lost, whatever goes wrong.

#include "fakes/MortalFileManager.h"
#include "fakes/WallpaperSystem.h"

namespace quorvane {

namespace {

const QString kLabelGone = u"  [APPLIED] Wallpaper profile label removed.\n"_s;
const QString kLabelledOne = u"  [APPLIED] Wallpaper profile label set to \"Live\" on 1 display(s).\n"_s;
const QString kLabelledTwo = u"  [APPLIED] Wallpaper profile label set to \"Live\" on 2 display(s).\n"_s;

using Operation = MemoryFileManager::Operation;

class WallpaperRestore : public WallpaperSystem {
protected:
    WallpaperManifest manifest() const {
        return decodeWallpaperManifest(files.read(kWallpaperFolder + u"wallpaper-originals.json"_s)).value();
    }
    void writeManifest(const QByteArray& bytes) {
        files.addFile(kWallpaperFolder + u"wallpaper-originals.json"_s, bytes);
    }
    void enableQuietly() {
        enable(u"Live"_s);
        takeTrace();
        takeSets();
    }
    MemoryDisplays::Connected unplug(int display) { return displays.connected.takeAt(display - 1); }
};

} // namespace

// ---- A display that isn't connected

TEST_F(WallpaperRestore, aDisplayThatIsUnpluggedGetsItsPictureBackWhenItReturns) {
    enableQuietly();
    const MemoryDisplays::Connected monitor = unplug(2);
    disable();
    EXPECT_EQ(shown(1), kPictures + u"blue.png"_s);
    EXPECT_EQ(workFiles(), (QStringList{u"composited-display-2-live-1.jpg"_s, u"original-display-2.jpg"_s,
                                        u"wallpaper-originals.json"_s}))
        << "what it will need";
    EXPECT_EQ(manifest().screens.size(), 1);

    takeTrace();
    displays.connected.append(monitor);
    tellOfChange();
    EXPECT_EQ(shown(2), kPictures + u"light.png"_s);
    EXPECT_EQ(workFiles(), QStringList());
    EXPECT_EQ(takeTrace(), u"\n"_s) << "nothing else is done";
}

TEST_F(WallpaperRestore, aDisplayThatReturnsWhileTheProgramDoesntRunIsRestoredAtTheStart) {
    enableQuietly();
    const MemoryDisplays::Connected monitor = unplug(2);
    disable();
    overlay.reset();
    displays.connected.append(monitor);
    start();
    atStart({});
    EXPECT_EQ(shown(2), kPictures + u"light.png"_s);
    EXPECT_EQ(workFiles(), QStringList());
}

TEST_F(WallpaperRestore, aDisplayThatReturnsWhileTheLabelIsOnGetsTheNameOfNow) {
    enableQuietly();
    const MemoryDisplays::Connected monitor = unplug(2);
    update(u"Studio"_s);
    EXPECT_TRUE(files.exists(composited(2, u"live"_s)));
    displays.connected.append(monitor);
    tellOfChange();
    EXPECT_EQ(shown(2), composited(2, u"studio"_s));
    disable();
    EXPECT_EQ(shown(2), kPictures + u"light.png"_s);
}

// ---- What comes back

TEST_F(WallpaperRestore, aFileThatTheUserHasDeletedComesBackAsItsCopy) {
    enableQuietly();
    files.removeAsRoot(kPictures + u"blue.png"_s);
    disable();
    EXPECT_EQ(shown(1), shownOriginal(1));
    EXPECT_EQ(shown(2), kPictures + u"light.png"_s);
    EXPECT_EQ(workFiles(),
              (QStringList{u"original-display-1.jpg"_s, u"restored-display-1-2.jpg"_s, u"wallpaper-originals.json"_s}))
        << "what a display shows is kept with its record";
    takeSets();
    tellOfChange();
    disable();
    EXPECT_EQ(takeSets(), QStringList()) << "it shows already what can be had";
    EXPECT_TRUE(files.exists(original(1)));
    enable(u"Studio"_s);
    EXPECT_EQ(shown(1), composited(1, u"studio"_s));
    disable();
    EXPECT_EQ(shown(1), shownOriginal(1));
}

TEST_F(WallpaperRestore, aCopyThatCantBeGivenANameOfItsOwnIsShownAllTheSame) {
    enableQuietly();
    files.removeAsRoot(kPictures + u"blue.png"_s);
    files.failOn(Operation::Write, kWallpaperFolder + u"restored-display-1-2.jpg"_s);
    disable();
    EXPECT_EQ(shown(1), original(1));
}

TEST_F(WallpaperRestore, ofADamagedManifestTheCopyThatIsShownIsStillTheUsers) {
    enableQuietly();
    files.removeAsRoot(kPictures + u"blue.png"_s);
    disable();
    writeManifest("{ damaged");
    enable(u"Studio"_s);
    EXPECT_EQ(shown(1), composited(1, u"studio"_s));
    disable();
    EXPECT_EQ(shown(1), shownOriginal(1));
    EXPECT_LT(lightest(drawn(1)), 140) << "dark blue";
}

TEST_F(WallpaperRestore, aDisplayWithoutARecordGetsItsCopy) {
    enableQuietly();
    files.removeAsRoot(kWallpaperFolder + u"wallpaper-originals.json"_s);
    disable();
    EXPECT_EQ(shown(1), shownOriginal(1));
    EXPECT_EQ(shown(2), shownOriginal(2));
    EXPECT_EQ(workFiles(),
              (QStringList{u"original-display-1.jpg"_s, u"original-display-2.jpg"_s, u"restored-display-1-2.jpg"_s,
                           u"restored-display-2-3.jpg"_s, u"wallpaper-originals.json"_s}));
}

TEST_F(WallpaperRestore, ofADamagedManifestThereAreStillTheCopies) {
    for (const QByteArray& damaged : {QByteArray("{ damaged"), QByteArray()}) {
        enableQuietly();
        writeManifest(damaged);
        const MemoryDisplays::Connected monitor = unplug(2);
        disable();
        EXPECT_EQ(shown(1), shownOriginal(1));
        EXPECT_TRUE(files.exists(original(2))) << "of the display that isn't connected";
        displays.connected.append(monitor);
        tellOfChange();
        EXPECT_EQ(shown(2), shownOriginal(2));
    }
}

TEST_F(WallpaperRestore, aDisplayWithoutARecordOrACopyGetsTheSystemsPicture) {
    files.addFile(kDefaultDesktop, "heic");
    displays.connected[0].picture = kWallpaperFolder + u"composited-display-1-old.jpg"_s;
    files.addFile(*shown(1), "old");
    disable();
    EXPECT_EQ(takeSets(), QStringList(u"Display 1 DefaultDesktop.heic"_s));
    EXPECT_EQ(workFiles(), QStringList());
}

TEST_F(WallpaperRestore, aDisplayThatNothingCanBePutBackOnKeepsWhatItShows) {
    displays.connected[0].picture = kWallpaperFolder + u"composited-display-1-old.jpg"_s;
    files.addFile(*shown(1), "old");
    files.addFile(kWallpaperFolder + u"composited-display-1-older.jpg"_s, "older");
    disable();
    EXPECT_EQ(takeSets(), QStringList());
    EXPECT_EQ(workFiles(), QStringList(u"composited-display-1-old.jpg"_s));
}

TEST_F(WallpaperRestore, aPictureThatTheUserHasChosenSinceIsLeftAlone) {
    enableQuietly();
    overlay.reset();
    addPicture(u"white.png"_s, Qt::white);
    displays.connected[0].picture = kPictures + u"white.png"_s; // nobody was listening
    start();
    disable();
    EXPECT_EQ(shown(1), kPictures + u"white.png"_s);
    EXPECT_EQ(shown(2), kPictures + u"light.png"_s);
    EXPECT_EQ(workFiles(), QStringList());
}

TEST_F(WallpaperRestore, aDisplayOfWhichTheSystemSaysNothingGetsWhatItsRecordSays) {
    enableQuietly();
    displays.connected[0].picture.reset();
    displays.connected[1].picture.reset();
    writeManifest(encodeWallpaperManifest({{manifest().screens.first()}}));
    disable();
    EXPECT_EQ(takeSets(), QStringList(u"Display 1 blue.png"_s));
}

TEST_F(WallpaperRestore, aCopyIsKeptThoughTheSystemDoesntSayThatItIsShown) {
    enableQuietly();
    files.removeAsRoot(kPictures + u"blue.png"_s);
    displays.connected[0].picture.reset();
    displays.whenSet = [this] { displays.connected[0].picture.reset(); };
    disable();
    EXPECT_EQ(takeSets().first(), u"Display 1 restored-display-1-2.jpg"_s);
    EXPECT_TRUE(files.exists(original(1)));
    EXPECT_NE(manifest().record(u"display-1"_s), nullptr);
}

// ---- A display with another number

TEST_F(WallpaperRestore, aDisplayThatGetsANewNumberKeepsItsPicture) {
    enableQuietly();
    displays.connected[1].display.number = 5;
    update(u"Studio"_s);
    EXPECT_EQ(shown(2), composited(5, u"studio"_s));
    EXPECT_EQ(manifest().record(u"display-2"_s), nullptr);
    disable();
    EXPECT_EQ(shown(2), kPictures + u"light.png"_s);
    EXPECT_EQ(workFiles(), QStringList());
}

TEST_F(WallpaperRestore, aDisplayThatGetsANewNumberIsRestoredByWhatItShows) {
    enableQuietly();
    files.removeAsRoot(kPictures + u"light.png"_s);
    displays.connected[1].display.number = 5;
    disable();
    EXPECT_EQ(shown(1), kPictures + u"blue.png"_s);
    EXPECT_EQ(shown(2), shownOriginal(5));
    EXPECT_TRUE(files.exists(original(2)));
}

TEST_F(WallpaperRestore, displaysThatChangeTheirNumbersKeepTheirPictures) {
    enableQuietly();
    std::swap(displays.connected[0].display.number, displays.connected[1].display.number);
    update(u"Studio"_s);
    EXPECT_LT(darkest(labelOn(1, u"studio"_s), {0, 0, 300, 200}), 20) << "the light one";
    EXPECT_GT(lightest(labelOn(2, u"studio"_s)), 235) << "the dark one";
    disable();
    EXPECT_EQ(shown(1), kPictures + u"blue.png"_s);
    EXPECT_EQ(shown(2), kPictures + u"light.png"_s);
    EXPECT_EQ(workFiles(), QStringList());
}

TEST_F(WallpaperRestore, aDisplayThatGetsANewNumberNeedsNoNewCopy) {
    enableQuietly();
    displays.connected[1].display.number = 5;
    files.failOn(Operation::Write, original(5));
    files.failOn(Operation::Write, original(2));
    update(u"Studio"_s);
    EXPECT_EQ(takeTrace(), u"  [APPLIED] Wallpaper profile label set to \"Studio\" on 2 display(s).\n"_s);
    files.removeAsRoot(kPictures + u"light.png"_s);
    disable();
    EXPECT_EQ(shown(2), shownOriginal(5));
}

TEST_F(WallpaperRestore, aDisplayThatTakesTheNumberOfOneThatIsAwayTakesNothingElse) {
    addPicture(u"white.png"_s, Qt::white);
    enableQuietly();
    MemoryDisplays::Connected monitor = unplug(2);
    tellOfChange();
    displays.plugIn(2, monitor.display.frame, 1, kPictures + u"white.png"_s);
    tellOfChange();
    EXPECT_EQ(shown(2), composited(2, u"live"_s));
    monitor.display.number = 3;
    displays.connected.append(monitor);
    tellOfChange();
    EXPECT_EQ(shown(3), composited(3, u"live"_s));
    disable();
    EXPECT_EQ(shown(2), kPictures + u"white.png"_s);
    EXPECT_EQ(shown(3), kPictures + u"light.png"_s);
    EXPECT_EQ(workFiles(), QStringList());
}

TEST_F(WallpaperRestore, aNumberMayBeTakenWhileTheProgramDoesntRun) {
    addPicture(u"white.png"_s, Qt::white);
    enableQuietly();
    overlay.reset();
    MemoryDisplays::Connected monitor = unplug(2);
    displays.plugIn(2, {200, 0, 640, 480}, 1, kPictures + u"white.png"_s);
    start();
    atStart({});
    disable();
    EXPECT_EQ(shown(2), kPictures + u"white.png"_s);
    displays.connected.last() = monitor;
    tellOfChange();
    EXPECT_EQ(shown(2), kPictures + u"light.png"_s);
    EXPECT_EQ(workFiles(), QStringList());
}

TEST_F(WallpaperRestore, twoDisplaysThatShowOneLabelHaveOnePictureEach) {
    enableQuietly();
    displays.connected[1].picture = composited(1, u"live"_s);
    tellOfChange();
    EXPECT_EQ(shown(1), composited(1, u"live"_s));
    EXPECT_EQ(shown(2), composited(2, u"live"_s));
    choose(1, kPictures + u"light.png"_s);
    disable();
    EXPECT_EQ(shown(1), kPictures + u"light.png"_s);
    EXPECT_EQ(shown(2), kPictures + u"blue.png"_s);
    EXPECT_EQ(workFiles(), QStringList());
}

TEST_F(WallpaperRestore, theDisplayWhoseLabelAnotherShowsKeepsItsRecord) {
    enableQuietly();
    displays.connected[1].picture = composited(1, u"live"_s);
    tellOfChange();
    disable();
    EXPECT_EQ(shown(1), kPictures + u"blue.png"_s);
    EXPECT_EQ(shown(2), kPictures + u"blue.png"_s);
    EXPECT_EQ(workFiles(), QStringList());
}

TEST_F(WallpaperRestore, numbersMayBeExchangedWhileAnyChangeOfAFileFails) {
    const QByteArray blue = files.read(kPictures + u"blue.png"_s);
    const QByteArray light = files.read(kPictures + u"light.png"_s);
    for (int change = 1; change <= 8; ++change) {
        enable(u"Live"_s);
        std::swap(displays.connected[0].display.number, displays.connected[1].display.number);
        files.failAtChange(change);
        update(u"Studio"_s);
        files.failAtChange(0);
        update(u"Studio"_s);
        files.removeAsRoot(kPictures + u"blue.png"_s);
        files.removeAsRoot(kPictures + u"light.png"_s);
        disable();
        EXPECT_LT(lightest(QImage::fromData(files.read(*shown(1)))), 140) << change << ": dark blue";
        EXPECT_GT(lightest(QImage::fromData(files.read(*shown(2)))), 220) << change;
        files.addFile(kPictures + u"blue.png"_s, blue);
        files.addFile(kPictures + u"light.png"_s, light);
        displays.connected[0].picture = kPictures + u"blue.png"_s;
        displays.connected[1].picture = kPictures + u"light.png"_s;
    }
}

TEST_F(WallpaperRestore, aManifestOfAnEarlierVersionIsUnderstood) {
    enableQuietly();
    WallpaperManifest earlier = manifest();
    for (ScreenWallpaperRecord& record : earlier.screens) {
        record.shownAs.reset();
        record.screen.reset();
    }
    writeManifest(encodeWallpaperManifest(earlier));
    overlay.reset();
    start();
    const MemoryDisplays::Connected monitor = unplug(2);
    tellOfChange();
    displays.plugIn(2, monitor.display.frame, 1, kPictures + u"blue.png"_s);
    tellOfChange();
    displays.connected.last() = monitor;
    tellOfChange();
    disable();
    EXPECT_EQ(shown(1), kPictures + u"blue.png"_s);
    EXPECT_EQ(shown(2), kPictures + u"light.png"_s);
}

// ---- A system that calls a file otherwise

TEST_F(WallpaperRestore, aPathInAnotherSpellingIsTheSame) {
    displays.whenSet = [this] {
        QString path = *displays.connected[0].picture;
        displays.connected[0].picture =
            path.replace(u"/WallpaperOverlay/"_s, u"/./WallpaperOverlay/../WallpaperOverlay/"_s);
        systemNotifications.post(u"com.apple.desktop"_s);
    };
    enable(u"Live"_s);
    QCoro::waitFor(overlay->finished());
    EXPECT_EQ(takeSets().size(), 2);
    EXPECT_TRUE(overlay->isOverlayInPlace());
    files.removeAsRoot(kPictures + u"blue.png"_s);
    disable();
    QCoro::waitFor(overlay->finished());
    EXPECT_EQ(takeSets().size(), 2);
    EXPECT_TRUE(files.exists(original(1)));
}

TEST_F(WallpaperRestore, aPictureThatTheSystemReplacesIsNotSetForEver) {
    displays.whenSet = [this] {
        displays.connected[0].picture = kPictures + u"light.png"_s;
        systemNotifications.post(u"com.apple.desktop"_s);
    };
    enable(u"Live"_s);
    QCoro::waitFor(overlay->finished());
    EXPECT_EQ(takeSets().size(), 2);
}

// ---- A picture that can't be set

TEST_F(WallpaperRestore, aDisplayThatRefusesThePictureKeepsEverything) {
    enableQuietly();
    displays.connected[0].settingError = u"It is locked."_s;
    disable();
    EXPECT_EQ(takeTrace(), u"  [ERROR] Could not set desktop wallpaper: It is locked.\n"_s + kLabelGone);
    EXPECT_EQ(workFiles(), (QStringList{u"composited-display-1-live-1.jpg"_s, u"original-display-1.jpg"_s,
                                        u"wallpaper-originals.json"_s}));
    takeSets();
    tellOfChange();
    EXPECT_EQ(takeSets(), QStringList()) << "it isn't asked again and again";

    overlay.reset();
    displays.connected[0].settingError.reset();
    start();
    atStart({});
    EXPECT_EQ(shown(1), kPictures + u"blue.png"_s);
    EXPECT_EQ(workFiles(), QStringList());
}

TEST_F(WallpaperRestore, aLabelThatCantBeSetDeletesNothing) {
    enableQuietly();
    displays.connected[0].settingError = u"It is locked."_s;
    update(u"Studio"_s);
    EXPECT_EQ(takeTrace(), u"  [ERROR] Could not set desktop wallpaper: It is locked.\n"
                           "  [ERROR] Could not set desktop wallpaper for display-1.\n"
                           "  [ERROR] Could not set desktop wallpaper: It is locked.\n"
                           "  [APPLIED] Wallpaper profile label set to \"Studio\" on 1 display(s).\n"_s);
    EXPECT_EQ(shown(1), composited(1, u"live"_s));
    EXPECT_TRUE(files.exists(composited(1, u"live"_s)));
    EXPECT_TRUE(files.exists(original(1)));
}

TEST_F(WallpaperRestore, aDisplayThatFailedIsTriedAgainOnlyForSomethingElse) {
    displays.connected[0].settingError = u"It is locked."_s;
    enableQuietly();
    tellOfChange();
    tellOfChange();
    EXPECT_EQ(displays.calls, QStringList());
    EXPECT_EQ(takeTrace(), u"\n"_s);

    choose(1, kPictures + u"light.png"_s);
    EXPECT_EQ(takeSets().size(), 1) << "another picture";
    refresh(u"Studio"_s);
    EXPECT_EQ(takeSets().size(), 2) << "another name, on both";
    displays.connected[0].settingError.reset();
    takeTrace();
    update(u"Studio"_s);
    EXPECT_EQ(shown(1), composited(1, u"studio"_s)) << "asked for again by the user";
}

// ---- A picture that can't be read

TEST_F(WallpaperRestore, aPictureThatCantBeReadIsLeftInPlace) {
    enableQuietly();
    files.addFile(kPictures + u"odd.webp"_s, "not a picture");
    choose(1, kPictures + u"odd.webp"_s);
    EXPECT_EQ(shown(1), kPictures + u"odd.webp"_s) << "the older copy isn't shown in its place";
    EXPECT_EQ(takeTrace(), u"  [ERROR] Could not load wallpaper image for display-1.\n"_s + kLabelledOne);
    update(u"Studio"_s);
    EXPECT_EQ(shown(1), kPictures + u"odd.webp"_s);
    disable();
    EXPECT_EQ(shown(1), kPictures + u"odd.webp"_s);
    EXPECT_EQ(workFiles(), QStringList());
}

TEST_F(WallpaperRestore, damagedAndMissingPicturesAreLeftInPlace) {
    files.addFile(kPictures + u"cut.png"_s, pngFile(plainPicture({20, 10}, Qt::red)).left(30));
    displays.connected[0].picture = kPictures + u"cut.png"_s;
    displays.connected[1].picture = kPictures + u"missing.png"_s;
    displays.plugIn(3, {0, 0, 100, 100}, 1, kPictures.chopped(1));
    displays.plugIn(4, {0, 0, 100, 100}, 1, {}).picture.reset();
    enable(u"Live"_s);
    EXPECT_EQ(takeTrace(), u"  [ERROR] Could not load wallpaper image for display-1.\n"
                           "  [ERROR] Could not load wallpaper image for display-2.\n"
                           "  [ERROR] Could not load wallpaper image for display-3.\n"
                           "  [ERROR] Could not load wallpaper image for display-4.\n"_s);
    EXPECT_EQ(takeSets(), QStringList());
    EXPECT_EQ(workFiles(), QStringList());
}

TEST_F(WallpaperRestore, aTransparentPictureComesBackItself) {
    QImage picture(20, 10, QImage::Format_ARGB32);
    picture.fill(QColor(255, 255, 255, 0));
    files.addFile(kPictures + u"clear.png"_s, pngFile(picture));
    displays.connected[0].picture = kPictures + u"clear.png"_s;
    enable(u"Live"_s);
    EXPECT_GT(lightest(labelOn(1, u"live"_s)), 235) << "white on black";
    EXPECT_LT(lightest(pictureIn(u"original-display-1.jpg"_s)), 10);
    disable();
    EXPECT_EQ(shown(1), kPictures + u"clear.png"_s);
}

TEST_F(WallpaperRestore, aDisplayOfNoSizeFailsAlone) {
    displays.connected[0].display.frame = {0, 0, 0, 0};
    enable(u"Live"_s);
    EXPECT_EQ(takeTrace(), u"  [ERROR] Could not composite wallpaper label for display-1.\n"_s + kLabelledOne);
    EXPECT_EQ(shown(1), kPictures + u"blue.png"_s);
}

// ---- A file that can't be written

TEST_F(WallpaperRestore, aPictureWhoseCopyCantBeKeptIsLeftInPlace) {
    files.failOn(Operation::Write, original(1));
    enable(u"Live"_s);
    EXPECT_EQ(takeTrace(), u"  [ERROR] Could not save composited wallpaper for display-1.\n"_s + kLabelledOne);
    EXPECT_EQ(shown(1), kPictures + u"blue.png"_s);
    EXPECT_EQ(manifest().record(u"display-1"_s), nullptr);
}

TEST_F(WallpaperRestore, noPictureIsTakenAwayThatCantBeRecorded) {
    files.failOn(Operation::Write, kWallpaperFolder + u"wallpaper-originals.json"_s);
    enable(u"Live"_s);
    EXPECT_EQ(takeTrace(), u"  [ERROR] Could not save composited wallpaper for display-1.\n"
                           "  [ERROR] Could not save composited wallpaper for display-2.\n"_s);
    EXPECT_EQ(shown(1), kPictures + u"blue.png"_s);
    EXPECT_EQ(shown(2), kPictures + u"light.png"_s);
}

TEST_F(WallpaperRestore, anUnchangedRecordNeedsNoWriting) {
    enableQuietly();
    files.failOn(Operation::Write, kWallpaperFolder + u"wallpaper-originals.json"_s);
    choose(1, kPictures + u"light.png"_s);
    EXPECT_EQ(takeTrace(), u"  [ERROR] Could not save composited wallpaper for display-1.\n"_s + kLabelledOne);
    EXPECT_EQ(shown(1), kPictures + u"light.png"_s);
    EXPECT_EQ(shown(2), composited(2, u"live"_s));
}

TEST_F(WallpaperRestore, noLabelIsShownThatCantBeRecorded) {
    enableQuietly();
    files.failOn(Operation::Write, kWallpaperFolder + u"wallpaper-originals.json"_s);
    update(u"Studio"_s);
    EXPECT_EQ(takeTrace(), u"  [ERROR] Could not save composited wallpaper for display-1.\n"
                           "  [ERROR] Could not save composited wallpaper for display-2.\n"_s);
    EXPECT_EQ(shown(1), kPictures + u"blue.png"_s);
    EXPECT_EQ(shown(2), kPictures + u"light.png"_s);
}

TEST_F(WallpaperRestore, aLabelThatCantBeWrittenIsntShown) {
    files.failOn(Operation::Write, nextComposited(2, u"live"_s));
    enable(u"Live"_s);
    EXPECT_EQ(takeTrace(), u"  [ERROR] Could not save composited wallpaper for display-2.\n"_s + kLabelledOne);
    EXPECT_EQ(shown(2), kPictures + u"light.png"_s);
    disable();
    EXPECT_EQ(shown(1), kPictures + u"blue.png"_s);
    EXPECT_EQ(workFiles(), QStringList());
}

TEST_F(WallpaperRestore, anyChangeOfAFileMayFail) {
    for (int change = 1; change <= 12; ++change) {
        enable(u"Live"_s);
        files.failAtChange(change);
        update(u"Studio"_s);
        disable();
        files.failAtChange(0);
        QCoro::waitFor(overlay->removeOverlay());
        EXPECT_EQ(shown(1), kPictures + u"blue.png"_s) << change;
        EXPECT_EQ(shown(2), kPictures + u"light.png"_s) << change;
        EXPECT_EQ(workFiles(), QStringList()) << change;
    }
}

// ---- A label that can't be shown

TEST_F(WallpaperRestore, aLabelThatCantBeShownLeavesNoWrongName) {
    const std::function<void()> troubles[] = {
        [this] { files.failOn(Operation::Write, nextComposited(1, u"studio"_s)); },
        [this] {
            displays.connected[0].display.frame = {0, 0, 0, 0};
        },
        [this] {
            files.removeAsRoot(original(1));
            files.addFile(kPictures + u"blue.png"_s, "not a picture any more");
        }};
    for (const auto& trouble : troubles) {
        displays.connected[0].display.frame = {0, 0, 200, 120};
        enableQuietly();
        trouble();
        update(u"Studio"_s);
        EXPECT_EQ(shown(1), kPictures + u"blue.png"_s);
        EXPECT_EQ(shown(2), composited(2, u"studio"_s));
        EXPECT_NE(labels.first(), u"Display 1: shown"_s);
        EXPECT_EQ(labels.last(), u"Display 2: shown"_s);
        disable();
        EXPECT_EQ(workFiles(), QStringList());
    }
}

TEST_F(WallpaperRestore, eachDisplayHasAResult) {
    displays.plugIn(3, {0, 0, 0, 0}, 1, kPictures + u"blue.png"_s);
    displays.plugIn(4, {0, 0, 40, 30}, 1, kPictures + u"missing.png"_s);
    displays.plugIn(5, {0, 0, 40, 30}, 1, kPictures + u"blue.png"_s);
    displays.connected[1].settingError = u"It is locked."_s;
    files.failOn(Operation::Write, nextComposited(5, u"live"_s));
    const QStringList results{
        u"Display 1: shown"_s, u"Display 2: It is locked."_s, u"Display 3: The label could not be composed."_s,
        u"Display 4: Its picture could not be read."_s, u"Display 5: The labelled picture could not be saved."_s};
    enable(u"Live"_s);
    EXPECT_EQ(labels, results);
    labels.clear();
    tellOfChange();
    EXPECT_EQ(labels, QStringList()) << "nothing was tried";
    choose(1, kPictures + u"light.png"_s);
    EXPECT_EQ(labels, results) << "also of those that aren't tried again";
}

TEST_F(WallpaperRestore, aDisplayWhoseUserWasQuickerHasAResult) {
    overlay->setOverlayEnabled(true, u"Live"_s);
    QStringList first;
    QObject::connect(overlay.get(), &ProfileLabel::displaysLabelled,
                     [&](const QList<DisplayLabel>& results) { first.append(results.first().detail); });
    displays.connected[0].picture = kPictures + u"light.png"_s;
    QCoro::waitFor(overlay->finished());
    EXPECT_EQ(first, (QStringList{u"Another picture was chosen meanwhile."_s, QString()}));
}

TEST_F(WallpaperRestore, aDisplayUnpluggedMeanwhileHasAResult) {
    overlay->setOverlayEnabled(true, u"Live"_s);
    QStringList first;
    QObject::connect(overlay.get(), &ProfileLabel::displaysLabelled,
                     [&](const QList<DisplayLabel>& results) { first.append(results.last().detail); });
    displays.connected.removeLast();
    QCoro::waitFor(overlay->finished());
    EXPECT_EQ(first, QStringList(u"It isn't connected any more."_s));
}

TEST_F(WallpaperRestore, aLabelThatTheSystemDoesntShowIsntCalledShown) {
    displays.whenSet = [this] { displays.connected[0].picture = kPictures + u"light.png"_s; };
    enable(u"Live"_s);
    EXPECT_EQ(labels, (QStringList{u"Display 1: The system shows another picture."_s, u"Display 2: shown"_s}));
    EXPECT_EQ(takeTrace(), kLabelledOne);
}

TEST_F(WallpaperRestore, aLostCopyIsMadeAnewFromTheUsersOwnFile) {
    enableQuietly();
    const QByteArray copy = files.read(original(1));
    const std::function<void()> losses[] = {[this] { files.removeAsRoot(original(1)); },
                                            [this] { files.addFile(original(1), "damaged"); }};
    for (const auto& lose : losses) {
        lose();
        overlay.reset();
        start();
        update(u"Live"_s);
        EXPECT_EQ(takeTrace(), kLabelledTwo);
        EXPECT_EQ(files.read(original(1)), copy);
    }
    files.removeAsRoot(original(1));
    files.failOn(Operation::Write, original(1));
    update(u"Studio"_s);
    EXPECT_EQ(labels.first(), u"Display 1: The labelled picture could not be saved."_s);
    EXPECT_EQ(shown(1), kPictures + u"blue.png"_s);
}

TEST_F(WallpaperRestore, aNameWithoutAReadableLetterIsNotShown) {
    const QString letters = lettersWithoutAFont();
    enableQuietly();
    update(letters);
    EXPECT_EQ(takeTrace(), u"  [ERROR] Could not composite wallpaper label for display-1.\n"
                           "  [ERROR] Could not composite wallpaper label for display-2.\n"
                           "  [INFO] No font on this Mac has all letters of \"%1\".\n"_s.arg(letters));
    EXPECT_EQ(labels, (QStringList{u"Display 1: No font has the letters of the name."_s,
                                   u"Display 2: No font has the letters of the name."_s}));
    EXPECT_EQ(shown(1), kPictures + u"blue.png"_s);
}

TEST_F(WallpaperRestore, aNameThatCanBeReadInPartIsShownAndSaidToBe) {
    const QString name = u"Tour "_s + lettersWithoutAFont();
    enableQuietly();
    update(name);
    EXPECT_EQ(takeTrace(), u"  [APPLIED] Wallpaper profile label set to \"%1\" on 2 display(s).\n"
                           "  [INFO] No font on this Mac has all letters of \"%1\".\n"_s.arg(name));
    EXPECT_EQ(labels.first(), u"Display 1: shown. Not every letter of the name has a font."_s);
    EXPECT_TRUE(overlay->isOverlayInPlace());
}

// ---- A program that dies

TEST_F(WallpaperRestore, aProgramThatDiesAtAnyChangeOfAFileLosesNoPicture) {
    const std::function<void()> operations[] = {[this] { enable(u"Live"_s); }, [this] { update(u"Studio"_s); },
                                                [this] { choose(1, kPictures + u"light.png"_s); },
                                                [this] { disable(); }};
    for (size_t dying = 0; dying < std::size(operations); ++dying) {
        bool hasDied = true;
        for (int change = 0; hasDied; ++change) {
            SCOPED_TRACE("operation " + std::to_string(dying) + ", change " + std::to_string(change));
            ASSERT_LT(change, 30);
            displays.connected[0].picture = kPictures + u"blue.png"_s;
            start();
            for (size_t before = 0; before < dying; ++before) {
                operations[before]();
            }
            MortalFileManager mortal(files);
            mortal.changesLeft = change;
            mortal.whenDead = [this] {
                for (MemoryDisplays::Connected& each : displays.connected) {
                    each.settingError = u"The program is dead"_s;
                }
            };
            overlay.reset();
            overlay = std::make_unique<WallpaperProfileOverlay>(wallpaperPorts(hostWith(mortal, clock)));
            operations[dying]();
            hasDied = mortal.isDead();
            for (MemoryDisplays::Connected& each : displays.connected) {
                each.settingError.reset();
            }
            const bool hasChosen = dying > 2 || shown(1) == kPictures + u"light.png"_s || dying == 2;
            overlay.reset();
            start();
            QCoro::waitFor(overlay->finished());
            disable();
            EXPECT_EQ(shown(1), kPictures + (hasChosen ? u"light.png"_s : u"blue.png"_s));
            EXPECT_EQ(shown(2), kPictures + u"light.png"_s);
            EXPECT_EQ(workFiles(), QStringList());
        }
    }
}

// ---- A manifest that isn't to be believed

TEST_F(WallpaperRestore, aManifestLeadsToNoFileOutsideOfTheWorkFolder) {
    enableQuietly();
    files.addFile(u"/Users/alex/Pictures/private.jpg"_s, "private");
    writeManifest(encodeWallpaperManifest(
        {{{u"display-1"_s, u"/Users/alex/Pictures/private.jpg"_s, std::nullopt},
          {u"display-2"_s, kWallpaperFolder + u"../../../../../Pictures/private.jpg"_s, u"nonsense"_s},
          {u"display-9"_s, u"/Users/alex/Pictures/private.jpg"_s, std::nullopt}}}));
    update(u"Studio"_s);
    disable();
    EXPECT_EQ(files.read(u"/Users/alex/Pictures/private.jpg"_s), "private");
    EXPECT_FALSE(displays.calls.contains(u"load /Users/alex/Pictures/private.jpg"_s));
    EXPECT_EQ(shown(1), shownOriginal(1));
    EXPECT_EQ(shown(2), shownOriginal(2));
}

TEST_F(WallpaperRestore, aRecordThatPointsOutsideIsReplacedByTheCopyThatIsThere) {
    enableQuietly();
    writeManifest(encodeWallpaperManifest(
        {{{u"display-1"_s, u"/Users/old/original-display-1.jpg"_s, u"file:///Users/alex/Pictures/blue.png"_s}}}));
    update(u"Studio"_s);
    EXPECT_EQ(shown(1), composited(1, u"studio"_s));
}

TEST_F(WallpaperRestore, aLinkInTheWorkFolderIsNoCopy) {
    enableQuietly();
    files.addFile(u"/Users/alex/private.jpg"_s, pngFile(plainPicture({20, 10}, Qt::red)));
    files.removeAsRoot(original(1));
    files.addLink(original(1), u"/Users/alex/private.jpg"_s);
    update(u"Studio"_s);
    EXPECT_EQ(shown(1), composited(1, u"studio"_s)) << "of a copy that was made anew";
    EXPECT_EQ(files.status(original(1)).kind, FileStatus::Kind::File);
    EXPECT_LT(pictureIn(u"original-display-1.jpg"_s).pixelColor(5, 5).red(), 50);
    disable();
    EXPECT_TRUE(files.exists(u"/Users/alex/private.jpg"_s));
    EXPECT_EQ(shown(1), kPictures + u"blue.png"_s);
}

TEST_F(WallpaperRestore, whatAManifestCallsTheUsersFileIsNeverOneOfOurs) {
    enableQuietly();
    for (const QString& url :
         {u"file://"_s + QString(composited(1, u"live"_s)).replace(u' ', u"%20"_s), u"https://example.com/a.jpg"_s,
          u"file:///Users/alex/missing.png"_s, u"file:"_s, u""_s}) {
        writeManifest(encodeWallpaperManifest({{{u"display-1"_s, original(1), url}}}));
        disable();
        EXPECT_EQ(shown(1), shownOriginal(1)) << url.toStdString();
        enable(u"Live"_s);
    }
}

TEST_F(WallpaperRestore, nothingIsDeletedWhereTheWorkFolderIsALink) {
    files.addFile(u"/Users/alex/Elsewhere/holiday.jpg"_s, "holiday");
    files.addFile(u"/Users/alex/Elsewhere/composited-display-1-holiday.jpg"_s, "holiday");
    files.addFolders(u"/Users/alex/Library/Application Support/Quorvane"_s);
    files.addLink(kWallpaperFolder.chopped(1), u"/Users/alex/Elsewhere"_s);
    enable(u"Live"_s);
    disable();
    EXPECT_EQ(files.read(u"/Users/alex/Elsewhere/holiday.jpg"_s), "holiday");
    EXPECT_EQ(files.read(u"/Users/alex/Elsewhere/composited-display-1-holiday.jpg"_s), "holiday");
    EXPECT_EQ(shown(1), kPictures + u"blue.png"_s);
}

TEST_F(WallpaperRestore, aLabelIsRenewedThoughTheManifestIsLost) {
    enableQuietly();
    writeManifest("");
    update(u"Studio"_s);
    EXPECT_EQ(shown(1), composited(1, u"studio"_s));
    EXPECT_EQ(manifest().screens.size(), 2);
}

TEST_F(WallpaperRestore, aLabelWithoutItsOriginalStays) {
    displays.connected[0].picture = kWallpaperFolder + u"composited-display-1-old.jpg"_s;
    files.addFile(*shown(1), pngFile(plainPicture({20, 10}, Qt::red)));
    enable(u"Live"_s);
    EXPECT_EQ(takeTrace(), u"  [ERROR] Could not load wallpaper image for display-1.\n"_s + kLabelledOne);
    EXPECT_EQ(shown(1), kWallpaperFolder + u"composited-display-1-old.jpg"_s);
    EXPECT_TRUE(files.exists(*shown(1)));
}

TEST_F(WallpaperRestore, aDisplayWithAnotherNumberKeepsItsFiles) {
    displays.plugIn(12, {0, 0, 100, 100}, 1, kPictures + u"blue.png"_s);
    enable(u"Live"_s);
    update(u"Studio"_s);
    EXPECT_EQ(shown(3), composited(12, u"studio"_s));
    EXPECT_TRUE(files.exists(composited(12, u"studio"_s)));
}

} // namespace quorvane
