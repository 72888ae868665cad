// The review: what it shows, how it closes, and that it stays while it applies.

#include "fakes/ProfileStore.h"
#include "fakes/QuickWindowOnMac.h"

#include <QCoroTask>
#include <QTest>

namespace quorvane {

class ReviewByWindow : public QuickWindowOnMac {
protected:
    void SetUp() override {
        keepBaseline();
        saveProfile(u"live-set"_s);
        saveProfile(numberedProfile(1, u"All Off"_s));
        launchAndScan();
    }
    void openReview(const QString& name) {
        clickProfile(name);
        processEventsUntil([] { return isUsable(u"Apply Profile"_s); });
    }
    void waitUntilClosed() {
        waitUntilIdle();
        EXPECT_FALSE(isSeen(u"Close"_s));
    }
    static bool hasWarned() { return isSeen(u"Some changes could not be verified"_s); }
    static inline const QString kSheet = u"Review Profile: Live Set"_s;
};

TEST_F(ReviewByWindow, isClosedByItsButtonByEscapeAndWithTheWindow) {
    const macsim::MacPicture before = picture();
    openReview(u"Live Set"_s);
    EXPECT_TRUE(isSeen(u"Review system tweaks and startup changes before applying this profile. Your Mac will need to "
                       "restart afterward."_s));
    click(u"Close"_s);
    waitUntilClosed();
    openReview(u"Live Set"_s);
    press(Qt::Key_Escape);
    waitUntilClosed();
    EXPECT_EQ(focused(), u"Saved Profiles"_s);
    openReview(u"Live Set"_s);
    press(Qt::Key_W, Qt::ControlModifier);
    waitUntilIdle();
    EXPECT_EQ(mainWindow(), nullptr);
    chooseInMenu(u"Open Quorvane"_s);
    processEventsUntil([] { return isUsable(u"Verify Current System Settings"_s); });
    EXPECT_FALSE(isSeen(kSheet));
    EXPECT_EQ(picture().changesSince(before), QString());
}

TEST_F(ReviewByWindow, ofAProfileWithNothingOnPutsTheTweaksBack) {
    openReview(u"All Off"_s);
    EXPECT_TRUE(isSeen(u"System tweaks"_s));
    EXPECT_TRUE(isSeen(u"Restore all performance tweaks to your own settings"_s));
    EXPECT_FALSE(isSeen(u"Will enable"_s));
}

TEST_F(ReviewByWindow, ofNoTweaksCanNotBeApplied) {
    click(u"System Tweaks"_s);
    waitUntilSeen(u"Execute Tweaks"_s);
    click(u"Execute Tweaks"_s);
    waitUntilSeen(u"No performance tweaks are selected."_s);
    EXPECT_TRUE(isSeen(u"Review Performance Tweaks"_s));
    EXPECT_FALSE(isUsable(u"Apply Changes"_s));
    EXPECT_EQ(focused(), u"Close"_s);
    press(Qt::Key_Return);
    EXPECT_TRUE(isSeen(u"Review Performance Tweaks"_s)) << "its button is off";
    press(Qt::Key_Space);
    waitUntilClosed();
}

TEST_F(ReviewByWindow, ofTweaksAppliesWhatIsSwitchedOn) {
    click(u"System Tweaks"_s);
    waitUntilSeen(u"Execute Tweaks"_s);
    click(u"Deactivate AirDrop & Sharing Services"_s);
    click(u"Execute Tweaks"_s);
    processEventsUntil([] { return isUsable(u"Apply Changes"_s); });
    EXPECT_TRUE(isSeen(u"Will enable"_s));
    press(Qt::Key_Return);
    waitUntilSeen(u"All changes verified"_s);
    EXPECT_TRUE(isSeen(u"Restart your Mac for tweaks to take full effect."_s));
    EXPECT_EQ(shell(u"defaults read com.apple.NetworkBrowser DisableAirDrop"_s).trimmed(), u"1"_s);
    click(u"Done"_s);
    waitUntilClosed();
}

class ReviewDuringTheLaunch : public ReviewByWindow {
protected:
    void SetUp() override {
        keepBaseline();
        UnifiedProfile profile = numberedProfile(1, u"Live Set"_s); // whose preview has to look at the Mac
        StartupItem chat;
        chat.id = u"login:Chat"_s;
        chat.name = u"Chat"_s;
        chat.kind = StartupItemKind::loginApp;
        chat.runsAtStartup = false;
        profile.startup.items = {chat};
        saveProfile(profile);
        ports(); // the launch is to find no answers
        commands().hold();
        launch();
        processEventsUntil([] { return profileRows().contains(u"Live Set"_s); });
    }
};

TEST_F(ReviewDuringTheLaunch, saysThatItLooksOnlyWhereThatTakesAMoment) {
    clickProfile(u"Live Set"_s);
    waitUntilSeen(kSheet);
    clock.advance(std::chrono::milliseconds(399));
    letEventsPass();
    EXPECT_FALSE(isSeen(u"Preparing review…"_s));
    EXPECT_FALSE(isUsable(u"Apply Profile"_s));
    clock.advance(std::chrono::milliseconds(1));
    waitUntilSeen(u"Preparing review…"_s);
    EXPECT_FALSE(isSeen(u"This profile has no settings to apply."_s));
    commands().release();
    processEventsUntil([] { return isUsable(u"Apply Profile"_s); });
    EXPECT_FALSE(isSeen(u"Preparing review…"_s));
    EXPECT_EQ(focused(), u"Apply Profile"_s);
}

TEST_F(ReviewByWindow, staysWhileItApplies) {
    openReview(u"Live Set"_s);
    commands().hold();
    press(Qt::Key_Return);
    waitUntilSeen(u"Applying profile…"_s);
    EXPECT_FALSE(isUsable(u"Apply Profile"_s));
    EXPECT_FALSE(isUsable(u"Close"_s));
    press(Qt::Key_Escape);
    press(Qt::Key_W, Qt::ControlModifier);
    mainWindow()->close();
    letEventsPass();
    ASSERT_NE(mainWindow(), nullptr);
    EXPECT_TRUE(isSeen(kSheet));
    commands().release();
    authorize();
    answerAlert(u"Restart Required"_s);
    EXPECT_TRUE(isSeen(u"All changes verified"_s));
    EXPECT_TRUE(isSeen(u"Restart your Mac for all changes to take full effect."_s));
    press(Qt::Key_W, Qt::ControlModifier);
    EXPECT_EQ(mainWindow(), nullptr);
    waitUntilIdle();
}

TEST_F(ReviewByWindow, anExceptionEndsItAsAFailedApply) {
    ASSERT_EQ(QCoro::waitFor(session().system.keepSettingsBeforeFirstChange()), std::nullopt);
    openReview(u"Live Set"_s);
    commands().breakWith(u"the tools are gone"_s);
    press(Qt::Key_Return);
    processEventsUntil([] { return hasWarned(); });
    EXPECT_TRUE(log().contains(u"  [ERROR] the tools are gone"_s));
    EXPECT_FALSE(session().system.isBusy());
    EXPECT_EQ(alertTitle(), QString());
    commands().breakWith({});
    press(Qt::Key_Return);
    waitUntilClosed();
}

} // namespace quorvane
