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
    explicit RehearsalTest(const QStringList& description = {});
    static QString example(const QString& name);
    QString macFolder() const;

    /// @param largestFile  see start
    Ending rehearse(const QStringList& arguments, std::optional<rlim_t> largestFile = {});
    /// @param largestFile  a limit of the host's own, in bytes, on the size of each file that the process and its children
    ///                     write: it is full for them
    static Ending start(const QStringList& arguments, std::optional<rlim_t> largestFile = {});
    QByteArray shell(const QString& line);
    QString file(const QString& name, const QByteArray& bytes);

    /// Exit status 2, nothing on the output, one line on the error stream, and the Mac as it was.
    void expectRefused(const QStringList& arguments, const QByteArray& line);

    QTemporaryDir folder;
};

} // namespace quorvane
