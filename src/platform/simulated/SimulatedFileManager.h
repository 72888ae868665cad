#pragma once

#include "platform/FileManager.h"
#include "platform/simulated/AtomicWriteStep.h"
#include "simulator/Volume.h"

namespace quorvane {

/// The files of a simulated Mac, as its user sees them.
class SimulatedFileManager final : public FileManager {
public:
    /// @param watcher  is told of the steps of each write
    explicit SimulatedFileManager(macsim::Volume volume, AtomicWriteWatcher watcher = {});

    bool exists(const QString& path) const override;
    FileStatus status(const QString& path) const override;
    bool isWritable(const QString& path) const override;
    QString resolved(const QString& path) const override;
    QStringList list(const QString& folder) const override;
    std::unique_ptr<FolderEntries> entries(const QString& folder) const override;
    QByteArray read(const QString& path) const override;
    void writeAtomically(const QString& path, const QByteArray& bytes) override;
    bool writeNew(const QString& path, const QByteArray& bytes) override;
    void append(const QString& path, const QByteArray& bytes, Flush flush) override;
    void move(const QString& from, const QString& to) override;
    void remove(const QString& path) override;
    void createFolders(const QString& folder) override;

private:
    void announce(AtomicWriteStep step) const;
    void writeInSteps(const QString& beside, const QString& path, const QByteArray& bytes) const;
    void removeIfThere(const QString& path) const;

    macsim::Volume m_volume;
    AtomicWriteWatcher m_watcher;
};

} // namespace quorvane
