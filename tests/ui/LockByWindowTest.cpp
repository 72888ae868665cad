// The lock, in the middle of whatever the user does.

#include "fakes/ProfileStore.h"
#include "fakes/QuickWindowOnMac.h"
#include "lock/LockManager.h"

#include <QTest>

namespace quorvane {

namespace {

const ShownAlert lockedAlertTo(const QString& activity) {
    return {u"Quorvane is Locked"_s,
            u"Enter your app password in the Quorvane window to "_s + activity + u'.',
            {u"OK"_s},
            u"OK"_s};
}

} // namespace

class LockByWindow : public QuickWindowOnMac {
protected:
    using QuickWindowOnMac::QuickWindowOnMac;
    void SetUp() override {
        keepBaseline();
        saveProfile(u"live-set"_s);
        saveProfile(numberedProfile(1, u"All Off"_s));
        enableLock();
        launch();
        unlockAndWait();
        waitUntilScanned();
    }
    static void unlockAndWait() {
        unlock();
        processEventsUntil([] { return !isCovered(); });
    }
    void waitUntilScanned() {
        processEventsUntil([this] { return session().turnstile.isIdle() && session().scans.isUpToDate(); });
    }
    void openReview() {
        clickProfile(u"Live Set"_s);
        processEventsUntil([] { return isUsable(u"Apply Profile"_s); });
    }
    LockManager& delegateLock() { return dynamic_cast<LockManager&>(*session().gate); }
    static bool isCovered() { return isUsable(u"Password"_s); }
    static QWidget* sheet() { return control(u"Close"_s)->parentWidget(); }
    /// All that can be read in the window.
    static QStringList texts() { return seenTexts(mainWindow()); }
    /// Nothing but the lock screen can be seen, and no key gets beneath it.
    static void expectNothingLeaks() {
        EXPECT_TRUE(isCovered());
        activateWhatIsInFront();
        QStringList shown = texts();
        shown.removeAll(QString());
        EXPECT_EQ(shown, (QStringList{u"Quorvane is Locked"_s, u"Enter your app password to continue."_s, u"Password"_s,
                                      u"Unlock"_s}))
            << shown.join(u" | "_s).toStdString();
        QStringList reached;
        for (int count = 0; count < 6; ++count) {
            press(Qt::Key_Tab);
            reached.append(focused());
        }
        for (const QString& name : reached) {
            EXPECT_TRUE(name == u"Password"_s || name == u"Unlock"_s) << name.toStdString();
        }
    }
};

TEST_F(LockByWindow, coversAllAndGivesTheFocusBack) {
    control(u"Reinstate System"_s)->setFocus();
    resignActive();
    expectNothingLeaks();
    EXPECT_EQ(alertTitle(), QString());

    control(u"Password"_s)->setFocus();
    press(Qt::Key_Z, Qt::ControlModifier);
    press(Qt::Key_Escape);
    letEventsPass();
    EXPECT_EQ(alertTitle(), QString());
    chooseInMenu(u"Live Set"_s);
    answerByKey(lockedAlertTo(u"switch profiles"_s), Qt::Key_Return);
    chooseInMenu(u"Restore Default"_s);
    answerByKey(lockedAlertTo(u"restore default settings"_s), Qt::Key_Escape);
    chooseCommand(u"Undo Performance Tweaks"_s);
    answerByKey(lockedAlertTo(u"revert performance tweaks"_s), Qt::Key_Return);
    EXPECT_TRUE(session().turnstile.isIdle());

    unlock(u"guess"_s);
    EXPECT_TRUE(isSeen(u"Incorrect password."_s));
    auto* const field = qobject_cast<QLineEdit*>(control(u"Password"_s));
    EXPECT_EQ(field->text(), QString());
    EXPECT_TRUE(field->hasFocus());
    unlock();
    EXPECT_EQ(focused(), u"Reinstate System"_s);
    QWidget* const row = control(u"Reinstate System"_s);
    ASSERT_NE(row, nullptr);
    EXPECT_EQ(mainWindow()->childAt(row->mapTo(mainWindow(), row->rect().center())), row) << "while it fades";
    processEventsUntil([] { return !isSeen(u"Quorvane is Locked"_s); });
}

TEST_F(LockByWindow, emptiesWhatWasTypedWhenItComesAnew) {
    resignActive();
    unlock(u"guess"_s);
    EXPECT_TRUE(isSeen(u"Incorrect password."_s));
    type(u"half a passw"_s);
    ASSERT_TRUE(delegateLock().unlockWithPassword(kLockPassword)); // by a finger, say
    resignActive();
    EXPECT_EQ(qobject_cast<QLineEdit*>(control(u"Password"_s))->text(), QString());
    EXPECT_FALSE(isSeen(u"Incorrect password."_s));
}

TEST_F(LockByWindow, answersAnOpenQuestionWithCancel) {
    profileList()->setFocus();
    const macsim::MacPicture before = picture();
    clickProfile(u"Default"_s);
    waitUntilAlert(u"Apply Default Profile?"_s);
    resignActive();
    EXPECT_EQ(alertTitle(), QString());
    waitUntilIdle();
    expectNothingLeaks();
    unlock();
    letEventsPass();
    EXPECT_EQ(alertTitle(), QString());
    EXPECT_TRUE(session().turnstile.isIdle());
    EXPECT_EQ(focused(), u"Saved Profiles"_s) << "as it was before the question";
    EXPECT_EQ(picture().changesSince(before), QString());
}

TEST_F(LockByWindow, hidesAReviewThatComesBackAsItWas) {
    openReview();
    const QStringList before = seenTexts(sheet());
    resignActive();
    expectNothingLeaks();
    press(Qt::Key_Escape);
    control(u"Unlock"_s)->setFocus();
    press(Qt::Key_Escape);
    letEventsPass();
    unlock();
    processEventsUntil([] { return !isSeen(u"Quorvane is Locked"_s); });
    EXPECT_EQ(seenTexts(sheet()), before);
    EXPECT_EQ(focused(), u"Apply Profile"_s);
    press(Qt::Key_Return);
    authorize();
    answerAlert(u"Restart Required"_s);
    press(Qt::Key_Return);
    waitUntilScanned();
}

TEST_F(LockByWindow, waitsUntilAnApplyHasEnded) {
    openReview();
    commands().hold();
    press(Qt::Key_Return);
    waitUntilSeen(u"Applying profile…"_s);
    resignActive();
    becomeActive();
    EXPECT_FALSE(isCovered());
    commands().release();
    authorize();
    waitUntilAlert(u"Restart Required"_s);
    EXPECT_FALSE(isCovered());
    resignActive();
    EXPECT_EQ(alertTitle(), QString()) << "an alert goes with the lock";
    expectNothingLeaks();
    unlock();
    processEventsUntil([] { return isUsable(u"Done"_s); });
    EXPECT_EQ(focused(), u"Done"_s);
    press(Qt::Key_Return);
    waitUntilScanned();
    EXPECT_TRUE(isSeen(u"Profile: Live Set"_s));
}

TEST_F(LockByWindow, hidesAPickerThatComesBackAsItWas) {
    click(u"System Tweaks"_s);
    waitUntilSeen(u"Execute Tweaks"_s);
    click(u"Icon of Deactivate AirDrop & Sharing Services"_s);
    waitUntilSeen(u"Search icon"_s);
    type(u"slash"_s);
    resignActive();
    expectNothingLeaks();
    unlock();
    auto* const search = qobject_cast<QLineEdit*>(control(u"Search icon"_s));
    ASSERT_NE(search, nullptr);
    EXPECT_EQ(search->text(), u"slash"_s);
    EXPECT_TRUE(search->hasFocus());
    press(Qt::Key_Escape);
    letEventsPass();
    EXPECT_FALSE(isSeen(u"Search icon"_s));
    EXPECT_EQ(focused(), u"Icon of Deactivate AirDrop & Sharing Services"_s);
}

TEST_F(LockByWindow, hidesWhatSaysThatTheProgramIsBusy) {
    control(u"Verify Current System Settings"_s)->setFocus();
    commands().hold();
    click(u"Verify Current System Settings"_s);
    letEventsPass();
    clock.advance(std::chrono::milliseconds(400));
    waitUntilSeen(u"This may take a moment."_s);
    resignActive();
    expectNothingLeaks();
    unlock();
    EXPECT_TRUE(isSeen(u"This may take a moment."_s));
    resignActive();
    commands().release();
    processEventsUntil([this] { return !session().system.isBusy(); });
    letEventsPass();
    EXPECT_EQ(alertTitle(), QString()) << "what is told waits";
    unlock();
    answerAlert(u"System Verified"_s);
    waitUntilScanned();
    EXPECT_EQ(focused(), u"Verify Current System Settings"_s);
}

TEST_F(LockByWindow, isThereWhenTheWindowIsOpenedAnew) {
    mainWindow()->close();
    EXPECT_EQ(mainWindow(), nullptr);
    chooseInMenu(u"Open Quorvane"_s);
    processEventsUntil([] { return isCovered(); });
    expectNothingLeaks();
    press(Qt::Key_W, Qt::ControlModifier);
    EXPECT_EQ(mainWindow(), nullptr) << "a locked window may be closed";
}

TEST_F(LockByWindow, aReviewOfTheMenuWaitsBehindIt) {
    mainWindow()->close();
    chooseInMenu(u"Live Set"_s);
    processEventsUntil([] { return isCovered(); });
    letEventsPass();
    EXPECT_FALSE(session().turnstile.isIdle());
    expectNothingLeaks();
    unlock();
    processEventsUntil([] { return isUsable(u"Apply Profile"_s); });
}

class OfferUnderLock : public LockByWindow {
protected:
    void SetUp() override {
        enableLock();
        launch();
    }
};

TEST_F(OfferUnderLock, isHiddenAndComesBack) {
    for (int count = 0; count < 100; ++count) {
        clock.advance(std::chrono::milliseconds(50));
        letEventsPass();
    }
    expectNothingLeaks();
    unlock();
    letTimePassUntil([] { return isUsable(u"Create Master Baseline"_s); });
    resignActive();
    expectNothingLeaks();
    unlock();
    EXPECT_TRUE(isUsable(u"Create Master Baseline"_s));
    EXPECT_EQ(focused(), u"Create Master Baseline"_s);
    click(u"Not Now"_s);
    waitUntilIdle();
}

class LockWithFinger : public LockByWindow {
protected:
    LockWithFinger()
        : LockByWindow(u"studio-desktop"_s) {}
    void SetUp() override {
        keepBaseline();
        enableLock();
        launch();
    }
};

TEST_F(LockWithFinger, asksForItAtOnceAndTakesThePasswordElse) {
    EXPECT_TRUE(isSeen(u"Enter your app password or use Touch ID to continue."_s));
    answerFinger(u"Another Finger"_s);
    waitUntilSeen(u"Touch ID could not unlock Quorvane. Enter your password instead."_s);
    unlockAndWait();

    resignActive();
    answerFinger(u"Cancel"_s);
    waitUntilSeen(u"Touch ID could not unlock Quorvane. Enter your password instead."_s);
    click(u"Unlock with Touch ID"_s);
    answerFinger(u"Enrolled Finger"_s);
    processEventsUntil([] { return isUsable(u"Verify Current System Settings"_s); });
    processEventsUntil([] { return !isCovered(); });
}

} // namespace quorvane
