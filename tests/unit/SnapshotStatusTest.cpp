#include "actions/SnapshotStatus.h"

#include "core/NotificationCenter.h"
#include "fakes/ScriptedSystem.h"

namespace quorvane {

namespace {

const QDateTime kTaken(QDate(2026, 11, 15), QTime(21, 5, 37), Qt::UTC);

SystemSnapshot takenAs(const std::optional<QString>& label) {
    SystemSnapshot snapshot;
    snapshot.id = QUuid::createUuid();
    snapshot.dateCreated = kTaken;
    snapshot.label = label;
    return snapshot;
}

class SnapshotStatusTest : public ::testing::Test {
protected:
    SnapshotStatusTest() {
        QObject::connect(&status, &SnapshotStatus::changed, [this] { ++changes; });
    }

    MemoryFileManager files;
    FixedMachine machine;
    NotificationCenter notifications;
    SnapshotManager snapshots{files, machine};
    SnapshotStatus status{files, machine, notifications};
    int changes = 0;
};

} // namespace

TEST_F(SnapshotStatusTest, isReadAtTheFirstUse) {
    snapshots.save(takenAs(u"Manual snapshot"_s));
    EXPECT_EQ(status.current(), (SavedSnapshot{u"Manual snapshot"_s, kTaken}));
    EXPECT_EQ(changes, 0) << "nobody has seen another one";
}

TEST_F(SnapshotStatusTest, isNoneWithoutAFileThatCanBeRead) {
    EXPECT_EQ(status.current(), std::nullopt);
    files.addFile(snapshots.snapshotFileURL(), "{");
    status.readAnew();
    EXPECT_EQ(status.current(), std::nullopt);
    EXPECT_EQ(changes, 0);
}

TEST_F(SnapshotStatusTest, followsEachBaselineThatIsSaved) {
    EXPECT_EQ(status.current(), std::nullopt);
    snapshots.save(takenAs({}));
    notifications.post(kQuorvaneProfilesChanged, {});
    EXPECT_EQ(status.current(), std::nullopt) << "that isn't its business";
    notifications.post(kQuorvaneRestoreBaselineSaved, {});
    EXPECT_EQ(status.current(), (SavedSnapshot{{}, kTaken}));
    EXPECT_EQ(changes, 1);
    notifications.post(kQuorvaneRestoreBaselineSaved, {});
    EXPECT_EQ(changes, 1) << "it is the same";
}

TEST_F(SnapshotStatusTest, readsNothingForNobody) {
    snapshots.save(takenAs(u"first"_s));
    notifications.post(kQuorvaneRestoreBaselineSaved, {});
    EXPECT_EQ(changes, 0);
    snapshots.save(takenAs(u"second"_s));
    EXPECT_EQ(status.current(), (SavedSnapshot{u"second"_s, kTaken}));
}

} // namespace quorvane
