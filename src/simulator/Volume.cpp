#include "simulator/Volume.h"

#include "simulator/HostFiles.h"
#include "simulator/Mac.h"
#include "simulator/MacPaths.h"
#include "simulator/OwnerMarks.h"
#include "simulator/Permissions.h"
#include "simulator/Places.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTemporaryFile>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <iterator>
#include <set>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

constexpr int kMaximumLinks = 32; // as macOS counts them before it gives ELOOP
constexpr qint64 kNanosecondsInMillisecond = 1'000'000;
constexpr QByteArrayView kDataless = "A file of the simulated Mac whose content is in iCloud alone.\n";
constexpr QStringView kNullDevice = u"/dev/null";
constexpr QDir::Filters kAllNames = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;

QString joined(const QStringList& components) {
    return u'/' + components.join(u'/');
}

/// Darwin has a name of its own for it.
timespec modifiedAt(const struct stat& info) {
#ifdef __APPLE__
    return info.st_mtimespec;
#else
    return info.st_mtim;
#endif
}

} // namespace

FileError::FileError(int errorNumber, QString path)
    : m_errorNumber(errorNumber)
    , m_path(std::move(path))
    , m_text((m_path + u": "_s + reason()).toUtf8()) {}

QString FileError::reason() const {
    return QString::fromLocal8Bit(std::strerror(m_errorNumber));
}

/// Where a path leads: an existing folder on the host and a name in it, which may be missing.
struct Volume::Located {
    QString hostPath;
    QString macPath;   ///< without links, "." and ".."
    QString typedName; ///< the last component as it was given
    Kind kind = Kind::Missing;

    QString macParent() const { return parentFolder(macPath); }
};

Volume::Volume(QString hostFolder, Machine machine, Actor actor)
    : m_hostFolder(std::move(hostFolder))
    , m_machine(std::move(machine))
    , m_actor(actor) {}

QString Volume::matchingName(const QString& hostParent, const QString& name) const {
    struct stat info {};
    if (m_machine.caseSensitiveVolume || lstatPath(hostParent + u'/' + name, info)) {
        return name;
    }
    QDirIterator entries(hostParent, kAllNames);
    while (entries.hasNext()) {
        entries.next();
        if (const QString candidate = entries.fileName(); candidate.compare(name, Qt::CaseInsensitive) == 0) {
            return candidate;
        }
    }
    return name;
}

Volume::Located Volume::locate(const QString& path, bool followLast) const {
    if (!path.startsWith(u'/') || path.contains(QChar::Null)) {
        throw FileError(ENOENT, path);
    }
    QStringList pending = path.split(u'/', Qt::SkipEmptyParts);
    QStringList reached;
    Located place{m_hostFolder, u"/"_s, {}, Kind::Folder};
    int links = 0;
    while (!pending.isEmpty()) {
        if (place.kind != Kind::Folder) {
            throw FileError(place.kind == Kind::Missing ? ENOENT : ENOTDIR, path);
        }
        const QString component = pending.takeFirst();
        if (component == u"."_s) {
            continue;
        }
        if (component == u".."_s) {
            reached = reached.mid(0, reached.size() - 1);
            const QString parent = reached.isEmpty() ? QString() : joined(reached);
            place = {m_hostFolder + parent, reached.isEmpty() ? u"/"_s : parent, {}, Kind::Folder};
            continue;
        }
        const QString name = matchingName(place.hostPath, component);
        const QString hostPath = place.hostPath + u'/' + name;
        const Kind kind = kindOnHost(hostPath, place.macPath, path);
        if (kind == Kind::Link && (followLast || !pending.isEmpty())) {
            if (++links > kMaximumLinks) {
                throw FileError(ELOOP, path);
            }
            const QString target = linkTargetOnHost(hostPath);
            pending = target.split(u'/', Qt::SkipEmptyParts) + pending;
            if (target.startsWith(u'/')) {
                reached.clear();
                place = {m_hostFolder, u"/"_s, {}, Kind::Folder};
            }
            continue;
        }
        reached.append(name);
        place = {hostPath, joined(reached), component, kind};
    }
    return place;
}

Actor Volume::currentOwner(const QString& macPath) const {
    const Actor owner = ownerByPlace(macPath, m_machine);
    if (!hasOwnerMark(m_hostFolder + macPath)) {
        return owner;
    }
    return owner == Actor::User ? Actor::Root : Actor::User;
}

/// The mode on the host of something that this actor makes.
mode_t Volume::modeOfNew(const QString& macPath, mode_t mode) const {
    return ownerByPlace(macPath, m_machine) == m_actor ? mode : modeWithOwnerMark(mode);
}

/// Inside another application, where the program may not change it.
bool Volume::isKeptApplication(const QString& path) const {
    return isInApplication(path) && !mayChangeApplications(StateStore(m_hostFolder + kStateFolder.toString()));
}

bool Volume::isVault(const QString& path) const {
    return isInDataVault(path) && isSystemIntegrityProtected(StateStore(m_hostFolder + kStateFolder.toString()));
}

/// By the privacy settings.
bool Volume::isKeptFromReaders(const QString& path) const {
    const StateStore state(m_hostFolder + kStateFolder.toString());
    return (isPrivate(path) && !hasFullDiskAccess(state)) ||
           (isInDownloads(path, m_machine) && !mayReadDownloads(state));
}

/// For making, renaming and removing what is in a folder.
void Volume::requireChangeableNames(const QString& folder, const QString& blamed) const {
    if (isSealed(folder) || isKeptApplication(folder + u'/') || isVault(folder)) {
        throw FileError(EPERM, blamed);
    }
    if (m_actor == Actor::User && !isSharedFolder(folder) && currentOwner(folder) == Actor::Root) {
        throw FileError(EACCES, blamed);
    }
}

void Volume::requireFreeName(const Located& place) const {
    if (isSealed(place.macPath)) {
        throw FileError(EPERM, place.macPath);
    }
    requireChangeableNames(place.macParent(), place.macPath);
}

/// Where everybody may write, nobody but root removes what is somebody else's.
void Volume::requireRemovable(const Located& place) const {
    requireFreeName(place);
    if (isVault(place.macPath)) {
        throw FileError(EPERM, place.macPath);
    }
    const bool isGuarded = place.kind != Kind::Missing && isGuardedFolder(place.macParent());
    if (m_actor == Actor::User && isGuarded && currentOwner(place.macPath) == Actor::Root) {
        throw FileError(EACCES, place.macPath);
    }
}

/// The bytes of a file, the names in a folder; what is missing has to be made first.
void Volume::requireWritable(const Located& place) const {
    if (place.kind == Kind::Missing) {
        requireFreeName(place);
        return;
    }
    if (place.kind == Kind::Folder) {
        requireChangeableNames(place.macPath, place.macPath);
        return;
    }
    if (isSealed(place.macPath) || isSealed(place.macParent()) || isKeptApplication(place.macPath) ||
        isVault(place.macPath)) {
        throw FileError(EPERM, place.macPath);
    }
    if (m_actor == Actor::User && currentOwner(place.macPath) == Actor::Root) {
        throw FileError(EACCES, place.macPath);
    }
}

void Volume::requireReadable(const Located& place) const {
    if (isAtOrBelow(place.macPath, u"/private/var/db/simulator")) {
        throw FileError(EPERM, place.macPath);
    }
    if (m_actor == Actor::User && isAtOrBelow(place.macPath, u"/private/var/root")) {
        throw FileError(EACCES, place.macPath);
    }
    if (place.kind != Kind::Missing && (isVault(place.macPath) || isKeptFromReaders(place.macPath))) {
        throw FileError(EPERM, place.macPath);
    }
}

void Volume::requireSpace(const QString& path) const {
    if (m_full) {
        throw FileError(ENOSPC, path);
    }
}

Volume::Kind Volume::kind(const QString& path) const {
    try {
        return locate(path, false).kind;
    } catch (const FileError&) {
        return Kind::Missing;
    }
}

bool Volume::exists(const QString& path) const {
    try {
        return locate(path, true).kind != Kind::Missing;
    } catch (const FileError&) {
        return false;
    }
}

bool Volume::isFolder(const QString& path) const {
    try {
        return locate(path, true).kind == Kind::Folder;
    } catch (const FileError&) {
        return false;
    }
}

bool Volume::isReadable(const QString& path) const {
    try {
        const Located place = locate(path, true);
        requireReadable(place);
        return place.kind != Kind::Missing;
    } catch (const FileError&) {
        return false;
    }
}

bool Volume::isWritable(const QString& path) const {
    try {
        const Located place = locate(path, true);
        if (place.macPath != kNullDevice) {
            requireWritable(place);
        }
        return place.kind != Kind::Missing;
    } catch (const FileError&) {
        return false;
    }
}

QString Volume::canonicalPath(const QString& path) const {
    return locate(path, true).macPath;
}

QByteArray Volume::read(const QString& path) const {
    const Located place = locate(path, true);
    requireReadable(place);
    if (place.kind == Kind::Folder) {
        throw FileError(EISDIR, path);
    }
    if (place.kind == Kind::Tool) {
        throw FileError(EACCES, path);
    }
    QFile file;
    openOnHost(file, place.hostPath, path, O_RDONLY);
    const QByteArray bytes = file.readAll();
    if (bytes == kDataless) {
        // The kernel waits for the network here, unless the thread has asked it not to (getiopolicy_np(3)). Nobody could end that.
        throw FileError(EDEADLK, path);
    }
    return bytes;
}

bool Volume::isDataless(const QString& path) const {
    try {
        const Located place = locate(path, true);
        if (place.kind != Kind::File || QFileInfo(place.hostPath).size() != kDataless.size()) {
            return false;
        }
        QFile file;
        openOnHost(file, place.hostPath, path, O_RDONLY);
        return file.readAll() == kDataless;
    } catch (const FileError&) {
        return false;
    }
}

void Volume::evict(const QString& path) const {
    writeAtomically(path, kDataless.toByteArray());
}

Volume::Located Volume::readableFolder(const QString& path) const {
    Located place = locate(path, true);
    requireReadable(place);
    if (place.kind != Kind::Folder) {
        throw FileError(place.kind == Kind::Missing ? ENOENT : ENOTDIR, path);
    }
    return place;
}

QStringList Volume::list(const QString& path) const {
    QStringList names = QDir(readableFolder(path).hostPath).entryList(kAllNames, QDir::Unsorted);
    names.sort();
    return names;
}

QStringList Volume::namesAfter(const QString& path, const QString& last, qsizetype limit) const {
    QDirIterator entries(readableFolder(path).hostPath, kAllNames);
    std::set<QString> names;
    while (entries.hasNext()) {
        entries.next();
        if (const QString name = entries.fileName(); name > last) {
            names.insert(name);
        }
        if (static_cast<qsizetype>(names.size()) > limit) {
            names.erase(std::prev(names.end()));
        }
    }
    return {names.begin(), names.end()};
}

QString Volume::linkTarget(const QString& path) const {
    const Located place = locate(path, false);
    if (place.kind != Kind::Link) {
        throw FileError(place.kind == Kind::Missing ? ENOENT : EINVAL, path);
    }
    return linkTargetOnHost(place.hostPath);
}

qint64 Volume::size(const QString& path) const {
    const Located place = locate(path, true);
    struct stat info {};
    require(lstatPath(place.hostPath, info), path);
    return info.st_size;
}

QDateTime Volume::modificationTime(const QString& path) const {
    const Located place = locate(path, true);
    struct stat info {};
    require(lstatPath(place.hostPath, info), path);
    const timespec modified = modifiedAt(info);
    return QDateTime::fromMSecsSinceEpoch(qint64{modified.tv_sec} * 1000 +
                                          modified.tv_nsec / kNanosecondsInMillisecond);
}

void Volume::setModificationTime(const QString& path, const QDateTime& time) const {
    const Located place = locate(path, true);
    if (place.kind == Kind::Missing) {
        throw FileError(ENOENT, path);
    }
    requireWritable(place);
    const qint64 milliseconds = time.toMSecsSinceEpoch();
    const timespec modified{milliseconds / 1000, milliseconds % 1000 * kNanosecondsInMillisecond};
    const timespec times[] = {{0, UTIME_OMIT}, modified};
    require(::utimensat(AT_FDCWD, QFile::encodeName(place.hostPath).constData(), times, AT_SYMLINK_NOFOLLOW) == 0,
            path);
}

quint64 Volume::fileNumber(const QString& path) const {
    struct stat info {};
    require(lstatPath(locate(path, false).hostPath, info), path);
    return info.st_ino;
}

Actor Volume::owner(const QString& path) const {
    const Located place = locate(path, false);
    if (place.kind == Kind::Missing) {
        throw FileError(ENOENT, path);
    }
    return currentOwner(place.macPath);
}

void Volume::setOwner(const QString& path, Actor owner) const {
    const Located place = locate(path, true);
    if (place.kind == Kind::Missing) {
        throw FileError(ENOENT, path);
    }
    if (m_actor != Actor::Root || isSealed(place.macPath)) {
        throw FileError(EPERM, path);
    }
    if (currentOwner(place.macPath) != owner) {
        flipOwnerMark(place.hostPath);
    }
}

void Volume::write(const QString& path, const QByteArray& bytes) const {
    put(path, bytes, O_TRUNC);
}

void Volume::append(const QString& path, const QByteArray& bytes) const {
    put(path, bytes, O_APPEND);
}

void Volume::put(const QString& path, const QByteArray& bytes, int flags) const {
    const Located place = locate(path, true);
    if (place.macPath == kNullDevice) {
        return;
    }
    if (place.kind == Kind::Folder) {
        throw FileError(EISDIR, path);
    }
    requireWritable(place);
    requireSpace(path);
    QFile file;
    openOnHost(file, place.hostPath, path, O_WRONLY | O_CREAT | flags);
    if (place.kind == Kind::Missing) {
        require(::fchmod(file.handle(), modeOfNew(place.macPath, 0644)) == 0, path);
    }
    writeWhole(file, bytes, path);
}

void Volume::writeAtomically(const QString& path, const QByteArray& bytes) const {
    const Located place = locate(path, false);
    if (place.kind == Kind::Folder) {
        throw FileError(EISDIR, path);
    }
    requireRemovable(place);
    requireSpace(path);
    QTemporaryFile beside(QFileInfo(place.hostPath).path() + u"/.quorvane.XXXXXX"_s);
    if (!beside.open()) {
        throw FileError(EACCES, path);
    }
    writeWhole(beside, bytes, path);
    require(::fchmod(beside.handle(), modeOfNew(place.macPath, 0644)) == 0, path);
    require(::rename(QFile::encodeName(beside.fileName()).constData(), QFile::encodeName(place.hostPath).constData()) ==
                0,
            path);
    beside.setAutoRemove(false);
}

void Volume::createFolder(const QString& path) const {
    const Located place = locate(path, false);
    if (place.kind != Kind::Missing) {
        throw FileError(EEXIST, path);
    }
    requireFreeName(place);
    requireSpace(path);
    const QByteArray hostPath = QFile::encodeName(place.hostPath);
    require(::mkdir(hostPath.constData(), 0755) == 0, path);
    require(::chmod(hostPath.constData(), modeOfNew(place.macPath, 0755)) == 0, path);
}

void Volume::createFolders(const QString& path) const {
    QString reached;
    const QStringList components = path.split(u'/', Qt::SkipEmptyParts);
    for (const QString& component : components) {
        reached += u'/' + component;
        const Located place = locate(reached, true);
        if (place.kind == Kind::Missing) {
            createFolder(reached);
        } else if (place.kind != Kind::Folder) {
            throw FileError(ENOTDIR, reached);
        }
    }
}

void Volume::createLink(const QString& path, const QString& target) const {
    const Located place = locate(path, false);
    requireFreeName(place);
    requireSpace(path);
    require(::symlink(QFile::encodeName(target).constData(), QFile::encodeName(place.hostPath).constData()) == 0, path);
}

void Volume::remove(const QString& path) const {
    const Located place = locate(path, false);
    if (place.kind == Kind::Missing) {
        throw FileError(ENOENT, path);
    }
    requireRemovable(place);
    const QByteArray hostPath = QFile::encodeName(place.hostPath);
    require((place.kind == Kind::Folder ? ::rmdir(hostPath.constData()) : ::unlink(hostPath.constData())) == 0, path);
}

void Volume::move(const QString& from, const QString& to) const {
    const Located source = locate(from, false);
    const Located target = locate(to, false);
    if (source.kind == Kind::Missing) {
        throw FileError(ENOENT, from);
    }
    requireRemovable(source);
    requireRemovable(target);
    if (source.kind == Kind::Folder && source.macParent() != target.macParent()) {
        requireChangeableNames(source.macPath, source.macPath); // its ".." becomes another one
    }
    // A rename that only changes case finds itself; it takes the spelling that was asked for.
    const bool sameEntry = source.hostPath == target.hostPath;
    const QString hostTarget =
        sameEntry ? QFileInfo(target.hostPath).path() + u'/' + target.typedName : target.hostPath;
    require(::rename(QFile::encodeName(source.hostPath).constData(), QFile::encodeName(hostTarget).constData()) == 0,
            from);
    if (ownerByPlace(source.macPath, m_machine) != ownerByPlace(target.macPath, m_machine)) {
        flipOwnerMarks(hostTarget); // a move keeps the owners
    }
}

void Volume::touch(const QString& path) const {
    const Located place = locate(path, true);
    if (place.kind == Kind::Missing) {
        write(path, {});
        return;
    }
    requireWritable(place);
    require(::utimensat(AT_FDCWD, QFile::encodeName(place.hostPath).constData(), nullptr, AT_SYMLINK_NOFOLLOW) == 0,
            path);
}

Volume Volume::full() const {
    Volume copy = *this;
    copy.m_full = true;
    return copy;
}

} // namespace macsim
