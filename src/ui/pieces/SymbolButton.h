#pragma once

#include <QPushButton>

namespace quorvane {

/// A button without a frame: a symbol, and a word in the colour of links, or the symbol alone.
class SymbolButton : public QPushButton {
    Q_OBJECT

public:
    SymbolButton(const QString& symbol, const QString& title, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QRectF symbolPlace() const;

    QString m_symbol;
};

} // namespace quorvane
