#pragma once

#include <QSet>
#include <QString>

namespace quorvane {

class FileManager;
class Machine;

/// The launch plists that this version of the program has put aside, by the paths of their places: a file of the user's. Earlier
/// versions left overrides behind of which no record tells; of these here every override is recorded. Main thread.
class PutAsideRecord {
public:
    PutAsideRecord(FileManager& files, const Machine& machine);

    /// Empty where there is no file, or one that can't be read.
    QSet<QString> read() const;
    /// An empty record needs no file. Throws FileError.
    void write(const QSet<QString>& paths);

private:
    FileManager& m_files;
    QString m_folder;
    QString m_file;
};

} // namespace quorvane
