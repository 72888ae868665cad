#include "core/Quoting.h"

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

TEST(Quoting, appleScriptTextDoublesBackslashesThenEscapesQuotes) {
    EXPECT_EQ(appleScriptText(u"plain"_s), u"plain"_s);
    EXPECT_EQ(appleScriptText(uR"(a"b)"_s), uR"(a\"b)"_s);
    EXPECT_EQ(appleScriptText(uR"(a\b)"_s), uR"(a\\b)"_s);
    EXPECT_EQ(appleScriptText(uR"(a\"b)"_s), uR"(a\\\"b)"_s);
    EXPECT_EQ(appleScriptText(uR"('\'')"_s), uR"('\\'')"_s);
}

TEST(Quoting, shellQuotedHoldsAnyText) {
    EXPECT_EQ(shellQuoted(QString()), u"''"_s);
    EXPECT_EQ(shellQuoted(u"a b"_s), u"'a b'"_s);
    EXPECT_EQ(shellQuoted(u"Bob's"_s), uR"('Bob'\''s')"_s);
    EXPECT_EQ(shellQuoted(u"$(x) `y` \\ \" \n"_s), u"'$(x) `y` \\ \" \n'"_s);
}

TEST(Quoting, longTextsAreQuotedWhole) {
    constexpr qsizetype kMany = 100'000;
    EXPECT_EQ(appleScriptText(QString(kMany, u'"')), uR"(\")"_s.repeated(kMany));
    EXPECT_EQ(appleScriptText(QString(kMany, u'\\')), uR"(\\)"_s.repeated(kMany));
    EXPECT_EQ(shellQuoted(QString(kMany, u'\'')), u'\'' + uR"('\'')"_s.repeated(kMany) + u'\'');
}

TEST(Quoting, aShellWordStandsBareOnlyWhenItCanMeanNothingElse) {
    for (const QString& bare : {u"0"_s, u"com.apple.x_y-z"_s, u"A9"_s, u"."_s, u"_-"_s}) {
        EXPECT_EQ(shellWord(bare), bare);
    }
    for (const QString& quoted :
         {u""_s, u"-x"_s, u"a b"_s, u"a;b"_s, u"a/b"_s, u"~"_s, u"*"_s, u"$x"_s, u"é"_s, u"a\n"_s}) {
        EXPECT_EQ(shellWord(quoted), u'\'' + quoted + u'\'');
    }
    EXPECT_EQ(shellWord(u"it's"_s), uR"('it'\''s')"_s);
}

} // namespace quorvane
