#include "ui/symbols/Logo.h"

#include <QColor>
#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

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

/// Opaque pixels of a colour.
int countOf(const QImage& picture, const QColor& color, const QRect& within) {
    int count = 0;
    for (int y = within.top(); y <= within.bottom(); ++y) {
        for (int x = within.left(); x <= within.right(); ++x) {
            count += picture.pixelColor(x, y) == color ? 1 : 0;
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
    EXPECT_EQ(sidesOf(icon), (QList{16, 32, 48, 64, 128, 256}));
    for (const int side : sidesOf(icon)) {
        EXPECT_EQ(icon.pixmap(side, side).toImage(), logoOf(side)) << side;
    }
}

TEST(StatusIcon, showsTwoLettersInItsColour) {
    for (const QColor& color : {QColor(Qt::white), QColor(0x20, 0x30, 0x40)}) {
        const QIcon icon = statusIcon(color);
        EXPECT_EQ(sidesOf(icon), (QList{16, 22, 24, 32, 44, 48, 64}));
        for (const int side : sidesOf(icon)) {
            const QImage picture = icon.pixmap(side, side).toImage();
            EXPECT_EQ(picture.size(), QSize(side, side));
            EXPECT_GT(countOf(picture, color, leftHalf(picture)), side / 4) << side;
            const QRect right = rightHalf(picture);
            const int above = countOf(picture, color, right.adjusted(0, 0, 0, -side / 2));
            const int below = countOf(picture, color, right.adjusted(side * 3 / 8, side / 2, 0, 0));
            EXPECT_GT(above, side / 8) << side;
            EXPECT_LE(below, above / 8) << side << ": a V has its point below, and nothing beside it";
        }
    }
}

TEST(StatusIcon, hasRoomForItsLetters) {
    for (const int side : {16, 22, 32, 64}) {
        const QImage picture = statusIcon(Qt::black).pixmap(side, side).toImage();
        for (int y = 0; y < side; ++y) {
            EXPECT_LT(qAlpha(picture.pixel(side - 1, y)), 200) << side;
        }
        for (int x = 0; x < side; ++x) {
            EXPECT_EQ(qAlpha(picture.pixel(x, 0)), 0) << side;
            EXPECT_EQ(qAlpha(picture.pixel(x, side - 1)), 0) << side;
        }
    }
}

} // namespace quorvane
