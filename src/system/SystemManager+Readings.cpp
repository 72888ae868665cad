#include "system/SystemManager.h"

#include "matching/SystemVerification.h"
#include "network/NetworkServices.h"
#include "readings/PowerSettings.h"

#include <QCoroTask>

#include <utility>

namespace quorvane {

QCoro::Task<Reading<QString>> SystemManager::readDefaultValue(QString domain, QString key, PreferenceHost host) {
    return m_verification->readings().readDefaultValue(std::move(domain), std::move(key), host);
}

QCoro::Task<Reading<PowerSettings>> SystemManager::readPowerSettings() {
    const Reading<QList<PowerSource>> sources = co_await m_verification->readings().readPowerSources();
    Reading<PowerSettings> reading;
    reading.isAnswered = sources.isAnswered;
    if (sources.value) {
        reading.value = firstListed(*sources.value);
    }
    co_return reading;
}

QCoro::Task<Reading<TimeMachineState>> SystemManager::readTimeMachineState() {
    return m_verification->readings().readTimeMachineState();
}

QCoro::Task<Reading<bool>> SystemManager::readSpotlightState() {
    const Reading<QList<IndexedVolume>> volumes = co_await m_verification->readings().readIndexing();
    Reading<bool> reading;
    reading.isAnswered = volumes.isAnswered;
    if (volumes.value) {
        reading.value = indexesFiles(*volumes.value);
    }
    co_return reading;
}

QCoro::Task<QList<NetworkServiceState>> SystemManager::readNetworkServices() {
    return m_verification->readings().readNetworkServices();
}

QString SystemManager::notificationCenterPreferences() const {
    return m_verification->readings().notificationCenterPreferences();
}

} // namespace quorvane
