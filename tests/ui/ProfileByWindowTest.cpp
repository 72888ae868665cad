#include "fakes/WindowOnMac.h"

namespace quorvane {

class ProfileByWindow : public WindowOnMac {
protected:
    void SetUp() override {
        keepBaseline();
        saveProfile(u"live-set"_s);
        launchAndScan();
    }
};

TEST_F(ProfileByWindow, isPickedReviewedAppliedAndSeenToBeInForce) {
    clickProfile(u"Live Set"_s);
    waitUntilSeen(u"Review Profile: Live Set"_s);
    processEventsUntil([] { return isUsable(u"Apply Profile"_s); });
    EXPECT_TRUE(isSeen(u"Will enable"_s));

    press(Qt::Key_Return);
    authorize();
    answerAlert(u"Restart Required"_s);
    EXPECT_TRUE(isSeen(u"All changes verified"_s));
    press(Qt::Key_Return);

    processEventsUntil([] { return !isSeen(u"Review Profile: Live Set"_s); });
    EXPECT_TRUE(isSeen(u"Profile: Live Set"_s));
    EXPECT_EQ(mainWindow()->windowTitle(), u"Quorvane — Live Set"_s);
    EXPECT_EQ(shell(u"defaults read com.apple.assistant.support \"Assistant Enabled\""_s).trimmed(), u"0"_s);
}

} // namespace quorvane
