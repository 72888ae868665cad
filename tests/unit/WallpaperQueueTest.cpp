// Changes come one at a time and in order, also when they are asked for all at once.

#include "fakes/WallpaperSystem.h"

#include <stdexcept>

namespace quorvane {

namespace {

const QString kLabelRemoved = u"  [APPLIED] Wallpaper profile label removed.\n"_s;

QString labelled(const QString& name) {
    return u"  [APPLIED] Wallpaper profile label set to \"%1\" on 2 display(s).\n"_s.arg(name);
}

class WallpaperQueue : public WallpaperSystem {
protected:
    WallpaperQueue() { defaults.values[kShowProfileOnWallpaper] = true; }
    void finish() { QCoro::waitFor(overlay->finished()); }
};

QCoro::Task<void> note(QCoro::Task<void> task, QStringList& ends, QString name) {
    co_await task;
    ends.append(name);
}

} // namespace

TEST_F(WallpaperQueue, theLastOfSeveralWaitingNamesWins) {
    overlay->applyOverlay(u"First"_s);
    overlay->applyOverlay(u"Second"_s);
    overlay->refreshForProfile(u"Third"_s);
    overlay->updateForAppliedProfile(u"Fourth"_s);
    EXPECT_TRUE(overlay->isApplyingOverlay());
    finish();
    EXPECT_FALSE(overlay->isApplyingOverlay());
    EXPECT_EQ(takeTrace(), labelled(u"First"_s) + labelled(u"Fourth"_s));
    EXPECT_EQ(shown(1), composited(1, u"fourth"_s));
    EXPECT_EQ(storedName(), u"Fourth"_s);
    EXPECT_EQ(workFiles().size(), 5);
}

TEST_F(WallpaperQueue, aRemovalComesAfterWhatWasAskedForBefore) {
    overlay->applyOverlay(u"First"_s);
    overlay->applyOverlay(u"Second"_s);
    overlay->removeOverlay();
    finish();
    EXPECT_EQ(takeTrace(), labelled(u"First"_s) + labelled(u"Second"_s) + kLabelRemoved);
    EXPECT_EQ(shown(1), kPictures + u"blue.png"_s);
    EXPECT_EQ(storedName(), u"Default"_s);
    EXPECT_EQ(workFiles(), QStringList());
}

TEST_F(WallpaperQueue, aNameAfterARemovalIsShown) {
    overlay->applyOverlay(u"First"_s);
    overlay->removeOverlay();
    overlay->applyOverlay(u"Second"_s);
    finish();
    EXPECT_EQ(takeTrace(), labelled(u"First"_s) + kLabelRemoved + labelled(u"Second"_s));
    EXPECT_EQ(storedName(), u"Second"_s);
    disable();
    EXPECT_EQ(shown(2), kPictures + u"light.png"_s);
}

TEST_F(WallpaperQueue, anUpdateThatWaitsIsNotCarriedOutWhenTheOptionHasGoneOff) {
    overlay->applyOverlay(u"First"_s);
    overlay->applyOverlay(u"Second"_s);
    overlay->setOverlayEnabled(false, {});
    finish();
    EXPECT_EQ(takeTrace(), labelled(u"First"_s) + kLabelRemoved);
    EXPECT_EQ(shown(1), kPictures + u"blue.png"_s);
    EXPECT_EQ(workFiles(), QStringList());
}

TEST_F(WallpaperQueue, theOptionSwitchedOffAndOnShowsTheName) {
    overlay->setOverlayEnabled(true, u"Live"_s);
    overlay->setOverlayEnabled(false, {});
    overlay->setOverlayEnabled(true, u"Live"_s);
    finish();
    EXPECT_EQ(shown(1), composited(1, u"live"_s));
    EXPECT_TRUE(overlay->isOverlayInPlace());
    disable();
    EXPECT_EQ(shown(1), kPictures + u"blue.png"_s);
}

TEST_F(WallpaperQueue, theNameOfARefreshIsComparedWithWhatWillStandThere) {
    overlay->applyOverlay(u"First"_s);
    overlay->refreshForProfile(u"First"_s);
    overlay->refreshForProfile(u"Second"_s);
    overlay->refreshForProfile(u"Second"_s);
    overlay->refreshForProfile(u"Default"_s);
    finish();
    EXPECT_EQ(takeTrace(), labelled(u"First"_s) + kLabelRemoved);
    EXPECT_EQ(storedName(), u"Default"_s);
}

TEST_F(WallpaperQueue, everyTaskEndsWhenItsChangeIsDone) {
    QStringList ends;
    note(overlay->applyOverlay(u"First"_s), ends, u"first"_s);
    note(overlay->applyOverlay(u"Second"_s), ends, u"second"_s);
    note(overlay->applyOverlay(u"Third"_s), ends, u"third"_s);
    note(overlay->removeOverlay(), ends, u"removal"_s);
    EXPECT_EQ(ends, QStringList());
    processEventsUntil([&ends] { return ends.size() == 4; });
    EXPECT_EQ(ends.first(), u"first"_s);
    EXPECT_EQ(ends.last(), u"removal"_s);
    finish();
}

TEST_F(WallpaperQueue, anAppliedDefaultIsAnUpdateLikeAnyOther) {
    overlay->applyOverlay(u"First"_s);
    overlay->updateForAppliedProfile(u"Second"_s);
    overlay->updateForAppliedProfile(u"Default"_s);
    finish();
    EXPECT_EQ(takeTrace(), labelled(u"First"_s) + kLabelRemoved);
    EXPECT_EQ(storedName(), u"Default"_s);
}

TEST_F(WallpaperQueue, aJobThatFailsKeepsNoneOfTheOthersBack) {
    displays.whenSet = [] { throw std::runtime_error("the system fell over"); };
    enable(u"Live"_s);
    EXPECT_EQ(takeTrace(), u"  [ERROR] The wallpaper label could not be changed: the system fell over\n"_s);
    displays.whenSet = {};
    update(u"Studio"_s);
    EXPECT_EQ(takeTrace(), labelled(u"Studio"_s));
}

TEST_F(WallpaperQueue, aPictureChosenMeanwhileIsNotTakenAway) {
    addPicture(u"white.png"_s, Qt::white);
    overlay->applyOverlay(u"Live"_s);
    displays.connected[0].picture = kPictures + u"white.png"_s; // while the first is copied
    finish();
    EXPECT_EQ(takeSets(), (QStringList{u"Display 2 composited-display-2-live-1.jpg"_s,
                                       u"Display 1 composited-display-1-live-2.jpg"_s}));
    EXPECT_LT(darkest(labelOn(1, u"live"_s), {0, 0, 400, 240}), 20) << "black on white";
    disable();
    EXPECT_EQ(shown(1), kPictures + u"white.png"_s);
}

TEST_F(WallpaperQueue, aPictureChosenInThePlaceOfOneThatCantBeReadIsLabelled) {
    displays.connected[0].picture = kPictures + u"missing.png"_s;
    overlay->applyOverlay(u"Live"_s);
    displays.connected[0].picture = kPictures + u"light.png"_s; // while the first is looked for
    finish();
    EXPECT_EQ(shown(1), composited(1, u"live"_s));
    EXPECT_TRUE(overlay->isOverlayInPlace());
}

TEST_F(WallpaperQueue, aDisplayUnpluggedMeanwhileIsLeftOut) {
    overlay->applyOverlay(u"Live"_s);
    displays.connected.removeLast();
    finish();
    EXPECT_EQ(takeSets(), QStringList(u"Display 1 composited-display-1-live-1.jpg"_s));
    EXPECT_EQ(takeTrace(), u"  [APPLIED] Wallpaper profile label set to \"Live\" on 1 display(s).\n"_s);
}

TEST_F(WallpaperQueue, aSpaceThatIsLeftMeanwhileKeepsItsPicture) {
    overlay->applyOverlay(u"Live"_s);
    finish();
    const std::optional<QString> label = displays.connected[0].picture;
    overlay->applyOverlay(u"Studio"_s);
    displays.connected[0].picture = kPictures + u"light.png"_s; // of the next Space, while the label is composed
    displays.tell(DesktopChange::Space);
    finish();
    EXPECT_EQ(shown(1), composited(1, u"studio"_s));
    disable();
    EXPECT_EQ(shown(1), kPictures + u"light.png"_s);
    displays.connected[0].picture = label;
    tell(DesktopChange::Space);
    EXPECT_EQ(shown(1), kPictures + u"blue.png"_s);
    EXPECT_EQ(workFiles(), QStringList());
}

TEST_F(WallpaperQueue, notificationsThatWaitAreOneCheck) {
    overlay->applyOverlay(u"Live"_s);
    for (int i = 0; i < 100; ++i) {
        systemNotifications.post(u"com.apple.desktop"_s);
    }
    finish();
    EXPECT_EQ(takeTrace(), labelled(u"Live"_s));
    EXPECT_EQ(takeSets().size(), 2);
}

} // namespace quorvane
