#include "wallpaper/WallpaperLabel.h"

#include "fakes/Pictures.h"

#include <QColorSpace>

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

struct Canvas {
    int width;
    int height;
};

void PrintTo(const Canvas& canvas, std::ostream* out) {
    *out << canvas.width << "x" << canvas.height;
}

class WallpaperLabelOnCanvas : public ::testing::TestWithParam<Canvas> {
protected:
    QSize size() const { return {GetParam().width, GetParam().height}; }
};

const QString kLongName =
    u"A profile whose name would run off the right margin of every display there is "_s.repeated(3);

} // namespace

// ---- The numbers

TEST(WallpaperLabel, sizeOfTheFontIsSixPercentOfTheHeightWithinItsLimits) {
    EXPECT_DOUBLE_EQ(labelFontSize(1964), 96); // 117.84
    EXPECT_DOUBLE_EQ(labelFontSize(480), 40);  // 28.8
    EXPECT_DOUBLE_EQ(labelFontSize(1080), 64.8);
    EXPECT_DOUBLE_EQ(labelFontSize(1600), 96);
    EXPECT_DOUBLE_EQ(labelFontSize(666), 40); // 39.96
}

TEST(WallpaperLabel, marginIsFourPercentOfTheShorterSide) {
    EXPECT_DOUBLE_EQ(labelMargin({3024, 1964}), 78.56);
    EXPECT_DOUBLE_EQ(labelMargin({640, 480}), 19.2);
    EXPECT_DOUBLE_EQ(labelMargin({1080, 1920}), 43.2);
}

TEST(WallpaperLabel, textIsPaintedInTheSizeOfTheFont) {
    const double large = labelText(u"Live"_s, {1920, 1080}).box.width();
    const double small = labelText(u"Live"_s, {1920, 600}).box.width();
    EXPECT_NEAR(large / small, 64.8 / 40, 0.03);
    const LabelText label = labelText(u"Live"_s, {3024, 1964});
    EXPECT_EQ(label.box.topLeft(), QPointF(78.56, 78.56));
    EXPECT_GT(label.box.height(), 96);
    EXPECT_LT(label.box.height(), 96 * 1.4);
}

TEST(WallpaperLabel, cornerWhoseBrightnessCountsIsWhereTheTextStands) {
    EXPECT_EQ(labelCorner({3024, 1964}), QRect(78, 78, 500, 196));
    EXPECT_EQ(labelCorner({6016, 3384}), QRect(135, 135, 500, 240));
    EXPECT_EQ(labelCorner({640, 480}), QRect(19, 19, 213, 80));
    EXPECT_EQ(labelCorner({300, 300}), QRect(12, 12, 120, 80));
    EXPECT_EQ(labelCorner({100, 50}), QRect(2, 2, 98, 48)) << "cut off at the edges";
    EXPECT_EQ(labelCorner({1, 1}), QRect(0, 0, 1, 1));
    EXPECT_TRUE(labelCorner({0, 100}).isEmpty());
}

// ---- Black or white

TEST(WallpaperLabel, textIsBlackOnlyAboveABrightnessOf055) {
    EXPECT_EQ(labelColor(0.56), QColor(Qt::black));
    EXPECT_EQ(labelColor(0.55), QColor(Qt::white));
    EXPECT_EQ(labelColor(0), QColor(Qt::white));
    EXPECT_EQ(labelColor(1), QColor(Qt::black));
}

TEST(WallpaperLabel, brightnessIsTheMeanLuminance) {
    EXPECT_DOUBLE_EQ(cornerBrightness(plainPicture({640, 480}, Qt::black)), 0);
    EXPECT_DOUBLE_EQ(cornerBrightness(plainPicture({640, 480}, Qt::white)), 1);
    EXPECT_NEAR(cornerBrightness(plainPicture({640, 480}, Qt::red)), 0.2126, 1e-9);
    EXPECT_NEAR(cornerBrightness(plainPicture({640, 480}, QColor(0, 255, 0))), 0.7152, 1e-9);
    EXPECT_NEAR(cornerBrightness(plainPicture({640, 480}, Qt::blue)), 0.0722, 1e-9);
    QImage halves = plainPicture({640, 480}, Qt::black);
    const QRect corner = labelCorner(halves.size());
    fillRect(halves, QRect(corner.left(), corner.top(), corner.width(), corner.height() / 2), Qt::white);
    EXPECT_NEAR(cornerBrightness(halves), 0.5, 1e-9);
}

TEST(WallpaperLabel, brightnessOfTheRestOfThePictureDoesntCount) {
    QImage picture = plainPicture({1280, 800}, Qt::white);
    fillRect(picture, labelCorner(picture.size()), Qt::black);
    EXPECT_DOUBLE_EQ(cornerBrightness(picture), 0);
    const QImage labelled = labelledPicture(picture, u"Live"_s, {1280, 800});
    EXPECT_GT(countOf(labelled.copy(labelCorner(picture.size())), Qt::white), 100);
}

TEST(WallpaperLabel, brightnessOfNothingIsInTheMiddle) {
    EXPECT_DOUBLE_EQ(cornerBrightness(QImage()), 0.5);
}

TEST(WallpaperLabel, textIsBlackOnALightCornerAndWhiteOnADarkOne) {
    EXPECT_EQ(textColorIn(labelledPicture(plainPicture({640, 480}, QColor(143, 143, 143)), u"Live"_s, {640, 480})),
              QColor(Qt::black)); // 0.561
    EXPECT_EQ(textColorIn(labelledPicture(plainPicture({640, 480}, QColor(140, 140, 140)), u"Live"_s, {640, 480})),
              QColor(Qt::white)); // 0.549
}

// ---- The picture

TEST_P(WallpaperLabelOnCanvas, textStandsInItsBoxAndNothingOutsideOfItIsTouched) {
    for (const QColor& background : {QColor(20, 30, 60), QColor(240, 230, 210)}) {
        const QImage labelled = labelledPicture(plainPicture({64, 64}, background), u"Live Set"_s, size());
        ASSERT_EQ(labelled.size(), size());
        const QRect box = labelText(u"Live Set"_s, size()).box.toAlignedRect();
        const QRect painted = paintedRect(labelled, background);
        EXPECT_EQ(box.united(painted), box);
        EXPECT_TRUE(labelled.rect().contains(box));
        EXPECT_GT(painted.width(), box.width() * 9 / 10);
        EXPECT_GT(painted.height(), box.height() / 2);
        EXPECT_GT(countOf(labelled, textColorIn(labelled)), painted.width() * painted.height() / 8)
            << "of the text's pure colour: it is crisp";
    }
}

TEST_P(WallpaperLabelOnCanvas, longNameEndsInAnEllipsisAtTheRightMargin) {
    const QColor background(20, 30, 60);
    const LabelText label = labelText(kLongName, size());
    EXPECT_EQ(label.text.back(), u'…');
    EXPECT_GT(label.text.size(), 5);
    const double right = size().width() - labelMargin(size());
    EXPECT_LE(label.box.right(), right);
    EXPECT_GT(label.box.right(), right - 2.0 * labelFontSize(size().height()));
    const QImage labelled = labelledPicture(plainPicture({64, 64}, background), kLongName, size());
    EXPECT_TRUE(label.box.toAlignedRect().contains(paintedRect(labelled, background)));
}

TEST_P(WallpaperLabelOnCanvas, textIsThereInTheFile) {
    const QColor background(240, 230, 210);
    const QByteArray file = jpegFile(labelledPicture(plainPicture({64, 64}, background), u"Live"_s, size()));
    const QImage read = QImage::fromData(file, "JPEG");
    ASSERT_EQ(read.size(), size());
    const QRect box = labelText(u"Live"_s, size()).box.toAlignedRect();
    EXPECT_LT(darkest(read, box), 20);
    QImage around = read;
    fillRect(around, box.adjusted(-16, -16, 16, 16), background); // a block of the file reaches so far
    EXPECT_GT(darkest(around, around.rect()), 200);
}

INSTANTIATE_TEST_SUITE_P(Sizes, WallpaperLabelOnCanvas,
                         ::testing::Values(Canvas{640, 480}, Canvas{1280, 800}, Canvas{1001, 701}, Canvas{3024, 1964},
                                           Canvas{1080, 1920}, Canvas{6016, 3384}));

TEST(WallpaperLabel, pictureFillsTheCanvasInItsOwnProportions) {
    QImage portrait = plainPicture({300, 800}, Qt::blue);
    fillRect(portrait, QRect(0, 300, 300, 200), Qt::green); // the middle, which is what a canvas of 3 by 2 shows
    fillRect(portrait, QRect(100, 350, 100, 100), Qt::red); // a square stays a square
    const QImage labelled = labelledPicture(portrait, u"x"_s, {600, 400});
    ASSERT_EQ(labelled.size(), QSize(600, 400));
    EXPECT_EQ(labelled.pixelColor(300, 4), QColor(Qt::green));
    EXPECT_EQ(labelled.pixelColor(300, 395), QColor(Qt::green));
    EXPECT_EQ(labelled.pixelColor(300, 106), QColor(Qt::red));
    EXPECT_EQ(labelled.pixelColor(300, 293), QColor(Qt::red));
    EXPECT_EQ(labelled.pixelColor(206, 200), QColor(Qt::red));
    EXPECT_EQ(labelled.pixelColor(393, 200), QColor(Qt::red));
    EXPECT_EQ(labelled.pixelColor(194, 200), QColor(Qt::green));
    EXPECT_EQ(labelled.pixelColor(405, 200), QColor(Qt::green));
}

TEST(WallpaperLabel, bothSidesOfAWidePictureAreClippedAlike) {
    QImage panorama = plainPicture({1000, 100}, Qt::blue);
    fillRect(panorama, QRect(450, 0, 50, 100), Qt::green);
    fillRect(panorama, QRect(500, 0, 50, 100), Qt::red);
    const QImage labelled = labelledPicture(panorama, u"x"_s, {400, 400});
    EXPECT_EQ(labelled.pixelColor(4, 390), QColor(Qt::green));
    EXPECT_EQ(labelled.pixelColor(190, 390), QColor(Qt::green));
    EXPECT_EQ(labelled.pixelColor(210, 390), QColor(Qt::red));
    EXPECT_EQ(labelled.pixelColor(395, 390), QColor(Qt::red));
}

TEST(WallpaperLabel, pictureOfAnyProportionsFillsTheCanvas) {
    for (const QSize& size : {QSize(1, 1), QSize(1, 5000), QSize(5000, 1), QSize(30000, 2)}) {
        const QImage labelled = labelledPicture(plainPicture(size, Qt::green), u"x"_s, {640, 480});
        ASSERT_EQ(labelled.size(), QSize(640, 480));
        EXPECT_EQ(labelled.pixelColor(0, 0), QColor(Qt::green));
        EXPECT_EQ(labelled.pixelColor(639, 479), QColor(Qt::green));
    }
}

TEST(WallpaperLabel, transparentPartsAreBlack) {
    QImage picture(100, 100, QImage::Format_ARGB32);
    picture.fill(QColor(255, 255, 255, 0));
    fillRect(picture, QRect(0, 80, 100, 20), Qt::green);
    const QImage labelled = labelledPicture(picture, u"Live"_s, {640, 480});
    EXPECT_EQ(labelled.pixelColor(600, 20), QColor(Qt::black));
    EXPECT_EQ(labelled.pixelColor(600, 470), QColor(Qt::green));
    EXPECT_EQ(textColorIn(labelled), QColor(Qt::white));
    EXPECT_FALSE(labelled.hasAlphaChannel());
    const QImage opaque = opaquePicture(picture);
    EXPECT_EQ(opaque.size(), picture.size());
    EXPECT_EQ(opaque.pixelColor(50, 10), QColor(Qt::black));
    EXPECT_EQ(opaque.pixelColor(50, 95), QColor(Qt::green));
}

TEST(WallpaperLabel, coloursKeepTheirMeaning) {
    QImage picture = plainPicture({100, 100}, QColor(200, 30, 30));
    picture.setColorSpace(QColorSpace(QColorSpace::DisplayP3));
    const QImage labelled = labelledPicture(picture, u"Live"_s, {640, 480});
    EXPECT_EQ(labelled.colorSpace(), QColorSpace(QColorSpace::DisplayP3));
    EXPECT_EQ(labelled.pixelColor(600, 400), QColor(200, 30, 30));
    EXPECT_EQ(QImage::fromData(jpegFile(labelled)).colorSpace(), QColorSpace(QColorSpace::DisplayP3));
}

TEST(WallpaperLabel, everyFormatOfPixelsIsTaken) {
    for (const QImage::Format format : {QImage::Format_Mono, QImage::Format_Indexed8, QImage::Format_Grayscale8,
                                        QImage::Format_Grayscale16, QImage::Format_RGBA64, QImage::Format_RGB888}) {
        const QImage picture = plainPicture({64, 64}, Qt::white).convertToFormat(format);
        const QImage labelled = labelledPicture(picture, u"Live"_s, {640, 480});
        EXPECT_EQ(labelled.pixelColor(600, 400), QColor(Qt::white)) << format;
        EXPECT_EQ(textColorIn(labelled), QColor(Qt::black)) << format;
    }
}

TEST(WallpaperLabel, nameWithoutAGlyphLeavesThePictureAlone) {
    const QImage labelled = labelledPicture(plainPicture({64, 64}, Qt::blue), u" "_s, {640, 480});
    EXPECT_EQ(paintedRect(labelled, Qt::blue), QRect());
}

TEST(WallpaperLabel, lettersThatNoFontHasAreNoticed) {
    const QString letters = lettersWithoutAFont();
    const QImage picture = plainPicture({64, 64}, Qt::blue);
    EXPECT_EQ(labelLetters(letters), LabelLetters::None);
    EXPECT_EQ(labelLetters(letters.first(1) + u' ' + letters.last(1) + u'\u0301'), LabelLetters::None);
    EXPECT_EQ(labelLetters(u"Tour "_s + letters), LabelLetters::Some);
    EXPECT_TRUE(labelledPicture(picture, letters, {640, 480}).isNull());
    EXPECT_FALSE(labelledPicture(picture, u"Tour "_s + letters, {640, 480}).isNull());
}

TEST(WallpaperLabel, whatIsNotSeenNeedsNoFont) {
    for (const QString& name : {u"Late Night Set"_s, u"Ärger & Söhne #1 (live)"_s, u"e\u0301"_s, u"a\u200db\u00adc"_s,
                                u"a\tb\u2028c"_s, u"a\ufe0f"_s, u" "_s, u""_s}) {
        EXPECT_EQ(labelLetters(name), LabelLetters::All) << name.toStdString();
    }
}

TEST(WallpaperLabel, canvasWithoutAPixelFails) {
    const QImage picture = plainPicture({64, 64}, Qt::blue);
    EXPECT_TRUE(labelledPicture(picture, u"Live"_s, {0, 480}).isNull());
    EXPECT_TRUE(labelledPicture(picture, u"Live"_s, {640, 0.9}).isNull());
    EXPECT_TRUE(labelledPicture(picture, u"Live"_s, {-640, -480}).isNull());
    EXPECT_TRUE(labelledPicture({}, u"Live"_s, {640, 480}).isNull());
    EXPECT_TRUE(labelledPicture(picture, u"Live"_s, {20'000, 20'000}).isNull()) << "1.6 GB of pixels";
    EXPECT_EQ(labelledPicture(picture, u"Live"_s, {1, 1}).size(), QSize(1, 1));
}

TEST(WallpaperLabel, pictureThatNoFileCanHoldIsAnEmptyFile) {
    EXPECT_TRUE(jpegFile({}).isEmpty());
    EXPECT_TRUE(jpegFile(QImage(70'000, 1, QImage::Format_RGB32)).isEmpty());
}

} // namespace quorvane
