#include "platform/macos/SymbolPlace.h"

namespace quorvane {

QRectF symbolPlace(const QSizeF& size, double side) {
    QRectF place({0, 0}, size.scaled(side, side, Qt::KeepAspectRatio));
    place.moveCenter({side / 2, side / 2});
    return place;
}

} // namespace quorvane
