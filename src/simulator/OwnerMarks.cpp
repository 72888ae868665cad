#include "simulator/OwnerMarks.h"

#include <QDirIterator>
#include <QFile>

#include <sys/stat.h>

namespace macsim {

namespace {

constexpr mode_t kMark = S_ISVTX;
constexpr mode_t kModeBits = 07777;

/// The mode of a file or folder; 0 for a link and where there is nothing.
mode_t modeOf(const QByteArray& hostPath) {
    struct stat info {};
    const bool isFound = ::lstat(hostPath.constData(), &info) == 0;
    return isFound && !S_ISLNK(info.st_mode) ? info.st_mode : 0;
}

} // namespace

bool hasOwnerMark(const QString& hostPath) {
    return (modeOf(QFile::encodeName(hostPath)) & kMark) != 0;
}

void flipOwnerMark(const QString& hostPath) {
    const QByteArray path = QFile::encodeName(hostPath);
    if (const mode_t mode = modeOf(path)) {
        ::chmod(path.constData(), (mode & kModeBits) ^ kMark);
    }
}

void flipOwnerMarks(const QString& hostPath) {
    flipOwnerMark(hostPath);
    QDirIterator entries(hostPath, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        flipOwnerMark(entries.next());
    }
}

mode_t modeWithOwnerMark(mode_t mode) {
    return mode | kMark;
}

} // namespace macsim
