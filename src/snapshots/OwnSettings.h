#pragma once

#include "readings/CurrentSettings.h"
#include "snapshots/SystemSnapshot.h"

#include <QSet>
#include <QString>

#include <optional>

namespace quorvane {

struct Host;

/// What is known on this Mac of the settings that its user had before the program changed any.
struct OwnSettings {
    /// What the ways back would go by of what lies at home: another Mac's tells nothing of this one unless the user has chosen it,
    /// and nobody waits for iCloud's before an apply.
    std::optional<SystemSnapshot> captured;
    QSet<QString>
        changedTweaks; ///< keys of those that the program has put in force, and that haven't been seen back since

    bool hasChanged(bool PerformanceSettings::*tweak) const;
};

/// Reads files and the program's own preferences. It changes nothing.
OwnSettings readOwnSettings(const Host& host);

/// Which of a tweak's preferences count.
enum class ComparedPreferences {
    Deciding, ///< those that macOS goes by
    All,      ///< with what is written and proves nothing
};

/// How a tweak reads, beside what the user's own settings say of it. What nobody has answered is neither.
struct TweakComparison {
    bool isOnThisMac = true;          ///< false of a setting that this Mac doesn't have
    bool isStandard = false;          ///< as a fresh macOS has it
    std::optional<bool> isAsCaptured; ///< none where nothing was captured of it
    bool isCapturedStandard = false;

    /// As the user had it; where that isn't known, as a fresh macOS has it.
    bool isAsItWas() const { return isAsCaptured.value_or(isStandard); }
};

/// Of one of the twelve tweaks.
TweakComparison compared(bool PerformanceSettings::*tweak, const CurrentSettings& current, const OwnSettings& own,
                         ComparedPreferences which);

/// Whether applications are kept from reopening after a restart.
struct AppRestoration {
    bool isAnswered = false;
    bool isManaged = false; ///< an organization decides
    bool isOff = false;
    std::optional<bool> wasOff; ///< the user's own; none where that wasn't captured
};
AppRestoration appRestoration(const CurrentSettings& current, const OwnSettings& own);

/// The volumes that aren't as they were, each with what it was. One that has come since was on. With the startup volume macOS may
/// switch that of the files along, which is then among them in any case.
QList<IndexedVolume> volumesToBringBack(const QMap<QString, QString>& captured, const QList<IndexedVolume>& now);

} // namespace quorvane
