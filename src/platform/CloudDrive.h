#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QFuture>
#include <QString>
#include <QStringList>

#include <optional>

namespace quorvane {

/// iCloud Drive, as the program uses it: its container is a folder of the disk, whose files may not have been downloaded
/// yet. What is on the disk is read through FileManager; here is what only iCloud knows. Main thread.
class CloudDrive {
public:
    CloudDrive() = default;
    CloudDrive(const CloudDrive&) = delete;
    CloudDrive& operator=(const CloudDrive&) = delete;
    virtual ~CloudDrive() = default;

    /// True when the user is signed in. They may be, and still have no container. Quick.
    virtual bool hasAccount() const = 0;
    /// The folder of the program's container "7KX2MR04TD.com.quorvane.app", without a "/" at the end; none when the
    /// system gives none. The system may take its time, which is why it is awaited.
    virtual QFuture<std::optional<QString>> containerFolder() = 0;

    /// The names of the files in a folder of the container, in no particular order, those included that haven't been
    /// downloaded. Throws FileError.
    virtual QStringList list(const QString& folder) const = 0;
    /// When the file was last changed, in UTC, downloaded or not; none for a file that iCloud doesn't know.
    virtual std::optional<QDateTime> modificationDate(const QString& path) const = 0;

    /// True for a file that iCloud keeps, downloaded or not.
    virtual bool isUbiquitous(const QString& path) const = 0;
    /// Asks for the file's newest content. What comes of it shows in `isCurrent`.
    virtual void startDownloading(const QString& path) = 0;
    /// True when the newest content that iCloud knows of is on the disk.
    virtual bool isCurrent(const QString& path) const = 0;

    /// Makes a new file, whole or not at all. False when it can't be made.
    virtual bool create(const QString& path, const QByteArray& bytes) = 0;
    /// Replaces a file's content, whole or not at all, in agreement with the processes that sync it, off the main thread.
    /// Gives the system's words for a failure. The future is never cancelled and holds no exception.
    virtual QFuture<std::optional<QString>> replace(const QString& path, const QByteArray& bytes) = 0;

    /// Removes a file, downloaded or not, here and wherever iCloud has it, in the same way.
    virtual QFuture<std::optional<QString>> remove(const QString& path) = 0;

    /// Ends what is waited for, and everything later at once: no container, and no file written or removed. See
    /// CommandLauncher::shutDown.
    virtual void shutDown() = 0;
};

} // namespace quorvane
