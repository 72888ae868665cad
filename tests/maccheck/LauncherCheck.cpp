// The Mac's tools as child processes.

#include "contract/Awaited.h"
#include "maccheck/CheckProgram.h"
#include "platform/portable/ProcessCommandLauncher.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

class Launcher : public ::testing::Test {
protected:
    CommandOutcome run(const QStringList& arguments) {
        return awaited(launcher.run(arguments, OutputCapture::Capture));
    }

    ProcessCommandLauncher launcher{u"/usr/bin/env"_s};
};

} // namespace

TEST_F(Launcher, anExitStatusIsTold) {
    const CommandOutcome outcome = run({u"sh"_s, u"-c"_s, u"echo out; echo err >&2; exit 7"_s});
    EXPECT_EQ(outcome.ending, CommandOutcome::Ending::Exited);
    EXPECT_EQ(outcome.code, 7);
    EXPECT_EQ(outcome.standardOutput, "out\n");
    EXPECT_EQ(outcome.standardError, "err\n");
}

TEST_F(Launcher, anEndBySignalIsTold) {
    const CommandOutcome outcome = run({u"sh"_s, u"-c"_s, u"kill -9 $$"_s});
    EXPECT_EQ(outcome.ending, CommandOutcome::Ending::EndedBySignal);
    EXPECT_EQ(outcome.code, 9);
}

TEST_F(Launcher, tenMebibytesOfOutputComeWhole) {
    constexpr qsizetype kSize = qsizetype(10) * 1024 * 1024;
    const CommandOutcome outcome = run({u"head"_s, u"-c"_s, QString::number(kSize), u"/dev/zero"_s});
    EXPECT_EQ(outcome.standardOutput.size(), kSize);
}

TEST_F(Launcher, aToolThatIsMissingIsAFailure) {
    const CommandOutcome outcome = run({u"quorvane-has-no-such-tool"_s});
    EXPECT_EQ(outcome.ending, CommandOutcome::Ending::Exited);
    EXPECT_EQ(outcome.code, 127);
}

TEST_F(Launcher, aHundredChildrenInARow) {
    constexpr int kChildren = 100;
    QElapsedTimer timer;
    timer.start();
    for (int child = 0; child < kChildren; ++child) {
        ASSERT_EQ(run({u"true"_s}).code, 0);
    }
    const double mean = static_cast<double>(timer.nsecsElapsed()) / 1e6 / kChildren;
    tell(u"%1 ms each, of which 5 are the limit for starting them in this way"_s.arg(mean, 0, 'f', 2));
}

TEST_F(Launcher, theEndTakesARunningToolAlong) {
    const QFuture<CommandOutcome> running = launcher.run({u"sleep"_s, u"600"_s}, OutputCapture::Capture);
    launcher.shutDown();
    EXPECT_NE(awaited(running).ending, CommandOutcome::Ending::Exited);
    EXPECT_EQ(run({u"true"_s}).ending, CommandOutcome::Ending::NotLaunched);
}

} // namespace quorvane
