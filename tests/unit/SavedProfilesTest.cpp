#include "actions/SavedProfiles.h"

#include "actions/Tasks.h"
#include "core/NotificationCenter.h"
#include "fakes/EventLoop.h"
#include "fakes/ProfileStore.h"
#include "fakes/ScriptedSystem.h"

#include <QCoroFuture>

namespace quorvane {

namespace {

class SavedProfilesTest : public ScriptedSystem {
protected:
    SavedProfilesTest() {
        disk.addFolders(folder);
        add(numberedProfile(1, u"Live"_s, 1));
        add(numberedProfile(2, u"Club"_s, 2));
        QObject::connect(&saved, &SavedProfiles::changed, [this] { ++changes; });
    }
    void add(const UnifiedProfile& profile) {
        disk.addFile(folder + u'/' + profile.name + u".json"_s, encodeProfile(profile));
    }
    ProfileListing listed() { return QCoro::waitFor(task(saved.list())); }
    static QCoro::Task<ProfileListing> task(QFuture<ProfileListing> future) { co_return co_await future; }

    const QString folder = profilesDirectory(machine);
    MemoryFileManager disk;
    ProfileManager store{disk, folder};
    Tasks tasks{system};
    SavedProfiles saved{store, clock, notifications, tasks};
    int changes = 0;
};

} // namespace

TEST_F(SavedProfilesTest, nothingIsReadBeforeSomebodyAsks) {
    saved.readAnew();
    saved.tellChanged();
    EXPECT_EQ(disk.listings(), 0);
    EXPECT_TRUE(saved.known().profiles.isEmpty());
    EXPECT_FALSE(saved.wasRead());
}

TEST_F(SavedProfilesTest, areReadOnceForAllWhoAsk) {
    EXPECT_EQ(namesOf(listed().profiles), (QStringList{u"Club"_s, u"Live"_s}));
    EXPECT_EQ(namesOf(listed().profiles), (QStringList{u"Club"_s, u"Live"_s}));
    EXPECT_EQ(disk.listings(), 1);
    EXPECT_EQ(changes, 1);
    EXPECT_TRUE(saved.wasRead());
}

TEST_F(SavedProfilesTest, areReadOncePerChange) {
    listed();
    add(numberedProfile(3, u"Booth"_s, 3));
    EXPECT_EQ(namesOf(listed().profiles).size(), 2) << "nobody has told of it";
    saved.tellChanged();
    EXPECT_EQ(namesOf(listed().profiles), (QStringList{u"Booth"_s, u"Club"_s, u"Live"_s}));
    EXPECT_EQ(disk.listings(), 2);
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(posted, (QList<QPair<QString, QVariantMap>>{{u"QuorvaneProfilesChanged"_s, {}}}));
}

TEST_F(SavedProfilesTest, aChangeDuringTheReadingIsTakenUp) {
    for (int number = 10; number < 400; ++number) {
        add(numberedProfile(number, u"Set %1"_s.arg(number)));
    }
    QFuture<ProfileListing> coming = saved.list();
    ASSERT_FALSE(coming.isFinished()) << "it is read in turns";
    EXPECT_EQ(saved.list().isFinished(), false) << "they share one reading";
    add(numberedProfile(3, u"Booth"_s, 3));
    saved.tellChanged();
    processEventsUntil([&coming] { return coming.isFinished(); });
    EXPECT_TRUE(namesOf(coming.result().profiles).contains(u"Booth"_s));
    EXPECT_EQ(disk.listings(), 2);
    EXPECT_EQ(changes, 1);
}

TEST_F(SavedProfilesTest, filesThatCannotBeReadAreNamed) {
    disk.addFile(folder + u"/Broken.json"_s, "{");
    disk.addFile(folder + u"/notes.txt"_s, "{");
    const ProfileListing listing = listed();
    EXPECT_EQ(listing.unreadable, QStringList(u"Broken"_s));
    EXPECT_EQ(listing.profiles.size(), 2);
}

TEST_F(SavedProfilesTest, aProfileIsFoundByItsId) {
    EXPECT_EQ(saved.find(numberedProfile(1, {}).id), std::nullopt);
    listed();
    EXPECT_EQ(saved.find(numberedProfile(1, {}).id)->name, u"Live"_s);
    EXPECT_EQ(saved.find(numberedProfile(9, {}).id), std::nullopt);
}

TEST_F(SavedProfilesTest, aRemovedProfileIsGoneFromBoth) {
    listed();
    EXPECT_TRUE(QCoro::waitFor(saved.remove(u"Live"_s)));
    EXPECT_FALSE(disk.exists(folder + u"/Live.json"_s));
    EXPECT_EQ(namesOf(listed().profiles), QStringList(u"Club"_s));
}

TEST_F(SavedProfilesTest, aQuitEndsTheReadingHalfWay) {
    for (int number = 10; number < 400; ++number) {
        add(numberedProfile(number, u"Set %1"_s.arg(number)));
    }
    const QFuture<ProfileListing> coming = saved.list();
    clock.shutDown();
    processEventsUntil([&coming] { return coming.isFinished(); });
    processEventsUntil([this] { return tasks.count() == 0; });
    EXPECT_LT(coming.result().profiles.size(), 392);
    EXPECT_FALSE(saved.wasRead());
}

} // namespace quorvane
