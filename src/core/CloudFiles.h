#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace QCoro {
template <typename T>
class Task;
}

namespace quorvane {

class Clock;
class CloudDrive;
class FileManager;

/// The program's files in one folder of its iCloud container. What is in them is the caller's. Main thread; it outlives
/// its tasks.
class CloudFiles {
public:
    /// @param folderName       in "Documents/Quorvane" of the container
    /// @param creationFailure  what a new file that can't be made is told by: the system has no words for that
    CloudFiles(FileManager& files, CloudDrive& cloud, Clock& clock, QString folderName, QString creationFailure);

    /// Made with its parents where it is missing; a failure is left to the operation that follows. None without an account
    /// or a container.
    QCoro::Task<std::optional<QString>> folder();

    /// True also for a file that only iCloud has so far.
    bool exists(const QString& path) const;

    /// Has a file's newest content brought to the disk and waits for it, up to five seconds. True when it is there, and for a
    /// file that iCloud doesn't keep. False needn't mean that there is nothing to read: an older content may be on the disk.
    QCoro::Task<bool> download(QString path);
    /// The same for several, which are all asked for first and waited for together. @return those that are there, in order
    /// @param whileOthersCome  called once with those that are there already, where others aren't
    QCoro::Task<QStringList> downloadAll(QStringList paths,
                                         std::function<void(const QStringList& here)> whileOthersCome = {});

    /// Writes a file, whole or not at all. Gives words for a failure.
    QCoro::Task<std::optional<QString>> write(QByteArray bytes, QString path);

private:
    FileManager& m_files;
    CloudDrive& m_cloud;
    Clock& m_clock;
    QString m_folderName;
    QString m_creationFailure;
};

} // namespace quorvane
