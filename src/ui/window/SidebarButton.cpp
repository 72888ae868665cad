#include "ui/window/SidebarButton.h"

#include "ui/QuorvaneStyle.h"
#include "ui/pieces/ReturnKey.h"
#include "ui/window/SidebarRow.h"

#include <QPainter>

namespace quorvane {

SidebarButton::SidebarButton(const QString& symbol, const QString& title, QWidget* parent)
    : QPushButton(title, parent)
    , m_symbol(symbol) {
    setAutoDefault(false);
}

QSize SidebarButton::sizeHint() const {
    return {0, sidebarRowHeight(themeOf(this))};
}

void SidebarButton::keyPressEvent(QKeyEvent* event) {
    if (!isPressedByReturn(*this, *event)) {
        QPushButton::keyPressEvent(event);
    }
}

void SidebarButton::paintEvent(QPaintEvent*) {
    const Theme& theme = themeOf(this);
    QPainter painter(this);
    SidebarRow row{text(), m_symbol};
    row.ground = isDown() ? theme.pressed : underMouse() ? theme.hover : QColor(Qt::transparent);
    row.hasRing = hasFocus() && window()->testAttribute(Qt::WA_KeyboardFocusChange);
    paintSidebarRow(painter, theme, rect(), row);
}

} // namespace quorvane
