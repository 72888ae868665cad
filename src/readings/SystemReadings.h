#pragma once

#include "readings/CurrentSettings.h"
#include "readings/ExportedPreferences.h"
#include "readings/Reading.h"
#include "readings/TimeMachine.h"
#include "tweaks/TweakPreferences.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

namespace QCoro {
template <typename T>
class Task;
}

namespace quorvane {

class FlowEnvironment;
struct CommandResult;
struct NetworkServiceState;

/// Reads the live system, one tool after the other. It changes nothing there, asks for nothing and logs nothing. A tool that
/// didn't answer is told apart from one that had no value to tell.
class SystemReadings {
public:
    /// How often the files are read in which an organization's settings are.
    enum class Files { Anew, Once };
    explicit SystemReadings(FlowEnvironment& environment, Files files = Files::Anew);

    /// The value of a preference as the `defaults` tool prints it, trimmed; none when the key isn't set.
    QCoro::Task<Reading<QString>> readDefaultValue(QString domain, QString key, PreferenceHost host) const;
    /// The same of one that a tweak changes: the user's own, whatever an organization has set.
    QCoro::Task<Reading<QString>> readPreference(const MacPreference& preference) const;
    /// What holds: an organization's value before the user's.
    QCoro::Task<CurrentPreference> readCurrentPreference(const MacPreference& preference) const;
    /// The user's own values with their types, of any preferences of the user's or the system's: one command for each domain.
    QCoro::Task<TypedReadings> readTypedValues(QList<MacPreference> preferences) const;
    /// None when the tool failed.
    QCoro::Task<Reading<QList<PowerSource>>> readPowerSources() const;
    /// Whether automatic backups are made; none when unknown. What is seen on, the program hasn't left off: its note of that
    /// ends here.
    QCoro::Task<Reading<TimeMachineState>> readTimeMachineState() const;
    /// Whether this program has switched the automatic backups off, as far as it knows.
    bool hasSwitchedBackupsOff() const;
    /// True while a backup runs, automatic or not; false also when unknown.
    QCoro::Task<bool> readIsBackupRunning() const;
    /// What Spotlight does with the startup volume and that of the user's files; empty where the tool names neither.
    QCoro::Task<Reading<QList<IndexedVolume>>> readIndexing() const;
    /// With every volume that there is. A disk that sleeps may have to start for it.
    QCoro::Task<Reading<QList<IndexedVolume>>> readIndexingOfAll() const;
    enum class Volumes { OfTheSystem, All };
    /// All that tweaks change, but for what runs at login.
    QCoro::Task<CurrentSettings> readCurrentSettings(Volumes volumes) const;

    /// Each network service with its state, in the order of the tool; empty when the list can't be read.
    QCoro::Task<QList<NetworkServiceState>> readNetworkServices() const;

    /// The path of Notification Center's per-host preferences, a domain for `readDefaultValue`.
    QString notificationCenterPreferences() const;

private:
    QString domainOf(const MacPreference& preference) const;
    QCoro::Task<Reading<TimeMachineState>> storedTimeMachineState() const;
    QCoro::Task<Reading<QList<IndexedVolume>>> indexingToldBy(QStringList arguments) const;
    QCoro::Task<CommandResult> ask(QStringList arguments) const;

    std::optional<QString> managed(const MacPreference& preference) const;

    FlowEnvironment& m_environment;
    using ManagedValues = QHash<QString, std::optional<QString>>;
    std::shared_ptr<ManagedValues> m_managed; ///< by domain and key; none where each look is a new one
};

} // namespace quorvane
