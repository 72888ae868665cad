#include "snapshots/RestoreBaseline.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {

namespace {

SystemSnapshot snapshotOf(int second, const QString& label) {
    SystemSnapshot snapshot;
    snapshot.id = QUuid::createUuid();
    snapshot.dateCreated = QDateTime(QDate(2026, 11, 15), QTime(21, 5, second), Qt::UTC);
    snapshot.label = label;
    return snapshot;
}

MasterSystemBaseline masterOf(int second) {
    return masterBaselineOf(snapshotOf(second, u"master"_s), u"Studio"_s, {});
}

} // namespace

TEST(RestoreBaseline, isNoneWhenNothingWasCaptured) {
    EXPECT_EQ(chosenRestoreBaseline({}, {}), std::nullopt);
}

TEST(RestoreBaseline, isTheOnlyOneThereIs) {
    const SystemSnapshot local = snapshotOf(10, u"local"_s);
    EXPECT_EQ(chosenRestoreBaseline(local, {}), (RestoreBaseline{local, RestoreSource::Snapshot, false, {}}));
    const MasterSystemBaseline master = masterOf(10);
    EXPECT_EQ(chosenRestoreBaseline({}, master),
              (RestoreBaseline{master.snapshot, RestoreSource::Baseline, false, u"Studio"_s}));
}

TEST(RestoreBaseline, isTheProtectedOneOnlyWhenItIsLater) {
    const SystemSnapshot local = snapshotOf(10, u"local"_s);
    const MasterSystemBaseline later = masterOf(11);
    EXPECT_EQ(chosenRestoreBaseline(local, later),
              (RestoreBaseline{later.snapshot, RestoreSource::Baseline, true, u"Studio"_s}));
    for (const int second : {9, 10}) {
        EXPECT_EQ(chosenRestoreBaseline(local, masterOf(second)),
                  (RestoreBaseline{local, RestoreSource::Snapshot, false, {}}));
    }
}

} // namespace quorvane
