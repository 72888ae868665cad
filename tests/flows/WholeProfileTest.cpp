// A profile with everything in it, on the laptop that has something of everything: tweaks, a clean reboot, login items,
// launch items, background items, cloud services and added applications.

#include "fakes/BackgroundList.h"
#include "fakes/SimulatedStartup.h"
#include "profiles/ApplyPreviews.h"
#include "simulator/Restart.h"

namespace quorvane {

namespace {

const QString kFestivalPrompt = u"Quorvane needs your administrator password to apply Festival."_s;
const QString kDockerHelper = u"/Applications/Docker.app/Contents/Library/LoginItems/Docker Helper.app"_s;
const QString kBackupDaemon = u"/Library/LaunchDaemons/com.backblaze.bzbmenu.plist"_s;

class WholeProfile : public SimulatedStartup {
protected:
    WholeProfile()
        : SimulatedStartup(u"dj-laptop"_s) {}

    UnifiedProfile festival() const { return exampleProfile(u"festival"_s); }
    /// The log of one more apply.
    QString logOfApplying(const UnifiedProfile& profile) {
        const qsizetype before = system->logMessages().size();
        EXPECT_TRUE(apply(profile));
        return system->logMessages().mid(before).join(u'\n') + u'\n';
    }
    static QString golden(const QString& name) { return QString::fromUtf8(projectFile(u"tests/flows/"_s + name)); }
    /// What differs between two pictures, but for the process that is started anew by every apply.
    static QString changes(const macsim::MacPicture& before, const macsim::MacPicture& after) {
        QStringList lines = after.changesSince(before).split(u'\n');
        lines.removeIf([](const QString& line) {
            return line.contains(u"notificationcenterui.agent/"_s) ||
                   line.contains(u"state processes \"NotificationCenter\"/pid: "_s);
        });
        return lines.join(u'\n');
    }
    bool waits(const QString& path) const { return volume(macsim::Actor::Root).exists(path); }
};

/// What belongs to audio software on the laptop, as the picture's keys show it.
const QStringList kAudioSoftware{u"rekordbox"_s, u"native-instruments"_s, u"NTKAgent"_s, u"Traktor Helper"_s,
                                 u"Native Access"_s};

} // namespace

TEST_F(WholeProfile, isAppliedAndVerified) {
    const macsim::MacPicture before = picture();
    EXPECT_EQ(logOfApplying(festival()), golden(u"festival-applied.log"_s));
    EXPECT_EQ(picture().changesSince(before), golden(u"festival-changes.txt"_s));
    EXPECT_EQ(system->lastApplyVerification()->failed, QList<ApplyVerificationResult::Item>());
}

TEST_F(WholeProfile, leavesAudioSoftwareAsItWas) {
    const macsim::MacPicture before = picture();
    ASSERT_TRUE(apply(festival()));
    QStringList changed = picture().changesSince(before).split(u'\n');
    changed.removeIf([](const QString& line) { return line.contains(u"Traktor Pro 4"_s); }); // opens at login now
    for (const QString& software : kAudioSoftware) {
        EXPECT_EQ(changed.filter(software), QStringList());
    }
    EXPECT_TRUE(loginNames().contains(u"Traktor Helper"_s));
}

TEST_F(WholeProfile, asksOnceTheFirstTimeAsWell) {
    ASSERT_TRUE(apply(festival()));
    EXPECT_EQ(authorization.prompts(), QStringList(kFestivalPrompt));
    EXPECT_TRUE(waits(kDockerHelper)) << "its override keeps it off";
    EXPECT_EQ(system->lastApplyVerification()->failed, QList<ApplyVerificationResult::Item>());
}

TEST_F(WholeProfile, asksOnceWhereTheListIsKnown) {
    learnBackgroundItems(*system);
    ASSERT_EQ(authorization.prompts(), QStringList(kListPrompt));
    ASSERT_TRUE(apply(festival()));
    EXPECT_EQ(authorization.prompts(), QStringList({kListPrompt, kFestivalPrompt}));
    EXPECT_TRUE(waits(kDockerHelper));
    EXPECT_EQ(system->lastApplyVerification()->failed, QList<ApplyVerificationResult::Item>());
}

TEST_F(WholeProfile, rootRunsOnlyWhatNeedsRoot) {
    ASSERT_TRUE(apply(festival()));
    const QString backup = u"/Users/mika/.quorvane_backup"_s;
    const QString kept = u"/Library/Application Support/Quorvane/LaunchItems/_Library_LaunchDaemons"_s;
    EXPECT_EQ(
        commandsOfRoot(),
        QStringList(
            {u"/usr/bin/pmset -a standby 0 disksleep 0 sleep 0 sms 0"_s, u"/usr/bin/mdutil -a -i off"_s,
             u"/usr/bin/defaults write /Library/Preferences/com.apple.SoftwareUpdate AutomaticDownload -bool NO"_s,
             u"/usr/bin/defaults write /Library/Preferences/com.apple.SoftwareUpdate AutomaticallyInstallMacOSUpdates -bool NO"_s,
             u"/usr/bin/defaults write /Library/Preferences/com.apple.commerce AutoUpdate -bool NO"_s,
             u"/bin/mkdir -p \""_s + kept + u'"',
             u"/bin/cp -p "_s + kBackupDaemon + u" \""_s + kept + u"/com.backblaze.bzbmenu.plist\""_s,
             u"/bin/mkdir -p "_s + backup + u"/_Library_LaunchDaemons"_s,
             u"/bin/rm -f "_s + backup + u"/_Library_LaunchDaemons/com.backblaze.bzbmenu.plist"_s,
             u"/bin/launchctl bootout system/com.backblaze.bzserv"_s,
             u"/bin/launchctl disable system/com.backblaze.bzserv"_s,
             u"/bin/mv "_s + kBackupDaemon + u' ' + backup + u"/_Library_LaunchDaemons/com.backblaze.bzbmenu.plist"_s,
             u"/usr/bin/sfltool dumpbtm"_s,
             u"/usr/bin/perl -e \"alarm shift; exec @ARGV\" 30 /usr/bin/sfltool dumpbtm"_s}));
}

TEST_F(WholeProfile, aDaemonGoesByItsLabelAndStaysOff) {
    ASSERT_TRUE(isLoaded(u"com.backblaze.bzserv"_s, kSystemDomain));
    for (const bool isAgain : {false, true}) {
        const StartupApplyResult result = switchOff({backgroundItemOff(u"com.backblaze.bzserv"_s)});
        EXPECT_EQ(result.verification.verified,
                  (QList<ApplyVerificationResult::Item>{{u"Background item: bzserv"_s, u"disabled at login"_s}}))
            << isAgain;
        EXPECT_FALSE(isLoaded(u"com.backblaze.bzserv"_s, kSystemDomain));
        macsim::restart(host->mac());
        EXPECT_FALSE(isLoaded(u"com.backblaze.bzserv"_s, kSystemDomain));
    }
    EXPECT_EQ(authorization.prompts().size(), 1);
    EXPECT_TRUE(waits(kBackupDaemon)) << "its plist stays";
}

// ---- Twice

TEST_F(WholeProfile, appliedTwiceInOneProcessChangesNothingTheSecondTime) {
    ASSERT_TRUE(apply(festival()));
    const macsim::MacPicture once = picture();
    EXPECT_EQ(logOfApplying(festival()), golden(u"festival-again.log"_s));
    EXPECT_EQ(changes(once, picture()), QString());
    EXPECT_EQ(authorization.prompts(), QStringList({kFestivalPrompt, kFestivalPrompt}))
        << "for the tweaks that need root";
}

TEST_F(WholeProfile, appliedTwiceInTwoProcessesChangesNothingTheSecondTime) {
    ASSERT_TRUE(apply(festival()));
    const macsim::MacPicture once = picture();
    start();
    EXPECT_EQ(logOfApplying(festival()), golden(u"festival-again-after-start.log"_s));
    EXPECT_EQ(changes(once, picture()), QString());
    EXPECT_EQ(authorization.prompts(), QStringList({kFestivalPrompt, kFestivalPrompt}));
}

TEST_F(WholeProfile, previewNeitherAsksNorChangesAnything) {
    QCoro::waitFor(system->rawLoginItems()); // the user has let the program ask System Events
    const macsim::MacPicture before = picture();
    const ProfileApplyPreview preview = QCoro::waitFor(system->previewProfile(festival()));
    EXPECT_EQ(preview.startup.willDisable.size(), 12);
    EXPECT_EQ(preview.startup.willAdd.size(), 2);
    EXPECT_EQ(picture().changesSince(before), QString());
    EXPECT_EQ(authorization.prompts(), QStringList());

    ASSERT_TRUE(apply(festival()));
    const macsim::MacPicture applied = picture();
    const qsizetype prompts = authorization.prompts().size();
    const ProfileApplyPreview after = QCoro::waitFor(system->previewProfile(festival()));
    EXPECT_EQ(after.startup.willDisable, QList<StartupItem>());
    EXPECT_EQ(after.startup.willAdd, QList<StartupLaunchItem>());
    EXPECT_EQ(picture().changesSince(applied), QString());
    EXPECT_EQ(authorization.prompts().size(), prompts);
}

// ---- Prompts that get no password

TEST_F(WholeProfile, aCancelledPromptLeavesWhatNeedsRootAndTellsOfItItemByItem) {
    authorization.setAnswer(macsim::Authorization::Cancel);
    const macsim::MacPicture before = picture();
    EXPECT_FALSE(apply(festival()));
    EXPECT_EQ(authorization.prompts(), QStringList(kFestivalPrompt));
    EXPECT_EQ(commandsOfRoot(), QStringList());
    EXPECT_TRUE(logs(u"  [ERROR] Administrator authorization was cancelled or failed: User canceled."_s));
    EXPECT_EQ(
        system->lastApplyVerification()->failed,
        QList<ApplyVerificationResult::Item>({{u"Software Updates"_s, u"expected disabled"_s},
                                              {u"USB Power"_s, u"expected 0 on AC Power"_s},
                                              {u"Spotlight"_s, u"expected indexing off"_s},
                                              {u"Launch item: com.backblaze.bzbmenu.plist"_s, u"still active"_s}}));
    const QString changed = picture().changesSince(before);
    EXPECT_FALSE(changed.contains(u"Docker"_s));
    EXPECT_FALSE(changed.contains(u"backgroundTasks \"4."_s));
    EXPECT_FALSE(changed.contains(u"/bundled-login-items"_s));
    EXPECT_FALSE(changed.contains(u"QuorvaneLastAppliedProfileName"_s));
    // What runs as the user has run.
    EXPECT_EQ(loginNames(), QStringList({u"Rectangle"_s, u"Mika’s \"Warm-up\" | intro"_s, u"Traktor Helper"_s,
                                         u"Serato DJ Pro"_s, u"Traktor Pro 4"_s}));
    EXPECT_EQ(system->logMessages().last(), u"\n[PROFILE] Festival apply failed or was cancelled — check logs."_s);
}

TEST_F(WholeProfile, aCancelledPromptForgetsWhatItMeantToSwitchOff) {
    learnBackgroundItems(*system);
    authorization.setAnswer(macsim::Authorization::Cancel);
    EXPECT_FALSE(apply(festival()));
    EXPECT_TRUE(system->lastApplyVerification()->failed.contains(
        {u"Background item: Docker Helper"_s, u"still enabled at login"_s}));
    authorization.setAnswer(macsim::Authorization::Allow);
    EXPECT_TRUE(apply(festival()));
    EXPECT_EQ(system->lastApplyVerification()->failed, QList<ApplyVerificationResult::Item>());
    EXPECT_TRUE(waits(kDockerHelper));
}

TEST_F(WholeProfile, aHangingSystemEventsSuspendsTheApplyUntilTheProgramQuits) {
    start(R"([{"tool": "osascript", "hang": true}])");
    const Ticks ticks;
    bool isDone = false;
    bool succeeded = true;
    auto flow = system->applyProfile(festival());
    flow.then([&](bool outcome) {
        isDone = true;
        succeeded = outcome;
    });
    processEventsUntil([this] { return log().contains(u"app and window restoration"_s); });
    const int ticksBefore = ticks.count();
    processEventsUntil([&] { return ticks.count() > ticksBefore + 50; });
    EXPECT_FALSE(isDone);
    host->shutDown();
    processEventsUntil([&isDone] { return isDone; });
    EXPECT_FALSE(succeeded);
    EXPECT_EQ(authorization.prompts(), QStringList());
    EXPECT_EQ(system->logMessages().last(), u"\n[PROFILE] Festival apply failed or was cancelled — check logs."_s);
    EXPECT_EQ(loginNames().size(), 8);
}

} // namespace quorvane
