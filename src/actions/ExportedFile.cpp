#include "actions/ExportedFile.h"

#include "platform/FileManager.h"

namespace quorvane {

using namespace Qt::StringLiterals;

std::optional<QString> problemOfExporting(FileManager& files, const QString& path, const QByteArray& bytes) {
    try {
        files.writeAtomically(path, bytes);
        const bool isThere = files.read(path) == bytes;
        return isThere ? std::nullopt : std::optional(path + u": it doesn’t hold what was written"_s);
    } catch (const FileError& error) {
        return error.message();
    }
}

} // namespace quorvane
