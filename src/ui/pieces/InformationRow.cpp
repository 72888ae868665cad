#include "ui/pieces/InformationRow.h"

#include <QEvent>
#include <QPainter>

#include <algorithm>

namespace quorvane {

InformationRow::InformationRow(QWidget* parent)
    : QLabel(parent) {
    setSizePolicy(rowSizePolicy());
}

void InformationRow::setContent(const RowContent& content) {
    m_content = content;
    setAccessibleName(content.title);
    setAccessibleDescription(content.description);
    updateGeometry();
    update();
}

QSize InformationRow::sizeHint() const {
    return {minimumSizeHint().width(), heightForWidth(std::max(minimumSizeHint().width(), width()))};
}

QSize InformationRow::minimumSizeHint() const {
    return {rowMinimumWidth(themeOf(this), m_content), Theme::kSingleRow};
}

int InformationRow::heightForWidth(int width) const {
    return rowHeight(themeOf(this), m_content, width);
}

void InformationRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintRow(painter, themeOf(this), rect(), m_content, {});
}

void InformationRow::changeEvent(QEvent* event) {
    QLabel::changeEvent(event);
    if (event->type() == QEvent::StyleChange) {
        updateGeometry();
        update();
    }
}

} // namespace quorvane
