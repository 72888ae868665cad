#include "AppleScriptFakeHost.h"

#include "simulator/applescript/Lexer.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace macsim {

namespace {

using applescript::Token;

// One line per token: its kind as a letter, and its text.
std::string tokensIn(const QString& source) {
    static constexpr QStringView kLetters = u"wbtirs;.?!";
    QStringList tokens;
    for (const Token& token : applescript::tokensOf(source)) {
        tokens.append(kLetters.at(static_cast<int>(token.kind)) + token.text);
    }
    return tokens.join(u' ').toStdString();
}

struct TokenCase {
    QString source;
    const char* tokens;
};

} // namespace

TEST(AppleScriptLexer, splitsASourceIntoTokens) {
    const TokenCase cases[] = {
        {u""_s, "."},
        {u"set x to 5"_s, "wset wx wto i5 ."},
        {u"|any name| + 1.5"_s, "bany name s+ r1.5 ."},
        {u"1.5E+3 2e5 .5"_s, "r1.5E+3 r2e5 r.5 ."},
        {u"2x"_s, "i2 wx ."},
        {u"a<=b≥c/=d"_s, "wa s<= wb s≥ wc s/= wd ."},
        {u"{a:1, b:\"x\"}"_s, "s{ wa s: i1 s, wb s: tx s} ."},
        {u"a -- b \"c\nd"_s, "wa ; wd ."},
        {u"# a\nb"_s, "; wb ."},
        {u"a (* b (* c *) \" *) d"_s, "wa wd ."},
        {u"a ¬ \t\nb"_s, "wa wb ."},
        {u"a ¬\r\nb"_s, "wa wb ."},
        {u"a ¬ b"_s, "wa ? wb ."},
        {u"5 ^ 2 'x'"_s, "i5 ?^ i2 ?' wx ?' ."},
        {u"a\rb\nc\r\nd"_s, "wa ; wb ; wc ; wd ."},
    };
    for (const TokenCase& each : cases) {
        EXPECT_EQ(tokensIn(each.source), each.tokens) << each.source.toStdString();
    }
}

TEST(AppleScriptLexer, knowsFiveEscapesInATextLiteral) {
    EXPECT_EQ(tokensIn(uR"("a\\b" "a\"b" "a\nb" "a\rb" "a\tb")"_s), "ta\\b ta\"b ta\nb ta\rb ta\tb .");
}

TEST(AppleScriptLexer, aLineEndInsideATextLiteralBelongsToIt) {
    EXPECT_EQ(tokensIn(u"\"a\nb\r\nc -- d ¬\n\""_s), "ta\nb\r\nc -- d ¬\n .");
}

TEST(AppleScriptLexer, theSourceEndsAtABrokenLiteral) {
    EXPECT_EQ(tokensIn(uR"(a "b\'c" d)"_s), "wa !Expected “\"” but found unknown token. .");
    EXPECT_EQ(tokensIn(uR"(a "b)"_s), "wa !Expected “\"” but found end of script. .");
    EXPECT_EQ(tokensIn(uR"("b\)"_s), "!Expected “\"” but found unknown token. .");
    EXPECT_EQ(tokensIn(u"(* (* *)"_s), "!Expected “*)” but found end of script. .");
    EXPECT_EQ(tokensIn(u"|a\nb|"_s), "!Expected “|” but found end of line. .");
}

TEST(AppleScriptLexer, aTokenKnowsItsPlace) {
    const QList<Token> tokens = applescript::tokensOf(u"ab \"c\\\"\"\n12"_s);
    ASSERT_EQ(tokens.size(), 5);
    EXPECT_EQ(tokens.at(1).range.start, 3);
    EXPECT_EQ(tokens.at(1).range.end, 8);
    EXPECT_EQ(tokens.at(3).range.start, 9);
    EXPECT_EQ(tokens.at(3).range.end, 11);
    EXPECT_EQ(tokens.at(4).range.start, 11);
}

} // namespace macsim
