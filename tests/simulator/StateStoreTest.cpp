#include "simulator/StateStore.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>
#include <stdexcept>
#include <sys/resource.h>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

/// As long as it lives, no file of this process can grow beyond a size: a disk that is full at the last flush.
class FullDisk {
public:
    explicit FullDisk(rlim_t bytes)
        : m_signal(std::signal(SIGXFSZ, SIG_IGN)) { // the write fails instead
        ::getrlimit(RLIMIT_FSIZE, &m_limit);
        const rlimit small{bytes, m_limit.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &small);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;
    ~FullDisk() {
        ::setrlimit(RLIMIT_FSIZE, &m_limit);
        std::signal(SIGXFSZ, m_signal);
    }

private:
    rlimit m_limit{};
    void (*m_signal)(int);
};

class StateStoreTest : public ::testing::Test {
protected:
    QByteArray content() const {
        QFile file(folder.path() + u"/power.json"_s);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir folder;
    const StateStore store{folder.path()};
};

} // namespace

TEST_F(StateStoreTest, whatTheDiskDoesNotTakeLeavesTheStateAsItWas) {
    store.update("power", [](Json& state) { state = {{"source", "AC Power"}}; });
    const QByteArray before = content();
    for (const std::size_t size : {2'000U, 20'000U, 200'000U}) { // within the buffer of a file, about it, and beyond
        SCOPED_TRACE(size);
        const FullDisk disk(512);
        const auto grow = [size](Json& state) { state["source"] = std::string(size, 'x'); };
        EXPECT_THROW(store.update("power", grow), std::runtime_error);
        EXPECT_EQ(content(), before);
        EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden),
                  (QStringList{u"power.json"_s, u"power.lock"_s}));
    }
    store.update("power", [](Json& state) { state["source"] = "Battery Power"; });
    EXPECT_EQ(store.read("power"), (Json{{"source", "Battery Power"}}));
}

TEST_F(StateStoreTest, aDiskThatHasNoRoomAtAllLeavesTheStateAsItWas) {
    store.update("power", [](Json& state) { state = {{"source", "AC Power"}}; });
    const QByteArray before = content();
    {
        const FullDisk disk(0);
        EXPECT_THROW(store.update("power", [](Json& state) { state = {{"a", 1}}; }), std::runtime_error);
    }
    EXPECT_EQ(content(), before);
}

} // namespace macsim
