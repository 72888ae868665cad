#include "platform/FileManager.h"

#include <cerrno>
#include <cstring>

namespace quorvane {

namespace {

FileError::Cause causeOf(int errorNumber) {
    switch (errorNumber) {
    case ENOENT:
    case ENOTDIR:
        return FileError::Cause::Missing;
    case EPERM: // by the privacy settings
    case EACCES:
        return FileError::Cause::NotPermitted;
    default:
        return FileError::Cause::Other;
    }
}

} // namespace

FileError FileError::notDownloaded(const QString& path) {
    return {path, QStringLiteral("It has not been downloaded from iCloud"), Cause::NotDownloaded};
}

FileError::FileError(const QString& path, int errorNumber)
    : FileError(path, QString::fromLocal8Bit(std::strerror(errorNumber)), causeOf(errorNumber)) {}

} // namespace quorvane
