#include "core/UserDefaultKeys.h"
#include "fakes/BackgroundList.h"
#include "fakes/ReadingLines.h"
#include "fakes/ScriptedLoginItems.h"
#include "startup/background/BackgroundLoginItemChangePlan.h"

namespace quorvane {

namespace {

using Verify = SystemManager::VerifyAfterSync;

PerformanceSettings everythingButCleanReboot() {
    return PerformanceSettings::fullSelection();
}

/// A Mac on which every selected tweak reads as applied.
void answerAsApplied(ScriptedCommandLauncher& commands) {
    commands.print(reading::kPower, "AC Power:\n standby  0\n disksleep 0\n sleep 0\n sms 0\n");
    commands.print(reading::kAppNap, "1\n");
    commands.print(reading::kSystemUpdateDownload, "0\n");
    commands.print(reading::kSystemUpdateInstall, "0\n");
    commands.print(reading::kSystemStoreUpdate, "0\n");
    commands.print(reading::kDoNotDisturb, "1\n");
    commands.print(reading::kAssistant, "0\n");
    commands.print(reading::kCrashReporter, "none\n");
    commands.print(reading::kSounds, "0\n");
    commands.print(reading::kAirDrop, "1\n");
    commands.print(reading::kSpotlight, reading::indexing("Indexing disabled."));
}

const QString kPromptedRun =
    u"with prompt \"Quorvane needs your administrator password to make these system changes.\" "
    "with administrator privileges\n"_s;

const LoginItem kZoomAtLogin{u"zoom"_s, u"/Applications/zoom.us.app"_s, false};
const LoginItem kMail{u"Mail"_s, u"/Applications/Mail.app"_s, false};
const CleanReboot kKeepMail{{u"Mail"_s}, StartupConfiguration(), {}};

const QString kCleanRebootSteps =
    u"$ /usr/bin/defaults write com.apple.loginwindow TALLogoutSavesState -bool false\n"
    "$ /usr/bin/defaults write com.apple.loginwindow LoginwindowLaunchesRelaunchApps -bool false\n"
    "$ /usr/bin/defaults write NSGlobalDomain NSQuitAlwaysKeepsWindows -bool false\n"
    "  [APPLIED] Disabled app and window restoration on reboot.\n"
    "$> System Events: list\n"
    "  [ACTION] Removing 1 login item(s) not in permitted startup list...\n"
    "$> System Events: delete where name is zoom\n"
    "  [APPLIED] Removed login item: zoom\n"_s;
const QString kDisableUpdater = kLookAtLaunchd + // anew: a prompt has stood open
                                kLookAtJobs +
                                u"$ /bin/launchctl disable gui/501/com.up\n"
                                "$ /bin/launchctl bootout gui/501/com.up\n"_s +
                                kLookAtLaunchd + u"  [APPLIED] Disabled background login label: com.up\n"_s;
const QString kAppRestorationReads = reading::traced(reading::kCleanReboot) + u"$> System Events: list\n"
                                                                              "\n[VERIFY] Performance tweaks\n"_s;
const QString kCleanRebootChecks = u"  [OK] Clean Reboot — app restoration disabled\n"
                                   "  [OK] Clean Reboot windows — window restoration disabled\n"
                                   "  [OK] Clean Reboot login items — only permitted apps remain (Mail)\n"
                                   "  [OK] Background login items — only permitted items remain\n"
                                   "  [VERIFY] All settings confirmed on system.\n"_s;

class TweakFlows : public ScriptedStartup {
protected:
    TweakFlows() { noteEveryTweakChanged(); }

    bool apply(const PerformanceSettings& settings, const CleanReboot& cleanReboot = {}) {
        return QCoro::waitFor(system.applyPerformanceTweaks(settings, cleanReboot));
    }
    bool sync(const PerformanceSettings& settings, Verify verify = Verify::No, const CleanReboot& cleanReboot = {}) {
        return QCoro::waitFor(system.syncPerformanceTweaks(settings, verify, cleanReboot));
    }
    bool undo() { return QCoro::waitFor(system.undoPerformanceTweaks()); }
    /// A Mac with a login item and a background item that no clean reboot permits; what restores windows is off.
    void prepareForCleanReboot() {
        loginItems.items = {kZoomAtLogin, kMail};
        for (const QString& line : reading::kCleanReboot) {
            commands.print(line, "0\n");
        }
        scripts.carryOut = [this](const QString&) {
            files.addFile(system.backgroundDumpPath(),
                          wholeDump("#1:\n Name: Updater\n Type: agent (0x8)\n Identifier: 8.com.up\n"
                                    " Disposition: [enabled]\n"));
        };
    }
    QString dumpLine() const { return backgroundListLine(system.backgroundDumpPath()); }
    QString prompted(const QString& line) { return u"& do shell script \""_s + line + u"\" "_s + kPromptedRun; }
};

const QString kApplyEverything =
    u"\nStarting Audio Performance optimizations...\n"_s + kLookAtTweaks +
    u"$> /usr/bin/defaults export com.apple.ncprefs.plist -\n"_s + kLookAtLaunchd +
    u"$ /usr/bin/defaults write NSGlobalDomain NSAppSleepDisabled -bool YES\n"
    "$ /usr/bin/defaults write com.ableton.live NSAppSleepDisabled -bool YES\n"
    "  [APPLIED] Disabled App Nap (prevents background audio dropouts).\n"
    "$ /usr/bin/defaults write com.apple.SoftwareUpdate AutomaticDownload -bool NO\n"
    "$ /usr/bin/defaults write com.apple.SoftwareUpdate AutomaticCheckEnabled -bool NO\n"
    "$ /usr/bin/defaults write com.apple.commerce AutoUpdate -bool NO\n"
    "  [APPLIED] Disabled automatic macOS and App Store updates.\n"
    "$ /usr/bin/defaults -currentHost write "
    "/Users/alex/Library/Preferences/ByHost/com.apple.notificationcenterui doNotDisturb -boolean true\n"
    "$ /usr/bin/defaults write com.apple.ncprefs.plist dnd_prefs -dict-add dnd_enabled -bool true\n"
    "$ /usr/bin/killall NotificationCenter\n"
    "$ /bin/launchctl unload -w /System/Library/LaunchAgents/com.apple.notificationcenterui.plist\n"
    "  [APPLIED] Suppressed Notifications/Notification Center.\n"
    "$ /usr/bin/defaults write com.apple.Siri Status -string Disabled\n"
    "$ /usr/bin/defaults write com.apple.assistant.support \"Assistant Enabled\" -bool false\n"
    "  [APPLIED] Disabled Siri processing.\n"
    "$ /usr/bin/defaults write com.apple.CrashReporter DialogType -string none\n"
    "  [APPLIED] Disabled Crash Reporter popups.\n"
    "$ /usr/bin/defaults write com.apple.systemsound com.apple.sound.uiaudio.enabled -int 0\n"
    "$ /usr/bin/defaults write NSGlobalDomain com.apple.sound.uiaudio.enabled -int 0\n"
    "  [APPLIED] Muted System UI sound effects.\n"
    "$ /usr/bin/defaults write com.apple.NetworkBrowser DisableAirDrop -bool YES\n"
    "  [APPLIED] Deactivated AirDrop proximity sharing.\n"_s +
    kLookAtLaunchd + reading::traced({reading::kTimeMachine}) +
    u"  [ACTION] Requesting Admin rights for system performance tweaks...\n"_s;

const QString kOneWayVerification =
    reading::traced(reading::kTweaksOff + QStringList(reading::kBackupStatus)) +
    u"\n[VERIFY] Performance tweaks\n"
    "  [OK] App Nap — disabled\n"
    "  [OK] Software Updates — disabled\n"
    "  [OK] Notifications — suppressed\n"
    "  [INFO] Notifications: the setting is stored. Turn on a Focus as well: Quorvane can't do that for you.\n"
    "  [OK] Siri — disabled\n"
    "  [OK] Crash Reporter — disabled\n"
    "  [OK] UI Sounds — muted\n"
    "  [OK] AirDrop — disabled\n"
    "  [OK] USB Power — sleep disabled\n"
    "  [OK] Motion Sensor — disabled\n"
    "  [OK] Spotlight — indexing off\n"
    "  [OK] Time Machine — disabled\n"
    "  [VERIFY] All settings confirmed on system.\n"_s;

const QString kSyncEverythingOff =
    u"\nSyncing performance tweaks to profile settings...\n"_s + kLookAtTweaks +
    u"$ /usr/bin/defaults delete NSGlobalDomain NSAppSleepDisabled\n"
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
    "$ /usr/bin/defaults write com.apple.systemsound com.apple.sound.uiaudio.enabled -int 1\n"
    "$ /usr/bin/defaults delete NSGlobalDomain com.apple.sound.uiaudio.enabled\n"
    "  [RESTORED] Restored UI sounds.\n"
    "$ /usr/bin/defaults write com.apple.NetworkBrowser DisableAirDrop -bool NO\n"
    "  [RESTORED] Re-activated AirDrop.\n"_s +
    reading::traced({reading::kTimeMachine}) + u"  [ACTION] Requesting Admin rights to sync system-level tweaks...\n"_s;

const QString kSyncEverythingOn =
    u"\nSyncing performance tweaks to profile settings...\n"_s + kLookAtTweaks + kLookAtLaunchd +
    u"$ /usr/bin/defaults write NSGlobalDomain NSAppSleepDisabled -bool YES\n"
    "$ /usr/bin/defaults write com.ableton.live NSAppSleepDisabled -bool YES\n"
    "  [APPLIED] Disabled App Nap.\n"
    "$ /usr/bin/defaults write com.apple.SoftwareUpdate AutomaticDownload -bool NO\n"
    "$ /usr/bin/defaults write com.apple.SoftwareUpdate AutomaticCheckEnabled -bool NO\n"
    "$ /usr/bin/defaults write com.apple.commerce AutoUpdate -bool NO\n"
    "  [APPLIED] Disabled automatic updates.\n"
    "$ /usr/bin/defaults -currentHost write "
    "/Users/alex/Library/Preferences/ByHost/com.apple.notificationcenterui doNotDisturb -boolean true\n"
    "$ /usr/bin/killall NotificationCenter\n"
    "$ /bin/launchctl unload -w /System/Library/LaunchAgents/com.apple.notificationcenterui.plist\n"
    "  [APPLIED] Suppressed Notifications.\n"
    "$ /usr/bin/defaults write com.apple.Siri Status -string Disabled\n"
    "$ /usr/bin/defaults write com.apple.assistant.support \"Assistant Enabled\" -bool false\n"
    "  [APPLIED] Disabled Siri.\n"
    "$ /usr/bin/defaults write com.apple.CrashReporter DialogType -string none\n"
    "  [APPLIED] Disabled Crash Reporter.\n"
    "$ /usr/bin/defaults write com.apple.systemsound com.apple.sound.uiaudio.enabled -int 0\n"
    "$ /usr/bin/defaults write NSGlobalDomain com.apple.sound.uiaudio.enabled -int 0\n"
    "  [APPLIED] Muted UI sounds.\n"
    "$ /usr/bin/defaults write com.apple.NetworkBrowser DisableAirDrop -bool YES\n"
    "  [APPLIED] Deactivated AirDrop.\n"_s +
    kLookAtLaunchd + reading::traced({reading::kTimeMachine}) +
    u"  [ACTION] Requesting Admin rights to sync system-level tweaks...\n"_s;

const QString kSyncEnd = u"$ /usr/bin/defaults write com.apple.loginwindow TALLogoutSavesState -bool true\n"
                         "$ /usr/bin/defaults write com.apple.loginwindow LoginwindowLaunchesRelaunchApps -bool true\n"
                         "$ /usr/bin/defaults delete NSGlobalDomain NSQuitAlwaysKeepsWindows\n"
                         "  [RESTORED] Re-enabled app restoration on reboot.\n"
                         "\nPerformance Tweaks Synced! (Restart your Mac for full effect.)\n"_s;

const QString kUndoAsUser =
    u"\nUndoing Audio Performance tweaks (no snapshot — using standard defaults)...\n"_s + kLookAtTweaks +
    u"$ /usr/bin/defaults delete NSGlobalDomain NSAppSleepDisabled\n"
    "$ /usr/bin/defaults delete com.ableton.live NSAppSleepDisabled\n"
    "  [REVERTED] Re-enabled App Nap.\n"
    "$ /usr/bin/defaults write com.apple.SoftwareUpdate AutomaticDownload -bool YES\n"
    "$ /usr/bin/defaults write com.apple.SoftwareUpdate AutomaticCheckEnabled -bool YES\n"
    "$ /usr/bin/defaults write com.apple.commerce AutoUpdate -bool YES\n"
    "  [REVERTED] Re-enabled automatic updates.\n"
    "$ /usr/bin/defaults -currentHost delete "
    "/Users/alex/Library/Preferences/ByHost/com.apple.notificationcenterui doNotDisturb\n"
    "$ /bin/launchctl load -w /System/Library/LaunchAgents/com.apple.notificationcenterui.plist\n"
    "$ /usr/bin/open -a NotificationCenter\n"
    "  [REVERTED] Re-enabled Notifications.\n"
    "$ /usr/bin/defaults delete com.apple.Siri Status\n"
    "$ /usr/bin/defaults write com.apple.assistant.support \"Assistant Enabled\" -bool true\n"
    "  [REVERTED] Re-enabled Siri.\n"
    "$ /usr/bin/defaults delete com.apple.CrashReporter DialogType\n"
    "  [REVERTED] Re-enabled Crash Reporter.\n"
    "$ /usr/bin/defaults write com.apple.systemsound com.apple.sound.uiaudio.enabled -int 1\n"
    "$ /usr/bin/defaults delete NSGlobalDomain com.apple.sound.uiaudio.enabled\n"
    "  [REVERTED] Restored System UI sound effects.\n"
    "$ /usr/bin/defaults write com.apple.NetworkBrowser DisableAirDrop -bool NO\n"
    "  [REVERTED] Re-activated AirDrop.\n"
    "$ /usr/bin/defaults write com.apple.loginwindow TALLogoutSavesState -bool true\n"
    "$ /usr/bin/defaults write com.apple.loginwindow LoginwindowLaunchesRelaunchApps -bool true\n"
    "$ /usr/bin/defaults delete NSGlobalDomain NSQuitAlwaysKeepsWindows\n"
    "  [RESTORED] Re-enabled app restoration on reboot.\n"_s +
    reading::traced({reading::kTimeMachine}) + u"  [ACTION] Requesting Admin rights to restore system defaults...\n"_s;

const QString kSwitchUpdatesOff =
    u" ; /usr/bin/defaults write /Library/Preferences/com.apple.SoftwareUpdate AutomaticDownload -bool NO || true"
    " ; /usr/bin/defaults write /Library/Preferences/com.apple.SoftwareUpdate AutomaticallyInstallMacOSUpdates -bool "
    "NO || true"
    " ; /usr/bin/defaults write /Library/Preferences/com.apple.commerce AutoUpdate -bool NO || true"_s;
const QString kLeaveUpdatesToMacOS =
    u" ; /usr/bin/defaults delete /Library/Preferences/com.apple.SoftwareUpdate AutomaticDownload || true"
    " ; /usr/bin/defaults delete /Library/Preferences/com.apple.SoftwareUpdate AutomaticallyInstallMacOSUpdates || true"
    " ; /usr/bin/defaults delete /Library/Preferences/com.apple.commerce AutoUpdate || true"_s;

const QString kUndoLine =
    u"pmset -a standby 1 disksleep 10 sleep 1 ; mdutil -a -i on || true ; tmutil enable || true ; pmset -a sms 1"_s;

} // namespace

// ---- One-way apply -------------------------------------------------------------------------------------------------

TEST_F(TweakFlows, applyOfEverythingRunsEachCommandInOrderAndVerifies) {
    answerAsApplied(commands);
    EXPECT_TRUE(apply(everythingButCleanReboot()));
    EXPECT_EQ(
        takeTrace(),
        kApplyEverything +
            prompted(u"pmset -a standby 0 disksleep 0 sleep 0 ; mdutil -a -i off || true ; tmutil disable || true ; "
                     "pmset -a sms 0"_s +
                     kSwitchUpdatesOff) +
            u"  [APPLIED] Successfully apply all system-level performance tweaks.\n"
            "\nPerformance Tweaks Complete! (Restart your Mac for full effect.)\n"_s +
            kOneWayVerification);
    EXPECT_EQ(system.lastApplyVerification()->verified.size(), 11);
    EXPECT_EQ(system.adminBatchDepth(), 0);
}

TEST_F(TweakFlows, applyOfNothingRunsNoCommandShowsNoPromptAndStillVerifies) {
    EXPECT_TRUE(apply({}));
    EXPECT_EQ(takeTrace(), u"\nStarting Audio Performance optimizations...\n"
                           "\nPerformance Tweaks Complete! (Restart your Mac for full effect.)\n"
                           "$> /usr/bin/pmset -g custom\n"
                           "\n[VERIFY] Performance tweaks\n"
                           "  [VERIFY] All settings confirmed on system.\n"_s);
}

TEST_F(TweakFlows, applyOfAUserTweakAloneShowsNoPrompt) {
    PerformanceSettings settings;
    settings.uiSounds = true;
    commands.print(reading::kSounds, "0\n");
    EXPECT_TRUE(apply(settings));
    EXPECT_EQ(takeTrace(), u"\nStarting Audio Performance optimizations...\n"
                           "? tweaks\n"
                           "$ /usr/bin/defaults write com.apple.systemsound com.apple.sound.uiaudio.enabled -int 0\n"
                           "$ /usr/bin/defaults write NSGlobalDomain com.apple.sound.uiaudio.enabled -int 0\n"
                           "  [APPLIED] Muted System UI sound effects.\n"
                           "\nPerformance Tweaks Complete! (Restart your Mac for full effect.)\n"
                           "$> /usr/bin/pmset -g custom\n"
                           "$> /usr/bin/defaults read NSGlobalDomain com.apple.sound.uiaudio.enabled\n"
                           "\n[VERIFY] Performance tweaks\n"
                           "  [OK] UI Sounds — muted\n"
                           "  [VERIFY] All settings confirmed on system.\n"_s);
}

TEST_F(TweakFlows, aCancelledApplyStopsAfterTheErrorLine) {
    scripts.failNext(u"User canceled."_s);
    EXPECT_FALSE(apply(everythingButCleanReboot()));
    EXPECT_EQ(
        takeTrace(),
        kApplyEverything +
            prompted(u"pmset -a standby 0 disksleep 0 sleep 0 ; mdutil -a -i off || true ; tmutil disable || true ; "
                     "pmset -a sms 0"_s +
                     kSwitchUpdatesOff) +
            u"  [ERROR] Administrator authorization was cancelled or failed: User canceled.\n"_s + kLookAtTweaks);
    EXPECT_FALSE(system.lastApplyVerification().has_value());
    EXPECT_EQ(system.adminBatchDepth(), 0);
}

TEST_F(TweakFlows, aFailedCheckMakesTheApplyFalse) {
    answerAsApplied(commands);
    commands.fail(reading::kCrashReporter, 1);
    PerformanceSettings settings;
    settings.crashReporter = true;
    EXPECT_FALSE(apply(settings));
    EXPECT_EQ(system.lastApplyVerification()->failed.size(), 1);
}

TEST_F(TweakFlows, aFailedPreferenceWriteNeitherStopsTheApplyNorReachesTheLog) {
    answerAsApplied(commands);
    commands.fail(u"/usr/bin/defaults write com.apple.Siri Status -string Disabled"_s, 1, "Could not write domain");
    PerformanceSettings settings;
    settings.siri = true;
    EXPECT_TRUE(apply(settings));
    EXPECT_FALSE(system.logMessages().join(u'\n').contains(u"Could not write"_s));
    EXPECT_TRUE(
        trace.contains(u"$ /usr/bin/defaults write com.apple.assistant.support \"Assistant Enabled\" -bool false"_s));
}

TEST_F(TweakFlows, applyOfACleanRebootAsksOnceAndVerifiesWhatRemains) {
    prepareForCleanReboot();
    PerformanceSettings settings;
    settings.cleanReboot = true;
    EXPECT_TRUE(apply(settings, kKeepMail));
    EXPECT_EQ(takeTrace(), u"\nStarting Audio Performance optimizations...\n? tweaks\n"_s + kCleanRebootSteps +
                               kLookAtLaunchd + prompted(dumpLine()) + kDisableUpdater +
                               u"\nPerformance Tweaks Complete! (Restart your Mac for full effect.)\n"
                               "$> /usr/bin/pmset -g custom\n"_s +
                               kAppRestorationReads + kCleanRebootChecks);
    EXPECT_EQ(loginItems.names(), QStringList(u"Mail"_s));
    EXPECT_FALSE(system.pendingBackgroundLoginItemChanges().has_value());
    EXPECT_EQ(system.adminBatchDepth(), 0);
}

TEST_F(TweakFlows, aCleanRebootComesBehindTheSystemTweaksInTheSameRun) {
    prepareForCleanReboot();
    answerAsApplied(commands);
    PerformanceSettings settings = everythingButCleanReboot();
    settings.cleanReboot = true;
    EXPECT_TRUE(apply(settings, kKeepMail));
    EXPECT_TRUE(takeTrace().startsWith(
        kApplyEverything + kCleanRebootSteps +
        prompted(u"pmset -a standby 0 disksleep 0 sleep 0 ; mdutil -a -i off || true ; tmutil disable || true ; "
                 "pmset -a sms 0"_s +
                 kSwitchUpdatesOff + u" ; "_s + dumpLine())));
}

TEST_F(TweakFlows, aCancelledCleanRebootKeepsWhatRanAsTheUserAndPlansNothingMore) {
    prepareForCleanReboot();
    PerformanceSettings settings;
    settings.cleanReboot = true;
    scripts.failNext(u"User canceled."_s);
    EXPECT_FALSE(apply(settings, kKeepMail));
    EXPECT_EQ(takeTrace(), u"\nStarting Audio Performance optimizations...\n? tweaks\n"_s + kCleanRebootSteps +
                               kLookAtLaunchd + prompted(dumpLine()) +
                               u"  [ERROR] Administrator authorization was cancelled or failed: User canceled.\n"_s +
                               kLookAtTweaks);
    EXPECT_EQ(loginItems.names(), QStringList(u"Mail"_s));
    EXPECT_FALSE(system.backgroundTaskItems().has_value());
    EXPECT_FALSE(system.pendingBackgroundLoginItemChanges().has_value());
    EXPECT_EQ(system.backgroundTaskItemsFetchMode(), SystemManager::BackgroundTaskItemsFetchMode::automatic);
    EXPECT_FALSE(system.lastApplyVerification().has_value());
}

TEST_F(TweakFlows, theCheckOfACleanRebootSeesAnItemThatCameWhileThePromptStoodOpen) {
    prepareForCleanReboot();
    loginItems.items = {kMail};
    PerformanceSettings settings;
    settings.cleanReboot = true;
    scripts.carryOut = [this](const QString&) { loginItems.items.append(kZoomAtLogin); };
    EXPECT_FALSE(apply(settings, kKeepMail));
    EXPECT_TRUE(trace.contains(u"  [APPLIED] Login items already match permitted startup list."_s));
    EXPECT_TRUE(trace.contains(u"  [MISSING] Login item: zoom — will open at login"_s));
}

TEST_F(TweakFlows, anItemThatACleanRebootCouldNotRemoveFailsTheCheck) {
    prepareForCleanReboot();
    loginItems.unchangeable = {u"zoom"_s};
    PerformanceSettings settings;
    settings.cleanReboot = true;
    EXPECT_FALSE(apply(settings, kKeepMail));
    EXPECT_TRUE(trace.contains(u"  [ERROR] Failed to remove login item: zoom"_s));
    EXPECT_TRUE(trace.contains(u"  [MISSING] Login item: zoom — will open at login"_s));
}

// ---- Two-way sync --------------------------------------------------------------------------------------------------

TEST_F(TweakFlows, syncOfEverythingOutsideABatchAsksAtOnce) {
    EXPECT_TRUE(sync(everythingButCleanReboot()));
    EXPECT_EQ(takeTrace(), kSyncEverythingOn +
                               prompted(u"pmset -a standby 0 disksleep 0 sleep 0 sms 0 ; mdutil -a -i off || true ; "
                                        "tmutil disable || true"_s +
                                        kSwitchUpdatesOff) +
                               kSyncEnd);
}

TEST_F(TweakFlows, syncOfNothingTakesBackWhatTheProgramHasChanged) {
    answerAsApplied(commands);
    EXPECT_TRUE(sync({}));
    EXPECT_EQ(takeTrace(), kSyncEverythingOff +
                               prompted(u"pmset -a standby 1 disksleep 10 sleep 1 sms 1 ; mdutil -a -i on || true ; "
                                        "tmutil enable || true"_s +
                                        kLeaveUpdatesToMacOS) +
                               kSyncEnd);
}

TEST_F(TweakFlows, syncJoinsPowerAndMotionSensorInOneCommand) {
    answerAsApplied(commands);
    PerformanceSettings settings;
    settings.sms = true;
    sync(settings);
    EXPECT_TRUE(takeTrace().contains(u"\"pmset -a standby 1 disksleep 10 sleep 1 sms 0 ; "_s));
}

TEST_F(TweakFlows, syncInsideABatchOnlyQueues) {
    answerAsApplied(commands);
    system.beginAdminBatch();
    EXPECT_TRUE(sync({}));
    EXPECT_EQ(takeTrace(), kSyncEverythingOff + kSyncEnd);
    EXPECT_TRUE(QCoro::waitFor(system.finishAdminBatch(u"Please."_s)));
    EXPECT_EQ(takeTrace(),
              u"& do shell script \"pmset -a standby 1 disksleep 10 sleep 1 sms 1 ; mdutil -a -i on || true "
              "; tmutil enable || true"_s +
                  kLeaveUpdatesToMacOS + u"\" with prompt \"Please.\" with administrator privileges\n"_s);
}

TEST_F(TweakFlows, aCancelledSyncStopsBeforeAppRestoration) {
    answerAsApplied(commands);
    scripts.failNext(u"User canceled."_s);
    EXPECT_FALSE(sync({}));
    EXPECT_EQ(takeTrace(), kSyncEverythingOff +
                               prompted(u"pmset -a standby 1 disksleep 10 sleep 1 sms 1 ; mdutil -a -i on || true ; "
                                        "tmutil enable || true"_s +
                                        kLeaveUpdatesToMacOS) +
                               u"  [ERROR] System tweak sync was cancelled or failed: User canceled.\n"_s +
                               kLookAtTweaks);
}

TEST_F(TweakFlows, aVerifyingSyncIsFalseWhenACheckFails) {
    answerAsApplied(commands);
    commands.fail(reading::kAppNap, 1);
    EXPECT_FALSE(sync(everythingButCleanReboot(), Verify::Yes));
    const QString log = takeTrace();
    EXPECT_TRUE(log.contains(u"\n[VERIFY] Performance tweaks\n"_s));
    EXPECT_TRUE(log.endsWith(u"  [OK] Clean Reboot — app restoration enabled\n"
                             "  [MISSING] App Nap — expected disabled\n"
                             "  [VERIFY] 1 setting(s) could not be confirmed.\n"_s +
                             kLookAtTweaks));
}

TEST_F(TweakFlows, aVerifyingSyncIsTrueWhenEveryCheckHolds) {
    answerAsApplied(commands);
    EXPECT_TRUE(sync(everythingButCleanReboot(), Verify::Yes));
    EXPECT_EQ(system.lastApplyVerification()->verified.size(), 12);
}

TEST_F(TweakFlows, syncOfACleanRebootRemovesInThePlaceOfRestoring) {
    prepareForCleanReboot();
    PerformanceSettings settings;
    settings.cleanReboot = true;
    answerAsApplied(commands);
    system.deferBackgroundTaskFetchToAdminBatch();
    system.beginAdminBatch();
    EXPECT_TRUE(sync(settings, Verify::No, kKeepMail));
    EXPECT_EQ(takeTrace(), kSyncEverythingOff + kCleanRebootSteps +
                               u"\nPerformance Tweaks Synced! (Restart your Mac for full effect.)\n"_s);
    EXPECT_EQ(system.pendingBackgroundLoginItemChanges()->cleanRebootPermittedNames, QSet<QString>{u"Mail"_s});
}

TEST_F(TweakFlows, syncOfACleanRebootOutsideABatchReadsTheBackgroundItemsForItself) {
    prepareForCleanReboot();
    answerAsApplied(commands);
    PerformanceSettings settings = everythingButCleanReboot();
    settings.cleanReboot = true;
    EXPECT_TRUE(sync(settings, Verify::Yes, kKeepMail));
    const QString syncLine =
        u"pmset -a standby 0 disksleep 0 sleep 0 sms 0 ; mdutil -a -i off || true ; tmutil disable || true"_s +
        kSwitchUpdatesOff;
    EXPECT_TRUE(takeTrace().startsWith(
        kSyncEverythingOn + prompted(syncLine) + kCleanRebootSteps + u"& do shell script \""_s + dumpLine() + u"\" "_s +
        kPromptedRun + kDisableUpdater + u"\nPerformance Tweaks Synced! (Restart your Mac for full effect.)\n"_s));
    EXPECT_EQ(system.lastApplyVerification()->verified.size(), 15);
}

TEST_F(TweakFlows, aCancelledSyncRemovesNothingForACleanReboot) {
    prepareForCleanReboot();
    PerformanceSettings settings;
    settings.cleanReboot = true;
    scripts.failNext(u"User canceled."_s);
    EXPECT_FALSE(sync(settings, Verify::Yes, kKeepMail));
    EXPECT_EQ(loginItems.names(), (QStringList{u"zoom"_s, u"Mail"_s}));
    EXPECT_FALSE(system.lastApplyVerification().has_value());
}

// ---- Undo to standard defaults

TEST_F(TweakFlows, undoRunsEachCommandInOrder) {
    EXPECT_TRUE(undo());
    EXPECT_EQ(takeTrace(), kUndoAsUser + prompted(kUndoLine) +
                               u"  [REVERTED] Successfully restored all system-level defaults.\n"
                               "\nUndo Complete! (Restart your Mac for full effect.)\n"_s);
}

TEST_F(TweakFlows, undoOnAMacWithoutTheKeysRunsTheSameCommandsSilently) {
    for (const QString& line : {u"NSGlobalDomain NSAppSleepDisabled"_s, u"com.ableton.live NSAppSleepDisabled"_s,
                                u"com.apple.Siri Status"_s, u"com.apple.CrashReporter DialogType"_s}) {
        commands.fail(u"/usr/bin/defaults delete "_s + line, 1, "Domain not found.");
    }
    EXPECT_TRUE(undo());
    EXPECT_TRUE(takeTrace().startsWith(kUndoAsUser));
}

TEST_F(TweakFlows, aCancelledUndoSaysSo) {
    scripts.failNext(u"User canceled."_s);
    EXPECT_FALSE(undo());
    EXPECT_EQ(takeTrace(),
              kUndoAsUser + prompted(kUndoLine) + u"  [ERROR] Restoration was cancelled or failed: User canceled.\n"_s);
}

TEST_F(TweakFlows, undoInsideABatchLogsItsEndBeforeThePromptAndKeepsItWhenTheBatchFails) {
    system.beginAdminBatch();
    EXPECT_TRUE(undo());
    const QString end = u"  [REVERTED] Successfully restored all system-level defaults.\n"
                        "\nUndo Complete! (Restart your Mac for full effect.)\n"_s;
    EXPECT_EQ(takeTrace(), kUndoAsUser + end);
    scripts.failNext(u"User canceled."_s);
    EXPECT_FALSE(QCoro::waitFor(system.finishAdminBatch(u"Please."_s)));
    EXPECT_EQ(takeTrace(), u"& do shell script \""_s + kUndoLine +
                               u"\" with prompt \"Please.\" with administrator privileges\n"
                               "  [ERROR] Administrator authorization was cancelled or failed: User canceled.\n"_s);
}

} // namespace quorvane
