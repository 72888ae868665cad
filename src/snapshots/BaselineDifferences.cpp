#include "snapshots/BaselineDifferences.h"

#include "snapshots/OwnSettings.h"
#include "tweaks/TweakCatalogue.h"

#include <algorithm>

namespace quorvane {

namespace {

using Settings = PerformanceSettings;

bool isAnswered(bool PerformanceSettings::*tweak, const CurrentSettings& now) {
    if (tweak == &Settings::usbPower || tweak == &Settings::sms) {
        return now.power.isAnswered;
    }
    if (tweak == &Settings::spotlight) {
        return now.indexing.isAnswered;
    }
    if (tweak == &Settings::timeMachine) {
        return now.timeMachine.isAnswered;
    }
    return std::all_of(kMacPreferences.begin(), kMacPreferences.end(), [&](const MacPreference& preference) {
        return preference.tweak != tweak || now.of(preference).reading.isAnswered;
    });
}

} // namespace

QStringList differencesFromNow(const SystemSnapshot& captured, const CurrentSettings& now) {
    const OwnSettings own{captured, {}};
    QStringList names;
    for (const Tweak& tweak : tweakCatalogue()) {
        const TweakComparison comparison = compared(tweak.isSelected, now, own, ComparedPreferences::All);
        if (comparison.isAsCaptured == false && isAnswered(tweak.isSelected, now)) {
            names.append(tweak.name);
        }
    }
    return names;
}

} // namespace quorvane
