#include "simulator/ShellBench.h"

#include <gtest/gtest.h>

using namespace macsim;
using namespace Qt::StringLiterals;

namespace {

struct Echoed {
    const char* line;
    const char* output;
};

class ShellEcho : public testing::TestWithParam<Echoed> {};

TEST_P(ShellEcho, printsAsTheShOfMacOs) {
    static ShellBench bench; // no line of the table changes it
    EXPECT_EQ(bench.run(QString::fromUtf8(GetParam().line)).output, QString::fromUtf8(GetParam().output))
        << GetParam().line;
}

INSTANTIATE_TEST_SUITE_P(Table, ShellEcho,
                         testing::Values(Echoed{"echo", "\n"}, Echoed{"echo a  'b  c'", "a b  c\n"},
                                         Echoed{"echo -n a", "-n a\n"}, Echoed{"echo -e -- a", "-e -- a\n"},
                                         Echoed{"echo 'a\\nb\\tc'", "a\nb\tc\n"},
                                         Echoed{"echo '\\a\\b\\f\\r\\v\\e\\\\'", "\a\b\f\r\v\033\\\n"},
                                         Echoed{"echo 'a\\cb' c; echo d", "ad\n"},
                                         Echoed{"echo '\\q\\101' 'a\\'", "\\q\\101 a\\\n"},
                                         Echoed{"echo '\\0303\\0274'", "ü\n"}, Echoed{"echo ''", "\n"}));

TEST(ShellBuiltin, echoWritesBytesByTheirNumber) {
    ShellBench bench;
    ToolContext context = bench.mac.context({u"sh"_s});
    ShellBench::run(u"echo '\\0101\\0z\\x41\\x4g\\xg'"_s, context);
    EXPECT_EQ(context.output, QByteArray("A\0zA\004g\\xg\n", 10));
}

struct Tested {
    const char* expression;
    int status;
};

class ShellTestCommand : public testing::TestWithParam<Tested> {};

TEST_P(ShellTestCommand, decides) {
    ShellBench bench;
    bench.user().write(u"/Users/alex/file"_s, "x");
    bench.user().write(u"/Users/alex/empty"_s, {});
    bench.user().createLink(u"/Users/alex/link"_s, u"file"_s);
    bench.user().createLink(u"/Users/alex/dangling"_s, u"none"_s);
    bench.root().write(u"/private/var/root/secret"_s, "x");
    const QString expression = QString::fromUtf8(GetParam().expression);
    const ShellOutcome tested = bench.run(u"test "_s + expression);
    EXPECT_EQ(tested.status, GetParam().status) << GetParam().expression;
    EXPECT_EQ(bench.run(u"[ "_s + expression + u" ]"_s).status, GetParam().status) << GetParam().expression;
    EXPECT_EQ(tested.error.isEmpty(), GetParam().status < 2) << GetParam().expression;
}

INSTANTIATE_TEST_SUITE_P(Files, ShellTestCommand,
                         testing::Values(Tested{"-e file", 0}, Tested{"-e none", 1}, Tested{"-e link", 0},
                                         Tested{"-e dangling", 1}, Tested{"-e ''", 1}, Tested{"-f file", 0},
                                         Tested{"-f link", 0}, Tested{"-f /Users", 1}, Tested{"-f none", 1},
                                         Tested{"-f /bin/cat", 0}, Tested{"-d /tmp", 0}, Tested{"-d file", 1},
                                         Tested{"-d none", 1}, Tested{"-L link", 0}, Tested{"-L dangling", 0},
                                         Tested{"-L file", 1}, Tested{"-s file", 0}, Tested{"-s empty", 1},
                                         Tested{"-s none", 1}, Tested{"-s dangling", 1}));
INSTANTIATE_TEST_SUITE_P(Rights, ShellTestCommand,
                         testing::Values(Tested{"-r file", 0}, Tested{"-r none", 1}, Tested{"-r /Users", 0},
                                         Tested{"-r /bin/cat", 0}, Tested{"-r /var/root", 1},
                                         Tested{"-r /var/root/secret", 1}, Tested{"-x /var/root", 1},
                                         Tested{"-w file", 0}, Tested{"-w link", 0}, Tested{"-w none", 1},
                                         Tested{"-w ~", 0}, Tested{"-w /tmp", 0}, Tested{"-w /Library", 1},
                                         Tested{"-w /System", 1}, Tested{"-w /bin/cat", 1}, Tested{"-w /dev/null", 0},
                                         Tested{"-x /bin/cat", 0}, Tested{"-x file", 1}, Tested{"-x /tmp", 0},
                                         Tested{"-x none", 1}));
INSTANTIATE_TEST_SUITE_P(Texts, ShellTestCommand,
                         testing::Values(Tested{"", 1}, Tested{"''", 1}, Tested{"a", 0}, Tested{"-n", 0},
                                         Tested{"-n a", 0}, Tested{"-n ''", 1}, Tested{"-z ''", 0}, Tested{"-z a", 1},
                                         Tested{"a = a", 0}, Tested{"a = b", 1}, Tested{"a != b", 0},
                                         Tested{"a != a", 1}, Tested{"'' = ''", 0}, Tested{"! = !", 0},
                                         Tested{"-z = x", 1}, Tested{"!", 0}, Tested{"! ''", 0}, Tested{"! a", 1},
                                         Tested{"! -n a", 1}, Tested{"! ! a", 0}, Tested{"! a = b", 0},
                                         Tested{"! -e none", 0}));
INSTANTIATE_TEST_SUITE_P(Numbers, ShellTestCommand,
                         testing::Values(Tested{"1 -eq 1", 0}, Tested{"1 -eq 01", 0}, Tested{"1 -eq 2", 1},
                                         Tested{"1 -ne 2", 0}, Tested{"1 -ne 1", 1}, Tested{"1 -lt 2", 0},
                                         Tested{"2 -lt 2", 1}, Tested{"2 -le 2", 0}, Tested{"3 -le 2", 1},
                                         Tested{"3 -gt 2", 0}, Tested{"2 -gt 2", 1}, Tested{"2 -ge 2", 0},
                                         Tested{"1 -ge 2", 1}, Tested{"-1 -lt 0", 0}, Tested{"' 1 ' -eq 1", 0}));
INSTANTIATE_TEST_SUITE_P(Mistakes, ShellTestCommand,
                         testing::Values(Tested{"a b", 2}, Tested{"-q x", 2}, Tested{"1 -eq x", 2},
                                         Tested{"1 -eq ''", 2}, Tested{"1 -eq 1.5", 2}, Tested{"a -nt b", 2},
                                         Tested{"a = b c", 2}, Tested{"a = b -a", 2}, Tested{"'(' a = b", 2},
                                         Tested{"! ! a b", 2}));
INSTANTIATE_TEST_SUITE_P(Together, ShellTestCommand,
                         testing::Values(Tested{"a == a", 0}, Tested{"a '<' b", 0}, Tested{"a '>' b", 1},
                                         Tested{"-h link", 0}, Tested{"-h x", 1}, Tested{"file -ef link", 0},
                                         Tested{"a -a b", 0}, Tested{"a -a ''", 1}, Tested{"a = b -a c", 1},
                                         Tested{"-e none -o -e file", 0}, Tested{"'(' a ')'", 0},
                                         Tested{"! '(' -e file -a -e none ')'", 0}));

TEST(ShellBuiltin, testSaysWhatItDoesNotUnderstand) {
    ShellBench bench;
    EXPECT_EQ(bench.run(u"test a b"_s).error, u"sh: line 0: test: a: unary operator expected\n"_s);
    EXPECT_EQ(bench.run(u"\n[ a =~ b ]"_s).error, u"sh: line 1: [: =~: binary operator expected\n"_s);
    EXPECT_EQ(bench.run(u"test '(' a = a -a b"_s).error, u"sh: line 0: test: `)' expected\n"_s);
    EXPECT_EQ(bench.run(u"test a -nt b"_s).error, u"sh: line 0: test: -nt: not simulated\n"_s);
    EXPECT_EQ(bench.run(u"test 1 -eq x"_s).error, u"sh: line 0: test: x: integer expression expected\n"_s);
    EXPECT_EQ(bench.run(u"test 1 2 3 4 5"_s).error, u"sh: line 0: test: too many arguments\n"_s);
    EXPECT_EQ(bench.run(u"[ a"_s), (ShellOutcome{2, {}, u"sh: line 0: [: missing `]'\n"_s}));
    EXPECT_EQ(bench.run(u"["_s).status, 2);
}

TEST(ShellBuiltin, testingForWritingChangesNothing) {
    ShellBench bench;
    bench.user().write(u"/Users/alex/file"_s, "x");
    const QStringList before = bench.root().list(u"/Users/alex"_s);
    EXPECT_EQ(bench.run(u"test -w ~ && test -w ~/file"_s).status, 0);
    EXPECT_EQ(bench.root().list(u"/Users/alex"_s), before);
    EXPECT_EQ(bench.file(u"/Users/alex/file"_s), u"x"_s);
}

TEST(ShellBuiltin, rootMayWriteWhereTheUserMayNot) {
    ShellBench bench;
    EXPECT_EQ(bench.run(u"test -w /Library"_s, {}, Actor::Root).status, 0);
    EXPECT_EQ(bench.run(u"test -w /System"_s, {}, Actor::Root).status, 1);
    EXPECT_EQ(bench.run(u"test -r /var/root"_s, {}, Actor::Root).status, 0);
}

TEST(ShellBuiltin, cdGoesByNames) {
    ShellBench bench;
    bench.user().createFolders(u"/Users/Shared/a/b"_s);
    bench.user().createLink(u"/Users/alex/link"_s, u"/Users/Shared/a/b"_s);
    EXPECT_EQ(bench.run(u"cd /usr/bin; pwd; cd ..; pwd; cd .//./bin/; pwd; cd; pwd"_s).output,
              u"/usr/bin\n/usr\n/usr/bin\n/Users/alex\n"_s);
    EXPECT_EQ(bench.run(u"cd link; pwd; pwd -P; cd ..; pwd; cd -P link; pwd; cd ..; pwd"_s).output,
              u"/Users/alex/link\n/Users/Shared/a/b\n/Users/alex\n/Users/Shared/a/b\n/Users/Shared/a\n"_s);
    EXPECT_EQ(bench.run(u"cd /../../tmp/..; pwd"_s).output, u"/\n"_s);
    EXPECT_EQ(bench.run(u"cd /tmp; cd -; cd -; echo $OLDPWD $PWD"_s).output,
              u"/Users/alex\n/tmp\n/Users/alex /tmp\n"_s);
    EXPECT_EQ(bench.run(u"cd ''; pwd; cd -- /tmp ignored; pwd"_s).output, u"/Users/alex\n/tmp\n"_s);
}

TEST(ShellBuiltin, cdStaysWhereItCannotGo) {
    ShellBench bench;
    bench.user().write(u"/Users/alex/file"_s, {});
    const auto failed = [](const QString& message) {
        return ShellOutcome{0, u"/Users/alex\n"_s, u"sh: line 0: cd: "_s + message + u'\n'};
    };
    EXPECT_EQ(bench.run(u"cd none; pwd"_s), failed(u"none: No such file or directory"_s));
    EXPECT_EQ(bench.run(u"cd file; pwd"_s), failed(u"file: Not a directory"_s));
    EXPECT_EQ(bench.run(u"cd /var/root; pwd"_s), failed(u"/var/root: Permission denied"_s));
    EXPECT_EQ(bench.run(u"cd -; pwd"_s), failed(u"OLDPWD not set"_s));
    EXPECT_EQ(bench.run(u"cd -x /; pwd"_s), failed(u"-x: invalid option\ncd: usage: cd [-L|-P] [dir]"_s));
    EXPECT_EQ(bench.run(u"cd none"_s).status, 1);
    EXPECT_EQ(bench.run(u"cd -x"_s).status, 2);
    EXPECT_EQ(bench.run(u"cd /var/root; pwd"_s, {}, Actor::Root).output, u"/var/root\n"_s);
}

TEST(ShellBuiltin, pwdRefusesWhatItDoesNotKnow) {
    ShellBench bench;
    EXPECT_EQ(bench.run(u"pwd -x"_s),
              (ShellOutcome{2, {}, u"sh: line 0: pwd: -x: invalid option\npwd: usage: pwd [-LP]\n"_s}));
}

TEST(ShellBuiltin, exitWantsANumber) {
    ShellBench bench;
    EXPECT_EQ(bench.run(u"exit x; echo a"_s),
              (ShellOutcome{255, {}, u"sh: line 0: exit: x: numeric argument required\n"_s}));
    EXPECT_EQ(bench.run(u"exit 3 4; echo a"_s), (ShellOutcome{1, {}, u"sh: line 0: exit: too many arguments\n"_s}));
}

TEST(ShellBuiltin, theRestIgnoresItsArguments) {
    ShellBench bench;
    EXPECT_EQ(bench.run(u"true a && : b && ! false c"_s), (ShellOutcome{0, {}, {}}));
}

} // namespace

TEST(ShellBuiltin, exportGivesAVariableToCommands) {
    ShellBench bench;
    const QString shown = u"; sh -c 'echo \"[$A]\"'"_s;
    EXPECT_EQ(bench.run(u"A='1 2'"_s + shown).output, u"[]\n"_s);
    EXPECT_EQ(bench.run(u"A='1 2'; export A"_s + shown).output, u"[1 2]\n"_s);
    EXPECT_EQ(bench.run(u"export A='=1' B=; A=2"_s + shown).output, u"[2]\n"_s);
    EXPECT_EQ(bench.run(u"export A=in; (export A=sub)"_s + shown).output, u"[in]\n"_s);
}

TEST(ShellBuiltin, exportRefusesWhatIsNoNameAndWhatIsNotSimulated) {
    ShellBench bench;
    for (const QString& operand : {u"1a=b"_s, u"-p"_s, u"never_set"_s, u"''"_s}) {
        const ShellOutcome refused = bench.run(u"export "_s + operand);
        EXPECT_EQ(refused.status, 1) << operand.toStdString();
        EXPECT_FALSE(refused.error.isEmpty()) << operand.toStdString();
    }
}
