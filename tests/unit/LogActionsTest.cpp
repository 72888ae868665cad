#include "fakes/ActionSystem.h"
#include "fakes/HeldThreads.h"

namespace quorvane {

namespace {

class LogActionsTest : public ActionSystem {
protected:
    LogActionsTest() {
        files.createFolders(u"/Users/alex/Desktop"_s);
        session->system.log(u"Ready."_s);
        session->system.log(u"\n[PROFILE] Applying: “Live”"_s);
        steps.clear();
    }

    ActionOutcome exported() { return ending(session->logActions.exportLog(*listener)); }

    void keep(const QString& file, const QByteArray& text) { files.addFile(kLogs + file, text); }
    KeptLog readRun(const QString& file) { return QCoro::waitFor(session->logActions.readKept({file, file})); }
    QStringList titles() const {
        QStringList texts;
        for (const KeptRun& run : session->logActions.keptRuns().runs) {
            texts.append(run.title);
        }
        return texts;
    }

    const QString kLogs = u"/Users/alex/Library/Logs/Quorvane/"_s;
    const QString kFirst = u"Quorvane 2026-03-12 18.00.01 (77).log"_s;
    const QString kSecond = u"Quorvane 2026-03-12 18.00.59 (12).log"_s;
    const QString kThird = u"Quorvane 2026-03-13 09.15.00 (4711).log"_s;
    const QString kPath = u"/Users/alex/Desktop/quorvane_log.txt"_s;
    const QByteArray kText = "Ready.\n\n[PROFILE] Applying: “Live”";
};

} // namespace

TEST_F(LogActionsTest, anExportWritesTheLogAsItIs) {
    filePanels.choose(kPath);
    const ActionOutcome outcome = exported();
    EXPECT_TRUE(outcome.succeeded);
    EXPECT_EQ(filePanels.asked, QStringList(u"save: Export Log | quorvane_log.txt"_s));
    EXPECT_EQ(filePanels.lastKind, FileKind::PlainText);
    EXPECT_EQ(files.read(kPath), kText);
    EXPECT_EQ(takeSteps(), QStringList({u"! Export Successful | Log successfully exported."_s + kOkay, u"anew: "_s}));
}

TEST_F(LogActionsTest, anExportThatIsCancelledLeavesNoTrace) {
    EXPECT_FALSE(exported().wasCarriedOut);
    EXPECT_EQ(filePanels.asked.size(), 1);
    EXPECT_EQ(takeSteps(), QStringList());
    EXPECT_FALSE(files.exists(kPath));
}

TEST_F(LogActionsTest, anEmptyLogAsksForNoFile) {
    session->logActions.clearLog();
    for (const bool isOfAnEmptyMessage : {false, true}) {
        EXPECT_FALSE(exported().succeeded);
        EXPECT_EQ(filePanels.asked, QStringList());
        EXPECT_EQ(takeSteps().filter(u"!"_s), QStringList(u"! Empty Log | The log is empty."_s + kOkay));
        session->system.log({});
        EXPECT_EQ(isOfAnEmptyMessage ? 2 : 1, session->system.logMessages().size());
    }
}

TEST_F(LogActionsTest, anExportThatFailsTellsWhyAndKeepsTheFile) {
    filePanels.choose(kPath);
    files.addFile(kPath, "an older one");
    files.failOn(MemoryFileManager::Operation::Write, kPath);
    EXPECT_FALSE(exported().succeeded);
    const QStringList told = takeSteps();
    ASSERT_EQ(told.size(), 2);
    EXPECT_TRUE(told.first().startsWith(u"! Export Error | Failed to save log: "_s + kPath + u": "_s))
        << told.first().toStdString();
    EXPECT_EQ(files.read(kPath), "an older one");
}

TEST_F(LogActionsTest, anExportEndsWhenTheProgramIsLockedBehindThePanel) {
    enableLock();
    filePanels.hold();
    const QCoro::Task<ActionOutcome> running = session->logActions.exportLog(*listener);
    processEventsUntil([this] { return filePanels.openCount() == 1; });
    EXPECT_FALSE(session->turnstile.isIdle());
    lock->lockIfEnabled();
    steps.clear();
    filePanels.answer(kPath);
    processEventsUntil([this] { return session->turnstile.isIdle(); });
    EXPECT_FALSE(files.exists(kPath));
    EXPECT_EQ(takeSteps(), QStringList());
}

TEST_F(LogActionsTest, noPanelOpensAboveTheLockScreen) {
    enableLock();
    HeldThreads threads;
    const QCoro::Task<ActionOutcome> running = session->logActions.exportLog(*listener);
    lock->lockIfEnabled(); // while the text is made
    threads.release();
    processEventsUntil([this] { return session->turnstile.isIdle(); });
    EXPECT_EQ(filePanels.asked, QStringList());
}

TEST_F(LogActionsTest, anExportWritesWhatTheLogHeldWhenItWasAskedFor) {
    filePanels.hold();
    const QCoro::Task<ActionOutcome> running = session->logActions.exportLog(*listener);
    processEventsUntil([this] { return filePanels.openCount() == 1; });
    session->logActions.clearLog();
    session->system.log(u"later"_s);
    filePanels.answer(kPath);
    processEventsUntil([this] { return session->turnstile.isIdle(); });
    EXPECT_EQ(files.read(kPath), kText);
}

TEST_F(LogActionsTest, theDebugModeIsSwitched) {
    session->logActions.setDebugMode(true);
    EXPECT_TRUE(session->system.debugMode());
    session->logActions.setDebugMode(false);
    EXPECT_FALSE(session->system.debugMode());
}

TEST_F(LogActionsTest, aClearedLogIsEmptyAndAFlowThatRunsLogsOn) {
    const Turnstile::Hold busy = session->turnstile.busy(u"Working…"_s);
    int cleared = 0;
    QObject::connect(&session->system, &SystemManager::logCleared, [&cleared] { ++cleared; });
    session->logActions.clearLog();
    EXPECT_EQ(session->system.logMessages(), QStringList());
    EXPECT_EQ(cleared, 1);
    session->system.log(u"on"_s);
    EXPECT_EQ(session->system.logMessages(), QStringList(u"on"_s));
}

// ---- Earlier runs

TEST_F(LogActionsTest, theKeptRunsAreThoseOfOthersTheNewestFirst) {
    keep(kFirst, "one");
    keep(kSecond, "two");
    keep(kThird, "three");
    keep(u"notes.txt"_s, "the user's");
    session->system.log(u"on"_s);
    QCoro::waitFor(session->finished());
    EXPECT_TRUE(files.exists(kLogs + session->runLogWriter.file()));
    EXPECT_EQ(titles(), QStringList({u"Mar 13, 2026 at 9:15 AM"_s, u"Mar 12, 2026 at 6:00 PM (2)"_s,
                                     u"Mar 12, 2026 at 6:00 PM"_s}));
    EXPECT_EQ(session->logActions.keptRuns().runs.at(1).file, kSecond);
    EXPECT_EQ(session->logActions.keptRuns().problem, QString());
}

TEST_F(LogActionsTest, runsThatCantBeListedSayWhy) {
    files.addFile(kLogs.chopped(1), "a file");
    const KeptRuns kept = session->logActions.keptRuns();
    EXPECT_EQ(kept.runs, QList<KeptRun>());
    EXPECT_EQ(kept.problem, u"Earlier runs can’t be listed: "_s + kLogs.chopped(1) + u": Not a directory"_s);
}

TEST_F(LogActionsTest, aKeptRunIsReadLineByLine) {
    keep(kFirst, "Ready.\n\n[PROFILE] Applying: “Live”\n");
    const KeptLog kept = readRun(kFirst);
    EXPECT_EQ(kept.lines, QStringList({u"Ready."_s, QString(), u"[PROFILE] Applying: “Live”"_s}));
    EXPECT_EQ(kept.problem, QString());
}

TEST_F(LogActionsTest, whatASuddenEndHasCutIsShownAsFarAsItGoes) {
    keep(kFirst, "Ready.\n  [OK] H\xc3");
    EXPECT_EQ(readRun(kFirst).lines, QStringList({u"Ready."_s, u"  [OK] H\uFFFD"_s}));
    keep(kSecond, QByteArray("\xff\xfe\x00", 3) + "bytes\nof another kind\n");
    const KeptLog odd = readRun(kSecond);
    ASSERT_EQ(odd.lines.size(), 2);
    EXPECT_TRUE(odd.lines.first().startsWith(u"\uFFFD\uFFFD"_s));
    EXPECT_EQ(odd.lines.last(), u"of another kind"_s);
}

TEST_F(LogActionsTest, anEmptyOneHasNoLinesAndNoProblem) {
    keep(kFirst, {});
    EXPECT_EQ(readRun(kFirst).lines, QStringList());
    EXPECT_EQ(readRun(kFirst).problem, QString());
    keep(kFirst, "\n");
    EXPECT_EQ(readRun(kFirst).lines, QStringList(QString()));
}

TEST_F(LogActionsTest, aRunThatIsGoneOrCantBeReadSaysSo) {
    EXPECT_EQ(readRun(kFirst).problem, u"The log of this run is gone. Only those of the last five runs are kept."_s);
    keep(kFirst, "Ready.\n");
    files.failOn(MemoryFileManager::Operation::Read, kLogs + kFirst);
    const KeptLog unread = readRun(kFirst);
    EXPECT_EQ(unread.lines, QStringList());
    EXPECT_TRUE(unread.problem.startsWith(u"The log of this run can’t be read: "_s + kLogs + kFirst))
        << unread.problem.toStdString();
}

TEST_F(LogActionsTest, tenMebibytesAreReadWithoutHoldingTheWindowUp) {
    QByteArray text;
    while (text.size() < qsizetype(10) * 1024 * 1024) {
        text += "  [OK] a line of an earlier run\n";
    }
    keep(kFirst, text);
    HeldThreads threads;
    const QCoro::Task<KeptLog> reading = session->logActions.readKept({kFirst, kFirst});
    const Ticks ticks;
    processEventsUntil([&ticks] { return ticks.count() > 3; });
    EXPECT_FALSE(reading.isReady()) << "it is taken apart on another thread";
    threads.release();
    processEventsUntil([&reading] { return reading.isReady(); });
}

TEST_F(LogActionsTest, aKeptRunIsExportedUnderANameOfItsOwn) {
    const QString path = u"/Users/alex/Desktop/earlier.txt"_s;
    filePanels.choose(path);
    const QStringList lines{u"Ready."_s, QString(), u"[PROFILE] Applying: “Live”"_s};
    EXPECT_TRUE(ending(session->logActions.exportKept({kThird, u"yesterday"_s}, lines, *listener)).succeeded);
    EXPECT_EQ(filePanels.asked, QStringList(u"save: Export Log | Quorvane 2026-03-13 09.15.00 (4711).txt"_s));
    EXPECT_EQ(files.read(path), kText);
}

TEST_F(LogActionsTest, aKeptRunWithoutTextIsNotExported) {
    EXPECT_FALSE(ending(session->logActions.exportKept({kThird, u"yesterday"_s}, {}, *listener)).succeeded);
    EXPECT_EQ(filePanels.asked, QStringList());
    EXPECT_EQ(takeSteps().filter(u"!"_s), QStringList(u"! Empty Log | The log is empty."_s + kOkay));
}

TEST_F(LogActionsTest, whatWasLoggedLastIsKeptWhenTheProgramHasEnded) {
    session->system.log(u"last"_s);
    const QString file = session->runLogWriter.file();
    QCoro::waitFor(session->shutDown());
    EXPECT_TRUE(files.read(kLogs + session->runLogWriter.file()).endsWith("\nlast\n"));
    EXPECT_EQ(file, QString()) << "nothing had come round";
}

} // namespace quorvane
