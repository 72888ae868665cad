#include "ui/pieces/IconButton.h"

#include "ui/QuorvaneStyle.h"
#include "ui/pieces/ReturnKey.h"

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
    return {Theme::kBadge + 2 * Theme::kRingRoom, Theme::kBadge + 2 * Theme::kRingRoom};
}

void IconButton::keyPressEvent(QKeyEvent* event) {
    if (!isPressedByReturn(*this, *event)) {
        QToolButton::keyPressEvent(event);
    }
}

void IconButton::paintEvent(QPaintEvent*) {
    const Theme& theme = themeOf(this);
    const QRectF badge = QRectF(rect()).adjusted(Theme::kRingRoom, Theme::kRingRoom, -Theme::kRingRoom, -Theme::kRingRoom);
    QPainter painter(this);
    painter.setOpacity(isDown() ? 0.7 : 1);
    paintBadge(painter, theme, badge, m_symbol, m_tint);
    if (hasFocus() && window()->testAttribute(Qt::WA_KeyboardFocusChange)) {
        painter.setOpacity(1);
        drawFocusRing(painter, theme, badge, Theme::kFieldRadius);
    }
}

} // namespace quorvane
