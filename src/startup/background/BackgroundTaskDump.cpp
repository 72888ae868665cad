#include "startup/background/BackgroundTaskDump.h"

#include <QHash>
#include <QStringTokenizer>

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

bool isBlank(QChar c) {
    return c == u' ' || c == u'\t';
}

QStringView withoutOuterBlanks(QStringView text) {
    while (!text.isEmpty() && isBlank(text.front())) {
        text = text.mid(1);
    }
    while (!text.isEmpty() && isBlank(text.back())) {
        text.chop(1);
    }
    return text;
}

/// "#12" or "#12:", with anything behind the colon.
bool isBlockHeader(QStringView line) {
    if (!line.startsWith(u'#')) {
        return false;
    }
    const auto afterDigits = std::find_if_not(line.begin() + 1, line.end(), [](QChar c) { return c.isNumber(); });
    return afterDigits != line.begin() + 1 && (afterDigits == line.end() || *afterDigits == u':');
}

/// The labels and values of the block that is being read.
class Block {
public:
    void read(QStringView line) {
        const qsizetype colon = line.indexOf(u':');
        const QStringView label = withoutOuterBlanks(line.left(std::max<qsizetype>(colon, 0)));
        if (!label.isEmpty()) {
            m_values.insert(label, withoutOuterBlanks(line.mid(colon + 1)));
        }
    }

    void flushInto(QList<BackgroundTaskItem>& items) {
        const QStringView name = m_values.value(u"Name");
        if (!name.isEmpty() && name != u"(null)"_s) {
            items.append({name.toString(), optional(u"Bundle Identifier"), text(u"Identifier"), text(u"Type"),
                          text(u"Disposition"), optional(u"Parent Identifier"), optional(u"Executable Path"),
                          optional(u"URL")});
        }
        m_values.clear();
    }

private:
    QString text(QStringView label) const { return m_values.value(label).toString(); }
    std::optional<QString> optional(QStringView label) const {
        return m_values.contains(label) ? std::optional(text(label)) : std::nullopt;
    }

    QHash<QStringView, QStringView> m_values; ///< views into the dump
};

} // namespace

QList<BackgroundTaskItem> parseBackgroundTaskDump(const QString& text) {
    QList<BackgroundTaskItem> items;
    Block block;
    // LF, CR LF or CR: of CR LF the second leaves an empty line, which says nothing.
    for (const QStringView withReturns : QStringTokenizer{text, u'\n'}) {
        for (const QStringView untrimmed : QStringTokenizer{withReturns, u'\r'}) {
            const QStringView line = withoutOuterBlanks(untrimmed);
            if (isBlockHeader(line)) {
                block.flushInto(items);
            } else {
                block.read(line);
            }
        }
    }
    block.flushInto(items);
    return items;
}

} // namespace quorvane
