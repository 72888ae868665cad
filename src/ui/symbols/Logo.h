#pragma once

#include <QIcon>

class QPainter;
class QRectF;

namespace quorvane {

/// Paints the program's logo, centred, as large as fits into the rectangle.
void paintLogo(QPainter& painter, const QRectF& rect);

/// The logo as the application's icon, painted at 16 to 128 pixels: whoever shows it anew wants all of them each time.
QIcon logoIcon();

/// The letters "QV" in the application's font, for the status area, 16 to 64 pixels. They bring their own ground along, so that
/// they can be read on a light and on a dark one.
QIcon statusIcon();

} // namespace quorvane
