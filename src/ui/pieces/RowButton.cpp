#include "ui/pieces/RowButton.h"

#include "ui/QuorvaneStyle.h"
#include "ui/pieces/ReturnKey.h"

#include <QEvent>
#include <QPainter>
#include <QStyleOptionButton>

namespace quorvane {

RowButton::RowButton(const RowContent& content, QWidget* parent)
    : QPushButton(parent) {
    setAutoDefault(false);
    setSizePolicy(rowSizePolicy());
    setContent(content);
}

void RowButton::setContent(const RowContent& content) {
    m_content = content;
    setAccessibleName(content.title);
    setAccessibleDescription(content.description);
    measureAnew();
}

void RowButton::measureAnew() {
    m_heights.forget();
    updateGeometry();
    update();
}

QSize RowButton::sizeHint() const {
    return {minimumSizeHint().width(), leastRowHeight(m_content)}; // the height goes by the width that it gets
}

QSize RowButton::minimumSizeHint() const {
    return {rowMinimumWidth(themeOf(this), m_content), Theme::kSingleRow};
}

int RowButton::heightForWidth(int width) const {
    return m_heights.at(width, leastRowHeight(m_content),
                        [this](int at) { return rowHeight(themeOf(this), m_content, at); });
}

void RowButton::keyPressEvent(QKeyEvent* event) {
    if (!isPressedByReturn(*this, *event)) {
        QPushButton::keyPressEvent(event);
    }
}

void RowButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintRow(painter, themeOf(this), rect(), m_content, rowState(*this));
}

void RowButton::changeEvent(QEvent* event) {
    QPushButton::changeEvent(event);
    if (event->type() == QEvent::StyleChange || event->type() == QEvent::FontChange) {
        measureAnew();
    }
}

RowState rowState(const QAbstractButton& button) {
    const bool showsRing = button.hasFocus() && button.window()->testAttribute(Qt::WA_KeyboardFocusChange);
    return {looksEnabled(&button), button.underMouse() && button.isEnabled(), button.isDown(), showsRing};
}

} // namespace quorvane
