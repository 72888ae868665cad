#include "fakes/ScriptedSystem.h"

namespace quorvane {

namespace {

class SystemManagerTest : public ScriptedSystem {
protected:
    CommandResult run(const QStringList& arguments, OutputCapture capture = OutputCapture::Capture) {
        return QCoro::waitFor(system.runCommand(arguments, capture));
    }
};

} // namespace

TEST_F(SystemManagerTest, logKeepsEveryEntryAsItIs) {
    system.log(u"\nStarting"_s);
    system.log(u""_s);
    system.log(u"  [OK] done"_s);
    EXPECT_EQ(system.logMessages(), QStringList({u"\nStarting"_s, u""_s, u"  [OK] done"_s}));
}

TEST_F(SystemManagerTest, anEntryVanishesWhoseOwnTagIsThatOfAWarning) {
    for (const QString& entry :
         {u"  [WARNING] as a detail"_s, u"[WARNING] bare"_s, u"\n[WARNING] as a headline"_s, u"\r\n \t[WARNING]"_s}) {
        system.log(entry);
    }
    EXPECT_TRUE(system.logMessages().isEmpty());
    EXPECT_TRUE(trace.isEmpty());
}

TEST_F(SystemManagerTest, anEntryStaysInWhichOnlyANameHoldsTheWord) {
    const QStringList entries{u"\n[PROFILE] Applying: [WARNING] Late show"_s,
                              u"  [ERROR] Failed to add login item: Deck [WARNING]"_s, u"[WARNING"_s,
                              u"  [warning] in lower case"_s, u"  . [WARNING]"_s};
    for (const QString& entry : entries) {
        system.log(entry);
    }
    EXPECT_EQ(system.logMessages(), entries);
    EXPECT_EQ(trace, entries);
}

TEST_F(SystemManagerTest, nestedBusyBracketsKeepTheFirstText) {
    system.beginBusy(u"Applying profile…"_s);
    system.beginBusy(u"Verifying system settings…"_s);
    EXPECT_EQ(system.busyMessage(), u"Applying profile…"_s);
    EXPECT_EQ(system.busyDepth(), 2);
    system.endBusy();
    EXPECT_TRUE(system.isBusy());
    EXPECT_EQ(system.busyMessage(), u"Applying profile…"_s);
    system.endBusy();
    EXPECT_FALSE(system.isBusy());
    EXPECT_EQ(system.busyMessage(), QString());
    system.endBusy();
    EXPECT_EQ(system.busyDepth(), 0);
    system.beginBusy(u"Running maintenance…"_s);
    EXPECT_EQ(system.busyMessage(), u"Running maintenance…"_s);
}

TEST_F(SystemManagerTest, aCommandGivesItsStatusAndBothStreams) {
    CommandOutcome outcome = ScriptedCommandLauncher::succeeded("out é\n");
    outcome.code = 3;
    outcome.standardError = "err\n";
    commands.answer(u"/usr/bin/tool a"_s, outcome);
    const CommandResult result = run({u"/usr/bin/tool"_s, u"a"_s});
    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.standardOutput, u"out é\n"_s);
    EXPECT_EQ(result.standardError, u"err\n"_s);
    EXPECT_TRUE(system.logMessages().isEmpty());
}

TEST_F(SystemManagerTest, outputThatIsNoUtf8CountsAsEmpty) {
    CommandOutcome outcome = ScriptedCommandLauncher::succeeded("abc\xff\xfe");
    outcome.standardError = QByteArray("\xc3", 1);
    commands.answer(u"tool"_s, outcome);
    const CommandResult result = run({u"tool"_s});
    EXPECT_EQ(result.standardOutput, QString());
    EXPECT_EQ(result.standardError, QString());
    EXPECT_EQ(result.status, 0);
}

TEST_F(SystemManagerTest, aToolEndedByASignalIsNoSuccess) {
    CommandOutcome outcome;
    outcome.ending = CommandOutcome::Ending::EndedBySignal;
    outcome.code = 9;
    commands.answer(u"tool"_s, outcome);
    EXPECT_EQ(run({u"tool"_s}).status, 137);
}

TEST_F(SystemManagerTest, aLaunchFailureGivesStatusOneAndTheReason) {
    CommandOutcome outcome;
    outcome.launchError = u"No such file or directory"_s;
    commands.answer(u"tool"_s, outcome);
    const CommandResult result = run({u"tool"_s});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.standardOutput, QString());
    EXPECT_EQ(result.standardError, u"No such file or directory"_s);
}

TEST_F(SystemManagerTest, onlyAToolThatRanToItsOwnEndHasAnswered) {
    EXPECT_TRUE(run({u"tool"_s}).isAnswered);
    for (const int status : {0, 1, 125, 128, 255}) {
        commands.fail(u"tool"_s, status);
        EXPECT_TRUE(run({u"tool"_s}).isAnswered) << status;
    }
    for (const CommandOutcome& outcome : ScriptedCommandLauncher::unanswered()) {
        commands.answer(u"tool"_s, outcome);
        EXPECT_FALSE(run({u"tool"_s}).isAnswered) << static_cast<int>(outcome.ending) << ' ' << outcome.code;
    }
}

TEST_F(SystemManagerTest, whatEndsAfterTheProgramBeganToQuitIsNoAnswer) {
    commands.print(u"tool"_s, "half of it");
    commands.hold();
    const QCoro::Task<CommandResult> running = system.runCommand({u"tool"_s}, OutputCapture::Capture);
    commands.shutDown();
    commands.release();
    EXPECT_FALSE(QCoro::waitFor(running).isAnswered);
}

TEST_F(SystemManagerTest, debugModeLogsTheCommandAndItsTrimmedOutput) {
    system.setDebugMode(true);
    CommandOutcome outcome = ScriptedCommandLauncher::succeeded("\n\n one\ntwo \n\n");
    outcome.standardError = "\nbad\n";
    commands.answer(u"/usr/bin/tool -x"_s, outcome);
    run({u"/usr/bin/tool"_s, u"-x"_s});
    EXPECT_EQ(takeTrace(), u"\n[DEBUG] EXEC: /usr/bin/tool -x\n"
                           "$> /usr/bin/tool -x\n"
                           "  [STDOUT]  one\ntwo \n"
                           "  [STDERR] bad\n"_s);
}

TEST_F(SystemManagerTest, debugModeLogsNoStreamThatIsEmpty) {
    system.setDebugMode(true);
    run({u"tool"_s}, OutputCapture::Discard);
    EXPECT_EQ(takeTrace(), u"\n[DEBUG] EXEC: tool\n$ tool\n"_s);
}

TEST_F(SystemManagerTest, debugModeLogsALaunchFailure) {
    system.setDebugMode(true);
    CommandOutcome outcome;
    outcome.launchError = u"gone"_s;
    commands.answer(u"tool"_s, outcome);
    run({u"tool"_s});
    EXPECT_EQ(takeTrace(), u"\n[DEBUG] EXEC: tool\n$> tool\n  [EXC] Exception: gone\n"_s);
}

} // namespace quorvane
