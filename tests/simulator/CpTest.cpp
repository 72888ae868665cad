#include "simulator/tools/Cp.h"

#include "ToolRun.h"

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

class Cp : public testing::Test {
protected:
    ToolRun run(const char16_t* line, Actor actor = Actor::User) {
        return runTool(mac, runCp, QString::fromUtf16(line).split(u' '), actor);
    }
    static ToolRun failed(const QByteArray& error) { return {1, {}, error}; }

    SimulatedMacFolder mac;
    Volume volume = mac.mac.volume(Actor::User);
    Volume root = mac.mac.volume(Actor::Root);
};

} // namespace

TEST_F(Cp, copiesAFileToANewNameOrIntoAFolder) {
    volume.write(u"/Users/alex/a"_s, QByteArray("a\0b", 3));
    EXPECT_EQ(run(u"cp a b"), kSilent);
    EXPECT_EQ(run(u"cp /Users/alex/a /Users/alex/Music/"), kSilent);
    EXPECT_EQ(run(u"cp a b Documents"), kSilent);
    for (const QString& copy : {u"a"_s, u"b"_s, u"Music/a"_s, u"Documents/a"_s, u"Documents/b"_s}) {
        EXPECT_EQ(volume.read(u"/Users/alex/"_s + copy), QByteArray("a\0b", 3)) << copy.toStdString();
    }
}

TEST_F(Cp, aFileAtTheTargetGetsTheBytesAndKeepsItsOwner) {
    volume.write(u"/Users/alex/mine"_s, "new");
    volume.write(u"/Users/alex/roots"_s, "old");
    volume.write(u"/Users/alex/theirs"_s, "longer than the new one");
    root.setOwner(u"/Users/alex/roots"_s, Actor::Root);
    EXPECT_EQ(run(u"cp mine roots"), failed("cp: roots: Permission denied\n"));
    EXPECT_EQ(volume.read(u"/Users/alex/roots"_s), "old");
    EXPECT_EQ(run(u"cp /Users/alex/mine /Users/alex/roots", Actor::Root), kSilent);
    EXPECT_EQ(volume.read(u"/Users/alex/roots"_s), "new");
    EXPECT_EQ(volume.owner(u"/Users/alex/roots"_s), Actor::Root);
    EXPECT_EQ(run(u"cp /Users/alex/mine /Users/alex/theirs", Actor::Root), kSilent);
    EXPECT_EQ(volume.read(u"/Users/alex/theirs"_s), "new");
    EXPECT_EQ(volume.owner(u"/Users/alex/theirs"_s), Actor::User);
}

TEST_F(Cp, aNewFileIsItsMakersUnlessRootKeepsTheOwner) {
    volume.write(u"/Users/alex/a"_s, "x");
    EXPECT_EQ(run(u"cp /Users/alex/a /Library/plain", Actor::Root), kSilent);
    EXPECT_EQ(run(u"cp -p /Users/alex/a /Library/kept", Actor::Root), kSilent);
    EXPECT_EQ(root.owner(u"/Library/plain"_s), Actor::Root);
    EXPECT_EQ(root.owner(u"/Library/kept"_s), Actor::User);
    EXPECT_EQ(run(u"cp -p /Library/plain /Users/alex/taken"), kSilent);
    EXPECT_EQ(volume.owner(u"/Users/alex/taken"_s), Actor::User);
}

TEST_F(Cp, theTimeIsKeptOnRequest) {
    const QDateTime time(QDate(2024, 5, 6), QTime(7, 8, 9), Qt::UTC);
    volume.write(u"/Users/alex/a"_s, "x");
    volume.setModificationTime(u"/Users/alex/a"_s, time);
    EXPECT_EQ(run(u"cp a plain"), kSilent);
    EXPECT_EQ(run(u"cp -p a kept"), kSilent);
    EXPECT_NE(volume.modificationTime(u"/Users/alex/plain"_s), time);
    EXPECT_EQ(volume.modificationTime(u"/Users/alex/kept"_s), time);
}

TEST_F(Cp, linksAreFollowedOnBothSides) {
    volume.write(u"/Users/alex/a"_s, "x");
    volume.write(u"/Users/alex/b"_s, "y");
    volume.createLink(u"/Users/alex/toA"_s, u"a"_s);
    volume.createLink(u"/Users/alex/toB"_s, u"b"_s);
    EXPECT_EQ(run(u"cp toA toB"), kSilent);
    EXPECT_EQ(volume.kind(u"/Users/alex/toB"_s), Volume::Kind::Link);
    EXPECT_EQ(volume.read(u"/Users/alex/b"_s), "x");
}

TEST_F(Cp, whatCannotBeCopiedIsToldOfAndTheRestIsCopied) {
    volume.write(u"/Users/alex/last"_s, "x");
    EXPECT_EQ(run(u"cp gone Music last Documents"), failed("cp: gone: No such file or directory\n"
                                                           "cp: Music is a directory (not copied).\n"));
    EXPECT_EQ(volume.read(u"/Users/alex/Documents/last"_s), "x");
}

TEST_F(Cp, aFileIsNotCopiedOntoItself) {
    volume.write(u"/Users/alex/a"_s, "x");
    volume.createLink(u"/Users/alex/link"_s, u"a"_s);
    EXPECT_EQ(run(u"cp a a"), failed("cp: a and a are identical (not copied).\n"));
    EXPECT_EQ(run(u"cp a link"), failed("cp: link and a are identical (not copied).\n"));
    EXPECT_EQ(run(u"cp a /Users/alex"), failed("cp: /Users/alex/a and a are identical (not copied).\n"));
    EXPECT_EQ(volume.read(u"/Users/alex/a"_s), "x");
}

TEST_F(Cp, aTargetThatIsNoFolderIsToldOf) {
    volume.write(u"/Users/alex/a"_s, "x");
    volume.write(u"/Users/alex/b"_s, "y");
    EXPECT_EQ(run(u"cp a gone/"), failed("cp: directory gone/ does not exist\n"));
    EXPECT_EQ(run(u"cp a b/"), failed("cp: b/ is not a directory\n"));
    EXPECT_EQ(run(u"cp a gone/x"), failed("cp: gone/x: No such file or directory\n"));
    EXPECT_EQ(run(u"cp a b gone").status, 64);
    EXPECT_EQ(run(u"cp a").status, 64);
    EXPECT_EQ(run(u"cp").status, 64);
    EXPECT_EQ(volume.read(u"/Users/alex/b"_s), "y");
}

TEST_F(Cp, whatTheRealOneKnowsAndThisOneDoesNotIsSaid) {
    volume.write(u"/Users/alex/a"_s, "x");
    for (const char16_t* line : {u"cp -R a b", u"cp -pR a b", u"cp -f a b", u"cp -n a b", u"cp -a a b"}) {
        const ToolRun refused = run(line);
        EXPECT_EQ(refused.status, 70);
        EXPECT_TRUE(refused.error.endsWith(": not simulated\n")) << refused.error.toStdString();
    }
    EXPECT_TRUE(run(u"cp -q a b").error.startsWith("cp: illegal option -- q\nusage: cp [-R "));
    EXPECT_FALSE(volume.exists(u"/Users/alex/b"_s));
}

TEST_F(Cp, theSealedSystemRefusesRootToo) {
    volume.write(u"/Users/alex/a"_s, "x");
    EXPECT_EQ(run(u"cp /Users/alex/a /System/a", Actor::Root), failed("cp: /System/a: Operation not permitted\n"));
}

} // namespace macsim
