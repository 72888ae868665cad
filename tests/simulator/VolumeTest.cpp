#include "simulator/Volume.h"

#include "fakes/SimulatedMacFolder.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <cerrno>
#include <functional>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

const QString kHome = u"/Users/alex"_s;

int errorOf(const std::function<void()>& operation) {
    try {
        operation();
    } catch (const FileError& error) {
        return error.errorNumber();
    }
    return 0;
}

class VolumeTest : public ::testing::Test {
protected:
    void hostFile(const QString& path, const QByteArray& bytes) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    QByteArray hostBytes(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(missing)");
    }

    SimulatedMacFolder folder{{{u"/usr/bin/true"_s, nullptr}}};
    Volume user = folder.mac.volume(Actor::User);
    Volume root = folder.mac.volume(Actor::Root);
};

} // namespace

TEST_F(VolumeTest, dotsStopAtTheRoot) {
    EXPECT_EQ(user.canonicalPath(u"/../../../Users/./alex/../alex/x"_s), u"/Users/alex/x"_s);
    hostFile(folder.outside() + u"/secret"_s, "host");
    EXPECT_EQ(errorOf([&] { user.read(u"/../secret"_s); }), ENOENT);
    EXPECT_EQ(errorOf([&] { root.read(u"/Users/../../secret"_s); }), ENOENT);
}

TEST_F(VolumeTest, linksLeadInsideTheFolderWhereverTheyPointOnTheHost) {
    hostFile(folder.outside() + u"/secret"_s, "host");
    user.createLink(kHome + u"/out"_s, folder.outside() + u"/secret"_s);
    user.createLink(kHome + u"/up"_s, u"../../../../../../../../../../../../../../../secret"_s);
    user.createLink(kHome + u"/outdir"_s, folder.outside());
    EXPECT_EQ(errorOf([&] { user.read(kHome + u"/out"_s); }), ENOENT);
    EXPECT_EQ(errorOf([&] { root.read(kHome + u"/up"_s); }), ENOENT);
    EXPECT_NE(errorOf([&] { root.write(kHome + u"/out"_s, "broken in"); }), 0);
    EXPECT_NE(errorOf([&] { root.write(kHome + u"/outdir/secret"_s, "broken in"); }), 0);
    EXPECT_NE(errorOf([&] { root.remove(kHome + u"/outdir/secret"_s); }), 0);
    EXPECT_EQ(hostBytes(folder.outside() + u"/secret"_s), "host");
}

TEST_F(VolumeTest, aLinkInsideIsFollowed) {
    user.write(kHome + u"/a"_s, "inside");
    user.createLink(kHome + u"/link"_s, kHome + u"/a"_s);
    user.createLink(kHome + u"/relative"_s, u"a"_s);
    EXPECT_EQ(user.read(kHome + u"/link"_s), "inside");
    EXPECT_EQ(user.read(kHome + u"/relative"_s), "inside");
    EXPECT_EQ(user.kind(kHome + u"/link"_s), Volume::Kind::Link);
    user.remove(kHome + u"/link"_s);
    EXPECT_EQ(user.read(kHome + u"/a"_s), "inside");
}

TEST_F(VolumeTest, aCircleOfLinksEnds) {
    user.createLink(kHome + u"/one"_s, u"two"_s);
    user.createLink(kHome + u"/two"_s, u"one"_s);
    EXPECT_EQ(errorOf([&] { user.read(kHome + u"/one"_s); }), ELOOP);
}

TEST_F(VolumeTest, theSealedSystemRefusesRootToo) {
    for (const QString& path : {u"/System/x"_s, u"/usr/bin/x"_s, u"/bin/x"_s, u"/sbin/x"_s, u"/x"_s, u"/dev/x"_s,
                                u"/private/var/db/simulator/machine.json"_s}) {
        EXPECT_EQ(errorOf([&] { root.write(path, "x"); }), EPERM) << path.toStdString();
    }
    EXPECT_EQ(errorOf([&] { root.remove(u"/usr/bin/true"_s); }), EPERM);
    EXPECT_EQ(errorOf([&] { root.read(u"/private/var/db/simulator/machine.json"_s); }), EPERM);
    root.write(u"/usr/local/bin/x"_s, "x");
}

TEST_F(VolumeTest, theUserWritesOnlyWhatIsHis) {
    for (const QString& path : {u"/Users/alex/x"_s, u"/tmp/x"_s, u"/Applications/x"_s, u"/Users/Shared/x"_s,
                                folder.mac.temporaryFolder() + u"x"_s}) {
        EXPECT_EQ(errorOf([&] { user.write(path, "x"); }), 0) << path.toStdString();
    }
    for (const QString& path :
         {u"/Library/LaunchDaemons/x"_s, u"/Users/x"_s, u"/etc/x"_s, u"/var/root/x"_s, u"/private/var/folders/x"_s}) {
        EXPECT_EQ(errorOf([&] { user.write(path, "x"); }), EACCES) << path.toStdString();
        EXPECT_EQ(errorOf([&] { root.write(path, "x"); }), 0) << path.toStdString();
    }
    EXPECT_EQ(errorOf([&] { user.read(u"/var/root/x"_s); }), EACCES);
    EXPECT_EQ(errorOf([&] { user.list(u"/var/root"_s); }), EACCES);
}

TEST_F(VolumeTest, readableIsWhatTheActorMayRead) {
    root.write(u"/var/root/secret"_s, "x");
    user.write(kHome + u"/file"_s, "x");
    user.createLink(kHome + u"/link"_s, u"file"_s);
    user.createLink(kHome + u"/broken"_s, u"gone"_s);
    user.createLink(kHome + u"/loop"_s, u"loop"_s);
    user.createLink(kHome + u"/secret"_s, u"/var/root/secret"_s);
    for (const QString& path : {u"/"_s, u"/Library"_s, kHome + u"/file"_s, kHome + u"/link"_s, u"/usr/bin/true"_s}) {
        EXPECT_TRUE(user.isReadable(path)) << path.toStdString();
    }
    for (const QString& path : {u"/var/root"_s, u"/var/root/secret"_s, kHome + u"/secret"_s}) {
        EXPECT_FALSE(user.isReadable(path)) << path.toStdString();
        EXPECT_TRUE(root.isReadable(path)) << path.toStdString();
    }
    for (const QString& path : {kHome + u"/gone"_s, kHome + u"/broken"_s, kHome + u"/loop"_s, kHome + u"/file/x"_s,
                                u"/private/var/db/simulator"_s, u"relative"_s, QString()}) {
        EXPECT_FALSE(root.isReadable(path)) << path.toStdString();
    }
}

TEST_F(VolumeTest, writableIsWhatTheActorMayChange) {
    root.write(u"/Library/file"_s, "x");
    user.write(kHome + u"/file"_s, "x");
    user.createLink(kHome + u"/link"_s, u"file"_s);
    user.createLink(kHome + u"/system-wide"_s, u"/Library"_s);
    user.createLink(kHome + u"/loop"_s, u"loop"_s);
    for (const QString& path :
         {kHome, kHome + u"/file"_s, kHome + u"/link"_s, u"/tmp"_s, u"/Applications"_s, u"/dev/null"_s}) {
        EXPECT_TRUE(user.isWritable(path)) << path.toStdString();
        EXPECT_TRUE(root.isWritable(path)) << path.toStdString();
    }
    for (const QString& path :
         {u"/Library"_s, u"/Library/file"_s, kHome + u"/system-wide"_s, u"/Users"_s, u"/var/root"_s}) {
        EXPECT_FALSE(user.isWritable(path)) << path.toStdString();
        EXPECT_TRUE(root.isWritable(path)) << path.toStdString();
    }
    for (const QString& path :
         {u"/"_s, u"/System"_s, u"/usr/bin/true"_s, u"/private/var/db/simulator"_s, kHome + u"/gone"_s,
          kHome + u"/loop"_s, kHome + u"/file/x"_s, u"relative"_s, QString()}) {
        EXPECT_FALSE(root.isWritable(path)) << path.toStdString();
    }
}

TEST_F(VolumeTest, aFullDiskIsStillWritableByItsRights) {
    EXPECT_TRUE(user.full().isWritable(kHome));
    EXPECT_FALSE(user.full().isWritable(u"/Library"_s));
}

TEST_F(VolumeTest, aLinkDoesNotLendItsOwnersRights) {
    user.createLink(kHome + u"/daemons"_s, u"/Library/LaunchDaemons"_s);
    EXPECT_EQ(errorOf([&] { user.write(kHome + u"/daemons/x.plist"_s, "x"); }), EACCES);
}

TEST_F(VolumeTest, theTemporaryFolderIsTheUsersOwnAndItsNameEndsInASlash) {
    const QString path = folder.mac.temporaryFolder();
    EXPECT_TRUE(path.startsWith(u"/var/folders/"_s));
    EXPECT_TRUE(path.endsWith(u"/T/"_s));
    EXPECT_TRUE(user.isFolder(path));
}

TEST_F(VolumeTest, namesAreFoundInAnyCaseAndKeepTheirOwn) {
    user.write(kHome + u"/Live.json"_s, "1");
    EXPECT_EQ(user.read(u"/users/ALEX/live.JSON"_s), "1");
    user.writeAtomically(kHome + u"/LIVE.json"_s, "2");
    EXPECT_TRUE(user.list(kHome).contains(u"Live.json"_s));
    EXPECT_FALSE(user.list(kHome).contains(u"LIVE.json"_s));
    user.move(kHome + u"/Live.json"_s, kHome + u"/LIVE.json"_s);
    EXPECT_TRUE(user.list(kHome).contains(u"LIVE.json"_s));
    EXPECT_EQ(user.read(kHome + u"/live.json"_s), "2");
}

TEST_F(VolumeTest, aCaseSensitiveVolumeTellsNamesApart) {
    SimulatedMacFolder sensitive({}, {{"userName", "alex"}, {"caseSensitiveVolume", true}});
    const Volume volume = sensitive.mac.volume(Actor::User);
    volume.write(kHome + u"/Live.json"_s, "1");
    volume.write(kHome + u"/live.json"_s, "2");
    EXPECT_EQ(volume.read(kHome + u"/Live.json"_s), "1");
    EXPECT_FALSE(volume.exists(kHome + u"/LIVE.json"_s));
}

TEST_F(VolumeTest, aFullDiskKeepsWhatIsThere) {
    user.write(kHome + u"/a"_s, "old");
    const Volume full = user.full();
    EXPECT_EQ(errorOf([&] { full.write(kHome + u"/a"_s, "new"); }), ENOSPC);
    EXPECT_EQ(errorOf([&] { full.writeAtomically(kHome + u"/a"_s, "new"); }), ENOSPC);
    EXPECT_EQ(errorOf([&] { full.append(kHome + u"/a"_s, "new"); }), ENOSPC);
    EXPECT_EQ(errorOf([&] { full.createFolder(kHome + u"/f"_s); }), ENOSPC);
    EXPECT_EQ(full.read(kHome + u"/a"_s), "old");
    full.remove(kHome + u"/a"_s);
}

TEST_F(VolumeTest, devNullSwallowsAndIsEmpty) {
    user.write(u"/dev/null"_s, "gone");
    user.append(u"/dev/null"_s, "gone");
    EXPECT_EQ(user.read(u"/dev/null"_s), QByteArray());
    EXPECT_EQ(user.size(u"/dev/null"_s), 0);
}

TEST_F(VolumeTest, aToolIsNeitherReadNorWritten) {
    EXPECT_EQ(user.kind(u"/usr/bin/true"_s), Volume::Kind::Tool);
    EXPECT_EQ(errorOf([&] { user.read(u"/usr/bin/true"_s); }), EACCES);
    EXPECT_EQ(errorOf([&] { root.write(u"/usr/bin/true"_s, "x"); }), EPERM);
}

TEST_F(VolumeTest, aLinkToTheToolProgramOutsideTheSealedSystemIsNoTool) {
    user.createLink(kHome + u"/mine"_s, u"/nowhere/macsim"_s);
    EXPECT_EQ(user.kind(kHome + u"/mine"_s), Volume::Kind::Link);
}

TEST_F(VolumeTest, pathsThatCannotBeAreRefused) {
    EXPECT_EQ(errorOf([&] { user.read(u"relative"_s); }), ENOENT);
    EXPECT_EQ(errorOf([&] { user.read(QString()); }), ENOENT);
    EXPECT_EQ(errorOf([&] { user.read(kHome + u"/a\0b"_s); }), ENOENT);
    EXPECT_EQ(errorOf([&] { user.write(kHome + u"/"_s + QString(300, u'x'), "x"); }), ENAMETOOLONG);
    user.write(kHome + u"/file"_s, "x");
    EXPECT_EQ(errorOf([&] { user.read(kHome + u"/file/x"_s); }), ENOTDIR);
    EXPECT_EQ(errorOf([&] { user.read(kHome); }), EISDIR);
}

} // namespace macsim
