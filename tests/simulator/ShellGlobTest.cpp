#include "simulator/shell/Glob.h"

#include "simulator/ShellBench.h"

#include <gtest/gtest.h>

using namespace macsim;
using namespace Qt::StringLiterals;

namespace {

struct Match {
    const char* pattern;
    const char* name;
    bool matches;
};

class GlobPattern : public testing::TestWithParam<Match> {};

TEST_P(GlobPattern, matchesWholeNames) {
    const auto& [pattern, name, expected] = GetParam();
    EXPECT_EQ(matchesGlob(QString::fromUtf8(pattern), QString::fromUtf8(name)), expected) << pattern << " on " << name;
}

INSTANTIATE_TEST_SUITE_P(
    Table, GlobPattern,
    testing::Values(
        Match{"a", "a", true}, Match{"a", "ab", false}, Match{"A", "a", false}, Match{"*", "", true},
        Match{"*", "abc", true}, Match{"a*", "a", true}, Match{"*c", "abc", true}, Match{"*b", "abc", false},
        Match{"a*b*c", "axxbyyc", true}, Match{"a*b*c", "axxbyy", false}, Match{"**", "a", true}, Match{"?", "a", true},
        Match{"?", "", false}, Match{"??", "a", false}, Match{"?", "ü", true}, Match{"?", "🎹", true},
        Match{"*.plist", "a.b.plist", true}, Match{"[ab]", "b", true}, Match{"[ab]", "c", false},
        Match{"[a-c]x", "bx", true}, Match{"[a-c]", "d", false}, Match{"[!a-c]", "d", true}, Match{"[^a]", "a", false},
        Match{"[^a]", "b", true}, Match{"[]a]", "]", true}, Match{"[!]]", "a", true}, Match{"[!]]", "]", false},
        Match{"[a-]", "-", true}, Match{"[-a]", "-", true}, Match{"[a\\-c]", "b", false}, Match{"[a\\-c]", "-", true},
        Match{"[\\]]", "]", true}, Match{"[c-a]", "b", false}, Match{"[a", "[a", true}, Match{"[a", "a", false},
        Match{"[", "[", true}, Match{"a]", "a]", true}, Match{"[[:digit:]]", "7", true},
        Match{"[[:digit:]x]", "x", true}, Match{"[![:alpha:]]", "a", false}, Match{"[[:space:]]", " ", true},
        Match{"\\*", "*", true}, Match{"\\*", "a", false}, Match{"a\\?", "a?", true}, Match{"\\[a]", "[a]", true},
        Match{"*", ".a", false}, Match{"?a", ".a", false}, Match{"[.]a", ".a", false}, Match{".*", ".a", true},
        Match{".?", ".a", true}, Match{".*", "a", false}, Match{"*[ab]*[cd]*", "xxaxxdxx", true}));

TEST(GlobPattern, quotedTextStandsForItself) {
    const QString text = u"a*b?c[d-e]!f\\g:]"_s;
    EXPECT_FALSE(isGlob(globQuoted(text)));
    EXPECT_TRUE(matchesGlob(globQuoted(text), text));
    EXPECT_EQ(globText(globQuoted(text)), text);
    EXPECT_TRUE(isGlob(globUnquoted(text)));
    EXPECT_EQ(globText(globUnquoted(text)), text);
}

TEST(GlobPattern, anOpenBracketIsNoPattern) {
    EXPECT_FALSE(isGlob(u"["_s));
    EXPECT_FALSE(isGlob(u"a]["_s));
    EXPECT_TRUE(isGlob(u"[a]"_s));
}

TEST(GlobPattern, manyStarsDoNotExplode) {
    EXPECT_FALSE(matchesGlob(u"*a"_s.repeated(500) + u'b', u"a"_s.repeated(2000)));
}

/// A folder of names to match, under the working folder "/Users/Shared/names".
class ShellPaths : public testing::Test {
protected:
    ShellPaths() {
        for (const QString& folder : {u"sub"_s, u"sub/deep"_s, u"a-b"_s, u"a"_s, u".hidden"_s}) {
            bench.root().createFolders(kFolder + u'/' + folder);
        }
        for (const QString& name : {u"b.txt"_s, u"B.txt"_s, u"a.txt"_s, u"x y.txt"_s, u"*star"_s, u"sub/a.txt"_s,
                                    u"a/f"_s, u"a-b/f"_s, u".hidden/f"_s, u".dot"_s, u"ä.txt"_s, u"sub/deep/f"_s}) {
            bench.root().write(kFolder + u'/' + name, {});
        }
    }

    QString printed(const QString& words) {
        return bench.run(u"cd "_s + kFolder + u" && printargs "_s + words).output.trimmed();
    }

    static Json machine() { return {{"userName", "alex"}, {"userId", 501}, {"caseSensitiveVolume", true}}; }

    const QString kFolder = u"/Users/Shared/names"_s;
    ShellBench bench{machine()};
};

TEST_F(ShellPaths, areSortedByCodePoint) {
    EXPECT_EQ(printed(u"*.txt"_s), u"[B.txt][a.txt][b.txt][x y.txt][ä.txt]"_s);
    EXPECT_EQ(printed(u"a*/f"_s), u"[a-b/f][a/f]"_s);
}

TEST_F(ShellPaths, thatDoNotExistLeaveThePatternAsTyped) {
    EXPECT_EQ(printed(u"*.none no/* '*'.none"_s), u"[*.none][no/*][*.none]"_s);
}

TEST_F(ShellPaths, areFoundComponentByComponent) {
    EXPECT_EQ(printed(u"*/*.txt"_s), u"[sub/a.txt]"_s);
    EXPECT_EQ(printed(u"*/deep//*"_s), u"[sub/deep//f]"_s);
    EXPECT_EQ(printed(u"./s*/../a.*"_s), u"[./sub/../a.txt]"_s);
    EXPECT_EQ(printed(u"/Users/Sh*d/names/su?"_s), u"[/Users/Shared/names/sub]"_s);
    EXPECT_EQ(printed(u"a.t*/f"_s), u"[a.t*/f]"_s);
}

TEST_F(ShellPaths, withASlashAtTheEndAreFolders) {
    EXPECT_EQ(printed(u"*/"_s), u"[a-b/][a/][sub/]"_s);
}

TEST_F(ShellPaths, hiddenOnesNeedTheirDot) {
    EXPECT_EQ(printed(u"*dot"_s), u"[*dot]"_s);
    EXPECT_EQ(printed(u".d*"_s), u"[.dot]"_s);
    EXPECT_EQ(printed(u".*"_s), u"[.][..][.dot][.hidden]"_s);
    EXPECT_EQ(printed(u".*n/f"_s), u"[.hidden/f]"_s);
}

TEST_F(ShellPaths, quotesTakeThePowerFromAPattern) {
    EXPECT_EQ(printed(u"'*'star \"*\"* \\*s*"_s), u"[*star][*star][*star]"_s);
    EXPECT_EQ(printed(u"'*' [\"a-b\"].txt"_s), u"[*][a.txt][b.txt]"_s);
}

TEST_F(ShellPaths, comeFromUnquotedValuesToo) {
    EXPECT_EQ(printed(u"$(echo 'x*') && P='[ab].txt' && printargs $P \"$P\""_s),
              u"[x y.txt]\n[a.txt][b.txt][[ab].txt]"_s);
}

TEST_F(ShellPaths, ofAFolderThatMayNotBeReadAreNone) {
    bench.root().write(u"/private/var/root/secret"_s, {});
    EXPECT_EQ(bench.run(u"printargs /var/root/*"_s).output, u"[/var/root/*]\n"_s);
    EXPECT_EQ(bench.run(u"printargs /var/root/s*"_s, {}, Actor::Root).output, u"[/var/root/secret]\n"_s);
}

} // namespace
