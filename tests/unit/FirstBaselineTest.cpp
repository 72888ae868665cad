// What the program captures by itself before its first change: without what is known to be its own, in files that nothing replaces,
// and used where nothing else was captured of this Mac.

#include "snapshots/FirstBaseline.h"

#include "core/UserDefaultKeys.h"
#include "fakes/ReadingLines.h"
#include "fakes/RestoreSystem.h"
#include "fakes/ScriptedLoginItems.h"
#include "snapshots/ChosenBaseline.h"
#include "snapshots/HomeBaselines.h"
#include "snapshots/OwnSettings.h"
#include "snapshots/SnapshotManager.h"
#include "tweaks/TweakCatalogue.h"

namespace quorvane {

namespace {

const QString kBaselineFolder = u"/Users/alex/.quorvane"_s;
const QString kFirstFile = kBaselineFolder + u"/before-quorvane.json"_s;
const QString kSecondFile = kBaselineFolder + u"/before-quorvane-2.json"_s;
const QString kChosenFile = kBaselineFolder + u"/chosen-baseline.json"_s;
const QString kOtherMacId = u"9E4D02C7-16BB-5A8F-A3F0-2C7D5E814B66"_s;

const QString kSavedLine = u"  [SNAPSHOT] Saved your settings as they were before Quorvane.\n"_s;
const QString kSeenLine = u"  [SNAPSHOT] Saved your settings as Quorvane first saw them.\n"_s;

class FirstBaselineFlow : public RestoreSystem {
protected:
    std::optional<QString> keep() { return QCoro::waitFor(system.keepSettingsBeforeFirstChange()); }
    std::optional<RestoreBaseline> found() { return QCoro::waitFor(system.findRestoreBaseline()).baseline; }
    std::optional<MasterSystemBaseline> stored() { return FirstBaselines(files, machine).own(); }
    MasterSystemBaseline ofThisMac(const SystemSnapshot& snapshot) const {
        return masterBaselineOf(snapshot, identityOf(machine), {});
    }
    static MasterSystemBaseline ofAnotherMac(const SystemSnapshot& snapshot) {
        return masterBaselineOf(snapshot, {u"Studio"_s, kOtherMacId}, {});
    }
    void choose(const MasterSystemBaseline& baseline, const QDateTime& at) {
        ChosenBaselineFile(files, machine).save({at, baseline});
    }
    /// One of the commands of a capture is answered so.
    void answerOnce(const QString& line, const std::function<void()>& whatHappens, const CommandOutcome& outcome) {
        commands.respond = [=, before = commands.respond](const QStringList& arguments) {
            if (commandLine(arguments) == line) {
                whatHappens();
                return std::optional(outcome);
            }
            return before ? before(arguments) : std::nullopt;
        };
    }
};

/// All that a capture reads, by which no setting is a fresh Mac's.
SystemSnapshot changedSnapshot() {
    SystemSnapshot snapshot;
    for (const SnapshotPreference& preference : snapshotPreferences()) {
        preference.put(preference.applied.toString(), snapshot);
    }
    const PowerSettings awake{u"0"_s, u"0"_s, u"0"_s, u"0"_s};
    snapshot.pmsetStandby = snapshot.pmsetDisksleep = snapshot.pmsetSleep = snapshot.pmsetSms = u"0"_s;
    snapshot.powerBySource = {{u"AC Power"_s, awake}, {u"Battery Power"_s, {{}, u"0"_s, u"0"_s, {}}}};
    snapshot.timeMachineEnabled = false;
    snapshot.spotlightIndexingEnabled = false;
    snapshot.spotlightByVolume = {{u"/"_s, u"off"_s}, {u"/Volumes/Samples"_s, u"search off"_s}};
    snapshot.loginItems = {{u"Live"_s, u"/Applications/Live.app"_s, false},
                           {u"Dropbox"_s, u"/Applications/Dropbox.app"_s, true}};
    return snapshot;
}

} // namespace

// ---- Without what the program has changed

TEST(WithoutChanges, nothingIsTakenAwayWhereNothingWasChanged) {
    EXPECT_EQ(withoutChanges(changedSnapshot(), {}), changedSnapshot());
    EXPECT_EQ(withoutChanges(changedSnapshot(), {true, {u"nobody's"_s}, {u"/Applications/Other.app"_s}}),
              changedSnapshot());
}

TEST(WithoutChanges, everyChangedTweakIsAsAFreshMacHasIt) {
    EarlierChanges all{true, {}, {}};
    for (const Tweak& tweak : tweakCatalogue()) {
        all.tweaks.insert(tweak.key);
    }
    const SystemSnapshot fresh = withoutChanges(changedSnapshot(), all);
    for (const SnapshotPreference& preference : snapshotPreferences()) {
        const std::optional<CapturedValue> value = preference.in(fresh);
        ASSERT_TRUE(value) << preference.jsonKey;
        if (preference.tweak != &PerformanceSettings::cleanReboot) {
            EXPECT_TRUE(isStandard(preference, value->value)) << preference.jsonKey;
            EXPECT_EQ(value->value.has_value(), !preference.standard.isEmpty()) << preference.jsonKey;
        }
    }
    EXPECT_EQ(fresh.assistantEnabled, u"1"_s);
    EXPECT_EQ(fresh.disableAirDrop, u"0"_s);
    const PowerSettings sleeps{u"1"_s, u"10"_s, u"1"_s, u"1"_s};
    EXPECT_EQ(fresh.powerBySource,
              (QMap<QString, PowerSettings>{{u"AC Power"_s, sleeps}, {u"Battery Power"_s, {{}, u"10"_s, u"1"_s, {}}}}))
        << "and what a Mac doesn't have isn't made up";
    EXPECT_EQ(fresh.pmsetSleep, u"1"_s);
    EXPECT_EQ(fresh.timeMachineEnabled, true);
    EXPECT_EQ(fresh.spotlightIndexingEnabled, true);
    EXPECT_EQ(fresh.spotlightByVolume,
              (QMap<QString, QString>{{u"/"_s, u"on"_s}, {u"/Volumes/Samples"_s, u"search off"_s}}));
}

TEST(WithoutChanges, whatIsntKnownStaysUnknown) {
    EarlierChanges all{true, {}, {u"/Applications/Live.app"_s}};
    for (const Tweak& tweak : tweakCatalogue()) {
        all.tweaks.insert(tweak.key);
    }
    const SystemSnapshot fresh = withoutChanges({}, all);
    EXPECT_EQ(fresh.pmsetSleep, std::nullopt);
    EXPECT_EQ(fresh.powerBySource, std::nullopt);
    EXPECT_EQ(fresh.timeMachineEnabled, std::nullopt);
    EXPECT_EQ(fresh.spotlightIndexingEnabled, std::nullopt);
    EXPECT_EQ(fresh.spotlightByVolume, std::nullopt);
    EXPECT_EQ(fresh.loginItems, std::nullopt);
}

TEST(WithoutChanges, oneChangedTweakLeavesTheOthersAndTheUsersApplications) {
    const SystemSnapshot snapshot =
        withoutChanges(changedSnapshot(), {true, {u"appNap"_s}, {u"/Applications/Live.app/"_s}});
    EXPECT_EQ(snapshot.appNapDisabled, std::nullopt);
    EXPECT_EQ(snapshot.pmsetSleep, u"0"_s);
    EXPECT_EQ(snapshot.crashReporterDialogType, u"none"_s);
    EXPECT_EQ(snapshot.loginItems, (QList<LoginItemSnapshot>{{u"Dropbox"_s, u"/Applications/Dropbox.app"_s, true}}));
}

// ---- What tells of an earlier change

TEST_F(FirstBaselineFlow, eachTraceOfAnEarlierChangeIsOne) {
    EXPECT_EQ(readEarlierChanges(host), EarlierChanges());
    defaults.setString(kQuorvaneLastAppliedProfileName, u"Live"_s);
    EXPECT_EQ(readEarlierChanges(host), (EarlierChanges{true, {}, {}}));
    defaults.remove(kQuorvaneLastAppliedProfileName);
    defaults.setStringArray(kQuorvaneManagedStartupAppPaths, {u"/Applications/Live.app"_s});
    EXPECT_EQ(readEarlierChanges(host), (EarlierChanges{true, {}, {u"/Applications/Live.app"_s}}));
    defaults.remove(kQuorvaneManagedStartupAppPaths);
    defaults.setStringArray(kQuorvaneChangedTweaks, {u"appNap"_s});
    EXPECT_EQ(readEarlierChanges(host), (EarlierChanges{true, {u"appNap"_s}, {}}));
    defaults.remove(kQuorvaneChangedTweaks);
    defaults.setBoolean(kQuorvaneSwitchedBackupsOff, true);
    EXPECT_EQ(readEarlierChanges(host), (EarlierChanges{true, {u"timeMachine"_s}, {}}));
    defaults.remove(kQuorvaneSwitchedBackupsOff);
    const QString overrides = kBaselineFolder + u"/launchd-overrides.json"_s;
    for (const QByteArray& record :
         {QByteArray("[{\"label\": \"com.example.agent\", \"domain\": \"user\"}]"), QByteArray("{ cut o")}) {
        files.addFile(overrides, record);
        EXPECT_TRUE(readEarlierChanges(host).isAny) << record.constData();
    }
    files.addFile(overrides, "[]");
    EXPECT_FALSE(readEarlierChanges(host).isAny);
    files.addFolders(u"/Users/alex/.quorvane_backup"_s);
    EXPECT_TRUE(readEarlierChanges(host).isAny);
}

// ---- The capture

TEST_F(FirstBaselineFlow, readsTheWholeSystemAndSaysSoInOneLine) {
    QStringList types = reading::kTypesOfPreferences; // of all that is set, and nothing is for all users
    types.removeIf([](const QString& line) { return line.contains(u"export /Library"_s); });
    commands.print(reading::kAppNap, "0\n");
    login = {{u"Dropbox"_s, u"/Applications/Dropbox.app"_s, true}};
    EXPECT_EQ(keep(), std::nullopt);
    EXPECT_EQ(takeTrace(), u"$> osascript: list\n"
                           "$> /usr/sbin/networksetup -listallnetworkservices\n"_s +
                               reading::traced(QStringList{reading::kPower} + reading::kPreferences +
                                               QStringList{reading::kTimeMachine, reading::kSpotlightOfAll} + types) +
                               kSavedLine);
    const std::optional<MasterSystemBaseline> kept = stored();
    ASSERT_TRUE(kept);
    EXPECT_EQ(kept->label, u"Before Quorvane"_s);
    EXPECT_EQ(kept->snapshot.label, u"Before Quorvane"_s);
    EXPECT_EQ(kept->deviceId, machine.id);
    EXPECT_EQ(kept->deviceName, machine.computerName());
    EXPECT_EQ(kept->capturedAt, clock.time);
    EXPECT_EQ(kept->snapshot.appNapDisabled, u"0"_s);
    EXPECT_EQ(kept->snapshot.loginItems,
              (QList<LoginItemSnapshot>{{u"Dropbox"_s, u"/Applications/Dropbox.app"_s, true}}));
    EXPECT_TRUE(files.exists(kFirstFile));
    EXPECT_FALSE(files.exists(kSnapshotFile)) << "it is not the latest snapshot";
    EXPECT_FALSE(files.exists(kHomeBaseline)) << "and no protected baseline";
    EXPECT_EQ(posted, (QList<QPair<QString, QVariantMap>>{
                          {kQuorvaneRestoreBaselineSaved, {{u"label"_s, u"Before Quorvane"_s}}}}));
}

TEST_F(FirstBaselineFlow, isDoneOnce) {
    EXPECT_EQ(keep(), std::nullopt);
    const QByteArray first = files.read(kFirstFile);
    takeTrace();
    clock.time = clock.time.addDays(1);
    EXPECT_EQ(keep(), std::nullopt);
    EXPECT_EQ(takeTrace(), u"\n"_s);
    EXPECT_EQ(files.read(kFirstFile), first);
    EXPECT_FALSE(files.exists(kSecondFile));
}

TEST_F(FirstBaselineFlow, isLeftOutWhereThisMacHasASnapshotOrABaseline) {
    save(usersOwn());
    EXPECT_EQ(keep(), std::nullopt);
    files.remove(kSnapshotFile);
    saveBaseline(kHomeBaseline, usersOwn(), u"Before"_s, machine.id);
    EXPECT_EQ(keep(), std::nullopt);
    EXPECT_EQ(takeTrace(), u"\n"_s);
    EXPECT_FALSE(files.exists(kFirstFile));
}

TEST_F(FirstBaselineFlow, isDoneWhereTheOthersAreDamagedOrAnotherMacs) {
    files.addFile(kSnapshotFile, "{ cut o");
    saveBaseline(kHomeBaseline, usersOwn(), u"Studio"_s, kOtherMacId);
    EXPECT_EQ(keep(), std::nullopt);
    EXPECT_EQ(stored()->label, u"Before Quorvane"_s);
    EXPECT_EQ(files.read(kSnapshotFile), "{ cut o");
}

TEST_F(FirstBaselineFlow, afterAnEarlierChangeItIsWhatWasFirstSeen) {
    defaults.setStringArray(kQuorvaneChangedTweaks, {u"appNap"_s});
    defaults.setStringArray(kQuorvaneManagedStartupAppPaths, {u"/Applications/Live.app"_s});
    commands.print(reading::kAppNap, "1\n");
    commands.print(reading::kCrashReporter, "none\n");
    login = {{u"Live"_s, u"/Applications/Live.app"_s, false}, {u"Dropbox"_s, u"/Applications/Dropbox.app"_s, true}};
    EXPECT_EQ(keep(), std::nullopt);
    EXPECT_TRUE(takeTrace().endsWith(kSeenLine));
    const SystemSnapshot kept = stored()->snapshot;
    EXPECT_EQ(kept.label, u"First seen"_s);
    EXPECT_EQ(kept.appNapDisabled, std::nullopt);
    EXPECT_EQ(kept.crashReporterDialogType, u"none"_s);
    EXPECT_EQ(kept.loginItems, (QList<LoginItemSnapshot>{{u"Dropbox"_s, u"/Applications/Dropbox.app"_s, true}}));
}

TEST_F(FirstBaselineFlow, whatCouldNotBeReadIsSaidAndLeftOut) {
    deniesSystemEvents = true;
    EXPECT_EQ(keep(), std::nullopt);
    EXPECT_TRUE(takeTrace().endsWith(
        kSavedLine + u"  [INFO] Not part of this snapshot, because it could not be read: login items\n"_s));
    EXPECT_EQ(stored()->snapshot.loginItems, std::nullopt);
}

TEST_F(FirstBaselineFlow, aPreferenceThatNobodyAnsweredIsAFailure) {
    commands.answer(reading::kAppNap, ScriptedCommandLauncher::unanswered().first());
    EXPECT_EQ(keep(), u"Could not read App Nap."_s);
    EXPECT_TRUE(takeTrace().endsWith(
        u"  [ERROR] Failed to save your settings before the first change: Could not read %1.\n"_s.arg(
            reading::kAppNap)))
        << "the log names the command, and people are told what they know";
    EXPECT_FALSE(files.exists(kFirstFile));
    EXPECT_TRUE(posted.isEmpty());
}

TEST_F(FirstBaselineFlow, aFullDiskIsAFailure) {
    files.failOn(MemoryFileManager::Operation::Write, kFirstFile);
    const std::optional<QString> error = keep();
    ASSERT_TRUE(error);
    EXPECT_TRUE(error->startsWith(kFirstFile)) << error->toStdString();
    EXPECT_FALSE(files.exists(kFirstFile));
}

TEST_F(FirstBaselineFlow, aFolderThatCantBeMadeIsAFailure) {
    files.addFile(kBaselineFolder, "a file");
    EXPECT_TRUE(keep());
    EXPECT_EQ(files.read(kBaselineFolder), "a file");
}

TEST_F(FirstBaselineFlow, aProgramThatQuitsKeepsNothing) {
    answerOnce(
        reading::kSpotlightOfAll, [this] { commands.shutDown(); }, ScriptedCommandLauncher::succeeded({}));
    EXPECT_EQ(keep(), u"The program is quitting."_s);
    EXPECT_FALSE(files.exists(kFirstFile));
}

// ---- Nothing replaces it

TEST_F(FirstBaselineFlow, whatIsThereStaysAndTheNextNumberIsTaken) {
    for (const QByteArray& there : {QByteArray("{ cut o"), encodeMasterBaseline(ofAnotherMac(usersOwn()))}) {
        files.addFile(kFirstFile, there);
        EXPECT_EQ(keep(), std::nullopt);
        EXPECT_EQ(files.read(kFirstFile), there);
        EXPECT_EQ(decodeMasterBaseline(files.read(kSecondFile)), *stored());
        files.remove(kSecondFile);
    }
}

TEST_F(FirstBaselineFlow, aFileThatComesDuringTheCaptureStays) {
    answerOnce(
        reading::kSpotlightOfAll, [this] { files.addFile(kFirstFile, "somebody's"); },
        ScriptedCommandLauncher::succeeded({}));
    EXPECT_EQ(keep(), std::nullopt);
    EXPECT_EQ(files.read(kFirstFile), "somebody's");
    EXPECT_TRUE(files.exists(kSecondFile));
}

TEST_F(FirstBaselineFlow, anotherProcessThatWasQuickerIsEnough) {
    const MasterSystemBaseline others = ofThisMac(usersOwn());
    answerOnce(
        reading::kSpotlightOfAll, [&] { files.addFile(kFirstFile, encodeMasterBaseline(others)); },
        ScriptedCommandLauncher::succeeded({}));
    EXPECT_EQ(keep(), std::nullopt);
    EXPECT_EQ(stored(), others);
    EXPECT_FALSE(files.exists(kSecondFile));
}

TEST_F(FirstBaselineFlow, theFirstOfThisMacCountsByItsNumber) {
    files.addFile(kBaselineFolder + u"/before-quorvane-10.json"_s, encodeMasterBaseline(ofThisMac(usersOwn(10))));
    files.addFile(kBaselineFolder + u"/before-quorvane-2.json"_s, encodeMasterBaseline(ofThisMac(usersOwn(2))));
    files.addFile(kBaselineFolder + u"/before-quorvane-1.json"_s, encodeMasterBaseline(ofThisMac(usersOwn(1))));
    files.addFile(kBaselineFolder + u"/before-quorvane-x.json"_s, encodeMasterBaseline(ofThisMac(usersOwn(3))));
    files.addFile(kFirstFile, encodeMasterBaseline(ofAnotherMac(usersOwn(0))));
    EXPECT_EQ(stored(), ofThisMac(usersOwn(2)));
    EXPECT_EQ(FirstBaselines(files, machine).all().size(), 3);
}

// ---- The ways back

TEST_F(FirstBaselineFlow, theWaysBackUseItWhereThereIsNoOtherOfThisMac) {
    files.addFile(kFirstFile, encodeMasterBaseline(ofThisMac(usersOwn(1))));
    EXPECT_EQ(found(), (RestoreBaseline{usersOwn(1), RestoreSource::First}));
    EXPECT_EQ(readOwnSettings(host).captured, usersOwn(1));
    saveBaseline(kHomeBaseline, usersOwn(2), u"Studio"_s, kOtherMacId);
    EXPECT_EQ(found(), (RestoreBaseline{usersOwn(1), RestoreSource::First})) << "before another Mac's";
    saveBaseline(kHomeBaseline, usersOwn(0), u"Before"_s, machine.id);
    EXPECT_EQ(found(), (RestoreBaseline{usersOwn(0), RestoreSource::Baseline})) << "though that is older";
    EXPECT_EQ(readOwnSettings(host).captured, usersOwn(0));
    save(usersOwn(3));
    EXPECT_EQ(found(), (RestoreBaseline{usersOwn(3)}));
}

TEST_F(FirstBaselineFlow, aMigratedHomesIsNotUsed) {
    files.addFile(kFirstFile, encodeMasterBaseline(ofAnotherMac(usersOwn())));
    EXPECT_EQ(found(), std::nullopt);
    EXPECT_EQ(readOwnSettings(host).captured, std::nullopt);
}

TEST_F(FirstBaselineFlow, aWayBackSaysWhichItUses) {
    SystemSnapshot first = usersOwn();
    first.label = kBeforeQuorvane;
    files.addFile(kFirstFile, encodeMasterBaseline(ofThisMac(first)));
    EXPECT_EQ(QCoro::waitFor(system.revertPerformanceTweaks()), (RestoreOutcome{true, RestoreSource::First}));
    EXPECT_TRUE(takeTrace().startsWith(u"  [INFO] Using your settings as they were before Quorvane.\n"
                                       "\nRestoring from saved system snapshot (Before Quorvane)...\n"_s));
    first.label = kFirstSeen;
    files.addFile(kFirstFile, encodeMasterBaseline(ofThisMac(first)));
    QCoro::waitFor(system.selectRestoreBaseline());
    EXPECT_EQ(takeTrace(), u"  [INFO] Using your settings as Quorvane first saw them.\n"_s);
}

// ---- The one that the user has chosen

TEST_F(FirstBaselineFlow, theChosenOneGoesBeforeAllOthers) {
    save(usersOwn(3));
    choose(ofThisMac(usersOwn(1)), timeAt(3));
    EXPECT_EQ(found(), (RestoreBaseline{usersOwn(1), RestoreSource::Chosen}));
    EXPECT_EQ(readOwnSettings(host).captured, usersOwn(1));
    QCoro::waitFor(system.selectRestoreBaseline());
    EXPECT_EQ(takeTrace(), u"  [INFO] Using the restore baseline that you have chosen.\n"_s);
}

TEST_F(FirstBaselineFlow, anotherMacsMayBeChosenAndIsSaid) {
    save(usersOwn(3));
    choose(ofAnotherMac(usersOwn(1)), timeAt(4));
    EXPECT_EQ(found(), (RestoreBaseline{usersOwn(1), RestoreSource::Chosen, false, u"Studio"_s}));
    QCoro::waitFor(system.selectRestoreBaseline());
    EXPECT_EQ(takeTrace(), u"  [INFO] Using the restore baseline that you have chosen.\n"
                           "  [INFO] This baseline was saved on Studio.\n"_s);
}

TEST_F(FirstBaselineFlow, whatIsCapturedLaterEndsTheChoice) {
    choose(ofThisMac(usersOwn(1)), timeAt(4));
    files.addFile(kFirstFile, encodeMasterBaseline(ofThisMac(usersOwn(9))));
    EXPECT_EQ(found()->source, RestoreSource::Chosen) << "what was captured unasked is no later wish";
    saveBaseline(kHomeBaseline, usersOwn(50), u"Studio"_s, kOtherMacId);
    EXPECT_EQ(found()->source, RestoreSource::Chosen) << "nor is another Mac's";
    save(usersOwn(5));
    EXPECT_EQ(found(), (RestoreBaseline{usersOwn(5)}));
    files.remove(kSnapshotFile);
    saveBaseline(kHomeBaseline, usersOwn(5), u"Before"_s, machine.id);
    EXPECT_EQ(found()->source, RestoreSource::Baseline);
}

TEST_F(FirstBaselineFlow, aCaptureEndsTheChoiceAlsoWhereTheClockWasSetBack) {
    choose(ofThisMac(usersOwn(1)), clock.time.addDays(300));
    EXPECT_TRUE(QCoro::waitFor(system.captureSystemSnapshot({}, MasterArchive::No)).isSaved);
    EXPECT_FALSE(files.exists(kChosenFile));
    EXPECT_EQ(found()->source, RestoreSource::Snapshot);
}

TEST_F(FirstBaselineFlow, aDamagedChoiceIsNone) {
    save(usersOwn(3));
    for (const QByteArray& damaged :
         {QByteArray("{ cut o"), QByteArray("{}"), QByteArray("{\"chosenAt\": \"2026-03-14T20:30:00Z\"}"),
          QByteArray("{\"chosenAt\": \"2026-03-14T20:30:00Z\", \"baseline\": {}}")}) {
        files.addFile(kChosenFile, damaged);
        EXPECT_EQ(found(), (RestoreBaseline{usersOwn(3)})) << damaged.constData();
    }
}

} // namespace quorvane
