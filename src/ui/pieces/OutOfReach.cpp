#include "ui/pieces/OutOfReach.h"

#include "ui/pieces/ParkedFocus.h"

#include <QEvent>

#include <utility>

namespace quorvane {

namespace {

bool canTakeFocus(const QWidget& widget) {
    return widget.isEnabled() && widget.isVisible();
}

} // namespace

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
        parkFocus(focused); // or Qt would move it on to what comes next
    }
    m_widget->setEnabled(false);
}

void OutOfReach::end() {
    if (!std::exchange(m_isOut, false)) {
        return;
    }
    m_widget->setEnabled(true);
    if (m_focusBefore != nullptr && !canTakeFocus(*m_focusBefore)) {
        m_focusBefore->installEventFilter(this); // something else still keeps it, or it isn't seen yet
    } else {
        giveFocusBack();
    }
}

bool OutOfReach::eventFilter(QObject* watched, QEvent* event) {
    const bool mayBeBack = event->type() == QEvent::EnabledChange || event->type() == QEvent::Show;
    if (mayBeBack && m_focusBefore != nullptr && canTakeFocus(*m_focusBefore)) {
        watched->removeEventFilter(this);
        giveFocusBack();
    }
    return QObject::eventFilter(watched, event);
}

void OutOfReach::giveFocusBack() {
    QWidget* const before = std::exchange(m_focusBefore, nullptr);
    if (before != nullptr && isFocusParked(before->window())) {
        before->setFocus(Qt::OtherFocusReason);
    }
}

} // namespace quorvane
