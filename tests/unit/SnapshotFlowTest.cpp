#include "fakes/ReadingLines.h"
#include "fakes/ScriptedLoginItems.h"

#include "core/Json.h"
#include "snapshots/RestoreBaseline.h"
#include "snapshots/SnapshotManager.h"

namespace quorvane {

namespace {

using Archive = SystemManager::MasterArchive;

const QString kSnapshotFile = u"/Users/alex/Library/Application Support/Quorvane/system_snapshot.json"_s;
const QString kContainer = u"/Users/alex/Library/Mobile Documents/7KX2MR04TD~com~quorvane~app"_s;

const QStringList kPreferenceReadings = reading::kPreferences;

class SnapshotFlow : public ScriptedStartup {
protected:
    SnapshotCapture captured(const std::optional<QString>& label = {}, Archive archive = Archive::No) {
        return QCoro::waitFor(system.captureSystemSnapshot(label, archive));
    }
    bool capture(const std::optional<QString>& label = {}, Archive archive = Archive::No) {
        return captured(label, archive).isSaved;
    }
    /// The same line will get an outcome that is no answer; the others are as before.
    void loseAnswer(const QString& line, const CommandOutcome& outcome) {
        commands.respond = [line, outcome, respond = commands.respond](const QStringList& arguments) {
            const bool isMeant =
                line == u"osascript" ? arguments.first().endsWith(line) : commandLine(arguments) == line;
            return isMeant ? outcome : respond(arguments);
        };
    }
    std::optional<SystemSnapshot> stored() { return SnapshotManager(files, machine).load(); }

    /// A Mac on which every setting has a value.
    void answerEverything() {
        loginItems.items = {{u"Live"_s, u"/Applications/Live.app"_s, false},
                            {u"Dropbox"_s, u"/Applications/Dropbox.app"_s, true}};
        commands.print(u"/usr/sbin/networksetup -listallnetworkservices"_s,
                       "An asterisk (*) denotes that a network service is disabled.\nWi-Fi\n*Ethernet\nBob's iPhone\n");
        commands.print(u"/usr/sbin/networksetup -getnetworkserviceenabled Wi-Fi"_s, "Enabled\n");
        commands.print(u"/usr/sbin/networksetup -getnetworkserviceenabled Ethernet"_s, "Disabled\n");
        commands.print(u"/usr/sbin/networksetup -getnetworkserviceenabled \"Bob's iPhone\""_s, "Enabled\n");
        commands.print(reading::kPower, "AC Power:\n standby  1\n disksleep 10\n sleep 5\n sms 1\n");
        int number = 0;
        for (const QString& line : kPreferenceReadings) {
            commands.print(line, "value " + QByteArray::number(++number) + "\n");
        }
        setAutomaticBackups(true);
        commands.print(reading::kSpotlightOfAll, reading::indexing("Indexing enabled. ") +
                                                     "/Volumes/Samples:\n\tIndexing and searching disabled.\n"
                                                     "/Volumes/Tape:\n\tNo index.\n");
    }
    static QByteArray exportedList(const QByteArray& entries) {
        return "<plist version=\"1.0\"><dict>" + entries + "</dict></plist>\n";
    }
    /// A Mac on which every tool fails.
    void failEverything() {
        commands.respond = [](const QStringList&) {
            CommandOutcome failed = ScriptedCommandLauncher::succeeded("garbage\n");
            failed.code = 1;
            return std::optional(failed);
        };
    }
};

} // namespace

TEST_F(SnapshotFlow, readsTheWholeSystemInAFixedOrder) {
    answerEverything();
    EXPECT_TRUE(capture(u"Before the tour"_s));
    EXPECT_EQ(takeTrace(), u"\nCapturing system snapshot...\n"
                           "$> System Events: list\n"
                           "$> /usr/sbin/networksetup -listallnetworkservices\n"
                           "$> /usr/sbin/networksetup -getnetworkserviceenabled Wi-Fi\n"
                           "$> /usr/sbin/networksetup -getnetworkserviceenabled Ethernet\n"
                           "$> /usr/sbin/networksetup -getnetworkserviceenabled \"Bob's iPhone\"\n"_s +
                               reading::traced(QStringList{reading::kPower} + kPreferenceReadings +
                                               QStringList{reading::kTimeMachine, reading::kSpotlightOfAll} +
                                               reading::kTypesOfPreferences) +
                               u"  [SNAPSHOT] Saved system baseline for \"Before the tour\".\n"_s);
}

TEST_F(SnapshotFlow, storesWhatItRead) {
    answerEverything();
    EXPECT_TRUE(capture(u"Before the tour"_s));
    const std::optional<SystemSnapshot> snapshot = stored();
    ASSERT_TRUE(snapshot);
    EXPECT_FALSE(snapshot->id.isNull());
    EXPECT_EQ(snapshot->dateCreated, clock.time);
    EXPECT_EQ(snapshot->label, u"Before the tour"_s);
    int number = 0;
    for (const SnapshotPreference& preference : snapshotPreferences()) {
        EXPECT_EQ(preference.in(*snapshot), CapturedValue{u"value %1"_s.arg(++number)}) << preference.jsonKey;
    }
    EXPECT_EQ(snapshot->pmsetStandby, u"1"_s);
    EXPECT_EQ(snapshot->pmsetDisksleep, u"10"_s);
    EXPECT_EQ(snapshot->pmsetSleep, u"5"_s);
    EXPECT_EQ(snapshot->pmsetSms, u"1"_s);
    EXPECT_EQ(snapshot->powerBySource,
              (QMap<QString, PowerSettings>{{u"AC Power"_s, {u"1"_s, u"10"_s, u"5"_s, u"1"_s}}}));
    EXPECT_EQ(snapshot->timeMachineEnabled, true);
    EXPECT_EQ(snapshot->spotlightIndexingEnabled, true);
    EXPECT_EQ(snapshot->spotlightByVolume,
              (QMap<QString, QString>{
                  {u"/"_s, u"on"_s}, {u"/System/Volumes/Data"_s, u"on"_s}, {u"/Volumes/Samples"_s, u"search off"_s}}));
    EXPECT_EQ(snapshot->networkServicesEnabled,
              (QMap<QString, bool>{{u"Wi-Fi"_s, true}, {u"Ethernet"_s, false}, {u"Bob's iPhone"_s, true}}));
    EXPECT_EQ(snapshot->loginItems, (QList<LoginItemSnapshot>{{u"Live"_s, u"/Applications/Live.app"_s, false},
                                                              {u"Dropbox"_s, u"/Applications/Dropbox.app"_s, true}}));
}

TEST_F(SnapshotFlow, keepsWhetherAutomaticBackupsAreMadeAndNotWhetherOneRuns) {
    answerEverything();
    for (const bool isRunning : {true, false}) {
        commands.print(reading::kBackupStatus, isRunning ? "    Running = 1;\n" : "    Running = 0;\n");
        for (const bool areOn : {true, false}) {
            setAutomaticBackups(areOn);
            capture();
            EXPECT_EQ(stored()->timeMachineEnabled, areOn);
        }
    }
    EXPECT_FALSE(takeTrace().contains(reading::kBackupStatus));
}

TEST_F(SnapshotFlow, leavesOutBackupsThatAreNotSetUpOrMayNotBeRead) {
    answerEverything();
    makeBackupsUnreadable();
    EXPECT_TRUE(capture());
    EXPECT_EQ(stored()->timeMachineEnabled, std::nullopt);
    EXPECT_TRUE(takeTrace().endsWith(
        u"$> /usr/bin/tmutil destinationinfo\n"
        "  [INFO] Time Machine may not be read.\n"
        "  [INFO] Allow Quorvane to read it in System Settings › Privacy & Security › Full Disk Access.\n"
        "$> /usr/bin/mdutil -a -s\n"_s +
        reading::traced(reading::kTypesOfPreferences) + u"  [SNAPSHOT] Saved system baseline.\n"_s));
    setBackupDestination(false);
    EXPECT_TRUE(capture());
    EXPECT_EQ(stored()->timeMachineEnabled, std::nullopt);
    EXPECT_FALSE(takeTrace().contains(u"may not be read"_s));
}

TEST_F(SnapshotFlow, keepsTheTextOfATruthValue) {
    answerEverything();
    commands.print(reading::kAppNap, "1\n");
    capture();
    EXPECT_EQ(stored()->appNapDisabled, u"1"_s);
    EXPECT_TRUE(files.read(kSnapshotFile).contains("\"appNapDisabled\": \"1\""));
}

TEST_F(SnapshotFlow, recordsWhatAToolCannotTellAsHavingNoValue) {
    failEverything();
    EXPECT_TRUE(capture());
    EXPECT_EQ(parseJson(files.read(kSnapshotFile)).size(), 6U); // id, date, and four keys that are known not to be set
}

TEST_F(SnapshotFlow, leavesOutAServiceWhoseStateIsNeither) {
    answerEverything();
    commands.print(u"/usr/sbin/networksetup -getnetworkserviceenabled Ethernet"_s, "??\n");
    capture();
    EXPECT_EQ(stored()->networkServicesEnabled, (QMap<QString, bool>{{u"Wi-Fi"_s, true}, {u"Bob's iPhone"_s, true}}));
}

TEST_F(SnapshotFlow, readsTheLoginItemsAfresh) {
    loginItems.items = {{u"Old"_s, u"/Applications/Old.app"_s, false}};
    QCoro::waitFor(system.rawLoginItems());
    loginItems.items = {{u"New"_s, u"/Applications/New.app"_s, false}};
    capture();
    EXPECT_EQ(stored()->loginItems, (QList<LoginItemSnapshot>{{u"New"_s, u"/Applications/New.app"_s, false}}));
}

TEST_F(SnapshotFlow, saysWhatItSavedAndTellsTheProgram) {
    capture();
    EXPECT_EQ(system.logMessages().last(), u"  [SNAPSHOT] Saved system baseline."_s);
    capture(u"Tour"_s);
    EXPECT_EQ(system.logMessages().last(), u"  [SNAPSHOT] Saved system baseline for \"Tour\"."_s);
    const QList<QPair<QString, QVariantMap>> expected{{u"QuorvaneRestoreBaselineSaved"_s, {}},
                                                      {u"QuorvaneRestoreBaselineSaved"_s, {{u"label"_s, u"Tour"_s}}}};
    EXPECT_EQ(posted, expected);
}

TEST_F(SnapshotFlow, keepsTheOldSnapshotWhenTheNewOneCannotBeSaved) {
    capture(u"old"_s);
    posted.clear();
    files.failOn(MemoryFileManager::Operation::Write, kSnapshotFile);
    EXPECT_FALSE(capture(u"new"_s, Archive::Yes));
    EXPECT_EQ(system.logMessages().last(),
              u"  [ERROR] Failed to save snapshot: "_s + kSnapshotFile + u": Operation not permitted"_s);
    EXPECT_TRUE(posted.isEmpty());
    EXPECT_EQ(stored()->label, u"old"_s);
    EXPECT_FALSE(files.exists(u"/Users/alex/.quorvane"_s));
}

// ---- Types

TEST_F(SnapshotFlow, asksForTheTypesOfWhatIsSetAndOfNothingElse) {
    commands.respond = [respond = commands.respond](const QStringList& arguments) {
        CommandOutcome missing = ScriptedCommandLauncher::succeeded({});
        missing.code = 1;
        const bool isSet = commandLine(arguments) == reading::kCrashReporter;
        return isSet || !arguments.contains(u"read"_s) ? respond(arguments) : std::optional(missing);
    };
    EXPECT_TRUE(capture());
    EXPECT_TRUE(takeTrace().endsWith(
        reading::traced({reading::kSpotlightOfAll, u"/usr/bin/defaults export com.apple.CrashReporter -"_s}) +
        u"  [SNAPSHOT] Saved system baseline.\n"_s));
}

TEST_F(SnapshotFlow, keepsEachPreferenceAsTheValueThatItIs) {
    answerEverything();
    commands.print(reading::kAppNap, "1\n");
    commands.print(reading::kKeptWindows, "padded\n");
    commands.print(reading::kSounds, "0.5\n");
    commands.print(reading::kDoNotDisturb, "(\n    1\n)\n");
    commands.print(reading::kTypesOfPreferences[0],
                   exportedList("<key>NSAppSleepDisabled</key><integer>1</integer>"
                                "<key>NSQuitAlwaysKeepsWindows</key><string> padded\n</string>"
                                "<key>com.apple.sound.uiaudio.enabled</key><real>0.5</real>"));
    commands.print(reading::kTypesOfPreferences[6],
                   exportedList("<key>doNotDisturb</key><array><integer>1</integer></array>"));
    EXPECT_TRUE(capture());
    EXPECT_EQ(stored()->typedPreferences,
              (TypedValues{
                  {u"NSGlobalDomain NSAppSleepDisabled"_s, *TypedValue::ofXml(u"<integer>1</integer>"_s)},
                  {u"NSGlobalDomain NSQuitAlwaysKeepsWindows"_s, *TypedValue::ofXml(u"<string> padded\n</string>"_s)},
                  {u"NSGlobalDomain com.apple.sound.uiaudio.enabled"_s, *TypedValue::ofXml(u"<real>0.5</real>"_s)},
                  {u"-currentHost com.apple.notificationcenterui doNotDisturb"_s,
                   *TypedValue::ofXml(u"<array><integer>1</integer></array>"_s)}}));
    EXPECT_EQ(stored()->quitAlwaysKeepsWindows, u"padded"_s);
    EXPECT_EQ(stored()->doNotDisturb, u"(\n    1\n)"_s);
    EXPECT_FALSE(takeTrace().contains(u"[INFO]"_s));
}

TEST_F(SnapshotFlow, takesTheLaterValueWhereTheWorldHasMovedBetweenTheReads) {
    answerEverything();
    commands.print(reading::kAppNap, "1\n");
    commands.print(reading::kTypesOfPreferences[0], exportedList("<key>NSAppSleepDisabled</key><string>no </string>"));
    EXPECT_TRUE(capture());
    EXPECT_EQ(stored()->appNapDisabled, u"no"_s);
    EXPECT_EQ(
        stored()->typedPreferences->value(u"NSGlobalDomain NSAppSleepDisabled"_s, *TypedValue::ofXml(u"<true/>"_s)),
        *TypedValue::ofXml(u"<string>no </string>"_s));
    commands.print(reading::kTypesOfPreferences[0], exportedList(""));
    EXPECT_TRUE(capture());
    EXPECT_EQ(stored()->appNapDisabled, u"1"_s);
    EXPECT_EQ(stored()->typedPreferences, std::nullopt);
}

TEST_F(SnapshotFlow, isASnapshotWithoutTheTypesAsWell) {
    answerEverything();
    commands.print(reading::kDoNotDisturb, "{length = 4, bytes = 0xdeadbeef}\n");
    for (const QString& line : reading::kTypesOfPreferences) {
        commands.print(line, "<plist><dict><key>NSAppSleepDisabled</key><tr");
    }
    for (const CommandOutcome& outcome : ScriptedCommandLauncher::unanswered()) {
        const auto respond = commands.respond;
        loseAnswer(reading::kTypesOfPreferences[0], outcome);
        EXPECT_TRUE(capture());
        EXPECT_EQ(stored()->typedPreferences, std::nullopt);
        EXPECT_EQ(stored()->appNapDisabled, u"value 1"_s);
        EXPECT_EQ(system.logMessages().last(), u"  [INFO] Saved as text only, because the type could not be read: "
                                               "-currentHost com.apple.notificationcenterui doNotDisturb"_s);
        commands.respond = respond;
    }
}

// ---- Captures that couldn't ask

TEST_F(SnapshotFlow, keepsTheOldSnapshotWhereSystemEventsDoesNotSay) {
    answerEverything();
    capture(u"old"_s);
    const QByteArray before = files.read(kSnapshotFile);
    const auto expectKept = [&](const QStringList& log) {
        posted.clear();
        const qsizetype logged = system.logMessages().size() + 1;
        EXPECT_EQ(captured(u"new"_s, Archive::Yes), SnapshotCapture());
        EXPECT_EQ(files.read(kSnapshotFile), before);
        EXPECT_EQ(system.logMessages().mid(logged), log + QStringList(u"  [ERROR] Failed to save snapshot: Could not "
                                                                      "read login items."_s));
        EXPECT_TRUE(posted.isEmpty());
        EXPECT_FALSE(files.exists(u"/Users/alex/.quorvane"_s));
    };
    const auto permissionLines = [](const QString& text) {
        return QStringList{
            u"  [ERROR] Could not read login items: "_s + text,
            u"  [INFO] Grant Automation permission for System Events in System Settings → Privacy & Security."_s};
    };
    const QList<std::pair<const char*, QString>> listings{
        {"ERROR|-1712|AppleEvent timed out.\n", u"AppleEvent timed out."_s},
        {"ERROR|-1743|Not authorized.\n", u"Not authorized."_s},
        {"something else\n", u"The answer of System Events isn’t understood."_s}};
    for (const auto& [listing, text] : listings) {
        loginItems.listing = listing;
        expectKept(permissionLines(text));
    }
    loginItems.denial = "Not authorized to send Apple events to System Events.";
    expectKept(permissionLines(u"Not authorized to send Apple events to System Events."_s));
    loginItems.denial.clear();
    loginItems.listing.clear();
    EXPECT_TRUE(capture(u"new"_s));
}

TEST_F(SnapshotFlow, keepsTheOldSnapshotWhateverToolDoesNotAnswer) {
    answerEverything();
    capture(u"old"_s);
    const QByteArray before = files.read(kSnapshotFile);
    const auto respond = commands.respond;
    const QStringList lines = QStringList{u"osascript"_s,
                                          u"/usr/sbin/networksetup -listallnetworkservices"_s,
                                          u"/usr/sbin/networksetup -getnetworkserviceenabled Ethernet"_s,
                                          reading::kPower,
                                          reading::kTimeMachine,
                                          reading::kSpotlightOfAll} +
                              kPreferenceReadings;
    for (const QString& line : lines) {
        SCOPED_TRACE(line.toStdString());
        for (const CommandOutcome& outcome : ScriptedCommandLauncher::unanswered()) {
            loseAnswer(line, outcome);
            EXPECT_FALSE(capture(u"new"_s));
            const QString name = line == u"osascript" ? u"login items"_s : QString(line).remove(u'"');
            EXPECT_EQ(system.logMessages().last(),
                      u"  [ERROR] Failed to save snapshot: Could not read "_s + name + u'.');
            EXPECT_EQ(files.read(kSnapshotFile), before);
            commands.respond = respond;
        }
    }
    EXPECT_TRUE(capture(u"new"_s));
}

TEST_F(SnapshotFlow, withoutAnOldSnapshotLeavesOutWhatItCouldNotAskFor) {
    answerEverything();
    loginItems.denial = "Not authorized";
    loseAnswer(reading::kPower, ScriptedCommandLauncher::unanswered().first());
    EXPECT_EQ(captured({}, Archive::Yes), (SnapshotCapture{true, false}));
    EXPECT_EQ(system.logMessages().mid(1),
              (QStringList{
                  u"  [ERROR] Could not read login items: Not authorized"_s,
                  u"  [INFO] Grant Automation permission for System Events in System Settings → Privacy & Security."_s,
                  u"  [SNAPSHOT] Saved system baseline."_s,
                  u"  [INFO] Not part of this snapshot, because it could not be read: login items, "
                  "/usr/bin/pmset -g custom"_s,
                  u"  [ERROR] Could not archive master baseline: Could not read login items, "
                  "/usr/bin/pmset -g custom."_s}));
    ASSERT_TRUE(stored());
    EXPECT_EQ(stored()->loginItems, std::nullopt);
    EXPECT_EQ(stored()->pmsetStandby, std::nullopt);
    EXPECT_EQ(stored()->appNapDisabled, u"value 1"_s);
    EXPECT_FALSE(files.exists(u"/Users/alex/.quorvane"_s));
    trace.clear();
    QCoro::waitFor(system.reinstateWholeSystem());
    EXPECT_TRUE(trace.filter(u"System Events"_s).isEmpty()) << "the login items are left alone";
}

TEST_F(SnapshotFlow, withoutAnOldSnapshotIsNotSavedWithoutAPreference) {
    answerEverything();
    for (const QString& line : kPreferenceReadings) {
        const auto respond = commands.respond;
        loseAnswer(line, ScriptedCommandLauncher::unanswered().first());
        EXPECT_FALSE(capture());
        EXPECT_FALSE(stored());
        commands.respond = respond;
    }
    EXPECT_TRUE(capture());
}

TEST_F(SnapshotFlow, keepsTheOldSnapshotWhenTheProgramQuitsMeanwhile) {
    answerEverything();
    capture(u"old"_s);
    commands.shutDown();
    failEverything(); // as every tool does that is ended
    EXPECT_FALSE(capture(u"new"_s, Archive::Yes));
    EXPECT_EQ(system.logMessages().last(), u"  [ERROR] Failed to save snapshot: The program is quitting."_s);
    EXPECT_EQ(stored()->label, u"old"_s);
    EXPECT_FALSE(files.exists(u"/Users/alex/.quorvane"_s));
}

TEST_F(SnapshotFlow, failsWhereTheClockIsBeyondAllFiles) {
    clock.time = QDateTime(QDate(12026, 1, 1), QTime(0, 0), Qt::UTC);
    EXPECT_FALSE(capture());
    EXPECT_EQ(system.logMessages().last(), u"  [ERROR] Failed to save snapshot: The date can't be written."_s);
}

TEST_F(SnapshotFlow, ofAClockThatWentBackReplacesTheSnapshotAllTheSame) {
    capture(u"first"_s);
    clock.time = clock.time.addDays(-400);
    EXPECT_TRUE(capture(u"second"_s));
    EXPECT_EQ(stored()->label, u"second"_s);
}

// ---- The master baseline

TEST_F(SnapshotFlow, isArchivedForGoodOnRequest) {
    EXPECT_TRUE(capture(u"Master baseline"_s, Archive::Yes));
    EXPECT_EQ(
        system.logMessages().mid(system.logMessages().size() - 2),
        (QStringList{
            u"  [SNAPSHOT] Saved system baseline for \"Master baseline\"."_s,
            u"  [MASTER] Archived protected baseline as master-baseline-2026-03-14T20:30:00Z.json (~/.quorvane)."_s}));
    const MasterSystemBaseline baseline =
        decodeMasterBaseline(files.read(u"/Users/alex/.quorvane/master-baseline-current.json"_s));
    EXPECT_EQ(baseline.snapshot, stored());
    EXPECT_EQ(baseline.label, u"Master baseline"_s);
    EXPECT_EQ(baseline.deviceName, u"Studio"_s);
    EXPECT_EQ(baseline.capturedAt, clock.time);
}

TEST_F(SnapshotFlow, isArchivedInICloudForAUserWhoIsSignedIn) {
    cloud.account = true;
    cloud.container = kContainer;
    EXPECT_TRUE(capture({}, Archive::Yes));
    EXPECT_EQ(
        system.logMessages().last(),
        u"  [MASTER] Archived protected baseline as master-baseline-2026-03-14T20:30:00Z.json (iCloud and ~/.quorvane)."_s);
    EXPECT_TRUE(files.exists(kContainer + u"/Documents/Quorvane/SystemBaselines/master-baseline-current.json"_s));
}

TEST_F(SnapshotFlow, isNoWorseForAnArchiveThatFailsAndTellsBoth) {
    cloud.account = true; // without a container
    EXPECT_EQ(captured({}, Archive::Yes), (SnapshotCapture{true, false}));
    const QStringList log = system.logMessages();
    EXPECT_EQ(log.at(log.size() - 2), u"  [SNAPSHOT] Saved system baseline."_s);
    EXPECT_TRUE(log.last().startsWith(u"  [ERROR] Could not archive master baseline: "_s));
    EXPECT_TRUE(stored());
    cloud.account = false;
    EXPECT_EQ(captured({}, Archive::Yes), (SnapshotCapture{true, true}));
    EXPECT_EQ(captured({}, Archive::No), (SnapshotCapture{true, false}));
}

TEST_F(SnapshotFlow, ofOneSecondShareAnArchiveAndTheLastIsGoneBackTo) {
    capture(u"first"_s, Archive::Yes);
    capture(u"second"_s, Archive::Yes);
    EXPECT_EQ(files.list(u"/Users/alex/.quorvane"_s).size(), 2);
    const auto baseline = QCoro::waitFor(system.selectRestoreBaseline());
    ASSERT_TRUE(baseline);
    EXPECT_EQ(baseline->source, RestoreSource::Snapshot);
    EXPECT_EQ(baseline->snapshot.label, u"second"_s);
    EXPECT_FALSE(system.logMessages().last().contains(u"[MASTER] Using"_s));
}

} // namespace quorvane
