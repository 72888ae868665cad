#include "ui/pieces/IdleGuard.h"

#include "actions/Turnstile.h"

namespace quorvane {

IdleGuard::IdleGuard(QWidget* page, const Turnstile& turnstile)
    : QObject(page)
    , m_page(page, this)
    , m_turnstile(turnstile) {
    connect(&turnstile, &Turnstile::idleChanged, this, &IdleGuard::update);
    update();
}

void IdleGuard::update() {
    if (m_turnstile.isIdle()) {
        m_page.end();
    } else {
        m_page.begin();
    }
}

} // namespace quorvane
