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
    return m_verification->readings().readPowerSettings();
}

QCoro::Task<Reading<TimeMachineState>> SystemManager::readTimeMachineState() {
    return m_verification->readings().readTimeMachineState();
}

QCoro::Task<Reading<bool>> SystemManager::readSpotlightState() {
    return m_verification->readings().readSpotlightState();
}

QCoro::Task<QList<NetworkServiceState>> SystemManager::readNetworkServices() {
    return m_verification->readings().readNetworkServices();
}

QString SystemManager::notificationCenterPreferences() const {
    return m_verification->readings().notificationCenterPreferences();
}

} // namespace quorvane
