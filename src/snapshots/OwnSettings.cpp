#include "snapshots/OwnSettings.h"

#include "core/UserDefaultKeys.h"
#include "platform/Host.h"
#include "platform/UserDefaults.h"
#include "snapshots/FirstBaseline.h"
#include "snapshots/HomeBaselines.h"
#include "snapshots/RestoreBaseline.h"
#include "tweaks/TweakCatalogue.h"
#include "tweaks/ValueTests.h"

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using Settings = PerformanceSettings;

TweakComparison comparedPreferences(bool PerformanceSettings::*tweak, const CurrentSettings& current,
                                    const std::optional<SystemSnapshot>& captured, ComparedPreferences which) {
    TweakComparison comparison;
    comparison.isStandard = true;
    comparison.isCapturedStandard = true;
    for (const SnapshotPreference& preference : snapshotPreferences()) {
        const CurrentPreference& now = current.of(preference);
        if (preference.tweak != tweak || now.isManaged ||
            (which == ComparedPreferences::Deciding && !preference.decides)) {
            continue;
        }
        const bool isStandardNow = now.reading.isAnswered && isStandard(preference, now.reading.value);
        comparison.isStandard = comparison.isStandard && isStandardNow;
        const std::optional<CapturedValue> own = captured ? preference.in(*captured) : std::nullopt;
        if (captured) {
            const bool isOwn =
                own ? now.reading.isAnswered && meansTheSame(now.reading.value, own->value) : isStandardNow;
            comparison.isAsCaptured = comparison.isAsCaptured.value_or(true) && isOwn;
            comparison.isCapturedStandard =
                comparison.isCapturedStandard && (!own || isStandard(preference, own->value));
        }
    }
    return comparison;
}

using PowerSetting = std::optional<QString> PowerSettings::*;

/// True where every source of power that was captured and is there now is as it was.
bool arePowerSettingsAsCaptured(const SystemSnapshot& captured, const QList<PowerSource>& now,
                                const QList<PowerSetting>& which) {
    const auto isAsCaptured = [&which](const PowerSettings& own, const PowerSettings& found) {
        return std::all_of(which.begin(), which.end(),
                           [&](PowerSetting setting) { return !(own.*setting) || own.*setting == found.*setting; });
    };
    if (!captured.powerBySource) {
        return isAsCaptured({captured.pmsetStandby, captured.pmsetDisksleep, captured.pmsetSleep, captured.pmsetSms},
                            firstListed(now));
    }
    return std::all_of(now.begin(), now.end(), [&](const PowerSource& source) {
        const auto own = captured.powerBySource->constFind(source.name);
        return own == captured.powerBySource->cend() || isAsCaptured(*own, source.settings);
    });
}

bool isAnythingOfSleepCaptured(const SystemSnapshot& captured) {
    return captured.pmsetStandby || captured.pmsetDisksleep || captured.pmsetSleep;
}

QList<PowerSource> capturedSources(const SystemSnapshot& captured) {
    if (!captured.powerBySource) {
        return {{{}, {captured.pmsetStandby, captured.pmsetDisksleep, captured.pmsetSleep, captured.pmsetSms}}};
    }
    QList<PowerSource> sources;
    for (auto source = captured.powerBySource->begin(); source != captured.powerBySource->end(); ++source) {
        sources.append({source.key(), source.value()});
    }
    return sources;
}

TweakComparison comparedSleep(const CurrentSettings& current, const std::optional<SystemSnapshot>& captured) {
    TweakComparison comparison;
    comparison.isStandard =
        current.power.isAnswered && !isKeptAwake(current.power.value.value_or(QList<PowerSource>()));
    if (captured && isAnythingOfSleepCaptured(*captured)) {
        comparison.isAsCaptured =
            current.power.value &&
            arePowerSettingsAsCaptured(*captured, *current.power.value,
                                       {&PowerSettings::standby, &PowerSettings::disksleep, &PowerSettings::sleep});
        comparison.isCapturedStandard = !isKeptAwake(capturedSources(*captured));
    }
    return comparison;
}

TweakComparison comparedMotionSensor(const CurrentSettings& current, const std::optional<SystemSnapshot>& captured) {
    TweakComparison comparison;
    const PowerSettings now = firstListed(current.power.value.value_or(QList<PowerSource>()));
    comparison.isOnThisMac = !current.power.value || now.sms;
    comparison.isStandard = now.sms == u"1";
    if (captured && captured->pmsetSms) {
        comparison.isAsCaptured =
            current.power.value && arePowerSettingsAsCaptured(*captured, *current.power.value, {&PowerSettings::sms});
        comparison.isCapturedStandard = captured->pmsetSms == u"1";
    }
    return comparison;
}

TweakComparison comparedIndexing(const CurrentSettings& current, const std::optional<SystemSnapshot>& captured) {
    TweakComparison comparison;
    const QList<IndexedVolume> now = current.indexing.value.value_or(QList<IndexedVolume>());
    const std::optional<bool> areFilesIndexed = indexesFiles(now);
    comparison.isStandard = areFilesIndexed == true;
    if (captured && captured->spotlightIndexingEnabled) {
        comparison.isAsCaptured = areFilesIndexed == captured->spotlightIndexingEnabled;
        comparison.isCapturedStandard = *captured->spotlightIndexingEnabled;
    }
    if (captured && captured->spotlightByVolume) {
        comparison.isAsCaptured = !now.isEmpty() && volumesToBringBack(*captured->spotlightByVolume, now).isEmpty();
        comparison.isCapturedStandard = captured->spotlightIndexingEnabled.value_or(true);
    }
    return comparison;
}

TweakComparison comparedBackups(const CurrentSettings& current, const std::optional<SystemSnapshot>& captured) {
    TweakComparison comparison;
    const std::optional<TimeMachineState> now = current.timeMachine.value;
    comparison.isOnThisMac = now != TimeMachineState::NotSetUp;
    comparison.isStandard = now == TimeMachineState::On;
    if (captured && captured->timeMachineEnabled) {
        comparison.isAsCaptured = automaticBackups(now) == captured->timeMachineEnabled;
        comparison.isCapturedStandard = *captured->timeMachineEnabled;
    }
    return comparison;
}

} // namespace

bool OwnSettings::hasChanged(bool PerformanceSettings::*tweak) const {
    return changedTweaks.contains(tweakOf(tweak).key);
}

OwnSettings readOwnSettings(const Host& host) {
    const std::optional<RestoreBaseline> chosen =
        restoreBaselineOf(capturesAtHome(host.files, host.machine), identityOf(host.machine));
    const QStringList changed = host.defaults.stringArray(kQuorvaneChangedTweaks);
    OwnSettings own{chosen ? std::optional(chosen->snapshot) : std::nullopt, {changed.begin(), changed.end()}};
    if (host.defaults.boolean(kQuorvaneSwitchedBackupsOff)) {
        own.changedTweaks.insert(tweakOf(&Settings::timeMachine).key);
    }
    return own;
}

TweakComparison compared(bool PerformanceSettings::*tweak, const CurrentSettings& current, const OwnSettings& own,
                         ComparedPreferences which) {
    if (tweak == &Settings::usbPower) {
        return comparedSleep(current, own.captured);
    }
    if (tweak == &Settings::sms) {
        return comparedMotionSensor(current, own.captured);
    }
    if (tweak == &Settings::spotlight) {
        return comparedIndexing(current, own.captured);
    }
    if (tweak == &Settings::timeMachine) {
        return comparedBackups(current, own.captured);
    }
    return comparedPreferences(tweak, current, own.captured, which);
}

AppRestoration appRestoration(const CurrentSettings& current, const OwnSettings& own) {
    const CurrentPreference& savesState = current.of(preference::kLogoutState);
    const CurrentPreference& relaunchesApps = current.of(preference::kLoginRelaunch);
    AppRestoration found;
    found.isAnswered = savesState.reading.isAnswered && relaunchesApps.reading.isAnswered;
    found.isManaged = savesState.isManaged || relaunchesApps.isManaged;
    found.isOff = isOffValue(savesState.reading.value) && isOffValue(relaunchesApps.reading.value);
    if (own.captured) {
        found.wasOff =
            isOffValue(own.captured->talLogoutSavesState) && isOffValue(own.captured->loginwindowLaunchesRelaunchApps);
    }
    return found;
}

QList<IndexedVolume> volumesToBringBack(const QMap<QString, QString>& captured, const QList<IndexedVolume>& now) {
    QList<IndexedVolume> volumes;
    bool isStartupVolumeSwitched = false;
    for (const IndexedVolume& volume : now) {
        const auto own = captured.constFind(volume.path);
        const bool hasComeSince = own == captured.cend();
        const Indexing wanted = hasComeSince ? Indexing::On : indexingNamed(*own);
        const bool isOff = volume.indexing == Indexing::Off || volume.indexing == Indexing::SearchOff;
        const bool isTakenAlong = isStartupVolumeSwitched && volume.path == kDataVolume && !hasComeSince;
        const bool differs = hasComeSince ? isOff : wanted != volume.indexing;
        if (wanted != Indexing::Unknown && (differs || isTakenAlong)) {
            volumes.append({volume.path, wanted});
            isStartupVolumeSwitched = isStartupVolumeSwitched || volume.path == u"/";
        }
    }
    return volumes;
}

} // namespace quorvane
