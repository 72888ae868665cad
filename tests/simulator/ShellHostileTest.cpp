#include "simulator/ShellBench.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QDirIterator>
#include <QFile>

using namespace macsim;
using namespace Qt::StringLiterals;

namespace {

/// A Mac with something worth taking beside its folder on the host.
class ShellHostile : public testing::Test {
protected:
    ShellHostile() {
        QFile secret(bench.mac.outside() + u"/secret"_s);
        EXPECT_TRUE(secret.open(QIODevice::WriteOnly) && secret.write("host") == 4);
        bench.user().createLink(u"/Users/alex/file-out"_s, bench.mac.outside() + u"/secret"_s);
        bench.user().createLink(u"/Users/alex/folder-out"_s, bench.mac.outside());
        bench.user().createLink(u"/Users/alex/up"_s, u"../../../../../../../../.."_s);
        bench.user().createLink(u"/Users/alex/etc-out"_s, u"/etc"_s);
    }

public:
    ~ShellHostile() override {
        EXPECT_EQ(QDir(bench.mac.outside()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                  (QStringList{u"Mac"_s, u"secret"_s}));
        QFile secret(bench.mac.outside() + u"/secret"_s);
        EXPECT_TRUE(secret.open(QIODevice::ReadOnly));
        EXPECT_EQ(secret.readAll(), QByteArray("host"));
    }

protected:
    ShellBench bench;
};

TEST_F(ShellHostile, readingEndsAtTheFolder) {
    const QString host = bench.mac.outside() + u"/secret"_s;
    for (const QString& path : {u"/../../../secret"_s, u"/../../../etc/hostname"_s, host, u"/Users/alex/file-out"_s,
                                u"/Users/alex/folder-out/secret"_s, u"/Users/alex/up/etc/hostname"_s,
                                u"/Users/alex/etc-out/hostname"_s, u"/proc/self/environ"_s, u"/../Mac/../secret"_s,
                                u"../../../secret"_s, u"/Users/alex/folder-out/../secret"_s}) {
        for (const Actor actor : {Actor::User, Actor::Root}) {
            for (const QString& line :
                 {u"cat "_s + path, u"cat <"_s + path, u"test -e "_s + path, u"echo $(cat "_s + path + u')'}) {
                const ShellOutcome outcome = bench.run(line, {}, actor);
                EXPECT_EQ(outcome.output.trimmed(), QString()) << line.toStdString();
                EXPECT_EQ(outcome.status == 0, line.startsWith(u"echo"_s)) << line.toStdString();
            }
        }
    }
}

TEST_F(ShellHostile, writingEndsAtTheFolder) {
    EXPECT_EQ(bench.run(u"echo a > /../../Users/alex/x; echo b >> ../../../tmp/y"_s).status, 0);
    EXPECT_EQ(bench.file(u"/Users/alex/x"_s), u"a\n"_s);
    EXPECT_EQ(bench.file(u"/private/tmp/y"_s), u"b\n"_s);
    EXPECT_EQ(bench.run(u"echo a > /../../x"_s, {}, Actor::User).status, 1);
    for (const QString& path :
         {bench.mac.outside() + u"/secret"_s, bench.mac.outside() + u"/new"_s, u"/Users/alex/file-out"_s,
          u"/Users/alex/folder-out/secret"_s, u"/Users/alex/folder-out/new"_s}) {
        EXPECT_EQ(bench.run(u"echo a > "_s + path).status, 1) << path.toStdString();
        EXPECT_EQ(bench.run(u"echo a >> "_s + path, {}, Actor::Root).status, 1) << path.toStdString();
    }
}

TEST_F(ShellHostile, foldersAndPatternsEndAtTheFolder) {
    EXPECT_EQ(bench.run(u"cd /Users/alex/folder-out"_s).status, 1);
    EXPECT_EQ(bench.run(u"cd /Users/alex/up && pwd -P && printargs B* b*"_s).output, u"/\n[B*][bin]\n"_s);
    EXPECT_EQ(bench.run(u"printargs /../secre* /Users/alex/folder-out/* ../../../secre*"_s).output,
              u"[/../secre*][/Users/alex/folder-out/*][../../../secre*]\n"_s);
    EXPECT_EQ(bench.run(u"cd /../../..; printargs ../Use*"_s).output, u"[../Users]\n"_s);
}

TEST_F(ShellHostile, programsOfTheHostAreNotThere) {
    for (const QString& line :
         {u"/bin/rm -rf /"_s, u"rm -rf / --no-preserve-root"_s, u"ls"_s, u"/bin/ls /"_s, u"env ls"_s,
          u"PATH=/usr/bin:/bin ls"_s, u"/proc/self/exe"_s, u"/Users/alex/up/bin/ls"_s, u"python3 -c 1"_s,
          u"$(echo l)s"_s, u"`echo touch` /tmp/x"_s}) {
        EXPECT_EQ(bench.run(line, {}, Actor::Root).status, 127) << line.toStdString();
    }
    ASSERT_TRUE(QFile::link(u"/bin/ls"_s, bench.mac.hostFolder() + u"/usr/bin/hostls"_s));
    EXPECT_NE(bench.run(u"hostls /"_s).status, 0);
    EXPECT_EQ(bench.run(u"hostls /"_s).output, QString());
}

TEST_F(ShellHostile, quotedTextIsNeverACommand) {
    const QString name = u"'; note hacked; '$(note hacked)`note hacked`\"; note hacked\n&& note hacked | #\\"_s;
    const QString quoted = u'\'' + QString(name).replace(u'\'', u"'\\''"_s) + u'\'';
    EXPECT_EQ(bench.run(u"printargs "_s + quoted).output, u'[' + name + u"]\n"_s);
    EXPECT_EQ(bench.run(u"A="_s + quoted + u"; printargs \"$A\""_s).output, u'[' + name + u"]\n"_s);
    EXPECT_EQ(bench.run(u"echo x > "_s + QString(quoted).replace(u'/', u'_') + u"; echo *hacked*"_s).status, 0);
    EXPECT_EQ(ShellBench::noted(), QStringList());
}

TEST_F(ShellHostile, quotesThatBreakOutAreSeen) {
    EXPECT_EQ(bench.run(u"printargs 'it's; note a'"_s).status, 2);
    EXPECT_EQ(ShellBench::noted(), QStringList());
    bench.run(u"printargs 'a'; note hacked; ''"_s);
    EXPECT_EQ(ShellBench::noted(), QStringList{u"hacked"_s});
}

TEST_F(ShellHostile, aShellThatStartsItselfEnds) {
    ToolContext context = bench.mac.context({u"sh"_s});
    context.environment[u"X"_s] = u"sh -c \"$X\"; sh -c \"$X\""_s;
    const ShellOutcome outcome = ShellBench::run(u"sh -c \"$X\""_s, context);
    EXPECT_EQ(outcome, (ShellOutcome{254, {}, u"sh: fork: Resource temporarily unavailable\n"_s}));
    EXPECT_EQ(bench.run(u"echo a"_s).output, u"a\n"_s);
}

TEST_F(ShellHostile, shellsInDeepNestsEndToo) {
    ToolContext context = bench.mac.context({u"sh"_s});
    context.environment[u"X"_s] = u"echo \"$("_s.repeated(199) + u"sh -c \"$X\""_s + u")\""_s.repeated(199);
    EXPECT_EQ(ShellBench::run(u"sh -c \"$X\""_s, context).status, 254);
}

TEST_F(ShellHostile, aLinkThatTurnsInCirclesIsNoFile) {
    bench.user().createLink(u"/Users/alex/round"_s, u"round"_s);
    EXPECT_EQ(bench.run(u"cat </Users/alex/round"_s).status, 1);
    EXPECT_EQ(bench.run(u"echo a >/Users/alex/round"_s).status, 1);
    EXPECT_NE(bench.run(u"/Users/alex/round"_s).status, 0);
    EXPECT_EQ(
        bench
            .run(
                u"test -e /Users/alex/round || test -f /Users/alex/round || test -s /Users/alex/round || test -w /Users/alex/round"_s)
            .status,
        1);
}

} // namespace
