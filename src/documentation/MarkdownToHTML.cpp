#include "documentation/MarkdownToHTML.h"

#include <QRegularExpression>
#include <QStringTokenizer>

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// A regular expression matches nothing in a text with half a character.
QString withWholeCharacters(const QString& text) {
    return text.isValidUtf16() ? text : QString::fromUtf8(text.toUtf8());
}

// ---- Within lines

/// With each match replaced by what it has captured, between two tags. (QString::replace gathers all matches first: a long text
/// would cost it more than so many short ones.)
QString withTags(const QString& text, const QRegularExpression& pattern, QStringView opening, QStringView closing) {
    QRegularExpressionMatchIterator matches = pattern.globalMatch(text);
    if (!matches.hasNext()) {
        return text;
    }
    QString result;
    result.reserve(2 * text.size());
    qsizetype end = 0;
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        result += QStringView(text).sliced(end, match.capturedStart() - end);
        result += opening;
        result += match.capturedView(1);
        result += closing;
        end = match.capturedEnd();
    }
    result += QStringView(text).sliced(end);
    return result;
}

/// Each pattern's end is its beginning, so that one without an end is looked for once in a line: the time that it takes grows
/// with the text, and not with its square.
QString withInlineRules(QString text) {
    static const QRegularExpression fence(u"```([^\\n]*?)```"_s);
    static const QRegularExpression code(u"`([^`]+)`"_s);
    static const QRegularExpression strongEmphasis(u"\\*\\*\\*([^\\n]+?)\\*\\*\\*"_s);
    static const QRegularExpression strong(u"\\*\\*([^\\n]+?)\\*\\*"_s);
    static const QRegularExpression emphasis(u"\\*([^\\n]+?)\\*"_s);
    text = withTags(text, fence, u"<pre><code>", u"</code></pre>");
    text = withTags(text, code, u"<code>", u"</code>");
    text = withTags(text, strongEmphasis, u"<strong><em>", u"</em></strong>");
    text = withTags(text, strong, u"<strong>", u"</strong>");
    return withTags(text, emphasis, u"<em>", u"</em>");
}

// ---- From line to line: each pass hands on what it makes to the next one

/// Within an element that takes several lines. Only how a line begins tells: an element that ends in the line in which it
/// begins counts as open from there on.
struct OpenElement {
    QStringView begin;
    QStringView end;
    bool isOpen = false;

    void pass(QStringView trimmed) { isOpen = (isOpen || trimmed.startsWith(begin)) && !trimmed.startsWith(end); }
};

/// What a line is by how it begins.
class LinePass {
public:
    explicit LinePass(qsizetype expectedLength) { m_html.reserve(expectedLength); }

    void take(QStringView line) {
        if (!std::exchange(m_isFirst, false)) {
            m_html += u'\n';
        }
        const QStringView trimmed = line.trimmed();
        for (OpenElement* const open : {&m_code, &m_list, &m_table}) {
            open->pass(trimmed);
        }
        if (trimmed.isEmpty()) {
            m_html += m_code.isOpen || m_list.isOpen || m_table.isOpen ? line : QStringView(u"<br>");
        } else if (trimmed.startsWith(u'<') || m_code.isOpen) {
            m_html += line;
        } else {
            addPlain(trimmed);
        }
    }
    // What follows goes on in the line that was taken last.
    void add(QStringView html) { m_html += html; }
    void addElement(QStringView name, QStringView text) {
        for (const QStringView piece : {QStringView(u"<"), name, QStringView(u">"), text, QStringView(u"</"), name}) {
            m_html += piece;
        }
        m_html += u'>';
    }

    QString html() { return std::move(m_html); }

private:
    void addPlain(QStringView trimmed) {
        if (trimmed.startsWith(u"### ")) {
            addElement(u"h3", trimmed.sliced(4));
        } else if (trimmed.startsWith(u"## ")) {
            addElement(u"h2", trimmed.sliced(3));
        } else if (trimmed.startsWith(u"# ")) {
            addElement(u"h1", trimmed.sliced(2));
        } else if (trimmed.startsWith(u"---")) {
            add(u"<hr>");
        } else {
            addElement(u"p", trimmed);
        }
    }

    QString m_html;
    bool m_isFirst = true;
    OpenElement m_code{u"<pre>", u"</pre>"};
    OpenElement m_list{u"<ul>", u"</ul>"};
    OpenElement m_table{u"<table>", u"</table>"};
};

/// A list becomes one line.
class ListPass {
public:
    explicit ListPass(LinePass& lines)
        : m_lines(lines) {}

    void take(QStringView line) {
        const QStringView trimmed = line.trimmed();
        if (trimmed.startsWith(u"- ") || trimmed.startsWith(u"* ")) {
            if (!std::exchange(m_isOpen, true)) {
                m_lines.take(u"<ul>");
            }
            m_lines.addElement(u"li", trimmed.sliced(2));
        } else {
            end();
            m_lines.take(line);
        }
    }
    void end() {
        if (std::exchange(m_isOpen, false)) {
            m_lines.add(u"</ul>");
        }
    }

private:
    LinePass& m_lines;
    bool m_isOpen = false;
};

/// A table becomes one line.
class TablePass {
public:
    TablePass(ListPass& lists, LinePass& lines)
        : m_lists(lists)
        , m_lines(lines) {}

    void take(QStringView line) {
        const QStringView trimmed = line.trimmed();
        const bool isSeparator = trimmed.startsWith(u"---") || trimmed.startsWith(u"===");
        if (trimmed.contains(u'|') && !isSeparator) {
            addRow(trimmed);
        } else if (!isSeparator || !m_isOpen) {
            end();
            m_lists.take(line);
        }
    }
    void end() {
        if (std::exchange(m_isOpen, false)) {
            m_lines.add(u"</table>");
        }
    }

private:
    void addRow(QStringView row) {
        const QStringView cellName = m_isOpen ? u"td" : u"th";
        if (!std::exchange(m_isOpen, true)) {
            m_lists.take(u"<table>");
        }
        m_lines.add(u"<tr>");
        for (const QStringView piece : row.tokenize(u'|')) {
            const QStringView cell = piece.trimmed();
            if (!cell.isEmpty()) {
                m_lines.addElement(cellName, cell);
            }
        }
        m_lines.add(u"</tr>");
    }

    ListPass& m_lists;
    LinePass& m_lines;
    bool m_isOpen = false;
};

} // namespace

QString markdownToHTML(const QString& markdown) {
    const QString text = withInlineRules(withWholeCharacters(markdown));
    LinePass lines(2 * text.size());
    ListPass lists(lines);
    TablePass tables(lists, lines);
    for (const QStringView line : QStringView(text).tokenize(u'\n')) {
        tables.take(line);
    }
    tables.end();
    lists.end();
    return lines.html();
}

} // namespace quorvane
