#include "platform/portable/QuitSignals.h"

#include "fakes/EventLoop.h"

#include <gtest/gtest.h>

#include <array>
#include <csignal>

namespace quorvane {

namespace {

constexpr std::array<int, 4> kSignals{SIGINT, SIGTERM, SIGHUP, SIGPIPE};

/// Leaves the process's signals as they were.
class QuitSignalsTest : public ::testing::Test {
public:
    ~QuitSignalsTest() override {
        for (size_t i = 0; i < kSignals.size(); ++i) {
            std::signal(kSignals[i], handlers[i]);
        }
    }

protected:
    QuitSignalsTest() {
        for (size_t i = 0; i < kSignals.size(); ++i) {
            handlers[i] = std::signal(kSignals[i], SIG_DFL);
        }
    }
    void listen(OutputReader reader) {
        signals = std::make_unique<QuitSignals>(reader);
        QObject::connect(signals.get(), &QuitSignals::quitRequested, [this] { ++quits; });
    }

    std::array<void (*)(int), kSignals.size()> handlers{};
    std::unique_ptr<QuitSignals> signals;
    int quits = 0;
};

} // namespace

TEST_F(QuitSignalsTest, eachIsAQuitThroughTheEventLoop) {
    listen(OutputReader::Needed);
    int expected = 0;
    for (const int signal : kSignals) {
        std::raise(signal);
        EXPECT_EQ(quits, expected) << "not before the event loop comes round";
        ++expected;
        processEventsUntil([&] { return quits >= expected; });
    }
    EXPECT_EQ(quits, 4);
}

TEST_F(QuitSignalsTest, aProgramThatNeedsNoReaderOutlivesIt) {
    listen(OutputReader::NotNeeded);
    std::raise(SIGPIPE);
    std::raise(SIGTERM);
    processEventsUntil([&] { return quits > 0; });
    EXPECT_EQ(quits, 1);
}

TEST_F(QuitSignalsTest, aProgramUnderNohupOutlivesItsTerminal) {
    std::signal(SIGHUP, SIG_IGN);
    listen(OutputReader::Needed);
    std::raise(SIGHUP);
    std::raise(SIGINT);
    processEventsUntil([&] { return quits > 0; });
    EXPECT_EQ(quits, 1);
}

} // namespace quorvane
