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

constexpr qint64 kWholeMac = -2;
constexpr qint64 kRoot = 0;

/// "#12" or "#12:", with anything behind the colon.
bool isBlockHeader(QStringView line) {
    if (!line.startsWith(u'#')) {
        return false;
    }
    const auto afterDigits = std::find_if_not(line.begin() + 1, line.end(), [](QChar c) { return c.isNumber(); });
    return afterDigits != line.begin() + 1 && (afterDigits == line.end() || *afterDigits == u':');
}

constexpr QStringView kSectionBeginning = u"Records for UID";

/// "Records for UID 501 : 0A1B…", however the rest reads.
bool isSectionHeader(QStringView line) {
    return line.startsWith(kSectionBeginning) &&
           (line.size() == kSectionBeginning.size() || isBlank(line.at(kSectionBeginning.size())));
}

/// True for the sections of the user, of the whole Mac, and of root.
bool isSectionOfUser(QStringView header, quint32 userId) {
    const QStringView rest = withoutOuterBlanks(header.mid(kSectionBeginning.size()));
    const auto end = std::find_if(rest.begin(), rest.end(), [](QChar c) { return isBlank(c) || c == u':'; });
    bool isNumber = false;
    const qint64 id = rest.first(end - rest.begin()).toLongLong(&isNumber);
    return isNumber && (id == qint64{userId} || id == kWholeMac || id == kRoot);
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

    /// Its record, if it is one; the next block begins.
    std::optional<BackgroundTaskItem> take() {
        const QStringView name = m_values.value(u"Name");
        std::optional<BackgroundTaskItem> item;
        if (!name.isEmpty() && name != u"(null)"_s) {
            item = {
                name.toString(),      optional(u"Bundle Identifier"), text(u"Identifier"),          text(u"Type"),
                text(u"Disposition"), optional(u"Parent Identifier"), optional(u"Executable Path"), optional(u"URL"),
                text(u"Flags")};
        }
        m_values.clear();
        return item;
    }

private:
    QString text(QStringView label) const { return m_values.value(label).toString(); }
    std::optional<QString> optional(QStringView label) const {
        return m_values.contains(label) ? std::optional(text(label)) : std::nullopt;
    }

    QHash<QStringView, QStringView> m_values; ///< views into the dump
};

} // namespace

QList<BackgroundTaskItem> parseBackgroundTaskDump(const QString& text, quint32 userId) {
    QList<BackgroundTaskItem> items;
    Block block;
    bool counts = true;
    const auto endBlock = [&] {
        const std::optional<BackgroundTaskItem> item = block.take();
        if (item && counts) {
            items.append(*item);
        }
    };
    // LF, CR LF or CR: of CR LF the second leaves an empty line, which says nothing.
    for (const QStringView withReturns : QStringTokenizer{text, u'\n'}) {
        for (const QStringView untrimmed : QStringTokenizer{withReturns, u'\r'}) {
            const QStringView line = withoutOuterBlanks(untrimmed);
            if (isSectionHeader(line)) {
                endBlock();
                counts = isSectionOfUser(line, userId);
            } else if (isBlockHeader(line)) {
                endBlock();
            } else {
                block.read(line);
            }
        }
    }
    endBlock();
    return items;
}

} // namespace quorvane
