// The logs that a simulated Mac keeps of the runs on it.

#include "fakes/RehearsalProgram.h"

#include <QDir>
#include <QFileInfo>

namespace quorvane {

namespace {

class RehearsalLogs : public RehearsalTest {
protected:
    QString logsFolder() const { return macFolder() + u"/Users/alex/Library/Logs/Quorvane"_s; }
    QStringList kept() const { return QDir(logsFolder()).entryList(QDir::Files, QDir::Name); }
    QByteArray textOf(const QString& name) const {
        QFile run(logsFolder() + u'/' + name);
        EXPECT_TRUE(run.open(QIODevice::ReadOnly)) << name.toStdString();
        return run.readAll();
    }
    void keep(const QString& name, const QByteArray& text) {
        ASSERT_TRUE(QDir().mkpath(logsFolder()));
        file(u"Mac/Users/alex/Library/Logs/Quorvane/"_s + name, text);
    }
};

const QString kFriday = u"Quorvane 2026-03-13 09.15.00 (4711).log"_s;
const QString kThursday = u"Quorvane 2026-03-12 18.00.59 (12).log"_s;

} // namespace

TEST_F(RehearsalLogs, whatARunHasPrintedOfItsLogIsKept) {
    const Ending applied = rehearse({u"apply"_s, example(u"live-set"_s)});
    EXPECT_EQ(applied.status, 0);
    ASSERT_EQ(kept().size(), 1);
    const QByteArray log = "  [SNAPSHOT] Saved your settings as they were before Quorvane.\n" +
                           projectFile(u"tests/flows/live-set-applied.log"_s);
    EXPECT_EQ(textOf(kept().first()), log);
    const Ending listed = rehearse({u"logs"_s});
    EXPECT_EQ(listed.status, 0);
    EXPECT_TRUE(listed.output.startsWith("1 — ")) << listed.output.toStdString();
    EXPECT_TRUE(listed.output.endsWith((u" — "_s + kept().first() + u'\n').toUtf8())) << listed.output.toStdString();
    const Ending printed = rehearse({u"logs"_s, u"1"_s});
    EXPECT_EQ(printed.status, 0);
    EXPECT_EQ(printed.output, log);
    EXPECT_EQ(kept().size(), 1) << "whoever only looks is no run";
}

TEST_F(RehearsalLogs, aMacThatNothingWasLoggedOnKeepsNone) {
    EXPECT_EQ(rehearse({u"logs"_s}).output, "No logs are kept.\n");
    EXPECT_FALSE(QFile::exists(logsFolder()));
}

TEST_F(RehearsalLogs, fiveRunsAreKept) {
    for (int run = 0; run < 6; ++run) {
        EXPECT_EQ(rehearse({u"network"_s, u"--flush"_s}).status, 0);
    }
    EXPECT_EQ(kept().size(), 5);
    EXPECT_EQ(rehearse({u"logs"_s}).output.count('\n'), 5);
}

TEST_F(RehearsalLogs, theyAreListedTheNewestFirstAndPrintedAsFarAsTheyGo) {
    keep(kThursday, "Ready.\n");
    keep(kFriday, "Ready.\n\n[PROFILE] Applying: L\xc3");
    keep(u"notes.txt"_s, "the user's");
    const QByteArray listed = rehearse({u"logs"_s}).output;
    EXPECT_LT(listed.indexOf(kFriday.toUtf8()), listed.indexOf(kThursday.toUtf8()));
    EXPECT_EQ(listed.count('\n'), 2);
    EXPECT_EQ(rehearse({u"logs"_s, u"1"_s}).output, "Ready.\n\n[PROFILE] Applying: L\uFFFD\n");
    const Ending report = rehearse({u"logs"_s, u"--json"_s});
    const macsim::Json json = macsim::Json::parse(report.output.cbegin(), report.output.cend());
    EXPECT_EQ(json.at("runs").at(1).at("file").get<std::string>(), kThursday.toStdString());
    EXPECT_EQ(json.at("runs").at(1).at("number").get<int>(), 2);
    const Ending whole = rehearse({u"logs"_s, u"2"_s, u"--json"_s});
    EXPECT_EQ(macsim::Json::parse(whole.output.cbegin(), whole.output.cend()).at("keptLog"),
              macsim::Json::array({"Ready."}));
}

TEST_F(RehearsalLogs, whatIsNoRunsNumberIsRefused) {
    for (const QString& number : {u"0"_s, u"-1"_s, u"first"_s, u"1.5"_s}) {
        expectRefused({u"logs"_s, number}, "logs: not the number of a run: " + number.toUtf8() + '\n');
    }
    const Ending none = rehearse({u"logs"_s, u"3"_s});
    EXPECT_EQ(none.status, 1);
    EXPECT_EQ(none.error, "There is no run 3.\n");
}

TEST_F(RehearsalLogs, aFolderThatIsNoneIsToldOnceAndTheFlowGoesOn) {
    file(u"Mac/Users/alex/Library/Logs/Quorvane"_s, "the user's");
    const Ending flushed = rehearse({u"network"_s, u"--flush"_s});
    EXPECT_EQ(flushed.status, 0);
    EXPECT_EQ(flushed.output.count("[ERROR]"), 1) << flushed.output.toStdString();
    EXPECT_TRUE(flushed.output.contains("  [ERROR] The log of this run can’t be kept: "
                                        "/Users/alex/Library/Logs/Quorvane: "))
        << flushed.output.toStdString();
    const Ending listed = rehearse({u"logs"_s});
    EXPECT_EQ(listed.status, 1);
    EXPECT_TRUE(listed.error.startsWith("Earlier runs can’t be listed: ")) << listed.error.toStdString();
}

TEST_F(RehearsalLogs, whatWasLoggedBeforeAKillIsKept) {
    const QString faults =
        file(u"faults.json"_s, R"([{"adapter": "files", "change": 2, "kill": true, "at": "rename"}])");
    const Ending killed = rehearse({u"snapshot"_s, u"Late"_s, u"--faults"_s, faults});
    EXPECT_EQ(killed.status, -1);
    ASSERT_EQ(kept().size(), 1);
    EXPECT_EQ(textOf(kept().first()), "\nCapturing system snapshot...\n");
}

} // namespace quorvane
