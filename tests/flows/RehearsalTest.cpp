// The rehearsal as a person starts it: a program with arguments, two streams and an exit status.

#include "fakes/EventLoop.h"
#include "fakes/RehearsalProgram.h"
#include "profiles/ProfileJson.h"

#include <algorithm>
#include <csignal>
#include <sys/stat.h>
#include <unistd.h>

namespace quorvane {

namespace {

QByteArray contentOf(const QString& hostPath) {
    QFile file(hostPath);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The child of a process that runs a shell; 0 where there is none.
pid_t shellOf(qint64 process) {
    QProcess search;
    search.start(u"pgrep"_s, {u"-P"_s, QString::number(process), u"-f"_s, u"^[^ ]*sh "_s});
    EXPECT_TRUE(search.waitForFinished(60000));
    return search.readAll().trimmed().toInt();
}

/// On the DJ's laptop, which has something at startup.
class RehearsalOnLaptop : public RehearsalTest {
protected:
    RehearsalOnLaptop()
        : RehearsalTest({QStringLiteral(QUORVANE_SOURCE_DIR "/examples/macs/dj-laptop.json")}) {}

    macsim::Json json(const QStringList& arguments) {
        const Ending run = rehearse(arguments);
        EXPECT_EQ(run.status, 0) << run.error.toStdString();
        return macsim::Json::parse(run.output.cbegin(), run.output.cend());
    }
};

/// Of the record with an identifier; empty where there is none.
QByteArray dispositionIn(const QByteArray& dump, const QByteArray& identifier) {
    const qsizetype record = dump.indexOf("Identifier: " + identifier);
    const qsizetype start = dump.lastIndexOf("Disposition: ", record);
    return record < 0 ? QByteArray() : dump.mid(start + 13, 60);
}

/// Nothing was captured of the Mac before.
const QByteArray kSavedBefore = "  [SNAPSHOT] Saved your settings as they were before Quorvane.\n";

} // namespace

TEST_F(RehearsalTest, applyLeavesEveryTweakInForceAndDefaultTakesThemBack) {
    const QString readings =
        u"defaults read NSGlobalDomain NSAppSleepDisabled; defaults read com.apple.SoftwareUpdate AutomaticDownload; "
        "defaults read com.apple.SoftwareUpdate AutomaticCheckEnabled; defaults read com.apple.commerce AutoUpdate; "
        "defaults -currentHost read com.apple.notificationcenterui doNotDisturb; defaults read com.apple.Siri Status; "
        "defaults read com.apple.assistant.support 'Assistant Enabled'; "
        "defaults read com.apple.CrashReporter DialogType; "
        "defaults read com.apple.systemsound com.apple.sound.uiaudio.enabled; "
        "defaults read com.apple.NetworkBrowser DisableAirDrop; "
        "defaults read /Library/Preferences/com.apple.TimeMachine AutoBackup; mdutil -s /"_s;
    const QByteArray before = shell(readings);
    const Ending applied = rehearse({u"apply"_s, example(u"live-set"_s)});
    EXPECT_EQ(applied.status, 0);
    EXPECT_EQ(applied.error, QByteArray());
    EXPECT_EQ(applied.output, projectFile(u"tests/flows/live-set-preview.txt"_s) + kSavedBefore +
                                  projectFile(u"tests/flows/live-set-applied.log"_s));
    EXPECT_EQ(shell(readings), "1\n0\n0\n0\n1\nDisabled\n0\nnone\n0\n1\n0\n/:\n\tIndexing disabled.\n");
    const QByteArray power = shell(u"pmset -g custom"_s);
    EXPECT_EQ(power.count(" standby              0\n"), 2);
    EXPECT_EQ(power.count(" disksleep            0\n"), 2);
    EXPECT_EQ(power.count(" sleep                0\n"), 2);

    EXPECT_EQ(rehearse({u"default"_s}).status, 0);
    EXPECT_EQ(shell(readings), before) << "what was captured unasked came back";
    EXPECT_EQ(shell(u"pmset -g custom"_s).count(" standby              1\n"), 2);
    EXPECT_EQ(rehearse({u"verify"_s, example(u"live-set"_s)}).status, 1);
}

TEST_F(RehearsalTest, applySavesTheProfileFirst) {
    EXPECT_EQ(rehearse({u"apply"_s, example(u"club-night-2023"_s)}).status, 0);
    const QByteArray saved =
        shell(u"cat ~/'Library/Application Support/Quorvane/UnifiedProfiles/Club Night 2023.json'"_s);
    EXPECT_TRUE(decodeProfile(saved).hasSameContent(exampleProfile(u"club-night-2023"_s)));
}

TEST_F(RehearsalTest, aCancelledPromptEndsWithStatusOne) {
    const Ending run =
        start({u"--mac"_s, macFolder(), u"--authorize"_s, u"cancel"_s, u"apply"_s, example(u"live-set"_s)});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.output.contains("  [ERROR] Administrator authorization was cancelled or failed: User canceled.\n"));
    EXPECT_TRUE(run.output.endsWith("\n[PROFILE] Live Set apply failed or was cancelled — check logs.\n"));
}

TEST_F(RehearsalTest, aWarningEndsWithStatusOneThoughTheProfileIsApplied) {
    const QString faults =
        file(u"faults.json"_s,
             R"([{"tool": "defaults", "arguments": "DisableAirDrop -bool YES", "status": 1, "error": "refused\n"}])");
    const Ending run = start({u"--mac"_s, macFolder(), u"--faults"_s, faults, u"apply"_s, example(u"rehearsal"_s)});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.output.endsWith("\n[PROFILE] Rehearsal applied with verification warnings — check logs.\n"));
    EXPECT_EQ(shell(u"defaults read com.quorvane.app QuorvaneLastAppliedProfileName"_s), "Rehearsal\n");
}

TEST_F(RehearsalTest, theDefaultProfileTakesTheRoadOfDefault) {
    UnifiedProfile profile = UnifiedProfile::defaultProfile();
    profile.name = u"dEfAuLt"_s;
    const Ending run = rehearse({u"apply"_s, file(u"default.json"_s, encodeProfile(profile))});
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(
        run.output.startsWith("\nUndoing Audio Performance tweaks (no snapshot — using standard defaults)...\n"));
    EXPECT_EQ(shell(u"ls ~/'Library/Application Support/Quorvane/UnifiedProfiles'"_s), "") << "no profile is saved";
}

TEST_F(RehearsalTest, blanksAroundTheNameOfTheDefaultProfileDoNotCount) {
    UnifiedProfile profile = exampleProfile(u"live-set"_s);
    profile.name = u" Default "_s;
    const Ending run = rehearse({u"apply"_s, file(u"default.json"_s, encodeProfile(profile))});
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(
        run.output.startsWith("\nUndoing Audio Performance tweaks (no snapshot — using standard defaults)...\n"));
    EXPECT_EQ(shell(u"ls ~/'Library/Application Support/Quorvane/UnifiedProfiles'"_s), "") << "no profile is saved";
}

TEST_F(RehearsalTest, tweaksAndVerifyAnswerByTheirExitStatus) {
    EXPECT_EQ(rehearse({u"verify"_s, example(u"studio-day"_s)}).status, 1);
    const Ending run = rehearse({u"tweaks"_s, example(u"studio-day"_s)});
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(run.output.endsWith("  [VERIFY] All settings confirmed on system.\n"));
}

TEST_F(RehearsalTest, jsonTellsTheLogTheOutcomeAndTheRecord) {
    const Ending run = rehearse({u"--json"_s, u"verify"_s, example(u"rehearsal"_s)});
    EXPECT_EQ(run.status, 1);
    const macsim::Json report = macsim::Json::parse(run.output.cbegin(), run.output.cend());
    EXPECT_EQ(report.at("command"), "verify");
    EXPECT_EQ(report.at("log").at(0), "\n[VERIFY] Profile: Rehearsal");
    EXPECT_EQ(report.at("succeeded"), true);
    EXPECT_EQ(report.at("verification").at("failed").at(0),
              (macsim::Json{{"name", "App Nap"}, {"detail", "expected disabled"}}));
    EXPECT_EQ(report.at("verification").at("verified").size() + report.at("verification").at("failed").size(), 12U);
}

TEST_F(RehearsalTest, shellPassesStreamsAndStatusOn) {
    const Ending run = rehearse({u"shell"_s, u"echo out; ls /nothing; exit 7"_s});
    EXPECT_EQ(run.status, 7);
    EXPECT_EQ(run.output, "out\n");
    EXPECT_EQ(run.error, "ls: /nothing: No such file or directory\n");
    EXPECT_NE(rehearse({u"shell"_s, u"touch /Library/x"_s}).status, 0);
    EXPECT_EQ(rehearse({u"shell"_s, u"--root"_s, u"touch /Library/x"_s}).status, 0);
}

TEST_F(RehearsalTest, withoutAMacItUsesATemporaryOneAndRemovesIt) {
    const auto temporaries = [] { return QDir::temp().entryList({u"quorvane-rehearsal-*"_s}, QDir::Dirs); };
    const QStringList before = temporaries();
    const Ending run = start({u"tweaks"_s, example(u"studio-day"_s)});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(temporaries(), before);
}

TEST_F(RehearsalTest, theJournalIsWrittenWhereItWasAskedFor) {
    const QString journal = folder.path() + u"/journal.jsonl"_s;
    EXPECT_EQ(start({u"--mac"_s, macFolder(), u"--journal"_s, journal, u"tweaks"_s, example(u"studio-day"_s)}).status,
              0);
    QFile made(journal);
    ASSERT_TRUE(made.open(QIODevice::ReadOnly));
    EXPECT_TRUE(made.readAll().contains(R"({"authorization":"allow","prompt":"Quorvane needs your administrator )"));
}

// ---- A whole profile

TEST_F(RehearsalOnLaptop, applyShowsThePreviewTheLogAndTheVerification) {
    const Ending applied = rehearse({u"apply"_s, example(u"festival"_s)});
    EXPECT_EQ(applied.status, 0);
    EXPECT_EQ(applied.error, QByteArray());
    EXPECT_EQ(applied.output, projectFile(u"tests/flows/festival-rehearsed.log"_s));
    // The list that root gets tells of the applications that open at login now, and of the ones that don't.
    const QByteArray dump = rehearse({u"shell"_s, u"--root"_s, u"/usr/bin/sfltool dumpbtm"_s}).output;
    EXPECT_TRUE(dispositionIn(dump, "2.com.spotify.client").startsWith("[disabled, ")) << dump.toStdString();
    EXPECT_TRUE(dispositionIn(dump, "2.com.knollsoft.Rectangle").startsWith("[enabled, "));
    EXPECT_TRUE(dispositionIn(dump, "2.com.serato.seratodj").startsWith("[enabled, "));
    EXPECT_TRUE(dispositionIn(dump, "8.com.pioneerdj.rekordboxAgent").startsWith("[enabled, "));
    EXPECT_EQ(rehearse({u"verify"_s, example(u"festival"_s)}).status, 0);
}

TEST_F(RehearsalOnLaptop, previewNeitherAsksNorChangesAnything) {
    const macsim::MacPicture before(macFolder());
    const Ending preview =
        start({u"--mac"_s, macFolder(), u"--authorize"_s, u"deny"_s, u"preview"_s, example(u"festival"_s)});
    EXPECT_EQ(preview.status, 0);
    EXPECT_EQ(preview.output, projectFile(u"tests/flows/festival-preview.txt"_s));
    EXPECT_EQ(macsim::MacPicture(macFolder()).changesSince(before), QString());
    EXPECT_FALSE(
        contentOf(macFolder() + macsim::kStateFolder.toString() + u"/journal.jsonl"_s).contains("authorization"));
}

TEST_F(RehearsalOnLaptop, startupWorksAlone) {
    const macsim::MacPicture before(macFolder());
    const Ending run = rehearse({u"startup"_s, example(u"festival"_s)});
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(run.output.contains(kSavedBefore + "\nApplying startup configuration...\n"))
        << run.output.toStdString();
    EXPECT_TRUE(run.output.endsWith(" setting(s) verified on the system.\n")) << run.output.toStdString();
    const QString changes = macsim::MacPicture(macFolder()).changesSince(before);
    EXPECT_TRUE(changes.contains(u"- state loginItems \"Spotify\"/path: "_s));
    EXPECT_FALSE(changes.contains(u"state power"_s));
    EXPECT_FALSE(changes.contains(u"Google LLC"_s));
    EXPECT_EQ(shell(u"ls ~/'Library/Application Support/Quorvane'"_s).trimmed(), QByteArray("startup_memory.json"))
        << "no profile is saved";
}

TEST_F(RehearsalOnLaptop, discoverListsEachItemWithItsPath) {
    const Ending run = rehearse({u"discover"_s});
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(run.output.contains("Spotify — App — on\n    /Applications/Spotify.app\n"));
    EXPECT_TRUE(run.output.contains("Rekordbox — Launch Agent — on — protected\n"
                                    "    /Library/LaunchAgents/com.pioneerdj.rekordboxAgent.plist\n"));
    EXPECT_TRUE(
        run.output.contains("Docker Vmnetd — Daemon — on\n    /Library/LaunchDaemons/com.docker.vmnetd.plist\n"));
}

TEST_F(RehearsalOnLaptop, jsonTellsThePreviewTheItemsAndTheVerification) {
    const macsim::Json preview = json({u"--json"_s, u"preview"_s, example(u"festival"_s)});
    EXPECT_EQ(preview.at("command"), "preview");
    EXPECT_EQ(preview.at("succeeded"), true);
    EXPECT_EQ(preview.at("preview").at("profileName"), "Festival");
    const macsim::Json sections = preview.at("preview").at("sections");
    EXPECT_EQ(sections.at(2),
              macsim::Json({{"title", "Will add at login"}, {"rows", {"Serato DJ Pro", "Traktor Pro 4"}}}));
    EXPECT_FALSE(preview.contains("verification"));

    const macsim::Json discovered = json({u"--json"_s, u"discover"_s});
    const macsim::Json& items = discovered.at("startupItems");
    EXPECT_NE(std::find(items.begin(), items.end(),
                        macsim::Json({{"id", "login:/Applications/Google Drive.app"},
                                      {"name", "Google Drive"},
                                      {"path", "/Applications/Google Drive.app"},
                                      {"kind", "loginApp"},
                                      {"runsAtStartup", true},
                                      {"hidden", true},
                                      {"isProtected", false}})),
              items.end());

    const macsim::Json startup = json({u"--json"_s, u"startup"_s, example(u"festival"_s)});
    EXPECT_EQ(startup.at("succeeded"), true);
    EXPECT_EQ(startup.at("verification").at("failed"), macsim::Json::array());
    EXPECT_EQ(startup.at("verification").at("verified").at(0),
              macsim::Json({{"name", "Login item: Dropbox"}, {"detail", "removed"}}));
}

TEST_F(RehearsalOnLaptop, aCancelledPromptOfStartupEndsWithStatusOne) {
    const Ending run =
        start({u"--mac"_s, macFolder(), u"--authorize"_s, u"cancel"_s, u"startup"_s, example(u"festival"_s)});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.output.contains("  [ERROR] Administrator authorization was cancelled or failed: User canceled.\n"));
}

// ---- Refusals

TEST_F(RehearsalTest, aFileThatIsNoProfileIsRefusedByName) {
    const QString missing = folder.path() + u"/missing.json"_s;
    const QString garbage = file(u"garbage.json"_s, "\xff\xfe\x00{");
    const QString truncated = file(u"truncated.json"_s, "{\n\"id\": \n");
    const QString array = file(u"array.json"_s, "[]");
    const QString empty = file(u"empty.json"_s, {});
    const QString other = file(u"other.json"_s, R"({"name": "x"})");
    const QString deep = file(u"deep.json"_s, QByteArray(1 << 20, '['));
    QByteArray text = projectFile(u"examples/profiles/live-set.json"_s);
    const QString mistyped = file(u"mistyped.json"_s, text.replace("\"siri\": true", "\"siri\": 1"));
    for (const QString& command : {u"apply"_s, u"tweaks"_s, u"verify"_s}) {
        expectRefused({command, missing}, missing.toUtf8() + ": No such file or directory\n");
        expectRefused({command, folder.path()}, folder.path().toUtf8() + ": Is a directory\n");
        expectRefused({command, array}, array.toUtf8() + ": not a profile: not an object\n");
        expectRefused({command, other}, other.toUtf8() + ": not a profile: \"id\": missing\n");
        expectRefused({command, mistyped}, mistyped.toUtf8() + ": not a profile: \"settings.siri\": not a boolean\n");
        expectRefused({command, deep}, deep.toUtf8() + ": not a profile: nested too deeply\n");
    }
    expectRefused({u"apply"_s, garbage}, garbage.toUtf8() + ": not a profile: not valid JSON (line 1)\n");
    expectRefused({u"apply"_s, truncated}, truncated.toUtf8() + ": not a profile: not valid JSON (line 3)\n");
    expectRefused({u"apply"_s, empty}, empty.toUtf8() + ": not a profile: not valid JSON (line 1)\n");
}

TEST_F(RehearsalTest, aFileThatMayNotBeReadIsRefused) {
    const QString closed = file(u"closed.json"_s, projectFile(u"examples/profiles/live-set.json"_s));
    if (::geteuid() == 0) {
        // Root reads every file of the host; a link to itself is one that nobody can read.
        QFile::remove(closed);
        QFile::link(closed, closed);
        expectRefused({u"apply"_s, closed}, closed.toUtf8() + ": Too many levels of symbolic links\n");
    } else {
        QFile::setPermissions(closed, {});
        expectRefused({u"apply"_s, closed}, closed.toUtf8() + ": Permission denied\n");
    }
}

TEST_F(RehearsalTest, aPipeIsRefusedAtOnce) {
    // Nobody writes into it: who waits for its end waits for ever.
    const QString pipe = folder.path() + u"/pipe.json"_s;
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    for (const QString& command : {u"apply"_s, u"tweaks"_s, u"verify"_s}) {
        expectRefused({command, pipe}, pipe.toUtf8() + ": Not a regular file\n");
    }
}

TEST_F(RehearsalTest, aNameThatNoFileCanBearIsRefused) {
    UnifiedProfile profile = exampleProfile(u"rehearsal"_s);
    for (const QString& name : {u""_s, u"   "_s, u" \0\0 "_s}) {
        profile.name = name;
        const QString unnamed = file(u"unnamed.json"_s, encodeProfile(profile));
        expectRefused({u"apply"_s, unnamed}, unnamed.toUtf8() + ": Profile name is invalid.\n");
    }
}

TEST_F(RehearsalTest, aComplaintAboutAKeyIsOneLineWithoutControlCharacters) {
    macsim::Json profile = macsim::Json::parse(projectFile(u"examples/profiles/live-set.json"_s).toStdString());
    profile["settings"]["customIcons"] = {{"bad\nkey\x1b[2J", 1}};
    const QString hostile = file(u"hostile.json"_s, QByteArray::fromStdString(profile.dump()));
    expectRefused({u"apply"_s, hostile}, hostile.toUtf8() +
                                             ": not a profile: \"settings.customIcons.bad\\nkey\\u001b[2J\": "
                                             "not a string\n");
}

TEST_F(RehearsalTest, unusableArgumentsAreRefused) {
    const struct {
        QStringList arguments;
        QByteArray line;
    } cases[] = {{{}, "a command is missing; --help tells of them"},
                 {{u"dance"_s}, "unknown command: dance"},
                 {{u"apply"_s}, "apply: an operand is missing"},
                 {{u"default"_s, u"x"_s}, "default: superfluous argument: x"},
                 {{u"--loud"_s, u"default"_s}, "unknown option: --loud"},
                 {{u"--authorize"_s, u"maybe"_s, u"default"_s}, "--authorize: allow, deny or cancel, not maybe"},
                 {{u"--faults"_s}, "--faults: a value is missing"}};
    for (const auto& [arguments, line] : cases) {
        expectRefused(arguments, "quorvane-rehearsal: " + line + "\n");
    }
    const Ending run = start({u"new"_s});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.error, "quorvane-rehearsal: new: --mac says where to make the Mac\n");
}

TEST_F(RehearsalTest, aFolderThatIsNoMacIsRefused) {
    const Ending run = start({u"--mac"_s, folder.path(), u"default"_s});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.error,
              "quorvane-rehearsal: " + folder.path().toUtf8() + ": there is no simulated Mac in this folder\n");
}

TEST_F(RehearsalTest, newRefusesAFolderThatIsNotEmptyAndADescriptionThatIsNone) {
    expectRefused({u"new"_s}, "quorvane-rehearsal: " + macFolder().toUtf8() + ": the folder isn't empty\n");
    const QString bad =
        file(u"bad.json"_s, R"({"machine": {"userName": "alex"}, "preferences": {"user": {"d": {"k": null}}}})");
    const Ending run = start({u"--mac"_s, folder.path() + u"/Other"_s, u"new"_s, bad});
    EXPECT_EQ(run.status, 2);
    EXPECT_TRUE(run.error.startsWith("quorvane-rehearsal: the Mac can't be made: ")) << run.error.toStdString();
    EXPECT_FALSE(QFile::exists(folder.path() + u"/Other"_s));
}

TEST_F(RehearsalTest, faultsThatCannotBeUnderstoodAreRefused) {
    const QString faults = file(u"faults.json"_s, R"([{"tool": "pmset", "explode": true}])");
    const Ending run = start({u"--mac"_s, macFolder(), u"--faults"_s, faults, u"default"_s});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.error, "quorvane-rehearsal: " + faults.toUtf8() + ": rule 1: unknown key \"explode\"\n");
}

TEST_F(RehearsalTest, everyExampleMacCanBeMade) {
    for (const QString& name : {u"dj-laptop"_s, u"studio-desktop"_s, u"fresh-macbook"_s, u"old-macbook"_s,
                                u"bare-notebook"_s, u"bare-desktop"_s, u"bare-intel-notebook"_s, u"bare-tahoe"_s}) {
        const QString description = QStringLiteral(QUORVANE_SOURCE_DIR "/examples/macs/") + name + u".json"_s;
        const Ending run = start({u"--mac"_s, folder.path() + u'/' + name, u"new"_s, description});
        EXPECT_EQ(run.status, 0) << run.error.toStdString();
        EXPECT_EQ(start({u"--mac"_s, folder.path() + u'/' + name, u"shell"_s, u"pmset -g custom > /dev/null"_s}).status,
                  0);
    }
}

// ---- When things go wrong

TEST_F(RehearsalTest, aProfilesFolderThatCannotBeWrittenAppliesNothing) {
    const QString faults =
        file(u"faults.json"_s, R"([{"adapter": "files", "change": 1, "error": "Permission denied"}])");
    const macsim::MacPicture before(macFolder());
    const Ending run = start({u"--mac"_s, macFolder(), u"--faults"_s, faults, u"apply"_s, example(u"live-set"_s)});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.output, QByteArray());
    EXPECT_TRUE(run.error.startsWith("The profile could not be saved: ")) << run.error.toStdString();
    EXPECT_TRUE(run.error.endsWith("/Live Set.json: Permission denied\n")) << run.error.toStdString();
    EXPECT_EQ(macsim::MacPicture(macFolder()).changesSince(before), QString());
}

TEST_F(RehearsalTest, aProcessKilledAtAnyChangeOfASaveLosesNoProfile) {
    UnifiedProfile profile = exampleProfile(u"live-set"_s);
    ASSERT_EQ(rehearse({u"apply"_s, example(u"live-set"_s)}).status, 0);
    profile.name = u"LIVE SET"_s;
    profile.settings.siri = false;
    const QString renamed = file(u"renamed.json"_s, encodeProfile(profile));
    const QString profiles = macFolder() + u"/Users/alex/Library/Application Support/Quorvane/UnifiedProfiles"_s;
    int kills = 0;
    for (int change = 1; change < 20; ++change) {
        const QString faults = file(u"faults.json"_s, R"([{"adapter": "files", "kill": true, "change": )" +
                                                          QByteArray::number(change) + "}]");
        const Ending run = start({u"--mac"_s, macFolder(), u"--faults"_s, faults, u"apply"_s, renamed});
        kills += run.status == -1 ? 1 : 0;
        int readable = 0;
        const QStringList names = QDir(profiles).entryList(QDir::Files);
        for (const QString& name : names) {
            QFile saved(profiles + u'/' + name);
            ASSERT_TRUE(saved.open(QIODevice::ReadOnly));
            readable += decodeProfile(saved.readAll()).id == profile.id ? 1 : 0;
        }
        EXPECT_GE(readable, 1) << "killed at change " << change;
        if (run.status != -1) {
            break;
        }
    }
    EXPECT_GE(kills, 2);
}

TEST_F(RehearsalTest, aTerminationEndsAHangingToolAndTheFlow) {
    const QString faults = file(u"faults.json"_s, R"([{"tool": "killall", "hang": true}])");
    QProcess process;
    process.start(QStringLiteral(REHEARSAL_PROGRAM),
                  {u"--mac"_s, macFolder(), u"--faults"_s, faults, u"apply"_s, example(u"live-set"_s)});
    QByteArray output;
    while (!output.contains("automatic updates")) {
        ASSERT_TRUE(process.waitForReadyRead(60000));
        output += process.readAllStandardOutput();
    }
    process.terminate();
    ASSERT_TRUE(process.waitForFinished(60000));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), 1);
    EXPECT_TRUE(process.readAllStandardOutput().endsWith("apply failed or was cancelled — check logs.\n"));
}

TEST_F(RehearsalTest, whatNobodyAnsweredIsNotVerified) {
    UnifiedProfile profile;
    profile.id = QUuid::createUuid();
    profile.name = u"Quiet"_s;
    profile.dateCreated = QDateTime(QDate(2026, 3, 14), QTime(20, 30), Qt::UTC);
    profile.settings.updates = true;
    profile.settings.siri = true;
    profile.settings.uiSounds = true;
    ASSERT_EQ(rehearse({u"snapshot"_s}).status, 0);
    const QString quiet = file(u"quiet.json"_s, encodeProfile(profile));
    const QByteArray missing = "  [MISSING] Software Updates — expected disabled\n"
                               "  [MISSING] Siri — expected disabled\n"
                               "  [MISSING] UI Sounds — expected muted\n"
                               "  [VERIFY] 3 setting(s) could not be confirmed.\n";

    const QString dead = file(u"dead.json"_s, R"([{"tool": "defaults", "arguments": "read ", "signal": 9}])");
    const Ending killed = start({u"--mac"_s, macFolder(), u"--faults"_s, dead, u"tweaks"_s, quiet});
    EXPECT_EQ(killed.status, 1);
    EXPECT_TRUE(killed.output.endsWith(missing)) << killed.output.toStdString();
    EXPECT_FALSE(killed.output.contains("[OK]"));

    const QString hanging = file(u"hanging.json"_s, R"([{"tool": "defaults", "hang": true}])");
    QProcess process;
    process.start(QStringLiteral(REHEARSAL_PROGRAM),
                  {u"--mac"_s, macFolder(), u"--faults"_s, hanging, u"tweaks"_s, quiet});
    ASSERT_TRUE(process.waitForReadyRead(60000));
    process.terminate();
    ASSERT_TRUE(process.waitForFinished(60000));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), 1);
    const QByteArray output = process.readAllStandardOutput();
    EXPECT_FALSE(output.contains("[OK]")) << output.toStdString();
    EXPECT_FALSE(output.contains("confirmed")) << output.toStdString();
}

TEST_F(RehearsalTest, aTerminationEndsAShellThatHangs) {
    const QString faults = file(u"faults.json"_s, R"([{"tool": "pmset", "hang": true}])");
    QProcess process;
    process.start(QStringLiteral(REHEARSAL_PROGRAM),
                  {u"--mac"_s, macFolder(), u"--faults"_s, faults, u"shell"_s, u"pmset -g"_s});
    ASSERT_TRUE(process.waitForStarted(60000));
    pid_t child = 0;
    processEventsUntil([&] { return (child = shellOf(process.processId())) != 0; });
    process.terminate();
    ASSERT_TRUE(process.waitForFinished(60000));
    EXPECT_FALSE(process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0);
    EXPECT_NE(::kill(child, SIGKILL), 0) << "the shell is still there";
}

} // namespace quorvane
