#pragma once

#include <QImage>

class QPainter;

// How symbols are put together, and the one part that the program draws itself.
namespace quorvane {

/// The side of the grid that symbols are drawn on.
constexpr double kSymbolGrid = 16;

/// How a layer meets what lies below: it is painted over it, with a gap around it, or cut out of it.
enum class LayerJoining { Over, CutOut };

/// All of it transparent, square.
QImage blankSymbol(int side);
/// @param painter  of the picture below
/// @param layer    as large as that
void addSymbolLayer(QPainter& painter, const QImage& layer, LayerJoining joining);
/// From the left above to the right below.
QImage symbolSlash(int side);

} // namespace quorvane
