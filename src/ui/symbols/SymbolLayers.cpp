#include "ui/symbols/SymbolLayers.h"

#include <QPainter>
#include <QtMath>

#include <cmath>

namespace quorvane {

namespace {

// On the grid:
constexpr double kGap = 1; ///< around what lies over another layer
constexpr double kSlashWidth = 1.25;

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

} // namespace

QImage blankSymbol(int side) {
    QImage picture(side, side, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    return picture;
}

void addSymbolLayer(QPainter& painter, const QImage& layer, LayerJoining joining) {
    if (joining == LayerJoining::CutOut) {
        painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    } else {
        clearAround(painter, layer);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    }
    painter.drawImage(0, 0, layer);
}

QImage symbolSlash(int side) {
    QImage picture = blankSymbol(side);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(side / kSymbolGrid, side / kSymbolGrid);
    painter.setPen(QPen(Qt::black, kSlashWidth, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(2, 2), QPointF(14, 14));
    return picture;
}

} // namespace quorvane
