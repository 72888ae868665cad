// One program for each data folder, tried with real processes, which are told, killed and stopped.

#include "app/SingleInstance.h"

#include "app/ChildProgram.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace quorvane {

using namespace Qt::StringLiterals;
using Role = SingleInstance::Role;

namespace {

constexpr std::chrono::minutes kForever{1}; // longer than anything here lasts that is as it should be

class SingleInstanceTest : public ::testing::Test {
protected:
    std::unique_ptr<ChildProgram> start(std::chrono::milliseconds patience = kForever, const QStringList& files = {}) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"TMPDIR"_s, folder.path()); // what is left by those that are killed goes with it
        const QStringList arguments{u"instance"_s, dataFolder, QString::number(patience.count())};
        return std::make_unique<ChildProgram>(arguments + files, environment);
    }
    std::unique_ptr<ChildProgram> startFirst() {
        auto child = start();
        EXPECT_EQ(child->line(), u"first"_s);
        return child;
    }
    /// Where a first one listens, or did.
    QString socketFolder() const { return QFileInfo(InstanceLock(lockFile()).holder().address).path(); }
    QString lockFile() const { return dataFolder + u"/quorvane.lock"_s; }
    /// The role of a start in this process, while which something else happens. It mustn't end by waiting in vain.
    Role roleWhile(const std::function<void()>& happening) {
        SingleInstance instance(dataFolder);
        QTimer::singleShot(0, &instance, happening);
        QElapsedTimer time;
        time.start();
        const Role role = instance.claim(kForever);
        EXPECT_LT(time.elapsed(), std::chrono::milliseconds(kForever).count());
        return role;
    }

    QTemporaryDir folder;
    QString dataFolder = folder.path() + u"/Quorvane data"_s;
};

} // namespace

TEST_F(SingleInstanceTest, eachFurtherStartBringsTheFirstForward) {
    const auto first = startFirst();
    for (int round = 0; round < 2; ++round) {
        const auto second = start();
        EXPECT_EQ(second->line(), u"second"_s);
        EXPECT_EQ(second->status(), 0);
        EXPECT_EQ(first->line(), u"activated"_s);
        EXPECT_EQ(second->errors(), QByteArray());
    }
    EXPECT_TRUE(first->isRunning());
}

TEST_F(SingleInstanceTest, whatAFurtherStartIsToOpenTheFirstIsTold) {
    const auto first = startFirst();
    const QStringList files{u"/gigs/Späte Show.json"_s, u"/gigs/b.json"_s};
    EXPECT_EQ(start(kForever, files)->line(), u"second"_s);
    EXPECT_EQ(first->line(), u"activated "_s + files.join(u' '));
}

TEST_F(SingleInstanceTest, aCallThatBreaksOffOrNeverEndsKeepsNobodyWaiting) {
    const auto first = startFirst();
    const QString address = InstanceLock(lockFile()).holder().address;
    LocalSocket silent;
    EXPECT_EQ(silent.connectTo(address), 0);
    EXPECT_EQ(start()->line(), u"second"_s);
    EXPECT_EQ(first->line(), u"activated"_s) << "the one that has said nothing to its end isn't meant";
}

TEST_F(SingleInstanceTest, moreThanAnybodyOpensIsNotTaken) {
    const auto first = startFirst();
    const QStringList files(20, u'/' + QString(4000, u'x'));
    const auto second = start(std::chrono::milliseconds(300), files);
    EXPECT_TRUE(second->line().startsWith(u"Quorvane is already running"_s));
    EXPECT_EQ(start()->line(), u"second"_s);
    EXPECT_EQ(first->line(), u"activated"_s);
}

TEST_F(SingleInstanceTest, anotherDataFolderIsAnotherProgram) {
    const auto first = startFirst();
    dataFolder = folder.path() + u"/other"_s;
    startFirst();
}

TEST_F(SingleInstanceTest, ofManyThatStartAtOnceOneIsTheFirst) {
    constexpr int kCount = 6;
    std::vector<std::unique_ptr<ChildProgram>> children;
    children.reserve(kCount);
    for (int i = 0; i < kCount; ++i) {
        children.push_back(start());
    }
    QStringList roles;
    for (const auto& child : children) {
        roles.append(child->line());
    }
    EXPECT_EQ(roles.count(u"first"_s), 1);
    EXPECT_EQ(roles.count(u"second"_s), 5);
}

TEST_F(SingleInstanceTest, oneThatEndsLeavesNothingBehind) {
    const auto first = startFirst();
    const QString socket = socketFolder();
    EXPECT_TRUE(QFileInfo::exists(socket));
    first->signal(SIGTERM);
    EXPECT_EQ(first->status(), 0);
    EXPECT_EQ(first->errors(), QByteArray());
    EXPECT_FALSE(QFileInfo::exists(socket));
    startFirst();
}

TEST_F(SingleInstanceTest, oneThatIsKilledKeepsNobodyOutAndItsSocketGoes) {
    const auto first = startFirst();
    const QString socket = socketFolder();
    first->signal(SIGKILL);
    first->waitForEnd();
    EXPECT_TRUE(QFileInfo::exists(socket));
    const auto next = startFirst();
    EXPECT_FALSE(QFileInfo::exists(socket));
    EXPECT_EQ(start()->line(), u"second"_s);
    EXPECT_EQ(next->line(), u"activated"_s);
}

TEST_F(SingleInstanceTest, anotherProcessWithTheNumberOfTheKilledOneKeepsNobodyOut) {
    const auto first = startFirst();
    const QString ours = std::exchange(dataFolder, folder.path() + u"/other"_s);
    const auto sameProgram = start();
    dataFolder = ours;
    EXPECT_EQ(sameProgram->line(), u"first"_s);
    first->signal(SIGKILL);
    first->waitForEnd();
    InstanceLock lock(lockFile());
    lock.describe({lock.holder().address, sameProgram->processId()});
    startFirst();
}

TEST_F(SingleInstanceTest, oneThatHangsIsToldOfAndStaysTheFirst) {
    const auto first = startFirst();
    first->signal(SIGSTOP);
    const auto second = start(std::chrono::milliseconds(300));
    EXPECT_EQ(second->line(), u"Quorvane is already running (process %1) and doesn’t answer. "
                              "Wait until it does, or end it, and start again."_s.arg(first->processId()));
    EXPECT_EQ(second->status(), 1);
    first->signal(SIGCONT);
    EXPECT_EQ(start()->line(), u"second"_s);
}

TEST_F(SingleInstanceTest, oneThatDiesBeforeItAnswersIsFollowed) {
    const auto first = startFirst();
    first->signal(SIGSTOP);
    EXPECT_EQ(roleWhile([&first] { first->signal(SIGKILL); }), Role::First);
}

TEST_F(SingleInstanceTest, oneThatIsStillStartingIsWaitedFor) {
    QDir().mkpath(dataFolder);
    InstanceLock starting(lockFile());
    ASSERT_TRUE(starting.take());
    starting.describe({u"/nowhere/socket"_s, 1}); // of one that was killed before it
    InstanceSocket socket;
    EXPECT_EQ(roleWhile([&] {
                  const QString address = folder.path() + u"/socket"_s;
                  ASSERT_EQ(socket.listen(address), 0);
                  starting.describe({address, 2});
              }),
              Role::Second);
}

TEST_F(SingleInstanceTest, oneThatIsEndingIsWaitedForAndFollowed) {
    auto first = std::make_unique<SingleInstance>(dataFolder);
    ASSERT_EQ(first->claim(), Role::First);
    int activations = 0;
    QObject::connect(first.get(), &SingleInstance::activationRequested, [&] { ++activations; });
    first->stopAnswering();
    EXPECT_EQ(roleWhile([&first] { first.reset(); }), Role::First);
    EXPECT_EQ(activations, 0);
}

TEST_F(SingleInstanceTest, oneThatEndsWithACallUnansweredIsFollowed) {
    auto first = std::make_unique<SingleInstance>(dataFolder);
    ASSERT_EQ(first->claim(), Role::First);
    EXPECT_EQ(roleWhile([&first] { first.reset(); }), Role::First);
}

TEST_F(SingleInstanceTest, aFolderThatCannotBeMadeIsSaid) {
    QFile file(folder.path() + u"/file"_s);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    try {
        const SingleInstance instance(folder.path() + u"/file/data"_s);
        FAIL() << "it was taken";
    } catch (const std::runtime_error& error) {
        EXPECT_EQ(QString::fromUtf8(error.what()), folder.path() + u"/file/data/quorvane.lock: Not a directory"_s);
    }
}

} // namespace quorvane
