#include "snapshots/RestoreComparison.h"

#include "core/OneLine.h"
#include "core/Paths.h"
#include "snapshots/OwnSettings.h"
#include "tweaks/TweakCatalogue.h"

#include <algorithm>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using Settings = PerformanceSettings;
using Setting = bool PerformanceSettings::*;
using State = ComparedSetting::State;
using PowerSetting = std::optional<QString> PowerSettings::*;

const QString kUnread = u"could not be read"_s;
const QString kManaged = u"set by your organization"_s;

QString nameOf(Setting tweak) {
    return tweakOf(tweak).name;
}

QString differs(const QString& what, const QString& now, const QString& then) {
    return u"%1 is %2, was %3"_s.arg(what, now, then);
}

// ---- Preferences

QString shown(const std::optional<QString>& value, const std::optional<TypedValue>& typed) {
    if (!value) {
        return u"not set"_s;
    }
    const QString text = value->isEmpty() ? u"empty"_s : nameOnOneLine(*value);
    return typed ? u"%1 (%2)"_s.arg(text, nameOfType(typed->type())) : text;
}

bool isPreferenceBack(const CapturedValue& captured, const std::optional<TypedValue>& type, const Reading<QString>& now,
                      const Reading<TypedValue>& typedNow) {
    if (!type) {
        return meansTheSame(now.value, captured.value);
    }
    if (!now.value) {
        return false; // an empty text that is set isn't one that isn't
    }
    return typedNow.isAnswered ? typedNow.value == type : meansTheSame(now.value, captured.value);
}

/// What is wrong with a preference; empty where nothing is.
QString faultOf(const SnapshotPreference& preference, const SystemSnapshot& snapshot, const Reading<QString>& now,
                const Reading<TypedValue>& typedNow) {
    if (!now.isAnswered) {
        return kUnread;
    }
    const QString key = preference.key.toString();
    const std::optional<CapturedValue> captured = preference.in(snapshot);
    if (!captured) {
        return isStandard(preference, now.value) ? QString() : u"%1 is %2"_s.arg(key, shown(now.value, {}));
    }
    const std::optional<TypedValue> type = preference.typedIn(snapshot);
    if (isPreferenceBack(*captured, type, now, typedNow)) {
        return {};
    }
    return differs(key, shown(now.value, typedNow.value), shown(captured->value, type));
}

ComparedSetting comparedPreferences(Setting tweak, const SystemSnapshot& snapshot, const CurrentSettings& current,
                                    const TypedReadings& typed) {
    if (current.isManaged(tweak)) {
        return {nameOf(tweak), State::LeftAlone, kManaged};
    }
    QStringList faults;
    for (const SnapshotPreference& preference : snapshotPreferences()) {
        const CurrentPreference& now = current.of(preference);
        if (preference.tweak == tweak && !now.isManaged) {
            faults.append(faultOf(preference, snapshot, now.reading, typed.value(placeOf(preference))));
        }
    }
    faults.removeAll(QString());
    faults.removeDuplicates();
    return {nameOf(tweak), faults.isEmpty() ? State::Back : State::Missing, faults.join(u", "_s)};
}

// ---- Power

struct NamedPowerSetting {
    QStringView name;
    PowerSetting value;
};

const QList<NamedPowerSetting>& settingsOf(Setting tweak) {
    static const QList<NamedPowerSetting> sleep{{u"standby", &PowerSettings::standby},
                                                {u"disksleep", &PowerSettings::disksleep},
                                                {u"sleep", &PowerSettings::sleep}};
    static const QList<NamedPowerSetting> sensor{{u"sms", &PowerSettings::sms}};
    return tweak == &Settings::sms ? sensor : sleep;
}

bool holdsAny(const PowerSettings& settings, Setting tweak) {
    const QList<NamedPowerSetting>& all = settingsOf(tweak);
    return std::any_of(all.begin(), all.end(),
                       [&](const NamedPowerSetting& one) { return (settings.*one.value).has_value(); });
}

/// Where the snapshot doesn't know the sources its values are those of a nameless one.
QMap<QString, PowerSettings> capturedPower(const SystemSnapshot& snapshot, Setting tweak) {
    QMap<QString, PowerSettings> sources = snapshot.powerBySource.value_or(QMap<QString, PowerSettings>{
        {{}, {snapshot.pmsetStandby, snapshot.pmsetDisksleep, snapshot.pmsetSleep, snapshot.pmsetSms}}});
    for (const QString& name : sources.keys()) {
        if (!holdsAny(sources.value(name), tweak)) {
            sources.remove(name);
        }
    }
    return sources;
}

/// Of a source that isn't there now none; of all where the name is empty.
std::optional<PowerSettings> powerNow(const QString& source, const QList<PowerSource>& now) {
    if (source.isEmpty()) {
        return firstListed(now);
    }
    const auto found =
        std::find_if(now.begin(), now.end(), [&source](const PowerSource& one) { return one.name == source; });
    return found == now.end() ? std::nullopt : std::optional(found->settings);
}

/// What a Mac doesn't list it doesn't have: nothing of that can be missing.
QString faultOfPower(const PowerSettings& captured, const PowerSettings& now, Setting tweak) {
    QStringList faults;
    for (const NamedPowerSetting& setting : settingsOf(tweak)) {
        const std::optional<QString>& then = captured.*setting.value;
        const std::optional<QString>& value = now.*setting.value;
        if (then && value && *then != *value) {
            faults.append(differs(setting.name.toString(), nameOnOneLine(*value), nameOnOneLine(*then)));
        }
    }
    return faults.join(u", "_s);
}

QList<ComparedSetting> comparedPower(Setting tweak, const SystemSnapshot& snapshot, const CurrentSettings& current) {
    const QMap<QString, PowerSettings> captured = capturedPower(snapshot, tweak);
    if (captured.isEmpty()) {
        return {};
    }
    if (!current.power.value) {
        return {{nameOf(tweak), State::Missing, kUnread}};
    }
    QList<ComparedSetting> found;
    bool isAnyBack = false;
    for (auto source = captured.cbegin(); source != captured.cend(); ++source) {
        const QString name = source.key().isEmpty() ? nameOf(tweak) : nameOf(tweak) + u" on "_s + source.key();
        const std::optional<PowerSettings> now = powerNow(source.key(), *current.power.value);
        const QString fault = now ? faultOfPower(*source, *now, tweak) : QString();
        if (!now) {
            found.append({name, State::LeftAlone, u"not there now"_s});
        } else if (!fault.isEmpty()) {
            found.append({name, State::Missing, fault});
        } else {
            isAnyBack = true;
        }
    }
    const bool isOneMissing = !namesOfMissing(found).isEmpty();
    if (isAnyBack && !isOneMissing) {
        found.prepend({nameOf(tweak)});
    }
    return found;
}

// ---- Spotlight

QString shownIndexing(Indexing indexing) {
    const QString name = indexingName(indexing);
    if (!name.isEmpty()) {
        return name;
    }
    return indexing == Indexing::Changing ? u"changing"_s : u"in another state"_s;
}

QList<ComparedSetting> comparedVolumes(const QMap<QString, QString>& captured, const QList<IndexedVolume>& now) {
    QList<ComparedSetting> found;
    QStringList left = captured.keys();
    for (const IndexedVolume& volume : now) {
        left.removeAll(volume.path);
        const bool hasComeSince = !captured.contains(volume.path);
        const Indexing then = hasComeSince ? Indexing::On : indexingNamed(captured.value(volume.path));
        const bool isOff = volume.indexing == Indexing::Off || volume.indexing == Indexing::SearchOff;
        if (then != Indexing::Unknown && (hasComeSince ? isOff : volume.indexing != then)) {
            const QString what = differs(u"indexing"_s, shownIndexing(volume.indexing), shownIndexing(then));
            found.append({u"Spotlight on "_s + volume.path, State::Missing, what});
        }
    }
    for (const QString& path : std::as_const(left)) {
        found.append({u"Spotlight on "_s + path, State::LeftAlone, u"not there now"_s});
    }
    return found;
}

QList<ComparedSetting> comparedIndexing(const SystemSnapshot& snapshot, const CurrentSettings& current) {
    const QString name = nameOf(&Settings::spotlight);
    const bool knowsVolumes = snapshot.spotlightByVolume && !snapshot.spotlightByVolume->isEmpty();
    if (!knowsVolumes && !snapshot.spotlightIndexingEnabled) {
        return {};
    }
    const QList<IndexedVolume> now = current.indexing.value.value_or(QList<IndexedVolume>());
    if (now.isEmpty()) {
        return {{name, State::Missing, kUnread}};
    }
    if (!knowsVolumes) {
        const std::optional<bool> isOn = indexesFiles(now);
        const bool isBack = isOn == snapshot.spotlightIndexingEnabled;
        return {{name, isBack ? State::Back : State::Missing,
                 isBack ? QString()
                 : isOn ? u"not as it was"_s
                        : kUnread}};
    }
    QList<ComparedSetting> found = comparedVolumes(*snapshot.spotlightByVolume, now);
    if (namesOfMissing(found).isEmpty()) {
        found.prepend({name});
    }
    return found;
}

// ---- Time Machine

/// One that may not be read isn't changed either, and the log says so elsewhere.
QList<ComparedSetting> comparedBackups(const SystemSnapshot& snapshot, const CurrentSettings& current) {
    const QString name = nameOf(&Settings::timeMachine);
    const std::optional<TimeMachineState> now = current.timeMachine.value;
    if (!snapshot.timeMachineEnabled || (now && !isSwitchable(now))) {
        return {};
    }
    const std::optional<bool> areOn = automaticBackups(now);
    if (!areOn) {
        return {{name, State::Missing, kUnread}};
    }
    const QString what = differs(u"automatic backup"_s, *areOn ? u"on"_s : u"off"_s, *areOn ? u"off"_s : u"on"_s);
    const bool isBack = areOn == snapshot.timeMachineEnabled;
    return {{name, isBack ? State::Back : State::Missing, isBack ? QString() : what}};
}

// ---- Beside the tweaks

/// Of an item whose file isn't known the way back itself tells.
QList<ComparedSetting> comparedLoginItems(const QList<LoginItemSnapshot>& captured, const QList<LoginItem>& now) {
    QList<ComparedSetting> found;
    for (const LoginItemSnapshot& item : captured) {
        const bool isBack = std::any_of(now.begin(), now.end(), [&item](const LoginItem& other) {
            return comparablePath(other.path) == comparablePath(item.path);
        });
        if (item.path.startsWith(u'/')) {
            found.append({u"login item "_s + nameOnOneLine(item.name), isBack ? State::Back : State::Missing,
                          isBack ? QString() : u"not there"_s});
        }
    }
    return found;
}

/// Of a service that has gone the way back itself tells.
QList<ComparedSetting> comparedServices(const QMap<QString, bool>& captured, const QList<NetworkServiceState>& now) {
    if (now.isEmpty() && !captured.isEmpty()) {
        return {{u"network services"_s, State::Missing, kUnread}};
    }
    QList<ComparedSetting> found;
    for (const NetworkServiceState& service : now) {
        const auto then = captured.constFind(service.name);
        if (then == captured.cend()) {
            continue;
        }
        const QString name = u"network service "_s + nameOnOneLine(service.name);
        const QString what = service.isEnabled
                                 ? differs(u"it"_s, *service.isEnabled ? u"on"_s : u"off"_s, *then ? u"on"_s : u"off"_s)
                                 : kUnread;
        const bool isBack = service.isEnabled == *then;
        found.append({name, isBack ? State::Back : State::Missing, isBack ? QString() : what});
    }
    return found;
}

/// The tweaks that are preferences and nothing else.
bool isOfPreferences(Setting tweak) {
    return std::any_of(kMacPreferences.begin(), kMacPreferences.end(),
                       [tweak](const MacPreference& preference) { return preference.tweak == tweak; });
}

QList<ComparedSetting> comparedTweak(Setting tweak, const SystemSnapshot& snapshot, const CurrentSettings& current,
                                     const TypedReadings& typed) {
    if (isOfPreferences(tweak)) {
        return {comparedPreferences(tweak, snapshot, current, typed)};
    }
    if (tweak == &Settings::spotlight) {
        return comparedIndexing(snapshot, current);
    }
    return tweak == &Settings::timeMachine ? comparedBackups(snapshot, current)
                                           : comparedPower(tweak, snapshot, current);
}

/// Whether what a tweak goes by was answered at all.
bool isRead(Setting tweak, const CurrentSettings& current) {
    if (tweak == &Settings::spotlight) {
        return current.indexing.value.has_value();
    }
    if (tweak == &Settings::timeMachine) {
        return current.timeMachine.value.has_value();
    }
    if (!isOfPreferences(tweak)) {
        return current.power.value.has_value();
    }
    return std::all_of(kMacPreferences.begin(), kMacPreferences.end(), [&](const MacPreference& preference) {
        return preference.tweak != tweak || current.of(preference).reading.isAnswered;
    });
}

} // namespace

QList<ComparedSetting> comparedWith(const SystemSnapshot& snapshot, const CurrentSettings& current,
                                    const TypedReadings& typed, const std::optional<QList<LoginItem>>& loginItems,
                                    const std::optional<QList<NetworkServiceState>>& services) {
    QList<ComparedSetting> settings;
    for (const Tweak& tweak : tweakCatalogue()) {
        settings += comparedTweak(tweak.isSelected, snapshot, current, typed);
    }
    if (loginItems && snapshot.loginItems) {
        settings += comparedLoginItems(*snapshot.loginItems, *loginItems);
    }
    if (services && snapshot.networkServicesEnabled) {
        settings += comparedServices(*snapshot.networkServicesEnabled, *services);
    }
    return settings;
}

QList<ComparedSetting> comparedWithStandard(const CurrentSettings& current) {
    QList<ComparedSetting> settings;
    for (const Tweak& tweak : tweakCatalogue()) {
        const TweakComparison comparison = compared(tweak.isSelected, current, {}, ComparedPreferences::All);
        const bool isLeftAlone = tweak.isSelected == &Settings::timeMachine && current.timeMachine.value &&
                                 !isSwitchable(current.timeMachine.value);
        if (current.isManaged(tweak.isSelected)) {
            settings.append({tweak.name, State::LeftAlone, kManaged});
        } else if (comparison.isOnThisMac && !isLeftAlone) {
            const QString what = isRead(tweak.isSelected, current) ? u"not macOS's own"_s : kUnread;
            settings.append({tweak.name, comparison.isStandard ? State::Back : State::Missing,
                             comparison.isStandard ? QString() : what});
        }
    }
    return settings;
}

QList<MacPreference> preferencesToCompareByType(const SystemSnapshot& snapshot, const CurrentSettings& current) {
    QList<MacPreference> preferences;
    for (const SnapshotPreference& preference : snapshotPreferences()) {
        const CurrentPreference& now = current.of(preference);
        if (preference.typedIn(snapshot) && now.reading.value && !now.isManaged) {
            preferences.append(preference);
        }
    }
    return preferences;
}

CurrentSettings tellingTypes(CurrentSettings current, const SystemSnapshot& snapshot, const TypedReadings& typed) {
    for (const SnapshotPreference& preference : snapshotPreferences()) {
        const std::optional<TypedValue> captured = preference.typedIn(snapshot);
        const std::optional<TypedValue> now = typed.value(placeOf(preference)).value;
        if (captured && now && now->type() != captured->type()) {
            current.of(preference).reading.value = now->xml();
        }
    }
    return current;
}

bool mayIndexingStillChange(const std::optional<SystemSnapshot>& snapshot, const CurrentSettings& current) {
    if (!current.indexing.isAnswered) {
        return false;
    }
    if (!snapshot) {
        return indexesFiles(current.indexing.value.value_or(QList<IndexedVolume>())) != true;
    }
    return !namesOfMissing(comparedIndexing(*snapshot, current)).isEmpty();
}

QStringList namesOfMissing(const QList<ComparedSetting>& settings) {
    QStringList names;
    for (const ComparedSetting& setting : settings) {
        if (setting.state == State::Missing) {
            names.append(setting.name);
        }
    }
    return names;
}

} // namespace quorvane
