#include "simulator/TestExpression.h"

#include "ToolRun.h"
#include "simulator/tools/TestCommand.h"
#include "simulator/tools/True.h"

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

class TestExpression : public testing::Test {
protected:
    TestExpression()
        : mac({{u"/usr/bin/true"_s, runTrue}}) {
        const Volume volume = mac.mac.volume(Actor::User);
        volume.write(u"/Users/alex/full"_s, "x");
        volume.write(u"/Users/alex/empty"_s, "");
        volume.createLink(u"/Users/alex/link"_s, u"full"_s);
        volume.createLink(u"/Users/alex/broken"_s, u"gone"_s);
    }

    /// A line whose words have no blanks; "''" is the empty word.
    ToolRun run(const QString& line, Actor actor = Actor::User) {
        QStringList words = line.split(u' ');
        words.replaceInStrings(u"''"_s, u""_s);
        return runTool(mac, runTestCommand, words, actor);
    }

    SimulatedMacFolder mac;
};

} // namespace

TEST_F(TestExpression, judgesExpressions) {
    const std::pair<const char16_t*, int> cases[] = {{u"test", 1},
                                                     {u"test x", 0},
                                                     {u"test ''", 1},
                                                     {u"test -f", 0},
                                                     {u"test ! ''", 0},
                                                     {u"test -n x", 0},
                                                     {u"test -z x", 1},
                                                     {u"test -z ''", 0},
                                                     {u"test -e full", 0},
                                                     {u"test -e gone", 1},
                                                     {u"test -e broken", 1},
                                                     {u"test -L broken", 0},
                                                     {u"test -h full", 1},
                                                     {u"test -f link", 0},
                                                     {u"test -f Library", 1},
                                                     {u"test -d Library", 0},
                                                     {u"test -d full", 1},
                                                     {u"test -s full", 0},
                                                     {u"test -s empty", 1},
                                                     {u"test -r full", 0},
                                                     {u"test -r /private/var/root", 1},
                                                     {u"test -r gone", 1},
                                                     {u"test -r /usr/bin/true", 0},
                                                     {u"test -w full", 0},
                                                     {u"test -w link", 0},
                                                     {u"test -w broken", 1},
                                                     {u"test -w Library", 0},
                                                     {u"test -w /Library", 1},
                                                     {u"test -w /usr/bin/true", 1},
                                                     {u"test -w /dev/null", 0},
                                                     {u"test -x Library", 0},
                                                     {u"test -x /private/var/root", 1},
                                                     {u"test -x gone", 1},
                                                     {u"test -x /usr/bin/true", 0},
                                                     {u"test -x full", 1},
                                                     {u"test -t 0", 1},
                                                     {u"test a = a", 0},
                                                     {u"test a != a", 1},
                                                     {u"test a < b", 0},
                                                     {u"test 10 -eq 010", 0},
                                                     {u"test 2 -lt 10", 0},
                                                     {u"test 2 -ge 10", 1},
                                                     {u"test 2 -le 2", 0},
                                                     {u"test 3 -gt 2", 0},
                                                     {u"test 3 -ne 3", 1},
                                                     {u"test link -ef full", 0},
                                                     {u"test empty -ef full", 1},
                                                     {u"test -n = -n", 0},
                                                     {u"test ! = x", 1},
                                                     {u"test ( = (", 0},
                                                     {u"test ( x )", 0},
                                                     {u"test a -a ''", 1},
                                                     {u"test a -o ''", 0},
                                                     {u"test ! -e gone", 0},
                                                     {u"test ! a = a", 1},
                                                     {u"test ( -e gone )", 1},
                                                     {u"test ( -n = )", 0},
                                                     {u"test -e full -a x", 0},
                                                     {u"test -e full -a -e gone", 1},
                                                     {u"test -e gone -a -e full", 1},
                                                     {u"test -e full -o -e gone -a -e gone", 0},
                                                     {u"test ( -e full -o -e gone ) -a -e gone", 1},
                                                     {u"test ! -e gone -a a = a", 0},
                                                     {u"[ -e full ]", 0},
                                                     {u"[ ]", 1}};
    for (const auto& [line, status] : cases) {
        EXPECT_EQ(run(QString::fromUtf16(line)), (ToolRun{status, {}, {}})) << QString::fromUtf16(line).toStdString();
    }
}

TEST_F(TestExpression, refusesWhatCannotBeRead) {
    const std::pair<const char16_t*, const char*> cases[] = {
        {u"test a b", "test: a: unexpected operator\n"},
        {u"test a b c", "test: b: unexpected operator\n"},
        {u"test a b c d", "test: b: unexpected operator\n"},
        {u"test x -eq 1", "test: x: bad number\n"},
        {u"test -e full -a -e full extra", "test: extra: unexpected operator\n"},
        {u"test ( -e full -a -e full", "test: closing paren expected\n"},
        {u"test a = b c", "test: c: unexpected operator\n"},
        {u"test -e full -a", "test: full: unexpected operator\n"},
        {u"test -e full -a -e full -a", "test: argument expected\n"},
        {u"test -u full", "test: -u: not simulated\n"},
        {u"test full -nt empty", "test: -nt: not simulated\n"},
        {u"[ a", "[: missing ]\n"},
        {u"[", "[: missing ]\n"},
        {u"/bin/[ a b ]", "[: a: unexpected operator\n"}};
    for (const auto& [line, error] : cases) {
        EXPECT_EQ(run(QString::fromUtf16(line)), (ToolRun{2, {}, error})) << QString::fromUtf16(line).toStdString();
    }
}

TEST_F(TestExpression, judgesByTheRightsOfTheActor) {
    EXPECT_EQ(run(u"test -r /private/var/root"_s, Actor::Root).status, 0);
    EXPECT_EQ(run(u"test -w /Library"_s, Actor::Root).status, 0);
    EXPECT_EQ(run(u"test -w /System"_s, Actor::Root).status, 1);
    EXPECT_EQ(run(u"test -x /private/var/root"_s, Actor::Root).status, 0);
}

TEST_F(TestExpression, groupsDeepInEachOtherEndInAMessage) {
    const int deepest = 200;
    const auto nested = [](int depth) {
        return u"test "_s + u"( "_s.repeated(depth) + u"x"_s + u" )"_s.repeated(depth);
    };
    EXPECT_EQ(run(nested(deepest)), (ToolRun{0, {}, {}}));
    EXPECT_EQ(run(nested(100000)), (ToolRun{2, {}, "test: too many groups in each other\n"}));
}

} // namespace macsim
