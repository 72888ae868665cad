#include "ui/pieces/IconButton.h"

#include "ui/QuorvaneStyle.h"

#include <QPainter>

namespace quorvane {

IconButton::IconButton(QWidget* parent)
    : QToolButton(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setFixedSize(sizeHint());
}

void IconButton::setSymbol(const QString& symbol, BadgeColor tint) {
    m_symbol = symbol;
    m_tint = tint;
    update();
}

QSize IconButton::sizeHint() const {
    return {Theme::kBadge + 2 * kRingMargin, Theme::kBadge + 2 * kRingMargin};
}

void IconButton::paintEvent(QPaintEvent*) {
    const Theme& theme = themeOf(this);
    const QRectF badge = QRectF(rect()).adjusted(kRingMargin, kRingMargin, -kRingMargin, -kRingMargin);
    QPainter painter(this);
    painter.setOpacity(isDown() ? 0.7 : 1);
    paintBadge(painter, theme, badge, m_symbol, m_tint);
    if (hasFocus() && window()->testAttribute(Qt::WA_KeyboardFocusChange)) {
        painter.setOpacity(1);
        drawFocusRing(painter, theme, badge, Theme::kFieldRadius);
    }
}

} // namespace quorvane
