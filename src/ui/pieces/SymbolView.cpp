#include "ui/pieces/SymbolView.h"

#include "ui/symbols/Symbols.h"

#include <QPainter>

namespace quorvane {

SymbolView::SymbolView(const QString& symbol, int size, QWidget* parent, TextTone tone)
    : QWidget(parent)
    , m_symbol(symbol)
    , m_tone(tone) {
    setFixedSize(size, size);
}

void SymbolView::setSymbol(const QString& symbol, TextTone tone) {
    m_symbol = symbol;
    m_tone = tone;
    update();
}

void SymbolView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintSymbol(painter, m_symbol, rect(), inkOf(themeOf(this), m_tone));
}

PerformanceSymbolBadge::PerformanceSymbolBadge(const QString& symbol, BadgeColor tint, QWidget* parent)
    : QWidget(parent)
    , m_symbol(symbol)
    , m_tint(tint) {
    setFixedSize(Theme::kBadge, Theme::kBadge);
}

void PerformanceSymbolBadge::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintBadge(painter, themeOf(this), rect(), m_symbol, m_tint);
}

} // namespace quorvane
