// The symbols drawn from a set of SVG files. What is kept is a mask of each symbol at each size in pixels; the colour
// comes to it as it is painted.

#include "ui/symbols/SymbolTable.h"
#include "ui/symbols/Symbols.h"

#include <QCache>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QSvgRenderer>
#include <QtMath>

#include <algorithm>
#include <cmath>
#include <span>
#include <utility>

// Outside of any namespace: the macro declares a function of the global one.
static void initialiseDrawings() {
    Q_INIT_RESOURCE(quorvane_symbols);
}

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int kKeptBytes = 1 << 20;
constexpr int kLargest = 2048; ///< in pixels; what is larger is scaled up
/// On the grid:
constexpr double kGap = 1; ///< around what lies over another layer
constexpr double kSlashWidth = 1.25;
constexpr double kCapHeight = 0.95; ///< of a letter, as a part of its place

QString textOf(std::string_view text) {
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

// ---- Layers

QRectF rectOf(const SymbolPlace& place) {
    return {place.x, place.y, place.side, place.side};
}

void paintDrawing(QPainter& painter, const SymbolLayer& layer) {
    initialiseDrawings();
    QSvgRenderer renderer(u":/quorvane/symbols/"_s + textOf(layer.text) + u".svg"_s);
    const QRectF place = rectOf(layer.place);
    painter.translate(place.center());
    painter.rotate(layer.turn);
    painter.translate(-place.center());
    renderer.render(&painter, place);
}

void paintLetter(QPainter& painter, const SymbolLayer& layer) {
    QFont font = QGuiApplication::font();
    font.setWeight(QFont::Medium);
    font.setPixelSize(100); // so large that nothing is rounded to a grid of pixels
    QPainterPath outline;
    outline.addText({}, font, textOf(layer.text));
    const QRectF bounds = outline.boundingRect();
    if (bounds.isEmpty()) {
        return;
    }
    const double scale = layer.place.side * kCapHeight / bounds.height();
    painter.translate(rectOf(layer.place).center());
    painter.scale(scale, scale);
    painter.translate(-bounds.center());
    painter.fillPath(outline, Qt::black);
}

void paintSlash(QPainter& painter) {
    painter.setPen(QPen(Qt::black, kSlashWidth, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(2, 2), QPointF(14, 14));
}

QImage blankPicture(int side) {
    QImage picture(side, side, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    return picture;
}

QImage pictureOf(const SymbolLayer& layer, int side) {
    QImage picture = blankPicture(side);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(side / kSymbolGrid, side / kSymbolGrid);
    switch (layer.kind) {
    case SymbolLayer::Kind::Nothing:
        break;
    case SymbolLayer::Kind::Drawing:
        paintDrawing(painter, layer);
        break;
    case SymbolLayer::Kind::Letter:
        paintLetter(painter, layer);
        break;
    case SymbolLayer::Kind::Slash:
        paintSlash(painter);
        break;
    }
    return picture;
}

// ---- A symbol

/// Takes away what lies under the picture and within the gap around it.
void clearAround(QPainter& painter, const QImage& picture) {
    constexpr int kDirections = 16;
    const double gap = kGap * picture.width() / kSymbolGrid;
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.drawImage(0, 0, picture);
    for (int direction = 0; direction < kDirections; ++direction) {
        const double angle = 2 * M_PI * direction / kDirections;
        painter.drawImage(QPointF(gap * std::cos(angle), gap * std::sin(angle)), picture);
    }
}

void addLayer(QPainter& painter, const QImage& picture, SymbolLayer::Joining joining) {
    if (joining == SymbolLayer::Joining::CutOut) {
        painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    } else {
        clearAround(painter, picture);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    }
    painter.drawImage(0, 0, picture);
}

QImage maskOf(const Symbol& symbol, int side) {
    QImage picture = pictureOf(symbol.layers.front(), side);
    QPainter painter(&picture);
    for (const SymbolLayer& layer : std::span(symbol.layers).subspan(1)) {
        if (layer.kind != SymbolLayer::Kind::Nothing) {
            addLayer(painter, pictureOf(layer, side), layer.joining);
        }
    }
    painter.end();
    return picture.convertToFormat(QImage::Format_Alpha8);
}

QImage keptMaskOf(const Symbol& symbol, int side) {
    static QCache<std::pair<const Symbol*, int>, QImage> masks(kKeptBytes);
    const std::pair key{&symbol, side};
    if (const QImage* kept = masks.object(key)) {
        return *kept;
    }
    const QImage mask = maskOf(symbol, side);
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

const Symbol& symbolOrGear(const QString& name) {
    static const Symbol& gear = *findSymbol(u"gearshape.fill");
    const Symbol* const symbol = findSymbol(name);
    return symbol ? *symbol : gear;
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
    return findSymbol(name) != nullptr;
}

void paintSymbol(QPainter& painter, const QString& name, const QRectF& rect, const QColor& color) {
    const QTransform toDevice = painter.deviceTransform();
    const double side = std::min(rect.width(), rect.height());
    const int pixels = pixelsOf(side, toDevice);
    if (pixels == 0) {
        return;
    }
    const QImage picture = tinted(keptMaskOf(symbolOrGear(name), pixels), color);
    if (keepsPixels(toDevice) && pixels < kLargest) {
        painter.drawImage(onWholePixels(rect, pixels, toDevice), picture);
        return;
    }
    const bool isSmooth = painter.testRenderHint(QPainter::SmoothPixmapTransform);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(centredSquare(rect, side), picture);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, isSmooth);
}

QStringList symbolNames() {
    QStringList names;
    for (const Symbol& symbol : symbolTable()) {
        names.append(textOf(symbol.name));
    }
    return names;
}

} // namespace quorvane
