#include "readings/CurrentSettings.h"

#include <algorithm>
#include <utility>

namespace quorvane {

const CurrentPreference& CurrentSettings::of(const MacPreference& preference) const {
    const auto place = std::find_if(kMacPreferences.begin(), kMacPreferences.end(),
                                    [&preference](const MacPreference& other) { return other.isAt(preference); });
    return preferences.at(static_cast<size_t>(place - kMacPreferences.begin()));
}

CurrentPreference& CurrentSettings::of(const MacPreference& preference) {
    return const_cast<CurrentPreference&>(std::as_const(*this).of(preference));
}

bool CurrentSettings::isManaged(bool PerformanceSettings::*tweak) const {
    bool isDecidedByAny = false;
    for (const MacPreference& preference : kMacPreferences) {
        if (preference.tweak == tweak && preference.decides) {
            isDecidedByAny = true;
            if (!of(preference).isManaged) {
                return false;
            }
        }
    }
    return isDecidedByAny;
}

bool isInForce(bool PerformanceSettings::*tweak, const CurrentSettings& current) {
    if (tweak == &PerformanceSettings::usbPower) {
        return current.power.value && isKeptAwake(*current.power.value);
    }
    if (tweak == &PerformanceSettings::sms) {
        return current.power.value && firstListed(*current.power.value).sms == u"0";
    }
    if (tweak == &PerformanceSettings::spotlight) {
        return current.indexing.value && isIndexingOff(*current.indexing.value);
    }
    if (tweak == &PerformanceSettings::timeMachine) {
        return current.timeMachine.value == TimeMachineState::Off;
    }
    return std::all_of(kMacPreferences.begin(), kMacPreferences.end(), [&](const MacPreference& preference) {
        const Reading<QString>& now = current.of(preference).reading;
        return preference.tweak != tweak || !preference.decides || (now.isAnswered && isApplied(preference, now.value));
    });
}

} // namespace quorvane
