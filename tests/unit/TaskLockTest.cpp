#include "core/TaskLock.h"

#include <QCoroFuture>
#include <QCoroTask>
#include <QStringList>

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// Something that a task waits for.
class Gate {
public:
    Gate() { m_promise.start(); }
    QFuture<void> future() { return m_promise.future(); }
    void open() { m_promise.finish(); }

private:
    QPromise<void> m_promise;
};

QCoro::Task<void> pass(TaskLock& lock, QStringList& trace, QString name, QFuture<void> gate) {
    const TaskLock::Hold hold = co_await lock.acquire();
    trace.append(name + u" in"_s);
    co_await gate;
    trace.append(name + u" out"_s);
}

QCoro::Task<void> fail(TaskLock& lock, QFuture<void> gate) {
    [[maybe_unused]] const TaskLock::Hold hold = co_await lock.acquire();
    co_await gate;
    throw std::runtime_error("broken");
}

/// Goes on after it has let go.
QCoro::Task<void> letGo(TaskLock& lock, QStringList& trace, QFuture<void> gate) {
    {
        const TaskLock::Hold hold = co_await lock.acquire();
        co_await gate;
    }
    trace.append(u"let go"_s);
}

QCoro::Task<void> passOn(TaskLock& lock, QStringList& trace, QFuture<void> gate) {
    TaskLock::Hold first = co_await lock.acquire();
    {
        const TaskLock::Hold second = std::move(first);
        co_await gate;
        trace.append(u"second ends"_s);
    }
    co_await gate;
    trace.append(u"first ends"_s);
}

QCoro::Task<QByteArray> errorOf(QCoro::Task<void> task) {
    try {
        co_await std::move(task);
    } catch (const std::runtime_error& error) {
        co_return error.what();
    }
    co_return "none";
}

QFuture<void> open() {
    return QtFuture::makeReadyFuture();
}

} // namespace

TEST(TaskLock, aTaskGoesOnAtOnceWhenNobodyHoldsIt) {
    TaskLock lock;
    QStringList trace;
    const auto first = pass(lock, trace, u"a"_s, open());
    const auto second = pass(lock, trace, u"b"_s, open());
    EXPECT_EQ(trace, (QStringList{u"a in"_s, u"a out"_s, u"b in"_s, u"b out"_s}));
    EXPECT_TRUE(first.isReady());
    EXPECT_TRUE(second.isReady());
}

TEST(TaskLock, theOthersWaitAndComeInTheirOrder) {
    TaskLock lock;
    Gate gate;
    QStringList trace;
    const auto first = pass(lock, trace, u"a"_s, gate.future());
    const auto second = pass(lock, trace, u"b"_s, gate.future());
    auto third = pass(lock, trace, u"c"_s, open());
    EXPECT_EQ(trace, QStringList(u"a in"_s));
    gate.open();
    QCoro::waitFor(std::move(third));
    EXPECT_EQ(trace, (QStringList{u"a in"_s, u"a out"_s, u"b in"_s, u"b out"_s, u"c in"_s, u"c out"_s}));
    EXPECT_TRUE(first.isReady());
    EXPECT_TRUE(second.isReady());
}

TEST(TaskLock, nobodyOvertakesTheOneThatIsToGoOn) {
    TaskLock lock;
    Gate gate;
    QStringList trace;
    const auto first = pass(lock, trace, u"a"_s, gate.future());
    const auto second = pass(lock, trace, u"b"_s, open());
    gate.open();
    while (!first.isReady()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents);
    }
    auto late = pass(lock, trace, u"late"_s, open()); // asks when the first has just let go
    QCoro::waitFor(std::move(late));
    EXPECT_EQ(trace, (QStringList{u"a in"_s, u"a out"_s, u"b in"_s, u"b out"_s, u"late in"_s, u"late out"_s}));
    EXPECT_TRUE(second.isReady());
}

TEST(TaskLock, aTaskThatThrowsLetsTheNextGoOn) {
    TaskLock lock;
    Gate gate;
    QStringList trace;
    auto failing = errorOf(fail(lock, gate.future()));
    auto next = pass(lock, trace, u"b"_s, open());
    gate.open();
    EXPECT_EQ(QCoro::waitFor(std::move(failing)), "broken");
    QCoro::waitFor(std::move(next));
    EXPECT_EQ(trace, (QStringList{u"b in"_s, u"b out"_s}));
    EXPECT_TRUE(pass(lock, trace, u"c"_s, open()).isReady());
}

TEST(TaskLock, theNextGoesOnOnlyWhenTheEventLoopComesRound) {
    TaskLock lock;
    Gate gate;
    QStringList trace;
    const auto first = letGo(lock, trace, gate.future());
    auto next = pass(lock, trace, u"b"_s, open());
    gate.open();
    QCoro::waitFor(std::move(next));
    EXPECT_EQ(trace, (QStringList{u"let go"_s, u"b in"_s, u"b out"_s}));
    EXPECT_TRUE(first.isReady());
}

TEST(TaskLock, aHoldThatIsPassedOnEndsOnce) {
    TaskLock lock;
    Gate gate;
    QStringList trace;
    const auto first = passOn(lock, trace, gate.future());
    const auto second = pass(lock, trace, u"b"_s, open());
    auto third = pass(lock, trace, u"c"_s, open());
    gate.open();
    QCoro::waitFor(std::move(third));
    EXPECT_EQ(trace, (QStringList{u"second ends"_s, u"first ends"_s, u"b in"_s, u"b out"_s, u"c in"_s, u"c out"_s}));
    EXPECT_TRUE(first.isReady());
    EXPECT_TRUE(second.isReady());
    EXPECT_TRUE(pass(lock, trace, u"d"_s, open()).isReady()) << "nobody holds it any more";
}

TEST(TaskLock, aTurnThatNobodyTakesIsLeftToTheNext) {
    TaskLock lock;
    Gate gate;
    QStringList trace;
    const auto first = pass(lock, trace, u"a"_s, gate.future());
    { const auto forgotten = lock.acquire(); }
    auto next = pass(lock, trace, u"b"_s, open());
    gate.open();
    QCoro::waitFor(std::move(next));
    EXPECT_EQ(trace, (QStringList{u"a in"_s, u"a out"_s, u"b in"_s, u"b out"_s}));
    EXPECT_TRUE(first.isReady());
}

TEST(TaskLock, thousandsMayWait) {
    TaskLock lock;
    Gate gate;
    QStringList trace;
    const auto first = pass(lock, trace, u"first"_s, gate.future());
    constexpr int kTasks = 5000;
    std::vector<QCoro::Task<void>> waiting;
    waiting.reserve(kTasks);
    for (int number = 0; number < kTasks; ++number) {
        waiting.push_back(pass(lock, trace, QString::number(number), open()));
    }
    gate.open();
    QCoro::waitFor(std::move(waiting.back()));
    ASSERT_EQ(trace.size(), 2 * 5001);
    EXPECT_EQ(trace.at(2), u"0 in"_s);
    EXPECT_EQ(trace.last(), u"4999 out"_s);
}

} // namespace quorvane
