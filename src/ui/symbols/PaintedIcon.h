#pragma once

#include <QIcon>
#include <QList>
#include <QSize>

#include <functional>

class QPainter;
class QRectF;

namespace quorvane {

/// Paints an icon into a rectangle, at any size.
using IconPainter = std::function<void(QPainter& painter, const QRectF& rect)>;

/// An icon that is painted whenever it is asked for, at the size and scale asked for, and keeps no picture.
/// @param sizes  for those who want a picture of every size: docks and status areas.
QIcon paintedIcon(IconPainter paint, const QList<QSize>& sizes = {});

} // namespace quorvane
