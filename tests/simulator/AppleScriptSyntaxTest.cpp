#include "AppleScriptFakeHost.h"

using namespace Qt::StringLiterals;

namespace macsim {

namespace {

struct SyntaxCase {
    QString source;
    int start;
    int end;
    QString message;
};

} // namespace

TEST(AppleScriptSyntax, theFirstMistakeIsReportedAtItsPlace) {
    const SyntaxCase cases[] = {
        {u"return"_s + u" \"it\\'s\""_s, 10, 11, u"Expected “\"” but found unknown token."_s},
        {u"return \"open"_s, 7, 12, u"Expected “\"” but found end of script."_s},
        {u"set x to"_s, 8, 8, u"Expected expression but found end of script."_s},
        {u"set x 5"_s, 6, 7, u"Expected “to” but found number."_s},
        {u"set end to 5"_s, 4, 7, u"Expected variable name but found “end”."_s},
        {u"set item 1 of x to 5"_s, 4, 8, u"Expected variable name but found identifier."_s},
        {u"foo bar"_s, 4, 7, u"Expected end of line, etc. but found identifier."_s},
        {u"1 \"a\""_s, 2, 5, u"Expected end of line, etc. but found “\"”."_s},
        {u"5 ^ 2"_s, 2, 3, u"Expected end of line, etc. but found unknown token."_s},
        {u"(1 + 2"_s, 6, 6, u"Expected “)” but found end of script."_s},
        {u"{1, 2\nreturn 1"_s, 5, 6, u"Expected “}” but found end of line."_s},
        {u"{a:1, 2}"_s, 6, 7, u"Expected property but found number."_s},
        {u"1 = 1 = true"_s, 6, 7, u"Expected end of line, etc. but found “=”."_s},
        {u"5 as file"_s, 5, 9, u"Expected class name but found identifier."_s},
        {u"if true\nend if"_s, 7, 8, u"Expected “then” but found end of line."_s},
        {u"if true then\nreturn 1"_s, 21, 21, u"Expected “end” but found end of script."_s},
        {u"if true then\nend repeat"_s, 17, 23, u"Expected “if” but found “repeat”."_s},
        {u"if true then return 1 else return 2"_s, 22, 26, u"Expected end of line, etc. but found “else”."_s},
        {u"exit repeat"_s, 11, 11, u"Expected “repeat” around “exit repeat” but found end of script."_s},
        {u"every login item"_s, 6, 11, u"Expected class name but found identifier."_s},
        {u"end tell"_s, 0, 3, u"Expected expression but found “end”."_s},
        {u"«event sysoexec»"_s, 0, 1, u"Expected expression but found unknown token."_s},
    };
    for (const SyntaxCase& each : cases) {
        const ScriptError expected{-2741, each.message, each.start, each.end, true};
        EXPECT_EQ(errorOf(each.source), expected) << each.source.toStdString();
    }
}

TEST(AppleScriptSyntax, aMistakeAtTheEndRunsNothingOfTheBeginning) {
    FakeScriptHost host;
    const ScriptError error = errorOf(u"do shell script \"rm -rf /\"\nset x to \"a\\'b\""_s, host);
    EXPECT_EQ(error.number, -2741);
    EXPECT_TRUE(error.isSyntaxError);
    EXPECT_TRUE(host.requests.empty());
}

TEST(AppleScriptSyntax, aMistakeBeforeABrokenLiteralIsTheOneReported) {
    EXPECT_EQ(errorOf(u"foo bar\nset x to \"a\\'b\""_s).start, 4);
}

TEST(AppleScriptSyntax, whatIsNotImplementedDoesNotCompile) {
    const QString sources[] = {
        u"on foo()\nend foo"_s,
        u"script s\nend script"_s,
        u"use framework \"Foundation\""_s,
        u"property x : 5"_s,
        u"global x"_s,
        u"considering case\nend considering"_s,
        u"ignoring case\nend ignoring"_s,
        u"with transaction\nend transaction"_s,
        u"display dialog \"x\""_s,
        u"set {a, b} to {1, 2}"_s,
        u"x's name"_s,
        u"set end of x to 1"_s,
        u"foo()"_s,
        u"tell application id \"com.apple.finder\" to return 1"_s,
        u"tell application \"System Events\" to get the name of every login item"_s,
        u"tell application \"System Events\" to delete login item \"X\""_s,
        u"tell application \"System Events\"\nmake login item at end\nend tell"_s,
        u"do shell script \"a\" with administrator"_s,
        u"do shell script \"a\" with prompt \"x\" with prompt \"y\""_s,
        u"do shell script \"a\" with administrator privileges without administrator privileges"_s,
        u"do shell script"_s,
    };
    for (const QString& source : sources) {
        EXPECT_EQ(errorOf(source).number, -2741) << source.toStdString();
    }
}

TEST(AppleScriptSyntax, nestingHasALimitAndNoOverflow) {
    EXPECT_EQ(valueOf(QString(97, u'(') + u'1' + QString(97, u')')), "1");
    const QString tooDeep[] = {
        QString(20000, u'('),
        QString(20000, u'{'),
        QString(u"not "_s).repeated(20000),
        QString(u"- "_s).repeated(20000),
        QString(u"length of "_s).repeated(20000),
        QString(u"count "_s).repeated(20000),
        QString(u"item 1 of "_s).repeated(20000),
        QString(u"if true then "_s).repeated(20000),
        QString(u"tell me to "_s).repeated(20000),
        QString(u"repeat\n"_s).repeated(20000),
        QString(u"do shell script "_s).repeated(20000),
        QString(u"(*"_s).repeated(20000),
    };
    for (const QString& source : tooDeep) {
        EXPECT_EQ(errorOf(source).number, -2741) << source.first(20).toStdString();
    }
    EXPECT_EQ(errorOf(QString(20000, u'(')).message, u"The script is nested too deeply."_s);
}

TEST(AppleScriptSyntax, aLongScriptIsNotADeepOne) {
    EXPECT_EQ(valueOf(u"1"_s + u" + 1"_s.repeated(20000)), "20001");
    EXPECT_EQ(valueOf(u"1"_s + u" as text as integer"_s.repeated(20000)), "1");
    const QString manyBranches =
        u"if false then\n"_s + u"else if false then\n"_s.repeated(20000) + u"else\nreturn 3\nend if"_s;
    EXPECT_EQ(valueOf(manyBranches), "3");
    FakeScriptHost host;
    EXPECT_EQ(resultOf(u"count of (\"a\""_s + u" & \"a\""_s.repeated(19999) + u')', host).text, u"20000"_s);
}

} // namespace macsim
