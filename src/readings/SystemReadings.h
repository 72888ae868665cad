#pragma once

#include "tweaks/TweakPreferences.h"

#include <QString>

#include <optional>

namespace QCoro {
template <typename T>
class Task;
}

namespace quorvane {

class FlowEnvironment;
struct PowerSettings;

/// Reads the live system, one tool after the other. It changes nothing, asks for nothing and logs nothing.
class SystemReadings {
public:
    explicit SystemReadings(FlowEnvironment& environment)
        : m_environment(environment) {}

    /// The value of a preference as the `defaults` tool prints it, trimmed; none when the key isn't set.
    QCoro::Task<std::optional<QString>> readDefaultValue(QString domain, QString key, PreferenceHost host) const;
    /// The same of one that a tweak changes.
    QCoro::Task<std::optional<QString>> readPreference(const MacPreference& preference) const;
    QCoro::Task<PowerSettings> readPowerSettings() const;
    /// True while a backup is running at this moment, whatever the automatic backups are set to; none when
    /// unknown.
    QCoro::Task<std::optional<bool>> readTimeMachineState() const;
    /// True while the boot volume is indexed; none when unknown.
    QCoro::Task<std::optional<bool>> readSpotlightState() const;

    /// The path of Notification Center's per-host preferences, a domain for `readDefaultValue`.
    QString notificationCenterPreferences() const;

private:
    FlowEnvironment& m_environment;
};

} // namespace quorvane
