#include "fakes/SimulatedSystem.h"

namespace quorvane {

namespace {

class ProfileOnSimulatedMac : public SimulatedSystem {};

class ProfileOnStudioDesktop : public SimulatedSystem {
protected:
    ProfileOnStudioDesktop()
        : SimulatedSystem(u"studio-desktop"_s) {}
};

class ProfileOnOldMacBook : public SimulatedSystem {
protected:
    ProfileOnOldMacBook()
        : SimulatedSystem(u"old-macbook"_s) {}
};

class ProfileOnDjLaptop : public SimulatedSystem {
protected:
    ProfileOnDjLaptop()
        : SimulatedSystem(u"dj-laptop"_s) {}
};

const QString kPreferenceFolder = u"/Users/alex/Library/Preferences/"_s;

/// What applying "Live Set" changes as the user, on the fresh Mac.
const QString kUserChanges =
    u"+ /Users/alex/.quorvane: folder\n"
    "+ /Users/alex/Library/Preferences/.GlobalPreferences.plist NSAppSleepDisabled: <true/>\n"
    "~ /Users/alex/Library/Preferences/.GlobalPreferences.plist com.apple.sound.uiaudio.enabled: <integer>1</integer> "
    "→ <integer>0</integer>\n"
    "+ "
    "/Users/alex/Library/Preferences/ByHost/com.apple.notificationcenterui.5C1A9B3E-7D42-5F60-8E21-4A6B0C9D3E17.plist: "
    "file\n"
    "+ "
    "/Users/alex/Library/Preferences/ByHost/com.apple.notificationcenterui.5C1A9B3E-7D42-5F60-8E21-4A6B0C9D3E17.plist "
    "doNotDisturb: <true/>\n"
    "+ /Users/alex/Library/Preferences/com.ableton.live.plist: file\n"
    "+ /Users/alex/Library/Preferences/com.ableton.live.plist NSAppSleepDisabled: <true/>\n"
    "+ /Users/alex/Library/Preferences/com.apple.CrashReporter.plist: file\n"
    "+ /Users/alex/Library/Preferences/com.apple.CrashReporter.plist DialogType: <string>none</string>\n"
    "+ /Users/alex/Library/Preferences/com.apple.NetworkBrowser.plist: file\n"
    "+ /Users/alex/Library/Preferences/com.apple.NetworkBrowser.plist DisableAirDrop: <true/>\n"
    "+ /Users/alex/Library/Preferences/com.apple.Siri.plist Status: <string>Disabled</string>\n"
    "+ /Users/alex/Library/Preferences/com.apple.SoftwareUpdate.plist: file\n"
    "+ /Users/alex/Library/Preferences/com.apple.SoftwareUpdate.plist AutomaticCheckEnabled: <false/>\n"
    "+ /Users/alex/Library/Preferences/com.apple.SoftwareUpdate.plist AutomaticDownload: <false/>\n"
    "~ /Users/alex/Library/Preferences/com.apple.assistant.support.plist Assistant Enabled: <true/> → <false/>\n"
    "+ /Users/alex/Library/Preferences/com.apple.commerce.plist: file\n"
    "+ /Users/alex/Library/Preferences/com.apple.commerce.plist AutoUpdate: <false/>\n"
    "+ /Users/alex/Library/Preferences/com.apple.systemsound.plist: file\n"
    "+ /Users/alex/Library/Preferences/com.apple.systemsound.plist com.apple.sound.uiaudio.enabled: <integer>0</integer>\n"_s;

} // namespace

TEST_F(ProfileOnSimulatedMac, aWholeProfileIsAppliedUnderOnePromptAndVerified) {
    const macsim::MacPicture before = picture();
    EXPECT_TRUE(apply(exampleProfile(u"live-set"_s)));
    EXPECT_EQ(log(), QString::fromUtf8(projectFile(u"tests/flows/live-set-applied.log"_s)));
    EXPECT_EQ(authorization.prompts(), QStringList(u"Quorvane needs your administrator password to apply Live Set."_s));
    EXPECT_EQ(picture().changesSince(before),
              u"~ /Library/Preferences/com.apple.SoftwareUpdate.plist AutomaticDownload: <true/> → <false/>\n"
              "+ /Library/Preferences/com.apple.SoftwareUpdate.plist AutomaticallyInstallMacOSUpdates: <false/>\n"
              "~ /Library/Preferences/com.apple.TimeMachine.plist AutoBackup: <true/> → <false/>\n"
              "~ /Library/Preferences/com.apple.commerce.plist AutoUpdate: <true/> → <false/>\n"_s +
                  kUserChanges +
                  u"+ /Users/alex/Library/Preferences/com.quorvane.app.plist: file\n"
                  "+ /Users/alex/Library/Preferences/com.quorvane.app.plist QuorvaneChangedTweaks: <array>\n"
                  "\t<string>airdrop</string>\n"
                  "\t<string>appNap</string>\n"
                  "\t<string>crashReporter</string>\n"
                  "\t<string>notifications</string>\n"
                  "\t<string>siri</string>\n"
                  "\t<string>spotlight</string>\n"
                  "\t<string>uiSounds</string>\n"
                  "\t<string>updates</string>\n"
                  "\t<string>usbPower</string>\n"
                  "</array>\n"
                  "+ /Users/alex/Library/Preferences/com.quorvane.app.plist QuorvaneLastAppliedProfileName: "
                  "<string>Live Set</string>\n"
                  "+ /Users/alex/Library/Preferences/com.quorvane.app.plist QuorvaneSwitchedBackupsOff: <true/>\n"
                  "+ state launchd/jobs/gui~1501/com.apple.notificationcenterui.agent/lastExitStatus: -15\n"
                  "~ state launchd/jobs/gui~1501/com.apple.notificationcenterui.agent/pid: 418 → 419\n"
                  "~ state power/sources/AC Power/disksleep: 10 → 0\n"
                  "~ state power/sources/AC Power/sleep: 1 → 0\n"
                  "~ state power/sources/AC Power/standby: 1 → 0\n"
                  "~ state power/sources/Battery Power/disksleep: 10 → 0\n"
                  "~ state power/sources/Battery Power/sleep: 1 → 0\n"
                  "~ state power/sources/Battery Power/standby: 1 → 0\n"
                  "~ state processes \"NotificationCenter\"/pid: 418 → 419\n"
                  "~ state spotlight/volumes/~1: \"enabled\" → \"disabled\"\n"
                  "~ state spotlight/volumes/~1System~1Volumes~1Data: \"enabled\" → \"disabled\"\n"_s);
}

TEST_F(ProfileOnSimulatedMac, aCancelledPromptLeavesTheSystemSettingsAlone) {
    authorization.setAnswer(macsim::Authorization::Cancel);
    const macsim::MacPicture before = picture();
    EXPECT_FALSE(apply(exampleProfile(u"live-set"_s)));
    EXPECT_EQ(picture().changesSince(before),
              kUserChanges +
                  u"+ /Users/alex/Library/Preferences/com.quorvane.app.plist: file\n"
                  "+ /Users/alex/Library/Preferences/com.quorvane.app.plist QuorvaneChangedTweaks: <array>\n"
                  "\t<string>airdrop</string>\n"
                  "\t<string>appNap</string>\n"
                  "\t<string>crashReporter</string>\n"
                  "\t<string>notifications</string>\n"
                  "\t<string>siri</string>\n"
                  "\t<string>uiSounds</string>\n"
                  "\t<string>updates</string>\n"
                  "</array>\n"
                  "+ /Users/alex/Library/Preferences/com.quorvane.app.plist QuorvaneSwitchedBackupsOff: <false/>\n"
                  "+ state launchd/jobs/gui~1501/com.apple.notificationcenterui.agent/lastExitStatus: -15\n"
                  "~ state launchd/jobs/gui~1501/com.apple.notificationcenterui.agent/pid: 418 → 419\n"
                  "~ state processes \"NotificationCenter\"/pid: 418 → 419\n"_s);
    EXPECT_TRUE(log().contains(u"  [ERROR] Administrator authorization was cancelled or failed: User canceled.\n"_s));
    EXPECT_TRUE(log().endsWith(u"\n\n[PROFILE] Live Set apply failed or was cancelled — check logs.\n"_s));
}

TEST_F(ProfileOnSimulatedMac, aRefusedPromptFailsWithTheSystemsMessage) {
    authorization.setAnswer(macsim::Authorization::Deny);
    EXPECT_FALSE(apply(exampleProfile(u"live-set"_s)));
    EXPECT_TRUE(log().contains(u"  [ERROR] Administrator authorization was cancelled or failed: "
                               "The administrator user name or password was incorrect.\n"_s));
}

TEST_F(ProfileOnSimulatedMac, defaultTakesEveryTweakBack) {
    ASSERT_TRUE(apply(exampleProfile(u"live-set"_s)));
    const macsim::MacPicture applied = picture();
    EXPECT_TRUE(QCoro::waitFor(system->undoPerformanceTweaks()));
    EXPECT_EQ(
        picture().changesSince(applied),
        u"- /Library/Preferences/com.apple.SoftwareUpdate.plist AutomaticDownload: <false/>\n"
        "- /Library/Preferences/com.apple.SoftwareUpdate.plist AutomaticallyInstallMacOSUpdates: <false/>\n"
        "~ /Library/Preferences/com.apple.TimeMachine.plist AutoBackup: <false/> → <true/>\n"
        "- /Library/Preferences/com.apple.commerce.plist AutoUpdate: <false/>\n"
        "- /Users/alex/Library/Preferences/.GlobalPreferences.plist NSAppSleepDisabled: <true/>\n"
        "- /Users/alex/Library/Preferences/.GlobalPreferences.plist NSQuitAlwaysKeepsWindows: <true/>\n"
        "- /Users/alex/Library/Preferences/.GlobalPreferences.plist com.apple.sound.uiaudio.enabled: "
        "<integer>0</integer>\n"
        "- "
        "/Users/alex/Library/Preferences/ByHost/"
        "com.apple.notificationcenterui.5C1A9B3E-7D42-5F60-8E21-4A6B0C9D3E17.plist doNotDisturb: <true/>\n"
        "- /Users/alex/Library/Preferences/com.ableton.live.plist NSAppSleepDisabled: <true/>\n"
        "- /Users/alex/Library/Preferences/com.apple.CrashReporter.plist DialogType: <string>none</string>\n"
        "~ /Users/alex/Library/Preferences/com.apple.NetworkBrowser.plist DisableAirDrop: <true/> → <false/>\n"
        "- /Users/alex/Library/Preferences/com.apple.Siri.plist Status: <string>Disabled</string>\n"
        "~ /Users/alex/Library/Preferences/com.apple.SoftwareUpdate.plist AutomaticCheckEnabled: <false/> → <true/>\n"
        "~ /Users/alex/Library/Preferences/com.apple.SoftwareUpdate.plist AutomaticDownload: <false/> → <true/>\n"
        "~ /Users/alex/Library/Preferences/com.apple.assistant.support.plist Assistant Enabled: <false/> → <true/>\n"
        "~ /Users/alex/Library/Preferences/com.apple.commerce.plist AutoUpdate: <false/> → <true/>\n"
        "+ /Users/alex/Library/Preferences/com.apple.loginwindow.plist LoginwindowLaunchesRelaunchApps: <true/>\n"
        "~ /Users/alex/Library/Preferences/com.apple.systemsound.plist com.apple.sound.uiaudio.enabled: "
        "<integer>0</integer> → <integer>1</integer>\n"
        "- state launchd/disabled/user~1501: null\n"
        "+ state launchd/disabled/user~1501/com.apple.notificationcenterui.agent: false\n"
        "~ state power/sources/AC Power/disksleep: 0 → 10\n"
        "~ state power/sources/AC Power/sleep: 0 → 1\n"
        "~ state power/sources/AC Power/standby: 0 → 1\n"
        "~ state power/sources/Battery Power/disksleep: 0 → 10\n"
        "~ state power/sources/Battery Power/sleep: 0 → 1\n"
        "~ state power/sources/Battery Power/standby: 0 → 1\n"
        "~ state spotlight/volumes/~1: \"disabled\" → \"enabled\"\n"
        "~ state spotlight/volumes/~1System~1Volumes~1Data: \"disabled\" → \"enabled\"\n"_s);
    EXPECT_EQ(authorization.prompts().last(),
              u"Quorvane needs your administrator password to make these system changes."_s)
        << "another line than before";
}

TEST_F(ProfileOnSimulatedMac, theOneWayApplyLeavesUnselectedTweaksAlone) {
    const macsim::MacPicture before = picture();
    PerformanceSettings settings;
    settings.crashReporter = true;
    settings.spotlight = true;
    EXPECT_TRUE(QCoro::waitFor(system->applyPerformanceTweaks(settings)));
    EXPECT_EQ(picture().changesSince(before),
              u"+ /Users/alex/.quorvane: folder\n"
              "+ /Users/alex/Library/Preferences/com.apple.CrashReporter.plist: file\n"
              "+ /Users/alex/Library/Preferences/com.apple.CrashReporter.plist DialogType: <string>none</string>\n"
              "+ /Users/alex/Library/Preferences/com.quorvane.app.plist: file\n"
              "+ /Users/alex/Library/Preferences/com.quorvane.app.plist QuorvaneChangedTweaks: <array>\n"
              "\t<string>crashReporter</string>\n"
              "\t<string>spotlight</string>\n"
              "</array>\n"
              "~ state spotlight/volumes/~1: \"enabled\" → \"disabled\"\n"
              "~ state spotlight/volumes/~1System~1Volumes~1Data: \"enabled\" → \"disabled\"\n"_s);
}

TEST_F(ProfileOnSimulatedMac, applyingTwiceChangesNothingTheSecondTime) {
    ASSERT_TRUE(apply(exampleProfile(u"live-set"_s)));
    const macsim::MacPicture once = picture();
    ASSERT_TRUE(apply(exampleProfile(u"live-set"_s)));
    EXPECT_EQ(picture().changesSince(once),
              u"~ state launchd/jobs/gui~1501/com.apple.notificationcenterui.agent/pid: 419 → 420\n"
              "~ state processes \"NotificationCenter\"/pid: 419 → 420\n"_s);
}

TEST_F(ProfileOnSimulatedMac, automaticBackupsAreVerifiedWhetherOrNotABackupRuns) {
    for (const bool isRunning : {false, true}) {
        host->mac().state().update("timeMachine", [&](macsim::Json& state) { state["running"] = isRunning; });
        EXPECT_TRUE(apply(exampleProfile(u"rehearsal"_s)));
        EXPECT_TRUE(log().endsWith(u"  [OK] Time Machine — enabled\n"
                                   "  [OK] Clean Reboot — app restoration enabled\n"
                                   "  [VERIFY] All settings confirmed on system.\n"
                                   "\n[PROFILE] Rehearsal applied and verified successfully.\n"_s))
            << log().toStdString();
    }
    EXPECT_TRUE(apply(exampleProfile(u"live-set"_s)));
    EXPECT_TRUE(log().contains(u"  [OK] Time Machine — disabled\n"
                               "  [INFO] A backup is running and will finish first.\n"_s));
}

TEST_F(ProfileOnStudioDesktop, aMotionSensorThatIsNotThereIsNothingToConfirm) {
    EXPECT_TRUE(apply(exampleProfile(u"live-set"_s)));
    EXPECT_TRUE(log().contains(u"  [OK] Motion Sensor — not present on this Mac\n"_s));
    EXPECT_EQ(system->lastApplyVerification()->failed, QList<ApplyVerificationResult::Item>());
}

TEST_F(ProfileOnOldMacBook, whatItHasIsSwitchedAndWhatItLacksIsLeftAloneThereAndBack) {
    const auto powerOfSensor = [this] { return shell(u"pmset -g custom"_s).count(u" sms                  0\n"_s); };
    EXPECT_TRUE(apply(exampleProfile(u"live-set"_s)));
    EXPECT_TRUE(log().contains(u"  [OK] Motion Sensor — disabled\n"
                               "  [OK] Spotlight — indexing off\n"
                               "  [OK] Time Machine — not set up on this Mac\n"_s));
    EXPECT_EQ(system->lastApplyVerification()->failed, QList<ApplyVerificationResult::Item>());
    EXPECT_EQ(powerOfSensor(), 2);
    EXPECT_TRUE(QCoro::waitFor(system->restoreDefault()).succeeded);
    EXPECT_EQ(powerOfSensor(), 0);
    EXPECT_FALSE(volume().exists(u"/Library/Preferences/com.apple.TimeMachine.plist"_s)) << "nothing has switched it";
    const auto match = QCoro::waitFor(system->scanCurrentSystem({}, {}));
    ASSERT_TRUE(match);
    EXPECT_EQ(match->name, u"Default"_s);
}

TEST_F(ProfileOnDjLaptop, withoutFullDiskAccessBackupsAreNeitherReadNorSwitchedAndTheRestIsApplied) {
    const macsim::MacPicture before = picture();
    EXPECT_TRUE(apply(exampleProfile(u"club-night-2023"_s)));
    EXPECT_TRUE(log().contains(u"  [MISSING] Time Machine — could not read status\n"
                               "  [INFO] Time Machine may not be read.\n"
                               "  [INFO] Allow Quorvane to read it in System Settings › Privacy & Security › Full Disk "
                               "Access.\n"_s));
    EXPECT_FALSE(picture().changesSince(before).contains(u"TimeMachine"_s));
    EXPECT_TRUE(log().contains(u"  [OK] Spotlight — indexing off\n"_s));
    EXPECT_TRUE(log().contains(u"  [OK] USB Power — sleep disabled\n"_s));
}

// ---- Tools that misbehave

TEST_F(ProfileOnSimulatedMac, aToolThatFailsLeavesTheOthersRunning) {
    start(R"([{"tool": "pmset", "arguments": "^-a", "status": 1, "error": "pmset: broken\n"}])");
    EXPECT_TRUE(apply(exampleProfile(u"live-set"_s)));
    EXPECT_TRUE(log().contains(u"  [MISSING] USB Power — expected 0 on AC Power\n"
                               "  [VERIFY] 1 setting(s) could not be confirmed.\n"_s));
    EXPECT_EQ(shell(u"mdutil -s /"_s), u"/:\n\tIndexing disabled.\n"_s);
}

TEST_F(ProfileOnSimulatedMac, aLastToolThatFailsFailsTheUndo) {
    start(R"([{"tool": "pmset", "arguments": "sms", "status": 1, "error": "pmset: broken\n"}])");
    EXPECT_FALSE(QCoro::waitFor(system->undoPerformanceTweaks()));
    EXPECT_TRUE(log().endsWith(u"  [ERROR] Restoration was cancelled or failed: pmset: broken\n"_s));
}

TEST_F(ProfileOnSimulatedMac, aMissingToolReadsAsUnknown) {
    ASSERT_TRUE(QFile::remove(macFolder() + u"/usr/bin/mdutil"_s));
    EXPECT_TRUE(apply(exampleProfile(u"live-set"_s)));
    EXPECT_TRUE(log().contains(u"  [MISSING] Spotlight — expected indexing off\n"_s));
    const CommandResult result = run({u"/usr/bin/mdutil"_s, u"-s"_s, u"/"_s});
    EXPECT_EQ(result.status, 127);
    EXPECT_EQ(result.standardError, u"env: /usr/bin/mdutil: No such file or directory\n"_s);
}

TEST_F(ProfileOnSimulatedMac, aMissingEnvironmentToolIsALaunchFailureAndNothingIsRecorded) {
    ASSERT_TRUE(QFile::remove(macFolder() + u"/usr/bin/env"_s));
    EXPECT_EQ(run({u"/usr/bin/mdutil"_s}).status, 1);
    EXPECT_FALSE(run({u"/usr/bin/mdutil"_s}).standardError.isEmpty());
}

TEST_F(ProfileOnSimulatedMac, outputThatIsNoUtf8CountsAsNoValue) {
    // "1" and two bytes that no UTF-8 text holds.
    start(R"([{"tool": "defaults", "arguments": "read NSGlobalDomain", "status": 0, "outputBase64": "Mf/+"}])");
    EXPECT_TRUE(apply(exampleProfile(u"live-set"_s)));
    EXPECT_TRUE(log().contains(u"  [MISSING] App Nap — expected disabled\n"_s));
}

TEST_F(ProfileOnSimulatedMac, aToolThatDiesIsNoSuccess) {
    start(R"([{"tool": "pmset", "arguments": "custom", "signal": 9}])");
    EXPECT_EQ(run({u"/usr/bin/pmset"_s, u"-g"_s, u"custom"_s}).status, 137);
    EXPECT_TRUE(apply(exampleProfile(u"live-set"_s)));
    EXPECT_TRUE(log().contains(u"  [MISSING] Motion Sensor — expected sms 0\n"_s));
}

TEST_F(ProfileOnSimulatedMac, aScriptEngineThatDiesIsAFailedRunWithoutAMessage) {
    start(R"([{"tool": "mdutil", "arguments": "-i", "signal": 9}])");
    EXPECT_FALSE(apply(exampleProfile(u"live-set"_s)));
    EXPECT_TRUE(log().contains(u"  [ERROR] Administrator authorization was cancelled or failed: Unknown error\n"_s));
}

TEST_F(ProfileOnSimulatedMac, aMissingScriptEngineIsAFailedRun) {
    ASSERT_TRUE(QFile::remove(macFolder() + u"/usr/libexec/scriptengine"_s));
    EXPECT_FALSE(apply(exampleProfile(u"live-set"_s)));
    EXPECT_TRUE(log().contains(u"  [ERROR] Administrator authorization was cancelled or failed: Unknown error\n"_s));
}

TEST_F(ProfileOnSimulatedMac, aFullDiskKeepsTheOldPreferences) {
    start(R"([{"tool": "defaults", "arguments": "write", "diskFull": true}])");
    const macsim::MacPicture before = picture();
    EXPECT_FALSE(QCoro::waitFor(system->applyPerformanceTweaks(PerformanceSettings::fullSelection())));
    const QString changed = picture().changesSince(before);
    EXPECT_FALSE(changed.contains(kPreferenceFolder + u"com.apple."_s)) << changed.toStdString();
    EXPECT_TRUE(log().contains(u"  [MISSING] App Nap — expected disabled\n"_s));
}

TEST_F(ProfileOnSimulatedMac, aHangingToolSuspendsTheFlowUntilTheProgramQuits) {
    start(R"([{"tool": "killall", "hang": true}])");
    const Ticks ticks;
    auto flow = system->applyProfile(exampleProfile(u"live-set"_s));
    bool succeeded = true;
    bool isDone = false;
    flow.then([&](bool value) {
        succeeded = value;
        isDone = true;
    });
    processEventsUntil([this] { return log().contains(u"automatic updates"_s); });
    const int ticksBefore = ticks.count();
    processEventsUntil([&] { return ticks.count() > ticksBefore + 50; });
    EXPECT_FALSE(isDone);
    host->shutDown();
    processEventsUntil([&isDone] { return isDone; });
    EXPECT_FALSE(succeeded);
    EXPECT_TRUE(authorization.prompts().isEmpty());
    EXPECT_TRUE(log().endsWith(u"[PROFILE] Live Set apply failed or was cancelled — check logs.\n"_s));
}

TEST_F(ProfileOnSimulatedMac, aHangingAdministratorToolSuspendsTheFlowUntilTheProgramQuits) {
    start(R"([{"tool": "tmutil", "arguments": "disable", "hang": true}])");
    const Ticks ticks;
    bool isDone = false;
    auto flow = system->applyProfile(exampleProfile(u"live-set"_s));
    flow.then([&isDone](bool) { isDone = true; });
    processEventsUntil([this] { return !authorization.prompts().isEmpty(); });
    const int ticksBefore = ticks.count();
    processEventsUntil([&] { return ticks.count() > ticksBefore + 50; });
    EXPECT_FALSE(isDone);
    host->shutDown();
    processEventsUntil([&isDone] { return isDone; });
    EXPECT_TRUE(log().contains(u"  [ERROR] Administrator authorization was cancelled or failed: Unknown error\n"_s));
}

TEST_F(ProfileOnSimulatedMac, eightMebibytesOnEachStreamPassThroughATool) {
    volume().write(u"/Users/alex/big"_s, QByteArray(8 << 20, 'x'));
    const Ticks ticks;
    const CommandResult result = run({u"/bin/sh"_s, u"-c"_s, u"cat big; cat big >&2"_s});
    EXPECT_EQ(result.standardOutput.size(), 8 << 20);
    EXPECT_EQ(result.standardError.size(), 8 << 20);
    EXPECT_GT(ticks.count(), 0);
}

TEST_F(ProfileOnSimulatedMac, theJournalTellsOfEveryCommandAndTheOnePrompt) {
    ASSERT_TRUE(apply(exampleProfile(u"live-set"_s)));
    QFile file(macFolder() + u"/private/var/db/simulator/journal.jsonl"_s);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    QStringList asRoot;
    int prompts = 0;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine();
        const macsim::Json record = macsim::Json::parse(line.cbegin(), line.cend());
        prompts += record.contains("authorization") ? 1 : 0;
        if (record.value("user", std::string()) == "root") {
            QStringList arguments;
            for (const macsim::Json& argument : record.at("arguments")) {
                arguments.append(QString::fromStdString(argument.get<std::string>()));
            }
            asRoot.append(arguments.join(u' '));
        }
    }
    EXPECT_EQ(prompts, 1);
    EXPECT_EQ(asRoot,
              QStringList({u"/usr/bin/pmset -a standby 0 disksleep 0 sleep 0 sms 0"_s, u"/usr/bin/mdutil -a -i off"_s,
                           u"/usr/bin/tmutil disable"_s,
                           u"/usr/bin/defaults write /Library/Preferences/com.apple.SoftwareUpdate "
                           "AutomaticDownload -bool NO"_s,
                           u"/usr/bin/defaults write /Library/Preferences/com.apple.SoftwareUpdate "
                           "AutomaticallyInstallMacOSUpdates -bool NO"_s,
                           u"/usr/bin/defaults write /Library/Preferences/com.apple.commerce AutoUpdate -bool NO"_s}));
}

} // namespace quorvane
