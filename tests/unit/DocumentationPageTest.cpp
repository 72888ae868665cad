#include "documentation/DocumentationPage.h"

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

QString bodyOf(const QString& page) {
    return page.mid(page.indexOf(u"<body>"));
}

} // namespace

TEST(DocumentationPage, isAHeaderTheManualARuleAndTheCopyright) {
    EXPECT_EQ(documentationPage({u"# Manual\nText"_s, u"By us"_s, "logo"}, u"<title>Q</title>"_s),
              u"<!DOCTYPE html>\n<html>\n<head>\n<title>Q</title>\n</head>\n<body>\n<div class=\"doc-header\">\n"
              "<img src=\"data:image/png;base64,bG9nbw==\" alt=\"Quorvane\">\n<h1>Quorvane Documentation</h1>\n</div>\n"
              "<h1>Manual</h1>\n<p>Text</p>\n<br>\n<hr>\n<br>\n<p>By us</p>\n</body>\n</html>"_s);
}

TEST(DocumentationPage, isEmptierWithoutWhatCannotBeRead) {
    EXPECT_EQ(bodyOf(documentationPage({}, {})),
              u"<body>\n<div class=\"doc-header\">\n<img src=\"data:image/png;base64,\" alt=\"Quorvane\">\n"
              "<h1>Quorvane Documentation</h1>\n</div>\n<br>\n<br>\n<hr>\n<br>\n<br>\n</body>\n</html>"_s);
}

TEST(DocumentationPage, hasAHeadForAWebViewThatFetchesAndRunsNothing) {
    const QString head = webViewHead();
    EXPECT_TRUE(head.contains(u"default-src 'none'; img-src data:; style-src 'unsafe-inline'"));
    EXPECT_FALSE(head.contains(u"script"));
    EXPECT_FALSE(head.contains(u"url("));
    EXPECT_FALSE(head.contains(u"@import"));
    EXPECT_FALSE(head.contains(u"http:"));
    EXPECT_FALSE(head.contains(u"https:"));
    for (const QString& rule : {u"color-scheme: light dark;"_s,
                                u"--text-primary: text;"_s,
                                u"--text-secondary: secondary-label;"_s,
                                u"--background: window-background;"_s,
                                u"--card-background: control-background;"_s,
                                u"--separator: separator;"_s,
                                u"--link: link-color;"_s,
                                u"--code-background: control-background;"_s,
                                u"--header-border: separator;"_s,
                                u"--table-border: separator;"_s,
                                u"--table-header: control-background;"_s,
                                u"--scrollbar-thumb: tertiary-label;"_s,
                                u"font-size: 14px;"_s,
                                u"line-height: 1.6;"_s,
                                u"padding: 24px 32px;"_s,
                                u"gap: 12px;"_s,
                                u"width: 32px; height: 32px;"_s,
                                u"h1 { font-size: 28px;"_s,
                                u"h2 { font-size: 22px;"_s,
                                u"border-bottom: 1px"_s,
                                u"h3 { font-size: 16px;"_s,
                                u"border-collapse: collapse; width: 100%;"_s,
                                u"'SF Mono', Menlo"_s,
                                u"font-size: 13px;"_s,
                                u"::-webkit-scrollbar { width: 8px; }"_s}) {
        EXPECT_TRUE(head.contains(rule)) << rule.toStdString();
    }
}

} // namespace quorvane
