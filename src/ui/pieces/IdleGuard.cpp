#include "ui/pieces/IdleGuard.h"

#include "actions/Turnstile.h"
#include "ui/pieces/ParkedFocus.h"

#include <QEvent>

namespace quorvane {

IdleGuard::IdleGuard(QWidget* page, const Turnstile& turnstile)
    : QObject(page)
    , m_page(page)
    , m_turnstile(turnstile) {
    page->installEventFilter(this);
    connect(&turnstile, &Turnstile::idleChanged, this, &IdleGuard::update);
    update();
}

void IdleGuard::update() {
    const bool isIdle = m_turnstile.isIdle();
    if (isIdle == m_page->isEnabledTo(m_page->parentWidget())) {
        return;
    }
    QWidget* const focused = m_page->window()->focusWidget();
    if (!isIdle && focused != nullptr && m_page->isAncestorOf(focused)) {
        m_focusBefore = focused;
        parkFocus(focused); // or Qt would move it on to what comes next
    }
    m_page->setEnabled(isIdle);
    giveFocusBack();
}

void IdleGuard::giveFocusBack() {
    if (!m_page->isEnabled() || !m_page->isVisible()) {
        return;
    }
    if (m_focusBefore != nullptr && isFocusParked(m_page->window())) {
        m_focusBefore->setFocus(Qt::OtherFocusReason);
    }
    m_focusBefore.clear();
}

bool IdleGuard::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Show) {
        giveFocusBack();
    }
    return QObject::eventFilter(watched, event);
}

} // namespace quorvane
