#include "ui/pieces/SheetLayer.h"

#include "ui/Theme.h"
#include "ui/pieces/Sheet.h"

#include <QEvent>
#include <QPainter>

#include <algorithm>

namespace quorvane {

SheetLayer::SheetLayer(QWidget* beneath, QWidget* parent)
    : QWidget(parent)
    , m_beneath(beneath, this) {
    setAttribute(Qt::WA_NoMousePropagation);
    m_fade.setStartValue(0.0);
    m_fade.setEndValue(1.0);
    connect(&m_fade, &QVariantAnimation::valueChanged, this, [this] {
        place();
        update();
    });
    hide();
}

void SheetLayer::show(Sheet* sheet) {
    m_beneath.begin();
    removeSheet();
    m_sheet = sheet;
    sheet->setParent(this);
    connect(sheet, &Sheet::contentsChanged, this, &SheetLayer::place);
    m_fade.setDuration(static_cast<int>(themeOf(this).moving(Theme::kFade).count()));
    setVisible(true);
    raise();
    sheet->show();
    m_fade.start();
    place();
}

void SheetLayer::clear() {
    if (m_sheet == nullptr) {
        return;
    }
    removeSheet();
    hide();
    m_beneath.end();
}

void SheetLayer::removeSheet() {
    m_fade.stop();
    if (m_sheet == nullptr) {
        return;
    }
    if (QWidget* const focused = m_sheet->focusWidget()) {
        focused->clearFocus();
    }
    m_sheet->hide();
    m_sheet->deleteLater(); // it may be in the midst of telling that it is to close
    m_sheet.clear();
}

bool SheetLayer::event(QEvent* event) {
    if (event->type() == QEvent::LayoutRequest) {
        place();
    }
    return QWidget::event(event);
}

void SheetLayer::resizeEvent(QResizeEvent*) {
    place();
}

/// Under the top edge, from which it slides.
void SheetLayer::place() {
    if (m_sheet == nullptr) {
        return;
    }
    const bool isMoving = m_fade.state() == QAbstractAnimation::Running;
    const double share = isMoving ? m_fade.currentValue().toDouble() : 1;
    // Wider only where large text needs it for the buttons.
    const int wanted = std::max(Theme::kSheet, m_sheet->minimumSizeHint().width());
    const int width = std::min(wanted, this->width() - 2 * Theme::kGap16);
    const int height = std::min(m_sheet->wholeHeight(width), this->height() - 2 * Theme::kGap24);
    const auto slid = static_cast<int>((1 - share) * Theme::kGap24);
    m_sheet->setGeometry((this->width() - width) / 2, Theme::kGap24 - slid, width, height);
}

void SheetLayer::paintEvent(QPaintEvent*) {
    QColor shade = themeOf(this).shade;
    if (m_fade.state() == QAbstractAnimation::Running) {
        shade.setAlphaF(static_cast<float>(shade.alphaF() * m_fade.currentValue().toDouble()));
    }
    QPainter(this).fillRect(rect(), shade);
}

} // namespace quorvane
