#pragma once

#include <QString>
#include <QStringList>

namespace quorvane {

class FileManager;
class Machine;

/// The network services that were on and that the program has switched off, or was about to: a file of the user's, by which those
/// come back that no snapshot knows. Main thread.
class SwitchedOffServices {
public:
    SwitchedOffServices(FileManager& files, const Machine& machine);

    /// Sorted. Empty where there is no file, or one that can't be read.
    QStringList read() const;
    /// Adds some. Throws FileError.
    void note(const QStringList& services);
    /// Takes some out; those that aren't there don't matter. An empty record needs no file. Throws FileError.
    void strike(const QStringList& services);

private:
    void write(QStringList services);

    FileManager& m_files;
    QString m_folder;
    QString m_file;
};

} // namespace quorvane
