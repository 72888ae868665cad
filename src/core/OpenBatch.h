#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

namespace quorvane {

class FileManager;

/// What belongs to one administrator batch: the entries of its line, and what the program has to know of them while they wait.
/// It is opened empty and dropped as one.
class OpenBatch {
public:
    // ---- The line

    bool isEmpty() const { return m_entries.isEmpty(); }
    /// Adds an entry: it runs whatever became of the one before it.
    void queue(const QString& entry);
    /// Adds commands as one entry, tolerant and joined; see core/AdminScript.
    void queueTolerantly(const QStringList& commands);
    /// The entries as one shell line; none is left then.
    QString takeLine();

    // ---- Files that it moves: a second move would delete the only copy

    void rememberMove(const QString& path);
    /// True when the file is moved already, under this spelling or another that the volume takes for the same.
    bool moves(const QString& path, const FileManager& files) const;
    void forgetMoves() { m_moves.clear(); }

    // ---- Launch plists that it brings back

    void queueLaunchPlistBack(const QString& plist, const QString& command);
    bool bringsBack(const QString& plist) const { return m_plistsBroughtBack.contains(plist); }
    const QStringList& plistsBroughtBack() const { return m_plistsBroughtBack; }

private:
    QStringList m_entries;
    QMultiHash<QString, QString> m_moves; ///< paths, by their folded spelling
    QStringList m_plistsBroughtBack;
};

} // namespace quorvane
