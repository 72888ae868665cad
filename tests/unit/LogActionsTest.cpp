#include "fakes/ActionSystem.h"

#include <QSemaphore>
#include <QThreadPool>

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
    QThreadPool& threads = *QThreadPool::globalInstance();
    const int count = threads.maxThreadCount();
    QSemaphore free;
    for (int thread = 0; thread < count; ++thread) {
        threads.start([&free] { free.acquire(); });
    }
    const QCoro::Task<ActionOutcome> running = session->logActions.exportLog(*listener);
    lock->lockIfEnabled(); // while the text is made
    free.release(count);
    processEventsUntil([this] { return session->turnstile.isIdle(); });
    threads.waitForDone(); // they hold what goes with this
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

} // namespace quorvane
