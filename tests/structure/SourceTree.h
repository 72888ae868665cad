#pragma once

#include <QMap>
#include <QSet>
#include <QString>
#include <QStringList>

namespace quorvane {

/// What the files of src/ include, and which CMake target each of them belongs to. Paths are relative to src/, as they stand
/// in an include.
///
/// A file belongs to the target that lists it, a header to that of the .cpp of its name. A header without one belongs to the
/// lowest of the targets that have files in its folder: to the one that all others link.
///
/// A finding is a line for whoever has to mend it; none means that all is well.
class SourceTree {
public:
    /// Reads a folder and all below it.
    static SourceTree read(const QString& folder);

    /// @param text  of a C++ file, or of a list when the path ends in "CMakeLists.txt"
    void add(const QString& path, const QString& text);

    /// Folders that include each other, also by way of others. A program's main file counts by itself: it puts together what
    /// lies around and below it, and nobody includes it.
    QStringList folderCycles() const;
    /// Files in no target or in several, and includes that lead to no file.
    QStringList homelessFiles() const;
    /// Includes of what the file's own target doesn't link.
    QStringList includesOfWhatIsNotLinked() const;
    /// Includes of a folder by files that lie neither in it nor in one of the others.
    QStringList includesOf(const QString& folder, const QStringList& permittedFolders = {}) const;
    /// Includes by the files of a folder that lead out of it and to none of the others.
    QStringList includesOutOf(const QString& folder, const QStringList& permittedFolders = {}) const;

private:
    struct Target {
        QStringList files;
        QStringList links;
    };
    struct Include {
        QString file;
        QString header;

        QString text() const;
    };

    void addCMakeList(const QString& folder, QString text);
    void addCMakeCall(const QString& folder, const QString& command, QStringList words);
    QList<Include> includes() const;
    /// The names of the targets; several where the lists don't say which.
    QStringList targetsOf(const QString& file) const;
    QString lowestOf(const QStringList& targets) const;
    /// The target itself and all that it links, also by way of others.
    QSet<QString> linkedBy(const QString& target) const;
    QString shortestCycle(const QString& node) const;

    QMap<QString, QStringList> m_headers;          ///< that each file includes
    QMap<QString, Target> m_targets;               ///< by name
    QMap<QString, QStringList> m_listings;         ///< the targets that list a file
    QMap<QString, QMap<QString, Include>> m_edges; ///< from folder to folder, with one include for each
};

} // namespace quorvane
