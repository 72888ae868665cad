#pragma once

#include <QColor>
#include <QIcon>
#include <QPixmap>
#include <QRectF>
#include <QStringList>

class QPainter;

// The symbols of the interface, by the names that the system's symbol font gives them. All of this is for the main
// thread, in a program with a QGuiApplication. Nothing is read before it is painted.
namespace quorvane {

/// True for the names of the system's symbols that can be drawn.
bool hasSymbol(const QString& name);

/// Paints a symbol, centred, as large as fits into the rectangle, in one colour, crisp at any scale of the painter's
/// device. A dot is painted for a name that isn't known here, which is logged
/// once.
void paintSymbol(QPainter& painter, const QString& name, const QRectF& rect, const QColor& color);

/// The same as a picture, square, `size` device-independent pixels wide.
QPixmap symbolPixmap(const QString& name, qreal size, const QColor& color, qreal devicePixelRatio);

/// For menus and buttons, at whatever size and scale they ask for.
QIcon symbolIcon(const QString& name, const QColor& color);

/// All that the program uses, sorted.
QStringList symbolNames();

} // namespace quorvane
