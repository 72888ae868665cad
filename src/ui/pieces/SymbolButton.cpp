#include "ui/pieces/SymbolButton.h"

#include "ui/QuorvaneStyle.h"
#include "ui/pieces/ReturnKey.h"
#include "ui/symbols/Symbols.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

namespace quorvane {

namespace {

constexpr int kSymbolSize = 14;

} // namespace

SymbolButton::SymbolButton(const QString& symbol, const QString& title, QWidget* parent)
    : QPushButton(title, parent)
    , m_symbol(symbol) {
    setAutoDefault(false);
}

QSize SymbolButton::sizeHint() const {
    if (text().isEmpty()) {
        return {Theme::kButtonHeight, Theme::kButtonHeight};
    }
    const QFontMetrics metrics(themeOf(this).font(TextStyle::RowTitle));
    return {kSymbolSize + Theme::kGap4 + metrics.horizontalAdvance(text()) + 2 * Theme::kGap8,
            std::max(metrics.height() + Theme::kGap8, Theme::kButtonHeight)};
}

void SymbolButton::keyPressEvent(QKeyEvent* event) {
    if (!isPressedByReturn(*this, *event)) {
        QPushButton::keyPressEvent(event);
    }
}

QRectF SymbolButton::symbolPlace() const {
    const double left = text().isEmpty() ? (width() - kSymbolSize) / 2.0 : Theme::kGap4;
    return {left, (height() - kSymbolSize) / 2.0, kSymbolSize, kSymbolSize};
}

void SymbolButton::paintEvent(QPaintEvent*) {
    const Theme& theme = themeOf(this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF ground = QRectF(rect()).adjusted(3, 3, -3, -3);
    if (isDown() || (underMouse() && isEnabled())) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(isDown() ? theme.pressed : theme.hover);
        painter.drawRoundedRect(ground, Theme::kFieldRadius, Theme::kFieldRadius);
    }
    const QColor ink = looksEnabled(this) ? theme.accentText : theme.disabledText;
    paintSymbol(painter, m_symbol, symbolPlace(), ink);
    painter.setFont(theme.font(TextStyle::RowTitle));
    painter.setPen(ink);
    painter.drawText(rect().adjusted(Theme::kGap8 + kSymbolSize, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter, text());
    if (hasFocus() && window()->testAttribute(Qt::WA_KeyboardFocusChange)) {
        drawFocusRing(painter, theme, ground, Theme::kFieldRadius);
    }
}

} // namespace quorvane
