#pragma once

#include <QString>
#include <QtGlobal>

namespace quorvane {

class FileManager;

/// An entry of a folder as it was seen, so that it is told from one that has taken its place since.
struct SeenEntry {
    QString path;
    quint64 fileNumber = 0; ///< FileStatus::fileNumber

    bool operator==(const SeenEntry&) const = default;
};

SeenEntry seenEntry(const FileManager& files, const QString& path);
/// False when it is gone, also where something new stands in its place.
bool isStillThere(const FileManager& files, const SeenEntry& entry);

} // namespace quorvane
