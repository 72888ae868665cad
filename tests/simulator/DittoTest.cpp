#include "simulator/tools/Ditto.h"

#include "ToolRun.h"

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

class Ditto : public testing::Test {
protected:
    ToolRun run(const QStringList& words, Actor actor = Actor::User) {
        return runTool(mac, runDitto, QStringList{u"ditto"_s} + words, actor);
    }
    Volume disk() const { return mac.mac.volume(Actor::Root); }

    SimulatedMacFolder mac;
};

} // namespace

TEST_F(Ditto, aMissingSourceIsNamed) {
    EXPECT_EQ(run({u"/Users/alex/it's gone"_s, u"/Users/alex/copy"_s}),
              (ToolRun{1, {}, "ditto: can't get real path for source '/Users/alex/it's gone'\n"}));
    EXPECT_FALSE(disk().exists(u"/Users/alex/copy"_s));
}

TEST_F(Ditto, copiesAFileAndMakesTheFoldersOnTheWay) {
    putFile(mac, u"/Users/alex/a file.plist"_s, "bytes");
    EXPECT_EQ(run({u"a file.plist"_s, u"/Users/alex/.backup/x/y/b.plist"_s}), kSilent);
    EXPECT_EQ(disk().read(u"/Users/alex/.backup/x/y/b.plist"_s), "bytes");
    EXPECT_EQ(disk().read(u"/Users/alex/a file.plist"_s), "bytes");
}

TEST_F(Ditto, aFileGoesIntoAFolderThatIsThere) {
    putFile(mac, u"/Users/alex/a"_s, "bytes");
    EXPECT_EQ(run({u"a"_s, u"Documents"_s}), kSilent);
    EXPECT_EQ(disk().read(u"/Users/alex/Documents/a"_s), "bytes");
}

TEST_F(Ditto, aFolderIsMergedIntoTheTarget) {
    putFile(mac, u"/Users/alex/X.app/Contents/Info.plist"_s, "new");
    putFile(mac, u"/Users/alex/X.app/Contents/MacOS/X"_s, "program");
    disk().createFolders(u"/Users/alex/X.app/Contents/Empty"_s);
    putFile(mac, u"/Users/alex/Copy.app/Contents/Info.plist"_s, "old and longer");
    putFile(mac, u"/Users/alex/Copy.app/Contents/kept"_s, "kept");
    EXPECT_EQ(run({u"X.app"_s, u"Copy.app"_s}), kSilent);
    EXPECT_EQ(disk().read(u"/Users/alex/Copy.app/Contents/Info.plist"_s), "new");
    EXPECT_EQ(disk().read(u"/Users/alex/Copy.app/Contents/MacOS/X"_s), "program");
    EXPECT_EQ(disk().read(u"/Users/alex/Copy.app/Contents/kept"_s), "kept");
    EXPECT_TRUE(disk().isFolder(u"/Users/alex/Copy.app/Contents/Empty"_s));
}

TEST_F(Ditto, linksInsideStayLinksAndTheSourceItselfIsFollowed) {
    putFile(mac, u"/Users/alex/X/Versions/A/X"_s, "program");
    disk().createLink(u"/Users/alex/X/Versions/Current"_s, u"A"_s);
    disk().createLink(u"/Users/alex/X/gone"_s, u"/no/such/place"_s);
    disk().createLink(u"/Users/alex/alias"_s, u"X"_s);
    for (int time = 0; time < 2; ++time) {
        EXPECT_EQ(run({u"alias"_s, u"Y"_s}), kSilent);
        EXPECT_EQ(disk().kind(u"/Users/alex/Y"_s), Volume::Kind::Folder);
        EXPECT_EQ(disk().kind(u"/Users/alex/Y/Versions/Current"_s), Volume::Kind::Link);
        EXPECT_EQ(disk().linkTarget(u"/Users/alex/Y/Versions/Current"_s), u"A"_s);
        EXPECT_EQ(disk().linkTarget(u"/Users/alex/Y/gone"_s), u"/no/such/place"_s);
    }
}

TEST_F(Ditto, aFileDoesNotWriteThroughALinkAtItsPlace) {
    putFile(mac, u"/Users/alex/X/a"_s, "new");
    putFile(mac, u"/Users/alex/precious"_s, "precious");
    mac.mac.volume(Actor::User).createFolders(u"/Users/alex/Y"_s);
    disk().createLink(u"/Users/alex/Y/a"_s, u"/Users/alex/precious"_s);
    EXPECT_EQ(run({u"X"_s, u"Y"_s}), kSilent);
    EXPECT_EQ(disk().read(u"/Users/alex/precious"_s), "precious");
    EXPECT_EQ(disk().kind(u"/Users/alex/Y/a"_s), Volume::Kind::File);
}

TEST_F(Ditto, aTargetInsideTheSourceComesToAnEnd) {
    putFile(mac, u"/Users/alex/X/a"_s, "bytes");
    EXPECT_EQ(run({u"X"_s, u"X/copy"_s}), kSilent);
    EXPECT_EQ(disk().list(u"/Users/alex/X/copy"_s), QStringList{u"a"_s});
}

TEST_F(Ditto, whatTheUserMayNotWriteIsToldAndRootMay) {
    putFile(mac, u"/Users/alex/X/a"_s, "bytes");
    const ToolRun refused = run({u"X"_s, u"/Library/X"_s});
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.error, "ditto: /Library/X: Permission denied\n");
    EXPECT_FALSE(disk().exists(u"/Library/X"_s));
    EXPECT_EQ(run({u"/Users/alex/X"_s, u"/Library/X"_s}, Actor::Root), kSilent);
    EXPECT_EQ(disk().read(u"/Library/X/a"_s), "bytes");
    EXPECT_EQ(disk().owner(u"/Library/X/a"_s), Actor::User) << "root's copy keeps the owner";
}

TEST_F(Ditto, aFileAtTheTargetOfAFolderIsKept) {
    putFile(mac, u"/Users/alex/X/a"_s, "bytes");
    putFile(mac, u"/Users/alex/file"_s, "kept");
    EXPECT_EQ(run({u"X"_s, u"file"_s}), (ToolRun{1, {}, "ditto: /Users/alex/file: Not a directory\n"}));
    EXPECT_EQ(disk().read(u"/Users/alex/file"_s), "kept");
}

TEST_F(Ditto, whatIsNotSimulatedFailsLoudly) {
    EXPECT_EQ(run({u"-c"_s, u"-k"_s, u"a"_s, u"b.zip"_s}).status, 70);
    EXPECT_EQ(run({u"a"_s, u"b"_s, u"c"_s}).status, 70);
    EXPECT_EQ(run({u"a"_s}).status, 1);
}

} // namespace macsim
