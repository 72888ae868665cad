#include "simulator/ShellBench.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

using namespace macsim;
using namespace Qt::StringLiterals;

namespace {

struct Printed {
    const char* line;
    const char* output;
};

class ShellFields : public testing::TestWithParam<Printed> {};

TEST_P(ShellFields, areWhatTheCommandGets) {
    static ShellBench bench; // no line of the table changes it
    const ShellOutcome outcome = bench.run(QString::fromUtf8(GetParam().line));
    EXPECT_EQ(outcome.output, QString::fromUtf8(GetParam().output) + u'\n') << GetParam().line;
    EXPECT_EQ(outcome.error, QString()) << GetParam().line;
    EXPECT_EQ(outcome.status, 0) << GetParam().line;
}

INSTANTIATE_TEST_SUITE_P(Quotes, ShellFields,
                         testing::Values(Printed{"printargs a 'b c' \"d e\" f\\ g", "[a][b c][d e][f g]"},
                                         Printed{"printargs '' \"\" a''b", "[][][ab]"},
                                         Printed{"printargs 'it'\\''s'", "[it's]"},
                                         Printed{"printargs '$A `b` $(c) \\'", "[$A `b` $(c) \\]"},
                                         Printed{"printargs \"'a' \\\"b\\\"\"", "['a' \"b\"]"},
                                         Printed{"printargs '\n'", "[\n]"}, //
                                         Printed{"print'ar'gs a", "[a]"},   //
                                         Printed{"printargs Größe 🎹", "[Größe][🎹]"}));

INSTANTIATE_TEST_SUITE_P(
    Variables, ShellFields,
    testing::Values(Printed{"A=b; printargs $A ${A}c \"$A\" '$A' \\$A", "[b][bc][b][$A][$A]"},
                    Printed{"A='a  b '; printargs $A \"$A\"", "[a][b][a  b ]"},
                    Printed{"A=' a b '; printargs x$A.y", "[x][a][b][.y]"},
                    Printed{"A='a\tb\nc'; printargs $A", "[a][b][c]"}, Printed{"printargs $NONE x", "[x]"},
                    Printed{"printargs \"$NONE\" ''$NONE x$NONE", "[][][x]"}, Printed{"A=' '; printargs $A", ""}, //
                    Printed{"A='a b'; B=$A; printargs \"$B\"", "[a b]"},
                    Printed{"A=1; B=$A$A; A=2; printargs $B", "[11]"},
                    Printed{"A='\"x y\" ; z'; printargs $A", "[\"x][y\"][;][z]"},
                    Printed{"A='$B'; B=1; printargs $A", "[$B]"}, Printed{"A=printargs; $A x", "[x]"},
                    Printed{"A='printargs x'; $A y", "[x][y]"}, Printed{"A='a\\b'; printargs $A", "[a\\b]"}));

INSTANTIATE_TEST_SUITE_P(Substitutions, ShellFields,
                         testing::Values(Printed{"printargs $(echo a b) \"$(echo c d)\"", "[a][b][c d]"},
                                         Printed{"printargs \"$(echo 'a\n\n\n')\"", "[a]"},
                                         Printed{"printargs $(echo 'a\n\nb')", "[a][b]"},
                                         Printed{"printargs $(echo $(echo a) b)", "[a][b]"},
                                         Printed{"printargs `echo a` \"`echo \\\"b c\\\"`\"", "[a][b c]"},
                                         Printed{"printargs `echo \\`echo a\\``", "[a]"},
                                         Printed{"printargs \"$(printargs \"a b\")\"", "[[a b]]"},
                                         Printed{"printargs $() a", "[a]"},
                                         Printed{"printargs $(echo '$(note x)')", "[$(note][x)]"},
                                         Printed{"A=1; printargs $(A=2; echo $A) $A", "[2][1]"},
                                         Printed{"printargs $(cd /; pwd) $(pwd)", "[/][/Users/alex]"}));

INSTANTIATE_TEST_SUITE_P(
    Homes, ShellFields,
    testing::Values(Printed{"printargs ~ ~/a ~alex ~alex/b ~root/c",
                            "[/Users/alex][/Users/alex/a][/Users/alex][/Users/alex/b][/var/root/c]"},
                    Printed{"printargs ~nobody ~nobody/x a~ '~' \\~ \"~\"/a", "[~nobody][~nobody/x][a~][~][~][~/a]"},
                    Printed{"HOME='/a  *'; printargs ~ ~/b", "[/a  *][/a  */b]"},
                    Printed{"A=~/b:~root:x~; printargs $A", "[/Users/alex/b:/var/root:x~]"},
                    Printed{"A='~'; printargs $A", "[~]"}));

TEST(ShellExpansion, aHomelessShellAsksTheMac) {
    ShellBench bench;
    ToolContext context = bench.mac.context({u"sh"_s}, Actor::Root);
    context.environment.remove(u"HOME"_s);
    EXPECT_EQ(ShellBench::run(u"printargs ~/x"_s, context).output, u"[/var/root/x]\n"_s);
}

TEST(ShellExpansion, theShellsProcessIsANumber) {
    ShellBench bench;
    const QString number = QString::number(QCoreApplication::applicationPid());
    EXPECT_EQ(bench.run(u"printargs $$ $(echo $$)"_s).output, u"[%1][%1]\n"_s.arg(number));
}

TEST(ShellExpansion, onlyNamesOfTheEnvironmentAreInherited) {
    ShellBench bench;
    EXPECT_EQ(bench.run(u"A=b; value A"_s).output, u"unset\n"_s);
    EXPECT_EQ(bench.run(u"USER=b; value USER"_s).output, u"b\n"_s);
    EXPECT_EQ(bench.run(u"value HOME; value PWD; cd /; value PWD; value OLDPWD"_s).output,
              u"/Users/alex\n/Users/alex\n/\n/Users/alex\n"_s);
}

TEST(ShellExpansion, anAssignmentBeforeACommandIsForItAlone) {
    ShellBench bench;
    EXPECT_EQ(bench.run(u"A=b value A; value A; echo x$A"_s).output, u"b\nunset\nx\n"_s);
    EXPECT_EQ(bench.run(u"A=1; A=2 value A; echo $A; value A"_s).output, u"2\n1\nunset\n"_s);
    EXPECT_EQ(bench.run(u"USER=b value USER; value USER"_s).output, u"b\nalex\n"_s);
    EXPECT_EQ(bench.run(u"A=1 B=$A$A value B; A=x printargs $A."_s).output, u"11\n[.]\n"_s);
    EXPECT_EQ(bench.run(u"HOME=/private cd; pwd; echo $HOME"_s).output, u"/private\n/Users/alex\n"_s);
    EXPECT_EQ(bench.run(u"A=b none; echo x$A"_s).output, u"x\n"_s);
}

TEST(ShellExpansion, anAssignmentBeforeAColonStays) {
    ShellBench bench;
    EXPECT_EQ(bench.run(u"A=b :; echo $A; value A"_s).output, u"b\nunset\n"_s);
}

TEST(ShellExpansion, theCallersEnvironmentAndFolderStay) {
    ShellBench bench;
    ToolContext context = bench.mac.context({u"sh"_s});
    ShellBench::run(u"cd /; HOME=/x; USER=y"_s, context);
    EXPECT_EQ(context.workingFolder, u"/Users/alex"_s);
    EXPECT_EQ(context.environment.value(u"HOME"_s), u"/Users/alex"_s);
    EXPECT_EQ(context.environment.value(u"USER"_s), u"alex"_s);
}

} // namespace
