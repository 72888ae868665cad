#include "actions/Turnstile.h"

#include "system/SystemManager.h"

namespace quorvane {

Turnstile::Turnstile(SystemManager& system, QObject* parent)
    : QObject(parent)
    , m_system(system)
    , m_wasIdle(isIdle()) {
    connect(&m_system, &SystemManager::isBusyChanged, this, &Turnstile::update);
}

bool Turnstile::isIdle() const {
    return m_openCount == 0 && !m_system.isBusy();
}

Turnstile::Hold Turnstile::open() {
    ++m_openCount;
    update();
    return Hold(*this, &Turnstile::close);
}

Turnstile::Hold Turnstile::busy(const QString& text) {
    m_system.beginBusy(text);
    return Hold(*this, &Turnstile::endBusy);
}

void Turnstile::close() {
    --m_openCount;
    update();
}

void Turnstile::endBusy() {
    m_system.endBusy();
}

void Turnstile::update() {
    if (isIdle() != m_wasIdle) {
        m_wasIdle = !m_wasIdle;
        Q_EMIT idleChanged();
    }
}

} // namespace quorvane
