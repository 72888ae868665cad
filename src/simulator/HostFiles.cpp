#include "simulator/HostFiles.h"

#include "simulator/Places.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

/// A command of the Mac is a link in the sealed system to the one program that is every tool.
bool isToolLink(const QString& macParent, const QString& target) {
    return isSealed(macParent) && target.startsWith(u'/') && target.endsWith(u"/macsim"_s);
}

} // namespace

bool lstatPath(const QString& hostPath, struct stat& info) {
    return ::lstat(QFile::encodeName(hostPath).constData(), &info) == 0;
}

void require(bool succeeded, const QString& path) {
    if (!succeeded) {
        throw FileError(errno, path);
    }
}

QString linkTargetOnHost(const QString& hostPath) {
    QByteArray target(4096, Qt::Uninitialized);
    const ssize_t length =
        ::readlink(QFile::encodeName(hostPath).constData(), target.data(), static_cast<size_t>(target.size()));
    target.truncate(length < 0 ? 0 : static_cast<qsizetype>(length));
    return QFile::decodeName(target);
}

Volume::Kind kindOnHost(const QString& hostPath, const QString& macParent, const QString& path) {
    struct stat info {};
    if (!lstatPath(hostPath, info)) {
        if (errno == ENOENT) {
            return Volume::Kind::Missing;
        }
        throw FileError(errno, path);
    }
    if (S_ISLNK(info.st_mode)) {
        return isToolLink(macParent, linkTargetOnHost(hostPath)) ? Volume::Kind::Tool : Volume::Kind::Link;
    }
    return S_ISDIR(info.st_mode) ? Volume::Kind::Folder : Volume::Kind::File;
}

void openOnHost(QFile& file, const QString& hostPath, const QString& macPath, int flags) {
    const int descriptor =
        ::open(QFile::encodeName(hostPath).constData(), flags | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK, 0644);
    require(descriptor >= 0, macPath);
    const bool writes = (flags & O_ACCMODE) != O_RDONLY;
    file.open(descriptor, writes ? QIODevice::WriteOnly : QIODevice::ReadOnly, QFile::AutoCloseHandle);
}

void writeWhole(QFile& file, const QByteArray& bytes, const QString& macPath) {
    if (file.write(bytes) != bytes.size() || !file.flush()) {
        throw FileError(ENOSPC, macPath);
    }
}

} // namespace macsim
