#include "maintenance/SeenEntry.h"

#include "platform/FileManager.h"

namespace quorvane {

SeenEntry seenEntry(const FileManager& files, const QString& path) {
    return {path, files.status(path).fileNumber};
}

bool isStillThere(const FileManager& files, const SeenEntry& entry) {
    const FileStatus now = files.status(entry.path);
    return now.kind != FileStatus::Kind::Missing && now.fileNumber == entry.fileNumber;
}

} // namespace quorvane
