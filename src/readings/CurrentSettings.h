#pragma once

#include "readings/PowerSettings.h"
#include "readings/Reading.h"
#include "readings/SpotlightState.h"
#include "readings/TimeMachine.h"
#include "tweaks/TweakPreferences.h"

#include <QList>
#include <QString>

#include <array>

namespace quorvane {

/// A preference as it was read.
struct CurrentPreference {
    Reading<QString> reading; ///< no value where the key isn't set
    bool isManaged = false;   ///< an organization has set it: nothing here changes it

    bool operator==(const CurrentPreference&) const = default;
};

/// All that tweaks change, as this Mac has it at one moment.
struct CurrentSettings {
    std::array<CurrentPreference, kMacPreferences.size()> preferences; ///< in the order of `kMacPreferences`
    Reading<QList<PowerSource>> power;
    Reading<QList<IndexedVolume>> indexing; ///< of the startup volume and that of the files, or of all
    Reading<TimeMachineState> timeMachine;

    CurrentPreference& of(const MacPreference& preference);
    const CurrentPreference& of(const MacPreference& preference) const;
    /// False for one that an organization has set.
    bool isChangeable(const MacPreference& preference) const { return !of(preference).isManaged; }
    /// True where an organization has set all that a tweak goes by.
    bool isManaged(bool PerformanceSettings::*tweak) const;
};

/// True when one of the twelve tweaks is in force, by all that macOS goes by. What nobody has answered isn't.
bool isInForce(bool PerformanceSettings::*tweak, const CurrentSettings& current);

} // namespace quorvane
