#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QtGlobal>

#include <exception>
#include <memory>
#include <optional>

namespace quorvane {

/// A file operation that failed.
class FileError : public std::exception {
public:
    /// What stood in the way, where that is told apart.
    enum class Cause {
        Missing,       ///< nothing stands there
        NotPermitted,  ///< the system doesn't let the program do it
        NotDownloaded, ///< iCloud alone has the content, and reading would wait for the network
        Other,
    };

    /// @param path    the file or folder, as the Mac sees it
    /// @param reason  the system's own words: "No such file or directory"
    FileError(const QString& path, const QString& reason, Cause cause = Cause::Other)
        : m_text((path + QStringLiteral(": ") + reason).toUtf8())
        , m_cause(cause) {}
    /// @param errorNumber  an errno value
    FileError(const QString& path, int errorNumber);
    /// Of a file whose content iCloud alone has.
    static FileError notDownloaded(const QString& path);

    Cause cause() const { return m_cause; }
    QString message() const { return QString::fromUtf8(m_text); }
    const char* what() const noexcept override { return m_text.constData(); }

private:
    QByteArray m_text;
    Cause m_cause;
};

/// What stands at a path.
struct FileStatus {
    enum class Kind { Missing, File, Folder, Link, Other };

    Kind kind = Kind::Missing;
    quint32 owner = 0; ///< the user id of its owner; 0 is root, and what is missing
    /// What the file system counts it by: it keeps the number when it is moved, and what takes its place has another one. 0 for
    /// what is missing.
    quint64 fileNumber = 0;

    bool operator==(const FileStatus&) const = default;
};

/// The names in a folder, one after the other, however many there are.
class FolderEntries {
public:
    FolderEntries() = default;
    FolderEntries(const FolderEntries&) = delete;
    FolderEntries& operator=(const FolderEntries&) = delete;
    virtual ~FolderEntries() = default;

    /// The next name; none after the last. Throws FileError.
    virtual std::optional<QString> next() = 0;
};

/// Files and folders, by absolute paths as the Mac sees them. Main thread; every operation is synchronous.
class FileManager {
public:
    FileManager() = default;
    FileManager(const FileManager&) = delete;
    FileManager& operator=(const FileManager&) = delete;
    virtual ~FileManager() = default;

    /// True for a file or folder that can be reached; links are followed.
    virtual bool exists(const QString& path) const = 0;
    /// What stands at the path itself: a link is not followed. Missing when that can't be told.
    virtual FileStatus status(const QString& path) const = 0;
    /// True when the user may change what stands there once links are followed: the bytes of a file, the names in a
    /// folder.
    virtual bool isWritable(const QString& path) const = 0;
    /// The path without links, "." and "..". Throws FileError when nothing stands there.
    virtual QString resolved(const QString& path) const = 0;
    /// The names in a folder, hidden ones included, in the order in which the system gives them. Throws FileError.
    virtual QStringList list(const QString& folder) const = 0;
    /// The same names in the same order, for a folder that may be large. What has been given may be removed while the rest
    /// is still to come. Throws FileError.
    virtual std::unique_ptr<FolderEntries> entries(const QString& folder) const = 0;
    /// Throws FileError, whose cause tells a missing file from one that may not be read, and from one that isn't on the disk: the
    /// network is never waited for.
    virtual QByteArray read(const QString& path) const = 0;
    /// Writes beside the file and puts it in place in one step, so that the old content survives every failure.
    /// A symbolic link at the path is replaced, not followed. Throws FileError.
    virtual void writeAtomically(const QString& path, const QByteArray& bytes) = 0;
    /// The same where nothing stands, not even a link: what is there, or comes meanwhile, stays. Throws FileError.
    /// @return false where something stands
    virtual bool writeNew(const QString& path, const QByteArray& bytes) = 0;
    /// Adds to the end of a file, which is made where it is missing, and is then its owner's alone to read. What a program that dies
    /// meanwhile has added may be there in part. A symbolic link at the path isn't followed. Throws FileError.
    enum class Flush {
        No,
        Yes, ///< it is on the medium when the call returns, with all that was added before
    };
    virtual void append(const QString& path, const QByteArray& bytes, Flush flush) = 0;
    /// Renames within a volume; an existing file at the new path is replaced. Throws FileError.
    virtual void move(const QString& from, const QString& to) = 0;
    /// Removes a file, a link or an empty folder. Throws FileError.
    virtual void remove(const QString& path) = 0;
    /// Creates a folder with its parents; one that exists is fine. Throws FileError.
    virtual void createFolders(const QString& folder) = 0;
};

} // namespace quorvane
