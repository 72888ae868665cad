#include "simulator/tools/Env.h"

#include "ToolRun.h"
#include "simulator/tools/Echo.h"
#include "simulator/tools/True.h"

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

class Env : public testing::Test {
protected:
    Env()
        : mac({{u"/usr/bin/env"_s, runEnv}, {u"/bin/echo"_s, runEcho}, {u"/usr/bin/false"_s, runFalse}}) {}

    ToolRun run(const QStringList& words) { return runTool(mac, runEnv, QStringList{u"env"_s} + words); }

    SimulatedMacFolder mac;
};

} // namespace

TEST_F(Env, runsACommandByNameOrPath) {
    EXPECT_EQ(run({u"echo"_s, u"-n"_s, u"a b"_s}), (ToolRun{0, "a b", {}}));
    EXPECT_EQ(run({u"/bin/echo"_s, u"x"_s}), (ToolRun{0, "x\n", {}}));
    EXPECT_EQ(run({u"false"_s}).status, 1);
}

TEST_F(Env, aMissingCommandIs127AndAnUnusableOne126) {
    EXPECT_EQ(run({u"no-such-tool"_s}), (ToolRun{127, {}, "env: no-such-tool: No such file or directory\n"}));
    EXPECT_EQ(run({u"/usr/bin/no"_s}), (ToolRun{127, {}, "env: /usr/bin/no: No such file or directory\n"}));
    putFile(mac, u"/Users/alex/script"_s, "#!/bin/sh\n");
    EXPECT_EQ(run({u"./script"_s}), (ToolRun{126, {}, "env: ./script: Permission denied\n"}));
    EXPECT_EQ(run({u"/Applications"_s}).status, 126);
}

TEST_F(Env, changesTheEnvironmentOfTheCommand) {
    EXPECT_EQ(run({u"-i"_s, u"B=2"_s, u"A=1=1"_s}), (ToolRun{0, "A=1=1\nB=2\n", {}}));
    EXPECT_EQ(run({u"-u"_s, u"PATH"_s, u"-uUSER"_s}), (ToolRun{0, "HOME=/Users/alex\n", {}}));
    EXPECT_EQ(run({u"-"_s, u"A=1"_s, u"env"_s}), (ToolRun{0, "A=1\n", {}}));
    EXPECT_EQ(run({u"PATH=/nowhere"_s, u"echo"_s}).status, 127);
}

TEST_F(Env, otherOptionsAreRefused) {
    const ToolRun illegal = run({u"-x"_s, u"echo"_s});
    EXPECT_EQ(illegal.status, 1);
    EXPECT_TRUE(illegal.error.startsWith("env: illegal option -- x\nusage: env "));
    EXPECT_EQ(run({u"-S"_s, u"echo a"_s}), (ToolRun{70, {}, "env: -S: not simulated\n"}));
}

} // namespace macsim
