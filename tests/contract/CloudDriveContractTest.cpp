// What every iCloud Drive does for a user who has a container in it.

#include "contract/CloudDriveContract.h"

namespace quorvane {

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

} // namespace quorvane
