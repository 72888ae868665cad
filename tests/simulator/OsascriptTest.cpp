#include "simulator/tools/Osascript.h"

#include "simulator/ToolRun.h"
#include "simulator/tools/Echo.h"
#include "simulator/tools/Touch.h"

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

class OsascriptTest : public ::testing::Test {
protected:
    ToolRun run(const QStringList& arguments) {
        return runTool(folder, runOsascript, QStringList{u"osascript"_s} + arguments);
    }
    ToolRun script(const QString& source) { return run({u"-e"_s, source}); }

    SimulatedMacFolder folder{{{u"/bin/echo"_s, runEcho}, {u"/usr/bin/touch"_s, runTouch}}};
};

} // namespace

TEST_F(OsascriptTest, printsTheResultAndALineEnd) {
    EXPECT_EQ(script(u"return \"a\" & 1"_s), (ToolRun{0, "a1\n", ""}));
    EXPECT_EQ(script(u"return \"\""_s), (ToolRun{0, "\n", ""}));
    EXPECT_EQ(script(u"return {1, \"b\"}"_s), (ToolRun{0, "1, b\n", ""}));
    EXPECT_EQ(run({u"-s"_s, u"s"_s, u"-e"_s, u"return {1, \"b\"}"_s}), (ToolRun{0, "{1, \"b\"}\n", ""}));
}

TEST_F(OsascriptTest, severalLinesAreOneScript) {
    EXPECT_EQ(run({u"-e"_s, u"set x to 2"_s, u"-e"_s, u"return x * 3"_s}), (ToolRun{0, "6\n", ""}));
}

TEST_F(OsascriptTest, aScriptMayComeFromAFile) {
    folder.mac.volume(Actor::User).write(u"/Users/alex/s.applescript"_s, "return 5");
    EXPECT_EQ(run({u"s.applescript"_s}), (ToolRun{0, "5\n", ""}));
}

TEST_F(OsascriptTest, aScriptFromTheInputIsTakenFromIt) {
    for (const QStringList& arguments : {QStringList{u"osascript"_s}, QStringList{u"osascript"_s, u"-"_s}}) {
        ToolContext context = folder.context(arguments);
        context.input = "return 5";
        EXPECT_EQ(runOsascript(context), 0) << context.error.toStdString();
        EXPECT_EQ(context.output, "5\n");
        EXPECT_EQ(context.input, "");
    }
}

TEST_F(OsascriptTest, aProbeOfSystemEventsGivesItsValue) {
    EXPECT_EQ(script(u"tell application \"System Events\" to return 0"_s), (ToolRun{0, "0\n", ""}));
}

TEST_F(OsascriptTest, errorsGoToTheErrorStreamWithTheirNumber) {
    const ToolRun failed = script(u"error \"no\" number 12"_s);
    EXPECT_EQ(failed.status, 1);
    EXPECT_TRUE(failed.error.endsWith(": execution error: no (12)\n")) << failed.error.toStdString();
    const ToolRun syntax = script(u"return \"a\\'b\""_s);
    EXPECT_EQ(syntax.status, 1);
    EXPECT_TRUE(syntax.error.contains(": syntax error: ")) << syntax.error.toStdString();
    EXPECT_TRUE(syntax.error.endsWith("(-2741)\n")) << syntax.error.toStdString();
}

TEST_F(OsascriptTest, aShellScriptRunsAsTheUserWithoutAPrompt) {
    EXPECT_EQ(script(u"do shell script \"echo hi\""_s), (ToolRun{0, "hi\n", ""}));
    EXPECT_TRUE(folder.authorizer.prompts.isEmpty());
    EXPECT_EQ(script(u"do shell script \"touch /Library/x\""_s).status, 1);
}

TEST_F(OsascriptTest, administratorPrivilegesAreAskedForAndGiveRoot) {
    const QString source =
        u"do shell script \"touch /Library/x\" with prompt \"Please.\" with administrator privileges"_s;
    folder.authorizer.answer = Authorization::Cancel;
    const ToolRun cancelled = script(source);
    EXPECT_EQ(cancelled.status, 1);
    EXPECT_TRUE(cancelled.error.endsWith("User canceled. (-128)\n")) << cancelled.error.toStdString();
    EXPECT_FALSE(folder.mac.volume(Actor::Root).exists(u"/Library/x"_s));
    folder.authorizer.answer = Authorization::Allow;
    EXPECT_EQ(script(source).status, 0);
    EXPECT_TRUE(folder.mac.volume(Actor::Root).exists(u"/Library/x"_s));
    EXPECT_EQ(folder.authorizer.prompts, QStringList({u"Please."_s, u"Please."_s}));
}

TEST_F(OsascriptTest, whatItDoesNotKnowIsRefused) {
    for (const QStringList& arguments : {QStringList{u"-l"_s, u"JavaScript"_s, u"-e"_s, u"1"_s}, QStringList{u"-e"_s},
                                         QStringList{u"-x"_s}, QStringList{u"-e"_s, u"1"_s, u"argument"_s}}) {
        EXPECT_EQ(run(arguments).status, 2) << arguments.join(u' ').toStdString();
    }
}

} // namespace macsim
