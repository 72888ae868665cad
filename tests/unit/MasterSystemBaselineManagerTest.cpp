#include "fakes/ScriptedSystem.h"

#include "fakes/EventLoop.h"
#include "platform/portable/SystemClock.h"
#include "snapshots/MasterSystemBaselineManager.h"

#include <QElapsedTimer>

#include <numeric>

namespace quorvane {

using namespace std::chrono_literals;

namespace {

const QString kHome = u"/Users/alex/.quorvane"_s;
const QString kBaselineContainer = u"/Users/alex/Library/Mobile Documents/7KX2MR04TD~com~quorvane~app"_s;
const QString kCloud = kBaselineContainer + u"/Documents/Quorvane/SystemBaselines"_s;
const QString kCurrent = u"/master-baseline-current.json"_s;
const QString kArchive = u"master-baseline-2026-11-15T21:05:37Z.json"_s;

SystemSnapshot snapshotAt(int second, const QString& label = u"Own"_s) {
    SystemSnapshot snapshot;
    snapshot.id = QUuid::createUuid();
    snapshot.dateCreated = QDateTime(QDate(2026, 11, 15), QTime(21, 5, second), Qt::UTC);
    snapshot.label = label;
    return snapshot;
}

const MacIdentity kThisMac{u"Studio"_s, FixedMachine().id};
const MacIdentity kOtherMac{u"Studio"_s, u"9E4D02C7-16BB-5A8F-A3F0-2C7D5E814B66"_s}; // of the same name

QByteArray baselineText(const SystemSnapshot& snapshot, const MacIdentity& mac = kThisMac) {
    return encodeMasterBaseline(masterBaselineOf(snapshot, mac, {}));
}

class MasterBaselines : public ScriptedSystem {
protected:
    bool exists() { return QCoro::waitFor(manager.hasMasterBaseline()); }
    QString archive(const SystemSnapshot& snapshot, const std::optional<QString>& label = {}) {
        return QCoro::waitFor(manager.archiveMasterBaseline(snapshot, label));
    }
    QString archiveError(const SystemSnapshot& snapshot) { return QCoro::waitFor(errorOfArchiving(snapshot)); }
    std::optional<LatestBaseline> latest() { return QCoro::waitFor(manager.loadLatestMasterBaseline()); }
    /// The label of what is given, with its place: "cloud: Own".
    QString latestLabel() {
        const auto found = latest();
        if (!found) {
            return u"none"_s;
        }
        return (found->place == BaselinePlace::ICloud ? u"cloud: "_s : u"home: "_s) +
               found->baseline.label.value_or(QString());
    }
    void signIn() {
        cloud.account = true;
        cloud.container = kBaselineContainer;
    }
    std::chrono::milliseconds waited() const {
        return std::accumulate(clock.waits.begin(), clock.waits.end(), std::chrono::milliseconds(0));
    }
    QByteArray textAt(const QString& path) const { return files.read(path); }

    QCoro::Task<QString> errorOfArchiving(SystemSnapshot snapshot) {
        try {
            co_await manager.archiveMasterBaseline(snapshot, {});
        } catch (const MasterSystemBaselineError& error) {
            EXPECT_EQ(error.code(), MasterSystemBaselineError::Code::writeFailed);
            co_return error.message();
        }
        co_return u"no error"_s;
    }

    QTimer turns;
    MasterSystemBaselineManager manager{files, cloud, clock, machine};
};

} // namespace

// ---- Whether there is one

TEST_F(MasterBaselines, thatLieAtHomeAreFoundAtOnce) {
    files.addFile(kHome + kCurrent, "{}");
    EXPECT_TRUE(exists());
    EXPECT_TRUE(clock.waits.isEmpty());
    EXPECT_TRUE(cloud.calls.isEmpty());
}

TEST_F(MasterBaselines, thatLieInICloudAreFoundAtOnce) {
    signIn();
    files.addFile(kCloud + kCurrent, "{}");
    EXPECT_TRUE(exists());
    EXPECT_TRUE(clock.waits.isEmpty());
}

TEST_F(MasterBaselines, areMissedOnlyAfterThreeSeconds) {
    EXPECT_FALSE(exists());
    EXPECT_EQ(clock.waits, QList<std::chrono::milliseconds>(12, 250ms));
}

TEST_F(MasterBaselines, areMissedAfterThreeSecondsOfRealTimeWithTheEventLoopRunning) {
    SystemClock realClock;
    MasterSystemBaselineManager realManager{files, cloud, realClock, machine};
    const Ticks ticks;
    QElapsedTimer time;
    time.start();
    EXPECT_FALSE(QCoro::waitFor(realManager.hasMasterBaseline()));
    EXPECT_GE(time.elapsed(), 2900);
    EXPECT_GT(ticks.count(), 100);
}

TEST_F(MasterBaselines, thatICloudLearnsOfWhileItWaitsAreFound) {
    signIn();
    QObject::connect(&turns, &QTimer::timeout, [this] {
        if (clock.waits.size() == 5) {
            files.addFile(kCloud + kCurrent, "{}");
        }
    });
    turns.start(0);
    EXPECT_TRUE(exists());
    EXPECT_EQ(clock.waits.size(), 5);
}

TEST_F(MasterBaselines, ofAnotherAccountAreNotLookedFor) {
    cloud.container = kBaselineContainer; // nobody is signed in
    files.addFile(kCloud + kCurrent, "{}");
    EXPECT_FALSE(exists());
}

// ---- Archiving

TEST_F(MasterBaselines, areWrittenAtHomeWithTheirArchive) {
    const SystemSnapshot snapshot = snapshotAt(37);
    EXPECT_EQ(archive(snapshot), kArchive);
    EXPECT_EQ(files.list(kHome), (QStringList{kArchive, kCurrent.mid(1)})); // the archive came first
    EXPECT_EQ(textAt(kHome + u'/' + kArchive), baselineText(snapshot));
    EXPECT_EQ(textAt(kHome + kCurrent), baselineText(snapshot));
    EXPECT_TRUE(cloud.calls.isEmpty());
}

TEST_F(MasterBaselines, areWrittenInICloudAsWell) {
    signIn();
    const SystemSnapshot snapshot = snapshotAt(37);
    EXPECT_EQ(archive(snapshot), kArchive);
    EXPECT_EQ(cloud.calls, (QStringList{u"containerFolder"_s, u"create "_s + kCloud + u'/' + kArchive,
                                        u"create "_s + kCloud + kCurrent}));
    for (const QString& folder : {kHome, kCloud}) {
        EXPECT_EQ(textAt(folder + u'/' + kArchive), baselineText(snapshot));
        EXPECT_EQ(textAt(folder + kCurrent), baselineText(snapshot));
    }
}

TEST_F(MasterBaselines, replaceOnlyTheCurrentFile) {
    signIn();
    const SystemSnapshot first = snapshotAt(37);
    const SystemSnapshot second = snapshotAt(38);
    archive(first);
    cloud.calls.clear();
    EXPECT_EQ(archive(second), u"master-baseline-2026-11-15T21:05:38Z.json"_s);
    EXPECT_EQ(cloud.calls, (QStringList{u"containerFolder"_s,
                                        u"create "_s + kCloud + u"/master-baseline-2026-11-15T21:05:38Z.json"_s,
                                        u"replace "_s + kCloud + kCurrent}));
    for (const QString& folder : {kHome, kCloud}) {
        EXPECT_EQ(textAt(folder + u'/' + kArchive), baselineText(first));
        EXPECT_EQ(textAt(folder + kCurrent), baselineText(second));
    }
}

TEST_F(MasterBaselines, ofOneSecondShareAnArchive) {
    const SystemSnapshot first = snapshotAt(37, u"first"_s);
    const SystemSnapshot second = snapshotAt(37, u"second"_s);
    EXPECT_EQ(archive(first), kArchive);
    EXPECT_EQ(archive(second), kArchive);
    EXPECT_EQ(textAt(kHome + u'/' + kArchive), baselineText(second));
    EXPECT_EQ(files.list(kHome).size(), 2);
}

TEST_F(MasterBaselines, keepEarlierArchivesWhenTheClockGoesBack) {
    const SystemSnapshot before = snapshotAt(37);
    const SystemSnapshot after = snapshotAt(12);
    archive(before);
    EXPECT_EQ(archive(after), u"master-baseline-2026-11-15T21:05:12Z.json"_s);
    EXPECT_EQ(textAt(kHome + u'/' + kArchive), baselineText(before));
    EXPECT_EQ(textAt(kHome + kCurrent), baselineText(after));
}

TEST_F(MasterBaselines, takeTheGivenLabelBeforeTheSnapshotsOwn) {
    archive(snapshotAt(37), u"Given"_s);
    EXPECT_EQ(latestLabel(), u"home: Given"_s);
    archive(snapshotAt(38));
    EXPECT_EQ(latestLabel(), u"home: Own"_s);
}

TEST_F(MasterBaselines, areKeptAtHomeWhereAnAccountHasNoContainer) {
    cloud.account = true;
    EXPECT_EQ(archiveError(snapshotAt(37)),
              u"Could not save the master system baseline: iCloud Drive is not available."_s);
    EXPECT_EQ(latestLabel(), u"home: Own"_s);
}

TEST_F(MasterBaselines, triesNothingInICloudWhenHomeCannotBeWritten) {
    signIn();
    files.failOn(MemoryFileManager::Operation::Write, kHome + u'/' + kArchive);
    EXPECT_EQ(archiveError(snapshotAt(37)),
              u"Could not save the master system baseline: %1: Operation not permitted"_s.arg(kHome + u'/' + kArchive));
    EXPECT_TRUE(cloud.calls.isEmpty());
    EXPECT_FALSE(files.exists(kHome + kCurrent));
}

TEST_F(MasterBaselines, neverHaveACurrentFileWithoutItsArchive) {
    const SystemSnapshot old = snapshotAt(37);
    archive(old);
    const int changes = files.changes();
    files.failOn(MemoryFileManager::Operation::Write, kHome + kCurrent);
    archiveError(snapshotAt(38));
    EXPECT_GT(files.changes(), changes);
    EXPECT_TRUE(files.exists(kHome + u"/master-baseline-2026-11-15T21:05:38Z.json"_s));
    EXPECT_EQ(textAt(kHome + kCurrent), baselineText(old));
}

TEST_F(MasterBaselines, sayWhyICloudRefusedThem) {
    signIn();
    cloud.writeError = u"The file is locked."_s;
    EXPECT_EQ(archiveError(snapshotAt(37)),
              u"Could not save the master system baseline: Could not create the iCloud baseline file."_s);
    EXPECT_EQ(textAt(kHome + kCurrent).size(), textAt(kHome + u'/' + kArchive).size());
    files.addFile(kCloud + u'/' + kArchive, "old");
    EXPECT_EQ(archiveError(snapshotAt(37)), u"Could not save the master system baseline: The file is locked."_s);
    EXPECT_EQ(textAt(kCloud + u'/' + kArchive), "old");
}

TEST_F(MasterBaselines, ofADateThatNoFileCanHoldAreNotWritten) {
    SystemSnapshot beyond = snapshotAt(37);
    beyond.dateCreated = QDateTime(QDate(10000, 1, 1), QTime(0, 0), Qt::UTC);
    EXPECT_EQ(archiveError(beyond), u"Could not save the master system baseline: The date can't be written."_s);
    EXPECT_FALSE(files.exists(kHome));
}

// ---- Loading

TEST_F(MasterBaselines, areNoneWhereNothingWasArchived) {
    EXPECT_EQ(latestLabel(), u"none"_s);
    signIn();
    EXPECT_EQ(latestLabel(), u"none"_s);
}

TEST_F(MasterBaselines, ofICloudGoFirstEvenWhenTheyAreOlder) {
    signIn();
    files.addFile(kHome + kCurrent, baselineText(snapshotAt(50, u"newer"_s)));
    files.addFile(kCloud + kCurrent, baselineText(snapshotAt(10, u"older"_s)));
    EXPECT_EQ(latestLabel(), u"cloud: older"_s);
}

TEST_F(MasterBaselines, ofHomeGoFirstWhereICloudsAreAnotherMacs) {
    signIn();
    files.addFile(kHome + kCurrent, baselineText(snapshotAt(10)));
    files.addFile(kCloud + kCurrent, baselineText(snapshotAt(50, u"later"_s), kOtherMac));
    EXPECT_EQ(latestLabel(), u"home: Own"_s);
    EXPECT_FALSE(latest()->isAnotherMacs);
    files.remove(kHome + kCurrent);
    EXPECT_EQ(latestLabel(), u"cloud: later"_s);
    EXPECT_TRUE(latest()->isAnotherMacs);
}

TEST_F(MasterBaselines, areFoundAgainByAMacThatWasRenamed) {
    signIn();
    files.addFile(kCloud + kCurrent, baselineText(snapshotAt(10), {u"Before"_s, kThisMac.id}));
    EXPECT_EQ(latestLabel(), u"cloud: Own"_s);
    EXPECT_FALSE(latest()->isAnotherMacs);
}

TEST_F(MasterBaselines, ofAMacThatCannotTellItsIdGoByItsName) {
    machine.id.clear();
    const SystemSnapshot snapshot = snapshotAt(37);
    archive(snapshot);
    EXPECT_EQ(textAt(kHome + kCurrent), baselineText(snapshot, {u"Studio"_s, std::nullopt}));
    EXPECT_FALSE(latest()->isAnotherMacs);
}

TEST_F(MasterBaselines, ofHomeStandInWhereICloudsCannotBeRead) {
    signIn();
    files.addFile(kHome + kCurrent, baselineText(snapshotAt(37)));
    for (const QByteArray& damaged : {QByteArray("{"), QByteArray(), QByteArray("[]")}) {
        files.addFile(kCloud + kCurrent, damaged);
        EXPECT_EQ(latestLabel(), u"home: Own"_s);
    }
    files.addFile(kCloud + kCurrent, baselineText(snapshotAt(38)));
    files.failOn(MemoryFileManager::Operation::Read, kCloud + kCurrent);
    EXPECT_EQ(latestLabel(), u"home: Own"_s);
    files.addFile(kHome + kCurrent, "cut o");
    EXPECT_EQ(latestLabel(), u"none"_s);
}

TEST_F(MasterBaselines, ofICloudAreDownloadedFirst) {
    signIn();
    cloud.waiting[kCloud + kCurrent] = {baselineText(snapshotAt(37)), 7, {}};
    EXPECT_EQ(latestLabel(), u"cloud: Own"_s);
    EXPECT_EQ(clock.waits, QList<std::chrono::milliseconds>(7, 250ms));
    EXPECT_EQ(cloud.calls.filter(u"startDownloading"_s), QStringList(u"startDownloading "_s + kCloud + kCurrent));
}

TEST_F(MasterBaselines, thatNeverArriveAreLeftAfterFiveSeconds) {
    signIn();
    files.addFile(kHome + kCurrent, baselineText(snapshotAt(37)));
    cloud.waiting[kCloud + kCurrent] = {baselineText(snapshotAt(38)), {}, {}};
    EXPECT_EQ(latestLabel(), u"home: Own"_s);
    EXPECT_EQ(cloud.calls.filter(u"isCurrent"_s).size(), 20);
    EXPECT_EQ(waited(), 5s);
}

TEST_F(MasterBaselines, keepAQuittingProgramNoLonger) {
    signIn();
    files.addFile(kHome + kCurrent, baselineText(snapshotAt(37)));
    cloud.waiting[kCloud + kCurrent] = {baselineText(snapshotAt(38)), {}, {}};
    clock.shutDown();
    EXPECT_EQ(latestLabel(), u"home: Own"_s);
    cloud.shutDown();
    EXPECT_EQ(latestLabel(), u"home: Own"_s);
    EXPECT_EQ(archiveError(snapshotAt(39)),
              u"Could not save the master system baseline: iCloud Drive is not available."_s);
}

TEST_F(MasterBaselines, areNoneWhereSomethingElseStandsInTheFilesPlace) {
    files.addFolders(kHome + kCurrent);
    EXPECT_EQ(latestLabel(), u"none"_s);
    EXPECT_TRUE(archiveError(snapshotAt(37)).startsWith(u"Could not save the master system baseline: "_s));
    files.remove(kHome + kCurrent);
    files.addLink(kHome + kCurrent, u"/nowhere"_s);
    EXPECT_EQ(latestLabel(), u"none"_s);
    archive(snapshotAt(37)); // replaces the link and doesn't follow it
    EXPECT_EQ(latestLabel(), u"home: Own"_s);
    EXPECT_FALSE(files.exists(u"/nowhere"_s));
}

TEST_F(MasterBaselines, whoseOlderContentIsOnTheDiskAreReadWhenTheNewerDoesNotArrive) {
    signIn();
    files.addFile(kCloud + kCurrent, baselineText(snapshotAt(37, u"old"_s)));
    cloud.waiting[kCloud + kCurrent] = {baselineText(snapshotAt(38, u"new"_s)), {}, {}};
    EXPECT_EQ(latestLabel(), u"cloud: old"_s);
}

TEST_F(MasterBaselines, ofHomeAreUsedWhereAnAccountHasNoContainer) {
    cloud.account = true;
    files.addFile(kHome + kCurrent, baselineText(snapshotAt(37)));
    EXPECT_EQ(latestLabel(), u"home: Own"_s);
}

} // namespace quorvane
