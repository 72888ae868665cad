#include "simulator/Volume.h"

#include "fakes/MacPicture.h"
#include "fakes/MacSetUp.h"
#include "fakes/SimulatedMacFolder.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <cerrno>
#include <functional>
#include <utility>

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

TEST_F(VolumeTest, whatIsPrivateNeedsFullDiskAccessAlsoForRoot) {
    const QString file = u"/Library/Preferences/com.apple.TimeMachine.plist"_s;
    const auto give = [this](bool hasAccess) {
        folder.mac.state().update("permissions", [hasAccess](Json& state) { state["fullDiskAccess"] = hasAccess; });
    };
    give(false);
    for (const Volume& volume : {user, root}) {
        EXPECT_EQ(errorOf([&] { volume.read(file); }), ENOENT) << "nothing to keep from anybody";
    }
    root.write(file, "x");
    user.createLink(kHome + u"/link"_s, file);
    for (const Volume& volume : {user, root}) {
        for (const QString& path : {file, kHome + u"/link"_s}) {
            give(false);
            EXPECT_EQ(errorOf([&] { volume.read(path); }), EPERM);
            EXPECT_FALSE(volume.isReadable(path));
            EXPECT_TRUE(volume.exists(path));
            give(true);
            EXPECT_EQ(errorOf([&] { volume.read(path); }), 0);
            EXPECT_TRUE(volume.isReadable(path));
        }
    }
    give(false);
    EXPECT_EQ(errorOf([&] { root.read(u"/Library/Preferences/com.apple.TimeMachine.plist.lock"_s); }), ENOENT);
}

TEST_F(VolumeTest, aDataVaultIsKeptFromEverybodyWhileTheSystemProtectsItself) {
    const QString vault = u"/Library/Caches/com.example.classicdatavault"_s;
    installFile(folder.mac, vault + u"/kept"_s, "x");
    for (const Volume& volume : {user, root}) {
        EXPECT_EQ(errorOf([&] { volume.list(vault); }), EPERM);
        EXPECT_EQ(errorOf([&] { volume.read(vault + u"/kept"_s); }), EPERM);
        EXPECT_EQ(errorOf([&] { volume.remove(vault + u"/kept"_s); }), EPERM);
        EXPECT_EQ(errorOf([&] { volume.write(vault + u"/kept"_s, "y"); }), EPERM);
        EXPECT_EQ(errorOf([&] { volume.write(vault + u"/new"_s, "y"); }), EPERM);
    }
    EXPECT_EQ(errorOf([&] { root.move(vault, u"/Library/Caches/elsewhere"_s); }), EPERM);
    EXPECT_TRUE(user.exists(vault));
    setPermission(folder.mac, "systemIntegrityProtection", false);
    EXPECT_EQ(errorOf([&] { root.remove(vault + u"/kept"_s); }), 0);
    EXPECT_EQ(errorOf([&] { root.remove(vault); }), 0);
}

TEST_F(VolumeTest, theDownloadsFolderIsReadByWhoMay) {
    const QString path = kHome + u"/Downloads/set.zip"_s;
    user.createFolders(kHome + u"/Downloads"_s);
    user.write(path, "x");
    setPermission(folder.mac, "downloads", false);
    EXPECT_EQ(errorOf([&] { user.list(kHome + u"/Downloads"_s); }), EPERM);
    EXPECT_EQ(errorOf([&] { user.read(path); }), EPERM);
    EXPECT_TRUE(user.exists(path));
    setPermission(folder.mac, "downloads", true);
    EXPECT_EQ(user.read(path), "x");
}

TEST_F(VolumeTest, whatIsInOtherApplicationsNeedsAppManagementAlsoForRoot) {
    const QString application = u"/Applications/Chat.app"_s;
    const QString helper = application + u"/Contents/Library/LoginItems/Helper.app"_s;
    installFile(folder.mac, helper + u"/Contents/Info.plist"_s, "x");
    user.createFolders(kHome + u"/backup/Helper.app/Contents"_s);
    for (const Volume& volume : {user, root}) {
        EXPECT_EQ(errorOf([&] { volume.move(helper, kHome + u"/Helper.app"_s); }), EPERM);
        EXPECT_EQ(errorOf([&] { volume.move(helper, helper + u".removed"_s); }), EPERM);
        EXPECT_EQ(errorOf([&] { volume.remove(helper + u"/Contents/Info.plist"_s); }), EPERM);
        EXPECT_EQ(errorOf([&] { volume.write(helper + u"/Contents/Info.plist"_s, "y"); }), EPERM);
        EXPECT_EQ(errorOf([&] { volume.write(application + u"/new"_s, "y"); }), EPERM);
        EXPECT_FALSE(volume.isWritable(helper + u"/Contents/Info.plist"_s));
        EXPECT_EQ(volume.read(helper + u"/Contents/Info.plist"_s), "x");
        EXPECT_EQ(errorOf([&] { volume.write(kHome + u"/backup/Helper.app/Contents/x"_s, "y"); }), 0) << "a copy";
    }
    EXPECT_EQ(errorOf([&] { user.move(application, u"/Applications/Talk.app"_s); }), 0) << "all of it";
    user.move(u"/Applications/Talk.app"_s, application);
}

TEST_F(VolumeTest, appManagementIsGivenByItselfOrWithFullDiskAccess) {
    const QString program = u"/Applications/Chat.app/Contents/MacOS/Chat"_s;
    installFile(folder.mac, program, "x");
    const struct {
        Json permissions;
        bool mayChange;
    } cases[] = {{Json(), false},
                 {{{"systemIntegrityProtection", true}}, false},
                 {{{"fullDiskAccess", false}}, false},
                 {{{"fullDiskAccess", true}}, true},
                 {{{"fullDiskAccess", true}, {"appManagement", false}}, false},
                 {{{"fullDiskAccess", false}, {"appManagement", true}}, true},
                 {{{"appManagement", true}}, true}};
    for (const auto& one : cases) {
        folder.mac.state().update("permissions", [&one](Json& state) { state = one.permissions; });
        EXPECT_EQ(user.isWritable(program), one.mayChange) << one.permissions.dump();
        EXPECT_EQ(root.isWritable(program), one.mayChange) << one.permissions.dump();
    }
}

TEST_F(VolumeTest, anEvictedFileStandsInItsFolderAndCannotBeRead) {
    const QString path = kHome + u"/cloud.json"_s;
    user.write(path, "text");
    EXPECT_FALSE(user.isDataless(path));
    user.evict(path);
    EXPECT_TRUE(user.isDataless(path));
    EXPECT_TRUE(user.exists(path));
    EXPECT_TRUE(user.list(kHome).contains(u"cloud.json"_s));
    EXPECT_EQ(errorOf([&] { user.read(path); }), EDEADLK);
    user.writeAtomically(path, "anew");
    EXPECT_FALSE(user.isDataless(path));
    EXPECT_EQ(user.read(path), "anew");
    EXPECT_FALSE(user.isDataless(kHome));
    EXPECT_FALSE(user.isDataless(kHome + u"/missing"_s));
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

TEST_F(VolumeTest, ownersGoByPlaceAsLongAsNobodyHasMadeOrOwnsItOtherwise) {
    hostFile(folder.hostFolder() + kHome + u"/put"_s, "x");
    hostFile(folder.hostFolder() + u"/Library/put"_s, "x");
    for (const QString& path :
         {kHome, kHome + u"/Library"_s, kHome + u"/put"_s, folder.mac.temporaryFolder().chopped(1)}) {
        EXPECT_EQ(user.owner(path), Actor::User) << path.toStdString();
    }
    for (const QString& path : {u"/"_s, u"/Users"_s, u"/Users/Shared"_s, u"/private/tmp"_s, u"/Applications"_s,
                                u"/Library/put"_s, u"/var/root"_s, u"/usr/bin/true"_s}) {
        EXPECT_EQ(user.owner(path), Actor::Root) << path.toStdString();
    }
    EXPECT_EQ(errorOf([&] { user.owner(kHome + u"/gone"_s); }), ENOENT);
}

TEST_F(VolumeTest, whatAnActorMakesIsHis) {
    for (const auto& [actor, volume] : {std::pair{Actor::User, user}, std::pair{Actor::Root, root}}) {
        const QString name = actor == Actor::User ? u"/user"_s : u"/root"_s;
        for (const QString& place : {kHome, u"/tmp"_s, u"/Applications"_s, u"/Users/Shared"_s, u"/Volumes"_s}) {
            volume.write(place + name + u"-written"_s, "x");
            volume.writeAtomically(place + name + u"-atomic"_s, "x");
            volume.touch(place + name + u"-touched"_s);
            volume.createFolders(place + name + u"/deep"_s);
            for (const QString& made : {u"-written"_s, u"-atomic"_s, u"-touched"_s, u""_s, u"/deep"_s}) {
                EXPECT_EQ(volume.owner(place + name + made), actor) << (place + name + made).toStdString();
            }
        }
    }
}

TEST_F(VolumeTest, aFileKeepsItsOwnerWhenItIsRewrittenAndChangesItWhenItIsReplaced) {
    user.write(kHome + u"/mine"_s, "1");
    root.write(kHome + u"/mine"_s, "2");
    root.append(kHome + u"/mine"_s, "3");
    root.touch(kHome + u"/mine"_s);
    EXPECT_EQ(user.owner(kHome + u"/mine"_s), Actor::User);
    root.writeAtomically(kHome + u"/mine"_s, "4");
    EXPECT_EQ(user.owner(kHome + u"/mine"_s), Actor::Root);
    root.writeAtomically(kHome + u"/mine"_s, "5");
    EXPECT_EQ(user.owner(kHome + u"/mine"_s), Actor::Root);
    user.writeAtomically(kHome + u"/mine"_s, "6");
    EXPECT_EQ(user.owner(kHome + u"/mine"_s), Actor::User);
    EXPECT_EQ(user.read(kHome + u"/mine"_s), "6");
}

TEST_F(VolumeTest, aMoveKeepsTheOwnersOfAWholeTree) {
    user.createFolders(kHome + u"/tree/inner"_s);
    user.write(kHome + u"/tree/inner/mine"_s, "x");
    root.write(kHome + u"/tree/inner/.roots"_s, "x");
    user.createLink(kHome + u"/tree/out"_s, kHome + u"/Desktop"_s);
    const auto expectOwners = [this](const QString& tree) {
        EXPECT_EQ(user.owner(tree), Actor::User) << tree.toStdString();
        EXPECT_EQ(user.owner(tree + u"/inner"_s), Actor::User) << tree.toStdString();
        EXPECT_EQ(user.owner(tree + u"/inner/mine"_s), Actor::User) << tree.toStdString();
        EXPECT_EQ(user.owner(tree + u"/inner/.roots"_s), Actor::Root) << tree.toStdString();
    };
    expectOwners(kHome + u"/tree"_s);
    user.move(kHome + u"/tree"_s, kHome + u"/Music/tree"_s);
    expectOwners(kHome + u"/Music/tree"_s);
    root.move(kHome + u"/Music/tree"_s, u"/Library/tree"_s);
    expectOwners(u"/Library/tree"_s);
    root.move(u"/Library/tree"_s, u"/Library/LaunchAgents/tree"_s);
    expectOwners(u"/Library/LaunchAgents/tree"_s);
    root.move(u"/Library/LaunchAgents/tree"_s, u"/Applications/tree"_s);
    expectOwners(u"/Applications/tree"_s);
    EXPECT_EQ(user.owner(kHome + u"/Desktop"_s), Actor::User);
}

TEST_F(VolumeTest, aPictureOfTheMacTellsOwnersThatAreNotTheirPlaces) {
    user.write(kHome + u"/mine"_s, "x");
    const MacPicture before(folder.hostFolder());
    root.write(kHome + u"/roots"_s, "x");
    root.setOwner(kHome + u"/mine"_s, Actor::Root);
    root.move(kHome + u"/Music"_s, u"/Library/Music"_s);
    EXPECT_EQ(MacPicture(folder.hostFolder()).changesSince(before), uR"(+ /Library/Music: folder
+ /Library/Music owner: user
- /Users/alex/Music: folder
+ /Users/alex/mine owner: root
+ /Users/alex/roots: x
+ /Users/alex/roots owner: root
)"_s);
}

TEST_F(VolumeTest, onlyRootGivesThingsAway) {
    user.createFolders(kHome + u"/folder"_s);
    user.write(kHome + u"/folder/file"_s, "x");
    user.createLink(kHome + u"/link"_s, u"folder"_s);
    EXPECT_EQ(errorOf([&] { user.setOwner(kHome + u"/folder"_s, Actor::Root); }), EPERM);
    EXPECT_EQ(errorOf([&] { root.setOwner(u"/System"_s, Actor::User); }), EPERM);
    EXPECT_EQ(errorOf([&] { root.setOwner(kHome + u"/gone"_s, Actor::Root); }), ENOENT);
    root.setOwner(kHome + u"/link"_s, Actor::Root);
    EXPECT_EQ(user.owner(kHome + u"/folder"_s), Actor::Root);
    EXPECT_EQ(user.owner(kHome + u"/folder/file"_s), Actor::User);
    root.setOwner(kHome + u"/folder"_s, Actor::Root);
    EXPECT_EQ(user.owner(kHome + u"/folder"_s), Actor::Root);
    root.setOwner(kHome + u"/folder"_s, Actor::User);
    EXPECT_EQ(user.owner(kHome + u"/folder"_s), Actor::User);
}

TEST_F(VolumeTest, theUserDoesNotChangeTheBytesOfRootsFile) {
    root.write(kHome + u"/file"_s, "root's");
    EXPECT_FALSE(user.isWritable(kHome + u"/file"_s));
    EXPECT_EQ(errorOf([&] { user.write(kHome + u"/file"_s, "x"); }), EACCES);
    EXPECT_EQ(errorOf([&] { user.append(kHome + u"/file"_s, "x"); }), EACCES);
    EXPECT_EQ(errorOf([&] { user.touch(kHome + u"/file"_s); }), EACCES);
    EXPECT_EQ(user.read(kHome + u"/file"_s), "root's");
    user.move(kHome + u"/file"_s, kHome + u"/Documents/file"_s); // the names in their folders are theirs
    EXPECT_EQ(user.owner(kHome + u"/Documents/file"_s), Actor::Root);
    user.remove(kHome + u"/Documents/file"_s);
}

TEST_F(VolumeTest, theUserDoesNotChangeTheNamesInRootsFolder) {
    root.createFolders(kHome + u"/folder/empty"_s);
    root.write(kHome + u"/folder/file"_s, "x");
    root.createLink(kHome + u"/folder/link"_s, u"file"_s);
    user.write(kHome + u"/mine"_s, "x");
    EXPECT_FALSE(user.isWritable(kHome + u"/folder"_s));
    for (const std::function<void()>& change : {
             std::function<void()>([this] { user.write(kHome + u"/folder/new"_s, "x"); }),
             std::function<void()>([this] { user.writeAtomically(kHome + u"/folder/file"_s, "x"); }),
             std::function<void()>([this] { user.createFolder(kHome + u"/folder/new"_s); }),
             std::function<void()>([this] { user.createLink(kHome + u"/folder/new"_s, u"file"_s); }),
             std::function<void()>([this] { user.remove(kHome + u"/folder/file"_s); }),
             std::function<void()>([this] { user.remove(kHome + u"/folder/link"_s); }),
             std::function<void()>([this] { user.remove(kHome + u"/folder/empty"_s); }),
             std::function<void()>([this] { user.move(kHome + u"/folder/file"_s, kHome + u"/file"_s); }),
             std::function<void()>([this] { user.move(kHome + u"/mine"_s, kHome + u"/folder/mine"_s); }),
             std::function<void()>([this] { user.touch(kHome + u"/folder"_s); }),
         }) {
        EXPECT_EQ(errorOf(change), EACCES);
    }
    EXPECT_EQ(errorOf([&] { user.remove(kHome + u"/folder"_s); }), ENOTEMPTY);
    EXPECT_EQ(user.list(kHome + u"/folder"_s), QStringList({u"empty"_s, u"file"_s, u"link"_s}));
}

TEST_F(VolumeTest, theUserRenamesRootsFolderAndMovesItNowhere) {
    root.createFolders(kHome + u"/folder"_s);
    user.move(kHome + u"/folder"_s, kHome + u"/renamed"_s);
    EXPECT_EQ(user.owner(kHome + u"/renamed"_s), Actor::Root);
    EXPECT_EQ(errorOf([&] { user.move(kHome + u"/renamed"_s, kHome + u"/Documents/renamed"_s); }), EACCES);
    root.move(kHome + u"/renamed"_s, kHome + u"/Documents/renamed"_s);
    user.remove(kHome + u"/Documents/renamed"_s); // it is empty, and the names in Documents are theirs
}

TEST_F(VolumeTest, inRootsFolderAFileThatIsHisTakesTheUsersBytes) {
    root.createFolders(kHome + u"/folder"_s);
    root.write(kHome + u"/folder/his"_s, "old");
    root.setOwner(kHome + u"/folder/his"_s, Actor::User);
    EXPECT_TRUE(user.isWritable(kHome + u"/folder/his"_s));
    user.write(kHome + u"/folder/his"_s, "new");
    EXPECT_EQ(user.read(kHome + u"/folder/his"_s), "new");
    EXPECT_EQ(errorOf([&] { user.remove(kHome + u"/folder/his"_s); }), EACCES);
}

TEST_F(VolumeTest, whereEverybodyMayWriteNobodyRemovesWhatIsRoots) {
    for (const QString& place : {u"/tmp/"_s, u"/Users/Shared/"_s}) {
        root.write(place + u"file"_s, "x");
        user.write(place + u"mine"_s, "x");
        EXPECT_EQ(errorOf([&] { user.remove(place + u"file"_s); }), EACCES);
        EXPECT_EQ(errorOf([&] { user.move(place + u"file"_s, place + u"other"_s); }), EACCES);
        EXPECT_EQ(errorOf([&] { user.move(place + u"mine"_s, place + u"file"_s); }), EACCES);
        EXPECT_EQ(errorOf([&] { user.writeAtomically(place + u"file"_s, "y"); }), EACCES);
        user.remove(place + u"mine"_s);
        root.remove(place + u"file"_s);
    }
    root.write(u"/Applications/file"_s, "x");
    user.remove(u"/Applications/file"_s);
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

TEST_F(VolumeTest, aFolderGivesItsNamesSoManyAtATimeInTheirOrder) {
    for (const QString& name : {u"b"_s, u"D"_s, u".hidden"_s, u"a"_s, u"é"_s}) {
        user.write(kHome + u"/Music/"_s + name, {});
    }
    const QString music = kHome + u"/Music"_s;
    EXPECT_EQ(user.namesAfter(music, {}, 100), user.list(music));
    EXPECT_EQ(user.namesAfter(music, {}, 2), QStringList({u".hidden"_s, u"D"_s}));
    user.remove(music + u"/D"_s);
    EXPECT_EQ(user.namesAfter(music, u"D"_s, 2), QStringList({u"a"_s, u"b"_s}));
    EXPECT_EQ(user.namesAfter(music, u"b"_s, 2), QStringList(u"é"_s));
    EXPECT_EQ(user.namesAfter(music, u"é"_s, 2), QStringList());
    EXPECT_EQ(errorOf([&] { user.namesAfter(music + u"/a"_s, {}, 2); }), ENOTDIR);
    EXPECT_EQ(errorOf([&] { user.namesAfter(music + u"/gone"_s, {}, 2); }), ENOENT);
    EXPECT_EQ(errorOf([&] { user.namesAfter(u"/private/var/root"_s, {}, 2); }), EACCES);
}

TEST_F(VolumeTest, aTimeIsSetByWhomMayChangeTheFile) {
    const QDateTime time(QDate(2024, 5, 6), QTime(7, 8, 9, 250), Qt::UTC);
    user.write(kHome + u"/a"_s, "x");
    user.createLink(kHome + u"/link"_s, u"a"_s);
    user.setModificationTime(kHome + u"/link"_s, time);
    EXPECT_EQ(user.modificationTime(kHome + u"/a"_s), time);
    root.write(u"/Library/roots"_s, "x");
    EXPECT_EQ(errorOf([&] { user.setModificationTime(u"/Library/roots"_s, time); }), EACCES);
    EXPECT_EQ(errorOf([&] { user.setModificationTime(kHome + u"/gone"_s, time); }), ENOENT);
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
