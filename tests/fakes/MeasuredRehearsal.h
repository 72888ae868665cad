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
    explicit MeasuredRehearsal(const QString& place = QDir::tempPath() + u"/measured-XXXXXX"_s);
    MeasuredEnding rehearse(const QStringList& arguments);
    QString macFolder() const;

    QTemporaryDir folder;

private:
    QByteArray content(const QString& name) const;
};

} // namespace quorvane
