#pragma once

#include <QRectF>
#include <QSizeF>

namespace quorvane {

/// Where a symbol stands in a square: in its own proportions, centred, as large as fits.
/// @param size  of the symbol, in whatever unit
/// @param side  of the square
QRectF symbolPlace(const QSizeF& size, double side);

} // namespace quorvane
