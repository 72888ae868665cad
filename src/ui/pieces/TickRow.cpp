#include "ui/pieces/TickRow.h"

#include "ui/QuorvaneStyle.h"

namespace quorvane {

namespace {

constexpr int kTick = 20;
constexpr int kBoxRadius = 5;
constexpr int kDot = 8;

void paintOutline(QPainter& painter, TickShape shape, const QRectF& place) {
    if (shape == TickShape::Box) {
        painter.drawRoundedRect(place, kBoxRadius, kBoxRadius);
    } else {
        painter.drawEllipse(place);
    }
}

void paintMark(QPainter& painter, TickShape shape, const QRectF& place, const QColor& ink) {
    if (shape == TickShape::Box) {
        drawCheckMark(painter, place.adjusted(3.5, 3.5, -3.5, -3.5), ink);
        return;
    }
    painter.setBrush(ink);
    painter.drawEllipse(place.center(), kDot / 2.0, kDot / 2.0);
}

} // namespace

void paintTick(QPainter& painter, const Theme& theme, const QRect& row, TickShape shape, bool isTicked,
               bool isEnabled) {
    const double left = row.right() + 1 - Theme::kGap12 - kTick;
    const QRectF place(left, row.top() + (row.height() - kTick) / 2.0, kTick, kTick);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(isEnabled ? 1 : 0.4);
    if (isTicked) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(theme.selection);
        paintOutline(painter, shape, place);
        paintMark(painter, shape, place, theme.onAccent);
    } else {
        painter.setPen(theme.switchOff); // which is told from a card as a switch is
        painter.setBrush(theme.field);
        paintOutline(painter, shape, place.adjusted(0.5, 0.5, -0.5, -0.5));
    }
    painter.restore();
}

RowContent withTickRoom(RowContent content) {
    content.controlWidth = kTick;
    return content;
}

} // namespace quorvane
