// A profile of 50 MiB is read in memory that grows with its size and no faster, and within the time of a test.
//
// The peak of a process counts the one that started it, as it was at the start. So this is a program of its own, which
// stays small and runs no flow itself.

#include "profiles/ProfileJson.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <vector>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kMebibyte = 1024 * 1024;

struct Ending {
    int status = -1; ///< as a shell counts it: 128 and more where a signal ended the process
    QByteArray output;
    QByteArray error;
    long peakMemory = 0; ///< in kibibytes
};

class LargeProfile : public ::testing::Test {
protected:
    LargeProfile() { EXPECT_EQ(rehearse({u"new"_s}).status, 0); }

    /// A profile of at least this size, all of whose startup items run.
    QString profileOfSize(qint64 size) const {
        const QByteArray text = encodeProfile(emptyProfile());
        const qsizetype place = text.indexOf("\"items\": [") + qsizetype(qstrlen("\"items\": ["));
        QFile file(folder.path() + u"/%1.json"_s.arg(size));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text.left(place));
        // Written piece by piece, to stay small.
        for (int number = 0; number == 0 || file.pos() < size; ++number) {
            const QByteArray path = "/Applications/App " + QByteArray::number(number) + ".app";
            file.write(number == 0 ? "\n" : ",\n");
            file.write(R"({"id": "login:)" + path + R"(", "name": "App", "path": ")" + path +
                       R"(", "kind": "loginApp", "runsAtStartup": true, "hidden": false, "isProtected": false})");
        }
        file.write(text.mid(place));
        return file.fileName();
    }

    Ending rehearse(const QStringList& arguments) {
        posix_spawn_file_actions_t actions;
        ::posix_spawn_file_actions_init(&actions);
        const QByteArray output = QFile::encodeName(folder.path() + u"/output"_s);
        const QByteArray error = QFile::encodeName(folder.path() + u"/error"_s);
        constexpr int kFlags = O_WRONLY | O_CREAT | O_TRUNC;
        ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output.constData(), kFlags, 0600);
        ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, error.constData(), kFlags, 0600);
        QList<QByteArray> words{REHEARSAL_PROGRAM, "--mac", QFile::encodeName(folder.path() + u"/Mac"_s)};
        for (const QString& argument : arguments) {
            words.append(argument.toUtf8());
        }
        std::vector<char*> pointers;
        for (QByteArray& word : words) {
            pointers.push_back(word.data());
        }
        pointers.push_back(nullptr);
        pid_t process = 0;
        EXPECT_EQ(::posix_spawn(&process, REHEARSAL_PROGRAM, &actions, nullptr, pointers.data(), environ), 0);
        ::posix_spawn_file_actions_destroy(&actions);
        int status = 0;
        rusage usage{};
        EXPECT_EQ(::wait4(process, &status, 0, &usage), process);
        return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), content(u"/output"_s),
                content(u"/error"_s), usage.ru_maxrss};
    }

    /// Verifies the profile and gives the peak of the memory that this took.
    long peakOfVerifying(const QString& profile) {
        const Ending run = rehearse({u"verify"_s, profile});
        EXPECT_TRUE(run.status == 0 || run.status == 1) << run.status << ' ' << run.error.toStdString();
        EXPECT_TRUE(run.output.contains("[VERIFY] Profile: Large\n")) << run.output.toStdString();
        EXPECT_EQ(run.error, QByteArray());
        return run.peakMemory;
    }

    QTemporaryDir folder;

private:
    static UnifiedProfile emptyProfile() {
        UnifiedProfile profile;
        profile.id = QUuid::createUuid();
        profile.name = u"Large"_s;
        profile.dateCreated = QDateTime(QDate(2026, 1, 1), QTime(12, 0), Qt::UTC);
        return profile;
    }
    QByteArray content(const QString& name) const {
        QFile file(folder.path() + name);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }
};

} // namespace

TEST_F(LargeProfile, theMemoryOfReadingGrowsWithTheSizeAndNoFaster) {
    const long base = peakOfVerifying(profileOfSize(0));
    const long five = peakOfVerifying(profileOfSize(5 * kMebibyte)) - base;
    const long fifty = peakOfVerifying(profileOfSize(50 * kMebibyte)) - base;
    EXPECT_GT(five, 5 * 1024) << "the peak of something else was measured";
    EXPECT_LE(fifty, 12 * five) << "base " << base << " KiB, for 5 MiB " << five << " KiB more";
}

TEST_F(LargeProfile, aTruncatedOneIsRefusedWithOneLine) {
    QFile file(profileOfSize(50 * kMebibyte));
    ASSERT_TRUE(file.resize(50 * kMebibyte));
    const Ending run = rehearse({u"verify"_s, file.fileName()});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.output, QByteArray());
    EXPECT_TRUE(run.error.startsWith(file.fileName().toUtf8() + ": not a profile: not valid JSON (line "))
        << run.error.toStdString();
    EXPECT_EQ(run.error.count('\n'), 1);
    EXPECT_TRUE(run.error.endsWith('\n'));
}

} // namespace quorvane
