// What is kept is a mask of each symbol at each size in pixels; the colour comes to it as it is painted.

#include "ui/symbols/Symbols.h"

#include "ui/symbols/PaintedIcon.h"
#include "ui/symbols/SymbolLayers.h"
#include "ui/symbols/SymbolNames.h"
#include "ui/symbols/SymbolShape.h"

#include <QCache>
#include <QDebug>
#include <QImage>
#include <QPainter>
#include <QSet>

#include <algorithm>
#include <cmath>
#include <utility>

namespace quorvane {

namespace {

constexpr int kKeptBytes = 1 << 20;
constexpr int kLargest = 2048;   ///< in pixels; what is larger is scaled up
constexpr double kDotSide = 4.5; ///< on the grid

// ---- A symbol

QImage dot(int side) {
    QImage picture = blankSymbol(side);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(side / kSymbolGrid, side / kSymbolGrid);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.drawEllipse(QPointF(kSymbolGrid / 2, kSymbolGrid / 2), kDotSide / 2, kDotSide / 2);
    return picture;
}

/// Once for each name, whatever size it is asked for in.
void logUnknown(const QString& name) {
    static QSet<QString> logged;
    if (!logged.contains(name)) {
        logged.insert(name);
        qInfo() << "There is no symbol of this name, so a dot stands for it:" << name;
    }
}

QImage maskOf(const QString& name, int side) {
    const QImage shape = symbolShape(name, side);
    if (shape.isNull()) {
        logUnknown(name);
    }
    return (shape.isNull() ? dot(side) : shape).convertToFormat(QImage::Format_Alpha8);
}

QImage keptMaskOf(const QString& name, int side) {
    static QCache<std::pair<QString, int>, QImage> masks(kKeptBytes);
    const std::pair key{name, side};
    if (const QImage* kept = masks.object(key)) {
        return *kept;
    }
    const QImage mask = maskOf(name, side);
    masks.insert(key, new QImage(mask), static_cast<int>(mask.sizeInBytes()));
    return mask;
}

QImage tinted(const QImage& mask, const QColor& color) {
    QImage picture(mask.size(), QImage::Format_ARGB32_Premultiplied);
    picture.fill(color);
    QPainter painter(&picture);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.drawImage(0, 0, mask);
    return picture;
}

// ---- Its place on the device

QRectF centredSquare(const QRectF& rect, double side) {
    QRectF square(0, 0, side, side);
    square.moveCenter(rect.center());
    return square;
}

/// True when a picture lands on the device's pixels one to one.
bool keepsPixels(const QTransform& toDevice) {
    return toDevice.type() <= QTransform::TxScale && qFuzzyCompare(std::abs(toDevice.m11()), std::abs(toDevice.m22()));
}

/// Where a picture of so many pixels goes that it meets whole ones.
QRectF onWholePixels(const QRectF& rect, int pixels, const QTransform& toDevice) {
    QRectF square = centredSquare(toDevice.mapRect(rect), pixels);
    square.moveTopLeft({std::round(square.x()), std::round(square.y())});
    return toDevice.inverted().mapRect(square);
}

/// How many whole pixels of the device fit into a length; none into what isn't one.
int pixelsOf(double length, const QTransform& toDevice) {
    constexpr double kRounding = 0.01;
    const double pixels = length * std::sqrt(std::abs(toDevice.determinant())) + kRounding;
    return pixels >= 1 ? static_cast<int>(std::min<double>(pixels, kLargest)) : 0;
}

} // namespace

bool hasSymbol(const QString& name) {
    return hasSymbolShape(name);
}

void paintSymbol(QPainter& painter, const QString& name, const QRectF& rect, const QColor& color) {
    const QTransform toDevice = painter.deviceTransform();
    const double side = std::min(rect.width(), rect.height());
    const int pixels = pixelsOf(side, toDevice);
    if (pixels == 0) {
        return;
    }
    const QImage picture = tinted(keptMaskOf(name, pixels), color);
    if (keepsPixels(toDevice) && pixels < kLargest) {
        painter.drawImage(onWholePixels(rect, pixels, toDevice), picture);
        return;
    }
    const bool isSmooth = painter.testRenderHint(QPainter::SmoothPixmapTransform);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(centredSquare(rect, side), picture);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, isSmooth);
}

QPixmap symbolPixmap(const QString& name, qreal size, const QColor& color, qreal devicePixelRatio) {
    const int pixels = qRound(size * devicePixelRatio);
    QPixmap picture(pixels, pixels);
    picture.fill(Qt::transparent);
    if (picture.isNull()) {
        return picture;
    }
    QPainter painter(&picture);
    paintSymbol(painter, name, picture.rect(), color);
    painter.end();
    picture.setDevicePixelRatio(devicePixelRatio);
    return picture;
}

QIcon symbolIcon(const QString& name, const QColor& color) {
    return paintedIcon(
        [name, color](QPainter& painter, const QRectF& rect) { paintSymbol(painter, name, rect, color); });
}

QStringList symbolNames() {
    QStringList names;
    for (const SymbolName& symbol : symbolNameTable()) {
        names.append(QString::fromLatin1(symbol.name.data(), static_cast<qsizetype>(symbol.name.size())));
    }
    return names;
}

} // namespace quorvane
