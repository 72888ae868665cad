#pragma once

#include "core/CloudFiles.h"
#include "snapshots/MasterSystemBaseline.h"

#include <QString>

#include <optional>

namespace QCoro {
template <typename T>
class Task;
}

namespace quorvane {

class Clock;
class CloudDrive;
class FileManager;
class Machine;

/// The store of master baselines: one current file and one archive for each capture, in the hidden folder "~/.quorvane" and,
/// when there is an account, in iCloud Drive. No archive is ever deleted.
///
/// Main thread. It outlives its tasks.
class MasterSystemBaselineManager {
public:
    MasterSystemBaselineManager(FileManager& files, CloudDrive& cloud, Clock& clock, const Machine& machine);

    /// Waits up to three seconds before it says no: iCloud Drive may not know its files yet on a freshly started Mac.
    QCoro::Task<bool> hasMasterBaseline();

    /// Writes an archive and then the current file, at home and then in iCloud, so that no current file is without its
    /// archive. What is written stays when a later write fails.
    /// @return the archive's file name. The task throws MasterSystemBaselineError, writeFailed.
    QCoro::Task<QString> archiveMasterBaseline(SystemSnapshot snapshot, std::optional<QString> label);

    /// The current baseline that serves this Mac; iCloud's is downloaded first if need be. None where neither can be read.
    QCoro::Task<std::optional<LatestBaseline>> loadLatestMasterBaseline();

private:
    QString localFolder() const;
    QCoro::Task<bool> currentFileExists();
    QCoro::Task<void> writeToCloud(QByteArray bytes, QString path);
    void writeToHome(const QByteArray& bytes, const QString& archiveName);

    FileManager& m_files;
    CloudDrive& m_cloud;
    Clock& m_clock;
    const Machine& m_machine;
    CloudFiles m_cloudFiles;
};

} // namespace quorvane
