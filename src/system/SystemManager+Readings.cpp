#include "system/SystemManager.h"

#include "readings/PowerSettings.h"

#include <QCoroTask>

#include <utility>

namespace quorvane {

QCoro::Task<Reading<QString>> SystemManager::readDefaultValue(QString domain, QString key, PreferenceHost host) {
    return m_readings.readDefaultValue(std::move(domain), std::move(key), host);
}

QCoro::Task<Reading<PowerSettings>> SystemManager::readPowerSettings() {
    return m_readings.readPowerSettings();
}

QCoro::Task<Reading<bool>> SystemManager::readTimeMachineState() {
    return m_readings.readTimeMachineState();
}

QCoro::Task<Reading<bool>> SystemManager::readSpotlightState() {
    return m_readings.readSpotlightState();
}

QString SystemManager::notificationCenterPreferences() const {
    return m_readings.notificationCenterPreferences();
}

} // namespace quorvane
