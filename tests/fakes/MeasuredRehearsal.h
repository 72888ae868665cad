#pragma once

#include <QDir>
#include <QFile>
#include <QList>
#include <QString>
#include <QStringList>
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

/// How a rehearsal ended that was measured.
struct MeasuredEnding {
    int status = -1; ///< as a shell counts it: 128 and more where a signal ended the process
    QByteArray output;
    QByteArray error;
    long peakMemory = 0; ///< in kibibytes
};

/// The rehearsal on a fresh simulated Mac, as a process whose memory is measured. The peak of a process counts the one that
/// started it, as it was at the start. So these tests are a program of their own, which stays small and runs no flow itself.
class MeasuredRehearsal : public ::testing::Test {
protected:
    /// @param place  a template for the temporary folder
    explicit MeasuredRehearsal(const QString& place = QDir::tempPath() + u"/measured-XXXXXX"_s)
        : folder(place) {
        EXPECT_EQ(rehearse({u"new"_s}).status, 0);
    }

    MeasuredEnding rehearse(const QStringList& arguments) {
        posix_spawn_file_actions_t actions;
        ::posix_spawn_file_actions_init(&actions);
        const QByteArray output = QFile::encodeName(folder.path() + u"/output"_s);
        const QByteArray error = QFile::encodeName(folder.path() + u"/error"_s);
        constexpr int kFlags = O_WRONLY | O_CREAT | O_TRUNC;
        ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output.constData(), kFlags, 0600);
        ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, error.constData(), kFlags, 0600);
        QList<QByteArray> words{REHEARSAL_PROGRAM, "--mac", QFile::encodeName(macFolder())};
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

    QString macFolder() const { return folder.path() + u"/Mac"_s; }

    QTemporaryDir folder;

private:
    QByteArray content(const QString& name) const {
        QFile file(folder.path() + name);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }
};

} // namespace quorvane
