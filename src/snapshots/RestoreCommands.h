#pragma once

#include "readings/CurrentSettings.h"
#include "snapshots/SystemSnapshot.h"
#include "tweaks/TweakCommands.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace quorvane {

// The way back, as exact argument lists in their order.

/// The command that puts a preference back. None deletes the key: it wasn't set when it was read. What was is written with its type;
/// where that isn't known it follows from the text: an empty one deletes the key; a boolean for "true", "false", "yes", "no", "1" and
/// "0" in any case; a whole number, but not among the per-host preferences; else a string.
/// @param typed               the value, where its type was captured
/// @param notificationCenter  the path of Notification Center's per-host preferences
QStringList writeDefaultValueCommand(const MacPreference& preference, const std::optional<QString>& value,
                                     const QString& notificationCenter, const std::optional<TypedValue>& typed = {});
/// What `defaults write` takes for a value: an option for its type and the value, or its XML where no option brings it back as it was.
QStringList typedArguments(const TypedValue& value);

/// Puts one group of preferences back as the user. Of what wasn't captured only what keeps a tweak in force goes; what an
/// organization has set gets no command.
/// @param current  as this Mac is now
TweakStep restoreStep(const PreferenceGroup& group, const SystemSnapshot& snapshot, const CurrentSettings& current,
                      const QString& notificationCenter);
/// Every group.
QList<TweakStep> restoreSteps(const SystemSnapshot& snapshot, const CurrentSettings& current,
                              const QString& notificationCenter);

/// What needs root; empty when the snapshot knows nothing of it. A setting that wasn't captured stays as it is.
QStringList restoreSystemCommands(const SystemSnapshot& snapshot, const CurrentSettings& current);

// Its parts.

/// The three settings of sleep that were captured: by source of power where that is known and matters.
QStringList sleepCommandsBack(const SystemSnapshot& snapshot);
/// The motion sensor, in the same way.
QStringList motionSensorCommandsBack(const SystemSnapshot& snapshot);
/// Each volume that isn't as it was; where only the files' is known, all.
QStringList indexingCommandsBack(const SystemSnapshot& snapshot, const QList<IndexedVolume>& now);
/// The system's own switches that aren't as they were. What wasn't captured goes where it is off: macOS's own choice is on.
QStringList systemPreferenceCommandsBack(const std::optional<SystemSnapshot>& snapshot, const CurrentSettings& current);

} // namespace quorvane
