#include "snapshots/FirstBaseline.h"

#include "core/JsonErrors.h"
#include "core/UserDefaultKeys.h"
#include "platform/FileManager.h"
#include "platform/Host.h"
#include "platform/Machine.h"
#include "platform/UserDefaults.h"
#include "readings/SpotlightState.h"
#include "snapshots/HomeBaselines.h"
#include "snapshots/SnapshotManager.h"
#include "startup/items/StartupItem.h"
#include "startup/launchd/LaunchFolders.h"
#include "startup/launchd/OverrideRecord.h"
#include "tweaks/TweakCatalogue.h"
#include "tweaks/ValueTests.h"

#include <QMap>
#include <QRegularExpression>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using Settings = PerformanceSettings;

// ---- What was changed before

bool hasRecordedOverrides(const Host& host) {
    try {
        return !OverrideRecord(host.files, host.machine).read().isEmpty();
    } catch (const FileError&) {
        return true;
    } catch (const DecodingError&) {
        return true;
    }
}

QSet<QString> keysOfChangedTweaks(const UserDefaults& defaults) {
    const QStringList noted = defaults.stringArray(kQuorvaneChangedTweaks);
    QSet<QString> keys(noted.begin(), noted.end());
    if (defaults.boolean(kQuorvaneSwitchedBackupsOff)) {
        keys.insert(tweakOf(&Settings::timeMachine).key);
    }
    return keys;
}

// ---- What a fresh macOS has

/// As the tool prints it.
std::optional<QString> standardValue(const MacPreference& preference) {
    if (preference.standard.isEmpty()) {
        return std::nullopt;
    }
    return isTruthy(preference.standard.toString()) ? u"1"_s : u"0"_s;
}

void putIfThere(std::optional<QString>& setting, const QString& value) {
    if (setting) {
        setting = value;
    }
}

void putStandardSleep(PowerSettings& settings) {
    putIfThere(settings.standby, u"1"_s);
    putIfThere(settings.disksleep, u"10"_s);
    putIfThere(settings.sleep, u"1"_s);
}

void putStandardSleep(SystemSnapshot& snapshot) {
    putIfThere(snapshot.pmsetStandby, u"1"_s);
    putIfThere(snapshot.pmsetDisksleep, u"10"_s);
    putIfThere(snapshot.pmsetSleep, u"1"_s);
    if (snapshot.powerBySource) {
        for (PowerSettings& settings : *snapshot.powerBySource) {
            putStandardSleep(settings);
        }
    }
}

void putStandardSensor(SystemSnapshot& snapshot) {
    putIfThere(snapshot.pmsetSms, u"1"_s);
    if (snapshot.powerBySource) {
        for (PowerSettings& settings : *snapshot.powerBySource) {
            putIfThere(settings.sms, u"1"_s);
        }
    }
}

/// The tweak switches every volume off; one of which only the search is off was that before.
void putStandardIndexing(SystemSnapshot& snapshot) {
    if (snapshot.spotlightIndexingEnabled) {
        snapshot.spotlightIndexingEnabled = true;
    }
    if (snapshot.spotlightByVolume) {
        for (QString& state : *snapshot.spotlightByVolume) {
            if (state == indexingName(Indexing::Off)) {
                state = indexingName(Indexing::On);
            }
        }
    }
}

void putStandard(bool PerformanceSettings::*tweak, SystemSnapshot& snapshot) {
    for (const SnapshotPreference& preference : snapshotPreferences()) {
        if (preference.tweak == tweak) {
            preference.put(standardValue(preference), snapshot);
        }
    }
    if (tweak == &Settings::usbPower) {
        putStandardSleep(snapshot);
    } else if (tweak == &Settings::sms) {
        putStandardSensor(snapshot);
    } else if (tweak == &Settings::spotlight) {
        putStandardIndexing(snapshot);
    } else if (tweak == &Settings::timeMachine && snapshot.timeMachineEnabled) {
        snapshot.timeMachineEnabled = true;
    }
}

// ---- Files

/// Of a name like "before-quorvane-2.json"; none of another.
std::optional<int> numberIn(const QString& name) {
    static const QRegularExpression pattern(u"^before-quorvane(?:-([2-9]|[1-9][0-9]{1,5}))?\\.json$"_s);
    const QRegularExpressionMatch match = pattern.match(name);
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    return match.capturedView(1).isEmpty() ? 1 : match.capturedView(1).toInt();
}

QString nameOf(int number) {
    return number == 1 ? u"before-quorvane.json"_s : u"before-quorvane-%1.json"_s.arg(number);
}

QStringList namesIn(const QString& folder, const FileManager& files) {
    try {
        return files.list(folder);
    } catch (const FileError&) {
        return {}; // there is no such folder yet
    }
}

} // namespace

EarlierChanges readEarlierChanges(const Host& host) {
    const QStringList managed = host.defaults.stringArray(kQuorvaneManagedStartupAppPaths);
    EarlierChanges changes;
    changes.tweaks = keysOfChangedTweaks(host.defaults);
    changes.applications = QSet<QString>(managed.begin(), managed.end());
    changes.isAny = !changes.tweaks.isEmpty() || !changes.applications.isEmpty() ||
                    !host.defaults.string(kQuorvaneLastAppliedProfileName).value_or(QString()).isEmpty() ||
                    host.files.exists(backupFolder(host.machine.homeFolder())) || hasRecordedOverrides(host);
    return changes;
}

SystemSnapshot withoutChanges(SystemSnapshot snapshot, const EarlierChanges& changes) {
    for (const QString& key : changes.tweaks) {
        if (const Tweak* const tweak = findTweak(key)) {
            putStandard(tweak->isSelected, snapshot);
        }
    }
    QSet<QString> gone;
    for (const QString& path : changes.applications) {
        gone.insert(comparablePath(path));
    }
    if (snapshot.loginItems) {
        snapshot.loginItems->removeIf(
            [&gone](const LoginItemSnapshot& item) { return gone.contains(comparablePath(item.path)); });
    }
    return snapshot;
}

FirstBaselines::FirstBaselines(FileManager& files, const Machine& machine)
    : m_files(files)
    , m_machine(machine)
    , m_folder(baselineFolderAtHome(machine)) {}

QList<FirstBaselines::File> FirstBaselines::all() const {
    QMap<int, File> byNumber;
    for (const QString& name : namesIn(m_folder, m_files)) {
        if (const std::optional<int> number = numberIn(name)) {
            byNumber.insert(*number, {name, baselineAt(m_folder + u'/' + name, m_files)});
        }
    }
    return byNumber.values();
}

std::optional<MasterSystemBaseline> FirstBaselines::own() const {
    const MacIdentity mac = identityOf(m_machine);
    for (const File& file : all()) {
        if (file.baseline && originOf(*file.baseline, mac) != BaselineOrigin::AnotherMac) {
            return file.baseline;
        }
    }
    return std::nullopt;
}

void FirstBaselines::keep(const MasterSystemBaseline& baseline) {
    const QByteArray bytes = encodeMasterBaseline(baseline);
    m_files.createFolders(m_folder);
    int number = 1;
    while (!own() && !m_files.writeNew(m_folder + u'/' + nameOf(number), bytes)) {
        ++number;
    }
}

KeptCaptures capturesAtHome(FileManager& files, const Machine& machine) {
    const std::optional<MasterSystemBaseline> archived = ownBaselineAtHome(files, machine);
    return {SnapshotManager(files, machine).load(), archived ? std::optional(LatestBaseline{*archived}) : std::nullopt,
            FirstBaselines(files, machine).own(), ChosenBaselineFile(files, machine).load()};
}

bool hasOwnCapture(FileManager& files, const Machine& machine) {
    const KeptCaptures kept = capturesAtHome(files, machine);
    return kept.local || kept.master || kept.first;
}

} // namespace quorvane
