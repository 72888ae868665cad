#include "core/Json.h"
#include "fakes/ScriptedSystem.h"

#include "snapshots/SnapshotManager.h"

namespace quorvane {

namespace {

const QString kSupportFolder = u"/Users/alex/Library/Application Support/Quorvane"_s;
const QString kStoredSnapshot = kSupportFolder + u"/system_snapshot.json"_s;

SystemSnapshot snapshotLabelled(const QString& label) {
    SystemSnapshot snapshot;
    snapshot.id = QUuid::createUuid();
    snapshot.dateCreated = QDateTime(QDate(2026, 11, 15), QTime(21, 5, 37), Qt::UTC);
    snapshot.label = label;
    return snapshot;
}

class Snapshots : public ::testing::Test {
protected:
    MemoryFileManager files;
    FixedMachine machine;
    SnapshotManager manager{files, machine};
};

} // namespace

TEST_F(Snapshots, lieInTheProgramsFolder) {
    EXPECT_EQ(manager.snapshotFileURL(), kStoredSnapshot);
    EXPECT_TRUE(files.exists(kSupportFolder));
    EXPECT_FALSE(manager.hasSnapshotFile());
}

TEST_F(Snapshots, areReadAsTheyWereSaved) {
    const SystemSnapshot snapshot = snapshotLabelled(u"Manual snapshot"_s);
    manager.save(snapshot);
    EXPECT_EQ(manager.load(), snapshot);
    EXPECT_TRUE(manager.hasSnapshotFile());
    EXPECT_EQ(files.read(kStoredSnapshot), jsonText(encodeJson(snapshot)));
    EXPECT_EQ(files.list(kSupportFolder), QStringList(u"system_snapshot.json"_s));
}

TEST_F(Snapshots, areReplacedByTheNext) {
    manager.save(snapshotLabelled(u"first"_s));
    const SystemSnapshot second = snapshotLabelled(u"second"_s);
    manager.save(second);
    EXPECT_EQ(manager.load(), second);
}

TEST_F(Snapshots, areNoneWhereThereIsNoFile) {
    EXPECT_EQ(manager.load(), std::nullopt);
}

TEST_F(Snapshots, areNoneWhereTheFileCannotBeDecoded) {
    manager.save(snapshotLabelled(u"whole"_s));
    const QByteArray whole = files.read(kStoredSnapshot);
    QByteArray withoutId = whole;
    withoutId.replace("\"id\"", "\"other\"");
    for (const QByteArray& text : {QByteArray(), whole.left(whole.size() / 2), withoutId, QByteArray("[]"),
                                   QByteArray("\xff\xfe{}"), QByteArray("null")}) {
        files.addFile(kStoredSnapshot, text);
        EXPECT_EQ(manager.load(), std::nullopt) << text.toStdString();
        EXPECT_TRUE(manager.hasSnapshotFile());
    }
}

TEST_F(Snapshots, areNoneWhereTheFileCannotBeRead) {
    manager.save(snapshotLabelled(u"whole"_s));
    files.failOn(MemoryFileManager::Operation::Read, kStoredSnapshot);
    EXPECT_EQ(manager.load(), std::nullopt);
}

TEST_F(Snapshots, areNoneWhereAFolderStandsInTheFilesPlace) {
    files.addFolders(kStoredSnapshot);
    EXPECT_EQ(manager.load(), std::nullopt);
    EXPECT_THROW(manager.save(snapshotLabelled(u"new"_s)), FileError);
}

TEST_F(Snapshots, keepTheOldFileWholeWhenTheNewOneCannotBeWritten) {
    const SystemSnapshot old = snapshotLabelled(u"old"_s);
    manager.save(old);
    files.failAtChange(1);
    EXPECT_THROW(manager.save(snapshotLabelled(u"new"_s)), FileError);
    EXPECT_EQ(manager.load(), old);
}

TEST_F(Snapshots, reportAFolderThatCannotBeMadeWhenTheyAreSaved) {
    files.failOn(MemoryFileManager::Operation::CreateFolders, kSupportFolder);
    EXPECT_EQ(manager.load(), std::nullopt);
    EXPECT_THROW(manager.save(snapshotLabelled(u"new"_s)), FileError);
}

TEST_F(Snapshots, ofADateThatNoFileCanHoldKeepTheOldOne) {
    const SystemSnapshot old = snapshotLabelled(u"old"_s);
    manager.save(old);
    SystemSnapshot beyond = snapshotLabelled(u"new"_s);
    beyond.dateCreated = QDateTime(QDate(10000, 1, 1), QTime(0, 0), Qt::UTC);
    EXPECT_THROW(manager.save(beyond), EncodingError);
    EXPECT_EQ(manager.load(), old);
}

} // namespace quorvane
