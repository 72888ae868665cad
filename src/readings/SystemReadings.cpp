#include "readings/SystemReadings.h"

#include "core/FlowEnvironment.h"
#include "core/UserDefaultKeys.h"
#include "network/NetworkServices.h"
#include "platform/FileManager.h"
#include "platform/Host.h"
#include "platform/Machine.h"
#include "platform/UserDefaults.h"
#include "readings/ManagedPreferences.h"

#include <QCoroTask>

#include <functional>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// What the output says, which counts only where the tool has succeeded.
template <typename T>
Reading<T> readingOf(const CommandResult& result, const std::function<std::optional<T>(const QString&)>& valueIn) {
    if (!result.isAnswered) {
        return Reading<T>::unanswered();
    }
    return Reading<T>::answered(result.status == 0 ? valueIn(result.standardOutput) : std::nullopt);
}

/// What keeps the program from reading a file; none where nothing does.
std::optional<FileError::Cause> obstacleTo(const QString& path, const FileManager& files) {
    try {
        files.read(path);
    } catch (const FileError& error) {
        return error.cause();
    }
    return std::nullopt;
}

} // namespace

QCoro::Task<Reading<QString>> SystemReadings::readDefaultValue(QString domain, QString key, PreferenceHost host) const {
    const CommandResult result = co_await ask(defaultsCommand(u"read"_s, domain, key, host));
    co_return readingOf<QString>(result, [](const QString& output) { return output.trimmed(); });
}

QCoro::Task<Reading<QString>> SystemReadings::readPreference(const MacPreference& preference) const {
    return readDefaultValue(domainOf(preference), preference.key.toString(), preference.host);
}

QCoro::Task<TypedReadings> SystemReadings::readTypedValues(QList<MacPreference> preferences) const {
    TypedReadings readings;
    for (const MacPreference& preference : std::as_const(preferences)) {
        if (readings.contains(placeOf(preference))) {
            continue; // told with another one of its domain
        }
        QList<MacPreference> ofDomain;
        QStringList keys;
        for (const MacPreference& other : std::as_const(preferences)) {
            if (other.domain == preference.domain && other.host == preference.host) {
                ofDomain.append(other);
                keys.append(other.key.toString());
            }
        }
        const CommandResult result = co_await ask(exportCommand(domainOf(preference), preference.host));
        const auto values =
            result.status == 0 && result.isAnswered ? exportedValues(result.standardOutput, keys) : std::nullopt;
        for (const MacPreference& told : std::as_const(ofDomain)) {
            const Reading<TypedValue> unanswered;
            readings.insert(placeOf(told), values ? values->value(told.key.toString()) : unanswered);
        }
    }
    co_return readings;
}

QString SystemReadings::domainOf(const MacPreference& preference) const {
    return preference.isNotificationCenters() ? notificationCenterPreferences() : preference.domain.toString();
}

SystemReadings::SystemReadings(FlowEnvironment& environment, Files files)
    : m_environment(environment)
    , m_managed(files == Files::Once ? std::make_shared<ManagedValues>() : nullptr) {}

std::optional<QString> SystemReadings::managed(const MacPreference& preference) const {
    const Host& host = m_environment.host();
    const QString place = preference.domain.toString() + u' ' + preference.key.toString();
    if (m_managed && m_managed->contains(place)) {
        return m_managed->value(place);
    }
    const std::optional<QString> value = managedValue(preference, host.propertyLists, host.machine);
    if (m_managed) {
        m_managed->insert(place, value);
    }
    return value;
}

QCoro::Task<CurrentPreference> SystemReadings::readCurrentPreference(const MacPreference& preference) const {
    const std::optional<QString> organizations = managed(preference);
    if (organizations) {
        co_return CurrentPreference{Reading<QString>::answered(organizations), true};
    }
    const Reading<QString> reading = co_await readPreference(preference);
    co_return CurrentPreference{reading, false};
}

QCoro::Task<Reading<QList<PowerSource>>> SystemReadings::readPowerSources() const {
    const QStringList arguments{u"/usr/bin/pmset"_s, u"-g"_s, u"custom"_s};
    const CommandResult result = co_await ask(arguments);
    co_return readingOf<QList<PowerSource>>(result, parsedPowerSources);
}

QCoro::Task<CurrentSettings> SystemReadings::readCurrentSettings(Volumes volumes) const {
    CurrentSettings current;
    current.power = co_await readPowerSources();
    for (const MacPreference& preference : kMacPreferences) {
        current.of(preference) = co_await readCurrentPreference(preference);
    }
    if (volumes == Volumes::All) {
        current.indexing = co_await readIndexingOfAll();
    } else {
        current.indexing = co_await readIndexing();
    }
    current.timeMachine = co_await readTimeMachineState();
    co_return current;
}

QCoro::Task<Reading<TimeMachineState>> SystemReadings::readTimeMachineState() const {
    const Reading<TimeMachineState> reading = co_await storedTimeMachineState();
    if (reading.value == TimeMachineState::On && hasSwitchedBackupsOff()) {
        m_environment.host().defaults.setBoolean(kQuorvaneSwitchedBackupsOff, false);
    }
    co_return reading;
}

/// `defaults` alone would take a file that may not be read for a key that isn't set, and so for backups that are off.
QCoro::Task<Reading<TimeMachineState>> SystemReadings::storedTimeMachineState() const {
    using State = Reading<TimeMachineState>;
    const auto obstacle = obstacleTo(kTimeMachineFile.toString(), m_environment.host().files);
    if (!obstacle) {
        const Reading<QString> stored = co_await readDefaultValue(kTimeMachineDomain.toString(),
                                                                  kAutomaticBackupsKey.toString(), PreferenceHost::Any);
        if (!stored.isAnswered) {
            co_return State::unanswered();
        }
        if (stored.value) {
            co_return State::answered(timeMachineStateOf(*stored.value));
        }
    }
    const QStringList arguments{u"/usr/bin/tmutil"_s, u"destinationinfo"_s};
    const CommandResult destinations = co_await ask(arguments);
    if (!destinations.isAnswered) {
        co_return State::unanswered();
    }
    const std::optional<bool> hasDestination = hasBackupDestination(destinations);
    if (hasDestination == false) {
        co_return State::answered(TimeMachineState::NotSetUp);
    }
    if (obstacle == FileError::Cause::NotPermitted) {
        co_return State::answered(TimeMachineState::NotPermitted);
    }
    const bool isOff = hasDestination == true && obstacle != FileError::Cause::Other; // a key that isn't set is off
    co_return State::answered(isOff ? std::optional(TimeMachineState::Off) : std::nullopt);
}

bool SystemReadings::hasSwitchedBackupsOff() const {
    return m_environment.host().defaults.boolean(kQuorvaneSwitchedBackupsOff);
}

QCoro::Task<bool> SystemReadings::readIsBackupRunning() const {
    const QStringList arguments{u"/usr/bin/tmutil"_s, u"status"_s};
    const CommandResult status = co_await ask(arguments);
    co_return isBackupRunning(status);
}

QCoro::Task<Reading<QList<IndexedVolume>>> SystemReadings::readIndexing() const {
    const QStringList arguments{u"/usr/bin/mdutil"_s, u"-s"_s, u"/"_s, kDataVolume.toString()};
    return indexingToldBy(arguments);
}

QCoro::Task<Reading<QList<IndexedVolume>>> SystemReadings::readIndexingOfAll() const {
    const QStringList arguments{u"/usr/bin/mdutil"_s, u"-a"_s, u"-s"_s};
    return indexingToldBy(arguments);
}

/// Where the tool fails only that a volume is on its way counts: it fails for that alone as well.
QCoro::Task<Reading<QList<IndexedVolume>>> SystemReadings::indexingToldBy(QStringList arguments) const {
    using Told = Reading<QList<IndexedVolume>>;
    const CommandResult result = co_await ask(arguments);
    if (!result.isAnswered) {
        co_return Told::unanswered();
    }
    QList<IndexedVolume> volumes = parsedIndexing(result.standardOutput);
    for (IndexedVolume& volume : volumes) {
        if (result.status != 0 && volume.indexing != Indexing::Changing) {
            volume.indexing = Indexing::Unknown;
        }
    }
    co_return Told::answered(volumes);
}

QCoro::Task<QList<NetworkServiceState>> SystemReadings::readNetworkServices() const {
    const QString tool = u"/usr/sbin/networksetup"_s;
    const QStringList listing{tool, u"-listallnetworkservices"_s};
    const CommandResult list = co_await ask(listing);
    QList<NetworkServiceState> services;
    if (list.status != 0) {
        co_return services;
    }
    for (const QString& name : parsedNetworkServices(list.standardOutput)) {
        const QStringList query{tool, u"-getnetworkserviceenabled"_s, name};
        const CommandResult state = co_await ask(query);
        NetworkServiceState service{name, std::nullopt};
        const QString text = state.standardOutput.toLower();
        if (state.status == 0 && (text.contains(u"enabled"_s) || text.contains(u"disabled"_s))) {
            service.isEnabled = text.contains(u"enabled"_s);
        }
        services.append(service);
    }
    co_return services;
}

QCoro::Task<CommandResult> SystemReadings::ask(QStringList arguments) const {
    return m_environment.runCommand(std::move(arguments), OutputCapture::Capture);
}

QString SystemReadings::notificationCenterPreferences() const {
    return m_environment.host().machine.homeFolder() + u"/Library/Preferences/ByHost/"_s +
           preference::kDoNotDisturb.domain.toString();
}

} // namespace quorvane
