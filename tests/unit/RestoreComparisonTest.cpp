#include "snapshots/RestoreComparison.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {

namespace {

using State = ComparedSetting::State;

/// "App Nap: is missing: …" for each that isn't back.
QStringList faults(const QList<ComparedSetting>& settings) {
    QStringList lines;
    for (const ComparedSetting& setting : settings) {
        if (!setting.isBack()) {
            lines.append(setting.name + (setting.state == State::Missing ? u": "_s : u" left alone: "_s) +
                         setting.what);
        }
    }
    return lines;
}

QStringList namesOfBack(const QList<ComparedSetting>& settings) {
    QStringList names;
    for (const ComparedSetting& setting : settings) {
        if (setting.isBack()) {
            names.append(setting.name);
        }
    }
    return names;
}

/// A Mac on which nothing is set and everything was answered.
CurrentSettings bareMac() {
    CurrentSettings current;
    for (CurrentPreference& each : current.preferences) {
        each.reading = Reading<QString>::answered(std::nullopt);
    }
    current.power = Reading<QList<PowerSource>>::answered(QList<PowerSource>{
        {u"Battery Power"_s, {u"1"_s, u"10"_s, u"5"_s, {}}}, {u"AC Power"_s, {u"1"_s, u"10"_s, u"0"_s, {}}}});
    current.indexing = Reading<QList<IndexedVolume>>::answered(
        QList<IndexedVolume>{{u"/"_s, Indexing::On}, {u"/System/Volumes/Data"_s, Indexing::On}});
    current.timeMachine = Reading<TimeMachineState>::answered(TimeMachineState::On);
    return current;
}

SystemSnapshot snapshotOfBareMac() {
    SystemSnapshot snapshot;
    snapshot.powerBySource = QMap<QString, PowerSettings>{{u"Battery Power"_s, {u"1"_s, u"10"_s, u"5"_s, {}}},
                                                          {u"AC Power"_s, {u"1"_s, u"10"_s, u"0"_s, {}}}};
    snapshot.spotlightIndexingEnabled = true;
    snapshot.spotlightByVolume = QMap<QString, QString>{{u"/"_s, u"on"_s}, {u"/System/Volumes/Data"_s, u"on"_s}};
    snapshot.timeMachineEnabled = true;
    return snapshot;
}

/// With a whole number that is printed as a switch is.
SystemSnapshot snapshotOfTypedAppNap() {
    SystemSnapshot snapshot = snapshotOfBareMac();
    snapshot.appNapDisabled = u"1"_s;
    snapshot.typedPreferences =
        TypedValues{{u"NSGlobalDomain NSAppSleepDisabled"_s, *TypedValue::ofXml(u"<integer>1</integer>"_s)}};
    return snapshot;
}

QList<ComparedSetting> compare(const SystemSnapshot& snapshot, const CurrentSettings& current,
                               const TypedReadings& typed = {}) {
    return comparedWith(snapshot, current, typed, std::nullopt, std::nullopt);
}

TypedReadings typedAppNap(const QString& xml) {
    return {{u"NSGlobalDomain NSAppSleepDisabled"_s, Reading<TypedValue>::answered(TypedValue::ofXml(xml))}};
}

} // namespace

TEST(RestoreComparison, namesEachTweakThatIsBack) {
    const QList<ComparedSetting> settings = compare(snapshotOfBareMac(), bareMac());
    EXPECT_EQ(faults(settings), QStringList());
    EXPECT_EQ(namesOfBack(settings), (QStringList{u"App Nap"_s, u"Spotlight"_s, u"USB Power"_s, u"Time Machine"_s,
                                                  u"Software Updates"_s, u"Notifications"_s, u"Crash Reporter"_s,
                                                  u"AirDrop"_s, u"Siri"_s, u"UI Sounds"_s, u"Clean Reboot"_s}))
        << "of the motion sensor nothing was captured";
}

TEST(RestoreComparison, takesPreferencesByMeaningWhereNoTypeIsKnown) {
    SystemSnapshot snapshot = snapshotOfBareMac();
    CurrentSettings current = bareMac();
    snapshot.appNapDisabled = u"YES"_s;
    EXPECT_EQ(faults(compare(snapshot, current)), QStringList(u"App Nap: NSAppSleepDisabled is not set, was YES"_s));
    current.of(preference::kAppSleep).reading.value = u"1"_s;
    EXPECT_EQ(faults(compare(snapshot, current)), QStringList());
    current.of(preference::kLiveAppSleep).reading.value = u"0"_s;
    EXPECT_EQ(faults(compare(snapshot, current)), QStringList(u"App Nap: NSAppSleepDisabled is 0, was not set"_s));
    current.of(preference::kAppSleep).reading = Reading<QString>::unanswered();
    EXPECT_EQ(faults(compare(snapshot, current)),
              QStringList(u"App Nap: could not be read, NSAppSleepDisabled is 0, was not set"_s));
}

TEST(RestoreComparison, takesPreferencesByTypeAndValueWhereBothAreKnown) {
    SystemSnapshot snapshot = snapshotOfTypedAppNap();
    CurrentSettings current = bareMac();
    current.of(preference::kAppSleep).reading.value = u"1"_s;
    EXPECT_EQ(faults(compare(snapshot, current)), QStringList()) << "nobody asked for the type";
    EXPECT_EQ(faults(compare(snapshot, current, typedAppNap(u"<integer>1</integer>"_s))), QStringList());
    EXPECT_EQ(faults(compare(snapshot, current, typedAppNap(u"<true/>"_s))),
              QStringList(u"App Nap: NSAppSleepDisabled is 1 (switch), was 1 (whole number)"_s));
    ASSERT_EQ(preferencesToCompareByType(snapshot, current).size(), 1);
    EXPECT_TRUE(preferencesToCompareByType(snapshot, current).first().isAt(preference::kAppSleep));
    snapshot.appNapDisabled = u""_s;
    snapshot.typedPreferences =
        TypedValues{{u"NSGlobalDomain NSAppSleepDisabled"_s, *TypedValue::ofXml(u"<string> </string>"_s)}};
    current.of(preference::kAppSleep).reading.value.reset();
    EXPECT_EQ(faults(compare(snapshot, current)),
              QStringList(u"App Nap: NSAppSleepDisabled is not set, was empty (text)"_s));
    EXPECT_TRUE(preferencesToCompareByType(snapshot, current).isEmpty());
}

TEST(RestoreComparison, tellsTheTypeOfAValueThatIsPrintedAsTheCapturedOne) {
    SystemSnapshot snapshot = snapshotOfTypedAppNap();
    CurrentSettings current = bareMac();
    current.of(preference::kAppSleep).reading.value = u"1"_s;
    current.of(preference::kLiveAppSleep).reading.value = u"1"_s;
    EXPECT_EQ(tellingTypes(current, snapshot, {}).preferences, current.preferences) << "nobody asked for the type";
    EXPECT_EQ(tellingTypes(current, snapshot, typedAppNap(u"<integer>1</integer>"_s)).preferences, current.preferences);
    EXPECT_EQ(tellingTypes(current, snapshot, typedAppNap(u"<integer>0</integer>"_s)).preferences, current.preferences)
        << "its text tells that";
    CurrentSettings told = tellingTypes(current, snapshot, typedAppNap(u"<true/>"_s));
    EXPECT_EQ(told.of(preference::kAppSleep).reading.value, u"<true/>"_s);
    told.of(preference::kAppSleep) = current.of(preference::kAppSleep);
    EXPECT_EQ(told.preferences, current.preferences) << "all others stay as they were";
}

TEST(RestoreComparison, ofWhatAnEarlierSnapshotDoesNotKnowMinesOnlyWhatKeepsATweakInForce) {
    CurrentSettings current = bareMac();
    current.of(preference::kSystemUpdateInstall).reading.value = u"0"_s;
    EXPECT_EQ(faults(compare(snapshotOfBareMac(), current)),
              QStringList(u"Software Updates: AutomaticallyInstallMacOSUpdates is 0"_s));
    current.of(preference::kSystemUpdateInstall).reading.value = u"1"_s;
    EXPECT_EQ(faults(compare(snapshotOfBareMac(), current)), QStringList());
}

TEST(RestoreComparison, leavesAloneWhatAnOrganizationHasSet) {
    SystemSnapshot snapshot = snapshotOfBareMac();
    snapshot.appNapDisabled = u"1"_s;
    CurrentSettings current = bareMac();
    current.of(preference::kAppSleep) = {Reading<QString>::answered(u"0"_s), true};
    EXPECT_EQ(faults(compare(snapshot, current)), QStringList(u"App Nap left alone: set by your organization"_s));
    EXPECT_TRUE(namesOfMissing(compare(snapshot, current)).isEmpty());
}

TEST(RestoreComparison, namesTheSourceOfPowerThatDiffers) {
    SystemSnapshot snapshot = snapshotOfBareMac();
    CurrentSettings current = bareMac();
    (*current.power.value)[0].settings.sleep = u"0"_s;
    (*current.power.value)[0].settings.standby.reset();
    EXPECT_EQ(faults(compare(snapshot, current)), QStringList(u"USB Power on Battery Power: sleep is 0, was 5"_s));
    current.power.value->removeFirst();
    EXPECT_EQ(faults(compare(snapshot, current)),
              QStringList(u"USB Power on Battery Power left alone: not there now"_s));
    EXPECT_TRUE(namesOfBack(compare(snapshot, current)).contains(u"USB Power"_s));
    current.power = Reading<QList<PowerSource>>::unanswered();
    EXPECT_EQ(faults(compare(snapshot, current)), QStringList(u"USB Power: could not be read"_s));
    snapshot.powerBySource.reset();
    snapshot.pmsetSms = u"1"_s;
    EXPECT_EQ(faults(compare(snapshot, current)), QStringList(u"Motion Sensor: could not be read"_s));
    current.power = Reading<QList<PowerSource>>::answered(QList<PowerSource>{{u"AC Power"_s, {{}, {}, {}, u"0"_s}}});
    EXPECT_EQ(faults(compare(snapshot, current)), QStringList(u"Motion Sensor: sms is 0, was 1"_s));
}

TEST(RestoreComparison, namesTheVolumeThatDiffers) {
    SystemSnapshot snapshot = snapshotOfBareMac();
    snapshot.spotlightByVolume->insert(u"/Volumes/Samples"_s, u"search off"_s);
    snapshot.spotlightByVolume->insert(u"/Volumes/Odd"_s, u"on the moon"_s);
    CurrentSettings current = bareMac();
    current.indexing.value->append({u"/Volumes/Odd"_s, Indexing::Off});
    EXPECT_EQ(faults(compare(snapshot, current)),
              QStringList(u"Spotlight on /Volumes/Samples left alone: not there now"_s));
    EXPECT_FALSE(mayIndexingStillChange(snapshot, current));
    current.indexing.value->append({u"/Volumes/Samples"_s, Indexing::Changing});
    current.indexing.value->append({u"/Volumes/New"_s, Indexing::Off});
    EXPECT_EQ(faults(compare(snapshot, current)),
              (QStringList{u"Spotlight on /Volumes/Samples: indexing is changing, was search off"_s,
                           u"Spotlight on /Volumes/New: indexing is off, was on"_s}));
    EXPECT_TRUE(mayIndexingStillChange(snapshot, current));
    EXPECT_FALSE(namesOfBack(compare(snapshot, current)).contains(u"Spotlight"_s));
    snapshot.spotlightByVolume.reset();
    EXPECT_EQ(faults(compare(snapshot, current)), QStringList());
    current.indexing.value->clear();
    EXPECT_EQ(faults(compare(snapshot, current)), QStringList(u"Spotlight: could not be read"_s));
    current.indexing = Reading<QList<IndexedVolume>>::unanswered();
    EXPECT_FALSE(mayIndexingStillChange(snapshot, current)) << "asking again wouldn't help";
}

TEST(RestoreComparison, saysNothingOfBackupsThatNobodyCouldSwitch) {
    SystemSnapshot snapshot = snapshotOfBareMac();
    CurrentSettings current = bareMac();
    const auto faultsAt = [&](std::optional<TimeMachineState> state) {
        current.timeMachine = Reading<TimeMachineState>::answered(state);
        return faults(compare(snapshot, current));
    };
    EXPECT_EQ(faultsAt(TimeMachineState::Off), QStringList(u"Time Machine: automatic backup is off, was on"_s));
    EXPECT_EQ(faultsAt(std::nullopt), QStringList(u"Time Machine: could not be read"_s));
    EXPECT_EQ(faultsAt(TimeMachineState::NotPermitted), QStringList());
    EXPECT_EQ(faultsAt(TimeMachineState::NotSetUp), QStringList());
    snapshot.timeMachineEnabled.reset();
    EXPECT_EQ(faultsAt(TimeMachineState::Off), QStringList());
}

TEST(RestoreComparison, comparesLoginItemsAndServicesWhereTheyAreGiven) {
    SystemSnapshot snapshot = snapshotOfBareMac();
    snapshot.loginItems = QList<LoginItemSnapshot>{{u"Live"_s, u"/Applications/Live.app"_s, false},
                                                   {u"Mail"_s, u"/Applications/Mail.app"_s, false},
                                                   {u"Gone"_s, u"missing value"_s, false}};
    snapshot.networkServicesEnabled =
        QMap<QString, bool>{{u"Wi-Fi"_s, true}, {u"Ethernet"_s, true}, {u"Dock"_s, true}, {u"VPN"_s, false}};
    const QList<LoginItem> items{{u"Live"_s, u"/Applications/Live.app/"_s, true}};
    const QList<NetworkServiceState> services{
        {u"Wi-Fi"_s, true}, {u"Ethernet"_s, false}, {u"VPN"_s, std::nullopt}, {u"New"_s, false}};
    const QList<ComparedSetting> settings = comparedWith(snapshot, bareMac(), {}, items, services);
    EXPECT_EQ(faults(settings),
              (QStringList{u"login item Mail: not there"_s, u"network service Ethernet: it is off, was on"_s,
                           u"network service VPN: could not be read"_s}));
    EXPECT_EQ(namesOfBack(settings).mid(namesOfBack(settings).size() - 2),
              (QStringList{u"login item Live"_s, u"network service Wi-Fi"_s}));
    EXPECT_EQ(faults(comparedWith(snapshot, bareMac(), {}, std::nullopt, QList<NetworkServiceState>())),
              QStringList(u"network services: could not be read"_s));
}

TEST(RestoreComparison, withoutASnapshotGoesByAFreshMacOS) {
    CurrentSettings current = bareMac();
    current.of(preference::kAssistant).reading.value = u"1"_s;
    EXPECT_EQ(faults(comparedWithStandard(current)), QStringList());
    EXPECT_TRUE(namesOfBack(comparedWithStandard(current)).contains(u"Siri"_s));
    current.of(preference::kAirDrop).reading.value = u"1"_s;
    current.of(preference::kCrashDialog).reading = Reading<QString>::unanswered();
    current.of(preference::kAppSleep).isManaged = true;
    current.timeMachine.value = TimeMachineState::NotPermitted;
    EXPECT_EQ(faults(comparedWithStandard(current)),
              (QStringList{u"App Nap left alone: set by your organization"_s, u"Crash Reporter: could not be read"_s,
                           u"AirDrop: not macOS's own"_s}));
    current.indexing.value = QList<IndexedVolume>{{u"/"_s, Indexing::Changing}};
    EXPECT_TRUE(mayIndexingStillChange(std::nullopt, current));
}

} // namespace quorvane
