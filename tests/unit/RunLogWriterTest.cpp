// The log of a run in a file of its own: what is in there, what isn't, and what the user hears of it.

#include "runlogs/RunLogWriter.h"
#include "fakes/EventLoop.h"
#include "fakes/ScriptedSystem.h"

#include <cerrno>

namespace quorvane {

namespace {

const QString kLogs = u"/Users/alex/Library/Logs/Quorvane"_s;
const QString kRun = u"Quorvane 2026-03-14 20.30.00 (this process).log"_s;
const QString kRunPath = kLogs + u'/' + kRun;

QString earlier(int days) {
    return freeRunLogName(QDateTime(QDate(2026, 3, 14), QTime(12, 0), Qt::UTC).addDays(-days), u"boot/77"_s, {}).file;
}

class RunLog : public ScriptedSystem {
protected:
    void begin() { writer = std::make_unique<RunLogWriter>(system, logs, clock); }
    void log(const QString& message) { system.log(message); }
    static void turn() { QCoreApplication::processEvents(); }
    QByteArray written() const { return files.read(kRunPath); }
    QStringList kept() const {
        QStringList names = files.list(kLogs);
        names.sort();
        return names;
    }
    QStringList problems() const { return system.logMessages().filter(u"[ERROR]"_s); }

    RunLogs logs{files, machine};
    std::unique_ptr<RunLogWriter> writer;
};

} // namespace

TEST_F(RunLog, isMadeForTheFirstLine) {
    begin();
    turn();
    EXPECT_FALSE(files.exists(kLogs));
    EXPECT_EQ(writer->file(), QString());
    log(u"Ready."_s);
    EXPECT_FALSE(files.exists(kLogs)) << "a line costs who logs it no file";
    turn();
    EXPECT_EQ(writer->file(), kRun);
    EXPECT_EQ(written(), "Ready.\n");
}

TEST_F(RunLog, holdsEachEntryAsItIsWhatComesInOneTurnByOneWrite) {
    begin();
    log(u"Ready."_s);
    turn();
    const int before = files.changes();
    log(u"\n[PROFILE] Applying: “Live”"_s);
    log(QString());
    log(u"  [APPLIED] App Nap\nbypassed"_s);
    turn();
    EXPECT_EQ(files.changes(), before + 1);
    EXPECT_EQ(written(), "Ready.\n\n[PROFILE] Applying: “Live”\n\n  [APPLIED] App Nap\nbypassed\n");
}

TEST_F(RunLog, keepsWhatTheWindowNoLongerShows) {
    begin();
    log(u"before"_s);
    turn();
    log(u"between"_s);
    system.clearLog();
    log(u"after"_s);
    turn();
    EXPECT_EQ(written(), "before\nbetween\nafter\n");
}

TEST_F(RunLog, ofAProgramThatIsKilledHasAllButTheLastTurn) {
    begin();
    log(u"before"_s);
    turn();
    log(u"in the last turn"_s);
    EXPECT_EQ(written(), "before\n");
}

TEST_F(RunLog, hasWhatWasLoggedRightBeforeTheEnd) {
    begin();
    log(u"before"_s);
    turn();
    log(u"last"_s);
    writer.reset();
    EXPECT_EQ(written(), "before\nlast\n");
    begin();
    log(u"of a run without a turn"_s);
    writer.reset();
    EXPECT_EQ(files.read(kLogs + u"/Quorvane 2026-03-14 20.30.00 (this process 2).log"_s), "of a run without a turn\n")
        << "in the same second";
}

TEST_F(RunLog, isWrittenAtOnceWhereThatIsAskedFor) {
    begin();
    log(u"last"_s);
    writer->flush();
    EXPECT_EQ(written(), "last\n");
    const int before = files.changes();
    turn();
    EXPECT_EQ(files.changes(), before);
}

// ---- Five runs

TEST_F(RunLog, theSixthTakesThePlaceOfTheFirst) {
    for (int days = 1; days <= 5; ++days) {
        files.addFile(kLogs + u'/' + earlier(days), "old");
    }
    begin();
    turn();
    EXPECT_EQ(kept().size(), 5) << "no run has begun";
    log(u"Ready."_s);
    turn();
    EXPECT_EQ(kept(), QStringList({earlier(4), earlier(3), earlier(2), earlier(1), kRun}));
    EXPECT_EQ(problems(), QStringList());
}

TEST_F(RunLog, staysWhateverTheOthersAreCalled) {
    QStringList future;
    for (int days = 1; days <= 6; ++days) { // the clock was ahead
        future.append(earlier(-days));
        files.addFile(kLogs + u'/' + future.last(), "of a wrong clock");
    }
    begin();
    log(u"Ready."_s);
    turn();
    EXPECT_EQ(kept(), QStringList(kRun) + future.mid(2));
}

TEST_F(RunLog, leavesAloneWhatIsNoRuns) {
    QStringList foreign;
    for (int number = 1; number <= 9; ++number) {
        foreign.append(u"Quorvane 2020-01-0%1 old.log"_s.arg(number));
        files.addFile(kLogs + u'/' + foreign.last(), "the user's");
    }
    files.addFile(u"/Users/alex/precious"_s, "the user's");
    files.addLink(kLogs + u'/' + earlier(70), u"/Users/alex/precious"_s);
    files.addFile(kLogs + u'/' + earlier(71) + u"/inside"_s, "a folder");
    for (int days = 1; days <= 5; ++days) {
        files.addFile(kLogs + u'/' + earlier(days), "old");
    }
    begin();
    log(u"Ready."_s);
    turn();
    foreign += QStringList({earlier(71), earlier(70), earlier(4), earlier(3), earlier(2), earlier(1), kRun});
    foreign.sort();
    EXPECT_EQ(kept(), foreign);
    EXPECT_EQ(logs.kept().size(), 5);
}

TEST_F(RunLog, isOneOfTwoWhereTwoProgramsRunAtOnce) {
    for (int days = 1; days <= 5; ++days) {
        files.addFile(kLogs + u'/' + earlier(days), "old");
    }
    FixedMachine otherMachine;
    otherMachine.name = u"boot/4712"_s;
    RunLogs otherLogs(files, otherMachine);
    RunLogWriter other(system, otherLogs, clock); // hears the same, in the same second
    begin();
    log(u"Ready."_s);
    turn();
    log(u"Done."_s);
    turn();
    EXPECT_EQ(written(), "Ready.\nDone.\n");
    EXPECT_EQ(files.read(kLogs + u"/Quorvane 2026-03-14 20.30.00 (4712).log"_s), "Ready.\nDone.\n");
    EXPECT_EQ(kept().size(), 5);
    EXPECT_FALSE(kept().contains(earlier(4)));
    EXPECT_EQ(problems(), QStringList());
}

TEST_F(RunLog, anOlderOneThatCantGoIsToldOnceAndTheRunGoesOn) {
    for (int days = 1; days <= 5; ++days) {
        files.addFile(kLogs + u'/' + earlier(days), "old");
    }
    files.failOn(MemoryFileManager::Operation::Remove, kLogs + u'/' + earlier(5));
    begin();
    log(u"Ready."_s);
    turn();
    turn();
    log(u"Done."_s);
    turn();
    ASSERT_EQ(problems().size(), 1);
    EXPECT_TRUE(problems().first().startsWith(u"  [ERROR] The log of an older run can’t be removed: "_s))
        << problems().first().toStdString();
    EXPECT_EQ(written(), "Ready.\n" + problems().first().toUtf8() + "\nDone.\n");
}

namespace {

/// Another process removes the same files, each a moment before.
class SharedFiles final : public MemoryFileManager {
public:
    void remove(const QString& path) override {
        removeAsRoot(path);
        throw FileError(path, ENOENT);
    }
};

} // namespace

TEST_F(RunLog, thatAnotherProcessHasRemovedMeanwhileIsGoneAndNoProblem) {
    SharedFiles shared;
    for (int days = 1; days <= 6; ++days) {
        shared.addFile(kLogs + u'/' + earlier(days), "old");
    }
    RunLogs sharedLogs(shared, machine);
    RunLogWriter one(system, sharedLogs, clock);
    log(u"Ready."_s);
    turn();
    EXPECT_EQ(sharedLogs.kept().size(), 5);
    EXPECT_EQ(problems(), QStringList());
}

// ---- Its end

TEST_F(RunLog, endsAtTenMebibytesWithALineThatSaysSo) {
    begin();
    const QString line(1'000'000, u'x');
    for (int number = 0; number < 12; ++number) {
        log(line);
        turn();
    }
    const QByteArray end = "  [INFO] This file is full. What followed stood in the window alone.\n";
    EXPECT_LE(written().size(), 10 * 1024 * 1024);
    EXPECT_TRUE(written().endsWith("x\n" + end));
    EXPECT_EQ(written().count('\n'), 11);
    EXPECT_EQ(system.logMessages().size(), 12) << "the window has it all";
}

TEST_F(RunLog, isFilledToTheLastByte) {
    begin();
    const qsizetype room = RunLogWriter::kLargestFile - 69; // the last line's
    log(QString(room - 1, u'x'));
    log(QString());
    turn();
    EXPECT_EQ(written().size(), RunLogWriter::kLargestFile);
}

TEST_F(RunLog, thatCantHoldAnEntrySaysSoToo) {
    begin();
    log(QString(RunLogWriter::kLargestFile, u'ß'));
    log(u"later"_s);
    turn();
    EXPECT_EQ(written(), "  [INFO] This file is full. What followed stood in the window alone.\n");
}

TEST_F(RunLog, ofManyLinesIsTakenInOneWrite) {
    begin();
    constexpr int kMany = 100'000;
    for (int number = 0; number < kMany; ++number) {
        log(u"  [OK] line %1"_s.arg(number));
    }
    turn();
    EXPECT_EQ(files.changes(), 2) << "the folder and the file";
    EXPECT_EQ(written().count('\n'), kMany);
}

// ---- What stands in the way

namespace {

/// What the user is told where nothing can be kept, and that it is told once.
class UnkeptRunLog : public RunLog {
protected:
    void expectToldOnce(const QString& reason) {
        begin();
        for (const QString& message : {u"Ready."_s, u"one"_s, u"two"_s}) {
            log(message);
            turn();
            turn();
        }
        ASSERT_EQ(problems().size(), 1);
        EXPECT_EQ(problems().first(), u"  [ERROR] The log of this run can’t be kept: "_s + reason);
        EXPECT_EQ(system.logMessages().size(), 4);
        const int before = files.changes();
        log(u"three"_s);
        writer.reset();
        EXPECT_EQ(files.changes(), before);
    }
};

} // namespace

TEST_F(UnkeptRunLog, whereTheFolderIsUnwritable) {
    files.addFolders(kLogs);
    files.makeUnwritable(kLogs);
    expectToldOnce(kRunPath + u": Permission denied"_s);
}

TEST_F(UnkeptRunLog, whereTheFolderCantBeMade) {
    files.addFolders(u"/Users/alex/Library"_s);
    files.makeUnwritable(u"/Users/alex/Library"_s);
    expectToldOnce(kLogs + u": Permission denied"_s);
}

TEST_F(UnkeptRunLog, whereTheFolderIsAFile) {
    files.addFile(kLogs, "the user's");
    expectToldOnce(kLogs + u": Not a directory"_s);
    EXPECT_EQ(files.read(kLogs), "the user's");
}

TEST_F(UnkeptRunLog, whereTheFolderIsALink) {
    files.addFolders(u"/Volumes/Stick"_s);
    files.addLink(kLogs, u"/Volumes/Stick"_s);
    expectToldOnce(kLogs + u": A link stands in the place of the folder"_s);
    EXPECT_EQ(files.list(u"/Volumes/Stick"_s), QStringList());
}

TEST_F(UnkeptRunLog, whereTheDiskIsFullAndTheOldOnesStay) {
    for (int days = 1; days <= 5; ++days) {
        files.addFile(kLogs + u'/' + earlier(days), "old");
    }
    files.failOn(MemoryFileManager::Operation::Write, kRunPath);
    begin();
    log(u"Ready."_s);
    turn();
    EXPECT_EQ(problems().size(), 1);
    EXPECT_EQ(kept(), QStringList({earlier(5), earlier(4), earlier(3), earlier(2), earlier(1)}));
}

TEST_F(UnkeptRunLog, fromTheMomentOnInWhichTheDiskIsFull) {
    begin();
    log(u"Ready."_s);
    turn();
    files.failOn(MemoryFileManager::Operation::Write, kRunPath);
    log(u"lost"_s);
    turn();
    log(u"lost, too"_s);
    turn();
    EXPECT_EQ(problems().size(), 1);
    EXPECT_EQ(written(), "Ready.\n");
}

TEST_F(UnkeptRunLog, atTheVeryEndIsToldNobody) {
    files.addFile(kLogs, "the user's");
    begin();
    log(u"Ready."_s);
    writer.reset();
    EXPECT_EQ(system.logMessages(), QStringList(u"Ready."_s));
}

// ---- The kept ones

TEST_F(RunLog, isReadAsItWasWritten) {
    const QByteArray torn = QByteArray("Ready.\n  [OK] H\xc3");
    files.addFile(kLogs + u'/' + earlier(1), torn);
    EXPECT_EQ(logs.read(earlier(1)), torn);
    EXPECT_THROW(logs.read(earlier(2)), FileError);
}

TEST_F(RunLog, isNotReadThroughALink) {
    files.addFile(u"/Users/alex/precious"_s, "secret");
    files.addLink(kLogs + u'/' + earlier(1), u"/Users/alex/precious"_s);
    EXPECT_THROW(logs.read(earlier(1)), FileError);
    EXPECT_EQ(logs.kept(), QList<RunLogName>());
}

TEST_F(RunLog, isNoneWhereThereIsNoFolder) {
    EXPECT_EQ(logs.kept(), QList<RunLogName>());
    EXPECT_FALSE(files.exists(kLogs)) << "looking makes nothing";
}

} // namespace quorvane
