// What the simulated iCloud Drive and the one in memory have in common.

#include "fakes/MemoryCloudDrive.h"
#include "fakes/SimulatedMacFolder.h"
#include "platform/simulated/FaultyFileManager.h"
#include "platform/simulated/SimulatedCloudDrive.h"
#include "platform/simulated/SimulatedFileManager.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kContainer = u"/Users/alex/Library/Mobile Documents/7KX2MR04TD~com~quorvane~app"_s;

/// An iCloud Drive, and what is behind it.
class CloudSubject {
public:
    virtual ~CloudSubject() = default;
    virtual CloudDrive& drive() = 0;
    virtual FileManager& files() = 0;
    virtual void setUp(bool hasAccount, bool hasContainer) = 0;
    virtual void failWrites(const QString& error) = 0;
    /// A file in the container that isn't downloaded. @param looks  none when it never comes
    virtual void addWaiting(const QString& path, const QByteArray& bytes, std::optional<int> looks,
                            const std::optional<QDateTime>& modified) = 0;
};

class SimulatedCloudSubject final : public CloudSubject {
public:
    CloudDrive& drive() override { return m_drive; }
    FileManager& files() override { return m_files; }
    void setUp(bool hasAccount, bool hasContainer) override {
        change([&](macsim::Json& cloud) {
            cloud["account"] = hasAccount;
            cloud["container"] = hasContainer;
        });
    }
    void failWrites(const QString& error) override {
        change([&](macsim::Json& cloud) { cloud["writesFail"] = error.toStdString(); });
    }
    void addWaiting(const QString& path, const QByteArray& bytes, std::optional<int> looks,
                    const std::optional<QDateTime>& modified) override {
        change([&](macsim::Json& cloud) {
            macsim::Json file{{"text", bytes.toStdString()}};
            file["looks"] = looks ? macsim::Json(*looks) : macsim::Json();
            if (modified) {
                file["modified"] = modified->toString(Qt::ISODate).toStdString();
            }
            cloud["files"][path.toStdString()] = file;
        });
    }

private:
    void change(const std::function<void(macsim::Json&)>& change) { m_mac.mac.state().update("cloud", change); }

    macsim::SimulatedMacFolder m_mac;
    SimulatedFileManager m_files{m_mac.mac.volume(macsim::Actor::User)};
    SimulatedCloudDrive m_drive{m_mac.mac, m_files};
};

class MemoryCloudSubject final : public CloudSubject {
public:
    CloudDrive& drive() override { return m_drive; }
    FileManager& files() override { return m_files; }
    void setUp(bool hasAccount, bool hasContainer) override {
        m_drive.account = hasAccount;
        m_drive.container = hasContainer ? std::optional(kContainer) : std::nullopt;
    }
    void failWrites(const QString& error) override { m_drive.writeError = error; }
    void addWaiting(const QString& path, const QByteArray& bytes, std::optional<int> looks,
                    const std::optional<QDateTime>& modified) override {
        m_drive.waiting.insert(path, {bytes, looks, modified});
    }

private:
    MemoryFileManager m_files;
    MemoryCloudDrive m_drive{m_files};
};

class CloudDriveContract : public ::testing::TestWithParam<std::unique_ptr<CloudSubject> (*)()> {
protected:
    /// As it is for a user who is signed in.
    void signIn() {
        subject->setUp(true, true);
        ASSERT_EQ(drive.containerFolder().result(), kContainer);
    }
    QStringList sortedNames() const {
        QStringList names = drive.list(kContainer);
        names.sort();
        return names;
    }

    std::unique_ptr<CloudSubject> subject = GetParam()();
    CloudDrive& drive = subject->drive();
    FileManager& files = subject->files();
    const QString path = kContainer + u"/profiles.json"_s;
    const QDateTime evening{QDate(2026, 3, 14), QTime(20, 30), Qt::UTC};
};

template <typename Each>
std::unique_ptr<CloudSubject> makeSubject() {
    return std::make_unique<Each>();
}

} // namespace

TEST_P(CloudDriveContract, onlyAnAccountHasAContainerAndNotEveryOne) {
    EXPECT_FALSE(drive.hasAccount()) << "nobody is signed in unless it is said";
    EXPECT_EQ(drive.containerFolder().result(), std::nullopt);
    subject->setUp(false, true);
    EXPECT_FALSE(drive.hasAccount());
    EXPECT_EQ(drive.containerFolder().result(), std::nullopt);
    subject->setUp(true, false);
    EXPECT_TRUE(drive.hasAccount());
    EXPECT_EQ(drive.containerFolder().result(), std::nullopt);
    EXPECT_FALSE(files.exists(kContainer));
    subject->setUp(true, true);
    EXPECT_TRUE(drive.hasAccount());
    EXPECT_EQ(drive.containerFolder().result(), kContainer);
}

TEST_P(CloudDriveContract, theSystemMakesTheFolderAndKeepsWhatIsInIt) {
    signIn();
    EXPECT_EQ(files.list(kContainer), QStringList());
    files.writeAtomically(path, "1");
    EXPECT_EQ(drive.containerFolder().result(), kContainer);
    EXPECT_EQ(files.read(path), "1");
}

TEST_P(CloudDriveContract, whatIsCreatedIsThereAndCurrent) {
    signIn();
    EXPECT_FALSE(drive.isUbiquitous(path));
    EXPECT_FALSE(drive.isCurrent(path));
    EXPECT_EQ(drive.modificationDate(path), std::nullopt);
    EXPECT_TRUE(drive.create(path, "{}"));
    EXPECT_EQ(files.read(path), "{}");
    EXPECT_TRUE(drive.isUbiquitous(path));
    EXPECT_TRUE(drive.isCurrent(path));
    ASSERT_TRUE(drive.modificationDate(path));
    EXPECT_EQ(drive.modificationDate(path)->timeSpec(), Qt::UTC);
    EXPECT_EQ(sortedNames(), QStringList(u"profiles.json"_s));
}

TEST_P(CloudDriveContract, aContentIsReplaced) {
    signIn();
    ASSERT_TRUE(drive.create(path, "old"));
    const QFuture<std::optional<QString>> replaced = drive.replace(path, "new");
    EXPECT_EQ(replaced.result(), std::nullopt);
    EXPECT_EQ(files.read(path), "new");
    EXPECT_EQ(sortedNames(), QStringList(u"profiles.json"_s));
}

TEST_P(CloudDriveContract, aFailedWriteIsToldAndLeavesWhatWasThere) {
    signIn();
    ASSERT_TRUE(drive.create(path, "old"));
    subject->failWrites(u"You don’t have permission to save the file."_s);
    EXPECT_FALSE(drive.create(kContainer + u"/other.json"_s, "{}"));
    EXPECT_EQ(drive.replace(path, "new").result(), u"You don’t have permission to save the file."_s);
    EXPECT_EQ(files.read(path), "old");
    EXPECT_EQ(sortedNames(), QStringList(u"profiles.json"_s));
}

TEST_P(CloudDriveContract, whatTheDiskRefusesIsAFailedWrite) {
    signIn();
    const QString nowhere = kContainer + u"/missing/x.json"_s;
    EXPECT_FALSE(drive.create(nowhere, "{}"));
    const std::optional<QString> error = drive.replace(nowhere, "{}").result();
    ASSERT_TRUE(error);
    EXPECT_TRUE(error->endsWith(u": No such file or directory"_s)) << error->toStdString();
}

TEST_P(CloudDriveContract, aFileThatIsNotDownloadedIsListedAndNotOnTheDisk) {
    signIn();
    subject->addWaiting(path, "cloud", 2, evening);
    ASSERT_TRUE(drive.create(kContainer + u"/here.json"_s, "{}"));
    EXPECT_EQ(sortedNames(), QStringList({u"here.json"_s, u"profiles.json"_s}));
    EXPECT_FALSE(files.exists(path));
    EXPECT_TRUE(drive.isUbiquitous(path));
    EXPECT_FALSE(drive.isCurrent(path));
    EXPECT_EQ(drive.modificationDate(path), evening);
}

TEST_P(CloudDriveContract, aDownloadComesAfterItsLooksOnceItIsAskedFor) {
    signIn();
    subject->addWaiting(path, "cloud", 2, evening);
    for (int look = 0; look < 5; ++look) {
        EXPECT_FALSE(drive.isCurrent(path)) << "nobody has asked for it";
    }
    drive.startDownloading(path);
    EXPECT_FALSE(drive.isCurrent(path));
    EXPECT_FALSE(drive.isCurrent(path));
    EXPECT_FALSE(files.exists(path));
    EXPECT_TRUE(drive.isCurrent(path));
    EXPECT_EQ(files.read(path), "cloud");
    EXPECT_TRUE(drive.isCurrent(path)) << "and it stays";
    EXPECT_EQ(sortedNames(), QStringList(u"profiles.json"_s));
}

TEST_P(CloudDriveContract, anOlderContentOnTheDiskIsNotCurrentUntilTheNewerOneCame) {
    signIn();
    ASSERT_TRUE(drive.create(path, "old"));
    subject->addWaiting(path, "new", 0, std::nullopt);
    EXPECT_EQ(sortedNames(), QStringList(u"profiles.json"_s)) << "once";
    EXPECT_TRUE(drive.modificationDate(path)) << "that of the older content";
    EXPECT_FALSE(drive.isCurrent(path));
    EXPECT_EQ(files.read(path), "old");
    drive.startDownloading(path);
    EXPECT_TRUE(drive.isCurrent(path));
    EXPECT_EQ(files.read(path), "new");
}

TEST_P(CloudDriveContract, aDownloadMayNeverCome) {
    signIn();
    subject->addWaiting(path, "cloud", std::nullopt, std::nullopt);
    drive.startDownloading(path);
    for (int look = 0; look < 20; ++look) {
        ASSERT_FALSE(drive.isCurrent(path));
    }
    EXPECT_FALSE(files.exists(path));
    EXPECT_EQ(drive.modificationDate(path), std::nullopt);
}

TEST_P(CloudDriveContract, whatIsWrittenOverAWaitingFileIsTheNewestContent) {
    signIn();
    subject->addWaiting(path, "cloud", 1, std::nullopt);
    drive.startDownloading(path);
    EXPECT_EQ(drive.replace(path, "mine").result(), std::nullopt);
    EXPECT_TRUE(drive.isCurrent(path));
    EXPECT_EQ(files.read(path), "mine");
}

TEST_P(CloudDriveContract, whatIsRemovedIsGoneFromTheDiskAndFromICloud) {
    signIn();
    ASSERT_TRUE(drive.create(path, "{}"));
    ASSERT_TRUE(drive.create(kContainer + u"/other.json"_s, "other"));
    EXPECT_EQ(drive.remove(path).result(), std::nullopt);
    EXPECT_FALSE(files.exists(path));
    EXPECT_FALSE(drive.isUbiquitous(path));
    EXPECT_FALSE(drive.isCurrent(path));
    EXPECT_EQ(drive.modificationDate(path), std::nullopt);
    EXPECT_EQ(sortedNames(), QStringList(u"other.json"_s));
    EXPECT_EQ(files.read(kContainer + u"/other.json"_s), "other");
    EXPECT_TRUE(drive.create(path, "again"));
    EXPECT_EQ(files.read(path), "again");
}

TEST_P(CloudDriveContract, whatIsNotDownloadedIsRemovedAndNeverComes) {
    signIn();
    subject->addWaiting(path, "cloud", 0, evening);
    EXPECT_EQ(drive.remove(path).result(), std::nullopt);
    EXPECT_EQ(sortedNames(), QStringList());
    EXPECT_FALSE(drive.isUbiquitous(path));
    drive.startDownloading(path);
    EXPECT_FALSE(drive.isCurrent(path));
    EXPECT_FALSE(files.exists(path));
}

TEST_P(CloudDriveContract, anOlderContentIsRemovedTogetherWithTheNewerOneThatIsToCome) {
    signIn();
    ASSERT_TRUE(drive.create(path, "old"));
    subject->addWaiting(path, "new", 0, std::nullopt);
    drive.startDownloading(path);
    EXPECT_EQ(drive.remove(path).result(), std::nullopt);
    EXPECT_FALSE(drive.isCurrent(path));
    EXPECT_FALSE(files.exists(path));
    EXPECT_EQ(sortedNames(), QStringList());
}

TEST_P(CloudDriveContract, aFailedRemovalIsToldAndLeavesWhatWasThere) {
    signIn();
    const std::optional<QString> missing = drive.remove(path).result();
    ASSERT_TRUE(missing);
    EXPECT_TRUE(missing->endsWith(u": No such file or directory"_s)) << missing->toStdString();
    files.createFolders(kContainer + u"/folder"_s);
    ASSERT_TRUE(drive.create(kContainer + u"/folder/x.json"_s, "{}"));
    const std::optional<QString> full = drive.remove(kContainer + u"/folder"_s).result();
    ASSERT_TRUE(full);
    EXPECT_TRUE(full->endsWith(u": Directory not empty"_s)) << full->toStdString();
    EXPECT_EQ(files.read(kContainer + u"/folder/x.json"_s), "{}");
}

TEST_P(CloudDriveContract, aProgramThatQuitsChangesNothing) {
    signIn();
    ASSERT_TRUE(drive.create(path, "old"));
    drive.shutDown();
    EXPECT_EQ(drive.containerFolder().result(), std::nullopt);
    EXPECT_FALSE(drive.create(kContainer + u"/other.json"_s, "{}"));
    EXPECT_TRUE(drive.replace(path, "new").result());
    EXPECT_TRUE(drive.remove(path).result());
    EXPECT_EQ(files.read(path), "old");
    EXPECT_EQ(files.list(kContainer), QStringList(u"profiles.json"_s));
}

TEST_P(CloudDriveContract, whereTheContainerHasGoneNothingChanges) {
    signIn();
    ASSERT_TRUE(drive.create(path, "old"));
    subject->setUp(true, false);
    EXPECT_FALSE(drive.create(kContainer + u"/other.json"_s, "{}"));
    EXPECT_TRUE(drive.replace(path, "new").result());
    EXPECT_TRUE(drive.remove(path).result());
    EXPECT_EQ(files.read(path), "old");
    EXPECT_FALSE(files.exists(kContainer + u"/other.json"_s));
}

TEST_P(CloudDriveContract, downloadingWhatICloudDoesNotKnowChangesNothing) {
    signIn();
    drive.startDownloading(path);
    EXPECT_FALSE(drive.isUbiquitous(path));
    EXPECT_FALSE(drive.isCurrent(path));
    EXPECT_EQ(sortedNames(), QStringList());
}

TEST_P(CloudDriveContract, onlyTheContainersFilesAreICloudsAndOnlyWhileItIsThere) {
    signIn();
    files.writeAtomically(u"/Users/alex/mine.json"_s, "{}");
    ASSERT_TRUE(drive.create(path, "{}"));
    EXPECT_FALSE(drive.isUbiquitous(u"/Users/alex/mine.json"_s));
    EXPECT_FALSE(drive.isCurrent(u"/Users/alex/mine.json"_s));
    EXPECT_EQ(drive.modificationDate(u"/Users/alex/mine.json"_s), std::nullopt);
    subject->setUp(false, true);
    EXPECT_FALSE(drive.isUbiquitous(path));
    EXPECT_FALSE(drive.isCurrent(path));
}

TEST_P(CloudDriveContract, aMissingFolderCannotBeListed) {
    EXPECT_THROW(drive.list(kContainer), FileError);
    signIn();
    EXPECT_THROW(drive.list(kContainer + u"/missing"_s), FileError);
}

INSTANTIATE_TEST_SUITE_P(Simulated, CloudDriveContract, ::testing::Values(&makeSubject<SimulatedCloudSubject>));
INSTANTIATE_TEST_SUITE_P(Memory, CloudDriveContract, ::testing::Values(&makeSubject<MemoryCloudSubject>));

TEST(SimulatedCloudDrive, theProgramsWritesHaveTheFaultsOfItsFilesAndTheSystemsHaveNone) {
    macsim::SimulatedMacFolder mac;
    mac.mac.state().update("cloud", [](macsim::Json& cloud) {
        cloud = {{"account", true}, {"container", true}};
        cloud["files"][(kContainer + u"/a.json"_s).toStdString()] = {{"text", "cloud"}, {"looks", 0}};
    });
    SimulatedFileManager files(mac.mac.volume(macsim::Actor::User));
    FaultyFileManager faulty(files, {1, u"No space left on device"_s, std::nullopt});
    SimulatedCloudDrive drive(mac.mac, faulty);
    ASSERT_EQ(drive.containerFolder().result(), kContainer);
    drive.startDownloading(kContainer + u"/a.json"_s);
    EXPECT_TRUE(drive.isCurrent(kContainer + u"/a.json"_s));
    EXPECT_FALSE(drive.create(kContainer + u"/b.json"_s, "{}"));
    EXPECT_EQ(drive.replace(kContainer + u"/a.json"_s, "mine").result(),
              kContainer + u"/a.json: No space left on device"_s);
    const std::optional<QString> error = drive.remove(kContainer + u"/a.json"_s).result();
    EXPECT_EQ(error, kContainer + u"/a.json: No space left on device"_s);
    EXPECT_EQ(files.read(kContainer + u"/a.json"_s), "cloud");
}

} // namespace quorvane
