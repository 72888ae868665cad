// The symbols drawn from a set of SVG files.

#include "ui/symbols/SymbolShape.h"
#include "ui/symbols/SymbolTable.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QSvgRenderer>

#include <span>

// Outside of any namespace: the macro declares a function of the global one.
static void initialiseDrawings() {
    Q_INIT_RESOURCE(quorvane_symbols);
}

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr double kCapHeight = 0.95; ///< of a letter, as a part of its place

QString textOfLayer(const SymbolLayer& layer) {
    return QString::fromLatin1(layer.text.data(), static_cast<qsizetype>(layer.text.size()));
}

QRectF rectOf(const SymbolPlace& place) {
    return {place.x, place.y, place.side, place.side};
}

void paintDrawing(QPainter& painter, const SymbolLayer& layer) {
    initialiseDrawings();
    QSvgRenderer renderer(u":/quorvane/symbols/"_s + textOfLayer(layer) + u".svg"_s);
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
    outline.addText({}, font, textOfLayer(layer));
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

QImage pictureOf(const SymbolLayer& layer, int side) {
    if (layer.kind == SymbolLayer::Kind::Slash) {
        return symbolSlash(side);
    }
    QImage picture = blankSymbol(side);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(side / kSymbolGrid, side / kSymbolGrid);
    if (layer.kind == SymbolLayer::Kind::Drawing) {
        paintDrawing(painter, layer);
    } else if (layer.kind == SymbolLayer::Kind::Letter) {
        paintLetter(painter, layer);
    }
    return picture;
}

} // namespace

QImage symbolShape(const QString& name, int side) {
    const Symbol* const symbol = findSymbol(name);
    if (symbol == nullptr) {
        return {};
    }
    QImage shape = pictureOf(symbol->layers.front(), side);
    QPainter painter(&shape);
    for (const SymbolLayer& layer : std::span(symbol->layers).subspan(1)) {
        if (layer.kind != SymbolLayer::Kind::Nothing) {
            addSymbolLayer(painter, pictureOf(layer, side), layer.joining);
        }
    }
    return shape;
}

bool hasSymbolShape(const QString& name) {
    return findSymbol(name) != nullptr;
}

} // namespace quorvane
