#include "fakes/ReadingLines.h"
#include "fakes/ScriptedSystem.h"

#include "core/UserDefaultKeys.h"

#include "readings/ManagedPreferences.h"
#include "readings/PowerSettings.h"
#include "readings/SpotlightState.h"

namespace quorvane {

namespace {

using PreferenceHost = SystemManager::PreferenceHost;

const QString kRead = u"/usr/bin/defaults read com.example.app key"_s;

class Readings : public ScriptedSystem {
protected:
    std::optional<QString> value(PreferenceHost place = PreferenceHost::Any) {
        return QCoro::waitFor(system.readDefaultValue(u"com.example.app"_s, u"key"_s, place)).value;
    }
    std::optional<QString> valuePrinted(const QByteArray& output) {
        commands.print(kRead, output);
        return value();
    }
    std::optional<PowerSettings> power() { return QCoro::waitFor(system.readPowerSettings()).value; }
    std::optional<TimeMachineState> timeMachine() { return QCoro::waitFor(system.readTimeMachineState()).value; }
    std::optional<bool> spotlight() { return QCoro::waitFor(system.readSpotlightState()).value; }
};

/// Some output with a status that says not to believe it.
CommandOutcome failedWith(const QByteArray& output) {
    CommandOutcome outcome = ScriptedCommandLauncher::succeeded(output);
    outcome.code = 1;
    return outcome;
}

} // namespace

// ---- Preferences

TEST_F(Readings, aPreferenceIsReadByTheDefaultsTool) {
    value();
    value(PreferenceHost::Current);
    QCoro::waitFor(system.readDefaultValue(u"com.apple.assistant.support"_s, u"Assistant Enabled"_s));
    EXPECT_EQ(takeTrace(), u"$> /usr/bin/defaults read com.example.app key\n"
                           "$> /usr/bin/defaults -currentHost read com.example.app key\n"
                           "$> /usr/bin/defaults read com.apple.assistant.support \"Assistant Enabled\"\n"_s);
}

TEST_F(Readings, aPreferenceIsTheTextThatTheToolPrints) {
    EXPECT_EQ(valuePrinted("1\n"), u"1"_s);
    EXPECT_EQ(valuePrinted("0\n"), u"0"_s);
    EXPECT_EQ(valuePrinted("Disabled\n"), u"Disabled"_s);
    EXPECT_EQ(valuePrinted("\n \t  two  words \n\n"), u"two  words"_s);
    EXPECT_EQ(valuePrinted("(\n    a,\n    \"b c\"\n)\n"), u"(\n    a,\n    \"b c\"\n)"_s);
    EXPECT_EQ(valuePrinted(""), u""_s);
    EXPECT_EQ(valuePrinted("\n"), u""_s);
}

TEST_F(Readings, aPreferenceThatCannotBeReadIsNone) {
    commands.answer(kRead, failedWith("1\n"));
    EXPECT_EQ(value(), std::nullopt);
    CommandOutcome missing;
    missing.launchError = u"no such tool"_s;
    commands.answer(kRead, missing);
    EXPECT_EQ(value(), std::nullopt);
}

// ---- No answer

TEST_F(Readings, aToolThatDoesNotAnswerIsToldApartFromAMissingValue) {
    const QStringList lines{kRead, u"/usr/bin/pmset -g custom"_s, reading::kTimeMachine, reading::kBackupDestination,
                            reading::kSpotlight};
    const auto answered = [this] {
        return QList<bool>{QCoro::waitFor(system.readDefaultValue(u"com.example.app"_s, u"key"_s)).isAnswered,
                           QCoro::waitFor(system.readPowerSettings()).isAnswered,
                           QCoro::waitFor(system.readTimeMachineState()).isAnswered,
                           QCoro::waitFor(system.readSpotlightState()).isAnswered};
    };
    for (const QString& line : lines) {
        commands.fail(line, 1);
    }
    EXPECT_EQ(answered(), QList<bool>(4, true));
    for (const CommandOutcome& outcome : ScriptedCommandLauncher::unanswered()) {
        for (const QString& line : lines) {
            commands.answer(line, outcome);
        }
        EXPECT_EQ(answered(), QList<bool>(4, false));
        EXPECT_EQ(value(), std::nullopt);
    }
}

// ---- Power

TEST_F(Readings, powerSettingsComeFromPmset) {
    commands.print(u"/usr/bin/pmset -g custom"_s, "AC Power:\n standby  1\n disksleep 10\n sleep 0\n sms 1\n");
    EXPECT_EQ(power(), (PowerSettings{u"1"_s, u"10"_s, u"0"_s, u"1"_s}));
    EXPECT_EQ(takeTrace(), u"$> /usr/bin/pmset -g custom\n"_s);
}

TEST_F(Readings, aListOfPowerSettingsWithoutAnyIsNoList) {
    for (const char* output : {"", "\n", "AC Power:\n", "Battery Power:\nAC Power:\n"}) {
        commands.print(u"/usr/bin/pmset -g custom"_s, output);
        EXPECT_EQ(power(), std::nullopt) << output;
    }
    commands.print(u"/usr/bin/pmset -g custom"_s, "AC Power:\n womp                 1\n");
    EXPECT_EQ(power(), PowerSettings());
}

TEST_F(Readings, powerSettingsThatCannotBeReadAreNone) {
    commands.answer(u"/usr/bin/pmset -g custom"_s, failedWith("AC Power:\n standby  1\n sleep 0\n"));
    EXPECT_EQ(power(), std::nullopt);
}

// ---- Time Machine

TEST_F(Readings, timeMachineIsWhatIsStoredWhetherOrNotABackupRuns) {
    for (const char* running : {"    Running = 1;\n", "    Running = 0;\n"}) {
        commands.print(reading::kBackupStatus, running);
        for (const auto& [stored, state] : {std::pair{"1\n", std::optional(TimeMachineState::On)},
                                            {"0\n", std::optional(TimeMachineState::Off)},
                                            {"on the moon\n", std::optional<TimeMachineState>()},
                                            {"\n", std::optional<TimeMachineState>()}}) {
            commands.print(reading::kTimeMachine, stored);
            EXPECT_EQ(timeMachine(), state) << stored;
            EXPECT_EQ(takeTrace(), reading::traced({reading::kTimeMachine}));
        }
    }
}

TEST_F(Readings, timeMachineWithoutASettingIsOffOrNotSetUp) {
    const auto expectByDestination = [this](const QStringList& lines) {
        setBackupDestination(true);
        EXPECT_EQ(timeMachine(), TimeMachineState::Off);
        EXPECT_EQ(takeTrace(), reading::traced(lines));
        setBackupDestination(false);
        EXPECT_EQ(timeMachine(), TimeMachineState::NotSetUp);
        commands.print(reading::kBackupDestination, "tmutil: No destinations configured.\n"); // as other systems say it
        EXPECT_EQ(timeMachine(), TimeMachineState::NotSetUp);
        for (const CommandOutcome& nothing : {ScriptedCommandLauncher::succeeded(" \n"), failedWith("Name : Tape\n")}) {
            commands.answer(reading::kBackupDestination, nothing);
            EXPECT_EQ(timeMachine(), std::nullopt);
        }
        trace.clear();
    };
    commands.fail(reading::kTimeMachine, 1);
    expectByDestination({reading::kTimeMachine, reading::kBackupDestination});
    files.removeAsRoot(kTimeMachineSettings);
    expectByDestination({reading::kBackupDestination});
}

TEST_F(Readings, timeMachineThatMayNotBeReadIsNeverOff) {
    makeBackupsUnreadable();
    EXPECT_EQ(timeMachine(), TimeMachineState::NotPermitted);
    EXPECT_EQ(takeTrace(), reading::traced({reading::kBackupDestination}));
    commands.fail(reading::kBackupDestination, 1);
    EXPECT_EQ(timeMachine(), TimeMachineState::NotPermitted);
    setBackupDestination(false);
    EXPECT_EQ(timeMachine(), TimeMachineState::NotSetUp);
}

TEST_F(Readings, timeMachineWhoseFileIsDamagedIsUnknown) {
    files.removeAsRoot(kTimeMachineSettings);
    files.addFolders(kTimeMachineSettings); // can't be read, and not for want of a right
    EXPECT_EQ(timeMachine(), std::nullopt);
    setBackupDestination(false);
    EXPECT_EQ(timeMachine(), TimeMachineState::NotSetUp);
}

TEST_F(Readings, ofTimeMachineNoAnswerIsNeverAState) {
    for (const CommandOutcome& outcome : ScriptedCommandLauncher::unanswered()) {
        commands.fail(reading::kTimeMachine, 1);
        commands.answer(reading::kBackupDestination, outcome);
        EXPECT_EQ(QCoro::waitFor(system.readTimeMachineState()), Reading<TimeMachineState>::unanswered());
        setBackupDestination(true);
        commands.answer(reading::kTimeMachine, outcome);
        EXPECT_EQ(QCoro::waitFor(system.readTimeMachineState()), Reading<TimeMachineState>::unanswered());
    }
}

TEST_F(Readings, theNoteThatBackupsWereSwitchedOffEndsWhenTheyAreSeenOn) {
    const auto isNoted = [this] { return defaults.boolean(kQuorvaneSwitchedBackupsOff); };
    defaults.setBoolean(kQuorvaneSwitchedBackupsOff, true);
    timeMachine();
    EXPECT_TRUE(isNoted());
    setAutomaticBackups(true);
    timeMachine();
    EXPECT_FALSE(isNoted());
}

// ---- Spotlight

TEST_F(Readings, spotlightIsOnWhereIndexingIsEnabledInAnyCase) {
    for (const char* output : {"/:\n\tIndexing enabled. \n", "/:\n\tINDEXING ENABLED.\n"}) {
        commands.print(reading::kSpotlight, output);
        EXPECT_EQ(spotlight(), true) << output;
    }
    for (const char* output : {"/:\n\tIndexing disabled.\n", "/:\n\tIndexing and searching disabled.\n"}) {
        commands.print(reading::kSpotlight, output);
        EXPECT_EQ(spotlight(), false) << output;
    }
    EXPECT_EQ(trace.first(), u"$> /usr/bin/mdutil -s / /System/Volumes/Data"_s);
}

TEST_F(Readings, spotlightIsUnknownWhereItIsNeitherEnabledNorDisabled) {
    for (const char* output :
         {"/:\n\tError: unknown indexing state.\n", "/:\n\tNo index.\n", "/:\n\tIndex is read-only.\n",
          "/:\n\tError: unexpected indexing state.  kMDConfigSearchLevelTransitioning\n",
          "Spotlight server is disabled.\n", "Error: invalid path `/'.\n", "/Volumes/Indexing enabled:\n\tNo index.\n",
          ""}) {
        commands.print(reading::kSpotlight, output);
        EXPECT_EQ(spotlight(), std::nullopt) << output;
    }
}

TEST_F(Readings, spotlightThatCannotBeReadIsNone) {
    commands.answer(reading::kSpotlight, failedWith("/:\n\tIndexing enabled. \n"));
    EXPECT_EQ(spotlight(), std::nullopt);
}

// ---- Spotlight, volume by volume

TEST(SpotlightState, isReadVolumeByVolume) {
    EXPECT_EQ(parsedIndexing(u"/:\n\tIndexing disabled.\n/System/Volumes/Data:\n\tIndexing enabled. \n"
                             "/Volumes/It: here:\n\tIndexing and searching disabled.\n/Volumes/A:\n\tNo index.\n"
                             "/Volumes/B:\nError: invalid operation.\n\tError: unexpected indexing state.  "
                             "kMDConfigSearchLevelTransitioning\n"_s),
              (QList<IndexedVolume>{{u"/"_s, Indexing::Off},
                                    {u"/System/Volumes/Data"_s, Indexing::On},
                                    {u"/Volumes/It: here"_s, Indexing::SearchOff},
                                    {u"/Volumes/A"_s, Indexing::Unknown},
                                    {u"/Volumes/B"_s, Indexing::Changing}}));
}

TEST(SpotlightState, isOffWhereTheFilesAreAndNothingElseIsOn) {
    const auto volumes = [](Indexing startup, Indexing files) {
        return QList<IndexedVolume>{{u"/"_s, startup}, {kDataVolume.toString(), files}};
    };
    EXPECT_TRUE(isIndexingOff(volumes(Indexing::Off, Indexing::Off)));
    EXPECT_TRUE(isIndexingOff(volumes(Indexing::Unknown, Indexing::SearchOff)));
    EXPECT_FALSE(isIndexingOff(volumes(Indexing::Off, Indexing::On)));
    EXPECT_FALSE(isIndexingOff(volumes(Indexing::On, Indexing::Off)));
    EXPECT_FALSE(isIndexingOff(volumes(Indexing::Off, Indexing::Unknown)));
    EXPECT_FALSE(isIndexingOff({{u"/"_s, Indexing::Off}})) << "of the files nothing is said";
    EXPECT_TRUE(keepsIndexingFiles(volumes(Indexing::Off, Indexing::On)));
    EXPECT_FALSE(keepsIndexingFiles(volumes(Indexing::On, Indexing::On)));
    EXPECT_EQ(indexesFiles({{u"/"_s, Indexing::On}}), true);
    EXPECT_EQ(indexesFiles(volumes(Indexing::On, Indexing::Changing)), std::nullopt);
}

TEST_F(Readings, aVolumeInTransitionIsToldThoughTheToolFails) {
    commands.answer(reading::kSpotlight,
                    failedWith("/:\n\tIndexing disabled.\n/System/Volumes/Data:\n\tError: unexpected "
                               "indexing state. kMDConfigSearchLevelTransitioning\n"));
    EXPECT_EQ(spotlight(), std::nullopt);
}

// ---- What an organization has set

TEST_F(Readings, anOrganizationsValueIsTakenFromTheUsersFileBeforeTheMacs) {
    const auto managed = [this](const MacPreference& preference) {
        return managedValue(preference, propertyLists, machine);
    };
    EXPECT_EQ(managed(preference::kAssistant), std::nullopt);
    const QString folder = u"/Library/Managed Preferences/"_s;
    propertyLists.lists.insert(folder + u"com.apple.assistant.support.plist"_s, {{u"Assistant Enabled"_s, true}});
    EXPECT_EQ(managed(preference::kAssistant), u"1"_s);
    propertyLists.lists.insert(folder + u"alex/com.apple.assistant.support.plist"_s, {{u"Assistant Enabled"_s, false}});
    EXPECT_EQ(managed(preference::kAssistant), u"0"_s);
    propertyLists.lists.insert(folder + u".GlobalPreferences.plist"_s, {{u"NSAppSleepDisabled"_s, 1}});
    EXPECT_EQ(managed(preference::kAppSleep), u"1"_s);
    EXPECT_EQ(managed(preference::kInterfaceSounds), std::nullopt) << "another key of that file";
    propertyLists.lists.insert(folder + u"com.apple.SoftwareUpdate.plist"_s, {{u"AutomaticDownload"_s, false}});
    EXPECT_EQ(managed(preference::kSystemUpdateDownload), u"0"_s);
}

} // namespace quorvane
