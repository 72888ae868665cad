#include "ui/symbols/Logo.h"

#include <QColor>
#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <algorithm>

namespace quorvane {

namespace {

QImage logoCanvas(int side, qreal devicePixelRatio = 1) {
    QImage canvas(side, side, QImage::Format_ARGB32_Premultiplied);
    canvas.fill(Qt::transparent);
    canvas.setDevicePixelRatio(devicePixelRatio);
    return canvas;
}

QImage logoOf(int side) {
    QImage canvas = logoCanvas(side);
    QPainter painter(&canvas);
    paintLogo(painter, canvas.rect());
    return canvas;
}

/// Opaque pixels of letters.
int darkOnesOf(const QImage& picture, const QRect& within) {
    int count = 0;
    for (int y = within.top(); y <= within.bottom(); ++y) {
        for (int x = within.left(); x <= within.right(); ++x) {
            const QColor color = picture.pixelColor(x, y);
            count += color.alpha() == 255 && color.lightness() < 100 ? 1 : 0;
        }
    }
    return count;
}

QRect leftHalf(const QImage& picture) {
    return {0, 0, picture.width() / 2, picture.height()};
}

QRect rightHalf(const QImage& picture) {
    return {picture.width() / 2, 0, picture.width() / 2, picture.height()};
}

QList<int> sidesOf(const QIcon& icon) {
    QList<int> sides;
    for (const QSize& size : icon.availableSizes()) {
        EXPECT_EQ(size.width(), size.height());
        sides.append(size.width());
    }
    return sides;
}

} // namespace

TEST(Logo, isARoundedSquareWithAMark) {
    for (const int side : {16, 32, 64, 128}) {
        const QImage logo = logoOf(side);
        EXPECT_LT(qAlpha(logo.pixel(side / 16, side / 16)), 16) << side;
        EXPECT_EQ(qAlpha(logo.pixel(side / 2, side / 8)), 255) << side;
        const QColor ground = logo.pixelColor(side / 2, side / 8);
        const QColor mark = logo.pixelColor(side / 2, side * 7 / 32);
        EXPECT_GT(mark.lightness(), ground.lightness() + 60) << side;
    }
}

TEST(Logo, isCentredInWhatIsNotSquare) {
    QImage canvas = logoCanvas(64);
    QPainter painter(&canvas);
    paintLogo(painter, QRectF(0, 16, 64, 32));
    painter.end();
    EXPECT_EQ(canvas.copy(16, 16, 32, 32), logoOf(32));
    EXPECT_EQ(qAlpha(canvas.pixel(8, 32)), 0);
}

TEST(Logo, isAsSharpOnADenserDevice) {
    QImage canvas = logoCanvas(64, 2);
    QPainter painter(&canvas);
    paintLogo(painter, QRectF(0, 0, 32, 32));
    painter.end();
    canvas.setDevicePixelRatio(1);
    EXPECT_EQ(canvas, logoOf(64));
}

TEST(Logo, isTheApplicationsIconInSeveralSizes) {
    const QIcon icon = logoIcon();
    EXPECT_EQ(sidesOf(icon), (QList{16, 32, 48, 64, 128}));
    for (const int side : sidesOf(icon)) {
        EXPECT_EQ(icon.pixmap(side, side).toImage(), logoOf(side)) << side;
    }
}

TEST(StatusIcon, showsTwoDarkLettersOnALightGround) {
    const QIcon icon = statusIcon();
    EXPECT_EQ(sidesOf(icon), (QList{16, 22, 24, 32, 44, 48, 64}));
    for (const int side : sidesOf(icon)) {
        const QImage picture = icon.pixmap(side, side).toImage();
        EXPECT_EQ(picture.size(), QSize(side, side));
        EXPECT_GT(darkOnesOf(picture, leftHalf(picture)), side / 4) << side;
        const QRect right = rightHalf(picture);
        const int above = darkOnesOf(picture, right.adjusted(0, 0, 0, -side / 2));
        const int below = darkOnesOf(picture, right.adjusted(side * 3 / 8, side / 2, 0, 0));
        EXPECT_GT(above, side / 8) << side;
        EXPECT_LE(below, above / 8) << side << ": a V has its point below, and nothing beside it";
    }
}

TEST(StatusIcon, canBeReadOnEveryGround) {
    for (const int side : {16, 22, 32, 64}) {
        for (const QColor& ground : {QColor(Qt::black), QColor(Qt::white), QColor(0x80, 0x80, 0x80)}) {
            QImage area = logoCanvas(side);
            area.fill(ground);
            QPainter painter(&area);
            statusIcon().paint(&painter, area.rect());
            painter.end();
            const int middle = area.height() / 2;
            int darkest = 255;
            int lightest = 0;
            for (int x = side / 8; x < side - side / 8; ++x) {
                const int lightness = area.pixelColor(x, middle).lightness();
                darkest = std::min(darkest, lightness);
                lightest = std::max(lightest, lightness);
            }
            EXPECT_GT(lightest - darkest, 150) << side << " on " << ground.name().toStdString();
        }
    }
}

TEST(StatusIcon, hasRoomForItsLetters) {
    for (const int side : {16, 22, 32, 64}) {
        const QImage picture = statusIcon().pixmap(side, side).toImage();
        EXPECT_EQ(darkOnesOf(picture, QRect(0, 0, side, 1)), 0) << side;
        EXPECT_EQ(darkOnesOf(picture, QRect(0, side - 1, side, 1)), 0) << side;
        EXPECT_EQ(darkOnesOf(picture, QRect(0, 0, 1, side)), 0) << side;
        EXPECT_EQ(darkOnesOf(picture, QRect(side - 1, 0, 1, side)), 0) << side;
    }
}

} // namespace quorvane
