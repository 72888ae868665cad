// The offer of a master baseline in its sheet.

#include "fakes/ProfileStore.h"
#include "fakes/QuickWindowOnMac.h"
#include "platform/FileManager.h"

namespace quorvane {

using namespace std::chrono_literals;

class BaselinePromptByWindow : public QuickWindowOnMac {
protected:
    void waitUntilRest() {
        processEventsUntil([this] { return session().turnstile.isIdle() && session().scans.isUpToDate(); });
        letEventsPass();
    }
    static bool isOffered() { return isUsable(u"Create Master Baseline"_s); }
    void waitUntilOffered() {
        letTimePassUntil([] { return isOffered(); });
    }
    /// Long enough for the moment that it keeps, and for the look for a baseline.
    void passTenSeconds() {
        for (int count = 0; count < 40; ++count) {
            clock.advance(250ms);
            letEventsPass();
        }
    }
    QStringList baselineFiles() {
        const Host on = host->host();
        const QString folderOfBaselines = on.machine.homeFolder() + u"/.quorvane"_s;
        return on.files.exists(folderOfBaselines) ? on.files.list(folderOfBaselines) : QStringList();
    }
};

TEST_F(BaselinePromptByWindow, comesAMomentAfterTheWindowAndNotTwice) {
    const QDateTime begin = clock.now();
    launchAndScan();
    waitUntilRest();
    waitUntilOffered();
    EXPECT_GE(begin.msecsTo(clock.now()), 800 + 3000) << "it was looked for first";
    EXPECT_EQ(focused(), u"Create Master Baseline"_s);
    for (const QString& text :
         {u"Create Master System Baseline"_s,
          u"Quorvane can capture your Mac’s current system settings as a protected master restore baseline."_s,
          u"Stored permanently in iCloud when available"_s, u"Falls back to ~/.quorvane when iCloud is unavailable"_s,
          u"Never removed automatically"_s, u"Updated only when you manually save a new restore baseline"_s}) {
        EXPECT_TRUE(isSeen(text)) << text.toStdString();
    }
    click(u"Not Now"_s);
    waitUntilRest();
    EXPECT_FALSE(isOffered());
    EXPECT_EQ(baselineFiles(), QStringList());
    mainWindow()->close();
    chooseInMenu(u"Open Quorvane"_s);
    processEventsUntil([] { return mainWindow() != nullptr; });
    passTenSeconds();
    EXPECT_FALSE(isOffered());
}

TEST_F(BaselinePromptByWindow, savesAndGoes) {
    launchAndScan();
    waitUntilOffered();
    commands().hold();
    press(Qt::Key_Return);
    waitUntilSeen(u"Capturing your current system settings…"_s);
    EXPECT_FALSE(isUsable(u"Not Now"_s));
    EXPECT_FALSE(isOffered());
    clock.advance(1000ms);
    letEventsPass();
    EXPECT_FALSE(isSeen(u"This may take a moment."_s)) << "the sheet says it";
    press(Qt::Key_Escape);
    press(Qt::Key_W, Qt::ControlModifier);
    letEventsPass();
    ASSERT_NE(mainWindow(), nullptr);
    EXPECT_TRUE(isSeen(u"Create Master System Baseline"_s));
    commands().release();
    letTimePassUntil([] { return !isSeen(u"Create Master System Baseline"_s); });
    waitUntilRest();
    EXPECT_EQ(alertTitle(), QString());
    EXPECT_EQ(baselineFiles().size(), 2);
    EXPECT_TRUE(baselineFiles().contains(u"master-baseline-current.json"_s));
    EXPECT_TRUE(isSeen(u"Restore baseline saved"_s));
}

TEST_F(BaselinePromptByWindow, escapeIsNotNow) {
    launchAndScan();
    waitUntilOffered();
    press(Qt::Key_Escape);
    waitUntilRest();
    EXPECT_FALSE(isSeen(u"Create Master System Baseline"_s));
    EXPECT_EQ(baselineFiles(), QStringList());
}

TEST_F(BaselinePromptByWindow, saysWhatCouldNotBeSavedAndStays) {
    startHost(R"([{"adapter": "files", "change": 1, "error": "No space left on device"}])");
    launchAndScan();
    waitUntilOffered();
    press(Qt::Key_Return);
    letTimePassUntil([] { return isSeen(u"The baseline could not be saved. Check the Logs tab for details."_s); });
    EXPECT_TRUE(isOffered());
    EXPECT_EQ(focused(), u"Create Master Baseline"_s);
    EXPECT_EQ(alertTitle(), QString());
    click(u"Not Now"_s);
    waitUntilRest();
    EXPECT_FALSE(isSeen(u"Create Master System Baseline"_s));
}

TEST_F(BaselinePromptByWindow, doesNotComeWhileASavedProfileIsInForce) {
    UnifiedProfile profile = numberedProfile(1, u"Live"_s);
    profile.settings.airdrop = true;
    saveProfile(profile);
    shell(u"defaults write com.apple.NetworkBrowser DisableAirDrop -bool true"_s);
    launchAndScan();
    waitUntilRest();
    ASSERT_TRUE(isSeen(u"Profile: Live"_s));
    passTenSeconds();
    EXPECT_FALSE(isOffered());
}

TEST_F(BaselinePromptByWindow, waitsForWhatIsOpen) {
    launchAndScan();
    waitUntilRest();
    chooseCommand(u"About Quorvane"_s);
    waitUntilAlert(u"Quorvane"_s);
    passTenSeconds();
    EXPECT_FALSE(isOffered());
    answerAlert(u"Quorvane"_s);
    waitUntilOffered();
}

TEST_F(BaselinePromptByWindow, whereThereIsOneItDoesNotCome) {
    keepBaseline();
    launchAndScan();
    waitUntilRest();
    passTenSeconds();
    EXPECT_FALSE(isOffered());
}

} // namespace quorvane
