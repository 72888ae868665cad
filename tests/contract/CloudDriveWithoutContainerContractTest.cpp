// What every iCloud Drive does for a program that has no container in it.

#include "contract/Awaited.h"
#include "contract/CloudDriveContract.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace quorvane {

TEST_P(CloudDriveWithoutContainerContract, thereIsNoContainerHoweverOftenItIsAskedFor) {
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(awaited(drive.containerFolder()), std::nullopt);
    }
}

TEST_P(CloudDriveWithoutContainerContract, aFileOfTheDiskIsNoneOfICloudsAndStaysAsItIs) {
    const QTemporaryDir folder;
    const QString path = folder.path() + u"/mine.json"_s;
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("{}");
    file.close();
    EXPECT_FALSE(drive.isUbiquitous(path));
    EXPECT_FALSE(drive.isCurrent(path));
    drive.startDownloading(path);
    EXPECT_FALSE(drive.isUbiquitous(path));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "{}");
}

TEST_P(CloudDriveWithoutContainerContract, whatIsNotThereIsNeitherListedNorDatedNorMade) {
    const QTemporaryDir folder;
    const QString missing = folder.path() + u"/missing"_s;
    EXPECT_THROW(drive.list(missing), FileError);
    EXPECT_EQ(drive.modificationDate(missing + u"/x.json"_s), std::nullopt);
    EXPECT_FALSE(drive.isCurrent(missing + u"/x.json"_s));
    EXPECT_FALSE(drive.create(missing + u"/x.json"_s, "{}"));
    EXPECT_TRUE(awaited(drive.replace(missing + u"/x.json"_s, "{}")));
    EXPECT_TRUE(awaited(drive.remove(missing + u"/x.json"_s)));
    EXPECT_TRUE(QDir(folder.path()).isEmpty());
}

TEST_P(CloudDriveWithoutContainerContract, theEndFinishesWhatWaitsAndRefusesTheRestAtOnce) {
    const QFuture<std::optional<QString>> waiting = drive.containerFolder();
    drive.shutDown();
    ASSERT_TRUE(waiting.isFinished());
    EXPECT_FALSE(waiting.isCanceled());
    EXPECT_EQ(waiting.result(), std::nullopt);
    const QTemporaryDir folder;
    const QString path = folder.path() + u"/x.json"_s;
    const QFuture<std::optional<QString>> asked = drive.containerFolder();
    const QFuture<std::optional<QString>> replaced = drive.replace(path, "{}");
    const QFuture<std::optional<QString>> removed = drive.remove(path);
    for (const QFuture<std::optional<QString>>& future : {asked, replaced, removed}) {
        ASSERT_TRUE(future.isFinished());
        EXPECT_FALSE(future.isCanceled());
    }
    EXPECT_EQ(asked.result(), std::nullopt);
    EXPECT_TRUE(replaced.result());
    EXPECT_TRUE(removed.result());
    EXPECT_FALSE(drive.create(path, "{}"));
    EXPECT_TRUE(QDir(folder.path()).isEmpty());
}

} // namespace quorvane
