#include "actions/OpenedProfiles.h"

#include "actions/ProfileExchange.h"
#include "actions/Tasks.h"
#include "actions/Turnstile.h"
#include "lock/LockManager.h"

#include <QCoroTask>

namespace quorvane {

OpenedProfiles::OpenedProfiles(const Parts& parts, QObject* parent)
    : QObject(parent)
    , m_parts(parts) {
    // In a turn of its own: what says so is in the midst of its end.
    connect(&m_parts.turnstile, &Turnstile::idleChanged, this, &OpenedProfiles::importNext, Qt::QueuedConnection);
    connect(&m_parts.lock, &LockManager::isUnlockedChanged, this, &OpenedProfiles::importNext, Qt::QueuedConnection);
}

void OpenedProfiles::open(const QStringList& paths) {
    if (!m_isShutDown) {
        m_waiting += paths;
        importNext();
    }
}

void OpenedProfiles::shutDown() {
    m_isShutDown = true;
    m_waiting.clear();
}

void OpenedProfiles::importNext() {
    if (!m_waiting.isEmpty() && m_parts.turnstile.isIdle() && m_parts.lock.isUnlocked()) {
        m_parts.tasks.start(m_parts.exchange.importFile(m_waiting.takeFirst(), m_parts.listener));
    }
}

} // namespace quorvane
