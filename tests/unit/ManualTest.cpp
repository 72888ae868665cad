// The manual and the copyright as they ship: what the converter makes of them is whole, and says what it must.

#include "documentation/DocumentationPage.h"
#include "documentation/MarkdownToHTML.h"
#include "tweaks/TweakCatalogue.h"

#include <QFile>
#include <QRegularExpression>

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

QString resourceText(const QString& name) {
    QFile file(QStringLiteral(QUORVANE_SOURCE_DIR "/src/documentation/") + name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
    return QString::fromUtf8(file.readAll());
}

/// As a reader sees it.
QString withoutTags(QString html) {
    static const QRegularExpression tag(u"<[^>]*>"_s);
    return html.replace(tag, u" "_s).replace(u"&amp;"_s, u"&"_s);
}

/// What is opened and not closed, or closed and not opened; empty when all is well.
QStringList unbalancedTags(const QString& html) {
    static const QRegularExpression tag(u"<(/?)([a-z0-9]+)[^>]*>"_s);
    QStringList open;
    QStringList faults;
    for (auto tags = tag.globalMatch(html); tags.hasNext();) {
        const QRegularExpressionMatch match = tags.next();
        const QString name = match.captured(2);
        if (name == u"br" || name == u"hr") {
            continue;
        }
        if (match.captured(1).isEmpty()) {
            open.append(name);
        } else if (open.isEmpty() || open.takeLast() != name) {
            faults.append(match.captured(0) + u" at "_s + QString::number(match.capturedStart()));
        }
    }
    return faults + open;
}

class Manual : public ::testing::TestWithParam<QString> {
protected:
    const QString html = markdownToHTML(resourceText(GetParam()));
};

} // namespace

TEST_P(Manual, holdsNothingThatTheRulesSpoil) {
    const QString text = withoutTags(html);
    for (const QString& left : {u"*"_s, u"|"_s, u"`"_s, u"<"_s, u">"_s, u"#"_s, u"---"_s, u"==="_s}) {
        EXPECT_FALSE(text.contains(left))
            << left.toStdString() << " at " << text.mid(text.indexOf(left) - 40, 80).toStdString();
    }
    EXPECT_EQ(unbalancedTags(html), QStringList());
    EXPECT_FALSE(html.contains(u"<pre>")) << "from there on nothing would be converted";
}

TEST_P(Manual, isMadeOfParagraphsHeadingsListsAndTables) {
    static const QRegularExpression block(
        u"^(<(p|h1|h2|h3)>.*</\\2>|<ul>(<li>.+</li>)+</ul>|<table>.*</table>|<hr>|<br>|)$"_s);
    for (const QString& line : html.split(u'\n')) {
        EXPECT_TRUE(block.match(line).hasMatch()) << line.toStdString();
        EXPECT_FALSE(line.startsWith(u"<p>- ")) << line.toStdString();
        EXPECT_FALSE(line.startsWith(u"<p>* ")) << line.toStdString();
    }
}

TEST_P(Manual, hasTablesWithAsManyCellsInEachRow) {
    int tables = 0;
    for (const QString& line : html.split(u'\n')) {
        if (!line.startsWith(u"<table>")) {
            continue;
        }
        ++tables;
        const QStringList rows = line.split(u"</tr>"_s).mid(0, line.count(u"</tr>"_s));
        EXPECT_GE(rows.size(), 2) << line.toStdString();
        for (const QString& row : rows) {
            EXPECT_EQ(row.count(u"</td>"_s) + row.count(u"</th>"_s), rows.first().count(u"</th>"_s))
                << row.toStdString();
        }
    }
    EXPECT_GE(tables, 1);
}

INSTANTIATE_TEST_SUITE_P(Resources, Manual, ::testing::Values(u"DOCUMENTATION.md"_s, u"COPYRIGHT.md"_s));

TEST(ManualForPerformers, explainsEveryTweak) {
    const QString text = withoutTags(markdownToHTML(resourceText(u"DOCUMENTATION.md"_s)));
    for (const Tweak& tweak : tweakCatalogue()) {
        EXPECT_TRUE(text.contains(tweak.title)) << tweak.title.toStdString();
    }
}

TEST(ManualForPerformers, leadsFromTheBaselineToTheWayBackAndToAForgottenPassword) {
    const QString text = withoutTags(markdownToHTML(resourceText(u"DOCUMENTATION.md"_s)));
    qsizetype at = 0;
    for (const QString& step :
         {u"Create Master Baseline"_s, u"Create Custom Profile"_s, u"Apply Profile"_s,
          u"Verify Current System Settings"_s, u"Undo Performance Tweaks"_s, u"Reinstate System"_s,
          u"What happens at login"_s, u"What the lock doesn't protect"_s, u"It encrypts nothing"_s,
          u"When you forgot the password"_s, u"defaults delete com.quorvane.app QuorvaneAppLockEnabled"_s,
          u"Full Disk Access"_s, u"Troubleshooting"_s}) {
        const qsizetype next = text.indexOf(step, at);
        EXPECT_GE(next, at) << step.toStdString();
        at = std::max(at, next);
    }
}

} // namespace quorvane
