#include "platform/FolderNames.h"

#include "platform/FileManager.h"

namespace quorvane {

QStringList namesIn(const FileManager& files, const QString& folder) {
    try {
        return files.list(folder);
    } catch (const FileError&) {
        return {};
    }
}

} // namespace quorvane
