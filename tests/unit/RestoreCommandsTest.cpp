#include "snapshots/RestoreCommands.h"
#include "fakes/CommandLine.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {

namespace {

const QString kNotificationCenter = u"/Users/alex/Library/Preferences/ByHost/com.apple.notificationcenterui"_s;
constexpr MacPreference kPreference{
    &PerformanceSettings::uiSounds, u"com.example.app", u"the key", u"-int", u"0", u"1"};
constexpr MacPreference kPerHost = preference::kDoNotDisturb;

QString written(const std::optional<QString>& value) {
    return commandLine(writeDefaultValueCommand(kPreference, value, kNotificationCenter));
}
QString writtenPerHost(const std::optional<QString>& value) {
    return commandLine(writeDefaultValueCommand(kPerHost, value, kNotificationCenter));
}

SystemSnapshot powerSnapshot(const std::optional<QString>& standby, const std::optional<QString>& diskSleep,
                             const std::optional<QString>& sleep) {
    SystemSnapshot snapshot;
    snapshot.pmsetStandby = standby;
    snapshot.pmsetDisksleep = diskSleep;
    snapshot.pmsetSleep = sleep;
    return snapshot;
}

} // namespace

TEST(RestoreCommands, deleteAKeyThatHadNoValue) {
    const QString deletion = u"/usr/bin/defaults delete com.example.app \"the key\""_s;
    EXPECT_EQ(written({}), deletion);
    EXPECT_EQ(written(u""_s), deletion);
    EXPECT_EQ(writtenPerHost({}),
              u"/usr/bin/defaults -currentHost delete "_s + kNotificationCenter + u" doNotDisturb"_s);
}

TEST(RestoreCommands, writeABooleanForWhatReadsLikeOne) {
    const QString start = u"/usr/bin/defaults write com.example.app \"the key\" -bool "_s;
    for (const QString& value : {u"true"_s, u"yes"_s, u"1"_s, u"YES"_s, u"True"_s}) {
        EXPECT_EQ(written(value), start + u"YES"_s) << value.toStdString();
    }
    for (const QString& value : {u"false"_s, u"no"_s, u"0"_s, u"NO"_s, u"False"_s}) {
        EXPECT_EQ(written(value), start + u"NO"_s) << value.toStdString();
    }
}

TEST(RestoreCommands, writeAWholeNumberAsOne) {
    const QString start = u"/usr/bin/defaults write com.example.app \"the key\" -int "_s;
    for (const QString& value : {u"7"_s, u"-5"_s, u"+3"_s, u"007"_s, u"00"_s, u"9223372036854775807"_s}) {
        EXPECT_EQ(written(value), start + value) << value.toStdString();
    }
}

TEST(RestoreCommands, writeEverythingElseAsText) {
    const QStringList start{u"/usr/bin/defaults"_s, u"write"_s, u"com.example.app"_s, u"the key"_s, u"-string"_s};
    for (const QString& value : {u"Disabled"_s, u"none"_s, u"0.5"_s, u"9223372036854775808"_s, u"1 2"_s, u"0x10"_s,
                                 u"-"_s, u"１２"_s, u"{\n    a = 1;\n}"_s, u"-bool"_s, u"'; rm -rf /"_s}) {
        EXPECT_EQ(writeDefaultValueCommand(kPreference, value, kNotificationCenter), start + QStringList(value))
            << value.toStdString();
    }
}

TEST(RestoreCommands, testNoNumberAmongPerHostPreferences) {
    const QString start = u"/usr/bin/defaults -currentHost write "_s + kNotificationCenter + u" doNotDisturb "_s;
    EXPECT_EQ(writtenPerHost(u"1"_s), start + u"-bool YES"_s);
    EXPECT_EQ(writtenPerHost(u"7"_s), start + u"-string 7"_s);
    EXPECT_EQ(writtenPerHost(u"on"_s), start + u"-string on"_s);
}

TEST(RestoreCommands, writeAValueWithTheTypeThatItHad) {
    const QStringList start{u"/usr/bin/defaults"_s, u"write"_s, u"com.example.app"_s, u"the key"_s};
    const auto writtenTyped = [](const QString& text, const QString& xml) {
        return writeDefaultValueCommand(kPreference, text, kNotificationCenter, TypedValue::ofXml(xml));
    };
    struct Case {
        QString xml;
        QStringList arguments;
    };
    for (const Case& one :
         QList<Case>{{u"<true/>"_s, {u"-bool"_s, u"YES"_s}},
                     {u"<false/>"_s, {u"-bool"_s, u"NO"_s}},
                     {u"<integer>1</integer>"_s, {u"-int"_s, u"1"_s}},
                     {u"<integer>18446744073709551615</integer>"_s, {u"<integer>18446744073709551615</integer>"_s}},
                     {u"<real>0.5</real>"_s, {u"-float"_s, u"0.5"_s}},
                     {u"<real>-1</real>"_s, {u"-float"_s, u"-1"_s}},
                     {u"<real>0.1</real>"_s, {u"<real>0.1</real>"_s}},
                     {u"<real>1e-9</real>"_s, {u"<real>1e-09</real>"_s}},
                     {u"<string>yes</string>"_s, {u"-string"_s, u"yes"_s}},
                     {u"<string></string>"_s, {u"-string"_s, u""_s}},
                     {u"<string> x\n</string>"_s, {u"-string"_s, u" x\n"_s}},
                     {u"<string>-7</string>"_s, {u"-string"_s, u"-7"_s}},
                     {u"<date>2026-03-14T20:30:00Z</date>"_s, {u"-date"_s, u"2026-03-14 20:30:00 +0000"_s}},
                     {u"<data>3q2+7w==</data>"_s, {u"-data"_s, u"deadbeef"_s}},
                     {u"<data></data>"_s, {u"<data></data>"_s}},
                     {u"<array><integer>1</integer></array>"_s, {u"<array><integer>1</integer></array>"_s}},
                     {u"<dict/>"_s, {u"<dict></dict>"_s}}}) {
        EXPECT_EQ(writtenTyped(u"printed"_s, one.xml), start + one.arguments) << one.xml.toStdString();
    }
    EXPECT_EQ(writtenTyped({}, u"<string> </string>"_s), start + (QStringList{u"-string"_s, u" "_s}))
        << "its print is empty once it is trimmed";
    EXPECT_EQ(
        writeDefaultValueCommand(kPerHost, u"7"_s, kNotificationCenter, TypedValue::ofXml(u"<integer>7</integer>"_s))
            .mid(5),
        (QStringList{u"-int"_s, u"7"_s}));
    EXPECT_EQ(writeDefaultValueCommand(kPreference, std::nullopt, kNotificationCenter, TypedValue::ofXml(u"<true/>"_s))
                  .value(1),
              u"delete"_s);
}

TEST(RestoreCommands, restoreEveryPreferenceInItsStep) {
    SystemSnapshot snapshot;
    int number = 0;
    for (const SnapshotPreference& preference : snapshotPreferences()) {
        preference.put(u"v%1"_s.arg(++number), snapshot);
    }
    QStringList lines;
    for (const TweakStep& step : restoreSteps(snapshot, CurrentSettings(), kNotificationCenter)) {
        for (const QStringList& command : step.commands) {
            lines.append(commandLine(command));
        }
        lines.append(step.logLine);
    }
    EXPECT_EQ(lines.join(u'\n'),
              u"/usr/bin/defaults write NSGlobalDomain NSAppSleepDisabled -string v1\n"
              "/usr/bin/defaults write com.ableton.live NSAppSleepDisabled -string v2\n"
              "  [RESTORED] App Nap settings.\n"
              "/usr/bin/defaults write com.apple.SoftwareUpdate AutomaticDownload -string v3\n"
              "/usr/bin/defaults write com.apple.SoftwareUpdate AutomaticCheckEnabled -string v4\n"
              "/usr/bin/defaults write com.apple.commerce AutoUpdate -string v5\n"
              "  [RESTORED] Software update settings.\n"
              "/usr/bin/defaults -currentHost write "
              "/Users/alex/Library/Preferences/ByHost/com.apple.notificationcenterui doNotDisturb -string v9\n"
              "/bin/launchctl load -w /System/Library/LaunchAgents/com.apple.notificationcenterui.plist\n"
              "/usr/bin/open -a NotificationCenter\n"
              "  [RESTORED] Notification settings.\n"
              "/usr/bin/defaults write com.apple.Siri Status -string v10\n"
              "/usr/bin/defaults write com.apple.assistant.support \"Assistant Enabled\" -string v11\n"
              "  [RESTORED] Siri settings.\n"
              "/usr/bin/defaults write com.apple.CrashReporter DialogType -string v12\n"
              "  [RESTORED] Crash Reporter settings.\n"
              "/usr/bin/defaults write com.apple.systemsound com.apple.sound.uiaudio.enabled -string v13\n"
              "/usr/bin/defaults write NSGlobalDomain com.apple.sound.uiaudio.enabled -string v14\n"
              "  [RESTORED] UI sound settings.\n"
              "/usr/bin/defaults write com.apple.NetworkBrowser DisableAirDrop -string v15\n"
              "  [RESTORED] AirDrop settings.\n"
              "/usr/bin/defaults write com.apple.loginwindow TALLogoutSavesState -string v16\n"
              "/usr/bin/defaults write com.apple.loginwindow LoginwindowLaunchesRelaunchApps -string v17\n"
              "/usr/bin/defaults write NSGlobalDomain NSQuitAlwaysKeepsWindows -string v18\n"
              "  [RESTORED] Login and reboot settings."_s);
}

TEST(RestoreCommands, asRootPutBackWhatIsKnown) {
    SystemSnapshot snapshot = powerSnapshot(u"1"_s, u"10"_s, u"5"_s);
    EXPECT_EQ(restoreSystemCommands(snapshot, CurrentSettings()),
              QStringList(u"pmset -a standby 1 disksleep 10 sleep 5"_s));
    snapshot.pmsetSms = u"0"_s;
    snapshot.spotlightIndexingEnabled = true;
    snapshot.timeMachineEnabled = false;
    EXPECT_EQ(restoreSystemCommands(snapshot, CurrentSettings()),
              (QStringList{u"pmset -a standby 1 disksleep 10 sleep 5"_s, u"pmset -a sms 0"_s, u"mdutil -a -i on"_s,
                           u"tmutil disable"_s}));
    snapshot.spotlightIndexingEnabled = false;
    snapshot.timeMachineEnabled = true;
    EXPECT_EQ(restoreSystemCommands(snapshot, CurrentSettings()).mid(2),
              (QStringList{u"mdutil -a -i off"_s, u"tmutil enable"_s}));
    EXPECT_EQ(restoreSystemCommands(SystemSnapshot(), CurrentSettings()), QStringList());
}

TEST(RestoreCommands, restoreThoseOfTheSleepValuesThatWereCaptured) {
    EXPECT_EQ(restoreSystemCommands(powerSnapshot({}, u"10"_s, u"5"_s), CurrentSettings()),
              QStringList(u"pmset -a disksleep 10 sleep 5"_s));
    EXPECT_EQ(restoreSystemCommands(powerSnapshot(u"1"_s, {}, u"5"_s), CurrentSettings()),
              QStringList(u"pmset -a standby 1 sleep 5"_s));
    EXPECT_EQ(restoreSystemCommands(powerSnapshot(u"1"_s, u"10"_s, {}), CurrentSettings()),
              QStringList(u"pmset -a standby 1 disksleep 10"_s));
    EXPECT_EQ(restoreSystemCommands(powerSnapshot({}, {}, u"5"_s), CurrentSettings()),
              QStringList(u"pmset -a sleep 5"_s));
    EXPECT_EQ(restoreSystemCommands(powerSnapshot({}, {}, {}), CurrentSettings()), QStringList());
}

TEST(RestoreCommands, quoteAPowerValueThatIsNoPlainWord) {
    EXPECT_EQ(restoreSystemCommands(powerSnapshot(u"1; reboot"_s, u"it's"_s, u""_s), CurrentSettings()),
              QStringList(u"pmset -a standby '1; reboot' disksleep 'it'\\''s' sleep ''"_s));
    SystemSnapshot snapshot;
    snapshot.pmsetSms = u"$(reboot)"_s;
    EXPECT_EQ(restoreSystemCommands(snapshot, CurrentSettings()), QStringList(u"pmset -a sms '$(reboot)'"_s));
}

// ---- What later versions have captured

TEST(RestoreCommands, bringSleepBackByTheSourceOfPower) {
    SystemSnapshot snapshot = powerSnapshot(u"1"_s, u"10"_s, u"5"_s);
    snapshot.powerBySource =
        QMap<QString, PowerSettings>{{u"AC Power"_s, {u"0"_s, u"10"_s, u"0"_s, std::nullopt}},
                                     {u"Battery Power"_s, {u"1"_s, u"10"_s, u"5"_s, std::nullopt}}};
    EXPECT_EQ(sleepCommandsBack(snapshot, {}), (QStringList{u"pmset -c standby 0 disksleep 10 sleep 0"_s,
                                                            u"pmset -b standby 1 disksleep 10 sleep 5"_s}));
    snapshot.powerBySource->insert(u"AC Power"_s, (*snapshot.powerBySource)[u"Battery Power"_s]);
    EXPECT_EQ(sleepCommandsBack(snapshot, {}), QStringList(u"pmset -a standby 1 disksleep 10 sleep 5"_s));
    snapshot.powerBySource = QMap<QString, PowerSettings>{{u"Solar Power"_s, {u"0"_s, {}, {}, {}}},
                                                          {u"UPS Power"_s, {std::nullopt, {}, u"9; reboot"_s, {}}}};
    EXPECT_EQ(sleepCommandsBack(snapshot, {}), QStringList(u"pmset -u sleep '9; reboot'"_s));
}

TEST(RestoreCommands, bringBackOfEachSourceWhatIsListedForItNow) {
    SystemSnapshot snapshot = powerSnapshot(u"1"_s, u"10"_s, u"5"_s);
    snapshot.pmsetSms = u"1"_s;
    snapshot.powerBySource = QMap<QString, PowerSettings>{{u"AC Power"_s, {u"0"_s, u"10"_s, u"0"_s, u"1"_s}},
                                                          {u"Battery Power"_s, {u"1"_s, u"10"_s, u"5"_s, u"0"_s}},
                                                          {u"UPS Power"_s, {u"1"_s, u"1"_s, u"1"_s, u"1"_s}}};
    const auto listed = [](const QList<PowerSource>& sources) {
        return Reading<QList<PowerSource>>::answered(sources);
    };
    const auto both =
        listed({{u"Battery Power"_s, {{}, u"0"_s, u"0"_s, {}}}, {u"AC Power"_s, {u"0"_s, {}, u"0"_s, {}}}});
    EXPECT_EQ(sleepCommandsBack(snapshot, both),
              (QStringList{u"pmset -c standby 0 sleep 0"_s, u"pmset -b disksleep 10 sleep 5"_s}));
    EXPECT_EQ(motionSensorCommandsBack(snapshot, both), QStringList());
    EXPECT_EQ(sleepCommandsBack(snapshot, listed({{u"AC Power"_s, {u"0"_s, u"0"_s, u"0"_s, {}}}})),
              QStringList(u"pmset -a standby 0 disksleep 10 sleep 0"_s))
        << "one source alone";
    EXPECT_EQ(sleepCommandsBack(snapshot, listed({{u"Solar Power"_s, {u"0"_s, {}, {}, {}}}})), QStringList());
    snapshot.powerBySource.reset();
    EXPECT_EQ(sleepCommandsBack(snapshot, both), QStringList(u"pmset -a standby 1 disksleep 10 sleep 5"_s));
    EXPECT_EQ(motionSensorCommandsBack(snapshot, both), QStringList()) << "this Mac has none";
}

TEST(RestoreCommands, bringTheMotionSensorBackByTheSourceOfPower) {
    SystemSnapshot snapshot;
    snapshot.pmsetSms = u"1"_s;
    snapshot.powerBySource =
        QMap<QString, PowerSettings>{{u"AC Power"_s, {{}, {}, {}, u"0"_s}}, {u"Battery Power"_s, {{}, {}, {}, u"1"_s}}};
    EXPECT_EQ(motionSensorCommandsBack(snapshot, {}), (QStringList{u"pmset -c sms 0"_s, u"pmset -b sms 1"_s}));
    (*snapshot.powerBySource)[u"AC Power"_s].sms = u"1"_s;
    EXPECT_EQ(motionSensorCommandsBack(snapshot, {}), QStringList(u"pmset -a sms 1"_s));
}

TEST(RestoreCommands, bringEachVolumeBackThatIsNotAsItWas) {
    SystemSnapshot snapshot;
    snapshot.spotlightIndexingEnabled = true;
    snapshot.spotlightByVolume = QMap<QString, QString>{{u"/"_s, u"on"_s},
                                                        {u"/System/Volumes/Data"_s, u"on"_s},
                                                        {u"/Volumes/Samples"_s, u"off"_s},
                                                        {u"/Volumes/It's here"_s, u"search off"_s},
                                                        {u"/Volumes/Gone"_s, u"off"_s},
                                                        {u"/Volumes/Odd"_s, u"on the moon"_s}};
    const QList<IndexedVolume> now{{u"/"_s, Indexing::Off},
                                   {u"/System/Volumes/Data"_s, Indexing::On},
                                   {u"/Volumes/Samples"_s, Indexing::Off},
                                   {u"/Volumes/It's here"_s, Indexing::Off},
                                   {u"/Volumes/Odd"_s, Indexing::Off},
                                   {u"/Volumes/New"_s, Indexing::Off},
                                   {u"/Volumes/Backup"_s, Indexing::On}};
    EXPECT_EQ(indexingCommandsBack(snapshot, now),
              (QStringList{u"mdutil -i on '/'"_s, u"mdutil -i on '/System/Volumes/Data'"_s,
                           u"mdutil -d '/Volumes/It'\\''s here'"_s, u"mdutil -i on '/Volumes/New'"_s}));
    EXPECT_EQ(indexingCommandsBack(snapshot, {}), QStringList(u"mdutil -a -i on"_s)) << "nobody knows how they are";
}

namespace {

CurrentSettings withSystemPreference(const MacPreference& preference, const std::optional<QString>& value) {
    CurrentSettings current;
    for (CurrentPreference& each : current.preferences) {
        each.reading = Reading<QString>::answered(std::nullopt);
    }
    current.of(preference).reading = Reading<QString>::answered(value);
    return current;
}

} // namespace

TEST(RestoreCommands, bringTheSystemsSwitchesBackThatAreNotAsTheyWere) {
    const QString write =
        u"/usr/bin/defaults write /Library/Preferences/com.apple.SoftwareUpdate AutomaticDownload -bool "_s;
    const QString remove =
        u"/usr/bin/defaults delete /Library/Preferences/com.apple.SoftwareUpdate AutomaticDownload || true"_s;
    const CurrentSettings off = withSystemPreference(preference::kSystemUpdateDownload, u"0"_s);
    SystemSnapshot snapshot;
    EXPECT_EQ(systemPreferenceCommandsBack(snapshot, off), QStringList(remove)) << "not captured";
    EXPECT_EQ(systemPreferenceCommandsBack(std::nullopt, off), QStringList(remove));
    snapshot.systemAutomaticDownload = CapturedValue{};
    EXPECT_EQ(systemPreferenceCommandsBack(snapshot, off), QStringList(remove));
    snapshot.systemAutomaticDownload = CapturedValue{u"1"_s};
    EXPECT_EQ(systemPreferenceCommandsBack(snapshot, off), QStringList(write + u"YES || true"_s));
    snapshot.systemAutomaticDownload = CapturedValue{u"NO"_s};
    EXPECT_EQ(systemPreferenceCommandsBack(snapshot, off), QStringList());
    EXPECT_EQ(systemPreferenceCommandsBack(snapshot, withSystemPreference(preference::kSystemUpdateDownload, u"1"_s)),
              QStringList(write + u"NO || true"_s));
    snapshot.systemAutomaticDownload = CapturedValue{u"$(reboot)"_s};
    EXPECT_EQ(
        systemPreferenceCommandsBack(snapshot, off),
        QStringList(u"/usr/bin/defaults write /Library/Preferences/com.apple.SoftwareUpdate AutomaticDownload -string "
                    "'$(reboot)' || true"_s));
    EXPECT_EQ(systemPreferenceCommandsBack(std::nullopt, withSystemPreference(preference::kSystemUpdateDownload, {})),
              QStringList());
}

TEST(RestoreCommands, asRootWriteATypedValueAsOneWordAndNoList) {
    const QString write = u"/usr/bin/defaults write /Library/Preferences/com.apple.SoftwareUpdate AutomaticDownload "_s;
    const CurrentSettings off = withSystemPreference(preference::kSystemUpdateDownload, u"0"_s);
    const auto commandsBack = [&off](const QString& text, const QString& xml) {
        SystemSnapshot snapshot;
        snapshot.systemAutomaticDownload = CapturedValue{text};
        snapshot.typedPreferences = TypedValues{
            {u"/Library/Preferences/com.apple.SoftwareUpdate AutomaticDownload"_s, *TypedValue::ofXml(xml)}};
        return systemPreferenceCommandsBack(snapshot, off);
    };
    EXPECT_EQ(commandsBack(u"0"_s, u"<false/>"_s), QStringList());
    EXPECT_EQ(commandsBack(u"0"_s, u"<integer>0</integer>"_s), QStringList(write + u"-int 0 || true"_s));
    EXPECT_EQ(commandsBack(u"1"_s, u"<string>1</string>"_s), QStringList(write + u"-string 1 || true"_s));
    EXPECT_EQ(commandsBack(u""_s, u"<string>\n</string>"_s), QStringList(write + u"-string '\n' || true"_s));
    EXPECT_EQ(commandsBack(u"0.1"_s, u"<real>0.1</real>"_s), QStringList(write + u"'<real>0.1</real>' || true"_s));
    EXPECT_EQ(commandsBack(u"x"_s, u"<string>$(reboot) '; `id`</string>"_s),
              QStringList(write + u"-string '$(reboot) '\\''; `id`' || true"_s));
    EXPECT_EQ(commandsBack(u"(1)"_s, u"<array><integer>1</integer></array>"_s),
              QStringList(write + u"-string '(1)' || true"_s));
    const QString letters(257, u'x');
    EXPECT_EQ(commandsBack(u"x"_s, u"<string>%1</string>"_s.arg(letters)), QStringList(write + u"-string x || true"_s));
    EXPECT_EQ(commandsBack(u"0"_s, u"<array/>"_s), QStringList()) << "what has no such type isn't compared by it";
}

TEST(RestoreCommands, leaveAloneWhatAnOrganizationHasSet) {
    CurrentSettings current = withSystemPreference(preference::kSystemUpdateDownload, u"0"_s);
    current.of(preference::kSystemUpdateDownload).isManaged = true;
    current.of(preference::kAppSleep).isManaged = true;
    EXPECT_EQ(systemPreferenceCommandsBack(std::nullopt, current), QStringList());
    const TweakStep step = restoreStep(preferenceGroups()[0], SystemSnapshot(), current, kNotificationCenter);
    EXPECT_EQ(step.commands, QList<QStringList>());
    EXPECT_EQ(step.logLine, u"  [INFO] Set by your organization: App Nap"_s);
}

TEST(RestoreCommands, ofAnEarlierSnapshotDeleteInterfaceSoundsThatAreOff) {
    const auto commandsOf = [](const std::optional<QString>& now) {
        QStringList lines;
        for (const QStringList& command :
             restoreStep(preferenceGroups()[5], SystemSnapshot(),
                         withSystemPreference(preference::kInterfaceSounds, now), kNotificationCenter)
                 .commands) {
            lines.append(commandLine(command));
        }
        return lines;
    };
    const QString old = u"/usr/bin/defaults delete com.apple.systemsound com.apple.sound.uiaudio.enabled"_s;
    EXPECT_EQ(commandsOf(u"0"_s),
              (QStringList{old, u"/usr/bin/defaults delete NSGlobalDomain com.apple.sound.uiaudio.enabled"_s}));
    EXPECT_EQ(commandsOf(u"1"_s), QStringList(old));
    EXPECT_EQ(commandsOf(std::nullopt), QStringList(old));
}

} // namespace quorvane
