#pragma once

#include <QHash>
#include <QSet>
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
    /// Adds an entry in front of all others: the last one's status counts, and this one's shall not take its place.
    void queueFirst(const QString& entry);
    /// Adds commands as one entry, tolerant and joined; see core/AdminScript.
    void queueTolerantly(const QStringList& commands);
    /// The entries as one shell line; none is left then.
    QString takeLine();

    // ---- Files that it moves: a second move would delete the only copy

    void rememberMove(const QString& path);
    /// True when the file is moved already, under this spelling or another that the volume takes for the same.
    bool moves(const QString& path, const FileManager& files) const;
    void forgetMoves() { m_moves.clear(); }

    // ---- Background labels that it switches off

    bool switchesOff(const QString& label) const { return m_labels.contains(label); }
    const QSet<QString>& labels() const { return m_labels; }
    /// @param commands      an entry each
    /// @param dispositions  of the label's records, to be put back when the batch fails
    void queueLabel(const QString& label, const QStringList& commands, const QStringList& dispositions);
    /// Called when a label is off by other means: there is nothing to put back then.
    void keepLabelOff(const QString& label) { m_dispositionsBefore.remove(label); }
    /// By label.
    const QHash<QString, QStringList>& dispositionsBefore() const { return m_dispositionsBefore; }

    // ---- Launch plists that it brings back

    void queueLaunchPlistBack(const QString& plist, const QString& command);
    bool bringsBack(const QString& plist) const { return m_plistsBroughtBack.contains(plist); }
    const QStringList& plistsBroughtBack() const { return m_plistsBroughtBack; }

private:
    QStringList m_entries;
    QMultiHash<QString, QString> m_moves; ///< paths, by their folded spelling
    QSet<QString> m_labels;
    QHash<QString, QStringList> m_dispositionsBefore;
    QStringList m_plistsBroughtBack;
};

} // namespace quorvane
