#pragma once

#include "readings/Reading.h"
#include "tweaks/TweakPreferences.h"

#include <QString>
#include <QStringList>

namespace QCoro {
template <typename T>
class Task;
}

namespace quorvane {

class FlowEnvironment;
struct CommandResult;
struct PowerSettings;

/// Reads the live system, one tool after the other. It changes nothing, asks for nothing and logs nothing. A tool that
/// didn't answer is told apart from one that had no value to tell.
class SystemReadings {
public:
    explicit SystemReadings(FlowEnvironment& environment)
        : m_environment(environment) {}

    /// The value of a preference as the `defaults` tool prints it, trimmed; none when the key isn't set.
    QCoro::Task<Reading<QString>> readDefaultValue(QString domain, QString key, PreferenceHost host) const;
    /// The same of one that a tweak changes.
    QCoro::Task<Reading<QString>> readPreference(const MacPreference& preference) const;
    /// None when the tool failed.
    QCoro::Task<Reading<PowerSettings>> readPowerSettings() const;
    /// True while a backup is running at this moment, whatever the automatic backups are set to; none when
    /// unknown.
    QCoro::Task<Reading<bool>> readTimeMachineState() const;
    /// True while the boot volume is indexed; none when unknown.
    QCoro::Task<Reading<bool>> readSpotlightState() const;

    /// The path of Notification Center's per-host preferences, a domain for `readDefaultValue`.
    QString notificationCenterPreferences() const;

private:
    QCoro::Task<CommandResult> ask(QStringList arguments) const;

    FlowEnvironment& m_environment;
};

} // namespace quorvane
