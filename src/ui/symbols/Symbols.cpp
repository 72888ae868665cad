#include "ui/symbols/Symbols.h"

#include "ui/symbols/PaintedIcon.h"

#include <QPainter>

namespace quorvane {

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

} // namespace quorvane
