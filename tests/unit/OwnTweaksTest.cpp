#include "core/UserDefaultKeys.h"
#include "fakes/ReadingLines.h"
#include "fakes/RestoreSystem.h"
#include "profiles/ApplyPreviews.h"
#include "profiles/UnifiedProfile.h"

namespace quorvane {

namespace {

using Item = ApplyVerificationResult::Item;
using Unselected = SystemManager::UnselectedTweaks;
using Verify = SystemManager::VerifyAfterSync;

const QString kCenterAgent = u"gui/501/com.apple.notificationcenterui.agent"_s;
const QString kCenterRecord = u"/Users/alex/.quorvane/launchd-overrides.json"_s;

PerformanceSettings with(std::initializer_list<bool PerformanceSettings::*> tweaks) {
    PerformanceSettings settings;
    for (bool PerformanceSettings::*tweak : tweaks) {
        settings.*tweak = true;
    }
    return settings;
}

/// A Mac as it comes out of its box, but for automatic backups, which are made. Nobody has captured anything.
class OwnTweaks : public RestoreSystem {
protected:
    OwnTweaks() {
        for (const QString& line : reading::kPreferences) {
            commands.fail(line, 1);
        }
        commands.print(reading::kPower, "Battery Power:\n standby 1\n disksleep 10\n sleep 1\n"
                                        "AC Power:\n standby 1\n disksleep 10\n sleep 1\n sms 1\n");
        setIndexing("Indexing enabled. ");
        setAutomaticBackups(true);
    }
    void set(const QString& line, const QByteArray& value) { commands.print(line, value + '\n'); }
    void setIndexing(const QByteArray& state, const QByteArray& others = {}) {
        commands.print(reading::kSpotlight, reading::indexing(state));
        commands.print(reading::kSpotlightOfAll, reading::indexing(state) + others);
    }
    /// What a user may have chosen: Siri, AirDrop and indexing off, and a Mac that doesn't sleep.
    void setUsersOwn() {
        set(reading::kAssistant, "0");
        set(reading::kAirDrop, "1");
        commands.print(reading::kPower, "AC Power:\n standby 0\n disksleep 0\n sleep 0\n sms 0\n");
        setIndexing("Indexing disabled.");
        setAutomaticBackups(false);
        set(reading::kLogoutState, "0");
        set(reading::kLoginRelaunch, "0");
    }

    bool sync(const PerformanceSettings& settings, Verify verify = Verify::No) {
        return QCoro::waitFor(system.syncPerformanceTweaks(settings, verify, {}));
    }
    bool apply(const PerformanceSettings& settings) { return QCoro::waitFor(system.applyPerformanceTweaks(settings)); }
    bool undo() { return QCoro::waitFor(system.undoPerformanceTweaks()); }
    ApplyVerificationResult verified(const PerformanceSettings& settings, Unselected unselected) {
        return QCoro::waitFor(system.verifyAppliedSettings(settings, unselected));
    }
    QStringList changed() const { return defaults.stringArray(kQuorvaneChangedTweaks); }
    /// Of the only row with that name; empty where it's in neither list.
    QString detailOf(const QString& name, const ApplyVerificationResult& result) {
        for (const Item& item : result.verified + result.failed) {
            if (item.name == name) {
                return (result.verified.contains(item) ? u"OK "_s : u"-- "_s) + item.detail.value_or(QString());
            }
        }
        return {};
    }
    static QString lines(const QString& word, const QStringList& tweaks) {
        QString text;
        for (const QString& tweak : tweaks) {
            text += u"  [INFO] "_s + word + u": "_s + tweak + u'\n';
        }
        return text;
    }
    /// What was logged and changed since the last call, without what was only looked at.
    QString takeChanges() {
        QString text;
        for (const QString& line : takeTrace().split(u'\n')) {
            const bool isLook = line.startsWith(u"$> "_s) || line.startsWith(u"? "_s) || line.isEmpty();
            text += isLook ? QString() : line + u'\n';
        }
        return text;
    }

    const QString m_begin = u"Syncing performance tweaks to profile settings...\n"_s;
    const QString m_end = u"Performance Tweaks Synced! (Restart your Mac for full effect.)\n"_s;
    const QStringList m_groups{u"App Nap"_s,        u"Software Updates"_s, u"Notifications"_s, u"Siri"_s,
                               u"Crash Reporter"_s, u"UI Sounds"_s,        u"AirDrop"_s};
};

} // namespace

// ---- What a profile leaves off

TEST_F(OwnTweaks, whatHoldsAlreadyGetsNoCommandAndNobodyIsAsked) {
    EXPECT_TRUE(sync({}, Verify::Yes));
    const QString log = takeChanges();
    EXPECT_TRUE(log.startsWith(
        m_begin +
        lines(u"Already as it was"_s, m_groups + QStringList{u"USB Power"_s, u"Motion Sensor"_s, u"Spotlight"_s,
                                                             u"Time Machine"_s, u"Clean Reboot"_s}) +
        m_end))
        << log.toStdString();
    EXPECT_FALSE(log.contains(u"& do shell script"_s));
    EXPECT_EQ(system.lastApplyVerification()->verified.size(), 12);
}

TEST_F(OwnTweaks, whatNobodyHasCapturedAndTheProgramHasNotChangedIsLeftAsItIs) {
    setUsersOwn();
    EXPECT_TRUE(sync(with({&PerformanceSettings::crashReporter})));
    EXPECT_EQ(takeChanges(), m_begin + lines(u"Already as it was"_s, m_groups.mid(0, 3)) +
                                 lines(u"Left as it is"_s, {u"Siri"_s}) +
                                 u"$ /usr/bin/defaults write com.apple.CrashReporter DialogType -string none\n"
                                 "  [APPLIED] Disabled Crash Reporter.\n"_s +
                                 lines(u"Already as it was"_s, {u"UI Sounds"_s}) +
                                 lines(u"Left as it is"_s, {u"AirDrop"_s, u"USB Power"_s, u"Motion Sensor"_s,
                                                            u"Spotlight"_s, u"Time Machine"_s, u"Clean Reboot"_s}) +
                                 m_end);
    EXPECT_EQ(changed(), QStringList(u"crashReporter"_s));
    set(reading::kCrashReporter, "none");
    const ApplyVerificationResult result =
        verified(with({&PerformanceSettings::crashReporter}), Unselected::ExpectedRestored);
    EXPECT_EQ(result.failed, QList<Item>());
    EXPECT_EQ(detailOf(u"Siri"_s, result), QString()) << "neither verified nor failed";
    EXPECT_EQ(detailOf(u"Spotlight"_s, result), QString());
    EXPECT_EQ(detailOf(u"Clean Reboot"_s, result), QString());
}

TEST_F(OwnTweaks, whatTheProgramHasChangedGoesBackToStandard) {
    set(reading::kAssistant, "1");
    apply(with({&PerformanceSettings::siri, &PerformanceSettings::sms}));
    EXPECT_EQ(changed(), (QStringList{u"siri"_s, u"sms"_s}));
    setUsersOwn(); // of which Siri and the motion sensor are the program's
    takeTrace();
    EXPECT_EQ(detailOf(u"Siri"_s, verified({}, Unselected::ExpectedRestored)), u"-- expected enabled"_s);
    takeTrace();
    EXPECT_TRUE(sync({}));
    const QString log = takeChanges();
    EXPECT_TRUE(log.contains(u"$ /usr/bin/defaults delete com.apple.Siri Status\n"
                             "$ /usr/bin/defaults write com.apple.assistant.support \"Assistant Enabled\" -bool true\n"
                             "  [RESTORED] Re-enabled Siri.\n"_s));
    EXPECT_TRUE(log.contains(u"& do shell script \"pmset -a sms 1\" with prompt"_s)) << log.toStdString();
    EXPECT_TRUE(log.contains(lines(u"Left as it is"_s, {u"USB Power"_s, u"Spotlight"_s, u"Time Machine"_s})));
}

TEST_F(OwnTweaks, aChangeIsNotedBeforeItsFirstCommandAndStruckOnlyWhenItReadsAsRestored) {
    set(reading::kAssistant, "1");
    QStringList notedAtFirstWrite;
    commands.respond = [this, &notedAtFirstWrite](const QStringList& arguments) -> std::optional<CommandOutcome> {
        if (notedAtFirstWrite.isEmpty() && arguments.contains(u"write"_s)) {
            notedAtFirstWrite = changed();
        }
        return std::nullopt;
    };
    sync(with({&PerformanceSettings::siri}));
    EXPECT_EQ(notedAtFirstWrite, QStringList(u"siri"_s));
    set(reading::kAssistant, "0");
    set(reading::kSiri, "Disabled");
    sync({}, Verify::Yes);
    EXPECT_EQ(changed(), QStringList(u"siri"_s)) << "it still reads as switched off";
    set(reading::kAssistant, "1");
    commands.fail(reading::kSiri, 1);
    sync({}, Verify::Yes);
    EXPECT_EQ(changed(), QStringList());
}

TEST_F(OwnTweaks, whatIsInForceAlreadyIsNoChangeOfTheProgram) {
    setUsersOwn();
    sync(with({&PerformanceSettings::siri, &PerformanceSettings::airdrop, &PerformanceSettings::usbPower,
               &PerformanceSettings::spotlight, &PerformanceSettings::timeMachine}));
    EXPECT_EQ(changed(), QStringList());
}

// ---- With settings of the user's own

TEST_F(OwnTweaks, whatIsLeftOffGoesBackToWhatTheUserHadBySourceAndByVolume) {
    SystemSnapshot own = usersOwn();
    own.assistantEnabled = u"0"_s;
    own.siriStatus = u"Disabled"_s;
    own.automaticDownload.reset();
    own.uiSoundsEnabled.reset();
    own.systemAutomaticDownload = CapturedValue{u"1"_s};
    own.systemAutomaticInstall = CapturedValue{u"0"_s};
    own.systemStoreAutoUpdate = CapturedValue{};
    own.interfaceSoundsEnabled = CapturedValue{u"1"_s};
    own.pmsetStandby = u"1"_s;
    own.pmsetDisksleep = u"10"_s;
    own.pmsetSleep = u"5"_s;
    own.powerBySource = QMap<QString, PowerSettings>{{u"AC Power"_s, {u"1"_s, u"10"_s, u"0"_s, u"0"_s}},
                                                     {u"Battery Power"_s, {u"1"_s, u"10"_s, u"5"_s, std::nullopt}}};
    own.pmsetSms = u"0"_s;
    own.spotlightIndexingEnabled = true;
    own.spotlightByVolume = QMap<QString, QString>{
        {u"/"_s, u"on"_s}, {u"/System/Volumes/Data"_s, u"on"_s}, {u"/Volumes/Samples"_s, u"search off"_s}};
    own.timeMachineEnabled = false;
    save(own);
    set(reading::kSystemUpdateDownload, "0");
    set(reading::kSystemUpdateInstall, "0");
    set(reading::kSystemStoreUpdate, "0");
    set(reading::kAssistant, "1");
    set(reading::kSounds, "0");
    setIndexing("Indexing disabled.", "/Volumes/Samples:\n\tIndexing disabled.\n");
    takeTrace();
    EXPECT_TRUE(sync({}));
    const QString log = takeChanges();
    EXPECT_TRUE(log.startsWith(m_begin + lines(u"Already as it was"_s, {u"App Nap"_s}) +
                               u"$ /usr/bin/defaults delete com.apple.SoftwareUpdate AutomaticDownload\n"
                               "$ /usr/bin/defaults delete com.apple.SoftwareUpdate AutomaticCheckEnabled\n"
                               "$ /usr/bin/defaults delete com.apple.commerce AutoUpdate\n"
                               "  [RESTORED] Software update settings.\n"_s +
                               lines(u"Already as it was"_s, {u"Notifications"_s}) +
                               u"$ /usr/bin/defaults write com.apple.Siri Status -string Disabled\n"
                               "$ /usr/bin/defaults write com.apple.assistant.support \"Assistant Enabled\" -bool NO\n"
                               "  [RESTORED] Siri settings.\n"_s +
                               lines(u"Already as it was"_s, {u"Crash Reporter"_s}) +
                               u"$ /usr/bin/defaults delete com.apple.systemsound com.apple.sound.uiaudio.enabled\n"
                               "$ /usr/bin/defaults write NSGlobalDomain com.apple.sound.uiaudio.enabled -bool YES\n"
                               "  [RESTORED] UI sound settings.\n"_s +
                               lines(u"Already as it was"_s, {u"AirDrop"_s})))
        << log.toStdString();
    EXPECT_TRUE(log.contains(
        u"& do shell script \"pmset -c standby 1 disksleep 10 sleep 0 ; "
        "pmset -b standby 1 disksleep 10 sleep 5 ; pmset -c sms 0 ; mdutil -i on '/' || true ; "
        "mdutil -i on '/System/Volumes/Data' || true ; mdutil -d '/Volumes/Samples' || true ; tmutil disable || true ; "
        "/usr/bin/defaults write /Library/Preferences/com.apple.SoftwareUpdate AutomaticDownload -bool YES || true ; "
        "/usr/bin/defaults delete /Library/Preferences/com.apple.commerce AutoUpdate || true\" with prompt"_s))
        << log.toStdString();
}

TEST_F(OwnTweaks, theRowsGoByTheUsersOwnSettings) {
    SystemSnapshot own = usersOwn();
    own.assistantEnabled = u"0"_s;
    own.pmsetSleep = u"0"_s;
    own.pmsetDisksleep = u"0"_s;
    own.pmsetStandby = u"0"_s;
    own.powerBySource = QMap<QString, PowerSettings>{{u"AC Power"_s, {u"0"_s, u"0"_s, u"0"_s, std::nullopt}}};
    own.spotlightIndexingEnabled = false;
    own.spotlightByVolume = QMap<QString, QString>{{u"/"_s, u"off"_s}, {u"/System/Volumes/Data"_s, u"off"_s}};
    own.talLogoutSavesState = u"0"_s;
    own.loginwindowLaunchesRelaunchApps = u"0"_s;
    save(own);
    ApplyVerificationResult result = verified({}, Unselected::ExpectedRestored);
    EXPECT_EQ(detailOf(u"Siri"_s, result), u"-- expected your own setting"_s) << "it isn't set";
    EXPECT_EQ(detailOf(u"USB Power"_s, result), u"-- expected your own setting"_s);
    EXPECT_EQ(detailOf(u"Spotlight"_s, result), u"-- expected your own setting"_s);
    EXPECT_EQ(detailOf(u"Clean Reboot"_s, result), u"-- expected your own setting"_s);
    EXPECT_EQ(detailOf(u"AirDrop"_s, result), u"OK enabled"_s);
    setUsersOwn();
    result = verified({}, Unselected::ExpectedRestored);
    EXPECT_EQ(detailOf(u"Siri"_s, result), u"OK your own setting"_s);
    EXPECT_EQ(detailOf(u"USB Power"_s, result), u"OK your own setting"_s);
    EXPECT_EQ(detailOf(u"Spotlight"_s, result), u"OK your own setting"_s);
    EXPECT_EQ(detailOf(u"Clean Reboot"_s, result), u"OK your own setting"_s);
    EXPECT_EQ(detailOf(u"AirDrop"_s, result), u"-- expected enabled"_s) << "the user had it on";
}

TEST_F(OwnTweaks, aBaselineAtHomeIsTheUsersOwnAndAnotherMacsIsNot) {
    set(reading::kAssistant, "1");
    SystemSnapshot own = usersOwn();
    own.assistantEnabled = u"0"_s;
    saveBaseline(kHomeBaseline, own, u"Studio"_s, machine.id);
    EXPECT_EQ(detailOf(u"Siri"_s, verified({}, Unselected::ExpectedRestored)), u"-- expected your own setting"_s);
    saveBaseline(kHomeBaseline, own, u"Tour"_s, u"4C1A9B3E-7D42-5F60-8E21-4A6B0C9D3E17"_s);
    EXPECT_EQ(detailOf(u"Siri"_s, verified({}, Unselected::ExpectedRestored)), u"OK enabled"_s);
}

// ---- Notification Center in launchd

TEST_F(OwnTweaks, notificationCentersOverrideIsWrittenDownBeforeItIsMade) {
    QByteArray recorded;
    commands.respond = [this, &recorded](const QStringList& arguments) -> std::optional<CommandOutcome> {
        if (arguments.contains(u"unload"_s)) {
            recorded = files.exists(kCenterRecord) ? files.read(kCenterRecord) : QByteArray();
            commands.launchd.overrides.insert(kCenterAgent, true); // as a macOS that keeps it
        }
        return std::nullopt;
    };
    apply(with({&PerformanceSettings::notifications}));
    EXPECT_TRUE(recorded.contains("com.apple.notificationcenterui.agent"));
    EXPECT_TRUE(files.read(kCenterRecord).contains("com.apple.notificationcenterui.agent"));
}

TEST_F(OwnTweaks, anOverrideThatMacOSDidNotKeepIsNotWrittenDown) {
    apply(with({&PerformanceSettings::notifications}));
    EXPECT_FALSE(files.exists(kCenterRecord) && files.read(kCenterRecord).contains("notificationcenterui"));
}

TEST_F(OwnTweaks, aFullDiskKeepsTheAgentFromBeingSwitchedOff) {
    files.failOn(MemoryFileManager::Operation::Write, kCenterRecord);
    apply(with({&PerformanceSettings::notifications}));
    EXPECT_TRUE(trace.filter(u"unload"_s).isEmpty());
    EXPECT_FALSE(trace.filter(u"Could not read or write the record of what is switched off"_s).isEmpty());
}

TEST_F(OwnTweaks, eachWayBackEnablesNotificationCenterBeforeItLoadsIt) {
    const QString enabling =
        u"$ /bin/launchctl enable gui/501/com.apple.notificationcenterui.agent\n"
        "$ /bin/launchctl load -w /System/Library/LaunchAgents/com.apple.notificationcenterui.plist\n"
        "$ /usr/bin/open -a NotificationCenter\n"_s;
    const auto switchOff = [this] {
        commands.launchd.overrides.insert(kCenterAgent, true);
        files.addFile(kCenterRecord, R"([{"label": "com.apple.notificationcenterui.agent", "domain": "user"}])");
    };
    switchOff();
    EXPECT_EQ(detailOf(u"Notifications"_s, verified({}, Unselected::ExpectedRestored)), u"-- expected enabled"_s);
    EXPECT_TRUE(sync({}));
    EXPECT_TRUE(takeChanges().contains(enabling));
    EXPECT_FALSE(commands.launchd.isOff(kCenterAgent));
    EXPECT_FALSE(files.exists(kCenterRecord) && files.read(kCenterRecord).contains("notificationcenterui"));
    switchOff();
    EXPECT_TRUE(undo());
    EXPECT_TRUE(takeChanges().contains(enabling));
    switchOff();
    EXPECT_TRUE(QCoro::waitFor(system.restoreFromSnapshot(usersOwn())));
    EXPECT_TRUE(takeChanges().contains(enabling));
    EXPECT_EQ(detailOf(u"Notifications"_s, verified({}, Unselected::ExpectedRestored)), u"OK enabled"_s);
}

TEST_F(OwnTweaks, anOverrideThatStaysFailsTheRowAndTheWayBack) {
    const QString error = u"  [ERROR] Notification Center is still switched off.\n"_s;
    commands.launchd.overrides.insert(kCenterAgent, true);
    commands.launchd.stubborn.insert(kCenterAgent);
    files.addFile(kCenterRecord, R"([{"label": "com.apple.notificationcenterui.agent", "domain": "user"}])");
    EXPECT_FALSE(sync({}, Verify::Yes));
    EXPECT_TRUE(takeChanges().contains(error));
    EXPECT_EQ(detailOf(u"Notifications"_s, *system.lastApplyVerification()), u"-- expected enabled"_s);
    EXPECT_FALSE(undo());
    EXPECT_TRUE(takeChanges().contains(error));
    EXPECT_FALSE(QCoro::waitFor(system.restoreFromSnapshot(usersOwn())));
    EXPECT_TRUE(takeChanges().contains(error));
    EXPECT_TRUE(files.read(kCenterRecord).contains("notificationcenterui")) << "for the next way back";
}

TEST_F(OwnTweaks, anOverrideOfTheUsersOwnIsLeftAlone) {
    commands.launchd.overrides.insert(kCenterAgent, true);
    sync({}, Verify::Yes);
    undo();
    EXPECT_TRUE(trace.filter(u"launchctl enable"_s).isEmpty());
    EXPECT_TRUE(commands.launchd.isOff(kCenterAgent));
}

// ---- Managed Macs

TEST_F(OwnTweaks, whatAnOrganizationHasSetDecidesItsRowAndGetsNoCommand) {
    const QString folder = u"/Library/Managed Preferences/"_s;
    propertyLists.lists.insert(folder + u"com.apple.NetworkBrowser.plist"_s, {{u"DisableAirDrop"_s, true}});
    propertyLists.lists.insert(folder + u"alex/com.apple.assistant.support.plist"_s, {{u"Assistant Enabled"_s, true}});
    propertyLists.lists.insert(folder + u"com.apple.SoftwareUpdate.plist"_s,
                               {{u"AutomaticDownload"_s, true}, {u"AutomaticallyInstallMacOSUpdates"_s, true}});
    const PerformanceSettings settings =
        with({&PerformanceSettings::airdrop, &PerformanceSettings::siri, &PerformanceSettings::updates});
    EXPECT_FALSE(sync(settings, Verify::Yes));
    const QString log = takeChanges();
    EXPECT_TRUE(log.contains(lines(u"Set by your organization"_s, {u"Siri"_s})));
    EXPECT_TRUE(log.contains(lines(u"Set by your organization"_s, {u"AirDrop"_s})));
    EXPECT_FALSE(log.contains(u"NetworkBrowser"_s));
    EXPECT_FALSE(log.contains(u"assistant.support"_s));
    EXPECT_TRUE(log.contains(u"do shell script \"/usr/bin/defaults write /Library/Preferences/com.apple.commerce "
                             "AutoUpdate -bool NO || true\" with prompt"_s))
        << log.toStdString();
    const ApplyVerificationResult result = *system.lastApplyVerification();
    EXPECT_EQ(detailOf(u"AirDrop"_s, result), u"OK set by your organization"_s);
    EXPECT_EQ(detailOf(u"Siri"_s, result), u"-- set by your organization"_s);
    EXPECT_EQ(detailOf(u"Software Updates"_s, result), u"-- set by your organization"_s);
    EXPECT_FALSE(changed().contains(u"siri"_s));
    EXPECT_EQ(detailOf(u"Siri"_s, verified({}, Unselected::ExpectedRestored)), u"OK set by your organization"_s);
    takeTrace();
    undo();
    EXPECT_FALSE(takeChanges().contains(u"NetworkBrowser"_s));
}

// ---- Spotlight after an order

TEST_F(OwnTweaks, indexingIsReadAgainForFiveSecondsAfterTheOrder) {
    setIndexing("Indexing enabled. ");
    EXPECT_FALSE(apply(with({&PerformanceSettings::spotlight})));
    EXPECT_EQ(clock.waits, QList<std::chrono::milliseconds>(5, std::chrono::seconds(1)));
    EXPECT_EQ(detailOf(u"Spotlight"_s, *system.lastApplyVerification()), u"-- expected indexing off"_s);
    clock.waits.clear();
    clock.whenAskedFor = [this](std::chrono::milliseconds) {
        const bool isSecond = clock.waits.size() == 2;
        setIndexing(isSecond ? "Indexing disabled."
                             : "Error: unexpected indexing state. kMDConfigSearchLevelTransitioning");
    };
    EXPECT_TRUE(apply(with({&PerformanceSettings::spotlight})));
    EXPECT_EQ(clock.waits.size(), 2);
    clock.waits.clear();
    clock.whenAskedFor = nullptr;
    setIndexing("Indexing enabled. ");
    verified(with({&PerformanceSettings::spotlight}), Unselected::Ignored);
    EXPECT_TRUE(clock.waits.isEmpty()) << "nobody has just given an order";
}

TEST_F(OwnTweaks, aVolumeOfTheFilesThatRefusesIsNamed) {
    commands.print(reading::kSpotlight, "/:\n\tIndexing disabled.\n/System/Volumes/Data:\n\tIndexing enabled. \n");
    EXPECT_FALSE(apply(with({&PerformanceSettings::spotlight})));
    EXPECT_TRUE(trace.contains(u"  [MISSING] Spotlight — still indexing your files (macOS refused)"_s));
}

// ---- Sleep by source

TEST_F(OwnTweaks, aSourceOnWhichTheMacMaySleepIsNamed) {
    const auto detail = [this] {
        return detailOf(u"USB Power"_s, verified(with({&PerformanceSettings::usbPower}), Unselected::Ignored));
    };
    EXPECT_EQ(detail(), u"-- expected 0 on AC Power"_s);
    commands.print(reading::kPower, "Battery Power:\n sleep 1\n disksleep 0\nAC Power:\n sleep 0\n disksleep 0\n");
    EXPECT_EQ(detail(), u"-- expected 0 on Battery Power"_s);
    commands.print(reading::kPower, "Battery Power:\n sleep 0\n disksleep 0\nAC Power:\n sleep 0\n disksleep 0\n");
    EXPECT_EQ(detail(), u"OK sleep disabled"_s);
}

// ---- The review

TEST_F(OwnTweaks, theReviewSaysWhereTheOtherTweaksGo) {
    UnifiedProfile profile;
    profile.id = QUuid::createUuid();
    profile.settings.siri = true;
    EXPECT_TRUE(QCoro::waitFor(system.previewProfile(profile)).hasOwnSettings) << "captured before the first change";
    save(usersOwn());
    EXPECT_TRUE(QCoro::waitFor(system.previewProfile(profile)).hasOwnSettings);
}

} // namespace quorvane
