// What becomes of an apply that a run of the program was in when it ended.

#include "fakes/FlowRecords.h"
#include "fakes/LaunchedWindow.h"

namespace quorvane {

namespace {

class InterruptionActionsTest : public LaunchedWindow {
protected:
    InterruptionActionsTest() {
        files.addFile(kBaseline, "{}"); // no baseline is offered
        FlowRecord record = recordOfApply();
        record.profile = live;
        record.name = live.name;
        files.addFile(kFile, journalOf(record, 1));
    }

    bool isLeft() const { return session->system.interruptedFlow().has_value(); }
    qsizetype logged(const QString& line) const { return session->system.logMessages().count(line); }

    const QString kFile = u"/Users/alex/.quorvane/flow-under-way.jsonl"_s;
    const QString kBaseline = u"/Users/alex/.quorvane/master-baseline-current.json"_s;
    const QString kScan = u"\n[VERIFY] Scanning current system settings..."_s;
};

} // namespace

TEST_F(InterruptionActionsTest, theUserIsAskedBeforeTheScan) {
    alerts.hold();
    appearAndPaint();
    processEventsUntil([this] { return alerts.openCount() == 1; });
    EXPECT_EQ(takeSteps().filter(u"! "_s),
              QStringList(u"! An Apply Was Interrupted | “%1” was being applied when Quorvane ended. 1 of 3 steps were "
                          "done. | Finish, Go Back, Leave as Is"_s.arg(live.name)));
    EXPECT_EQ(logged(kScan), 0);
    EXPECT_TRUE(isLeft());
    alerts.answer(2);
    waitForTasks();
    EXPECT_FALSE(isLeft()) << "it is to be left as it is";
    EXPECT_EQ(logged(kScan), 1);
    EXPECT_EQ(trace.filter(u"write"_s), QStringList());
    launch.windowClosed();
    appearAndPaint();
    waitForTasks();
    EXPECT_EQ(alerts.openCount(), 0) << "once";
}

TEST_F(InterruptionActionsTest, withNothingInterruptedNobodyIsAsked) {
    files.remove(kFile);
    alerts.hold();
    appearAndPaint();
    waitForTasks();
    EXPECT_EQ(alerts.openCount(), 0);
    EXPECT_EQ(logged(kScan), 1);
}

TEST_F(InterruptionActionsTest, whatIsStillAtWorkIsLeftAlone) {
    machine.running.insert(recordOfApply().process);
    alerts.hold();
    appearAndPaint();
    waitForTasks();
    EXPECT_EQ(alerts.openCount(), 0);
    EXPECT_TRUE(files.exists(kFile));
}

TEST_F(InterruptionActionsTest, behindTheLockNobodyIsAsked) {
    enableLock();
    alerts.hold();
    appearAndPaint();
    QCoreApplication::processEvents();
    EXPECT_EQ(alerts.openCount(), 0);
    EXPECT_EQ(logged(kScan), 0);
    ASSERT_TRUE(lock->unlockWithPassword(kPassword));
    processEventsUntil([this] { return alerts.openCount() == 1; });
    alerts.answer(2);
    waitForTasks();
    EXPECT_EQ(logged(kScan), 1);
}

// The lock takes open questions away by their cancel buttons: that is nobody's answer.
TEST_F(InterruptionActionsTest, aQuestionThatTheLockTakesAwayIsAskedOnceMore) {
    enableLock();
    alerts.hold();
    appearAndPaint();
    ASSERT_TRUE(lock->unlockWithPassword(kPassword));
    processEventsUntil([this] { return alerts.openCount() == 1; });
    lock->lockIfEnabled();
    QCoreApplication::processEvents();
    EXPECT_EQ(alerts.openCount(), 0);
    EXPECT_TRUE(isLeft());
    EXPECT_EQ(logged(kScan), 0);
    ASSERT_TRUE(lock->unlockWithPassword(kPassword));
    processEventsUntil([this] { return alerts.openCount() == 1; });
    alerts.answer(2);
    waitForTasks();
    EXPECT_FALSE(isLeft());
}

TEST_F(InterruptionActionsTest, aQuestionThatTheEndOfTheProgramTakesAwayIsLeftForTheNextStart) {
    alerts.hold();
    appearAndPaint();
    processEventsUntil([this] { return alerts.openCount() == 1; });
    QCoro::waitFor(session->shutDown());
    EXPECT_TRUE(files.exists(kFile));
}

TEST_F(InterruptionActionsTest, finishingAppliesWhatWasRecorded) {
    ProfileManager(files, profilesDirectory(machine)).deleteProfile(live.name); // it is gone by now
    alerts.press(0);
    appearAndPaint();
    waitForTasks();
    EXPECT_EQ(logged(u"\n[RESUME] Finishing what was interrupted: "_s + live.name), 1);
    EXPECT_EQ(logged(u"\n[PROFILE] Applying: "_s + live.name), 1);
    EXPECT_FALSE(files.exists(kFile));
    EXPECT_EQ(logged(kScan), 1);
}

TEST_F(InterruptionActionsTest, goingBackAsksForOnePasswordAtMost) {
    alerts.press(1);
    appearAndPaint();
    waitForTasks();
    EXPECT_EQ(logged(u"\n[ROLLBACK] Going back to what was there before: "_s + live.name), 1);
    EXPECT_EQ(logged(u"\n[PROFILE] Applying: "_s + live.name), 0);
    EXPECT_LE(trace.filter(u"with administrator privileges"_s).size(), 1);
}

TEST_F(InterruptionActionsTest, aPromptThatIsRefusedOnTheWayBackLeavesTheRecord) {
    FlowRecord record = recordOfApply();
    record.before.keptOff = {};
    record.before.settings->timeMachineEnabled = false;
    setAutomaticBackups(true);
    files.addFile(kFile, journalOf(record, 1));
    scripts.failNext(u"User canceled. (-128)"_s);
    alerts.press(1);
    appearAndPaint();
    waitForTasks();
    EXPECT_TRUE(files.exists(kFile)) << "what is there before it isn't there again";
    EXPECT_EQ(logged(kScan), 1) << "the user has had their say";
}

} // namespace quorvane
