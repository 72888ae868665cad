#include "platform/macos/PropertyListFile.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>

namespace quorvane {

namespace {

constexpr qint64 kLargestFile = qint64{64} * 1024 * 1024;

/// A path with a null character would be another one to the system.
bool isWholePath(const QString& path) {
    return path.startsWith(u'/') && !path.contains(QChar::Null);
}

bool isReadable(int descriptor) {
    struct stat info {};
    return ::fstat(descriptor, &info) == 0 && S_ISREG(info.st_mode) && info.st_size <= kLargestFile;
}

} // namespace

std::optional<QByteArray> propertyListBytes(const QString& path) {
    if (!isWholePath(path)) {
        return std::nullopt;
    }
    // Non-blocking: opening a pipe waits for its writer otherwise.
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    QFile file;
    if (descriptor < 0 || !file.open(descriptor, QIODevice::ReadOnly, QFile::AutoCloseHandle) ||
        !isReadable(descriptor)) {
        return std::nullopt;
    }
    QByteArray bytes = file.readAll();
    return file.error() == QFileDevice::NoError ? std::optional(std::move(bytes)) : std::nullopt;
}

} // namespace quorvane
