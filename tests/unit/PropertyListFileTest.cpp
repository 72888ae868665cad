#include "platform/macos/PropertyListFile.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kLargest = qint64{64} * 1024 * 1024;

class PropertyListFile : public ::testing::Test {
protected:
    QString path(const QString& name) const { return folder.path() + u'/' + name; }
    /// Mostly a hole, which takes no room.
    QString fileOf(qint64 size) const {
        QFile file(path(u"sized.plist"_s));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_TRUE(file.resize(size));
        return file.fileName();
    }

    QTemporaryDir folder;
};

} // namespace

TEST_F(PropertyListFile, aRegularFileIsReadWholeAlsoByALink) {
    QFile file(path(u"Bühne.plist"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("a\0b", 3);
    file.close();
    EXPECT_EQ(propertyListBytes(file.fileName()), QByteArray("a\0b", 3));
    ASSERT_TRUE(QFile::link(file.fileName(), path(u"link"_s)));
    EXPECT_EQ(propertyListBytes(path(u"link"_s)), QByteArray("a\0b", 3));
    EXPECT_EQ(propertyListBytes(fileOf(0)), QByteArray());
}

TEST_F(PropertyListFile, aPipeThatNobodyWritesToDoesNotHang) {
    ASSERT_EQ(::mkfifo(QFile::encodeName(path(u"pipe.plist"_s)).constData(), 0600), 0);
    EXPECT_EQ(propertyListBytes(path(u"pipe.plist"_s)), std::nullopt);
}

TEST_F(PropertyListFile, whatIsNoRegularFileIsNone) {
    EXPECT_EQ(propertyListBytes(path(u"gone.plist"_s)), std::nullopt);
    EXPECT_EQ(propertyListBytes(folder.path()), std::nullopt);
    EXPECT_EQ(propertyListBytes(u"/dev/zero"_s), std::nullopt);
    EXPECT_EQ(propertyListBytes({}), std::nullopt);
}

TEST_F(PropertyListFile, aPathThatIsNotWholeNamesNothing) {
    fileOf(1);
    EXPECT_EQ(propertyListBytes(path(u"sized.plist"_s) + QChar::Null + u"b"_s), std::nullopt);
    const QString former = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(folder.path()));
    EXPECT_EQ(propertyListBytes(u"sized.plist"_s), std::nullopt);
    QDir::setCurrent(former);
}

TEST_F(PropertyListFile, sixtyFourMebibytesAreReadAndNoMore) {
    const std::optional<QByteArray> largest = propertyListBytes(fileOf(kLargest));
    ASSERT_TRUE(largest);
    EXPECT_EQ(largest->size(), kLargest);
    EXPECT_EQ(propertyListBytes(fileOf(kLargest + 1)), std::nullopt);
}

} // namespace quorvane
