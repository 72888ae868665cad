#pragma once

#include "snapshots/SystemSnapshot.h"

#include <QString>

#include <optional>

namespace quorvane {

class FileManager;
class Machine;

/// Keeps one snapshot, the latest, in "system_snapshot.json" of the user's Application Support folder. It holds no state of
/// its own.
class SnapshotManager {
public:
    SnapshotManager(FileManager& files, const Machine& machine);

    /// Where the snapshot lies; its folder is created. A failure to create it shows at the write.
    QString snapshotFileURL() const;
    /// Replaces the snapshot, whole or not at all. Throws FileError, or EncodingError for a date that no file can hold.
    void save(const SystemSnapshot& snapshot) const;
    /// None for a file that is missing, can't be read or can't be decoded.
    std::optional<SystemSnapshot> load() const;
    /// True for a file that is there, whatever it holds.
    bool hasSnapshotFile() const;

private:
    QString path() const;

    FileManager& m_files;
    QString m_folder;
};

} // namespace quorvane
