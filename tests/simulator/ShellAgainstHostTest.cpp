#include "simulator/ShellBench.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QProcess>

using namespace macsim;
using namespace Qt::StringLiterals;

namespace {

// The same harmless lines, made of builtins alone, through the host's sh and through this one: both stand in
// a folder with the same names.

constexpr auto kNames = {"a.txt", "b.txt", ".hidden", "c d.txt", "sub/e.txt", "sub/f", "B"};

class ShellAgainstHost : public testing::TestWithParam<const char*> {
protected:
    ShellAgainstHost() {
        for (const char* name : kNames) {
            const QString path = kFolder + u'/' + QString::fromUtf8(name);
            bench.root().createFolders(path.left(path.lastIndexOf(u'/')));
            bench.root().write(path, "x");
        }
    }

    ShellOutcome runOnHost(const QString& line) const {
        QProcess process;
        process.setWorkingDirectory(bench.mac.hostFolder() + kFolder);
        process.setProcessEnvironment(QProcessEnvironment());
        process.setStandardInputFile(QProcess::nullDevice());
        process.start(u"/bin/sh"_s, {u"-c"_s, line});
        EXPECT_TRUE(process.waitForFinished());
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()), {}};
    }

    ShellOutcome runHere(const QString& line) {
        ToolContext context = bench.mac.context({u"sh"_s});
        context.environment.clear();
        context.workingFolder = kFolder;
        ShellOutcome outcome = ShellBench::run(line, context);
        outcome.error.clear();
        return outcome;
    }

    const QString kFolder = u"/Users/Shared/names"_s;
    ShellBench bench{Json{{"userName", "alex"}, {"userId", 501}, {"caseSensitiveVolume", true}}};
};

TEST_P(ShellAgainstHost, givesTheSame) {
    const QString line = QString::fromUtf8(GetParam());
    EXPECT_EQ(runHere(line), runOnHost(line)) << GetParam();
}

INSTANTIATE_TEST_SUITE_P(Words, ShellAgainstHost,
                         testing::Values("echo a   b 'c  d' \"e  f\" g\\ h", "echo 'it'\\''s' \"it's\" \\'",
                                         "echo \"a \\\" \\$A \\` b\"", "echo a\\\nb \"c\\\nd\"", "echo a#b # c",
                                         "# nothing", "", "echo '' a \"\" b", "echo a'b'\"c\"d",
                                         "echo {} { } a{b {a} !", "echo a; # b\necho c", "echo \"$\" $ a$",
                                         "echo -- - ="));
INSTANTIATE_TEST_SUITE_P(
    Expansions, ShellAgainstHost,
    testing::Values("A=1; echo $A ${A}b \"$A\" '$A' \\$A", "A='a  b'; echo $A \"$A\" x${A}y", "A=' a '; echo x${A}y",
                    "echo x$NONE \"$NONE\"y $NONE z", "A=b; B=$A; A=c; echo $B$A", "A=1 B=$A; echo $A$B",
                    "echo $(echo a b) \"$(echo 'c  d')\"", "echo `echo a` `echo \\`echo b\\``",
                    "echo $(echo $(echo $(echo a)))", "echo \"$(echo \"a  $(echo 'b  c')\")\"",
                    "A=$(echo a; echo b); echo \"$A\" $A", "echo $(false) x; A=$(false); echo $?", "A='echo b'; $A c",
                    "A=1; (A=2; echo $A); echo $A", "A=1; { A=2; echo $A; }; echo $A", "HOME=/x; echo ~ ~/a '~' \\~ a~",
                    "HOME='/x y'; B=~/a:~; echo \"$B\" ~", "A=1 echo x$A; echo y$A", "A=x :; echo $A"));
INSTANTIATE_TEST_SUITE_P(Lists, ShellAgainstHost,
                         testing::Values("true && echo a || echo b; false && echo c || echo d",
                                         "false || false || echo a && echo b", "! true; echo $?; ! false; echo $?",
                                         "false; echo $?; echo $?", "false | true; echo $?; true | false; echo $?",
                                         "! true | false; echo $?", "(exit 3); echo $?; (exit 4) || echo b",
                                         "exit 7; echo a", "{ echo a; exit 2; }; echo b",
                                         "echo a; exit 3 | true; echo $?", "false; exit", "(false; exit); echo $?",
                                         "false & echo $?", "false; (echo $?); { echo $?; }", "false; A=b; echo $?",
                                         "(cd sub; echo *); echo *.txt", "cd sub && echo * && cd .. && echo B",
                                         "cd none || echo no", "echo a | echo b", "A=1 | true; echo x$A",
                                         "(echo a; (echo b)); { { echo c; }; }", "true &&\n\necho a |\necho b",
                                         "exit 300", "nosuchcommand_; echo $?", "/nosuch/command_; echo $?",
                                         "echo a; echo 'b", "echo a &&", "( echo a"));
INSTANTIATE_TEST_SUITE_P(Patterns, ShellAgainstHost,
                         testing::Values("echo *", "echo *.txt", "echo ?.txt [ab].txt [!a].txt [a-b]*", "echo */* */",
                                         "echo .h* .[!.]*", "echo *.none no/*", "echo '*' \"*\" \\*",
                                         "A='*.txt'; echo $A \"$A\"", "echo ./*.txt sub/../?.txt", "echo [ab [] a] []",
                                         "echo [[:upper:]] [![:lower:]]", "echo \"c \"*", "A=*; echo \"$A\" $A",
                                         "echo s*//e* ", "echo $(echo '*.txt')", "echo [a'-'b]*"));
INSTANTIATE_TEST_SUITE_P(Redirections, ShellAgainstHost,
                         testing::Values("echo a >out; test -s out; echo $?", "echo a >/dev/null", "echo a >&2",
                                         "(echo a >&2) 2>&1", "echo a 2>&1 >/dev/null",
                                         "{ echo a >&2; echo b; } 2>/dev/null", "echo a 3>&1 >&3",
                                         "echo a <none || echo b", ">new; test -f new; echo $?",
                                         "echo a >none/b || echo c", "cd none 2>/dev/null || echo a",
                                         "echo a >'x y'; echo x*", "A='p q'; echo a >$A; echo p*"));
INSTANTIATE_TEST_SUITE_P(Tests, ShellAgainstHost,
                         testing::Values("test; echo $?", "test a; echo $?", "test ''; echo $?",
                                         "[ a = a ] && [ a != b ] && echo a", "[ 2 -gt 10 ] || echo a",
                                         "test -f a.txt && test -d sub && test -e B && echo a",
                                         "test ! -e none && echo a", "[ ! a = b ] && echo a",
                                         "test -n '' || test -z '' && echo a", "test ! ''; echo $?", "[ a; echo $?",
                                         "test 1 -eq x; echo $?", "test -s a.txt; echo $?", "test = = =; echo $?",
                                         "test ! = !; echo $?", "[ -n ]; echo $?"));

} // namespace
