#include "documentation/MarkdownToHTML.h"

#include <QRegularExpression>
#include <QStringList>

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// A regular expression matches nothing in a text with half a character.
QString withWholeCharacters(const QString& text) {
    return text.isValidUtf16() ? text : QString::fromUtf8(text.toUtf8());
}

/// Each pattern's end is its beginning, so that one without an end is looked for once in a line: the time that it takes grows
/// with the text, and not with its square.
QString withInlineRules(QString text) {
    static const QRegularExpression fence(u"```([^\\n]*?)```"_s);
    static const QRegularExpression code(u"`([^`]+)`"_s);
    static const QRegularExpression strongEmphasis(u"\\*\\*\\*([^\\n]+?)\\*\\*\\*"_s);
    static const QRegularExpression strong(u"\\*\\*([^\\n]+?)\\*\\*"_s);
    static const QRegularExpression emphasis(u"\\*([^\\n]+?)\\*"_s);
    text.replace(fence, u"<pre><code>\\1</code></pre>"_s);
    text.replace(code, u"<code>\\1</code>"_s);
    text.replace(strongEmphasis, u"<strong><em>\\1</em></strong>"_s);
    text.replace(strong, u"<strong>\\1</strong>"_s);
    text.replace(emphasis, u"<em>\\1</em>"_s);
    return text;
}

// ---- Tables

QStringList cellsOf(const QString& row) {
    QStringList cells;
    for (const QString& piece : row.split(u'|')) {
        const QString cell = piece.trimmed();
        if (!cell.isEmpty()) {
            cells.append(cell);
        }
    }
    return cells;
}

QString tableOf(const QList<QStringList>& rows) {
    QString table = u"<table>"_s;
    QString cellName = u"th"_s;
    for (const QStringList& cells : rows) {
        table += u"<tr>"_s;
        for (const QString& cell : cells) {
            table += u'<' + cellName + u'>' + cell + u"</"_s + cellName + u'>';
        }
        table += u"</tr>"_s;
        cellName = u"td"_s;
    }
    return table + u"</table>"_s;
}

QStringList withTables(const QStringList& lines) {
    QStringList result;
    QList<QStringList> rows;
    const auto closeTable = [&result, &rows] {
        if (!rows.isEmpty()) {
            result.append(tableOf(std::exchange(rows, {})));
        }
    };
    for (const QString& line : lines) {
        const QString trimmed = line.trimmed();
        const bool isSeparator = trimmed.startsWith(u"---") || trimmed.startsWith(u"===");
        if (trimmed.contains(u'|') && !isSeparator) {
            rows.append(cellsOf(trimmed));
        } else if (!isSeparator || rows.isEmpty()) {
            closeTable();
            result.append(line);
        }
    }
    closeTable();
    return result;
}

// ---- Lists

QStringList withLists(const QStringList& lines) {
    QStringList result;
    QString items;
    const auto closeList = [&result, &items] {
        if (!items.isEmpty()) {
            result.append(u"<ul>"_s + std::exchange(items, {}) + u"</ul>"_s);
        }
    };
    for (const QString& line : lines) {
        const QString trimmed = line.trimmed();
        if (trimmed.startsWith(u"- ") || trimmed.startsWith(u"* ")) {
            items += u"<li>"_s + trimmed.mid(2) + u"</li>"_s;
        } else {
            closeList();
            result.append(line);
        }
    }
    closeList();
    return result;
}

// ---- Lines

/// Within an element that takes several lines. Only how a line begins tells: an element that ends in the line in which it
/// begins counts as open from there on.
struct OpenElement {
    QStringView begin;
    QStringView end;
    bool isOpen = false;

    void pass(const QString& trimmed) { isOpen = (isOpen || trimmed.startsWith(begin)) && !trimmed.startsWith(end); }
};

QString element(const QString& name, const QString& text) {
    return u'<' + name + u'>' + text + u"</"_s + name + u'>';
}

QString plainLine(const QString& trimmed) {
    if (trimmed.startsWith(u"### ")) {
        return element(u"h3"_s, trimmed.mid(4));
    }
    if (trimmed.startsWith(u"## ")) {
        return element(u"h2"_s, trimmed.mid(3));
    }
    if (trimmed.startsWith(u"# ")) {
        return element(u"h1"_s, trimmed.mid(2));
    }
    return trimmed.startsWith(u"---") ? u"<hr>"_s : element(u"p"_s, trimmed);
}

QStringList withLines(const QStringList& lines) {
    OpenElement code{u"<pre>", u"</pre>"};
    OpenElement list{u"<ul>", u"</ul>"};
    OpenElement table{u"<table>", u"</table>"};
    QStringList result;
    for (const QString& line : lines) {
        const QString trimmed = line.trimmed();
        for (OpenElement* const open : {&code, &list, &table}) {
            open->pass(trimmed);
        }
        if (trimmed.isEmpty()) {
            result.append(code.isOpen || list.isOpen || table.isOpen ? line : u"<br>"_s);
        } else {
            result.append(trimmed.startsWith(u'<') || code.isOpen ? line : plainLine(trimmed));
        }
    }
    return result;
}

} // namespace

QString markdownToHTML(const QString& markdown) {
    const QString text = withInlineRules(withWholeCharacters(markdown));
    return withLines(withLists(withTables(text.split(u'\n')))).join(u'\n');
}

} // namespace quorvane
