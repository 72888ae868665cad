#include "actions/Tasks.h"

#include "core/FlowEnvironment.h"
#include "fakes/EventLoop.h"

#include <QCoroFuture>
#include <QStringList>

#include <gtest/gtest.h>

#include <stdexcept>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

class RecordingEnvironment final : public FlowEnvironment {
public:
    void log(const QString& message) override { lines.append(message); }
    QCoro::Task<CommandResult> runCommand(QStringList, OutputCapture) override { co_return CommandResult{}; }
    QCoro::Task<CommandResult> executeAdminScript(QString, QString) override { co_return CommandResult{}; }
    const Host& host() const override { std::abort(); }

    QStringList lines;
};

QCoro::Task<int> wait(QFuture<void> gate) {
    co_await gate;
    co_return 1;
}

QCoro::Task<void> fail(QFuture<void> gate) {
    co_await gate;
    throw std::runtime_error("the disk is gone");
}

QCoro::Task<void> startAnother(Tasks& tasks, QFuture<void> gate, QFuture<void> otherGate) {
    co_await gate;
    tasks.start(wait(otherGate));
}

class TasksTest : public ::testing::Test {
protected:
    TasksTest() {
        gate.start();
        otherGate.start();
    }

    RecordingEnvironment environment;
    Tasks tasks{environment};
    QPromise<void> gate;
    QPromise<void> otherGate;
};

} // namespace

TEST_F(TasksTest, withoutAnyAllAreFinished) {
    EXPECT_EQ(tasks.count(), 0);
    EXPECT_TRUE(tasks.finished().isFinished());
}

TEST_F(TasksTest, areFinishedWhenTheLastOneIs) {
    tasks.start(wait(gate.future()));
    tasks.start(wait(otherGate.future()));
    const QFuture<void> finished = tasks.finished();
    EXPECT_EQ(tasks.count(), 2);
    otherGate.finish();
    processEventsUntil([this] { return tasks.count() == 1; });
    EXPECT_FALSE(finished.isFinished());
    gate.finish();
    processEventsUntil([&finished] { return finished.isFinished(); });
    EXPECT_EQ(tasks.count(), 0);
}

TEST_F(TasksTest, onesThatComeMeanwhileAreWaitedFor) {
    tasks.start(startAnother(tasks, gate.future(), otherGate.future()));
    const QFuture<void> finished = tasks.finished();
    gate.finish();
    processEventsUntil([this] { return tasks.count() == 1; });
    EXPECT_FALSE(finished.isFinished());
    otherGate.finish();
    processEventsUntil([&finished] { return finished.isFinished(); });
}

TEST_F(TasksTest, whatOneThrowsIsALineInTheLogAndEndsIt) {
    tasks.start(fail(gate.future()));
    gate.finish();
    processEventsUntil([this] { return tasks.count() == 0; });
    EXPECT_EQ(environment.lines, QStringList(u"  [ERROR] the disk is gone"_s));
}

TEST_F(TasksTest, oneThatThrowsAtOnceIsCaught) {
    gate.finish();
    tasks.start(fail(gate.future()));
    EXPECT_EQ(tasks.count(), 0);
    EXPECT_EQ(environment.lines, QStringList(u"  [ERROR] the disk is gone"_s));
}

} // namespace quorvane
