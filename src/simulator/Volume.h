#pragma once

#include "simulator/Machine.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>

#include <exception>
#include <sys/types.h>

namespace macsim {

/// A file operation that failed, as the operating system reports it.
class FileError : public std::exception {
public:
    /// @param errorNumber  an errno value (ENOENT, EACCES, EPERM, ENOSPC, …)
    /// @param path         the path as the Mac sees it
    FileError(int errorNumber, QString path);

    int errorNumber() const { return m_errorNumber; }
    QString path() const { return m_path; }
    /// The system's text for the error number: "No such file or directory".
    QString reason() const;
    const char* what() const noexcept override { return m_text.constData(); }

private:
    int m_errorNumber;
    QString m_path;
    QByteArray m_text;
};

/// The disk of the simulated Mac, as one actor sees it.
///
/// Every path is an absolute path as the Mac sees it ("/Users/alex/Library"); none is ever one of the host.
/// Paths are resolved component by component inside the folder: ".." stops at the root, and a link leads to its
/// target inside the folder, wherever it points on the host. On a volume that ignores case a name is found in any
/// case and keeps the case it was made with.
///
/// Owners: what lies in the user's home, their temporary folder, /private/tmp, /Applications, /Users/Shared and
/// /Volumes is the user's, the rest is root's, as long as nobody has made or owns it otherwise. A new or replaced file
/// belongs to its maker, one that is rewritten in place or moved keeps its owner. A link always belongs to whom its
/// place says.
///
/// Rights: the sealed system (/System, /usr but not /usr/local, /bin, /sbin) and the simulator's own state refuse
/// every change with EPERM, also to root; and so do data vaults (Places.h) while System Integrity Protection is on. Otherwise root may do everything, and the user (EACCES) what POSIX and macOS
/// let them: change the bytes of their own files and the names in their own folders. The shared folders themselves are
/// root's and open to them (/private/tmp, /Users/Shared, /Applications, /Volumes); in the first two they can't remove
/// or replace what is root's. A folder that isn't theirs can't be moved into another one. Reading is free but for
/// /private/var/root, which is closed to the user, and for what is private (Places.h): it refuses root as well (EPERM)
/// without Full Disk Access. The Downloads folder is refused to a program that may not read it (Permissions.h).
///
/// Every operation throws FileError.
class Volume {
public:
    enum class Kind { Missing, File, Folder, Link, Tool };

    /// @param hostFolder  the folder on the host that is this Mac's "/"
    Volume(QString hostFolder, Machine machine, Actor actor);

    Actor actor() const { return m_actor; }
    const Machine& machine() const { return m_machine; }

    /// What stands at a path; the last component is not followed when it is a link. Never throws.
    /// A Tool is a command of the simulated Mac (/usr/bin/defaults): it can be executed and not read.
    Kind kind(const QString& path) const;
    /// True when something stands there once links are followed.
    bool exists(const QString& path) const;
    bool isFolder(const QString& path) const;
    /// True when the actor may read what stands there once links are followed. Never throws.
    /// A Tool counts as readable, as every program of a Mac is, though its bytes are not to be had here.
    bool isReadable(const QString& path) const;
    /// True when the actor may change what stands there once links are followed: the bytes of a file, the
    /// names in a folder. Asks for the rights and not for the space: also true on a full disk. Never throws.
    bool isWritable(const QString& path) const;
    /// The path without links, "." and ".."; the last component may be missing. In the case of the names on disk.
    QString canonicalPath(const QString& path) const;

    /// Of a dataless file: EDEADLK.
    QByteArray read(const QString& path) const;
    /// True for a file that stands in its folder while iCloud alone has its content. Links are followed; never throws.
    bool isDataless(const QString& path) const;
    /// Takes a file's content from the disk and leaves the file, as a Mac does that needs the space.
    void evict(const QString& path) const;
    /// The names in a folder, sorted by code point, hidden ones included.
    QStringList list(const QString& path) const;
    /// Those of the same names that come after one of them (all do after an empty one), at most so many: for a folder that
    /// may be too large to list. What has been given may be removed before the next are asked for.
    QStringList namesAfter(const QString& path, const QString& last, qsizetype limit) const;
    QString linkTarget(const QString& path) const;
    qint64 size(const QString& path) const;
    /// Of what stands there once links are followed; of a folder, when a name in it last came or went.
    QDateTime modificationTime(const QString& path) const;
    /// For what the actor may change. Links are followed; to the millisecond.
    void setModificationTime(const QString& path, const QDateTime& time) const;
    /// What the file system counts it by; the last component is not followed when it is a link.
    quint64 fileNumber(const QString& path) const;
    /// Whose it is; the last component is not followed when it is a link.
    Actor owner(const QString& path) const;
    /// Gives it away, as root alone can (EPERM). A link is followed; what is in a folder keeps its owner.
    void setOwner(const QString& path, Actor owner) const;

    void write(const QString& path, const QByteArray& bytes) const;
    void append(const QString& path, const QByteArray& bytes) const;
    /// Writes beside the file and puts it in place in one step: a reader sees the old bytes or the new ones.
    void writeAtomically(const QString& path, const QByteArray& bytes) const;
    void createFolder(const QString& path) const;
    /// Creates a folder with all its parents; an existing one is fine.
    void createFolders(const QString& path) const;
    void createLink(const QString& path, const QString& target) const;
    /// Removes a file, a link or an empty folder.
    void remove(const QString& path) const;
    /// Renames; an existing file at the new place is replaced.
    void move(const QString& from, const QString& to) const;
    /// Sets the modification time to now, creating an empty file where there is none.
    void touch(const QString& path) const;

    /// A volume on which every write fails with ENOSPC, for trying a full disk.
    Volume full() const;

private:
    struct Located; // a parent that exists on the host, a last component, and the path that the Mac sees
    Located locate(const QString& path, bool followLast) const;
    QString matchingName(const QString& hostParent, const QString& name) const;
    Actor currentOwner(const QString& macPath) const;
    mode_t modeOfNew(const QString& macPath, mode_t mode) const;
    bool isKeptApplication(const QString& path) const;
    bool isVault(const QString& path) const;
    bool isKeptFromReaders(const QString& path) const;
    void requireChangeableNames(const QString& folder, const QString& blamed) const;
    void requireFreeName(const Located& place) const;
    void requireRemovable(const Located& place) const;
    void requireWritable(const Located& place) const;
    void requireReadable(const Located& place) const;
    Located readableFolder(const QString& path) const;
    void requireSpace(const QString& path) const;
    void put(const QString& path, const QByteArray& bytes, int flags) const;

    QString m_hostFolder;
    Machine m_machine;
    Actor m_actor;
    bool m_full = false;
};

} // namespace macsim
