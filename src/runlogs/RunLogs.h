#pragma once

#include "runlogs/RunLogName.h"

#include <QByteArray>

namespace quorvane {

class FileManager;
class Machine;

/// The folder in which the logs of the last runs are kept: "~/Library/Logs/Quorvane". What is in there and isn't a file of a run's
/// name is left alone, and so is a folder that is a link. Its files are their owner's alone.
class RunLogs {
public:
    RunLogs(FileManager& files, const Machine& machine);

    /// The kept runs, the newest first; none where the folder is missing. Throws FileError.
    QList<RunLogName> kept() const;
    /// The log of a run as it was written, which may end in the midst of a character. Throws FileError.
    QByteArray read(const QString& file) const;

    /// Makes the folder, and looks for the name of a run that begins now. Throws FileError.
    RunLogName nameForNew(const QDateTime& now) const;
    /// Adds to the log of a run. Throws FileError.
    void append(const QString& file, const QByteArray& bytes);
    /// Removes the runs that are too many.
    /// @param newest  the run that has just begun; it stays, whatever the names of the others
    /// Throws FileError when one can't be removed. One that another process has removed meanwhile is gone.
    void forgetOldBeside(const QString& newest);

private:
    QString pathOf(const QString& file) const { return m_folder + u'/' + file; }
    void requireFolder() const;

    FileManager& m_files;
    const Machine& m_machine;
    QString m_folder;
};

} // namespace quorvane
