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

LatestBaseline masterOf(int second) {
    return {masterBaselineOf(snapshotOf(second, u"master"_s), {u"Studio"_s, std::nullopt}, {}),
            BaselinePlace::HomeFolder, false};
}

LatestBaseline anotherMacs(int second) {
    LatestBaseline latest = masterOf(second);
    latest.isAnotherMacs = true;
    return latest;
}

} // namespace

TEST(RestoreBaseline, isNoneWhenNothingWasCaptured) {
    EXPECT_EQ(chosenRestoreBaseline({}, {}), std::nullopt);
}

TEST(RestoreBaseline, isTheOnlyOneThereIs) {
    const SystemSnapshot local = snapshotOf(10, u"local"_s);
    EXPECT_EQ(chosenRestoreBaseline(local, {}), (RestoreBaseline{local, RestoreSource::Snapshot, false, {}}));
    const LatestBaseline master = masterOf(10);
    EXPECT_EQ(chosenRestoreBaseline({}, master),
              (RestoreBaseline{master.baseline.snapshot, RestoreSource::Baseline, false, {}}));
}

TEST(RestoreBaseline, isTheProtectedOneOnlyWhenItIsLater) {
    const SystemSnapshot local = snapshotOf(10, u"local"_s);
    const LatestBaseline later = masterOf(11);
    EXPECT_EQ(chosenRestoreBaseline(local, later),
              (RestoreBaseline{later.baseline.snapshot, RestoreSource::Baseline, true, {}}));
    for (const int second : {9, 10}) {
        EXPECT_EQ(chosenRestoreBaseline(local, masterOf(second)),
                  (RestoreBaseline{local, RestoreSource::Snapshot, false, {}}));
    }
}

TEST(RestoreBaseline, ofAnotherMacServesOnlyWithoutASnapshotAndNamesThatMac) {
    const SystemSnapshot local = snapshotOf(10, u"local"_s);
    EXPECT_EQ(chosenRestoreBaseline(local, anotherMacs(11)), (RestoreBaseline{local, RestoreSource::Snapshot}));
    const LatestBaseline foreign = anotherMacs(11);
    EXPECT_EQ(chosenRestoreBaseline({}, foreign),
              (RestoreBaseline{foreign.baseline.snapshot, RestoreSource::Baseline, false, u"Studio"_s}));
}

// ---- The applications that go with the tweaks

namespace {

const QSet<QString> kManaged{u"/Applications/Zoom.app"_s, u"/Applications/Own.app"_s};
const QSet<QString> kOfProfiles{u"/Applications/Mail.app"_s, u"/Applications/Chat.app"_s};

std::optional<RestoreBaseline> withLoginItems(const std::optional<QList<LoginItemSnapshot>>& items) {
    RestoreBaseline baseline{snapshotOf(10, u"local"_s)};
    baseline.snapshot.loginItems = items;
    return baseline;
}

} // namespace

TEST(StartupAppsThatGo, areAllButTheUsersOwn) {
    EXPECT_EQ(startupAppsThatGo(kManaged, kOfProfiles, withLoginItems(QList<LoginItemSnapshot>())),
              kManaged + kOfProfiles);
    EXPECT_EQ(
        startupAppsThatGo(kManaged, kOfProfiles,
                          withLoginItems(QList<LoginItemSnapshot>{{u"Own"_s, u"/Applications/Own.app"_s, false},
                                                                  {u"Chat"_s, u"/Applications/Chat.app/"_s, true},
                                                                  {u"Else"_s, u"/Applications/Else.app"_s, false}})),
        (QSet<QString>{u"/Applications/Zoom.app"_s, u"/Applications/Mail.app"_s}));
}

TEST(StartupAppsThatGo, areKnownByNameWhereTheFileWasNotFound) {
    for (const QString& path : {QString(), u"missing value"_s}) {
        EXPECT_EQ(startupAppsThatGo(kManaged, {}, withLoginItems(QList<LoginItemSnapshot>{{u"Own"_s, path, false}})),
                  QSet<QString>{u"/Applications/Zoom.app"_s});
    }
    EXPECT_EQ(startupAppsThatGo(kManaged, {},
                                withLoginItems(QList<LoginItemSnapshot>{{u"Own"_s, u"/Users/alex/Own.app"_s, false}})),
              kManaged)
        << "another application of that name";
}

TEST(StartupAppsThatGo, areTheProgramsOwnAdditionsAloneWhereNobodyKnowsTheUsers) {
    EXPECT_EQ(startupAppsThatGo(kManaged, kOfProfiles, withLoginItems(std::nullopt)), kManaged);
    EXPECT_EQ(startupAppsThatGo(kManaged, kOfProfiles, std::nullopt), kManaged);
}

} // namespace quorvane
