#include "simulator/ShellBench.h"

#include <gtest/gtest.h>

using namespace macsim;
using namespace Qt::StringLiterals;

namespace {

struct Written {
    const char* line;
    const char* file; ///< what /private/tmp/f holds then; it starts with "old"
    const char* output;
    const char* error;
};

class ShellRedirects : public testing::TestWithParam<Written> {};

TEST_P(ShellRedirects, theStreams) {
    ShellBench bench;
    bench.user().write(u"/private/tmp/f"_s, "old");
    const ShellOutcome outcome = bench.run(u"cd /tmp; "_s + QString::fromUtf8(GetParam().line));
    EXPECT_EQ(bench.file(u"/private/tmp/f"_s), QString::fromUtf8(GetParam().file)) << GetParam().line;
    EXPECT_EQ(outcome.output, QString::fromUtf8(GetParam().output)) << GetParam().line;
    EXPECT_EQ(outcome.error, QString::fromUtf8(GetParam().error)) << GetParam().line;
}

INSTANTIATE_TEST_SUITE_P(
    Table, ShellRedirects,
    testing::Values(
        Written{"give 0 o e >f", "o", "", "e"}, Written{"give 0 o e >>f", "oldo", "", "e"},
        Written{"give 0 o e 2>f", "e", "o", ""}, Written{"give 0 o e 2>>f", "olde", "o", ""},
        Written{"give 0 o e >f 2>&1", "oe", "", ""}, Written{"give 0 o e 2>&1 >f", "o", "e", ""},
        Written{"give 0 o e 1>&2", "old", "", "oe"}, Written{"give 0 o e >&2 2>f", "e", "", "o"},
        Written{"give 0 o e 3>&1 1>&2 2>&3", "old", "e", "o"}, Written{"give 0 o e >/dev/null", "old", "", "e"},
        Written{"give 0 o e >/dev/null 2>&1", "old", "", ""}, Written{"cat <f", "old", "old", ""},
        Written{"cat </dev/null", "old", "", ""}, Written{"cat <f >f", "", "", ""},
        Written{"{ echo new >f; cat; } <f", "new\n", "new\n", ""}, Written{">f", "", "", ""},
        Written{">f give 0 o", "o", "", ""}, Written{"(give 0 a b; give 0 c d) >f", "ac", "", "bd"},
        Written{"(give 0 a b; give 0 c d) >f 2>&1", "abcd", "", ""},
        Written{"{ give 0 a; give 0 b; } >>f", "oldab", "", ""}, Written{"{ cat; cat; } <f", "old", "old", ""},
        Written{"{ echo a; cat f; } >f; cat f", "a\na\n", "a\na\n", ""},
        Written{"echo $(give 0 a b) 2>f", "", "a\n", "b"}, Written{"(echo $(give 0 a b)) 2>f", "b", "a\n", ""},
        Written{"F=f; echo a >$F", "a\n", "", ""}, Written{"F='f'; echo a >\"$F\"", "a\n", "", ""},
        Written{"echo a >$(echo f)", "a\n", "", ""}, Written{"echo a >g; cat g g >f", "a\na\n", "", ""},
        Written{"echo a >*; cat '*'", "old", "a\n", ""}, Written{"F='x y'; echo a >$F; cat 'x y'", "old", "a\n", ""},
        Written{"echo a >~/h; cat ~/h", "old", "a\n", ""}, Written{"echo a | cat >f", "a\n", "", ""},
        Written{"echo a >f | cat", "a\n", "", ""}, Written{"echo a >f &", "a\n", "", ""},
        Written{"cd /; echo a >tmp/f", "a\n", "", ""}, Written{"none 2>f", "sh: none: command not found\n", "", ""},
        Written{"test 2>f", "", "", ""}, Written{"echo a 2>f >&2", "a\n", "", ""}));

TEST(ShellRedirection, thatFailsKeepsTheCommandFromRunning) {
    ShellBench bench;
    const auto failed = [](const QString& message) { return ShellOutcome{1, {}, u"sh: "_s + message + u'\n'}; };
    EXPECT_EQ(bench.run(u"note a </none"_s), failed(u"/none: No such file or directory"_s));
    EXPECT_EQ(bench.run(u"note a >none/x"_s), failed(u"none/x: No such file or directory"_s));
    EXPECT_EQ(bench.run(u"note a >/tmp"_s), failed(u"/tmp: Is a directory"_s));
    EXPECT_EQ(bench.run(u"note a >/Library/x"_s), failed(u"/Library/x: Permission denied"_s));
    EXPECT_EQ(bench.run(u"note a >>/System/x"_s, {}, Actor::Root), failed(u"/System/x: Operation not permitted"_s));
    EXPECT_EQ(bench.run(u"note a >''"_s), failed(u": No such file or directory"_s));
    EXPECT_EQ(bench.run(u"note a 2>&7"_s), failed(u"7: Bad file descriptor"_s));
    EXPECT_EQ(bench.run(u"(note a) </none"_s), failed(u"/none: No such file or directory"_s));
    EXPECT_EQ(bench.run(u"{ note a; } </none"_s), failed(u"/none: No such file or directory"_s));
    EXPECT_EQ(bench.run(u"</none"_s), failed(u"/none: No such file or directory"_s));
    EXPECT_EQ(bench.run(u"none </none"_s), failed(u"/none: No such file or directory"_s));
    EXPECT_EQ(bench.run(u"note a 2>/dev/null </none"_s), (ShellOutcome{1, {}, {}}));
    EXPECT_EQ(ShellBench::noted(), QStringList());
}

TEST(ShellRedirection, thatFailsLetsTheLineGoOn) {
    ShellBench bench;
    EXPECT_EQ(bench.run(u"echo a </none || echo b; echo $?"_s).output, u"b\n0\n"_s);
    EXPECT_EQ(bench.run(u"A=b </none; echo $A"_s).output, u"b\n"_s);
}

TEST(ShellRedirection, thatFailsForASpecialBuiltinEndsTheShell) {
    ShellBench bench;
    EXPECT_EQ(bench.run(u": >/none/x || echo a; echo b"_s),
              (ShellOutcome{1, {}, u"sh: /none/x: No such file or directory\n"_s}));
    EXPECT_EQ(bench.run(u"(: >/none/x; echo a) || echo b"_s).output, u"b\n"_s);
}

TEST(ShellRedirection, areOpenedInOrderUpToTheOneThatFails) {
    ShellBench bench;
    EXPECT_EQ(bench.run(u"echo x >/tmp/a </none >/tmp/b"_s).status, 1);
    EXPECT_EQ(bench.file(u"/tmp/a"_s), QString());
    EXPECT_FALSE(bench.root().exists(u"/tmp/b"_s));
}

TEST(ShellRedirection, aFullDiskIsAFailedWrite) {
    ShellBench bench;
    bench.user().write(u"/private/tmp/f"_s, "old");
    ToolContext context = bench.mac.context({u"sh"_s});
    context.volume = context.volume.full();
    EXPECT_EQ(ShellBench::run(u"echo a >>/tmp/f"_s, context),
              (ShellOutcome{1, {}, u"sh: /tmp/f: No space left on device\n"_s}));
    EXPECT_EQ(bench.file(u"/tmp/f"_s), u"old"_s);
}

TEST(ShellRedirection, aFileThatCannotBeWrittenAnyMoreIsAFailedWrite) {
    ShellBench bench;
    bench.user().createFolder(u"/private/tmp/d"_s);
    const QString line = u"{ mv-away; echo a; } >/tmp/d/f"_s;
    bench.mac.tools[u"/usr/bin/mv-away"_s] = [](ToolContext& context) {
        context.volume.remove(u"/tmp/d/f"_s);
        context.volume.remove(u"/tmp/d"_s);
        return 0;
    };
    ASSERT_TRUE(QFile::link(u"/nowhere/macsim"_s, bench.mac.hostFolder() + u"/usr/bin/mv-away"_s));
    EXPECT_EQ(bench.run(line), (ShellOutcome{1, {}, u"sh: echo: write error: No such file or directory\n"_s}));
}

} // namespace
