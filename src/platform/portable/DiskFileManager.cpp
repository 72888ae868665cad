#include "platform/portable/DiskFileManager.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

[[noreturn]] void fail(const QString& path, int errorNumber) {
    throw FileError(path, QString::fromLocal8Bit(std::strerror(errorNumber)));
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

} // namespace

bool DiskFileManager::exists(const QString& path) const {
    return QFileInfo::exists(path);
}

FileStatus DiskFileManager::status(const QString& path) const {
    struct stat info {};
    if (::lstat(QFile::encodeName(path).constData(), &info) != 0) {
        return {};
    }
    return {kindOf(info.st_mode), info.st_uid};
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
    const QFileInfo info(folder);
    if (!info.isDir() || !info.isReadable()) {
        fail(folder, info.exists() ? (info.isDir() ? EACCES : ENOTDIR) : ENOENT);
    }
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                                  QDir::Unsorted);
}

QByteArray DiskFileManager::read(const QString& path) const {
    if (QFileInfo(path).isDir()) {
        fail(path, EISDIR);
    }
    QFile file(path);
    if (QFileInfo::exists(path) && !QFileInfo(path).isFile()) {
        throw FileError(path, u"Not a regular file"_s); // a pipe or a device might never end
    }
    if (!file.open(QIODevice::ReadOnly)) {
        throw FileError(path, file.errorString());
    }
    QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        throw FileError(path, file.errorString());
    }
    return bytes;
}

void DiskFileManager::writeAtomically(const QString& path, const QByteArray& bytes) {
    QTemporaryFile beside(QFileInfo(path).path() + u"/.quorvane.XXXXXX"_s);
    if (!beside.open() || beside.write(bytes) != bytes.size() || !beside.flush() || ::fsync(beside.handle()) != 0) {
        throw FileError(path, beside.errorString());
    }
    beside.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
    rename(beside.fileName(), path, path);
    beside.setAutoRemove(false);
}

void DiskFileManager::move(const QString& from, const QString& to) {
    rename(from, to, from);
}

void DiskFileManager::remove(const QString& path) {
    if (std::remove(QFile::encodeName(path).constData()) != 0) {
        fail(path, errno);
    }
}

void DiskFileManager::removeTree(const QString& path) {
    const std::filesystem::path place(QFile::encodeName(path).constData());
    std::error_code error;
    if (std::filesystem::remove_all(place, error) == 0 && !error) {
        fail(path, ENOENT); // to the library nothing to remove is no failure
    }
    if (error) {
        throw FileError(path, QString::fromStdString(error.message()));
    }
}

void DiskFileManager::createFolders(const QString& folder) {
    if (!QDir().mkpath(folder)) {
        throw FileError(folder, u"The folder can't be created"_s);
    }
}

} // namespace quorvane
