#include "fakes/ReadingLines.h"
#include "fakes/ScriptedLoginItems.h"

#include "core/UserDefaultKeys.h"
#include "tweaks/ValueTests.h"

#include <random>

namespace quorvane {

namespace {

using Unselected = SystemManager::UnselectedTweaks;
using Item = ApplyVerificationResult::Item;

const QString kDoNotDisturb = u"-currentHost read "
                              "/Users/alex/Library/Preferences/ByHost/com.apple.notificationcenterui doNotDisturb"_s;

/// One tweak, the values that the Mac shows, and what the check makes of them.
struct Case {
    bool PerformanceSettings::*setting;
    bool isSelected;
    QStringList values; ///< "read D K=value"; a read that isn't named finds no key
    bool holds;
    QString name;
    QString detail;
};

/// Runs the single check of a tweak on a Mac where every preference that isn't given is unset.
class Verification : public ScriptedSystem {
protected:
    Verification() { noteEveryTweakChanged(); }

    ApplyVerificationResult verify(const PerformanceSettings& settings, Unselected unselected) {
        return QCoro::waitFor(system.verifyAppliedSettings(settings, unselected));
    }

    void unsetEverything() {
        setBackupDestination(true);
        for (const QString& line : reading::kPreferences) {
            commands.fail(line, 1);
        }
    }

    /// "read D K=value", "pmset=standby 0|sleep 0", "mdutil=…", "AutoBackup=…"; a value of "!" is a tool that fails.
    void answer(const QString& value) {
        const QString key = value.section(u'=', 0, 0);
        const QString text = value.section(u'=', 1);
        QString line = u"/usr/bin/defaults "_s + key;
        if (key == u"pmset"_s) {
            line = reading::kPower;
        } else if (key == u"mdutil"_s) {
            line = reading::kSpotlight;
        } else if (key == u"AutoBackup"_s) {
            line = reading::kTimeMachine;
        } else if (key == u"destinationinfo"_s) {
            line = reading::kBackupDestination;
        }
        if (text == u"!"_s) {
            commands.fail(line, 1);
        } else if (key == u"mdutil"_s) {
            commands.print(line, reading::indexing(text.toUtf8()));
        } else {
            commands.print(line, QString(text).replace(u'|', u'\n').toUtf8() + '\n');
        }
    }

    Item onlyItemNamed(const QList<Item>& items, const QString& name) {
        QList<Item> found;
        std::copy_if(items.begin(), items.end(), std::back_inserter(found),
                     [&name](const Item& item) { return item.name == name; });
        EXPECT_EQ(found.size(), 1) << name.toStdString();
        return found.isEmpty() ? Item{} : found.first();
    }

    void check(const Case& expected) {
        unsetEverything();
        for (const QString& value : expected.values) {
            answer(value);
        }
        PerformanceSettings settings;
        settings.*expected.setting = expected.isSelected;
        const auto result = verify(settings, expected.isSelected ? Unselected::Ignored : Unselected::ExpectedRestored);
        SCOPED_TRACE(expected.name.toStdString() + (expected.isSelected ? " selected: " : " unselected: ") +
                     expected.values.join(u", "_s).toStdString());
        const Item item = onlyItemNamed(expected.holds ? result.verified : result.failed, expected.name);
        EXPECT_EQ(item.detail.value_or(u"none"_s), expected.detail);
    }
};

using S = PerformanceSettings;

/// Neither a stored setting nor a word of a destination.
const QStringList kNoBackupsKnown{u"AutoBackup=!"_s, u"destinationinfo=!"_s};

/// The row of Time Machine alone.
class TimeMachineRow : public Verification {
protected:
    ApplyVerificationResult row(bool isSelected) {
        PerformanceSettings settings;
        settings.timeMachine = isSelected;
        ApplyVerificationResult result =
            verify(settings, isSelected ? Unselected::Ignored : Unselected::ExpectedRestored);
        const auto isOther = [](const Item& item) { return item.name != u"Time Machine"; };
        result.verified.removeIf(isOther);
        result.failed.removeIf(isOther);
        return result;
    }
};

/// A check of a clean reboot on a Mac where it was applied.
class CleanRebootVerification : public ScriptedStartup {
protected:
    CleanRebootVerification() {
        for (const QString& line : reading::kCleanReboot) {
            commands.print(line, "0\n");
        }
    }

    QStringList verify(const CleanReboot& cleanReboot, Unselected unselected = Unselected::Ignored) {
        PerformanceSettings settings;
        settings.cleanReboot = true;
        const auto result = QCoro::waitFor(system.verifyAppliedSettings(settings, unselected, cleanReboot));
        QStringList lines;
        for (const Item& item : result.verified) {
            lines.append(u"OK "_s + item.name + u": "_s + item.detail.value_or(QString()));
        }
        for (const Item& item : result.failed) {
            lines.append(u"-- "_s + item.name + u": "_s + item.detail.value_or(QString()));
        }
        return lines;
    }
    QStringList verifyStartup(const StartupConfiguration& startup, const QSet<QString>& permittedNames = {}) {
        return verify({permittedNames, startup, {}}).mid(2);
    }
};

const QStringList kNoRestoration{u"OK Clean Reboot: app restoration disabled"_s,
                                 u"OK Clean Reboot windows: window restoration disabled"_s};

} // namespace

TEST_F(Verification, eachRowDecidesByItsOwnRule) {
    const QString systems = u"read /Library/Preferences/com.apple."_s;
    const QString download = systems + u"SoftwareUpdate AutomaticDownload="_s;
    const QString install = systems + u"SoftwareUpdate AutomaticallyInstallMacOSUpdates="_s;
    const QString store = systems + u"commerce AutoUpdate="_s;
    const QStringList usersOff{u"read com.apple.SoftwareUpdate AutomaticDownload=0"_s,
                               u"read com.apple.SoftwareUpdate AutomaticCheckEnabled=0"_s,
                               u"read com.apple.commerce AutoUpdate=0"_s};
    const QString assistant = u"read com.apple.assistant.support \"Assistant Enabled\"="_s;
    const QString oldSounds = u"read com.apple.systemsound com.apple.sound.uiaudio.enabled="_s;
    const QString sounds = u"read NSGlobalDomain com.apple.sound.uiaudio.enabled="_s;
    const QString awake = u"pmset=standby 0|disksleep 0|sleep 0"_s;
    const QList<Case> cases{
        {&S::appNap, true, {u"read NSGlobalDomain NSAppSleepDisabled=YES"_s}, true, u"App Nap"_s, u"disabled"_s},
        {&S::appNap, true, {}, false, u"App Nap"_s, u"expected disabled"_s},
        {&S::appNap, false, {}, true, u"App Nap"_s, u"enabled"_s},
        {&S::appNap, false, {u"read NSGlobalDomain NSAppSleepDisabled=0"_s}, true, u"App Nap"_s, u"enabled"_s},
        {&S::appNap,
         false,
         {u"read NSGlobalDomain NSAppSleepDisabled=1"_s},
         false,
         u"App Nap"_s,
         u"expected enabled"_s},
        {&S::updates, true, {}, false, u"Software Updates"_s, u"expected disabled"_s},
        {&S::updates, true, usersOff, false, u"Software Updates"_s, u"expected disabled"_s}, // nobody reads the user's
        {&S::updates, false, usersOff, true, u"Software Updates"_s, u"enabled"_s},
        {&S::updates,
         true,
         {download + u'0', install + u'0', store + u'0'},
         true,
         u"Software Updates"_s,
         u"disabled"_s},
        {&S::updates, true, {install + u'0', store + u'0'}, false, u"Software Updates"_s, u"expected disabled"_s},
        {&S::updates, true, {download + u'0', store + u'0'}, false, u"Software Updates"_s, u"expected disabled"_s},
        {&S::updates, true, {download + u'0', install + u'0'}, false, u"Software Updates"_s, u"expected disabled"_s},
        {&S::updates, false, {}, true, u"Software Updates"_s, u"enabled"_s},
        {&S::updates,
         false,
         {download + u'1', install + u'1', store + u'1'},
         true,
         u"Software Updates"_s,
         u"enabled"_s},
        {&S::updates, false, {store + u'0'}, false, u"Software Updates"_s, u"expected enabled"_s},
        {&S::updates, false, {install + u'0'}, false, u"Software Updates"_s, u"expected enabled"_s},
        {&S::updates, false, {download + u'0'}, false, u"Software Updates"_s, u"expected enabled"_s},
        {&S::notifications, true, {kDoNotDisturb + u"=1"_s}, true, u"Notifications"_s, u"suppressed"_s},
        {&S::notifications, true, {}, false, u"Notifications"_s, u"expected suppressed"_s},
        {&S::notifications, false, {}, true, u"Notifications"_s, u"enabled"_s},
        {&S::notifications, false, {kDoNotDisturb + u"=1"_s}, false, u"Notifications"_s, u"expected enabled"_s},
        {&S::siri,
         true,
         {u"read com.apple.Siri Status=Disabled"_s, assistant + u'1'},
         false,
         u"Siri"_s,
         u"expected disabled"_s},
        {&S::siri, true, {assistant + u'0'}, true, u"Siri"_s, u"disabled"_s},
        {&S::siri, true, {}, true, u"Siri"_s, u"disabled"_s},
        {&S::siri, true, {assistant + u'1'}, false, u"Siri"_s, u"expected disabled"_s},
        {&S::siri, false, {}, true, u"Siri"_s, u"enabled"_s},
        {&S::siri, false, {assistant + u'0'}, false, u"Siri"_s, u"expected enabled"_s},
        {&S::crashReporter,
         true,
         {u"read com.apple.CrashReporter DialogType=None"_s},
         true,
         u"Crash Reporter"_s,
         u"disabled"_s},
        {&S::crashReporter, true, {}, false, u"Crash Reporter"_s, u"expected disabled"_s},
        {&S::crashReporter,
         false,
         {u"read com.apple.CrashReporter DialogType=server"_s},
         true,
         u"Crash Reporter"_s,
         u"enabled"_s},
        {&S::crashReporter,
         false,
         {u"read com.apple.CrashReporter DialogType=none"_s},
         false,
         u"Crash Reporter"_s,
         u"expected enabled"_s},
        {&S::uiSounds, true, {}, false, u"UI Sounds"_s, u"expected muted"_s},
        {&S::uiSounds, true, {oldSounds + u'0'}, false, u"UI Sounds"_s, u"expected muted"_s},
        {&S::uiSounds, true, {sounds + u'0'}, true, u"UI Sounds"_s, u"muted"_s},
        {&S::uiSounds, true, {sounds + u'1'}, false, u"UI Sounds"_s, u"expected muted"_s},
        {&S::uiSounds, false, {sounds + u'1'}, true, u"UI Sounds"_s, u"enabled"_s},
        {&S::uiSounds, false, {}, true, u"UI Sounds"_s, u"enabled"_s},
        {&S::uiSounds, false, {sounds + u'0'}, false, u"UI Sounds"_s, u"expected enabled"_s},
        {&S::airdrop,
         true,
         {u"read com.apple.NetworkBrowser DisableAirDrop=true"_s},
         true,
         u"AirDrop"_s,
         u"disabled"_s},
        {&S::airdrop, true, {}, false, u"AirDrop"_s, u"expected disabled"_s},
        {&S::airdrop, false, {}, true, u"AirDrop"_s, u"enabled"_s},
        {&S::airdrop,
         false,
         {u"read com.apple.NetworkBrowser DisableAirDrop=1"_s},
         false,
         u"AirDrop"_s,
         u"expected enabled"_s},
        {&S::usbPower, true, {awake}, true, u"USB Power"_s, u"sleep disabled"_s},
        {&S::usbPower, true, {u"pmset=standby 0|sleep 0"_s}, true, u"USB Power"_s, u"sleep disabled"_s},
        {&S::usbPower, true, {u"pmset=standbydelayhigh 86400|sleep 0"_s}, true, u"USB Power"_s, u"sleep disabled"_s},
        {&S::usbPower,
         true,
         {u"pmset=disksleep 10|sleep 0"_s},
         false,
         u"USB Power"_s,
         u"expected standby/disk/sleep at 0"_s},
        {&S::usbPower, true, {u"pmset=womp 1"_s}, false, u"USB Power"_s, u"expected standby/disk/sleep at 0"_s},
        {&S::usbPower, false, {u"pmset=womp 1"_s}, true, u"USB Power"_s, u"standard sleep"_s},
        {&S::usbPower, false, {u"pmset=sleep 0"_s}, false, u"USB Power"_s, u"expected standard sleep values"_s},
        {&S::usbPower,
         true,
         {u"pmset=standby 1|disksleep 0|sleep 0"_s},
         false,
         u"USB Power"_s,
         u"expected standby/disk/sleep at 0"_s},
        {&S::usbPower,
         true,
         {u"pmset=standby 0|disksleep 10|sleep 0"_s},
         false,
         u"USB Power"_s,
         u"expected standby/disk/sleep at 0"_s},
        {&S::usbPower,
         true,
         {u"pmset=standby 0|disksleep 0|sleep 1"_s},
         false,
         u"USB Power"_s,
         u"expected standby/disk/sleep at 0"_s},
        {&S::usbPower, true, {u"pmset=!"_s}, false, u"USB Power"_s, u"expected standby/disk/sleep at 0"_s},
        {&S::usbPower, false, {u"pmset=!"_s}, true, u"USB Power"_s, u"standard sleep"_s},
        {&S::usbPower, false, {u"pmset=standby 1|disksleep 0|sleep 0"_s}, true, u"USB Power"_s, u"standard sleep"_s},
        {&S::usbPower, false, {u"pmset=standby 0|disksleep 0|sleep 1"_s}, true, u"USB Power"_s, u"standard sleep"_s},
        {&S::usbPower, false, {awake}, false, u"USB Power"_s, u"expected standard sleep values"_s},
        {&S::sms, true, {u"pmset=sms 0"_s}, true, u"Motion Sensor"_s, u"disabled"_s},
        {&S::sms, true, {u"pmset=sms 1"_s}, false, u"Motion Sensor"_s, u"expected sms 0"_s},
        {&S::sms, true, {u"pmset=sleep 1"_s}, true, u"Motion Sensor"_s, u"not present on this Mac"_s},
        {&S::sms, false, {u"pmset=sleep 1"_s}, true, u"Motion Sensor"_s, u"not present on this Mac"_s},
        {&S::sms, true, {u"pmset=!"_s}, false, u"Motion Sensor"_s, u"expected sms 0"_s},
        {&S::sms, false, {u"pmset=sms 1"_s}, true, u"Motion Sensor"_s, u"enabled"_s},
        {&S::sms, false, {u"pmset=sms 0"_s}, false, u"Motion Sensor"_s, u"expected sms 1"_s},
        {&S::sms, false, {u"pmset=!"_s}, false, u"Motion Sensor"_s, u"could not read pmset"_s},
        {&S::spotlight, true, {u"mdutil=Indexing disabled."_s}, true, u"Spotlight"_s, u"indexing off"_s},
        {&S::spotlight, true, {u"mdutil=INDEXING ENABLED."_s}, false, u"Spotlight"_s, u"expected indexing off"_s},
        {&S::spotlight, true, {u"mdutil=!"_s}, false, u"Spotlight"_s, u"expected indexing off"_s},
        {&S::spotlight, false, {u"mdutil=Indexing enabled."_s}, true, u"Spotlight"_s, u"indexing on"_s},
        {&S::spotlight, false, {u"mdutil=Indexing disabled."_s}, false, u"Spotlight"_s, u"expected indexing on"_s},
        {&S::spotlight, true, {u"mdutil=No index."_s}, false, u"Spotlight"_s, u"expected indexing off"_s},
        {&S::spotlight, false, {u"mdutil=No index."_s}, false, u"Spotlight"_s, u"could not read status"_s},
        {&S::spotlight, false, {u"mdutil=!"_s}, false, u"Spotlight"_s, u"could not read status"_s},
        {&S::timeMachine, true, {u"AutoBackup=0"_s}, true, u"Time Machine"_s, u"disabled"_s},
        {&S::timeMachine, true, {u"AutoBackup=1"_s}, false, u"Time Machine"_s, u"expected disabled"_s},
        {&S::timeMachine, true, {u"AutoBackup=!"_s}, true, u"Time Machine"_s, u"disabled"_s},
        {&S::timeMachine, true, kNoBackupsKnown, false, u"Time Machine"_s, u"expected disabled"_s},
        {&S::timeMachine, false, {u"AutoBackup=1"_s}, true, u"Time Machine"_s, u"enabled"_s},
        {&S::timeMachine, false, {u"AutoBackup=0"_s}, false, u"Time Machine"_s, u"expected enabled"_s},
        {&S::timeMachine, false, {u"AutoBackup=!"_s}, false, u"Time Machine"_s, u"expected enabled"_s},
        {&S::timeMachine, false, kNoBackupsKnown, false, u"Time Machine"_s, u"could not read status"_s},
    };
    for (const Case& expected : cases) {
        check(expected);
    }
}

TEST_F(Verification, unselectedSpotlightIsReadASecondTimeWhenItFails) {
    unsetEverything();
    verify({}, Unselected::ExpectedRestored);
    EXPECT_EQ(trace.count(u"$> "_s + reading::kSpotlight), 2);
    EXPECT_EQ(trace.count(u"$> "_s + reading::kTimeMachine), 1);
}

// ---- Time Machine

TEST_F(TimeMachineRow, withoutADestinationItHoldsBothWaysWhateverElseIsKnown) {
    setBackupDestination(false);
    const Item item{u"Time Machine"_s, u"not set up on this Mac"_s, false};
    const auto expectAbsent = [&] {
        for (const bool isSelected : {true, false}) {
            EXPECT_EQ(row(isSelected), (ApplyVerificationResult{{item}, {}}));
        }
    };
    commands.fail(reading::kTimeMachine, 1);
    expectAbsent();
    makeBackupsUnreadable();
    expectAbsent();
    files.removeAsRoot(kTimeMachineSettings);
    expectAbsent();
}

TEST_F(TimeMachineRow, whatMayNotBeReadFailsOnlyWhereItWasChosenOrSwitchedOffByTheProgram) {
    defaults.remove(kQuorvaneChangedTweaks);
    makeBackupsUnreadable();
    const ApplyVerificationResult failed{{}, {{u"Time Machine"_s, u"could not read status"_s}}, true};
    EXPECT_EQ(row(true), failed);
    EXPECT_EQ(row(false), (ApplyVerificationResult{{}, {}, true}));
    defaults.setBoolean(kQuorvaneSwitchedBackupsOff, true);
    EXPECT_EQ(row(true), failed);
    EXPECT_EQ(row(false), failed);
}

TEST_F(TimeMachineRow, aBackupThatRunsIsNotedBehindAVerifiedOff) {
    const QString note = u"A backup is running and will finish first."_s;
    commands.print(reading::kBackupStatus, "    Running = 1;\n");
    EXPECT_EQ(row(true).verified, QList<Item>({{u"Time Machine"_s, u"disabled"_s, true, note}}));
    EXPECT_EQ(takeTrace(), reading::traced({reading::kPower, reading::kTimeMachine, reading::kBackupStatus}));
    commands.print(reading::kBackupStatus, "    Running = 0;\n");
    EXPECT_EQ(row(true).verified, QList<Item>({{u"Time Machine"_s, u"disabled"_s}}));
    for (const CommandOutcome& outcome : ScriptedCommandLauncher::unanswered()) {
        commands.answer(reading::kBackupStatus, outcome);
        EXPECT_EQ(row(true).verified, QList<Item>({{u"Time Machine"_s, u"disabled"_s}}));
    }
}

TEST_F(TimeMachineRow, theStatusIsNotAskedForWhereBackupsAreOnOrTheRowWasNotChosen) {
    setAutomaticBackups(true);
    row(true);
    EXPECT_EQ(takeTrace(), reading::traced({reading::kPower, reading::kTimeMachine}));
    setAutomaticBackups(false);
    row(false);
    EXPECT_FALSE(trace.contains(u"$> "_s + reading::kBackupStatus));
}

// ---- Clean reboot in the two-way form

TEST_F(Verification, cleanRebootIsOffOnlyWhenBothValuesAreOff) {
    const QString saves = u"read com.apple.loginwindow TALLogoutSavesState="_s;
    const QString relaunches = u"read com.apple.loginwindow LoginwindowLaunchesRelaunchApps="_s;
    struct {
        QStringList values;
        bool isOff;
    } const cases[] = {{{saves + u"0"_s, relaunches + u"off"_s}, true},
                       {{saves + u"0"_s}, false},
                       {{saves + u"1"_s, relaunches + u"0"_s}, false},
                       {{}, false}};
    for (const auto& [values, isOff] : cases) {
        unsetEverything();
        for (const QString& value : values) {
            answer(value);
        }
        const auto result = verify({}, Unselected::ExpectedRestored);
        const Item item = onlyItemNamed(isOff ? result.failed : result.verified, u"Clean Reboot"_s);
        EXPECT_EQ(item.detail, isOff ? u"expected app restoration enabled"_s : u"app restoration enabled"_s);
    }
}

TEST_F(Verification, theOneWayFormHasNoCleanRebootItem) {
    const auto result = verify({}, Unselected::Ignored);
    EXPECT_EQ(result, ApplyVerificationResult());
    EXPECT_EQ(trace, QStringList(u"$> /usr/bin/pmset -g custom"_s));
}

// ---- Tools that don't answer

TEST_F(Verification, withoutAnAnswerEveryRowFailsWithItsOwnDetail) {
    PerformanceSettings all = PerformanceSettings::fullSelection();
    all.cleanReboot = true;
    for (const CommandOutcome& outcome : ScriptedCommandLauncher::unanswered()) {
        commands.respond = [&outcome](const QStringList&) { return outcome; };
        EXPECT_EQ(verify(all, Unselected::Ignored),
                  (ApplyVerificationResult{{},
                                           {{u"App Nap"_s, u"expected disabled"_s},
                                            {u"Software Updates"_s, u"expected disabled"_s},
                                            {u"Notifications"_s, u"expected suppressed"_s},
                                            {u"Siri"_s, u"expected disabled"_s},
                                            {u"Crash Reporter"_s, u"expected disabled"_s},
                                            {u"UI Sounds"_s, u"expected muted"_s},
                                            {u"AirDrop"_s, u"expected disabled"_s},
                                            {u"USB Power"_s, u"expected standby/disk/sleep at 0"_s},
                                            {u"Motion Sensor"_s, u"expected sms 0"_s},
                                            {u"Spotlight"_s, u"expected indexing off"_s},
                                            {u"Time Machine"_s, u"expected disabled"_s},
                                            {u"Clean Reboot"_s, u"expected app restoration disabled"_s},
                                            {u"Clean Reboot windows"_s, u"expected window restoration disabled"_s}}}));
        EXPECT_EQ(verify({}, Unselected::ExpectedRestored),
                  (ApplyVerificationResult{{},
                                           {{u"App Nap"_s, u"expected enabled"_s},
                                            {u"Software Updates"_s, u"expected enabled"_s},
                                            {u"Notifications"_s, u"expected enabled"_s},
                                            {u"Siri"_s, u"expected enabled"_s},
                                            {u"Crash Reporter"_s, u"expected enabled"_s},
                                            {u"UI Sounds"_s, u"expected enabled"_s},
                                            {u"AirDrop"_s, u"expected enabled"_s},
                                            {u"USB Power"_s, u"expected standard sleep values"_s},
                                            {u"Motion Sensor"_s, u"could not read pmset"_s},
                                            {u"Spotlight"_s, u"could not read status"_s},
                                            {u"Time Machine"_s, u"could not read status"_s},
                                            {u"Clean Reboot"_s, u"expected app restoration enabled"_s}}}));
    }
}

/// On Macs that are as they were asked to be, whatever the settings, any of the readings is missing: exactly the rows that
/// need one of those aren't verified.
TEST_F(Verification, noRowHoldsThatNeedsWhatWasNotRead) {
    struct Row {
        bool S::*setting;
        QString name;
        QMap<QString, QByteArray> applied;  ///< what is read, and its answer
        QMap<QString, QByteArray> restored; ///< an empty answer is a key that isn't set
    };
    const QMap<QString, QByteArray> noRestoration{{reading::kLogoutState, "0"}, {reading::kLoginRelaunch, "0"}};
    const QMap<QString, QByteArray> restoration{{reading::kLogoutState, {}}, {reading::kLoginRelaunch, {}}};
    const QList<Row> rows{
        {&S::appNap, u"App Nap"_s, {{reading::kAppNap, "1"}}, {{reading::kAppNap, {}}}},
        {&S::updates,
         u"Software Updates"_s,
         {{reading::kSystemUpdateDownload, "0"},
          {reading::kSystemUpdateInstall, "0"},
          {reading::kSystemStoreUpdate, "0"}},
         {{reading::kSystemUpdateDownload, {}},
          {reading::kSystemUpdateInstall, "1"},
          {reading::kSystemStoreUpdate, {}}}},
        {&S::notifications, u"Notifications"_s, {{reading::kDoNotDisturb, "1"}}, {{reading::kDoNotDisturb, {}}}},
        {&S::siri, u"Siri"_s, {{reading::kAssistant, {}}}, {{reading::kAssistant, {}}}},
        {&S::crashReporter, u"Crash Reporter"_s, {{reading::kCrashReporter, "none"}}, {{reading::kCrashReporter, {}}}},
        {&S::uiSounds, u"UI Sounds"_s, {{reading::kSounds, "0"}}, {{reading::kSounds, {}}}},
        {&S::airdrop, u"AirDrop"_s, {{reading::kAirDrop, "1"}}, {{reading::kAirDrop, {}}}},
        {&S::spotlight,
         u"Spotlight"_s,
         {{reading::kSpotlight, reading::indexing("Indexing disabled.")}},
         {{reading::kSpotlight, reading::indexing("Indexing enabled.")}}},
        {&S::cleanReboot, u"Clean Reboot"_s, noRestoration, restoration},
    };
    std::mt19937 random(2217);
    const auto chance = [&random](int of) { return std::uniform_int_distribution(1, of)(random) == 1; };
    for (int round = 0; round < 300; ++round) {
        PerformanceSettings settings;
        QMap<QString, QByteArray> mac{{reading::kKeptWindows, "0"}};
        for (const Row& row : rows) {
            settings.*row.setting = chance(2);
            mac.insert(settings.*row.setting ? row.applied : row.restored);
        }
        QSet<QString> missing;
        for (const QString& line : mac.keys()) {
            const QList<CommandOutcome> ways = ScriptedCommandLauncher::unanswered();
            if (chance(5)) {
                missing.insert(line);
                commands.answer(line, ways.at(std::uniform_int_distribution<qsizetype>(0, ways.size() - 1)(random)));
            } else if (mac.value(line).isEmpty()) {
                commands.fail(line, 1);
            } else {
                commands.print(line, mac.value(line) + '\n');
            }
        }
        const ApplyVerificationResult result = verify(settings, Unselected::ExpectedRestored);
        for (const Row& row : rows) {
            const QStringList needed = (settings.*row.setting ? row.applied : row.restored).keys();
            const bool isRead = !missing.intersects(QSet<QString>(needed.begin(), needed.end()));
            const QList<Item>& verified = result.verified;
            EXPECT_EQ(isRead, std::any_of(verified.begin(), verified.end(),
                                          [&row](const Item& item) { return item.name == row.name; }))
                << row.name.toStdString() << " in round " << round;
        }
    }
}

// ---- Clean reboot

TEST_F(CleanRebootVerification, withoutAConfigurationOnlyTheRestorationIsRead) {
    EXPECT_EQ(verify({}), kNoRestoration);
    EXPECT_EQ(takeTrace(), reading::traced(QStringList{reading::kPower} + reading::kCleanReboot));
}

TEST_F(CleanRebootVerification, inTheTwoWayFormItStandsInThePlaceOfTheRestoredOne) {
    const QStringList lines = verify({}, Unselected::ExpectedRestored).filter(u"Clean Reboot"_s);
    EXPECT_EQ(lines, kNoRestoration);
}

TEST_F(CleanRebootVerification, eachValueMustBeOff) {
    struct {
        QString line;
        QString failed;
    } const cases[] = {{reading::kLogoutState, u"-- Clean Reboot: expected app restoration disabled"_s},
                       {reading::kLoginRelaunch, u"-- Clean Reboot: expected app restoration disabled"_s},
                       {reading::kKeptWindows, u"-- Clean Reboot windows: expected window restoration disabled"_s}};
    for (const auto& [line, failed] : cases) {
        commands.print(line, "1\n");
        EXPECT_EQ(verify({}).last(), failed);
        commands.fail(line, 1); // a key that isn't set isn't off
        EXPECT_EQ(verify({}).last(), failed);
        commands.print(line, "0\n");
    }
}

TEST_F(CleanRebootVerification, everyItemThatIsNotPermittedFailsInTheOrderOfNames) {
    loginItems.items = {{u"zoom"_s, u"/z.app"_s, false},
                        {u"Traktor Helper"_s, u"/t.app"_s, false},
                        {u"Deck"_s, u"/Applications/rekordbox.app"_s, false},
                        {u"Mail"_s, u"/m.app"_s, false},
                        {u"Dropbox"_s, u"/d.app"_s, false}};
    EXPECT_EQ(verifyStartup({}, {u"Mail"_s}), (QStringList{u"-- Login item: Dropbox: will open at login"_s,
                                                           u"-- Login item: zoom: will open at login"_s}));
}

TEST_F(CleanRebootVerification, thePermittedNamesAreListedInOrder) {
    EXPECT_EQ(verifyStartup({}), QStringList(u"OK Clean Reboot login items: no apps configured to open at login"_s));
    EXPECT_EQ(verifyStartup({}, {u"zoom"_s, u"Mail"_s}),
              QStringList(u"OK Clean Reboot login items: only permitted apps remain (Mail, zoom)"_s));
}

TEST_F(CleanRebootVerification, anAppThatTheConfigurationOpensIsPermittedByNameAndPath) {
    loginItems.items = {{u"Renamed"_s, u"/Applications/Live.app"_s, false}, {u"Mixer"_s, u"/elsewhere.app"_s, false}};
    StartupConfiguration startup;
    startup.items = {StartupItem::fromLaunchItem({u"Live"_s, u"/Applications/Live.app"_s, false}),
                     StartupItem::fromLaunchItem({u"Mixer"_s, u"/Applications/Mixer.app"_s, false})};
    EXPECT_EQ(verifyStartup(startup, {u"Mail"_s}),
              QStringList(u"OK Clean Reboot login items: only permitted apps remain (Live, Mail, Mixer)"_s));
}

TEST_F(CleanRebootVerification, aListThatCannotBeReadProvesNothing) {
    const QStringList failed{u"-- Clean Reboot login items: could not read login items"_s};
    loginItems.listing = "ERROR|Connection is invalid.\n";
    EXPECT_EQ(verifyStartup({}), failed);
    system.invalidateStartupCaches();
    loginItems.listing.clear();
    loginItems.denial = "Not authorized";
    EXPECT_EQ(verifyStartup({}), failed);
}

TEST_F(CleanRebootVerification, aListThatWasReadBeforeIsNotReadAgain) {
    QCoro::waitFor(system.rawLoginItems());
    trace.clear();
    verifyStartup({});
    EXPECT_TRUE(trace.filter(u"System Events"_s).isEmpty());
}

TEST_F(CleanRebootVerification, backgroundItemsStandBehindTheLoginItems) {
    loginItems.items = {{u"zoom"_s, u"/z.app"_s, false}};
    takeDump("#1:\n Name: Updater\n Type: agent (0x8)\n Identifier: 8.com.up\n Disposition: [enabled]\n");
    EXPECT_EQ(verifyStartup({}), (QStringList{u"-- Login item: zoom: will open at login"_s,
                                              u"-- Background item: Updater: still enabled at login"_s}));
    StartupConfiguration startup;
    startup.items = {StartupItem::fromLaunchItem({u"Updater"_s, u"/Applications/Updater.app"_s, false})};
    EXPECT_EQ(verifyStartup(startup, {u"zoom"_s}),
              (QStringList{u"OK Clean Reboot login items: only permitted apps remain (Updater, zoom)"_s,
                           u"OK Background login items: only permitted items remain"_s}));
}

TEST_F(Verification, theLogListsVerifiedThenFailedThenTheCount) {
    const ApplyVerificationResult result{{{u"App Nap"_s, u"disabled"_s}, {u"Bare"_s, std::nullopt}},
                                         {{u"Siri"_s, u"expected disabled"_s}, {u"Other"_s, std::nullopt}}};
    system.logVerificationResult(result, u"Profile: Live"_s);
    EXPECT_EQ(takeTrace(), u"\n[VERIFY] Profile: Live\n  [OK] App Nap — disabled\n  [OK] Bare\n"
                           "  [MISSING] Siri — expected disabled\n  [MISSING] Other\n"
                           "  [VERIFY] 2 setting(s) could not be confirmed.\n"_s);
}

TEST_F(Verification, aNoteStandsBehindItsRow) {
    system.logVerificationResult(
        {{{u"Time Machine"_s, u"disabled"_s, true, u"It rains."_s}, {u"Siri"_s, u"off"_s}}, {}}, u"Tweaks"_s);
    EXPECT_EQ(takeTrace(), u"\n[VERIFY] Tweaks\n  [OK] Time Machine — disabled\n  [INFO] It rains.\n"
                           "  [OK] Siri — off\n  [VERIFY] All settings confirmed on system.\n"_s);
}

TEST_F(Verification, suppressedNotificationsAreNotedToNeedAFocus) {
    commands.print(reading::kDoNotDisturb, "1\n");
    PerformanceSettings settings;
    settings.notifications = true;
    system.logVerificationResult(verify(settings, Unselected::Ignored), u"Tweaks"_s);
    EXPECT_TRUE(takeTrace().endsWith(
        u"\n[VERIFY] Tweaks\n  [OK] Notifications — suppressed\n  [INFO] Notifications: the setting is stored. Turn on "
        "a Focus as well: Quorvane can't do that for you.\n  [VERIFY] All settings confirmed on system.\n"_s));
    commands.print(reading::kDoNotDisturb, "0\n");
    system.logVerificationResult(verify(settings, Unselected::Ignored), u"Tweaks"_s);
    system.logVerificationResult(verify({}, Unselected::ExpectedRestored), u"Tweaks"_s);
    EXPECT_FALSE(takeTrace().contains(u"Focus"_s)) << "not suppressed, and not to be";
}

TEST_F(Verification, whatMayNotBeReadIsSaidEachTimeAndTheWayToPermitItOnce) {
    makeBackupsUnreadable();
    const ApplyVerificationResult result{{{u"Siri"_s, u"off"_s}}, {{u"AirDrop"_s, u"on"_s}}, true};
    const QString rows = u"\n[VERIFY] Tweaks\n  [OK] Siri — off\n  [MISSING] AirDrop — on\n"
                         "  [INFO] Time Machine may not be read.\n"_s;
    const QString count = u"  [VERIFY] 1 setting(s) could not be confirmed.\n"_s;
    system.logVerificationResult(result, u"Tweaks"_s);
    EXPECT_EQ(takeTrace(), rows +
                               u"  [INFO] Allow Quorvane to read it in System Settings › Privacy & Security › Full "
                               "Disk Access.\n"_s +
                               count);
    system.logVerificationResult(result, u"Tweaks"_s);
    EXPECT_EQ(takeTrace(), rows + count);
}

TEST(VerificationSummary, countsVerifiedAndFailed) {
    ApplyVerificationResult result;
    result.verified = QList<Item>(11, Item{u"x"_s, std::nullopt});
    EXPECT_EQ(summary(result), u"All 11 setting(s) verified on the system."_s);
    result.verified.removeLast();
    result.failed = QList<Item>(2, Item{u"y"_s, std::nullopt});
    EXPECT_EQ(summary(result), u"10 verified, 2 not confirmed. Check Logs for details."_s);
}

TEST(ValueTests, eachQuestionHasItsOwnAnswerForAMissingKey) {
    struct {
        std::optional<QString> value;
        bool truthy;
        bool falsy;
        bool off;
    } const cases[] = {
        {std::nullopt, false, true, false}, {u"1"_s, true, false, false},   {u"TRUE"_s, true, false, false},
        {u"Yes"_s, true, false, false},     {u"0"_s, false, true, true},    {u"False"_s, false, true, true},
        {u"NO"_s, false, true, true},       {u"off"_s, false, false, true}, {u""_s, false, false, false},
        {u"2"_s, false, false, false},      {u"on"_s, false, false, false}};
    for (const auto& [value, truthy, falsy, off] : cases) {
        SCOPED_TRACE(value.value_or(u"none"_s).toStdString());
        EXPECT_EQ(isTruthy(value), truthy);
        EXPECT_EQ(isFalsy(value), falsy);
        EXPECT_EQ(isOffValue(value), off);
    }
}

} // namespace quorvane
