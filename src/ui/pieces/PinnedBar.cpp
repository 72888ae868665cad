#include "ui/pieces/PinnedBar.h"

#include "ui/Theme.h"
#include "ui/pieces/ScrollPage.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

namespace quorvane {

PinnedBar::PinnedBar(QWidget* parent)
    : QWidget(parent)
    , m_buttons(new QHBoxLayout) {
    addColumn(*this, {Theme::kGap24, Theme::kGap12, Theme::kGap24, Theme::kGap12})->addLayout(m_buttons);
    m_buttons->setSpacing(Theme::kGap8);
    m_buttons->addStretch(1);
}

void PinnedBar::addButton(QWidget* button) {
    m_buttons->addWidget(button);
}

void PinnedBar::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(0, 0, width(), 1, themeOf(this).border);
}

} // namespace quorvane
