#include "platform/portable/PictureDecoder.h"

#include "fakes/Pictures.h"
#include "wallpaper/WallpaperLabel.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// The system's default desktop picture of an example Mac.
QByteArray heicFile() {
    QFile file(QStringLiteral(QUORVANE_SOURCE_DIR "/examples/macs/fresh-macbook.json"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    const QJsonArray files = QJsonDocument::fromJson(file.readAll()).object().value(u"files"_s).toArray();
    for (const QJsonValue each : files) {
        if (each[u"path"_s].toString().endsWith(u".heic"_s)) {
            return QByteArray::fromBase64(each[u"base64"_s].toString().toLatin1());
        }
    }
    return {};
}

} // namespace

TEST(PictureDecoder, readsPngAndJpeg) {
    EXPECT_EQ(decodedPicture(pngFile(plainPicture({30, 20}, Qt::red))).pixelColor(5, 5), QColor(Qt::red));
    EXPECT_EQ(decodedPicture(jpegFile(plainPicture({30, 20}, Qt::white))).size(), QSize(30, 20));
}

TEST(PictureDecoder, readsHeic) {
    const QByteArray file = heicFile();
    ASSERT_TRUE(file.mid(4, 8).startsWith("ftypheic")) << file.left(20).toHex().toStdString();
    const QImage picture = decodedPicture(file);
    ASSERT_EQ(picture.size(), QSize(640, 400));
    // A gradient from #dfe9f5 down to #6f93c4.
    EXPECT_NEAR(picture.pixelColor(320, 2).red(), 0xdf, 6);
    EXPECT_NEAR(picture.pixelColor(320, 2).blue(), 0xf5, 6);
    EXPECT_NEAR(picture.pixelColor(320, 397).red(), 0x6f, 6);
    EXPECT_NEAR(picture.pixelColor(320, 397).green(), 0x93, 6);
}

TEST(PictureDecoder, readsAPictureOf6016By6016) {
    const QImage picture = decodedPicture(jpegFile(plainPicture({6016, 6016}, Qt::darkBlue)));
    EXPECT_EQ(picture.size(), QSize(6016, 6016)); // 138 MiB of pixels
}

TEST(PictureDecoder, refusesAPictureOfMoreThanAGigabyte) {
    // A PNG of 40,000 by 40,000 pixels in a few bytes of header: nothing of it is allocated.
    QByteArray bomb = pngFile(plainPicture({1, 1}, Qt::red));
    bomb.replace(16, 8, QByteArray::fromHex("00009c4000009c40"));
    EXPECT_TRUE(decodedPicture(bomb).isNull());
}

TEST(PictureDecoder, whatIsNoPictureIsNull) {
    const QByteArray png = pngFile(plainPicture({30, 20}, Qt::red));
    for (const QByteArray& bytes : {QByteArray(), QByteArray("text"), QByteArray(5000, '\xff'), png.left(20),
                                    heicFile().left(300), QByteArray("\xff\xd8\xff\xe0 no JPEG")}) {
        EXPECT_TRUE(decodedPicture(bytes).isNull()) << bytes.left(20).toHex().toStdString();
    }
}

} // namespace quorvane
