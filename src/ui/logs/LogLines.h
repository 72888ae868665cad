#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

#include <optional>
#include <vector>

namespace quorvane {

/// The word in brackets with which an entry of the log begins, without them; empty without one.
QStringView logTag(QStringView entry);

/// The lines of the log's entries, all or those of one tag, found by their numbers. It holds no text: only, for each entry,
/// how many lines there are up to its end. Entries come at the end alone; when they go, `reset` has to be called.
class LogLines {
public:
    /// @param entries  outlive this, or are followed by others
    explicit LogLines(const QStringList& entries)
        : m_entries(&entries) {}

    /// From now on the lines of other entries; `reset` has to be called.
    void follow(const QStringList& entries) { m_entries = &entries; }
    /// Begins anew, with nothing taken in yet.
    /// @param tag  of the entries that count; all when none
    void reset(const std::optional<QString>& tag);
    /// Takes in the next entry. False when there is none.
    bool takeNext();

    int count() const { return m_ends.empty() ? 0 : static_cast<int>(m_ends.back()); }
    /// As it stands in the log. Reading one after the other in either direction costs no more than their lengths.
    QStringView line(int number) const;
    /// Each tag that was met so far, in the order of the alphabet.
    const QStringList& tags() const { return m_tags; }

private:
    const QString& entryAt(std::size_t place) const;
    void noteTag(QStringView tag);

    /// Where a line begins in its entry.
    struct Place {
        std::size_t entry = 0;
        int line = 0;
        qsizetype offset = 0;
    };

    const QStringList* m_entries;
    std::optional<QString> m_tag;
    qsizetype m_taken = 0;           ///< entries, counted or not
    std::vector<quint32> m_ends;     ///< of each entry that counts: the number of the line behind it
    std::vector<quint32> m_counting; ///< which entries these are, where not all of them count
    QStringList m_tags;
    mutable Place m_last; ///< the line that was asked for last
};

} // namespace quorvane
