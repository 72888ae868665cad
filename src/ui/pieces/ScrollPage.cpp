#include "ui/pieces/ScrollPage.h"

#include "ui/Theme.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace quorvane {

ScrollPage::ScrollPage(QWidget* parent)
    : QScrollArea(parent) {
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    auto* const ground = new QWidget;
    auto* const across = new QHBoxLayout(ground);
    across->setContentsMargins(Theme::kGap24, Theme::kGap24, Theme::kGap24, Theme::kGap24);
    auto* const column = new QWidget;
    column->setMaximumWidth(Theme::kColumn);
    m_column = new QVBoxLayout(column);
    m_column->setContentsMargins(0, 0, 0, 0);
    m_column->setSpacing(Theme::kGap24);
    across->addStretch(1);
    across->addWidget(column, 1000);
    across->addStretch(1);
    setWidget(ground);
}

void ScrollPage::addPart(QWidget* part) {
    m_column->addWidget(part);
}

void ScrollPage::finish() {
    m_column->addStretch(1);
}

} // namespace quorvane
