#include "ui/window/SidebarRow.h"

#include "ui/QuorvaneStyle.h"
#include "ui/symbols/Symbols.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

namespace quorvane {

namespace {

constexpr int kSidebarRow = 32;
constexpr int kSidebarSymbol = 16;

} // namespace

int sidebarRowHeight(const Theme& theme) {
    return std::max(kSidebarRow, QFontMetrics(theme.font(TextStyle::RowTitle)).height() + Theme::kGap12);
}

int sidebarRowWidth(const Theme& theme, const QString& text) {
    const int textWidth = QFontMetrics(theme.font(TextStyle::RowTitle)).horizontalAdvance(text);
    return 2 * Theme::kGap8 + kSidebarSymbol + textWidth + Theme::kGap12;
}

void paintSidebarRow(QPainter& painter, const Theme& theme, const QRect& rect, const SidebarRow& row) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF ground =
        QRectF(rect).adjusted(Theme::kRingRoom, Theme::kRingRoom, -Theme::kRingRoom, -Theme::kRingRoom);
    painter.setPen(Qt::NoPen);
    painter.setBrush(row.isSelected ? theme.selection : row.ground);
    painter.drawRoundedRect(ground, Theme::kFieldRadius, Theme::kFieldRadius);
    const QRectF symbol(rect.left() + Theme::kGap8, rect.center().y() - kSidebarSymbol / 2.0 + 0.5, kSidebarSymbol,
                        kSidebarSymbol);
    paintSymbol(painter, row.symbol, symbol, row.isSelected ? theme.onAccent : theme.accentText);
    painter.setFont(theme.font(TextStyle::RowTitle));
    painter.setPen(row.isSelected ? theme.onAccent : theme.text);
    painter.drawText(rect.adjusted(2 * Theme::kGap8 + kSidebarSymbol, 0, -Theme::kGap4, 0),
                     Qt::AlignLeft | Qt::AlignVCenter, row.text);
    if (row.hasRing) {
        drawFocusRing(painter, theme, ground, Theme::kFieldRadius);
    }
    painter.restore();
}

} // namespace quorvane
