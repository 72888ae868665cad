#include "snapshots/SnapshotOfSettings.h"

#include "tweaks/TweakCatalogue.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

void takePreference(const SnapshotPreference& preference, const CurrentPreference& now,
                    const Reading<TypedValue>& typed, SystemSnapshot& snapshot) {
    if (now.isManaged || !now.reading.isAnswered) {
        return;
    }
    std::optional<QString> text = now.reading.value;
    if (text && typed.value) {
        if (!typed.value->isPrintedAs(*text)) {
            text = typed.value->printed().value_or(typed.value->xml());
        }
    }
    preference.put(text, snapshot);
    if (text && typed.value) {
        snapshot.typedPreferences->insert(placeOf(preference), *typed.value);
    }
}

void takePower(const Reading<QList<PowerSource>>& reading, SystemSnapshot& snapshot) {
    if (!reading.value) {
        return;
    }
    const PowerSettings first = firstListed(*reading.value);
    snapshot.pmsetStandby = first.standby;
    snapshot.pmsetDisksleep = first.disksleep;
    snapshot.pmsetSleep = first.sleep;
    snapshot.pmsetSms = first.sms;
    QMap<QString, PowerSettings> bySource;
    for (const PowerSource& source : *reading.value) {
        bySource.insert(source.name, source.settings);
    }
    snapshot.powerBySource = bySource;
}

/// A volume in a state that nobody can bring back is left out.
void takeIndexing(const Reading<QList<IndexedVolume>>& reading, SystemSnapshot& snapshot) {
    if (!reading.value || reading.value->isEmpty()) {
        return;
    }
    snapshot.spotlightIndexingEnabled = indexesFiles(*reading.value);
    QMap<QString, QString> byVolume;
    for (const IndexedVolume& volume : *reading.value) {
        if (const QString name = indexingName(volume.indexing); !name.isEmpty()) {
            byVolume.insert(volume.path, name);
        }
    }
    snapshot.spotlightByVolume = byVolume;
}

/// How `defaults read` prints what holds other values, and data.
bool isPrintOfMore(const QString& text) {
    return (text.startsWith(u'(') && text.endsWith(u')')) || (text.startsWith(u'{') && text.endsWith(u'}'));
}

} // namespace

SystemSnapshot snapshotOf(const CurrentSettings& current, const TypedReadings& typed) {
    SystemSnapshot snapshot;
    snapshot.typedPreferences = TypedValues();
    for (const SnapshotPreference& preference : snapshotPreferences()) {
        takePreference(preference, current.of(preference), typed.value(placeOf(preference)), snapshot);
    }
    if (snapshot.typedPreferences->isEmpty()) {
        snapshot.typedPreferences.reset();
    }
    takePower(current.power, snapshot);
    snapshot.timeMachineEnabled = automaticBackups(current.timeMachine.value);
    takeIndexing(current.indexing, snapshot);
    return snapshot;
}

QStringList tweaksNotAnswered(const CurrentSettings& current) {
    QStringList names;
    for (const MacPreference& preference : kMacPreferences) {
        const QString name = tweakOf(preference.tweak).name;
        if (!current.of(preference).reading.isAnswered && !names.contains(name)) {
            names.append(name);
        }
    }
    return names;
}

QList<MacPreference> preferencesThatAreSet(const CurrentSettings& current) {
    QList<MacPreference> preferences;
    for (const MacPreference& preference : kMacPreferences) {
        const CurrentPreference& now = current.of(preference);
        if (now.reading.value && !now.isManaged) {
            preferences.append(preference);
        }
    }
    return preferences;
}

QList<MacPreference> preferencesKnownByTextAlone(const CurrentSettings& current, const TypedReadings& typed) {
    QList<MacPreference> preferences;
    for (const MacPreference& preference : preferencesThatAreSet(current)) {
        if (isPrintOfMore(*current.of(preference).reading.value) && !typed.value(placeOf(preference)).value) {
            preferences.append(preference);
        }
    }
    return preferences;
}

} // namespace quorvane
