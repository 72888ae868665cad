#include "simulator/ShellBench.h"

#include <gtest/gtest.h>

using namespace macsim;
using namespace Qt::StringLiterals;

namespace {

struct Ran {
    const char* line;
    const char* noted; ///< what ran, in order
    int status;
};

class ShellOrder : public testing::TestWithParam<Ran> {};

TEST_P(ShellOrder, andStatusFollowTheOperators) {
    static ShellBench bench; // no line of the table changes it
    const ShellOutcome outcome = bench.run(QString::fromUtf8(GetParam().line));
    EXPECT_EQ(ShellBench::noted().join(u' '), QString::fromUtf8(GetParam().noted)) << GetParam().line;
    EXPECT_EQ(outcome.status, GetParam().status) << GetParam().line;
}

INSTANTIATE_TEST_SUITE_P(
    Table, ShellOrder,
    testing::Values(Ran{"", "", 0}, Ran{"note a; note b\nnote c", "a b c", 0}, Ran{"note a && note b", "a b", 0},
                    Ran{"false && note b", "", 1}, Ran{"give 7 && note b; note c", "c", 0}, Ran{"give 7", "", 7},
                    Ran{"note a; give 7", "a", 7}, Ran{"false || note b", "b", 0}, Ran{"note a || note b", "a", 0},
                    Ran{"false && note a || note b && note c", "b c", 0}, Ran{"true || note a && note b", "b", 0},
                    Ran{"! true", "", 1}, Ran{"! give 9", "", 0}, Ran{"! false && note a", "a", 0},
                    Ran{"give 3 | true", "", 0}, Ran{"true | give 3", "", 3}, Ran{"! true | give 3", "", 0},
                    Ran{"note a | note b | note c", "a b c", 0}, Ran{"give 5 &", "", 0}, Ran{"give 5 & note a", "a", 0},
                    Ran{"note a & note b", "a b", 0}, Ran{"exit 4 & note a", "a", 0}, Ran{"false & note $?", "0", 0},
                    Ran{"give 3; note $?; note $?", "3 0", 0}, Ran{"note a; exit 4; note b", "a", 4},
                    Ran{"(exit 4); note $?", "4", 0}, Ran{"{ exit 4; }; note b", "", 4},
                    Ran{"exit 4 | note a; note $?", "a 0", 0}, Ran{"true | exit 4; note $?", "4", 0},
                    Ran{"note $(exit 4)x$?; note b", "x4 b", 0}, Ran{"false; exit", "", 1}, Ran{"exit 256", "", 0},
                    Ran{"exit -1", "", 255}, Ran{"(give 6)", "", 6}, Ran{"{ give 6; }", "", 6},
                    Ran{"(note a; note b) && note c", "a b c", 0}, Ran{"false; (note $?); { note $?; }", "1 0", 0},
                    Ran{"A=$(give 4)", "", 4}, Ran{"give 4; A=b", "", 0}, Ran{"$(give 4)", "", 4},
                    Ran{"$NONE; note $?", "0", 0}, Ran{"false; $NONE", "", 0}, Ran{"A=$(give 4) true", "", 0},
                    Ran{"give 3; note $(note $?; note b)", "3 b ", 0}, Ran{"none; note $?", "127", 0},
                    Ran{"false || false || note a", "a", 0}, Ran{"note a &&\nnote b\n", "a b", 0}));

TEST(ShellList, aSubshellKeepsItsChangesToItself) {
    ShellBench bench;
    EXPECT_EQ(bench.run(u"A=1; (A=2; USER=b; cd /; echo $A; value USER; pwd); echo $A; value USER; pwd"_s).output,
              u"2\nb\n/\n1\nalex\n/Users/alex\n"_s);
    EXPECT_EQ(bench.run(u"A=1; A=2 | true; A=3 & echo $A; cd / | true; pwd"_s).output, u"1\n/Users/alex\n"_s);
    EXPECT_EQ(bench.run(u"true | A=2; echo x$A"_s).output, u"x\n"_s);
}

TEST(ShellList, aGroupChangesItsShell) {
    ShellBench bench;
    EXPECT_EQ(bench.run(u"A=1; { A=2; cd /; }; echo $A; pwd"_s).output, u"2\n/\n"_s);
}

TEST(ShellList, aPipeHandsOnTheOutputAlone) {
    ShellBench bench;
    EXPECT_EQ(bench.run(u"give 0 out err | cat"_s), (ShellOutcome{0, u"out"_s, u"err"_s}));
    EXPECT_EQ(bench.run(u"give 0 out err 2>&1 | cat"_s), (ShellOutcome{0, u"outerr"_s, {}}));
    EXPECT_EQ(bench.run(u"echo a | echo b"_s), (ShellOutcome{0, u"b\n"_s, {}}));
    EXPECT_EQ(bench.run(u"{ echo a; echo b; } | cat | (cat; echo c)"_s), (ShellOutcome{0, u"a\nb\nc\n"_s, {}}));
}

TEST(ShellList, whatOneCommandHasReadTheNextDoesNotFind) {
    ShellBench bench;
    EXPECT_EQ(bench.run(u"cat; echo -; cat"_s, "in\n").output, u"in\n-\n"_s);
    EXPECT_EQ(bench.run(u"true; cat"_s, "in\n").output, u"in\n"_s);
    EXPECT_EQ(bench.run(u"(cat); cat"_s, "in\n").output, u"in\n"_s);
    EXPECT_EQ(bench.run(u"echo \"$(cat)\"; cat"_s, "in\n").output, u"in\n"_s);
    EXPECT_EQ(bench.run(u"echo x | cat; cat"_s, "in\n").output, u"x\nin\n"_s);
    EXPECT_EQ(bench.run(u"cat & echo -; cat"_s, "in\n").output, u"-\nin\n"_s);
}

TEST(ShellList, whatNobodyReadStaysInTheInput) {
    ShellBench bench;
    ToolContext context = bench.mac.context({u"sh"_s});
    context.input = "in";
    ShellBench::run(u"echo a"_s, context);
    EXPECT_EQ(context.input, QByteArray("in"));
    ShellBench::run(u"cat"_s, context);
    EXPECT_EQ(context.input, QByteArray());
}

TEST(ShellList, outputIsAppendedToWhatTheContextHas) {
    ShellBench bench;
    ToolContext context = bench.mac.context({u"sh"_s});
    context.output = "a\n";
    context.error = "b\n";
    EXPECT_EQ(ShellBench::run(u"give 0 c d"_s, context), (ShellOutcome{0, u"a\nc"_s, u"b\nd"_s}));
}

TEST(ShellList, unknownCommandsAreNotFound) {
    ShellBench bench;
    EXPECT_EQ(bench.run(u"none a"_s), (ShellOutcome{127, {}, u"sh: none: command not found\n"_s}));
    EXPECT_EQ(bench.run(u"''"_s), (ShellOutcome{127, {}, u"sh: : command not found\n"_s}));
    EXPECT_EQ(bench.run(u"\"if\" a"_s), (ShellOutcome{127, {}, u"sh: if: command not found\n"_s}));
    EXPECT_EQ(bench.run(u"/usr/bin/none"_s),
              (ShellOutcome{127, {}, u"sh: /usr/bin/none: No such file or directory\n"_s}));
    EXPECT_EQ(bench.run(u"none 2>/dev/null"_s), (ShellOutcome{127, {}, {}}));
    EXPECT_EQ(bench.run(u"PATH=/none; note a"_s), (ShellOutcome{127, {}, u"sh: note: command not found\n"_s}));
    EXPECT_EQ(bench.run(u"PATH=/none note a; note b; PATH=/usr/bin note c"_s).status, 0);
    EXPECT_EQ(ShellBench::noted(), (QStringList{u"b"_s, u"c"_s}));
}

TEST(ShellList, commandsAreFoundByPath) {
    ShellBench bench;
    EXPECT_EQ(bench.run(u"/usr/bin/printargs a; cd /usr; bin/printargs b; ../usr/bin/printargs c"_s).output,
              u"[a]\n[b]\n[c]\n"_s);
}

TEST(ShellList, whatIsNoProgramIsNotExecuted) {
    ShellBench bench;
    bench.user().write(u"/Users/alex/file"_s, "#!/bin/sh\necho a\n");
    EXPECT_EQ(bench.run(u"./file"_s), (ShellOutcome{126, {}, u"sh: ./file: Permission denied\n"_s}));
    EXPECT_EQ(bench.run(u"/Users"_s), (ShellOutcome{126, {}, u"sh: /Users: is a directory\n"_s}));
    EXPECT_EQ(bench.run(u"PATH=/Users; alex"_s), (ShellOutcome{127, {}, u"sh: alex: command not found\n"_s}));
}

TEST(ShellList, aPathOfTheShellsOwnCountsToo) {
    ShellBench bench;
    ToolContext context = bench.mac.context({u"sh"_s});
    context.environment.remove(u"PATH"_s);
    EXPECT_EQ(ShellBench::run(u"PATH=/usr/bin; value PATH"_s, context), (ShellOutcome{0, u"unset\n"_s, {}}));
}

TEST(ShellList, aSyntaxErrorAnywhereKeepsAllFromRunning) {
    ShellBench bench;
    EXPECT_EQ(
        bench.run(u"note a > /tmp/x\nnote b\nnote 'c"_s),
        (ShellOutcome{2, {}, u"sh: -c: line 3: syntax error: unexpected EOF while looking for matching `''\n"_s}));
    EXPECT_EQ(ShellBench::noted(), QStringList());
    EXPECT_FALSE(bench.root().exists(u"/tmp/x"_s));
    EXPECT_EQ(bench.run(u"note a; if true; then note b; fi"_s),
              (ShellOutcome{2, {}, u"sh: -c: line 1: syntax error: `if' is not supported\n"_s}));
}

TEST(ShellList, anUnsupportedCommandThatAppearsAtRunTimeStopsTheLine) {
    ShellBench bench;
    const ShellOutcome stopped{2, u"x\n"_s, u"sh: -c: line 2: syntax error: `eval' is not supported\n"_s};
    EXPECT_EQ(bench.run(u"echo x; C=eval\n$C note a > /tmp/x; note b"_s), stopped);
    EXPECT_EQ(bench.run(u"echo x; C=eval\n($C note a) || true; note b"_s), stopped);
    EXPECT_EQ(bench.run(u"echo x\necho $($(echo eval) note a); note b"_s), stopped);
    EXPECT_EQ(ShellBench::noted(), QStringList());
    EXPECT_FALSE(bench.root().exists(u"/tmp/x"_s));
}

TEST(ShellList, shellsStartShells) {
    ShellBench bench;
    EXPECT_EQ(bench.run(u"sh -c 'echo $USER; exit 3'; echo $?"_s).output, u"alex\n3\n"_s);
    EXPECT_EQ(bench.run(u"sh -c 'sh -c \"fi\"; echo $?'"_s).output, u"2\n"_s);
}

} // namespace
