#include "fakes/ProfileStore.h"

#include <QDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

// A profile's name may come from a file that somebody else wrote. Each name below leads to a file outside the
// profiles folder, or to another profile's, once a path is built of it; the store must never follow one.
namespace quorvane {
namespace {

struct HostileName {
    QString name;
    QString reached; // by a path built of the name, relative to the profiles folder
};

QList<HostileName> hostileNames() {
    const QChar null(u'\0');
    return {
        {u"../system_snapshot"_s, u"../system_snapshot.json"_s},
        {u"./../system_snapshot"_s, u"../system_snapshot.json"_s},
        {u"sub/../../system_snapshot"_s, u"../system_snapshot.json"_s},
        {u"../UnifiedProfiles/../system_snapshot"_s, u"../system_snapshot.json"_s},
        {u"//..//system_snapshot"_s, u"../system_snapshot.json"_s},
        {u"../system_snapshot.json"_s + null, u"../system_snapshot.json"_s},
        {u"../../Other/secret.plist"_s + null, u"../../Other/secret.plist"_s},
        {u"../WallpaperOverlay/wallpaper-originals"_s, u"../WallpaperOverlay/wallpaper-originals.json"_s},
        {u"./Victim"_s, u"Victim.json"_s},
        {u"../UnifiedProfiles/Victim"_s, u"Victim.json"_s},
        {u"Victim.json"_s + null, u"Victim.json"_s},
    };
}

/// A store with the file that the name is after, which any reader would take for a profile.
class HostileNames : public testing::Test {
protected:
    struct Scene : ProfileStore {
        explicit Scene(const HostileName& hostile)
            : target(QDir::cleanPath(pathOf(hostile.reached))) {
            files.addFolders(pathOf(u"sub"_s));
            files.addFile(target, bytes);
        }
        const QByteArray bytes = encodeProfile(numberedProfile(99, u"Victim"_s));
        const QString target;

        /// The path that a store which doesn't look at names would build.
        QString uncheckedPath(const QString& name) const { return pathOf(name + u".json"_s); }
        bool touchedOnlyItsFolder() const {
            const QSet<QString> paths = files.touchedPaths();
            return std::all_of(paths.begin(), paths.end(), [this](const QString& path) {
                return path == folder || path.startsWith(folder + u'/');
            });
        }
        void expectTargetUntouched() const { EXPECT_EQ(files.read(target), bytes); }
    };
};

TEST_F(HostileNames, anUncheckedPathWouldReachTheTarget) {
    for (const HostileName& hostile : hostileNames()) {
        SCOPED_TRACE(hostile.reached.toStdString());
        Scene scene(hostile);
        const QString path = scene.uncheckedPath(hostile.name);
        EXPECT_EQ(scene.files.read(path), scene.bytes);
        scene.files.writeAtomically(path, "overwritten");
        EXPECT_EQ(scene.files.read(scene.target), "overwritten");
        scene.files.remove(path);
        EXPECT_FALSE(scene.files.exists(scene.target));
    }
}

TEST_F(HostileNames, loadingReachesNothing) {
    for (const HostileName& hostile : hostileNames()) {
        SCOPED_TRACE(hostile.reached.toStdString());
        Scene scene(hostile);
        EXPECT_EQ(scene.manager.loadProfile(hostile.name), std::nullopt);
        EXPECT_TRUE(scene.touchedOnlyItsFolder());
    }
}

TEST_F(HostileNames, deletingReachesNothing) {
    for (const HostileName& hostile : hostileNames()) {
        SCOPED_TRACE(hostile.reached.toStdString());
        Scene scene(hostile);
        scene.addFile(u"Evil.json"_s, numberedProfile(1, hostile.name));
        scene.manager.deleteProfile(hostile.name);
        scene.manager.deleteProfile(hostile.name.toUpper());
        EXPECT_TRUE(scene.touchedOnlyItsFolder());
        scene.expectTargetUntouched();
        EXPECT_TRUE(scene.fileNames().contains(u"Evil.json"_s));
    }
}

TEST_F(HostileNames, renamingRemovesTheFileThatToldTheNameAndNothingElse) {
    for (const HostileName& hostile : hostileNames()) {
        SCOPED_TRACE(hostile.reached.toStdString());
        Scene scene(hostile);
        scene.addFile(u"Evil.json"_s, numberedProfile(1, hostile.name));
        scene.manager.saveProfile(numberedProfile(1, u"Nice"_s));
        EXPECT_TRUE(scene.touchedOnlyItsFolder());
        scene.expectTargetUntouched();
        EXPECT_FALSE(scene.fileNames().contains(u"Evil.json"_s));
        EXPECT_EQ(scene.profileIn(u"Nice.json"_s), numberedProfile(1, {}));
    }
}

TEST_F(HostileNames, savingAndImportingStayInTheFolder) {
    for (const HostileName& hostile : hostileNames()) {
        SCOPED_TRACE(hostile.reached.toStdString());
        Scene scene(hostile);
        const bool isRefused = hostile.name.contains(QChar(u'\0'));
        const UnifiedProfile profile = numberedProfile(1, hostile.name);
        if (isRefused) {
            EXPECT_THROW(scene.manager.saveProfile(profile), ProfileStoreError);
            EXPECT_THROW(scene.manager.importProfiles({profile}), ProfileStoreError);
        } else {
            scene.manager.saveProfile(profile);
            EXPECT_EQ(scene.manager.importProfiles({profile}).updated, 1);
        }
        EXPECT_TRUE(scene.touchedOnlyItsFolder());
        scene.expectTargetUntouched();
    }
}

TEST_F(HostileNames, dotsAreOrdinaryNames) {
    ProfileStore store;
    for (const QString& name : {u"."_s, u".."_s, u"..."_s}) {
        SCOPED_TRACE(name.toStdString());
        store.manager.saveProfile(numberedProfile(1, name));
        EXPECT_EQ(store.fileNames().filter(u".json"_s), QStringList{name + u".json"_s});
        EXPECT_EQ(store.manager.loadProfile(name), numberedProfile(1, {}));
    }
    store.manager.deleteProfile(u"..."_s);
    EXPECT_EQ(store.fileNames(), QStringList());
}

TEST_F(HostileNames, aListedFileIsReadByItsListedName) {
    ProfileStore store;
    for (const QString& fileName : {u" blanks .json"_s, u"a:b.json"_s, u"..json"_s, u"-rf.json"_s}) {
        store.addFile(fileName, numberedProfile(static_cast<int>(fileName.size()), fileName));
    }
    EXPECT_EQ(store.manager.listProfiles().size(), 4);
}

} // namespace
} // namespace quorvane
