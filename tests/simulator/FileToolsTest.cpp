#include "ToolRun.h"
#include "simulator/tools/Cat.h"
#include "simulator/tools/Chown.h"
#include "simulator/tools/Echo.h"
#include "simulator/tools/Ls.h"
#include "simulator/tools/Mkdir.h"
#include "simulator/tools/Mv.h"
#include "simulator/tools/Rm.h"
#include "simulator/tools/Sh.h"
#include "simulator/tools/Touch.h"
#include "simulator/tools/True.h"

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

class FileTools : public testing::Test {
protected:
    FileTools()
        : mac({{u"/usr/bin/true"_s, runTrue}})
        , volume(mac.mac.volume(Actor::User)) {}

    ToolRun run(Tool tool, const QStringList& line, Actor actor = Actor::User) {
        return runTool(mac, tool, line, actor);
    }
    /// A line whose words have no blanks.
    ToolRun run(Tool tool, const char16_t* line, Actor actor = Actor::User) {
        return run(tool, QString::fromUtf16(line).split(u' '), actor);
    }

    SimulatedMacFolder mac;
    Volume volume;
};

using Rm = FileTools;
using Mkdir = FileTools;
using Mv = FileTools;
using Ls = FileTools;
using Chown = FileTools;

} // namespace

// rm

TEST_F(Rm, removesFilesAndTrees) {
    putFile(mac, u"/Users/alex/a"_s, "x");
    putFile(mac, u"/Users/alex/tree/deep/.hidden"_s, "x");
    EXPECT_EQ(run(runRm, u"rm a"), kSilent);
    EXPECT_EQ(run(runRm, u"rm -rf tree/"), kSilent);
    EXPECT_FALSE(volume.exists(u"/Users/alex/a"_s));
    EXPECT_FALSE(volume.exists(u"/Users/alex/tree"_s));
}

TEST_F(Rm, neverFollowsALink) {
    putFile(mac, u"/Users/alex/target/keep"_s, "x");
    putFile(mac, u"/Users/alex/tree/x"_s, "x");
    volume.createLink(u"/Users/alex/tree/link"_s, u"/Users/alex/target"_s);
    volume.createLink(u"/Users/alex/link"_s, u"/Users/alex/target"_s);
    EXPECT_EQ(run(runRm, u"rm -rf tree"), kSilent);
    EXPECT_EQ(run(runRm, u"rm -rf link/"), (ToolRun{1, {}, "rm: link/: Not a directory\n"}));
    EXPECT_EQ(run(runRm, u"rm -rf link"), kSilent);
    EXPECT_TRUE(volume.exists(u"/Users/alex/target/keep"_s));
    EXPECT_EQ(volume.kind(u"/Users/alex/link"_s), Volume::Kind::Missing);
}

TEST_F(Rm, aStarIsAnOrdinaryNameHere) {
    putFile(mac, u"/Users/alex/.Trash/old"_s, "x");
    EXPECT_EQ(run(runRm, u"rm -rf /Users/alex/.Trash/*"), kSilent);
    EXPECT_TRUE(volume.exists(u"/Users/alex/.Trash/old"_s));
}

TEST_F(Rm, missingFilesCountOnlyWithoutForce) {
    EXPECT_EQ(run(runRm, u"rm gone"), (ToolRun{1, {}, "rm: gone: No such file or directory\n"}));
    EXPECT_EQ(run(runRm, u"rm -f gone"), kSilent);
    EXPECT_EQ(run(runRm, u"rm -f"), kSilent);
}

TEST_F(Rm, goesOnAfterAFailure) {
    putFile(mac, u"/Users/alex/folder/x"_s, "x");
    putFile(mac, u"/Users/alex/last"_s, "x");
    EXPECT_EQ(run(runRm, u"rm gone folder last"),
              (ToolRun{1, {}, "rm: gone: No such file or directory\nrm: folder: is a directory\n"}));
    EXPECT_TRUE(volume.exists(u"/Users/alex/folder/x"_s));
    EXPECT_FALSE(volume.exists(u"/Users/alex/last"_s));
}

TEST_F(Rm, refusesTheRootAndTheDots) {
    EXPECT_EQ(run(runRm, {u"rm"_s, u"-rf"_s, u"/"_s}, Actor::Root), (ToolRun{1, {}, "rm: \"/\" may not be removed\n"}));
    EXPECT_EQ(run(runRm, {u"rm"_s, u"-rf"_s, u"//"_s}, Actor::Root).status, 1);
    for (const QString& path : {u"."_s, u".."_s, u"Library/."_s, u"Library/../"_s}) {
        EXPECT_EQ(run(runRm, {u"rm"_s, u"-rf"_s, path}), (ToolRun{1, {}, "rm: \".\" and \"..\" may not be removed\n"}));
    }
    EXPECT_TRUE(volume.exists(u"/Users/alex/Library"_s));
}

TEST_F(Rm, evenRootLeavesTheSealedSystem) {
    putFile(mac, u"/System/Library/x"_s, "x");
    const ToolRun refused = run(runRm, {u"rm"_s, u"-rf"_s, u"/System/Library/x"_s, u"/usr/bin/true"_s}, Actor::Root);
    EXPECT_EQ(refused, (ToolRun{1,
                                {},
                                "rm: /System/Library/x: Operation not permitted\n"
                                "rm: /usr/bin/true: Operation not permitted\n"}));
    EXPECT_TRUE(volume.exists(u"/System/Library/x"_s));
}

TEST_F(Rm, aUserLeavesWhatIsRoots) {
    putFile(mac, u"/Library/Preferences/x.plist"_s, "x");
    EXPECT_EQ(run(runRm, u"rm -f /Library/Preferences/x.plist"),
              (ToolRun{1, {}, "rm: /Library/Preferences/x.plist: Permission denied\n"}));
    EXPECT_EQ(run(runRm, {u"rm"_s, u"/Library/Preferences/x.plist"_s}, Actor::Root), kSilent);
}

TEST_F(Rm, unknownOptionsAreRefusedAndUnsimulatedOnesAreLoud) {
    putFile(mac, u"/Users/alex/a"_s, "x");
    const QByteArray usage = "usage: rm [-f | -i] [-dIPRrvWx] file ...\n       unlink [--] file\n";
    EXPECT_EQ(run(runRm, u"rm -rq a"), (ToolRun{64, {}, "rm: illegal option -- q\n" + usage}));
    EXPECT_EQ(run(runRm, u"rm"), (ToolRun{64, {}, usage}));
    EXPECT_EQ(run(runRm, u"rm -i a"), (ToolRun{70, {}, "rm: -i: not simulated\n"}));
    EXPECT_TRUE(volume.exists(u"/Users/alex/a"_s));
    putFile(mac, u"/Users/alex/-f"_s, "x");
    EXPECT_EQ(run(runRm, u"rm -- -f"), kSilent);
    EXPECT_FALSE(volume.exists(u"/Users/alex/-f"_s));
}

// mkdir

TEST_F(Mkdir, makesFoldersWithTheirParents) {
    EXPECT_EQ(run(runMkdir, u"mkdir one"), kSilent);
    EXPECT_EQ(run(runMkdir, u"mkdir -p -m 700 a/b/c/ one"), kSilent);
    EXPECT_TRUE(volume.isFolder(u"/Users/alex/one"_s));
    EXPECT_TRUE(volume.isFolder(u"/Users/alex/a/b/c"_s));
    EXPECT_EQ(run(runMkdir, {u"mkdir"_s, u"-p"_s, u"/Users/alex/x y/z"_s}), kSilent);
    EXPECT_TRUE(volume.isFolder(u"/Users/alex/x y/z"_s));
}

TEST_F(Mkdir, namesWhatStandsInTheWay) {
    putFile(mac, u"/Users/alex/file"_s, "x");
    const std::pair<const char16_t*, const char*> cases[] = {
        {u"mkdir file", "mkdir: file: File exists\n"},
        {u"mkdir Library", "mkdir: Library: File exists\n"},
        {u"mkdir gone/sub", "mkdir: gone: No such file or directory\n"},
        {u"mkdir -p file", "mkdir: file: File exists\n"},
        {u"mkdir -p file/sub", "mkdir: file: Not a directory\n"},
        {u"mkdir /Library/x", "mkdir: /Library/x: Permission denied\n"},
        {u"mkdir -p /System/x/y", "mkdir: /System/x: Operation not permitted\n"}};
    for (const auto& [line, error] : cases) {
        EXPECT_EQ(run(runMkdir, line), (ToolRun{1, {}, error}));
    }
    EXPECT_EQ(run(runMkdir, u"mkdir").status, 64);
}

// mv

TEST_F(Mv, renamesAndReplaces) {
    putFile(mac, u"/Users/alex/a"_s, "new");
    putFile(mac, u"/Users/alex/b"_s, "old");
    EXPECT_EQ(run(runMv, u"mv -n a b"), kSilent);
    EXPECT_EQ(volume.read(u"/Users/alex/b"_s), "old");
    EXPECT_EQ(run(runMv, u"mv -f a b"), kSilent);
    EXPECT_EQ(volume.read(u"/Users/alex/b"_s), "new");
    EXPECT_FALSE(volume.exists(u"/Users/alex/a"_s));
}

TEST_F(Mv, aFolderAsTargetTakesTheSourcesIn) {
    putFile(mac, u"/Users/alex/a"_s, "a");
    putFile(mac, u"/Users/alex/tree/x"_s, "x");
    EXPECT_EQ(run(runMv, u"mv a tree/ Music"), kSilent);
    EXPECT_EQ(volume.read(u"/Users/alex/Music/a"_s), "a");
    EXPECT_EQ(volume.read(u"/Users/alex/Music/tree/x"_s), "x");
}

TEST_F(Mv, aNameTakesANewSpelling) {
    putFile(mac, u"/Users/alex/Song"_s, "x");
    volume.createFolder(u"/Users/alex/Takes"_s);
    EXPECT_EQ(run(runMv, u"mv Song song"), kSilent);
    EXPECT_EQ(run(runMv, u"mv Takes takes"), kSilent);
    const QStringList names = volume.list(u"/Users/alex"_s);
    EXPECT_TRUE(names.contains(u"song"_s));
    EXPECT_TRUE(names.contains(u"takes"_s));
    EXPECT_FALSE(names.contains(u"Takes"_s));
}

TEST_F(Mv, namesBothEndsOfAFailure) {
    putFile(mac, u"/Users/alex/a"_s, "x");
    const std::pair<const char16_t*, const char*> cases[] = {
        {u"mv gone b", "mv: rename gone to b: No such file or directory\n"},
        {u"mv a no/b", "mv: rename a to no/b: No such file or directory\n"},
        {u"mv a /Library/a", "mv: rename a to /Library/a: Permission denied\n"},
        {u"mv a /System", "mv: rename a to /System/a: Operation not permitted\n"},
        {u"mv Library a", "mv: rename Library to a: Not a directory\n"}};
    for (const auto& [line, error] : cases) {
        EXPECT_EQ(run(runMv, line), (ToolRun{1, {}, error}));
    }
    EXPECT_EQ(run(runMv, u"mv a b c").status, 64);
    EXPECT_EQ(run(runMv, u"mv a").status, 64);
    EXPECT_TRUE(volume.exists(u"/Users/alex/a"_s));
}

// touch, cat, echo, true and false

TEST_F(FileTools, touchCreatesWhatIsMissing) {
    putFile(mac, u"/Users/alex/full"_s, "text");
    EXPECT_EQ(run(runTouch, u"touch new full"), kSilent);
    EXPECT_EQ(volume.read(u"/Users/alex/new"_s), "");
    EXPECT_EQ(volume.read(u"/Users/alex/full"_s), "text");
    EXPECT_EQ(run(runTouch, u"touch -c other"), kSilent);
    EXPECT_FALSE(volume.exists(u"/Users/alex/other"_s));
    EXPECT_EQ(run(runTouch, u"touch /Library/x"), (ToolRun{1, {}, "touch: /Library/x: Permission denied\n"}));
}

TEST_F(FileTools, catJoinsFilesAndInput) {
    putFile(mac, u"/Users/alex/a"_s, QByteArray("A\0\xff", 3));
    ToolContext context = mac.context({u"cat"_s, u"a"_s, u"gone"_s, u"-"_s, u"Library"_s});
    context.input = "in";
    EXPECT_EQ(runCat(context), 1);
    EXPECT_EQ(context.output, QByteArray("A\0\xffin", 5));
    EXPECT_EQ(context.error, "cat: gone: No such file or directory\ncat: Library: Is a directory\n");
    EXPECT_EQ(run(runCat, u"cat -q"),
              (ToolRun{1, {}, "cat: illegal option -- q\nusage: cat [-belnstuv] [file ...]\n"}));
}

TEST(Cat, readsItsInputOnce) {
    SimulatedMacFolder folder({{u"/bin/cat"_s, runCat}, {u"/bin/echo"_s, runEcho}, {u"/bin/sh"_s, runSh}});
    EXPECT_EQ(runTool(folder, runSh, {u"sh"_s, u"-c"_s, u"echo a | sh -c 'cat; cat'"_s}), (ToolRun{0, "a\n", {}}));
    EXPECT_EQ(runTool(folder, runSh, {u"sh"_s, u"-c"_s, u"echo a | cat - -"_s}), (ToolRun{0, "a\n", {}}));
}

TEST_F(FileTools, echoKnowsNoEscapesButTheLast) {
    const std::pair<QStringList, const char*> cases[] = {{{u"echo"_s}, "\n"},
                                                         {{u"echo"_s, u"a"_s, u"b c"_s}, "a b c\n"},
                                                         {{u"echo"_s, u"-n"_s, u"a"_s}, "a"},
                                                         {{u"echo"_s, u"-e"_s, u"a\\nb"_s}, "-e a\\nb\n"},
                                                         {{u"echo"_s, u"a\\c"_s}, "a"}};
    for (const auto& [line, output] : cases) {
        EXPECT_EQ(run(runEcho, line), (ToolRun{0, output, {}}));
    }
}

TEST_F(FileTools, trueAndFalseIgnoreTheirArguments) {
    EXPECT_EQ(run(runTrue, u"true --help"), kSilent);
    EXPECT_EQ(run(runFalse, u"false --help"), (ToolRun{1, {}, {}}));
}

// ls

TEST_F(Ls, listsOneNamePerLine) {
    putFile(mac, u"/Users/alex/Music/b"_s, "x");
    putFile(mac, u"/Users/alex/Music/.a"_s, "x");
    EXPECT_EQ(run(runLs, u"ls Music"), (ToolRun{0, "b\n", {}}));
    EXPECT_EQ(run(runLs, u"ls -1a Music"), (ToolRun{0, ".\n..\n.a\nb\n", {}}));
    EXPECT_EQ(run(runLs, u"ls -d Music"), (ToolRun{0, "Music\n", {}}));
}

TEST_F(Ls, tellsOfMissingFilesFirstThenFilesThenFolders) {
    putFile(mac, u"/Users/alex/Music/b"_s, "x");
    putFile(mac, u"/Users/alex/z"_s, "x");
    EXPECT_EQ(run(runLs, u"ls Music gone z Desktop"),
              (ToolRun{1, "z\n\nDesktop:\n\nMusic:\nb\n", "ls: gone: No such file or directory\n"}));
    EXPECT_EQ(run(runLs, u"ls /private/var/root"), (ToolRun{1, {}, "ls: /private/var/root: Permission denied\n"}));
}

TEST_F(Ls, theLongFormTellsKindOwnerAndSize) {
    putFile(mac, u"/Users/alex/Music/b"_s, "12345");
    volume.createLink(u"/Users/alex/Music/l"_s, u"b"_s);
    EXPECT_EQ(run(runLs, u"ls -l Music"), (ToolRun{0,
                                                   "total 1\n-rw-r--r--  1 alex  staff         5 Jan  1  2024 b\n"
                                                   "lrwxr-xr-x  1 alex  staff         1 Jan  1  2024 l -> b\n",
                                                   {}}));
    EXPECT_TRUE(run(runLs, u"ls -ld /Library").output.startsWith("drwxr-xr-x  1 root  wheel "));
    EXPECT_EQ(run(runLs, u"ls -R").status, 70);
}

TEST_F(Ls, theLongFormTellsWhatRootMadeInTheUsersFolder) {
    EXPECT_EQ(run(runTouch, u"touch Music/x", Actor::Root).status, 1); // root's own home has no Music
    EXPECT_EQ(run(runTouch, u"touch /Users/alex/Music/x", Actor::Root), kSilent);
    EXPECT_EQ(run(runLs, u"ls -l Music"),
              (ToolRun{0, "total 0\n-rw-r--r--  1 root  staff         0 Jan  1  2024 x\n", {}}));
}

// owners

TEST_F(FileTools, whatRootRedirectsIntoTheUsersFolderIsRootsAndReadable) {
    EXPECT_EQ(run(runSh, {u"sh"_s, u"-c"_s, u"echo new > /tmp/dump"_s}, Actor::Root), kSilent);
    EXPECT_EQ(volume.owner(u"/tmp/dump"_s), Actor::Root);
    EXPECT_EQ(run(runCat, u"cat /tmp/dump"), (ToolRun{0, "new\n", {}}));
    EXPECT_EQ(run(runRm, u"rm -f /tmp/dump"), (ToolRun{1, {}, "rm: /tmp/dump: Permission denied\n"}));
}

TEST_F(Rm, leavesWhatIsInRootsFolder) {
    EXPECT_EQ(run(runMkdir, u"mkdir -p /Users/alex/tree/roots", Actor::Root), kSilent);
    EXPECT_EQ(run(runTouch, u"touch /Users/alex/tree/roots/x", Actor::Root), kSilent);
    EXPECT_EQ(run(runRm, u"rm -rf tree"), (ToolRun{1,
                                                   {},
                                                   "rm: tree/roots/x: Permission denied\n"
                                                   "rm: tree/roots: Permission denied\n"
                                                   "rm: tree: Directory not empty\n"}));
    EXPECT_TRUE(volume.exists(u"/Users/alex/tree/roots/x"_s));
    EXPECT_EQ(run(runRm, u"rm -rf /Users/alex/tree", Actor::Root), kSilent);
}

TEST_F(Mv, rootsFolderStaysInItsFolder) {
    EXPECT_EQ(run(runMkdir, u"mkdir /Users/alex/roots", Actor::Root), kSilent);
    EXPECT_EQ(run(runMv, u"mv roots Documents"),
              (ToolRun{1, {}, "mv: rename roots to Documents/roots: Permission denied\n"}));
    EXPECT_EQ(run(runMv, u"mv roots renamed"), kSilent);
    EXPECT_EQ(volume.owner(u"/Users/alex/renamed"_s), Actor::Root);
}

TEST_F(Mv, rootMovesAFileAndItStaysTheUsers) {
    putFile(mac, u"/Users/alex/x.plist"_s, "x");
    EXPECT_EQ(run(runMv, u"mv /Users/alex/x.plist /Library/LaunchAgents", Actor::Root), kSilent);
    EXPECT_EQ(volume.owner(u"/Library/LaunchAgents/x.plist"_s), Actor::User);
}

TEST_F(Chown, givesFilesAndTreesAway) {
    putFile(mac, u"/Users/alex/tree/x"_s, "x");
    putFile(mac, u"/Users/alex/target"_s, "x");
    volume.createLink(u"/Users/alex/tree/link"_s, u"/Users/alex/target"_s);
    EXPECT_EQ(run(runChown, u"chown root:wheel /Users/alex/tree", Actor::Root), kSilent);
    EXPECT_EQ(volume.owner(u"/Users/alex/tree"_s), Actor::Root);
    EXPECT_EQ(volume.owner(u"/Users/alex/tree/x"_s), Actor::User);
    EXPECT_EQ(run(runChown, u"chown -R 0 /Users/alex/tree", Actor::Root), kSilent);
    EXPECT_EQ(volume.owner(u"/Users/alex/tree/x"_s), Actor::Root);
    EXPECT_EQ(volume.owner(u"/Users/alex/target"_s), Actor::User);
    EXPECT_EQ(run(runChown, u"chown -R alex:staff /Users/alex/tree", Actor::Root), kSilent);
    EXPECT_EQ(volume.owner(u"/Users/alex/tree/x"_s), Actor::User);
    EXPECT_EQ(run(runChown, u"chown root /Users/alex/tree/link", Actor::Root), kSilent);
    EXPECT_EQ(volume.owner(u"/Users/alex/target"_s), Actor::Root);
}

TEST_F(Chown, refusesWhatItCannotDo) {
    putFile(mac, u"/Users/alex/x"_s, "x");
    EXPECT_EQ(run(runChown, u"chown root x"), (ToolRun{1, {}, "chown: x: Operation not permitted\n"}));
    EXPECT_EQ(volume.owner(u"/Users/alex/x"_s), Actor::User);
    EXPECT_EQ(run(runChown, u"chown root /gone /Users/alex/x", Actor::Root),
              (ToolRun{1, {}, "chown: /gone: No such file or directory\n"}));
    EXPECT_EQ(volume.owner(u"/Users/alex/x"_s), Actor::Root);
    EXPECT_EQ(run(runChown, u"chown nobody /Users/alex/x", Actor::Root),
              (ToolRun{1, {}, "chown: nobody: illegal user name\n"}));
    EXPECT_EQ(run(runChown, u"chown root:band /Users/alex/x", Actor::Root),
              (ToolRun{1, {}, "chown: band: illegal group name\n"}));
    EXPECT_EQ(run(runChown, u"chown root").status, 1);
    EXPECT_EQ(run(runChown, u"chown :wheel x").status, 70);
    EXPECT_EQ(run(runChown, u"chown -h root x").status, 70);
}

} // namespace macsim
