#include "AppleScriptFakeHost.h"

using namespace Qt::StringLiterals;

namespace macsim {

TEST(AppleScriptShellScript, anAdministratorLineReachesTheHostAsItWasMeant) {
    FakeScriptHost host;
    resultOf(uR"(do shell script "pmset -a standby 0 ; rm -rf \"/x\"" with prompt )"
             uR"("Quorvane needs your administrator password to apply Live." with administrator privileges)"_s,
             host);
    ASSERT_EQ(host.requests.size(), 1U);
    EXPECT_EQ(host.requests[0].line, uR"(pmset -a standby 0 ; rm -rf "/x")"_s);
    EXPECT_TRUE(host.requests[0].withAdministratorPrivileges);
    EXPECT_EQ(host.requests[0].prompt, u"Quorvane needs your administrator password to apply Live."_s);
}

TEST(AppleScriptShellScript, aPlainLineAsksForNothing) {
    FakeScriptHost host;
    resultOf(u"do shell script \"id\""_s, host);
    ASSERT_EQ(host.requests.size(), 1U);
    EXPECT_EQ(host.requests[0].line, u"id"_s);
    EXPECT_FALSE(host.requests[0].withAdministratorPrivileges);
    EXPECT_EQ(host.requests[0].prompt, std::nullopt);
    EXPECT_EQ(host.requests[0].userName, std::nullopt);
    EXPECT_EQ(host.requests[0].password, std::nullopt);
}

TEST(AppleScriptShellScript, parametersComeInAnyOrder) {
    FakeScriptHost host;
    host.outcome.output = "a\nb\n";
    const QString orders[] = {
        u"with administrator privileges without altering line endings with prompt p user name \"n\" password \"w\""_s,
        u"password \"w\" user name \"n\" with prompt p without altering line endings with administrator privileges"_s,
    };
    for (const QString& parameters : orders) {
        const QString script = u"set p to \"why\"\ndo shell script \"x\" & \"y\" "_s + parameters;
        EXPECT_EQ(resultOf(script, host).text, u"a\nb\n"_s);
        EXPECT_EQ(host.requests.back().line, u"xy"_s);
        EXPECT_TRUE(host.requests.back().withAdministratorPrivileges);
        EXPECT_EQ(host.requests.back().prompt, u"why"_s);
        EXPECT_EQ(host.requests.back().userName, u"n"_s);
        EXPECT_EQ(host.requests.back().password, u"w"_s);
    }
    resultOf(u"do shell script \"x\" without administrator privileges with altering line endings"_s, host);
    EXPECT_FALSE(host.requests.back().withAdministratorPrivileges);
}

TEST(AppleScriptShellScript, aShellQuoteNeedsItsBackslashDoubled) {
    FakeScriptHost host;
    const QString undoubled = uR"(do shell script "echo 'it'\''s'" with administrator privileges)"_s;
    EXPECT_EQ(errorOf(undoubled, host),
              (ScriptError{-2741, u"Expected “\"” but found unknown token."_s, 26, 27, true}));
    EXPECT_TRUE(host.requests.empty());

    resultOf(uR"(do shell script "echo 'it'\\''s'")"_s, host);
    ASSERT_EQ(host.requests.size(), 1U);
    EXPECT_EQ(host.requests[0].line, uR"(echo 'it'\''s')"_s);
}

TEST(AppleScriptShellScript, aQuoteThatBreaksOutOfItsLiteralBecomesScript) {
    FakeScriptHost host;
    const QString hostileName = uR"(x" & (do shell script "id") & ")"_s;
    resultOf(u"do shell script \"echo "_s + hostileName + u"\""_s, host);
    ASSERT_EQ(host.requests.size(), 2U);
    EXPECT_EQ(host.requests[0].line, u"id"_s);
    EXPECT_EQ(host.requests[1].line, u"echo x"_s);
}

TEST(AppleScriptShellScript, lineEndingsOfTheOutputAreAltered) {
    FakeScriptHost host;
    host.outcome.output = "AAA\nBBB\r\nCCC\n\n";
    EXPECT_EQ(resultOf(u"do shell script \"x\""_s, host).text, u"AAA\rBBB\rCCC\r"_s);
    EXPECT_EQ(resultOf(u"do shell script \"x\" without altering line endings"_s, host).text, u"AAA\nBBB\r\nCCC\n\n"_s);
}

TEST(AppleScriptShellScript, aSilentLineGivesAnEmptyText) {
    FakeScriptHost host;
    host.outcome.errors = "only a warning";
    EXPECT_EQ(resultOf(u"do shell script \"true\""_s, host), (ScriptResult{true, u""_s, u"\"\""_s}));
}

TEST(AppleScriptShellScript, outputIsUtf8) {
    FakeScriptHost host;
    host.outcome.output = "Café — ok\n";
    EXPECT_EQ(resultOf(u"do shell script \"x\""_s, host).text, u"Café — ok"_s);
}

TEST(AppleScriptShellScript, aStatusIsAnErrorWithTheWordsOfTheLine) {
    FakeScriptHost host;
    host.outcome = {127, "lost", "sh: foo: command not found\n"};
    EXPECT_EQ(errorOf(u"do shell script \"foo\""_s, host),
              (ScriptError{127, u"sh: foo: command not found"_s, 0, 21, false}));
    host.outcome = {1, "said on output\nmore\n", ""};
    EXPECT_EQ(errorOf(u"do shell script \"foo\""_s, host).message, u"said on output\rmore"_s);
    host.outcome = {3, "", ""};
    EXPECT_EQ(errorOf(u"do shell script \"foo\""_s, host).message, u"The command exited with a non-zero status."_s);
}

TEST(AppleScriptShellScript, aRefusalOfTheHostCanBeCaught) {
    FakeScriptHost host;
    host.refusal = ScriptError{-128, u"User canceled."_s};
    const QString command = u"do shell script \"id\" with administrator privileges"_s;
    EXPECT_EQ(errorOf(command, host), (ScriptError{-128, u"User canceled."_s, 0, 50, false}));
    EXPECT_EQ(resultOf(u"try\n"_s + command + u"\non error m number n\nreturn {n, m}\nend try"_s, host).text,
              u"-128, User canceled."_s);
}

TEST(AppleScriptShellScript, privilegesAreTheScriptsOwnAndNoApplications) {
    FakeScriptHost host;
    const QString command = u"do shell script \"id\" with administrator privileges"_s;
    const ScriptError error = errorOf(u"tell application \"System Events\" to "_s + command, host);
    EXPECT_EQ(error.number, -10004);
    EXPECT_EQ(error.message, u"A privilege violation occurred."_s);
    EXPECT_TRUE(host.requests.empty());

    resultOf(u"tell application \"System Events\" to tell me to "_s + command, host);
    resultOf(u"tell application \"System Events\" to do shell script \"id\""_s, host);
    EXPECT_EQ(host.requests.size(), 2U);
}

TEST(AppleScriptShellScript, aLineMayBeOnlySoLong) {
    FakeScriptHost host;
    resultOf(u"do shell script \""_s + QString(262000, u'a') + u'"', host);
    EXPECT_EQ(host.requests.size(), 1U);
    EXPECT_EQ(errorOf(u"do shell script \""_s + QString(262001, u'a') + u'"', host).number, 255);
    EXPECT_EQ(host.requests.size(), 1U);
}

TEST(AppleScriptShellScript, aLineThatIsNoTextIsNotRun) {
    FakeScriptHost host;
    EXPECT_EQ(errorOf(u"do shell script {a:1}"_s, host).number, -1700);
    EXPECT_EQ(errorOf(u"do shell script \"id\" with prompt {a:1}"_s, host).number, -1700);
    EXPECT_TRUE(host.requests.empty());
}

} // namespace macsim
