#include "core/UserDefaultKeys.h"
#include "fakes/WindowOnMac.h"
#include "platform/UserDefaults.h"

namespace quorvane {

class ProfileByWindow : public WindowOnMac {
protected:
    void SetUp() override {
        keepBaseline();
        saveProfile(u"live-set"_s);
        launchAndScan();
    }
    void pick() {
        clickProfile(u"Live Set"_s);
        waitUntilSeen(u"Review Profile: Live Set"_s);
        processEventsUntil([] { return isUsable(u"Apply Profile"_s); });
    }
    QString siri() { return shell(u"defaults read com.apple.assistant.support \"Assistant Enabled\""_s).trimmed(); }
    /// The panel of an apply that failed, without a word of a restart and without a trace in the names.
    void expectRefusal() {
        waitUntilSeen(u"Some changes could not be verified"_s);
        EXPECT_TRUE(isSeen(u"Check the Logs tab for details. Grant Automation permission for System Events if login "
                           "item changes failed."_s));
        EXPECT_EQ(alertTitle(), QString());
        EXPECT_EQ(host->host().defaults.string(kQuorvaneLastAppliedProfileName).value_or(QString()), QString());
        EXPECT_EQ(mainWindow()->windowTitle(), u"Quorvane"_s);
        EXPECT_TRUE(isUsable(u"Done"_s));
        EXPECT_FALSE(isSeen(u"Apply Profile"_s));
    }
    void waitUntilScanned() {
        processEventsUntil([this] { return session().turnstile.isIdle() && session().scans.isUpToDate(); });
    }
};

TEST_F(ProfileByWindow, isPickedReviewedAppliedSeenToBeInForceAndUndone) {
    pick();
    EXPECT_TRUE(isSeen(u"Will enable"_s));

    press(Qt::Key_Return);
    authorize();
    answerAlert(u"Restart Required"_s);
    EXPECT_TRUE(isSeen(u"All changes verified"_s));
    press(Qt::Key_Return);

    processEventsUntil([] { return !isSeen(u"Review Profile: Live Set"_s); });
    EXPECT_TRUE(isSeen(u"Profile: Live Set"_s));
    EXPECT_TRUE(isSeen(u"This custom profile is active on your Mac."_s));
    EXPECT_EQ(mainWindow()->windowTitle(), u"Quorvane — Live Set"_s);
    EXPECT_EQ(siri(), u"0"_s);

    waitUntilScanned();
    press(Qt::Key_Z, Qt::ControlModifier);
    answerAlert(u"Undo Performance Tweaks?"_s, u"Undo"_s);
    authorize();
    answerAlert(u"Success"_s);
    waitUntilScanned();
    EXPECT_TRUE(isSeen(u"Standard macOS operation — All 2 setting(s) verified on the system."_s));
    EXPECT_EQ(siri(), u"1"_s);
}

TEST_F(ProfileByWindow, whosePasswordIsRefusedIsNotApplied) {
    pick();
    press(Qt::Key_Return);
    cancelAuthorization();
    expectRefusal();
    press(Qt::Key_Escape);
    waitUntilScanned();

    pick();
    press(Qt::Key_Return);
    for (int attempt = 0; attempt < 3; ++attempt) {
        authorize(u"wrong"_s);
    }
    expectRefusal();
    press(Qt::Key_Return);
    waitUntilScanned();
    EXPECT_FALSE(isSeen(u"Review Profile: Live Set"_s));
}

} // namespace quorvane
