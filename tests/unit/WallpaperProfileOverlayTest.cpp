// When the label is shown, with which name, and what the displays then show.

#include "fakes/WallpaperSystem.h"

namespace quorvane {

namespace {

const QString kNoName = u"  [INFO] Wallpaper overlay enabled but no custom profile name is available.\n"_s;
const QString kRemoved = u"  [APPLIED] Wallpaper profile label removed.\n"_s;

QString labelled(const QString& name, int count) {
    return u"  [APPLIED] Wallpaper profile label set to \"%1\" on %2 display(s).\n"_s.arg(name).arg(count);
}

class WallpaperOverlay : public WallpaperSystem {};

} // namespace

// ---- The option

TEST_F(WallpaperOverlay, showsTheNameOnEveryDisplay) {
    enable(u"Live Set"_s);
    EXPECT_EQ(takeTrace(), labelled(u"Live Set"_s, 2));
    EXPECT_EQ(takeSets(), (QStringList{u"Display 1 composited-display-1-live-set-1.jpg"_s,
                                       u"Display 2 composited-display-2-live-set-1.jpg"_s}));
    EXPECT_EQ(workFiles(),
              (QStringList{u"composited-display-1-live-set-1.jpg"_s, u"composited-display-2-live-set-1.jpg"_s,
                           u"original-display-1.jpg"_s, u"original-display-2.jpg"_s, u"wallpaper-originals.json"_s}));
    EXPECT_EQ(defaults.values.value(kShowProfileOnWallpaper), true);
    EXPECT_EQ(storedName(), u"Live Set"_s);
    EXPECT_TRUE(overlay->isOverlayInPlace());
}

TEST_F(WallpaperOverlay, composesInThePixelsOfEachDisplay) {
    enable(u"Live"_s);
    const QImage builtIn = labelOn(1, u"live"_s);
    const QImage monitor = labelOn(2, u"live"_s);
    EXPECT_EQ(builtIn.size(), QSize(400, 240));
    EXPECT_EQ(monitor.size(), QSize(300, 200));
    EXPECT_GT(lightest(builtIn), 235) << "white on dark blue";
    EXPECT_LT(darkest(monitor, monitor.rect()), 20) << "black on light grey";
}

TEST_F(WallpaperOverlay, keepsACopyOfEachPictureAndWhereItCameFrom) {
    enable(u"Live"_s);
    EXPECT_EQ(pictureIn(u"original-display-1.jpg"_s).size(), QSize(20, 10));
    EXPECT_EQ(decodeWallpaperManifest(files.read(kWallpaperFolder + u"wallpaper-originals.json"_s)),
              (WallpaperManifest{{{u"display-1"_s, original(1), u"file:///Users/alex/Pictures/blue.png"_s,
                                   QStringList(u"composited-display-1-live-1.jpg"_s), u"Display 1-200x120"_s},
                                  {u"display-2"_s, original(2), u"file:///Users/alex/Pictures/light.png"_s,
                                   QStringList(u"composited-display-2-live-1.jpg"_s), u"Display 2-300x200"_s}}}));
}

TEST_F(WallpaperOverlay, bringsTheUsersOwnFilesBackWhenTheOptionGoesOff) {
    enable(u"Live"_s);
    takeTrace();
    takeSets();
    disable();
    EXPECT_EQ(takeTrace(), kRemoved);
    EXPECT_EQ(takeSets(), (QStringList{u"Display 1 blue.png"_s, u"Display 2 light.png"_s}));
    EXPECT_EQ(workFiles(), QStringList());
    EXPECT_EQ(storedName(), u"Default"_s);
    EXPECT_EQ(defaults.values.value(kShowProfileOnWallpaper), false);
    EXPECT_FALSE(overlay->isOverlayInPlace());
}

TEST_F(WallpaperOverlay, thatWasNeverThereSetsNothingWhenItIsRemoved) {
    files.addFile(kWallpaperFolder + u"left-over.jpg"_s, "x");
    disable();
    EXPECT_EQ(takeTrace(), kRemoved);
    EXPECT_EQ(takeSets(), QStringList());
    EXPECT_EQ(workFiles(), QStringList());
    EXPECT_EQ(storedName(), u"Default"_s);
    EXPECT_EQ(shown(1), kPictures + u"blue.png"_s);
}

// ---- Which name

TEST_F(WallpaperOverlay, takesTheGivenNameFirst) {
    defaults.values[kQuorvaneLastAppliedProfileName] = u"Applied"_s;
    enable(u"Given"_s);
    EXPECT_EQ(storedName(), u"Given"_s);
}

TEST_F(WallpaperOverlay, takesTheLastAppliedNameForDefault) {
    defaults.values[kQuorvaneLastAppliedProfileName] = u"Applied"_s;
    addProfile(u"Saved"_s, ManualClock().time);
    enable(u"dEFAULT"_s);
    EXPECT_EQ(storedName(), u"Applied"_s);
}

TEST_F(WallpaperOverlay, takesTheFirstSavedProfileBeforeTheNameThatStandsThere) {
    defaults.values[kQuorvaneLastAppliedProfileName] = u"Default"_s;
    defaults.values[kWallpaperProfileName] = u"Old"_s;
    addProfile(u"Older"_s, ManualClock().time);
    addProfile(u"Newest"_s, ManualClock().time.addDays(1));
    enable({});
    EXPECT_EQ(storedName(), u"Newest"_s);
}

TEST_F(WallpaperOverlay, takesTheNameThatStandsThereLast) {
    defaults.values[kWallpaperProfileName] = u"Old"_s;
    addProfile(u"Default"_s, ManualClock().time);
    enable({});
    EXPECT_EQ(storedName(), u"Old"_s);
}

TEST_F(WallpaperOverlay, saysSoWhenThereIsNoName) {
    enable({});
    EXPECT_EQ(takeTrace(), kNoName);
    enable(u"Default"_s);
    EXPECT_EQ(takeTrace(), kNoName);
    EXPECT_EQ(takeSets(), QStringList());
    EXPECT_EQ(workFiles(), QStringList());
    EXPECT_EQ(defaults.values.value(kShowProfileOnWallpaper), true);
    EXPECT_FALSE(defaults.values.contains(kWallpaperProfileName));
}

// ---- After an apply

TEST_F(WallpaperOverlay, doesNothingAfterAnApplyWhileTheOptionIsOff) {
    update(u"Live"_s);
    EXPECT_EQ(takeTrace(), u"\n"_s);
    EXPECT_EQ(displays.calls, QStringList());
    EXPECT_EQ(defaults.writtenKeys, QStringList());
    EXPECT_FALSE(files.exists(kWallpaperFolder));
}

TEST_F(WallpaperOverlay, showsTheProfileThatWasApplied) {
    enable(u"Live"_s);
    takeTrace();
    update(u"Studio"_s);
    EXPECT_EQ(takeTrace(), labelled(u"Studio"_s, 2));
    EXPECT_EQ(shown(1), composited(1, u"studio"_s));
    EXPECT_EQ(storedName(), u"Studio"_s);
    EXPECT_EQ(defaults.values.value(kQuorvaneLastAppliedProfileName), u"Studio"_s);
    EXPECT_FALSE(files.exists(composited(1, u"live"_s))) << "the former label's file is gone";
    EXPECT_EQ(workFiles().size(), 5);
}

TEST_F(WallpaperOverlay, goesWhenDefaultIsApplied) {
    enable(u"Live"_s);
    takeTrace();
    update(u"default"_s);
    EXPECT_EQ(takeTrace(), kRemoved);
    EXPECT_EQ(shown(1), kPictures + u"blue.png"_s);
    EXPECT_EQ(defaults.values.value(kShowProfileOnWallpaper), true) << "it comes back with the next profile";
    EXPECT_FALSE(defaults.values.contains(kQuorvaneLastAppliedProfileName));
}

TEST_F(WallpaperOverlay, takesAnotherNameWhereTheProfileIsNotKnown) {
    enable(u"Live"_s);
    defaults.values[kQuorvaneLastAppliedProfileName] = u"Studio"_s;
    update({});
    EXPECT_EQ(storedName(), u"Studio"_s);
    EXPECT_EQ(defaults.values.value(kQuorvaneLastAppliedProfileName), u"Studio"_s);
}

TEST_F(WallpaperOverlay, saysSoAfterAnApplyWhenThereIsNoName) {
    defaults.values[kShowProfileOnWallpaper] = true;
    update({});
    EXPECT_EQ(takeTrace(), kNoName);
    EXPECT_EQ(takeSets(), QStringList());
}

TEST_F(WallpaperOverlay, followsTheProfileThatTheSystemRecords) {
    defaults.values[kShowProfileOnWallpaper] = true;
    overlay->follow(system);
    trace.clear();
    UnifiedProfile profile;
    profile.name = u"Live"_s;
    system.recordAppliedConfiguration(profile, {});
    EXPECT_EQ(takeSets(), QStringList()) << "it is a task of its own";
    processEventsUntil([this] { return overlay->isOverlayInPlace() && !overlay->isApplyingOverlay(); });
    EXPECT_EQ(takeTrace(), labelled(u"Live"_s, 2));
    EXPECT_EQ(system.logMessages(), QStringList(labelled(u"Live"_s, 2).trimmed().prepend(u"  "_s)));
}

TEST_F(WallpaperOverlay, isNamedAfterAProfileWithASignOfItsOwn) {
    enable(u"Set %1 %2"_s);
    EXPECT_EQ(takeTrace(), u"  [APPLIED] Wallpaper profile label set to \"Set %1 %2\" on 2 display(s).\n"_s);
}

// ---- At the start

TEST_F(WallpaperOverlay, isBroughtUpToDateAtTheStart) {
    enable(u"Live"_s);
    overlay.reset();
    start();
    takeTrace();
    atStart(u"Studio"_s);
    EXPECT_EQ(takeTrace(), labelled(u"Studio"_s, 2));
    EXPECT_FALSE(defaults.values.contains(kQuorvaneLastAppliedProfileName)) << "nothing was applied";
}

TEST_F(WallpaperOverlay, staysAwayAtTheStartWhileDefaultStandsThere) {
    enable(u"Live"_s);
    refresh(u"Default"_s);
    addProfile(u"Saved"_s, ManualClock().time);
    overlay.reset();
    start();
    takeTrace();
    takeSets();
    atStart(u"Saved"_s);
    EXPECT_EQ(takeTrace(), u"\n"_s);
    EXPECT_EQ(takeSets(), QStringList());
    EXPECT_EQ(storedName(), u"Default"_s);
}

// ---- When another profile is chosen

TEST_F(WallpaperOverlay, isRefreshedForAnotherName) {
    enable(u"Live"_s);
    takeTrace();
    refresh(u"Studio"_s);
    EXPECT_EQ(takeTrace(), labelled(u"Studio"_s, 2));
    EXPECT_EQ(storedName(), u"Studio"_s);
}

TEST_F(WallpaperOverlay, isLeftAloneForTheSameName) {
    enable(u"Live"_s);
    takeTrace();
    takeSets();
    defaults.writtenKeys.clear();
    refresh(u"Live"_s);
    EXPECT_EQ(takeTrace(), u"\n"_s);
    EXPECT_EQ(displays.calls, QStringList());
    EXPECT_EQ(defaults.writtenKeys, QStringList());
}

TEST_F(WallpaperOverlay, remembersTheNameWhileTheOptionIsOff) {
    refresh(u"Default"_s);
    EXPECT_EQ(defaults.writtenKeys, QStringList()) << "a missing name is Default";
    refresh(u"Live"_s);
    EXPECT_EQ(storedName(), u"Live"_s);
    EXPECT_EQ(takeTrace(), u"\n"_s);
    EXPECT_EQ(takeSets(), QStringList());
    EXPECT_FALSE(files.exists(kWallpaperFolder));
}

TEST_F(WallpaperOverlay, goesWhenDefaultIsChosen) {
    enable(u"Live"_s);
    takeTrace();
    refresh(u"Default"_s);
    EXPECT_EQ(takeTrace(), kRemoved);
    EXPECT_EQ(shown(2), kPictures + u"light.png"_s);
    EXPECT_EQ(workFiles(), QStringList());
}

TEST_F(WallpaperOverlay, withoutANameIsLeftAsItIs) {
    enable(u"Live"_s);
    takeTrace();
    takeSets();
    refresh({});
    EXPECT_EQ(storedName(), u"Live"_s);
    QCoro::waitFor(overlay->applyOverlay({}));
    EXPECT_EQ(takeTrace(), u"\n"_s);
    EXPECT_EQ(takeSets(), QStringList());
}

// ---- What isn't done twice

TEST_F(WallpaperOverlay, thatIsThereIsntComposedAgain) {
    enable(u"Live"_s);
    takeTrace();
    displays.calls.clear();
    update(u"Live"_s);
    EXPECT_EQ(takeTrace(), labelled(u"Live"_s, 2));
    EXPECT_EQ(displays.calls, QStringList());
}

TEST_F(WallpaperOverlay, ofAnotherNameWithTheSameFileIsComposedAgain) {
    enable(u"My Gig"_s);
    const QByteArray before = files.read(composited(1, u"my-gig"_s));
    update(u"My Gig!"_s);
    EXPECT_NE(files.read(composited(1, u"my-gig"_s)), before);
    EXPECT_EQ(shown(1), composited(1, u"my-gig"_s));
}

TEST_F(WallpaperOverlay, isComposedAgainWhenTheDisplayHasAnotherResolution) {
    enable(u"Live"_s);
    displays.connected[0].display.frame = {0, 0, 250, 150};
    update(u"Live"_s);
    EXPECT_EQ(labelOn(1, u"live"_s).size(), QSize(500, 300));
}

TEST_F(WallpaperOverlay, isNotInPlaceWhileTheFileHoldsAnotherName) {
    enable(u"My Gig"_s);
    files.failOn(MemoryFileManager::Operation::Write, nextComposited(1, u"my-gig"_s));
    update(u"My Gig!"_s);
    EXPECT_EQ(shown(1), kPictures + u"blue.png"_s) << "and no name rather than the wrong one";
    EXPECT_FALSE(overlay->isOverlayInPlace());
}

TEST_F(WallpaperOverlay, whoseFileIsGoneIsComposedAgain) {
    enable(u"Live"_s);
    files.removeAsRoot(composited(2, u"live"_s));
    update(u"Live"_s);
    EXPECT_TRUE(files.exists(composited(2, u"live"_s)));
}

// ---- A path that the system knows is drawn as it was when it was first set

TEST_F(WallpaperOverlay, ofEachOfTwoNamesWithOneSlugIsDrawn) {
    enable(u"Show 1"_s);
    const QImage first = drawn(1);
    update(u"Show (1)"_s);
    const QImage second = drawn(1);
    EXPECT_NE(second, first);
    EXPECT_EQ(second, QImage::fromData(files.read(*shown(1))));
    for (int round = 0; round < 5; ++round) {
        update(u"Show 1"_s);
        EXPECT_EQ(drawn(1), first) << round;
        update(u"Show (1)"_s);
        EXPECT_EQ(drawn(1), second) << round;
    }
}

TEST_F(WallpaperOverlay, isDrawnInThePixelsOfNow) {
    enable(u"Live"_s);
    displays.connected[0].display.frame = {0, 0, 250, 150};
    tellOfChange();
    EXPECT_EQ(drawn(1).size(), QSize(500, 300));
    displays.connected[0].display.frame = {0, 0, 200, 120};
    tellOfChange();
    EXPECT_EQ(drawn(1).size(), QSize(400, 240));
    EXPECT_TRUE(overlay->isOverlayInPlace());
}

TEST_F(WallpaperOverlay, thatComesBackIsDrawnOnThePictureOfNow) {
    addPicture(u"white.png"_s, Qt::white);
    enable(u"Live"_s);
    disable();
    choose(1, kPictures + u"white.png"_s);
    enable(u"Live"_s);
    EXPECT_GT(drawn(1).pixelColor(390, 230).lightness(), 240);
    overlay.reset();
    defaults.values.remove(kQuorvaneWallpaperNumber);
    start();
    choose(1, kPictures + u"blue.png"_s);
    EXPECT_LT(drawn(1).pixelColor(390, 230).lightness(), 120) << "by the files that stand there alone";
}

TEST_F(WallpaperOverlay, leavesTheCopyOfThePictureOfNow) {
    for (const auto& [name, color] : {std::pair(u"white.png"_s, Qt::white), std::pair(u"black.png"_s, Qt::black)}) {
        addPicture(name, color);
        choose(1, kPictures + name);
        enable(u"Live"_s);
        files.removeAsRoot(kPictures + name);
        disable();
        EXPECT_TRUE(shown(1)->startsWith(kWallpaperFolder));
        EXPECT_LT(std::abs(drawn(1).pixelColor(5, 5).lightness() - QColor(color).lightness()), 20);
    }
}

// ---- The user changes a picture by hand

TEST_F(WallpaperOverlay, comesOntoAPictureThatTheUserChooses) {
    enable(u"Live"_s);
    addPicture(u"white.png"_s, Qt::white);
    takeTrace();
    takeSets();
    choose(1, kPictures + u"white.png"_s);
    EXPECT_EQ(takeSets(), QStringList(u"Display 1 composited-display-1-live-2.jpg"_s));
    EXPECT_EQ(takeTrace(), labelled(u"Live"_s, 2));
    EXPECT_LT(darkest(labelOn(1, u"live"_s), {0, 0, 400, 240}), 20) << "black on white";
    disable();
    EXPECT_EQ(shown(1), kPictures + u"white.png"_s) << "the new picture is the one that comes back";
    EXPECT_EQ(shown(2), kPictures + u"light.png"_s);
}

TEST_F(WallpaperOverlay, isntDisturbedByItsOwnChanges) {
    displays.whenSet = [this] { systemNotifications.post(u"com.apple.desktop"_s); };
    enable(u"Live"_s);
    QCoro::waitFor(overlay->finished());
    EXPECT_EQ(takeSets().size(), 2);
    EXPECT_EQ(takeTrace(), labelled(u"Live"_s, 2));
    disable();
    QCoro::waitFor(overlay->finished());
    EXPECT_EQ(takeSets().size(), 2);
    EXPECT_EQ(takeTrace(), kRemoved);
}

TEST_F(WallpaperOverlay, leavesAChosenPictureAloneWhileTheOptionIsOff) {
    choose(1, kPictures + u"light.png"_s);
    EXPECT_EQ(takeTrace(), u"\n"_s);
    EXPECT_EQ(displays.calls, QStringList());
    EXPECT_FALSE(files.exists(kWallpaperFolder));
}

TEST_F(WallpaperOverlay, comesOntoADisplayThatIsPluggedIn) {
    enable(u"Live"_s);
    takeTrace();
    displays.plugIn(3, {0, 0, 100, 100}, 1, kPictures + u"blue.png"_s);
    tellOfChange();
    EXPECT_EQ(shown(3), composited(3, u"live"_s));
    EXPECT_EQ(takeTrace(), labelled(u"Live"_s, 3));
}

TEST_F(WallpaperOverlay, stopsListeningAtItsEnd) {
    EXPECT_EQ(systemNotifications.observerCount(), 1);
    EXPECT_EQ(displays.observerCount(), 1);
    overlay.reset();
    EXPECT_EQ(systemNotifications.observerCount(), 0);
    EXPECT_EQ(displays.observerCount(), 0);
}

// ---- What no notification tells of

TEST_F(WallpaperOverlay, comesOntoAPictureThatNobodyToldOf) {
    enable(u"Live"_s);
    displays.connected[0].picture = kPictures + u"light.png"_s;
    tell(DesktopChange::Other);
    EXPECT_EQ(shown(1), composited(1, u"live"_s));
    disable();
    EXPECT_EQ(shown(1), kPictures + u"light.png"_s);
}

TEST_F(WallpaperOverlay, isntComposedWhereNothingHasChanged) {
    enable(u"Live"_s);
    displays.calls.clear();
    takeTrace();
    defaults.writtenKeys.clear();
    tell(DesktopChange::Other);
    tell(DesktopChange::Space);
    EXPECT_EQ(displays.calls, QStringList());
    EXPECT_EQ(takeTrace(), u"\n"_s);
    EXPECT_EQ(defaults.writtenKeys, QStringList());
    disable();
    displays.calls.clear();
    tell(DesktopChange::Other);
    EXPECT_EQ(displays.calls, QStringList());
}

TEST_F(WallpaperOverlay, comesOntoEachSpaceThatIsVisitedAndLeavesEachItsOwnPicture) {
    enable(u"Live"_s);
    const std::optional<QString> first = shown(1);
    displays.connected[0].picture = kPictures + u"light.png"_s;
    tell(DesktopChange::Space);
    const std::optional<QString> second = shown(1);
    EXPECT_EQ(second, composited(1, u"live"_s));
    EXPECT_NE(second, first);
    EXPECT_GT(drawn(1).pixelColor(390, 230).lightness(), 200) << "of the light picture";
    displays.connected[0].picture = first;
    takeSets();
    tell(DesktopChange::Space);
    EXPECT_EQ(takeSets(), QStringList()) << "its label is still there";
    disable();
    EXPECT_EQ(shown(1), kPictures + u"blue.png"_s);
    displays.connected[0].picture = second;
    tell(DesktopChange::Space);
    EXPECT_EQ(shown(1), kPictures + u"light.png"_s) << "the other Space keeps its label until it is visited";
    EXPECT_EQ(workFiles(), QStringList());
}

TEST_F(WallpaperOverlay, leavesASpaceItsPictureAlsoWhereTheNextIsSeenBeforeItIsToldOf) {
    enable(u"Live"_s);
    const std::optional<QString> first = shown(1);
    displays.connected[0].picture = kPictures + u"light.png"_s;
    systemNotifications.post(u"com.apple.desktop"_s); // of something else
    displays.tell(DesktopChange::Space);
    QCoro::waitFor(overlay->finished());
    tellOfChange();
    disable();
    EXPECT_EQ(shown(1), kPictures + u"light.png"_s);
    displays.connected[0].picture = first;
    tell(DesktopChange::Space);
    EXPECT_EQ(shown(1), kPictures + u"blue.png"_s);
    EXPECT_EQ(workFiles(), QStringList());
}

TEST_F(WallpaperOverlay, keepsNothingOfAPictureThatWasReplaced) {
    enable(u"Live"_s);
    choose(1, kPictures + u"light.png"_s);
    tell(DesktopChange::Other);
    EXPECT_EQ(workFiles().size(), 5) << workFiles().join(u' ').toStdString();
    tell(DesktopChange::Space);
    disable();
    EXPECT_EQ(workFiles(), QStringList());
}

TEST_F(WallpaperOverlay, ofNowComesOntoASpaceWithAnOlderName) {
    enable(u"Live"_s);
    const std::optional<QString> first = shown(1);
    displays.connected[0].picture = kPictures + u"light.png"_s;
    tell(DesktopChange::Space);
    update(u"Studio"_s);
    displays.connected[0].picture = first;
    tell(DesktopChange::Space);
    EXPECT_EQ(shown(1), composited(1, u"studio"_s));
    EXPECT_LT(drawn(1).pixelColor(390, 230).lightness(), 120) << "of the blue picture";
    EXPECT_EQ(drawn(1), labelOn(1, u"studio"_s));
}

TEST_F(WallpaperOverlay, withoutALogIsQuiet) {
    overlay->setLogAction({});
    enable(u"Live"_s);
    EXPECT_EQ(takeTrace(), u"\n"_s);
    EXPECT_EQ(shown(1), composited(1, u"live"_s));
}

TEST_F(WallpaperOverlay, withoutADisplayHasNothingToDo) {
    displays.connected.clear();
    enable(u"Live"_s);
    EXPECT_EQ(takeTrace(), u"\n"_s);
    EXPECT_EQ(storedName(), u"Live"_s);
    disable();
    EXPECT_EQ(takeTrace(), kRemoved);
}

// ---- The event loop

TEST_F(WallpaperOverlay, keepsTheEventLoopRunningWhileItComposes) {
    displays.connected.clear();
    displays.plugIn(1, {0, 0, 3008, 1692}, 2, kPictures + u"blue.png"_s);
    const Ticks ticks;
    enable(u"Live"_s);
    EXPECT_GT(ticks.count(), 20);
    EXPECT_EQ(labelOn(1, u"live"_s).size(), QSize(6016, 3384));
}

} // namespace quorvane
