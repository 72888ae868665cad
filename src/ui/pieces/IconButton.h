#pragma once

#include "ui/pieces/RowContent.h"

#include <QToolButton>

namespace quorvane {

/// A symbol badge that is a button.
class IconButton : public QToolButton {
    Q_OBJECT

public:
    static constexpr int kRingMargin = 3; ///< around the badge

    explicit IconButton(QWidget* parent = nullptr);

    void setSymbol(const QString& symbol, BadgeColor tint);

    QSize sizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_symbol;
    BadgeColor m_tint = BadgeColor::Grey;
};

} // namespace quorvane
