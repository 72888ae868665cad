#include "platform/portable/ProcessCommandLauncher.h"

#include "fakes/EventLoop.h"

#include <gtest/gtest.h>

#include <csignal>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using Ending = CommandOutcome::Ending;

class ProcessLauncher : public ::testing::Test {
protected:
    CommandOutcome run(const QStringList& arguments, OutputCapture capture = OutputCapture::Capture) {
        const QFuture<CommandOutcome> future = launcher.run(arguments, capture);
        processEventsUntil([&future] { return future.isFinished(); });
        return future.result();
    }
    CommandOutcome shell(const QString& line, OutputCapture capture = OutputCapture::Capture) {
        return run({u"sh"_s, u"-c"_s, line}, capture);
    }

    ProcessCommandLauncher launcher{u"/usr/bin/env"_s};
};

} // namespace

TEST_F(ProcessLauncher, givesStatusAndBothStreams) {
    const CommandOutcome outcome = shell(u"echo out; echo err >&2; exit 7"_s);
    EXPECT_EQ(outcome.ending, Ending::Exited);
    EXPECT_EQ(outcome.code, 7);
    EXPECT_EQ(outcome.standardOutput, "out\n");
    EXPECT_EQ(outcome.standardError, "err\n");
}

TEST_F(ProcessLauncher, argumentsAreNotInterpreted) {
    EXPECT_EQ(run({u"printf"_s, u"%s|"_s, u"a b"_s, u"$HOME"_s, u"*"_s, u"\"x'"_s, QString()}).standardOutput,
              "a b|$HOME|*|\"x'||");
}

TEST_F(ProcessLauncher, outputThatIsNotCapturedGoesNowhere) {
    const CommandOutcome outcome = shell(u"echo out; echo err >&2; exit 3"_s, OutputCapture::Discard);
    EXPECT_EQ(outcome.code, 3);
    EXPECT_EQ(outcome.standardOutput, QByteArray());
    EXPECT_EQ(outcome.standardError, QByteArray());
}

TEST_F(ProcessLauncher, theChildReadsAnEmptyInput) {
    EXPECT_EQ(run({u"cat"_s}).code, 0);
}

TEST_F(ProcessLauncher, eightMebibytesOnEachStreamArriveWhileTheEventLoopTicks) {
    const Ticks ticks;
    const CommandOutcome outcome =
        shell(u"head -c 8388608 /dev/zero | tr '\\0' o; head -c 8388608 /dev/zero | tr '\\0' e >&2"_s);
    EXPECT_EQ(outcome.standardOutput, QByteArray(8 << 20, 'o'));
    EXPECT_EQ(outcome.standardError, QByteArray(8 << 20, 'e'));
    EXPECT_GT(ticks.count(), 0);
}

TEST_F(ProcessLauncher, aMissingToolIsTheEnvironmentToolsFailure) {
    const CommandOutcome outcome = run({u"/no/such/tool"_s});
    EXPECT_EQ(outcome.ending, Ending::Exited);
    EXPECT_EQ(outcome.code, 127);
    EXPECT_TRUE(outcome.standardError.contains("/no/such/tool")) << outcome.standardError.toStdString();
}

TEST_F(ProcessLauncher, aMissingEnvironmentToolIsALaunchFailure) {
    ProcessCommandLauncher broken(u"/no/such/env"_s);
    const QFuture<CommandOutcome> future = broken.run({u"true"_s}, OutputCapture::Capture);
    processEventsUntil([&future] { return future.isFinished(); });
    EXPECT_EQ(future.result().ending, Ending::NotLaunched);
    EXPECT_FALSE(future.result().launchError.isEmpty());
}

TEST_F(ProcessLauncher, aChildEndedByASignalIsToldApart) {
    const CommandOutcome outcome = shell(u"kill -TERM $$"_s);
    EXPECT_EQ(outcome.ending, Ending::EndedBySignal);
    EXPECT_EQ(outcome.code, SIGTERM);
}

TEST_F(ProcessLauncher, aHangingChildKeepsItsFutureWaitingUntilShutDownEndsIt) {
    const Ticks ticks;
    const QFuture<CommandOutcome> future = launcher.run({u"sleep"_s, u"1000"_s}, OutputCapture::Discard);
    processEventsUntil([&ticks] { return ticks.count() > 20; });
    EXPECT_FALSE(future.isFinished());
    launcher.shutDown();
    processEventsUntil([&future] { return future.isFinished(); });
    EXPECT_EQ(future.result().ending, Ending::EndedBySignal);
    EXPECT_EQ(run({u"true"_s}).ending, Ending::NotLaunched);
    EXPECT_EQ(run({u"true"_s}).launchError, u"The program is quitting."_s);
}

TEST(ProcessLauncherLife, aLauncherThatGoesAwayEndsItsChildren) {
    QFuture<CommandOutcome> future;
    {
        ProcessCommandLauncher launcher(u"/usr/bin/env"_s);
        future = launcher.run({u"sleep"_s, u"1000"_s}, OutputCapture::Discard);
    }
    ASSERT_TRUE(future.isFinished());
    EXPECT_EQ(future.result().ending, Ending::EndedBySignal);
}

} // namespace quorvane
