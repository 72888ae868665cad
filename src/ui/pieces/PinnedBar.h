#pragma once

#include "ui/Theme.h"

#include <QPainter>
#include <QWidget>

namespace quorvane {

/// The ground of buttons below what scrolls, which vanishes behind its upper edge.
class PinnedBar : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(0, 0, width(), 1, themeOf(this).border); }
};

} // namespace quorvane
