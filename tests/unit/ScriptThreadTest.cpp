#include "platform/macos/ScriptThread.h"

#include "fakes/EventLoop.h"
#include "platform/macos/ScriptAnswer.h"

#include <QSemaphore>
#include <QStringList>
#include <QThread>

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <mutex>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// The system's interpreter, held fast in a script until it is let go. It lives for as long as the script thread.
struct HeldInterpreter {
    QSemaphore mayGoOn;
    std::mutex mutex;
    QStringList begun;
    std::atomic<int> ended = 0;

    QStringList begunScripts() {
        const std::lock_guard lock(mutex);
        return begun;
    }
};

ScriptThread::Run runOn(const std::shared_ptr<HeldInterpreter>& interpreter) {
    return [interpreter](const QString& source) {
        {
            const std::lock_guard lock(interpreter->mutex);
            interpreter->begun.append(source);
        }
        interpreter->mayGoOn.acquire();
        ++interpreter->ended;
        return ScriptOutcome{u"did "_s + source, std::nullopt, std::nullopt};
    };
}

class ScriptThreadOfEngine : public ::testing::Test {
public:
    ~ScriptThreadOfEngine() override {
        interpreter->mayGoOn.release(100);
        scripts.reset();
        processEventsUntil([this] { return interpreter.use_count() == 1; }); // the thread has gone
    }

protected:
    void waitFor(const QFuture<ScriptOutcome>& outcome) {
        processEventsUntil([&outcome] { return outcome.isFinished(); });
    }

    std::shared_ptr<HeldInterpreter> interpreter = std::make_shared<HeldInterpreter>();
    std::unique_ptr<ScriptThread> scripts = std::make_unique<ScriptThread>(runOn(interpreter));
};

} // namespace

TEST_F(ScriptThreadOfEngine, scriptsRunOneAtATimeAndInOrderWhileTheEventLoopTicks) {
    const Ticks ticks;
    const QFuture<ScriptOutcome> first = scripts->run(u"one"_s);
    const QFuture<ScriptOutcome> second = scripts->run(u"two"_s);
    processEventsUntil([&] { return ticks.count() > 20 && !interpreter->begunScripts().isEmpty(); });
    EXPECT_EQ(interpreter->begunScripts(), QStringList(u"one"_s));
    interpreter->mayGoOn.release();
    waitFor(first);
    EXPECT_EQ(first.result().result, u"did one"_s);
    EXPECT_FALSE(second.isFinished());
    interpreter->mayGoOn.release();
    waitFor(second);
    EXPECT_EQ(second.result().result, u"did two"_s);
    EXPECT_EQ(interpreter->begunScripts(), QStringList({u"one"_s, u"two"_s}));
}

TEST_F(ScriptThreadOfEngine, whoWaitsGoesOnAtTheEndAndWhatWaitsIsNotRun) {
    const QFuture<ScriptOutcome> running = scripts->run(u"one"_s);
    const QFuture<ScriptOutcome> waiting = scripts->run(u"two"_s);
    processEventsUntil([this] { return !interpreter->begunScripts().isEmpty(); });
    scripts->shutDown();
    for (const QFuture<ScriptOutcome>& outcome : {running, waiting, scripts->run(u"three"_s)}) {
        ASSERT_TRUE(outcome.isFinished());
        EXPECT_FALSE(outcome.isCanceled());
        EXPECT_EQ(outcome.result().result, std::nullopt);
        EXPECT_EQ(outcome.result().errorMessage, u"The program is quitting."_s);
    }
    interpreter->mayGoOn.release(3);
    processEventsUntil([this] { return interpreter->ended == 1 && interpreter.use_count() == 1; });
    EXPECT_EQ(interpreter->begunScripts(), QStringList(u"one"_s));
    EXPECT_EQ(running.result().result, std::nullopt) << "what comes too late is dropped";
}

TEST_F(ScriptThreadOfEngine, aScriptMayGoOnAfterTheEngine) {
    const QFuture<ScriptOutcome> outcome = scripts->run(u"one"_s);
    processEventsUntil([this] { return !interpreter->begunScripts().isEmpty(); });
    scripts.reset();
    EXPECT_EQ(outcome.result().errorMessage, u"The program is quitting."_s);
    EXPECT_EQ(interpreter->ended, 0);
}

TEST(ScriptThread, isAnotherThreadWithRoomForDeepScripts) {
    constexpr std::size_t kDeep = std::size_t(6) * 1024 * 1024;
    auto home = std::make_shared<std::atomic<QThread*>>(nullptr);
    ScriptThread scripts([home](const QString&) {
        volatile char depth[kDeep];
        depth[0] = 1;
        depth[kDeep - 1] = depth[0];
        *home = QThread::currentThread();
        return ScriptOutcome{QString::number(depth[kDeep - 1]), std::nullopt, std::nullopt};
    });
    const QFuture<ScriptOutcome> outcome = scripts.run({});
    processEventsUntil([&outcome] { return outcome.isFinished(); });
    EXPECT_EQ(outcome.result().result, u"1"_s);
    EXPECT_NE(home->load(), QThread::currentThread());
    scripts.shutDown();
    processEventsUntil([&home] { return home.use_count() == 1; });
}

TEST(ScriptAnswer, aScriptThatRanHasATextAndNoError) {
    EXPECT_EQ(scriptOutcome({true, u"a\rb"_s, std::nullopt, std::nullopt}).result, u"a\rb"_s);
    const ScriptOutcome silent = scriptOutcome({true, std::nullopt, u"left over"_s, -1});
    EXPECT_EQ(silent.result, QString()) << "an answer without text is a success";
    EXPECT_TRUE(silent.result.has_value());
    EXPECT_EQ(silent.errorMessage, std::nullopt);
    EXPECT_EQ(silent.errorNumber, std::nullopt);
}

TEST(ScriptAnswer, aScriptThatFailedHasWhatTheSystemGives) {
    const ScriptOutcome cancelled = scriptOutcome({false, u"x"_s, u"User canceled."_s, -128});
    EXPECT_EQ(cancelled.result, std::nullopt);
    EXPECT_EQ(cancelled.errorMessage, u"User canceled."_s);
    EXPECT_EQ(cancelled.errorNumber, -128);
    const ScriptOutcome bare = scriptOutcome({});
    EXPECT_EQ(bare.result, std::nullopt);
    EXPECT_EQ(bare.errorMessage, std::nullopt);
    EXPECT_EQ(bare.errorNumber, std::nullopt);
}

} // namespace quorvane
