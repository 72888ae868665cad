// What can be used while something runs or is open, and what is said meanwhile.

#include "fakes/ProfileStore.h"
#include "fakes/QuickWindowOnMac.h"

#include <QTest>

namespace quorvane {

using namespace std::chrono_literals;

class BusyByWindow : public QuickWindowOnMac {
protected:
    void SetUp() override {
        keepBaseline();
        saveProfile(numberedProfile(1, u"All Off"_s));
        launchAndScan();
        waitUntilRest();
    }
    void waitUntilRest() {
        processEventsUntil([this] { return session().turnstile.isIdle() && session().scans.isUpToDate(); });
        letEventsPass();
    }
    void beginVerifying() {
        commands().hold();
        click(u"Verify Current System Settings"_s);
        processEventsUntil([this] { return session().system.isBusy(); });
        letEventsPass();
    }
    void endVerifying() {
        commands().release();
        answerAlert(u"System Verified"_s);
        waitUntilRest();
    }
    static bool isOverlaid() { return isSeen(u"This may take a moment."_s); }
    void pass(std::chrono::milliseconds duration) {
        clock.advance(duration);
        letEventsPass();
    }
    void expectUsable(bool isUsableNow) {
        for (const QString& row : {u"Verify Current System Settings"_s, u"Create System Snapshot"_s,
                                   u"Reinstate System"_s, u"System Tweaks"_s, u"Saved Profiles"_s}) {
            EXPECT_EQ(isUsable(row), isUsableNow) << row.toStdString();
        }
        EXPECT_EQ(isCommandEnabled(u"Undo Performance Tweaks"_s), isUsableNow);
        letEventsPass(); // the menu is made anew once per turn
        EXPECT_TRUE(isInMenu(u"All Off"_s, isUsableNow));
        EXPECT_TRUE(isInMenu(u"Restore Default"_s, isUsableNow));
        EXPECT_TRUE(isInMenu(u"Open Quorvane"_s, true));
        EXPECT_TRUE(isInMenu(u"Quit Quorvane"_s, true));
    }
};

TEST_F(BusyByWindow, whatIsShortIsNotTold) {
    beginVerifying();
    pass(300ms);
    EXPECT_FALSE(isOverlaid());
    endVerifying();
    pass(200ms);
    EXPECT_FALSE(isOverlaid());
}

TEST_F(BusyByWindow, theSystemKnowsThatSomethingRuns) {
    windowPlatform.activity.told.clear();
    beginVerifying();
    EXPECT_EQ(windowPlatform.activity.told, QList<bool>{true});
    endVerifying();
    EXPECT_EQ(windowPlatform.activity.told, (QList<bool>{true, false}));
}

TEST_F(BusyByWindow, whatIsLongerIsToldAndTheSidebarStays) {
    beginVerifying();
    pass(399ms);
    EXPECT_FALSE(isOverlaid());
    pass(1ms);
    EXPECT_TRUE(isOverlaid());
    EXPECT_TRUE(isSeen(u"Verifying system settings…"_s));
    chooseTab(u"Logs"_s);
    EXPECT_TRUE(isOverlaid());
    chooseTab(u"Performance"_s);

    session().system.log(u"  Looked\nat <b>something</b>"_s);
    letEventsPass();
    EXPECT_FALSE(isSeen(u"Looked at <b>something</b>"_s));
    pass(9600ms);
    waitUntilSeen(u"Looked at <b>something</b>"_s);
    session().system.log(u"and at more"_s);
    waitUntilSeen(u"and at more"_s);
    commands().release();
    waitUntilAlert(u"System Verified"_s);
    EXPECT_FALSE(isOverlaid());
    answerAlert(u"System Verified"_s);
}

TEST_F(BusyByWindow, withoutATextItSaysPleaseWait) {
    const Turnstile::Hold busy = session().turnstile.busy({});
    letEventsPass();
    pass(400ms);
    EXPECT_TRUE(isSeen(u"Please wait…"_s));
}

TEST_F(BusyByWindow, eachTimeItWaitsAnew) {
    beginVerifying();
    pass(300ms);
    endVerifying();
    beginVerifying();
    pass(100ms); // the first one's time is over now
    EXPECT_FALSE(isOverlaid());
    pass(300ms);
    EXPECT_TRUE(isOverlaid());
    endVerifying();
}

TEST_F(BusyByWindow, nothingElseBeginsWhileSomethingRuns) {
    control(u"Verify Current System Settings"_s)->setFocus();
    expectUsable(true);
    beginVerifying();
    expectUsable(false);
    press(Qt::Key_Z, Qt::ControlModifier);
    press(Qt::Key_Space);
    letEventsPass();
    EXPECT_EQ(alertTitle(), QString());
    commands().release();
    waitUntilAlert(u"System Verified"_s);
    expectUsable(false);
    answerAlert(u"System Verified"_s);
    waitUntilRest();
    expectUsable(true);
    EXPECT_EQ(focused(), u"Verify Current System Settings"_s);
}

TEST_F(BusyByWindow, norWhileAQuestionOrASheetIsOpen) {
    control(u"Saved Profiles"_s)->setFocus();
    clickProfile(u"Default"_s);
    waitUntilAlert(u"Apply Default Profile?"_s);
    expectUsable(false);
    press(Qt::Key_Escape);
    activateWhatIsInFront();
    waitUntilRest();
    expectUsable(true);
    EXPECT_EQ(focused(), u"Saved Profiles"_s);

    clickProfile(u"All Off"_s);
    processEventsUntil([] { return isUsable(u"Apply Profile"_s); });
    expectUsable(false);
    EXPECT_FALSE(isUsable(u"Sidebar"_s)) << "the sheet is modal to the window";
    press(Qt::Key_Z, Qt::ControlModifier);
    letEventsPass();
    EXPECT_EQ(alertTitle(), QString());
    press(Qt::Key_Escape);
    waitUntilRest();
    expectUsable(true);
    EXPECT_EQ(focused(), u"Saved Profiles"_s);
}

class ScanOfTheLaunch : public BusyByWindow {
protected:
    void SetUp() override {
        keepBaseline();
        saveProfile(numberedProfile(1, u"All Off"_s));
        ports(); // the commands of the launch are to wait
        commands().hold();
        launch();
    }
};

TEST_F(ScanOfTheLaunch, isInNobodysWay) {
    waitUntilSeen(u"Verifying system settings…"_s);
    pass(1000ms);
    EXPECT_FALSE(isOverlaid());
    expectUsable(true);
    clickProfile(u"Default"_s);
    waitUntilAlert(u"Apply Default Profile?"_s);
    press(Qt::Key_Escape);
    activateWhatIsInFront();
    commands().release();
    waitUntilRest();
    EXPECT_TRUE(session().system.hasVerifiedSystem()) << "it follows";
}

class TabsByWindow : public BusyByWindow {};

TEST_F(TabsByWindow, keepTheirState) {
    click(u"System Tweaks"_s);
    waitUntilSeen(u"Execute Tweaks"_s);
    click(u"Deactivate Siri Core Services"_s);
    chooseTab(u"Logs"_s);
    EXPECT_TRUE(isSeen(u"Log"_s));
    EXPECT_FALSE(isSeen(u"Execute Tweaks"_s));
    chooseTab(u"Performance"_s);
    EXPECT_TRUE(isSeen(u"Execute Tweaks"_s));
    EXPECT_TRUE(qobject_cast<QAbstractButton*>(control(u"Deactivate Siri Core Services"_s))->isChecked());
}

TEST_F(TabsByWindow, goWithTheWindowButTheWorkingCopyStays) {
    click(u"System Tweaks"_s);
    waitUntilSeen(u"Execute Tweaks"_s);
    click(u"Deactivate Siri Core Services"_s);
    chooseTab(u"Logs"_s);
    EXPECT_EQ(log().count(u"Ready."_s), 1);
    press(Qt::Key_W, Qt::ControlModifier);
    EXPECT_EQ(mainWindow(), nullptr);
    EXPECT_FALSE(hasTerminated);
    chooseInMenu(u"Open Quorvane"_s);
    processEventsUntil([] { return mainWindow() != nullptr && isUsable(u"System Tweaks"_s); });
    EXPECT_FALSE(isSeen(u"Execute Tweaks"_s)) << "it begins at its first page";
    EXPECT_EQ(log().count(u"Ready."_s), 2);
    EXPECT_EQ(log().count(u"Excluded keywords: ableton, logic, vst, plugin, traktor, serato, rekordbox"_s), 2);
    click(u"System Tweaks"_s);
    waitUntilSeen(u"Execute Tweaks"_s);
    EXPECT_TRUE(qobject_cast<QAbstractButton*>(control(u"Deactivate Siri Core Services"_s))->isChecked());
}

TEST_F(TabsByWindow, theIconPickerFindsIconsInAnyCase) {
    click(u"System Tweaks"_s);
    waitUntilSeen(u"Execute Tweaks"_s);
    click(u"Icon of Deactivate AirDrop & Sharing Services"_s);
    waitUntilSeen(u"Search icon"_s);
    type(u"BELL.SL"_s);
    press(Qt::Key_Return);
    letEventsPass();
    EXPECT_FALSE(isSeen(u"Search icon"_s));
    EXPECT_EQ(session().workingCopy.settings().customIcons.value(u"airdrop"_s), u"bell.slash.fill"_s);
    EXPECT_EQ(focused(), u"Icon of Deactivate AirDrop & Sharing Services"_s);
}

TEST_F(TabsByWindow, undoGoesToATextFieldThatHasTheFocus) {
    click(u"System Tweaks"_s);
    waitUntilSeen(u"Execute Tweaks"_s);
    click(u"Icon of Deactivate AirDrop & Sharing Services"_s);
    waitUntilSeen(u"Search icon"_s);
    type(u"bell"_s);
    press(Qt::Key_Z, Qt::ControlModifier);
    letEventsPass();
    EXPECT_EQ(alertTitle(), QString());
    EXPECT_EQ(qobject_cast<QLineEdit*>(control(u"Search icon"_s))->text(), QString());
    press(Qt::Key_Z, Qt::ControlModifier); // nothing is left to undo
    letEventsPass();
    EXPECT_EQ(alertTitle(), QString());
    EXPECT_TRUE(session().turnstile.isIdle());
}

} // namespace quorvane
