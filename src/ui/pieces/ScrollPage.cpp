#include "ui/pieces/ScrollPage.h"

#include "ui/Theme.h"

#include <QHBoxLayout>
#include <QScrollBar>
#include <QVBoxLayout>

namespace quorvane {

ScrollPage::ScrollPage(QWidget* parent)
    : QScrollArea(parent) {
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // Nothing of one is seen where there is nothing to scroll, and nothing moves when there is.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setFocusPolicy(Qt::NoFocus);
    auto* const ground = new QWidget;
    const int right = Theme::kGap24 - verticalScrollBar()->sizeHint().width();
    m_column = addColumn(*ground, {Theme::kGap24, Theme::kGap24, right, Theme::kGap24});
    m_column->setSpacing(Theme::kGap24);
    setWidget(ground);
}

void ScrollPage::addPart(QWidget* part) {
    m_column->addWidget(part);
}

void ScrollPage::finish() {
    m_column->addStretch(1);
}

QVBoxLayout* addColumn(QWidget& ground, const QMargins& margins) {
    auto* const across = new QHBoxLayout(&ground);
    across->setContentsMargins(margins);
    auto* const column = new QWidget;
    column->setMaximumWidth(Theme::kColumn);
    auto* const layout = new QVBoxLayout(column);
    layout->setContentsMargins(0, 0, 0, 0);
    across->addStretch(1);
    across->addWidget(column, 1000);
    across->addStretch(1);
    return layout;
}

} // namespace quorvane
