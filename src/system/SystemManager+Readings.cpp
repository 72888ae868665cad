#include "system/SystemManager.h"

#include "readings/PowerSettings.h"

#include <QCoroTask>

#include <utility>

namespace quorvane {

QCoro::Task<std::optional<QString>> SystemManager::readDefaultValue(QString domain, QString key, PreferenceHost host) {
    return m_readings.readDefaultValue(std::move(domain), std::move(key), host);
}

QCoro::Task<PowerSettings> SystemManager::readPowerSettings() {
    return m_readings.readPowerSettings();
}

QCoro::Task<std::optional<bool>> SystemManager::readTimeMachineState() {
    return m_readings.readTimeMachineState();
}

QCoro::Task<std::optional<bool>> SystemManager::readSpotlightState() {
    return m_readings.readSpotlightState();
}

QString SystemManager::notificationCenterPreferences() const {
    return m_readings.notificationCenterPreferences();
}

} // namespace quorvane
