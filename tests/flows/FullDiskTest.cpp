// Baselines where the disk doesn't take them: it is full, or the folder isn't the user's.

#include "fakes/RehearsalProgram.h"
#include "fakes/WayBackMac.h"

namespace quorvane {

namespace {

class FullDisk : public WayBackMac {
protected:
    /// What stays as it was, byte for byte.
    struct Stored {
        QByteArray snapshot;
        QStringList archives;

        bool operator==(const Stored&) const = default;
    };
    static Stored storedOn(const QString& mac) {
        return {contentOn(mac, kWayBackSnapshot), filesOn(mac, kHomeBaselines) + filesOn(mac, kCloudBaselines)};
    }
    static void giveToRoot(const QString& mac, const QString& path) {
        macsim::Mac(mac).volume(macsim::Actor::Root).setOwner(path, macsim::Actor::Root);
    }
};

} // namespace

TEST_F(FullDisk, theSnapshotThatCannotBeWrittenKeepsTheOldOneAndIsAFailure) {
    for (const int change : {1, 2}) {
        const QString mac = copyOfMac();
        const Stored before = storedOn(mac);
        const QByteArray rule = R"([{"adapter": "files", "error": "No space left on device", "change": )" +
                                QByteArray::number(change) + "}]";
        QStringList log;
        EXPECT_FALSE(capture(mac, &log, faultsFile(rule)));
        EXPECT_EQ(log, QStringList({u"\nCapturing system snapshot..."_s, u"  [ERROR] Failed to save snapshot: "_s +
                                                                             kWayBackSnapshot +
                                                                             u": No space left on device"_s}));
        EXPECT_EQ(storedOn(mac), before);
        expectFilesWhole(mac);
    }
}

TEST_F(FullDisk, anArchiveThatCannotBeWrittenLeavesTheSnapshotAsGoodAsItIs) {
    int change = 3; // after the folder and the file of the snapshot
    const QString archived = u"  [MASTER] Archived protected baseline as "_s;
    for (QStringList log; log.filter(archived).isEmpty(); ++change) {
        SCOPED_TRACE(change);
        ASSERT_LT(change, 20);
        const QString mac = copyOfMac();
        const QByteArray rule = R"([{"adapter": "files", "error": "No space left on device", "change": )" +
                                QByteArray::number(change) + "}]";
        EXPECT_TRUE(capture(mac, &log, faultsFile(rule)));
        EXPECT_EQ(log.mid(0, 2), QStringList({u"\nCapturing system snapshot..."_s,
                                              u"  [SNAPSHOT] Saved system baseline for \"Late\"."_s}));
        EXPECT_EQ(log.size(), 3);
        EXPECT_TRUE(log.last().startsWith(archived) ||
                    log.last().startsWith(u"  [ERROR] Could not archive master baseline: "_s))
            << log.last().toStdString();
        EXPECT_EQ(snapshotOn(mac)->label, u"Late"_s);
        expectFilesWhole(mac);
    }
    EXPECT_EQ(change, 10) << "four writes and two folders, and once without any failure";
}

TEST_F(FullDisk, aFolderOfRootsRefusesOnlyWhatBelongsThere) {
    const struct {
        QString folder;
        bool isSaved;
        qsizetype newArchives; ///< at home and in iCloud
    } cases[] = {
        {kWayBackSnapshot.section(u'/', 0, -2), false, 0}, {kHomeBaselines, true, 0}, {kCloudBaselines, true, 1}};
    for (const auto& [root, isSaved, newArchives] : cases) {
        SCOPED_TRACE(root.toStdString());
        const QString mac = copyOfMac();
        const Stored before = storedOn(mac);
        giveToRoot(mac, root);
        QStringList log;
        EXPECT_EQ(capture(mac, &log), isSaved);
        EXPECT_EQ(log.at(1),
                  isSaved ? u"  [SNAPSHOT] Saved system baseline for \"Late\"."_s
                          : u"  [ERROR] Failed to save snapshot: "_s + kWayBackSnapshot + u": Permission denied"_s);
        EXPECT_EQ(log.filter(u"  [ERROR] Could not archive master baseline: "_s).size(), isSaved ? 1 : 0);
        EXPECT_EQ(storedOn(mac).snapshot != before.snapshot, isSaved);
        EXPECT_EQ(storedOn(mac).archives.size(), before.archives.size() + newArchives);
        expectFilesWhole(mac);
    }
}

TEST_F(RehearsalTest, aSnapshotThatTheSystemLetsNobodyWriteIsAFailureAndKeepsTheOldOne) {
    ASSERT_EQ(rehearse({u"snapshot"_s, u"First"_s, u"--master"_s}).status, 0);
    const QString snapshot = macFolder() + kWayBackSnapshot;
    QFile file(snapshot);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray before = file.readAll();

    const Ending full = rehearse({u"snapshot"_s, u"Second"_s, u"--master"_s}, 512);
    EXPECT_EQ(full.status, 1);
    EXPECT_EQ(full.output.toStdString(),
              "\nCapturing system snapshot...\n"
              "  [ERROR] Failed to save snapshot: " +
                  kWayBackSnapshot.toStdString() +
                  ": No space left on device\n"
                  "\nSnapshot Failed\n"
                  "  Could not save the restore baseline. Check the Logs tab for details.\n");
    QFile after(snapshot);
    ASSERT_TRUE(after.open(QIODevice::ReadOnly));
    EXPECT_EQ(after.readAll(), before);
    EXPECT_EQ(QDir(QFileInfo(snapshot).path()).entryList(QDir::Files | QDir::Hidden),
              QStringList(u"system_snapshot.json"_s));
}

} // namespace quorvane
