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

QString freePath(const FileManager& files, const QString& path) {
    QString candidate = path;
    for (int number = 1; files.status(candidate).kind != FileStatus::Kind::Missing; ++number) {
        candidate = path + u'.' + QString::number(number);
    }
    return candidate;
}

} // namespace quorvane
