#include "fakes/ScriptedSystem.h"

#include "profiles/UnifiedProfile.h"

#include <algorithm>
#include <iterator>

namespace quorvane {

namespace {

UnifiedProfile soundsOff(const QString& name = u"Live"_s) {
    UnifiedProfile profile;
    profile.id = QUuid::createUuid();
    profile.name = name;
    profile.settings.uiSounds = true;
    return profile;
}

const QString kSystemLine =
    u"pmset -a standby 1 disksleep 10 sleep 1 sms 1 ; mdutil -a -i on || true ; tmutil enable || true"_s;

class ProfileApply : public ScriptedSystem {
protected:
    ProfileApply() {
        commands.print(u"/usr/bin/pmset -g custom"_s, "AC Power:\n standby 1\n disksleep 10\n sleep 1\n sms 1\n");
        commands.print(u"/usr/bin/mdutil -s /"_s, "/:\n\tIndexing enabled. \n");
        commands.print(u"/usr/bin/tmutil status"_s, "    Running = 1;\n");
        const QString ncui = u"/Users/alex/Library/Preferences/ByHost/com.apple.notificationcenterui"_s;
        for (const QString& unset :
             {u"read NSGlobalDomain NSAppSleepDisabled"_s, u"-currentHost read "_s + ncui + u" doNotDisturb"_s}) {
            commands.fail(u"/usr/bin/defaults "_s + unset, 1);
        }
        commands.print(u"/usr/bin/defaults read com.apple.SoftwareUpdate AutomaticDownload"_s, "1\n");
        commands.print(u"/usr/bin/defaults read com.apple.assistant.support \"Assistant Enabled\""_s, "1\n");
        commands.print(u"/usr/bin/defaults read com.apple.systemsound com.apple.sound.uiaudio.enabled"_s, "0\n");
        commands.print(u"/usr/bin/defaults read com.apple.NetworkBrowser DisableAirDrop"_s, "0\n");
        commands.print(u"/usr/bin/defaults read com.apple.loginwindow TALLogoutSavesState"_s, "1\n");
    }

    bool apply(const UnifiedProfile& profile) { return QCoro::waitFor(system.applyProfile(profile)); }
    QStringList linesStartingWith(const QString& beginning) const {
        QStringList lines;
        std::copy_if(trace.begin(), trace.end(), std::back_inserter(lines),
                     [&beginning](const QString& line) { return line.startsWith(beginning); });
        return lines;
    }
    QString scriptWithPrompt(const QString& prompt) {
        return u"& do shell script \""_s + kSystemLine + u"\" with prompt \""_s + prompt +
               u"\" with administrator privileges"_s;
    }
};

} // namespace

TEST_F(ProfileApply, runsSyncStartupOnePromptAndVerificationInThisOrder) {
    EXPECT_TRUE(apply(soundsOff()));
    EXPECT_EQ(takeTrace(),
              u"\n[PROFILE] Applying: Live\n"
              "\nSyncing performance tweaks to profile settings...\n"
              "$ /usr/bin/defaults delete NSGlobalDomain NSAppSleepDisabled\n"
              "$ /usr/bin/defaults delete com.ableton.live NSAppSleepDisabled\n"
              "  [RESTORED] Re-enabled App Nap.\n"
              "$ /usr/bin/defaults write com.apple.SoftwareUpdate AutomaticDownload -bool YES\n"
              "$ /usr/bin/defaults write com.apple.SoftwareUpdate AutomaticCheckEnabled -bool YES\n"
              "$ /usr/bin/defaults write com.apple.commerce AutoUpdate -bool YES\n"
              "  [RESTORED] Re-enabled automatic updates.\n"
              "$ /usr/bin/defaults -currentHost delete "
              "/Users/alex/Library/Preferences/ByHost/com.apple.notificationcenterui doNotDisturb\n"
              "$ /bin/launchctl load -w /System/Library/LaunchAgents/com.apple.notificationcenterui.plist\n"
              "$ /usr/bin/open -a NotificationCenter\n"
              "  [RESTORED] Re-enabled Notifications.\n"
              "$ /usr/bin/defaults delete com.apple.Siri Status\n"
              "$ /usr/bin/defaults write com.apple.assistant.support \"Assistant Enabled\" -bool true\n"
              "  [RESTORED] Re-enabled Siri.\n"
              "$ /usr/bin/defaults delete com.apple.CrashReporter DialogType\n"
              "  [RESTORED] Re-enabled Crash Reporter.\n"
              "$ /usr/bin/defaults write com.apple.systemsound com.apple.sound.uiaudio.enabled -int 0\n"
              "  [APPLIED] Muted UI sounds.\n"
              "$ /usr/bin/defaults write com.apple.NetworkBrowser DisableAirDrop -bool NO\n"
              "  [RESTORED] Re-activated AirDrop.\n"
              "  [ACTION] Requesting Admin rights to sync system-level tweaks...\n"
              "$ /usr/bin/defaults write com.apple.loginwindow TALLogoutSavesState -bool true\n"
              "$ /usr/bin/defaults write com.apple.loginwindow LoginwindowLaunchesRelaunchApps -bool true\n"
              "$ /usr/bin/defaults delete NSGlobalDomain NSQuitAlwaysKeepsWindows\n"
              "  [RESTORED] Re-enabled app restoration on reboot.\n"
              "\nPerformance Tweaks Synced! (Restart your Mac for full effect.)\n"
              "\nApplying startup configuration...\n"
              "\nStartup configuration applied.\n"
              "& do shell script \"pmset -a standby 1 disksleep 10 sleep 1 sms 1 ; mdutil -a -i on || true ; tmutil "
              "enable || true\" with prompt \"Quorvane needs your administrator password to apply Live.\" with "
              "administrator privileges\n"
              "$> /usr/bin/pmset -g custom\n"
              "$> /usr/bin/defaults read NSGlobalDomain NSAppSleepDisabled\n"
              "$> /usr/bin/defaults read com.apple.SoftwareUpdate AutomaticDownload\n"
              "$> /usr/bin/defaults -currentHost read "
              "/Users/alex/Library/Preferences/ByHost/com.apple.notificationcenterui doNotDisturb\n"
              "$> /usr/bin/defaults read com.apple.assistant.support \"Assistant Enabled\"\n"
              "$> /usr/bin/defaults read com.apple.CrashReporter DialogType\n"
              "$> /usr/bin/defaults read com.apple.systemsound com.apple.sound.uiaudio.enabled\n"
              "$> /usr/bin/defaults read com.apple.NetworkBrowser DisableAirDrop\n"
              "$> /usr/bin/mdutil -s /\n"
              "$> /usr/bin/tmutil status\n"
              "$> /usr/bin/defaults read com.apple.loginwindow TALLogoutSavesState\n"
              "$> /usr/bin/defaults read com.apple.loginwindow LoginwindowLaunchesRelaunchApps\n"
              "\n[VERIFY] Profile: Live\n"
              "  [OK] App Nap — enabled\n"
              "  [OK] Software Updates — enabled\n"
              "  [OK] Notifications — enabled\n"
              "  [OK] Siri — enabled\n"
              "  [OK] Crash Reporter — enabled\n"
              "  [OK] UI Sounds — muted\n"
              "  [OK] AirDrop — enabled\n"
              "  [OK] USB Power — standard sleep\n"
              "  [OK] Motion Sensor — enabled\n"
              "  [OK] Spotlight — indexing on\n"
              "  [OK] Time Machine — enabled\n"
              "  [OK] Clean Reboot — app restoration enabled\n"
              "  [VERIFY] All settings confirmed on system.\n"
              "\n[PROFILE] Live applied and verified successfully.\n"_s);
}

TEST_F(ProfileApply, recordsTheProfileAsTheActiveOne) {
    EXPECT_TRUE(apply(soundsOff()));
    EXPECT_EQ(defaults.string(u"QuorvaneLastAppliedProfileName"_s), u"Live"_s);
    ASSERT_TRUE(system.systemMatch().has_value());
    EXPECT_EQ(system.systemMatch()->name, u"Live"_s);
    EXPECT_EQ(system.systemMatch()->kind, MatchedConfigurationKind::savedProfile);
    EXPECT_EQ(system.systemMatch()->verification.verified.size(), 12);
    EXPECT_TRUE(system.hasVerifiedSystem());
    ASSERT_EQ(posted.size(), 1);
    EXPECT_EQ(posted[0].first, u"QuorvaneSystemVerified"_s);
    EXPECT_EQ(posted[0].second, QVariantMap({{u"matchName"_s, u"Live"_s}, {u"matchKind"_s, u"profile"_s}}));
}

TEST_F(ProfileApply, aFailedCheckAloneLeavesTheApplyTrueWithAWarning) {
    commands.print(u"/usr/bin/tmutil status"_s, "    Running = 0;\n");
    EXPECT_TRUE(apply(soundsOff()));
    EXPECT_EQ(trace.last(), u"\n[PROFILE] Live applied with verification warnings — check logs."_s);
    EXPECT_EQ(system.lastApplyVerification()->failed.size(), 1);
    EXPECT_EQ(defaults.string(u"QuorvaneLastAppliedProfileName"_s), u"Live"_s);
}

TEST_F(ProfileApply, aCancelledApplyVerifiesAndRecordsNothing) {
    defaults.setString(u"QuorvaneLastAppliedProfileName"_s, u"Before"_s);
    commands.print(u"/usr/bin/mdutil -s /"_s, "/:\n\tIndexing disabled.\n");
    scripts.failNext(u"User canceled."_s);
    EXPECT_FALSE(apply(soundsOff()));
    const QStringList log = system.logMessages();
    EXPECT_TRUE(log.contains(u"  [ERROR] Administrator authorization was cancelled or failed: User canceled."_s));
    EXPECT_TRUE(log.contains(u"  [MISSING] Spotlight — expected indexing on"_s));
    EXPECT_EQ(log.last(), u"\n[PROFILE] Live apply failed or was cancelled — check logs."_s);
    EXPECT_EQ(defaults.string(u"QuorvaneLastAppliedProfileName"_s), u"Before"_s);
    EXPECT_EQ(system.lastApplyVerification()->failed.size(), 1);
    EXPECT_FALSE(system.systemMatch().has_value());
    EXPECT_FALSE(system.hasVerifiedSystem());
    EXPECT_TRUE(posted.isEmpty());
}

TEST_F(ProfileApply, thePromptShowsTheNameAsItIsStored) {
    apply(soundsOff(u"  Día / 1: \\o/ "_s));
    EXPECT_TRUE(
        trace.contains(scriptWithPrompt(u"Quorvane needs your administrator password to apply   Día / 1: \\\\o/ ."_s)));
}

TEST_F(ProfileApply, aNameWithADoubleQuoteFailsTheApplyAndRunsNoScript) {
    EXPECT_FALSE(apply(soundsOff(u"x\" with administrator privileges --"_s)));
    EXPECT_EQ(linesStartingWith(u"& "_s), QStringList());
    EXPECT_TRUE(trace.contains(
        u"  [ERROR] Administrator authorization was cancelled or failed: The authorization prompt can't contain a "
        u"double "
        "quote: Quorvane needs your administrator password to apply x\" with administrator privileges --."_s));
}

TEST_F(ProfileApply, aNameWithADoubleQuoteAppliesWhileTheNeutralPromptStandsIn) {
    EXPECT_TRUE(apply(soundsOff()));
    trace.clear();
    EXPECT_TRUE(apply(soundsOff(u"7\" mix"_s)));
    EXPECT_TRUE(trace.contains(scriptWithPrompt(u"Quorvane is applying system changes."_s)));
}

TEST_F(ProfileApply, aStartupConfigurationThatAsksForSomethingIsNotPassedOver) {
    UnifiedProfile profile = soundsOff();
    profile.startup.disableNetworkAtStartup = true;
    EXPECT_FALSE(apply(profile));
    EXPECT_TRUE(system.logMessages().contains(u"\nStartup configuration applied with errors."_s));
    EXPECT_EQ(system.logMessages().last(), u"\n[PROFILE] Live apply failed or was cancelled — check logs."_s);
    EXPECT_EQ(linesStartingWith(u"& do shell script"_s).size(), 1);
    EXPECT_TRUE(system.logMessages().contains(u"\n[VERIFY] Profile: Live"_s));
    EXPECT_EQ(system.lastApplyVerification()->verified.size(), 12);
    EXPECT_TRUE(defaults.values.isEmpty());
}

TEST_F(ProfileApply, aCleanRebootIsRefusedBeforeAnythingIsChanged) {
    UnifiedProfile profile = soundsOff();
    profile.settings.cleanReboot = true;
    EXPECT_FALSE(apply(profile));
    EXPECT_TRUE(system.logMessages().contains(u"  [ERROR] Start Clean on Reboot can't be applied yet."_s));
    EXPECT_EQ(system.logMessages().last(), u"\n[PROFILE] Live apply failed or was cancelled — check logs."_s);
    EXPECT_EQ(linesStartingWith(u"& "_s), QStringList());
    EXPECT_EQ(linesStartingWith(u"$ "_s), QStringList());
    EXPECT_TRUE(trace.filter(u"defaults write"_s).isEmpty());
    EXPECT_TRUE(trace.filter(u"defaults delete"_s).isEmpty());
    EXPECT_EQ(system.adminBatchDepth(), 0);
    EXPECT_TRUE(defaults.values.isEmpty());
    EXPECT_FALSE(system.systemMatch().has_value());
    EXPECT_TRUE(posted.isEmpty());
}

TEST_F(ProfileApply, verifyProfileReadsOnlyAndKeepsNothing) {
    const ApplyVerificationResult result = QCoro::waitFor(system.verifyProfile(soundsOff()));
    EXPECT_EQ(result.verified.size(), 12);
    EXPECT_FALSE(system.lastApplyVerification().has_value());
    EXPECT_TRUE(system.logMessages().isEmpty());
    EXPECT_EQ(linesStartingWith(u"$> "_s), trace);
}

} // namespace quorvane
