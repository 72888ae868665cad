#include "platform/portable/DiskFileManager.h"

#include "platform/portable/DatalessFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

[[noreturn]] void fail(const QString& path, int errorNumber) {
    throw FileError(path, errorNumber);
}

void rename(const QString& from, const QString& to, const QString& blamed) {
    if (std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) != 0) {
        fail(blamed, errno);
    }
}

FileStatus::Kind kindOf(mode_t mode) {
    switch (mode & S_IFMT) {
    case S_IFREG:
        return FileStatus::Kind::File;
    case S_IFDIR:
        return FileStatus::Kind::Folder;
    case S_IFLNK:
        return FileStatus::Kind::Link;
    default:
        return FileStatus::Kind::Other;
    }
}

/// Reads a folder as the names are asked for. Removing what has been read disturbs nothing: APFS and the file systems of
/// Linux count a position in a folder by the hash or the number of an entry, and not by how many stand before it.
class DiskFolderEntries final : public FolderEntries {
public:
    explicit DiskFolderEntries(const QString& path)
        : m_path(path)
        , m_folder(::opendir(QFile::encodeName(path).constData()), &::closedir) {
        if (!m_folder) {
            fail(path, errno);
        }
    }

    std::optional<QString> next() override {
        errno = 0;
        while (const dirent* entry = ::readdir(m_folder.get())) {
            const QByteArrayView name(static_cast<const char*>(entry->d_name));
            if (name != "." && name != ".." && name.isValidUtf8()) { // others have no path here
                return QFile::decodeName(name.toByteArray());
            }
            errno = 0;
        }
        if (errno != 0) {
            fail(m_path, errno);
        }
        return std::nullopt;
    }

private:
    QString m_path;
    std::unique_ptr<DIR, int (*)(DIR*)> m_folder;
};

/// Returns when the bytes are on the medium. A Mac's fsync only hands them to the drive (fsync(2)), and F_FULLFSYNC isn't known to
/// every file system.
bool flushToMedium(int descriptor) {
#ifdef F_FULLFSYNC
    if (::fcntl(descriptor, F_FULLFSYNC) == 0) {
        return true;
    }
#endif
    return ::fsync(descriptor) == 0;
}

QString nameBeside(const QString& path) {
    return QFileInfo(path).path() + u"/.quorvane.XXXXXX"_s;
}

/// Everything is on the medium afterwards. @param path  the one that it is for
void writeWhole(QTemporaryFile& beside, const QString& path, const QByteArray& bytes) {
    if (!beside.open() || beside.write(bytes) != bytes.size() || !beside.flush() || !flushToMedium(beside.handle())) {
        throw FileError(path, beside.errorString());
    }
    beside.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
}

} // namespace

bool DiskFileManager::exists(const QString& path) const {
    return QFileInfo::exists(path);
}

FileStatus DiskFileManager::status(const QString& path) const {
    struct stat info {};
    if (::lstat(QFile::encodeName(path).constData(), &info) != 0) {
        return {};
    }
    return {kindOf(info.st_mode), info.st_uid, info.st_ino};
}

bool DiskFileManager::isWritable(const QString& path) const {
    return ::access(QFile::encodeName(path).constData(), W_OK) == 0;
}

QString DiskFileManager::resolved(const QString& path) const {
    const std::unique_ptr<char, decltype(&std::free)> found(::realpath(QFile::encodeName(path).constData(), nullptr),
                                                            &std::free);
    if (!found) {
        fail(path, errno);
    }
    return QFile::decodeName(found.get());
}

QStringList DiskFileManager::list(const QString& folder) const {
    QStringList names;
    DiskFolderEntries entries(folder);
    while (const std::optional<QString> name = entries.next()) {
        names.append(*name);
    }
    return names;
}

std::unique_ptr<FolderEntries> DiskFileManager::entries(const QString& folder) const {
    return std::make_unique<DiskFolderEntries>(folder);
}

QByteArray DiskFileManager::read(const QString& path) const {
    if (QFileInfo(path).isDir()) {
        fail(path, EISDIR);
    }
    if (QFileInfo::exists(path) && !QFileInfo(path).isFile()) {
        throw FileError(path, u"Not a regular file"_s); // a pipe or a device might never end
    }
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) {
        fail(path, errno);
    }
    QFile file;
    if (!file.open(descriptor, QIODevice::ReadOnly, QFile::AutoCloseHandle)) {
        throw FileError(path, file.errorString());
    }
    if (isDataless(descriptor)) {
        throw FileError::notDownloaded(path);
    }
    QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        throw FileError(path, file.errorString());
    }
    return bytes;
}

void DiskFileManager::writeAtomically(const QString& path, const QByteArray& bytes) {
    QTemporaryFile beside(nameBeside(path));
    writeWhole(beside, path, bytes);
    rename(beside.fileName(), path, path);
    beside.setAutoRemove(false);
}

/// A second name for the same file: unlike a new name for it, that never takes another file's place.
bool DiskFileManager::writeNew(const QString& path, const QByteArray& bytes) {
    QTemporaryFile beside(nameBeside(path));
    writeWhole(beside, path, bytes);
    if (::link(QFile::encodeName(beside.fileName()).constData(), QFile::encodeName(path).constData()) == 0) {
        return true;
    }
    if (errno != EEXIST) {
        fail(path, errno);
    }
    return false;
}

void DiskFileManager::append(const QString& path, const QByteArray& bytes, Flush flush) {
    const int descriptor =
        ::open(QFile::encodeName(path).constData(), O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC,
               S_IRUSR | S_IWUSR);
    if (descriptor < 0) {
        fail(path, errno);
    }
    QFile file;
    if (!file.open(descriptor, QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered,
                   QFile::AutoCloseHandle)) {
        throw FileError(path, file.errorString());
    }
    if (file.write(bytes) != bytes.size() || (flush == Flush::Yes && !flushToMedium(descriptor))) {
        throw FileError(path, file.errorString());
    }
}

void DiskFileManager::move(const QString& from, const QString& to) {
    rename(from, to, from);
}

void DiskFileManager::remove(const QString& path) {
    if (std::remove(QFile::encodeName(path).constData()) != 0) {
        fail(path, errno);
    }
}

void DiskFileManager::createFolders(const QString& folder) {
    if (!QDir().mkpath(folder)) {
        throw FileError(folder, u"The folder can't be created"_s);
    }
}

} // namespace quorvane
