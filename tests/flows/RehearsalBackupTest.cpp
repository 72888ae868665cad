// Backups of profiles as a person starts them from a terminal.

#include "fakes/ProfileStore.h"
#include "fakes/RehearsalProgram.h"
#include "platform/simulated/SimulatedFileManager.h"
#include "profiles/ProfileCloudBackup.h"

#include <QRegularExpression>

namespace quorvane {

namespace {

const QByteArray kUnavailable =
    "\nError\n  iCloud Drive is not available. Sign in to iCloud in System Settings and enable "
    "iCloud Drive.\n";
const QByteArray kNotFound = "\nError\n  The selected iCloud backup could not be found.\n";
const QString kBackups = u"/Users/alex/Library/Mobile Documents/7KX2MR04TD~com~quorvane~app"
                         "/Documents/Quorvane/ProfileBackups/"_s;

class RehearsalBackups : public RehearsalTest {
protected:
    void signIn() {
        mac().state().update("cloud", [](macsim::Json& cloud) { cloud = {{"account", true}, {"container", true}}; });
    }
    macsim::Mac mac() const { return macsim::Mac(macFolder()); }
    void save(const UnifiedProfile& profile) {
        SimulatedFileManager files(mac().volume(macsim::Actor::User));
        ProfileManager(files, u"/Users/alex/Library/Application Support/Quorvane/UnifiedProfiles"_s)
            .saveProfile(profile);
    }
    QByteArray savedProfiles() { return shell(u"ls ~/Library/'Application Support'/Quorvane/UnifiedProfiles"_s); }
    QByteArray device() const { return mac().machine().computerName.toUtf8(); }

    /// Exit status 1 and an alert, nothing else, and the Mac as it was.
    void expectFailure(const QStringList& arguments, const QByteArray& output) {
        const macsim::MacPicture before(macFolder());
        const Ending run = rehearse(arguments);
        EXPECT_EQ(run.status, 1) << arguments.join(u' ').toStdString();
        EXPECT_EQ(run.output, output);
        EXPECT_EQ(run.error, QByteArray());
        EXPECT_EQ(macsim::MacPicture(macFolder()).changesSince(before), QString());
    }
};

} // namespace

TEST_F(RehearsalBackups, areMadeListedAndRestored) {
    signIn();
    save(numberedProfile(1, u"Live"_s));
    save(numberedProfile(2, u"Gig"_s));
    const Ending made = rehearse({u"backup"_s});
    EXPECT_EQ(made.status, 0);
    EXPECT_EQ(made.error, QByteArray());
    EXPECT_EQ(made.output, "\nBackup Complete\n"
                           "  Saved 2 profile(s) to iCloud.\n"
                           "  Latest Backup\n"
                           "  Default Profile (Current)\n"
                           "  Default Profile (Previous)\n");

    const Ending list = rehearse({u"backups"_s});
    EXPECT_EQ(list.status, 0);
    const QList<QByteArray> lines = list.output.split('\n');
    ASSERT_EQ(lines.size(), 5) << list.output.toStdString();
    EXPECT_EQ(lines.at(0), "latest.json — Latest Backup — 2 profile(s) from " + device());
    EXPECT_EQ(lines.at(1),
              "default-current.json — Default Profile (Current) — Default profile backup from " + device());
    EXPECT_EQ(lines.at(2),
              "default-previous.json — Default Profile (Previous) — Default profile backup from " + device());
    static const QRegularExpression stamped(
        u"\\Abackup-[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}Z\\.json — "
        "[A-Z][a-z]{2} [0-9]{1,2}, [0-9]{4} at [0-9]{1,2}:[0-9]{2} [AP]M — 2 profile\\(s\\) from "_s);
    EXPECT_TRUE(stamped.match(QString::fromUtf8(lines.at(3))).hasMatch()) << lines.at(3).toStdString();

    shell(u"rm ~/Library/'Application Support'/Quorvane/UnifiedProfiles/Gig.json"_s);
    const Ending restored = rehearse({u"restore"_s, u"latest.json"_s});
    EXPECT_EQ(restored.status, 0);
    EXPECT_EQ(restored.error, QByteArray());
    EXPECT_EQ(restored.output, "\nProfiles Restored\n  1 imported, 1 updated\n");
    EXPECT_EQ(savedProfiles(), "Gig.json\nLive.json\n");
}

TEST_F(RehearsalBackups, sayWhatIsRenamedOnALineOfItsOwn) {
    signIn();
    save(numberedProfile(1, u"Live"_s));
    ASSERT_EQ(rehearse({u"backup"_s}).status, 0);
    shell(u"rm ~/Library/'Application Support'/Quorvane/UnifiedProfiles/Live.json"_s);
    save(numberedProfile(5, u"Live"_s));
    EXPECT_EQ(rehearse({u"restore"_s, u"latest.json"_s}).output,
              "\nProfiles Restored\n  1 imported\n  Renamed: Live → Live 2\n");
    EXPECT_EQ(savedProfiles(), "Live 2.json\nLive.json\n");
}

TEST_F(RehearsalBackups, areRowsOfTheJsonReport) {
    signIn();
    save(numberedProfile(1, u"Live"_s));
    ASSERT_EQ(rehearse({u"backup"_s}).status, 0);
    const Ending list = rehearse({u"--json"_s, u"backups"_s});
    const macsim::Json report = macsim::Json::parse(list.output.cbegin(), list.output.cend());
    EXPECT_EQ(report.at("command"), "backups");
    EXPECT_EQ(report.at("succeeded"), true);
    ASSERT_EQ(report.at("backups").size(), 4U);
    EXPECT_EQ(report.at("backups").at(0), (macsim::Json{{"id", "latest.json"},
                                                        {"title", "Latest Backup"},
                                                        {"detail", "1 profile(s) from " + device().toStdString()}}));
    const Ending restored = rehearse({u"restore"_s, u"latest.json"_s, u"--json"_s});
    const macsim::Json outcome = macsim::Json::parse(restored.output.cbegin(), restored.output.cend());
    EXPECT_EQ(outcome.at("alert"), (macsim::Json{{"title", "Profiles Restored"}, {"text", "1 updated"}}));
    EXPECT_FALSE(outcome.contains("backups"));
}

TEST_F(RehearsalBackups, needAnAccount) {
    save(numberedProfile(1, u"Live"_s));
    expectFailure({u"backup"_s}, kUnavailable);
    expectFailure({u"restore"_s, u"latest.json"_s}, kUnavailable);
    const Ending list = rehearse({u"backups"_s});
    EXPECT_EQ(list.status, 0);
    EXPECT_EQ(list.output, "No iCloud backups were found for Quorvane.\n");
    const Ending json = rehearse({u"backup"_s, u"--json"_s});
    EXPECT_EQ(json.status, 1);
    EXPECT_FALSE(macsim::Json::parse(json.output.cbegin(), json.output.cend()).at("succeeded").get<bool>());
}

TEST_F(RehearsalBackups, ofTheDefaultProfileAloneAreNotDone) {
    signIn();
    const Ending run = rehearse({u"backup"_s});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.output, "\nError\n  There are no custom profiles to back up.\n");
    EXPECT_EQ(shell(u"ls \"%1\""_s.arg(kBackups)), "default-current.json\ndefault-previous.json\n");
}

TEST_F(RehearsalBackups, areRestoredOnlyByANameThatTheListHas) {
    signIn();
    save(numberedProfile(1, u"Live"_s));
    ASSERT_EQ(rehearse({u"backup"_s}).status, 0);
    shell(u"cp \"%1latest.json\" ~/latest.json; echo [] > \"%1damaged.json\""_s.arg(kBackups));
    for (const QString& name : {u"gone.json"_s, u"damaged.json"_s, u"../../../../../../latest.json"_s,
                                u"/Users/alex/latest.json"_s, u"latest"_s, QString()}) {
        expectFailure({u"restore"_s, name}, kNotFound);
    }
}

TEST_F(RehearsalBackups, ofAMacWithAnOddNameStayOnOneLine) {
    signIn();
    save(numberedProfile(1, u"Live"_s));
    ASSERT_EQ(rehearse({u"backup"_s}).status, 0);
    ProfileCloudBackup backup;
    backup.createdAt = QDateTime(QDate(2026, 11, 15), QTime(21, 5, 37), Qt::UTC);
    backup.deviceName = u"Booth\nlatest.json\u001b[2J\u2028 🎧 Mika’s"_s;
    mac().volume(macsim::Actor::User).write(kBackups + u"latest.json"_s, encodeProfileCloudBackup(backup));
    const QList<QByteArray> lines = rehearse({u"backups"_s}).output.split('\n');
    ASSERT_EQ(lines.size(), 5);
    EXPECT_EQ(lines.first(), "latest.json — Latest Backup — 0 profile(s) from Booth latest.json [2J  🎧 Mika’s");
}

TEST_F(RehearsalBackups, takeTheArgumentsThatTheyNeedAndNoOther) {
    expectRefused({u"restore"_s}, "quorvane-rehearsal: restore: an operand is missing\n");
    expectRefused({u"backup"_s, u"latest.json"_s}, "quorvane-rehearsal: backup: superfluous argument: latest.json\n");
    expectRefused({u"backups"_s, u"all"_s}, "quorvane-rehearsal: backups: superfluous argument: all\n");
}

} // namespace quorvane
