#include "documentation/MarkdownToHTML.h"

#include <QRandomGenerator>
#include <QStringList>

#include <gtest/gtest.h>

#include <optional>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

struct Conversion {
    QString markdown;
    QString html;
};

class MarkdownToHTML : public ::testing::TestWithParam<Conversion> {};

// ---- The rules once more, in the plainest way: for each place of the text what the rule says of it.

/// What stands between two marks on one line, as little as there can be.
QString withPairs(const QString& text, const QString& mark, qsizetype shortest, const QString& before,
                  const QString& after) {
    QString result;
    qsizetype at = 0;
    while (at < text.size()) {
        std::optional<qsizetype> end;
        if (text.mid(at, mark.size()) == mark) {
            for (qsizetype next = at + mark.size(); next < text.size() && !end; ++next) {
                if (next - at - mark.size() >= shortest && text.mid(next, mark.size()) == mark) {
                    end = next;
                } else if (text.at(next) == u'\n') {
                    break;
                }
            }
        }
        if (end) {
            result += before + text.mid(at + mark.size(), *end - at - mark.size()) + after;
            at = *end + mark.size();
        } else {
            result += text.at(at++);
        }
    }
    return result;
}

/// Code between two backticks, over as many lines as there are.
QString withCode(const QString& text) {
    QString result;
    qsizetype at = 0;
    while (at < text.size()) {
        const qsizetype end = text.at(at) == u'`' ? text.indexOf(u'`', at + 1) : -1;
        if (end > at + 1) {
            result += u"<code>"_s + text.mid(at + 1, end - at - 1) + u"</code>"_s;
            at = end + 1;
        } else {
            result += text.at(at++);
        }
    }
    return result;
}

bool begins(const QString& line, const QString& with) {
    return line.trimmed().left(with.size()) == with;
}

QStringList plainTables(const QStringList& lines) {
    QStringList result;
    bool isOpen = false;
    for (const QString& line : lines) {
        const bool isSeparator = begins(line, u"---"_s) || begins(line, u"==="_s);
        if (line.contains(u'|') && !isSeparator) {
            QString row = u"<tr>"_s;
            const QString cell = isOpen ? u"td"_s : u"th"_s;
            for (const QString& piece : line.trimmed().split(u'|')) {
                row += piece.trimmed().isEmpty() ? QString()
                                                 : u"<%1>"_s.arg(cell) + piece.trimmed() + u"</%1>"_s.arg(cell);
            }
            if (!isOpen) {
                result.append(u"<table>"_s);
            }
            result.last() += row + u"</tr>"_s;
            isOpen = true;
        } else if (!isSeparator || !isOpen) {
            if (isOpen) {
                result.last() += u"</table>"_s;
            }
            isOpen = false;
            result.append(line);
        }
    }
    if (isOpen) {
        result.last() += u"</table>"_s;
    }
    return result;
}

QStringList plainLists(const QStringList& lines) {
    QStringList result;
    bool isOpen = false;
    for (const QString& line : lines) {
        const bool isItem = begins(line, u"- "_s) || begins(line, u"* "_s);
        if (isItem) {
            if (!isOpen) {
                result.append(u"<ul>"_s);
            }
            result.last() += u"<li>"_s + line.trimmed().mid(2) + u"</li>"_s;
        } else {
            if (isOpen) {
                result.last() += u"</ul>"_s;
            }
            result.append(line);
        }
        isOpen = isItem;
    }
    if (isOpen) {
        result.last() += u"</ul>"_s;
    }
    return result;
}

QString plainLine(const QString& line, bool inPre, bool inAny) {
    const QString t = line.trimmed();
    if (t.isEmpty()) {
        return inAny ? line : u"<br>"_s;
    }
    if (begins(t, u"<"_s) || inPre) {
        return line;
    }
    for (int level = 3; level > 0; --level) {
        if (begins(t, QString(level, u'#') + u' ')) {
            return u"<h%1>"_s.arg(level) + t.mid(level + 1) + u"</h%1>"_s.arg(level);
        }
    }
    return begins(t, u"---"_s) ? u"<hr>"_s : u"<p>"_s + t + u"</p>"_s;
}

QString plainMarkdownToHTML(const QString& markdown) {
    QString text = withPairs(markdown, u"```"_s, 0, u"<pre><code>"_s, u"</code></pre>"_s);
    text = withCode(text);
    text = withPairs(text, u"***"_s, 1, u"<strong><em>"_s, u"</em></strong>"_s);
    text = withPairs(text, u"**"_s, 1, u"<strong>"_s, u"</strong>"_s);
    text = withPairs(text, u"*"_s, 1, u"<em>"_s, u"</em>"_s);
    QStringList result;
    bool inPre = false;
    bool inList = false;
    bool inTable = false;
    for (const QString& line : plainLists(plainTables(text.split(u'\n')))) {
        inPre = begins(line, u"</pre>"_s) ? false : inPre || begins(line, u"<pre>"_s);
        inList = begins(line, u"</ul>"_s) ? false : inList || begins(line, u"<ul>"_s);
        inTable = begins(line, u"</table>"_s) ? false : inTable || begins(line, u"<table>"_s);
        result.append(plainLine(line, inPre, inPre || inList || inTable));
    }
    return result.join(u'\n');
}

const QStringList kPieces{u"*"_s,
                          u"**"_s,
                          u"***"_s,
                          u"`"_s,
                          u"```"_s,
                          u"|"_s,
                          u"a|b"_s,
                          u"---"_s,
                          u"===\n"_s,
                          u"- "_s,
                          u"\n- "_s,
                          u"\n* "_s,
                          u"# "_s,
                          u"## "_s,
                          u"### "_s,
                          u"\n"_s,
                          u"\n"_s,
                          u"\n\n"_s,
                          u" "_s,
                          u"\t"_s,
                          u"\r"_s,
                          u"gig"_s,
                          u"é😀"_s,
                          u"<"_s,
                          u"\n<pre>"_s,
                          u"</pre>"_s,
                          u"\n</pre>\n"_s,
                          u"\n<ul>"_s,
                          u"</ul>"_s,
                          u"\n</ul>"_s,
                          u"<table>"_s,
                          u"\n</table>\n"_s,
                          u"\\1"_s,
                          u"$1"_s,
                          QString(QChar(0x00A0)),
                          QString(QChar(0x2028)),
                          QString(QChar(0x2003)),
                          QString(QChar(0x0085)),
                          u"\u000b"_s,
                          u"\f"_s};

QString randomMarkdown(QRandomGenerator& random) {
    QString text;
    const int pieces = random.bounded(60);
    for (int piece = 0; piece < pieces; ++piece) {
        text += kPieces.at(random.bounded(kPieces.size()));
    }
    return text;
}

} // namespace

TEST_P(MarkdownToHTML, convertsByItsRules) {
    EXPECT_EQ(markdownToHTML(GetParam().markdown), GetParam().html);
    EXPECT_EQ(plainMarkdownToHTML(GetParam().markdown), GetParam().html);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, MarkdownToHTML,
    ::testing::Values(
        Conversion{u""_s, u"<br>"_s}, //
        Conversion{u"a **bold** and an *italic* word"_s,
                   u"<p>a <strong>bold</strong> and an <em>italic</em> word</p>"_s},
        Conversion{u"***all***"_s, u"<strong><em>all</em></strong>"_s},
        Conversion{u"****"_s, u"<em>*</em>*"_s}, // the third star is the least that there can be between two
        Conversion{u"a **b\nc** d"_s, u"<p>a **b</p>\n<p>c** d</p>"_s},
        Conversion{u"run `one\ntwo` now"_s, u"<p>run <code>one</p>\n<p>two</code> now</p>"_s},
        Conversion{u"see ```x``` and ``````"_s, u"<p>see <pre><code>x</code></pre> and <pre><code></code></pre></p>"_s},
        Conversion{u"```\nx\n```"_s, u"<p>``<code></p>\n<p>x</p>\n</code>``"_s},
        Conversion{u"- one\n- two"_s, u"<ul><li>one</li><li>two</li></ul>"_s},
        Conversion{u"* one\n* two"_s, u"<ul><li>one</li><li>two</li></ul>"_s},
        Conversion{u"* one * two"_s, u"<em> one </em> two"_s}, Conversion{u"-"_s, u"<p>-</p>"_s}, //
        Conversion{u"-\u00a0"_s, u"<p>-</p>"_s}, Conversion{u"one\n\ntwo"_s, u"<p>one</p>\n<br>\n<p>two</p>"_s},
        Conversion{u"- one\n \ntwo\n\t\nthree"_s, u"<ul><li>one</li></ul>\n \n<p>two</p>\n\t\n<p>three</p>"_s},
        Conversion{u"a|b\n\ntwo\n\n</table>\n\n"_s,
                   u"<table><tr><th>a</th><th>b</th></tr></table>\n\n<p>two</p>\n\n</table>\n<br>\n<br>"_s},
        Conversion{u"<pre>\n# x\n- y\n\n</pre>\n# z"_s, u"<pre>\n# x\n<ul><li>y</li></ul>\n\n</pre>\n<h1>z</h1>"_s},
        Conversion{u" <b>as it is</b>"_s, u" <b>as it is</b>"_s},
        Conversion{u"| Name | What |\n--- | ---\nQ | it"_s,
                   u"<table><tr><th>Name</th><th>What</th></tr><tr><td>Q</td><td>it</td></tr></table>"_s},
        Conversion{u"a|b\n|---|---|\nc|d"_s, u"<table><tr><th>a</th><th>b</th></tr><tr><td>---</td><td>---</td></tr>"
                                             "<tr><td>c</td><td>d</td></tr></table>"_s},
        Conversion{u"a|b\n===\n||\nc"_s, u"<table><tr><th>a</th><th>b</th></tr><tr></tr></table>\n<p>c</p>"_s},
        Conversion{u"---"_s, u"<hr>"_s},                                              //
        Conversion{u"--- | ---"_s, u"<hr>"_s}, Conversion{u"==="_s, u"<p>===</p>"_s}, //
        Conversion{u"# one\n## two\n### three\n#### four\n#five"_s,
                   u"<h1>one</h1>\n<h2>two</h2>\n<h3>three</h3>\n<p>#### four</p>\n<p>#five</p>"_s},
        Conversion{u"\u2003# one \u00a0\r"_s, u"<h1>one</h1>"_s},
        Conversion{u"one\r\ntwo\u2028three"_s, u"<p>one</p>\n<p>two\u2028three</p>"_s},
        Conversion{u"*a\rb* *c\u2028d*"_s, u"<em>a\rb</em> <em>c\u2028d</em>"_s},
        Conversion{u"`\\1 $1`"_s, u"<code>\\1 $1</code>"_s}));

TEST(MarkdownToHTMLOfAnyText, followsTheRules) {
    constexpr int kTexts = 4'000;
    QRandomGenerator random(20261122);
    for (int number = 0; number < kTexts; ++number) {
        const QString text = randomMarkdown(random);
        ASSERT_EQ(markdownToHTML(text), plainMarkdownToHTML(text)) << "of: " << text.toStdString();
    }
}

TEST(MarkdownToHTMLOfAnyText, canBeALongOne) {
    const QString megabyte(1 << 20, u'x');
    EXPECT_EQ(markdownToHTML(u"**"_s + megabyte + u"**!"_s), u"<strong>"_s + megabyte + u"</strong>!"_s);
    EXPECT_EQ(markdownToHTML(u"`"_s + megabyte + u'`'), u"<code>"_s + megabyte + u"</code>"_s);
    EXPECT_EQ(markdownToHTML(u"```"_s + megabyte + u"*"_s), u"<p>```"_s + megabyte + u"*</p>"_s);
}

TEST(MarkdownToHTMLOfAnyText, canHoldHalfACharacter) {
    const QString half = u"**a** "_s + QChar(0xD800);
    EXPECT_EQ(markdownToHTML(half), u"<strong>a</strong> "_s + u'?');
}

} // namespace quorvane
