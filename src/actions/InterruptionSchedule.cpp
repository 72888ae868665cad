#include "actions/InterruptionSchedule.h"

#include "actions/ActionOutcome.h"
#include "actions/Tasks.h"
#include "actions/Turnstile.h"
#include "flows/FlowRecord.h"
#include "lock/LockManager.h"
#include "system/SystemManager.h"

#include <QCoroTask>

#include <utility>

namespace quorvane {

InterruptionSchedule::InterruptionSchedule(const Parts& parts, std::function<QCoro::Task<ActionOutcome>()> offer,
                                           std::function<void()> proceed, QObject* parent)
    : QObject(parent)
    , m_parts(parts)
    , m_offer(std::move(offer))
    , m_proceed(std::move(proceed)) {
    connect(&m_parts.turnstile, &Turnstile::idleChanged, this, &InterruptionSchedule::update);
    connect(&m_parts.lock, &LockManager::isUnlockedChanged, this, &InterruptionSchedule::update);
}

void InterruptionSchedule::windowPainted() {
    if (m_isSettled || m_isToAsk) {
        return;
    }
    if (!m_parts.system.interruptedFlow()) {
        settle();
        return;
    }
    m_isToAsk = true;
    update();
}

void InterruptionSchedule::update() {
    if (m_isToAsk && !m_isAsking && m_parts.lock.isUnlocked() && m_parts.turnstile.isIdle()) {
        m_parts.tasks.start(ask());
    }
}

/// What the lock has taken away unanswered is asked once more when the user is back.
QCoro::Task<void> InterruptionSchedule::ask() {
    m_isAsking = true;
    const ActionOutcome outcome = co_await m_offer();
    m_isAsking = false;
    if (outcome.wasCarriedOut || !m_parts.system.interruptedFlow()) {
        m_isToAsk = false;
        settle();
    }
}

void InterruptionSchedule::settle() {
    m_isSettled = true;
    m_proceed();
}

} // namespace quorvane
