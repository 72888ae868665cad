#include "actions/Turnstile.h"

#include "lock/UnlockGate.h"
#include "system/SystemManager.h"

namespace quorvane {

Turnstile::Turnstile(SystemManager& system, UnlockGate& gate, QObject* parent)
    : QObject(parent)
    , m_system(system)
    , m_gate(gate)
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

Turnstile::Hold Turnstile::suppressAutoLock() {
    if (++m_suppressionCount == 1) {
        m_gate.setSuppressAutoLock(true);
    }
    return Hold(*this, &Turnstile::allowAutoLock);
}

void Turnstile::close() {
    --m_openCount;
    update();
}

void Turnstile::endBusy() {
    m_system.endBusy();
}

void Turnstile::allowAutoLock() {
    if (--m_suppressionCount == 0) {
        m_gate.setSuppressAutoLock(false);
    }
}

void Turnstile::update() {
    if (isIdle() != m_wasIdle) {
        m_wasIdle = !m_wasIdle;
        Q_EMIT idleChanged();
    }
}

} // namespace quorvane
