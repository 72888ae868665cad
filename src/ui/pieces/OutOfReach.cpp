#include "ui/pieces/OutOfReach.h"

#include <QEvent>

#include <utility>

namespace quorvane {

OutOfReach::OutOfReach(QWidget* widget, QObject* parent)
    : QObject(parent)
    , m_widget(widget) {}

void OutOfReach::begin() {
    if (std::exchange(m_isOut, true)) {
        return;
    }
    QWidget* const focused = m_widget->window()->focusWidget();
    if (focused != nullptr && (focused == m_widget || m_widget->isAncestorOf(focused))) {
        m_focusBefore = focused;
        focused->clearFocus(); // or Qt would move it on to what comes next
    }
    m_widget->setEnabled(false);
}

void OutOfReach::end() {
    if (!std::exchange(m_isOut, false)) {
        return;
    }
    m_widget->setEnabled(true);
    if (m_focusBefore != nullptr && !m_focusBefore->isEnabled()) {
        m_focusBefore->installEventFilter(this); // something else still keeps it
    } else {
        giveFocusBack();
    }
}

bool OutOfReach::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::EnabledChange && m_focusBefore != nullptr && m_focusBefore->isEnabled()) {
        watched->removeEventFilter(this);
        giveFocusBack();
    }
    return QObject::eventFilter(watched, event);
}

void OutOfReach::giveFocusBack() {
    QWidget* const before = std::exchange(m_focusBefore, nullptr);
    if (before != nullptr && before->window()->focusWidget() == nullptr) {
        before->setFocus(Qt::OtherFocusReason);
    }
}

} // namespace quorvane
