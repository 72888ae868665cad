#include "ui/logs/LogLines.h"

#include <algorithm>
#include <iterator>

namespace quorvane {

QStringView logTag(QStringView entry) {
    const auto isTagLetter = [](QChar letter) { return (letter >= u'A' && letter <= u'Z') || letter == u' '; };
    const auto begin = std::find_if_not(entry.begin(), entry.end(), [](QChar letter) { return letter.isSpace(); });
    if (begin == entry.end() || *begin != u'[') {
        return {};
    }
    const auto end = std::find_if_not(std::next(begin), entry.end(), isTagLetter);
    return end != entry.end() && *end == u']' ? QStringView(std::next(begin), end) : QStringView();
}

void LogLines::reset(const std::optional<QString>& tag) {
    m_tag = tag;
    m_taken = 0;
    m_ends.clear();
    m_counting.clear();
    m_tags.clear();
    m_last = {};
}

bool LogLines::takeNext() {
    if (m_taken == m_entries->size()) {
        return false;
    }
    const QString& entry = m_entries->at(m_taken);
    const QStringView tag = logTag(entry);
    noteTag(tag);
    if (!m_tag || tag == *m_tag) {
        m_ends.push_back(static_cast<quint32>(count() + entry.count(u'\n') + 1));
        if (m_tag) {
            m_counting.push_back(static_cast<quint32>(m_taken));
        }
    }
    ++m_taken;
    return true;
}

void LogLines::noteTag(QStringView tag) {
    const auto place = std::lower_bound(m_tags.begin(), m_tags.end(), tag);
    if (!tag.isEmpty() && (place == m_tags.end() || *place != tag)) {
        m_tags.insert(place, tag.toString());
    }
}

const QString& LogLines::entryAt(std::size_t place) const {
    return m_entries->at(m_tag ? static_cast<qsizetype>(m_counting[place]) : static_cast<qsizetype>(place));
}

/// An entry may have as many lines as a whole log: from the line that was asked for last the way is short.
QStringView LogLines::line(int number) const {
    const auto end = std::upper_bound(m_ends.begin(), m_ends.end(), static_cast<quint32>(number));
    const auto place = static_cast<std::size_t>(std::distance(m_ends.begin(), end));
    const int wanted = number - (place == 0 ? 0 : static_cast<int>(m_ends[place - 1]));
    const QString& entry = entryAt(place);
    if (m_last.entry != place) {
        m_last = {place, 0, 0};
    }
    for (; m_last.line < wanted; ++m_last.line) {
        m_last.offset = entry.indexOf(u'\n', m_last.offset) + 1;
    }
    for (; m_last.line > wanted; --m_last.line) {
        m_last.offset = m_last.offset < 2 ? 0 : entry.lastIndexOf(u'\n', m_last.offset - 2) + 1;
    }
    const qsizetype lineEnd = entry.indexOf(u'\n', m_last.offset);
    return QStringView(entry).mid(m_last.offset, lineEnd < 0 ? -1 : lineEnd - m_last.offset);
}

} // namespace quorvane
