#pragma once

#include "ui/pieces/RowContent.h"
#include "ui/pieces/TextLabel.h"

#include <QWidget>

namespace quorvane {

/// A symbol by itself, in the ink of a text.
class SymbolView : public QWidget {
    Q_OBJECT

public:
    SymbolView(const QString& symbol, int size, QWidget* parent = nullptr, TextTone tone = TextTone::Normal);

    void setSymbol(const QString& symbol, TextTone tone);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_symbol;
    TextTone m_tone;
};

/// A symbol in white on a rounded square.
class PerformanceSymbolBadge : public QWidget {
    Q_OBJECT

public:
    PerformanceSymbolBadge(const QString& symbol, BadgeColor tint, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_symbol;
    BadgeColor m_tint;
};

} // namespace quorvane
