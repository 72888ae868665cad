#pragma once

#include "fakes/MacPicture.h"
#include "fakes/SimulatedSystem.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>
#include <optional>
#include <sys/resource.h>

namespace quorvane {

/// How the rehearsal ended.
struct Ending {
    int status = -1;
    QByteArray output;
    QByteArray error;
};

/// The rehearsal as a person starts it, on a simulated Mac in a temporary folder.
class RehearsalTest : public ::testing::Test {
protected:
    /// @param description  the file that describes the Mac; none is a fresh Mac
    explicit RehearsalTest(const QStringList& description = {}) {
        EXPECT_EQ(rehearse(QStringList(u"new"_s) + description).status, 0);
    }

    static QString example(const QString& name) {
        return QStringLiteral(QUORVANE_SOURCE_DIR "/examples/profiles/") + name + u".json"_s;
    }
    QString macFolder() const { return folder.path() + u"/Mac"_s; }

    /// @param largestFile  see start
    Ending rehearse(const QStringList& arguments, std::optional<rlim_t> largestFile = {}) {
        return start(QStringList{u"--mac"_s, macFolder()} + arguments, largestFile);
    }
    /// @param largestFile  a limit of the host's own, in bytes, on the size of each file that the process and its children
    ///                     write: it is full for them
    static Ending start(const QStringList& arguments, std::optional<rlim_t> largestFile = {}) {
        QProcess process;
        if (largestFile) {
            process.setChildProcessModifier([bytes = *largestFile] {
                const rlimit limit{bytes, bytes};
                ::setrlimit(RLIMIT_FSIZE, &limit);
                ::signal(SIGXFSZ, SIG_IGN); // the write fails instead
            });
        }
        process.start(QStringLiteral(REHEARSAL_PROGRAM), arguments);
        EXPECT_TRUE(process.waitForFinished(240000)); // only a hang takes so long
        return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1, process.readAllStandardOutput(),
                process.readAllStandardError()};
    }
    QByteArray shell(const QString& line) { return rehearse({u"shell"_s, line}).output; }

    QString file(const QString& name, const QByteArray& bytes) {
        QFile made(folder.path() + u'/' + name);
        EXPECT_TRUE(made.open(QIODevice::WriteOnly | QIODevice::Truncate));
        made.write(bytes);
        return made.fileName();
    }

    /// Exit status 2, nothing on the output, one line on the error stream, and the Mac as it was.
    void expectRefused(const QStringList& arguments, const QByteArray& line) {
        const macsim::MacPicture before(macFolder());
        const Ending run = rehearse(arguments);
        EXPECT_EQ(run.status, 2) << arguments.join(u' ').toStdString();
        EXPECT_EQ(run.output, QByteArray());
        EXPECT_EQ(run.error.toStdString(), line.toStdString());
        EXPECT_EQ(macsim::MacPicture(macFolder()).changesSince(before), QString());
    }

    QTemporaryDir folder;
};

} // namespace quorvane
