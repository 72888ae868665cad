#pragma once

namespace quorvane {

/// Whether a capture is also kept for good, as a master baseline.
enum class MasterArchive { No, Yes };

/// What a capture has written.
struct SnapshotCapture {
    bool isSaved = false;    ///< the latest snapshot
    bool isArchived = false; ///< the master baseline; false as well when none was asked for

    bool operator==(const SnapshotCapture&) const = default;
};

/// True when everything is written that was asked for.
inline bool isComplete(const SnapshotCapture& capture, MasterArchive archive) {
    return capture.isSaved && (archive == MasterArchive::No || capture.isArchived);
}

} // namespace quorvane
