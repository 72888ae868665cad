// Symbols are looked at as pictures: of a name, at a place, on a device of some scale.

#include "ui/symbols/Symbols.h"

#include "tweaks/PopularIcons.h"
#include "tweaks/TweakCatalogue.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QColor kInk(0x12, 0x34, 0x56);

QStringList namesInUse() {
    return {
        u"antenna.radiowaves.left.and.right.slash"_s,
        u"app.fill"_s,
        u"archivebox.fill"_s,
        u"arrow.counterclockwise.circle.fill"_s,
        u"arrow.counterclockwise.icloud"_s,
        u"arrow.down.app.fill"_s,
        u"arrow.triangle.2.circlepath"_s,
        u"arrow.trianglehead.2.clockwise.rotate.90"_s,
        u"arrow.up.doc.fill"_s,
        u"battery.100.bolt"_s,
        u"bell.slash.fill"_s,
        u"bolt.shield.fill"_s,
        u"book.fill"_s,
        u"brain.fill"_s,
        u"building.2.fill"_s,
        u"camera.fill"_s,
        u"checkmark.circle.fill"_s,
        u"checkmark.seal.fill"_s,
        u"checkmark.shield"_s,
        u"checkmark.shield.fill"_s,
        u"chevron.left"_s,
        u"chevron.right"_s,
        u"clock.arrow.circlepath"_s,
        u"cloud.circle.fill"_s,
        u"cloud.fill"_s,
        u"cloud.sun.fill"_s,
        u"cloud.sun.rain.fill"_s,
        u"cpu.fill"_s,
        u"cube.fill"_s,
        u"cube.transparent.fill"_s,
        u"display"_s,
        u"display.and.arrow.down"_s,
        u"doc.fill"_s,
        u"doc.text.fill"_s,
        u"doc.text.magnifyingglass"_s,
        u"exclamationmark.circle.fill"_s,
        u"exclamationmark.triangle.fill"_s,
        u"externaldrive.badge.icloud"_s,
        u"externaldrive.badge.xmark"_s,
        u"externaldrive.fill"_s,
        u"eye.fill"_s,
        u"eye.slash.fill"_s,
        u"flag.fill"_s,
        u"flame.fill"_s,
        u"folder.fill"_s,
        u"folder.fill.badge.gearshape"_s,
        u"folder.fill.badge.minus"_s,
        u"gauge.medium.badge.plus"_s,
        u"gearshape.2.fill"_s,
        u"gearshape.circle.fill"_s,
        u"gearshape.fill"_s,
        u"guitars.fill"_s,
        u"headphones"_s,
        u"heart.fill"_s,
        u"icloud.and.arrow.up.fill"_s,
        u"icloud.fill"_s,
        u"info.circle.fill"_s,
        u"ipad"_s,
        u"iphone"_s,
        u"laptopcomputer"_s,
        u"leaf.fill"_s,
        u"lifepreserver.fill"_s,
        u"lightbulb.fill"_s,
        u"link.circle.fill"_s,
        u"lock.fill"_s,
        u"lock.icloud.fill"_s,
        u"lock.shield.fill"_s,
        u"m.circle.fill"_s,
        u"magnifyingglass"_s,
        u"memorychip.fill"_s,
        u"mic.circle.fill"_s,
        u"mic.slash.fill"_s,
        u"minus.circle.fill"_s,
        u"mountain.2.fill"_s,
        u"music.note.fill"_s,
        u"music.note.house.fill"_s,
        u"network"_s,
        u"network.slash"_s,
        u"opticid"_s,
        u"p.circle.fill"_s,
        u"pencil"_s,
        u"person.2.fill"_s,
        u"plus.circle"_s,
        u"plus.circle.fill"_s,
        u"power.circle.fill"_s,
        u"printer.slash.fill"_s,
        u"questionmark.circle"_s,
        u"questionmark.circle.fill"_s,
        u"rectangle.inset.filled.and.person.filled"_s,
        u"server.rack"_s,
        u"shield.fill"_s,
        u"shield.lefthalf.filled"_s,
        u"shippingbox.fill"_s,
        u"slider.horizontal.3"_s,
        u"speaker.fill"_s,
        u"speaker.slash.fill"_s,
        u"square.and.arrow.down"_s,
        u"square.and.arrow.up"_s,
        u"star.fill"_s,
        u"tag.fill"_s,
        u"touchid"_s,
        u"trash"_s,
        u"trash.circle.fill"_s,
        u"trash.fill"_s,
        u"video.fill"_s,
        u"wand.and.stars"_s,
        u"water.waves"_s,
        u"wifi.slash"_s,
        u"wrench.and.screwdriver.fill"_s,
        u"xmark.circle.fill"_s,
        u"y.circle.fill"_s,
    };
}

/// Names whose symbols are the same on purpose.
bool mayBeAlike(const QString& one, const QString& other) {
    return one == u"cloud.fill"_s && other == u"icloud.fill"_s;
}

/// What is logged while it stands.
class LoggedSymbols {
public:
    LoggedSymbols() {
        s_lines.clear();
        m_other = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext&, const QString& line) { s_lines.append(line); });
    }
    ~LoggedSymbols() { qInstallMessageHandler(m_other); }
    LoggedSymbols(const LoggedSymbols&) = delete;
    LoggedSymbols& operator=(const LoggedSymbols&) = delete;
    QStringList lines() const { return s_lines; }

private:
    static inline QStringList s_lines;
    QtMessageHandler m_other = nullptr;
};

QImage symbolCanvas(QSize pixels, qreal devicePixelRatio = 1) {
    QImage canvas(pixels, QImage::Format_ARGB32_Premultiplied);
    canvas.fill(Qt::transparent);
    canvas.setDevicePixelRatio(devicePixelRatio);
    return canvas;
}

/// A symbol that fills a square.
QImage pictureOfSymbol(const QString& name, int pixels) {
    QImage canvas = symbolCanvas({pixels, pixels});
    QPainter painter(&canvas);
    paintSymbol(painter, name, canvas.rect(), kInk);
    return canvas;
}

double coverage(const QImage& picture, QPoint pixel) {
    return qAlpha(picture.pixel(pixel)) / 255.0;
}

/// How many pixels the ink would fill.
double inkOf(const QImage& picture) {
    double ink = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            ink += coverage(picture, {x, y});
        }
    }
    return ink;
}

double inkWithin(const QImage& picture, const QRect& rect) {
    return inkOf(picture.copy(rect));
}

/// The part of its pixels that differs, each by how much.
double differenceOf(const QImage& one, const QImage& other) {
    double difference = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            difference += std::abs(coverage(one, {x, y}) - coverage(other, {x, y}));
        }
    }
    return difference / (one.width() * one.height());
}

/// The pixels on the edges of what is painted.
int halfCoveredPixels(const QImage& picture) {
    int count = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const int alpha = qAlpha(picture.pixel(x, y));
            count += alpha > 8 && alpha < 247 ? 1 : 0;
        }
    }
    return count;
}

QImage withoutScale(QImage picture) {
    picture.setDevicePixelRatio(1);
    return picture;
}

/// The mean along the slash's line, moved across it: in sixteenths of the symbol's width.
double coverageAlongSlash(const QImage& picture, double moved) {
    const double unit = picture.width() / 16.0;
    const double across = moved / std::sqrt(2.0);
    constexpr int kPlaces = 100;
    double sum = 0;
    for (int place = 0; place < kPlaces; ++place) {
        const double along = 3 + 10.0 * place / kPlaces;
        sum += coverage(picture,
                        QPoint(static_cast<int>((along + across) * unit), static_cast<int>((along - across) * unit)));
    }
    return sum / kPlaces;
}

} // namespace

TEST(Symbols, areThoseInUse) {
    EXPECT_EQ(symbolNames(), namesInUse());
}

TEST(Symbols, thereIsOneForEachTweak) {
    for (const Tweak& tweak : tweakCatalogue()) {
        EXPECT_TRUE(hasSymbol(tweak.icon)) << tweak.icon.toStdString();
    }
}

TEST(Symbols, thereIsOneForEachIconToChooseFrom) {
    for (const QString& icon : popularIcons()) {
        EXPECT_TRUE(hasSymbol(icon)) << icon.toStdString();
    }
}

TEST(Symbols, aNameIsKnownOnlyAsItIsWritten) {
    EXPECT_TRUE(hasSymbol(u"star.fill"_s));
    for (const QString& name :
         {u""_s, u"star"_s, u"star.fill "_s, u"Star.fill"_s, u"star.fill.slash"_s, u"zzz"_s, u"\u2605"_s}) {
        EXPECT_FALSE(hasSymbol(name)) << name.toStdString();
    }
}

TEST(Symbols, noneIsBlank) {
    for (const QString& name : namesInUse()) {
        EXPECT_GT(inkOf(pictureOfSymbol(name, 16)), 16 * 16 * 0.06) << name.toStdString();
    }
}

TEST(Symbols, noTwoAreAlike) {
    const QStringList names = namesInUse();
    QList<QImage> pictures;
    for (const QString& name : names) {
        pictures.append(pictureOfSymbol(name, 32));
    }
    for (qsizetype one = 0; one < names.size(); ++one) {
        for (qsizetype other = one + 1; other < names.size(); ++other) {
            EXPECT_EQ(differenceOf(pictures[one], pictures[other]) < 0.012, mayBeAlike(names[one], names[other]))
                << names[one].toStdString() << " and " << names[other].toStdString();
        }
    }
}

TEST(Symbols, areCentredAndAsLargeAsFits) {
    QImage canvas = symbolCanvas({60, 40});
    QPainter painter(&canvas);
    paintSymbol(painter, u"plus.circle.fill"_s, QRectF(10, 10, 40, 20), kInk);
    painter.end();
    const QRect square(20, 10, 20, 20);
    EXPECT_GT(inkWithin(canvas, {square.left(), square.top(), 1, 20}), 1);
    EXPECT_GT(inkWithin(canvas, {square.right(), square.top(), 1, 20}), 1);
    EXPECT_GT(inkWithin(canvas, {square.left(), square.top(), 20, 1}), 1);
    EXPECT_GT(inkWithin(canvas, {square.left(), square.bottom(), 20, 1}), 1);
}

TEST(Symbols, stayInTheirRectangle) {
    for (const QString& name : namesInUse()) {
        for (const double scale : {1.0, 1.5, 2.0}) {
            QImage canvas = symbolCanvas(QSize(40, 40) * scale, scale);
            QPainter painter(&canvas);
            paintSymbol(painter, name, QRectF(10, 10, 20, 20), kInk);
            painter.end();
            const QImage pixels = withoutScale(canvas);
            const QRect square(QPoint(qRound(10 * scale), qRound(10 * scale)), QSize(20, 20) * scale);
            EXPECT_DOUBLE_EQ(inkOf(pixels), inkWithin(pixels, square)) << name.toStdString() << " at " << scale;
        }
    }
}

// ---- Scales

TEST(Symbols, edgesAreAsSharpOnADenserDevice) {
    for (const QString& name : namesInUse()) {
        QImage canvas = symbolCanvas({128, 128}, 4);
        QPainter painter(&canvas);
        paintSymbol(painter, name, QRectF(0, 0, 32, 32), kInk);
        painter.end();
        // Four times as long they are, not four times as wide.
        EXPECT_LT(halfCoveredPixels(canvas), 7 * halfCoveredPixels(pictureOfSymbol(name, 32)) + 16)
            << name.toStdString();
    }
}

TEST(Symbols, lookTheSameWhicheverWayTheScaleComes) {
    for (const QString& name : {u"mic.slash.fill"_s, u"folder.fill.badge.gearshape"_s, u"m.circle.fill"_s}) {
        for (const double scale : {1.5, 2.0, 3.0}) {
            const int pixels = qRound(16 * scale);
            QImage dense = symbolCanvas({pixels, pixels}, scale);
            QPainter onDense(&dense);
            paintSymbol(onDense, name, QRectF(0, 0, 16, 16), kInk);
            onDense.end();
            QImage plain = symbolCanvas({pixels, pixels});
            QPainter scaled(&plain);
            scaled.scale(scale, scale);
            paintSymbol(scaled, name, QRectF(0, 0, 16, 16), kInk);
            scaled.end();
            const QImage large = pictureOfSymbol(name, pixels);
            EXPECT_EQ(withoutScale(dense), large) << name.toStdString() << " at " << scale;
            EXPECT_EQ(plain, large) << name.toStdString() << " at " << scale;
        }
    }
}

TEST(Symbols, meetWholePixelsWhereTheirRectangleDoesNot) {
    QImage canvas = symbolCanvas({32, 32});
    QPainter painter(&canvas);
    paintSymbol(painter, u"star.fill"_s, QRectF(4.3, 6.4, 16, 16), kInk);
    painter.end();
    EXPECT_EQ(canvas.copy(4, 6, 16, 16), pictureOfSymbol(u"star.fill"_s, 16));
}

TEST(Symbols, canBeTurned) {
    QImage canvas = symbolCanvas({64, 64});
    QPainter painter(&canvas);
    painter.translate(32, 32);
    painter.rotate(45);
    paintSymbol(painter, u"plus.circle.fill"_s, QRectF(-16, -16, 32, 32), kInk);
    painter.end();
    EXPECT_NEAR(inkOf(canvas), inkOf(pictureOfSymbol(u"plus.circle.fill"_s, 32)), 16);
}

TEST(Symbols, whereThereIsNoRoomNothingIsPainted) {
    QImage canvas = symbolCanvas({16, 16});
    QPainter painter(&canvas);
    paintSymbol(painter, u"star.fill"_s, QRectF(), kInk);
    paintSymbol(painter, u"star.fill"_s, QRectF(8, 8, 0, 8), kInk);
    paintSymbol(painter, u"star.fill"_s, QRectF(8, 8, -4, -4), kInk);
    paintSymbol(painter, u"star.fill"_s, QRectF(0, 0, std::numeric_limits<double>::quiet_NaN(), 4), kInk);
    painter.scale(0, 1);
    paintSymbol(painter, u"star.fill"_s, QRectF(0, 0, 16, 16), kInk);
    painter.end();
    EXPECT_DOUBLE_EQ(inkOf(canvas), 0);
}

TEST(Symbols, anEnormousOneIsPaintedAsFarAsItIsSeen) {
    QImage canvas = symbolCanvas({16, 16});
    QPainter painter(&canvas);
    paintSymbol(painter, u"app.fill"_s, QRectF(-5000, -5000, 40000, 40000), kInk);
    painter.end();
    EXPECT_DOUBLE_EQ(inkOf(canvas), 16 * 16);
}

// ---- Slash, colour, unknown names

TEST(Symbols, aSlashIsSeen) {
    for (const QString& name : namesInUse().filter(u"slash"_s)) {
        const QImage picture = pictureOfSymbol(name, 64);
        EXPECT_GT(coverageAlongSlash(picture, 0), 0.95) << name.toStdString();
        EXPECT_LT(coverageAlongSlash(picture, -1.15), 0.1) << name.toStdString();
        EXPECT_LT(coverageAlongSlash(picture, 1.15), 0.1) << name.toStdString();
    }
    EXPECT_GT(differenceOf(pictureOfSymbol(u"network.slash"_s, 16), pictureOfSymbol(u"network"_s, 16)), 0.05);
    EXPECT_GT(differenceOf(pictureOfSymbol(u"speaker.slash.fill"_s, 16), pictureOfSymbol(u"speaker.fill"_s, 16)), 0.05);
}

TEST(Symbols, haveExactlyTheColourAskedFor) {
    for (const QString& name : namesInUse()) {
        const QImage picture = pictureOfSymbol(name, 48).convertToFormat(QImage::Format_ARGB32);
        int opaque = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                if (qAlpha(picture.pixel(x, y)) == 255) {
                    ++opaque;
                    ASSERT_EQ(picture.pixelColor(x, y), kInk) << name.toStdString();
                }
            }
        }
        EXPECT_GT(opaque, 20) << name.toStdString();
    }
}

TEST(Symbols, aColourMayBeTranslucent) {
    QImage canvas = symbolCanvas({16, 16});
    QPainter painter(&canvas);
    paintSymbol(painter, u"app.fill"_s, canvas.rect(), QColor(255, 0, 0, 128));
    painter.end();
    EXPECT_EQ(canvas.pixelColor(8, 8), QColor(255, 0, 0, 128));
}

TEST(Symbols, theSameOneTakesAnotherColour) {
    QImage canvas = symbolCanvas({16, 16});
    QPainter painter(&canvas);
    paintSymbol(painter, u"app.fill"_s, canvas.rect(), kInk);
    paintSymbol(painter, u"app.fill"_s, canvas.rect(), Qt::green);
    painter.end();
    EXPECT_EQ(canvas.pixelColor(8, 8), QColor(Qt::green));
}

TEST(Symbols, anUnknownNameIsADot) {
    const LoggedSymbols logged;
    for (const QString& name : {u""_s, u"unicorn.fill"_s, u"../gear"_s}) {
        const QImage picture = pictureOfSymbol(name, 32);
        EXPECT_DOUBLE_EQ(coverage(picture, {16, 16}), 1) << name.toStdString();
        EXPECT_DOUBLE_EQ(inkOf(picture), inkWithin(picture, {11, 11, 10, 10})) << name.toStdString();
        EXPECT_GT(inkOf(picture), 40);
    }
}

TEST(Symbols, anUnknownNameIsLoggedOnceAndAKnownOneNever) {
    const LoggedSymbols logged;
    for (const int pixels : {16, 24, 16}) {
        pictureOfSymbol(u"dragon\n\"fill"_s, pixels);
        pictureOfSymbol(u"star.fill"_s, pixels);
    }
    EXPECT_EQ(logged.lines(),
              QStringList(u"There is no symbol of this name, so a dot stands for it: \"dragon\\n\\\"fill\""_s));
}

TEST(Symbols, thePainterIsLeftAsItWas) {
    QImage canvas = symbolCanvas({32, 32});
    QPainter painter(&canvas);
    painter.rotate(30);
    painter.setOpacity(0.5);
    const QTransform transform = painter.transform();
    const QPainter::RenderHints hints = painter.renderHints();
    paintSymbol(painter, u"star.fill"_s, QRectF(4, 4, 16, 16), kInk);
    symbolIcon(u"star.fill"_s, kInk).paint(&painter, QRect(4, 4, 16, 16), Qt::AlignCenter, QIcon::Disabled);
    EXPECT_EQ(painter.transform(), transform);
    EXPECT_EQ(painter.renderHints(), hints);
    EXPECT_DOUBLE_EQ(painter.opacity(), 0.5);
    EXPECT_EQ(painter.compositionMode(), QPainter::CompositionMode_SourceOver);
}

// ---- Pictures and icons

TEST(SymbolPixmap, hasTheDevicesPixels) {
    const QPixmap pixmap = symbolPixmap(u"star.fill"_s, 16, kInk, 1.5);
    EXPECT_EQ(pixmap.size(), QSize(24, 24));
    EXPECT_DOUBLE_EQ(pixmap.devicePixelRatio(), 1.5);
    EXPECT_EQ(withoutScale(pixmap.toImage()), pictureOfSymbol(u"star.fill"_s, 24));
}

TEST(SymbolPixmap, ofNoSizeIsNone) {
    EXPECT_TRUE(symbolPixmap(u"star.fill"_s, 0, kInk, 2).isNull());
}

TEST(SymbolIcon, isSharpAtEverySizeAndScale) {
    const QIcon icon = symbolIcon(u"star.fill"_s, kInk);
    EXPECT_FALSE(icon.isNull());
    for (const double scale : {1.0, 1.5, 2.0}) {
        for (const int size : {16, 20, 32, 64}) {
            const QPixmap pixmap = icon.pixmap(QSize(size, size), scale);
            EXPECT_DOUBLE_EQ(pixmap.devicePixelRatio(), scale);
            EXPECT_EQ(withoutScale(pixmap.toImage()), pictureOfSymbol(u"star.fill"_s, qRound(size * scale)));
        }
    }
}

TEST(SymbolIcon, isPalerWhenDisabled) {
    const QIcon icon = symbolIcon(u"app.fill"_s, kInk);
    const double enabled = inkOf(icon.pixmap(16, 16).toImage());
    const double disabled = inkOf(icon.pixmap(16, 16, QIcon::Disabled).toImage());
    EXPECT_GT(disabled, enabled * 0.2);
    EXPECT_LT(disabled, enabled * 0.6);
}

TEST(SymbolIcon, isDrawnByACopyToo) {
    const QIcon icon = symbolIcon(u"star.fill"_s, kInk);
    QIcon copy = icon;
    copy.setIsMask(true); // from here on they share nothing
    EXPECT_EQ(copy.pixmap(16, 16).toImage(), icon.pixmap(16, 16).toImage());
}

} // namespace quorvane
