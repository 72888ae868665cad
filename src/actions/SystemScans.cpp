#include "actions/SystemScans.h"

#include "actions/SavedProfiles.h"
#include "actions/Tasks.h"
#include "actions/Turnstile.h"
#include "system/SystemManager.h"

#include <QCoroFuture>
#include <QCoroTask>

namespace quorvane {

SystemScans::SystemScans(SystemManager& system, SavedProfiles& profiles, Turnstile& turnstile, Tasks& tasks,
                         QObject* parent)
    : QObject(parent)
    , m_system(system)
    , m_profiles(profiles)
    , m_turnstile(turnstile)
    , m_tasks(tasks) {
    connect(&m_turnstile, &Turnstile::idleChanged, this, [this] {
        if (!m_turnstile.isIdle()) {
            m_abandonment.abandon();
        }
        beginWhereIdle();
    });
}

void SystemScans::request() {
    m_wasRequested = true;
    m_isRequested = true;
    beginWhereIdle();
}

void SystemScans::beginWhereIdle() {
    if (m_isRequested && !m_isUnderWay && m_turnstile.isIdle()) {
        m_tasks.start(carryOut());
    }
}

QCoro::Task<void> SystemScans::carryOut() {
    m_isRequested = false;
    m_isUnderWay = true;
    m_abandonment = {};
    const Abandonment abandonment = m_abandonment;
    co_await scan(abandonment);
    m_isUnderWay = false;
    m_isRequested = m_isRequested || abandonment.isAbandoned();
    beginWhereIdle();
    if (isUpToDate()) {
        Q_EMIT ended();
    }
}

QCoro::Task<std::optional<SystemConfigurationMatch>> SystemScans::scanned() {
    return scan({});
}

QCoro::Task<std::optional<SystemConfigurationMatch>> SystemScans::scan(Abandonment abandonment) {
    const ProfileListing listing = co_await m_profiles.list();
    co_return co_await m_system.scanCurrentSystem(listing.profiles, {}, abandonment);
}

} // namespace quorvane
