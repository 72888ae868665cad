#pragma once

#include "snapshots/SystemSnapshot.h"
#include "tweaks/TweakCommands.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace quorvane {

// The way back, as exact argument lists in their order.

/// The command that puts a preference back. None and an empty text delete the key: it wasn't set when it was read. The type
/// that the preference had isn't known any more and follows from the text: a boolean for "true", "false", "yes", "no", "1" and
/// "0" in any case; a whole number, but not among the per-host preferences; else a string.
/// @param notificationCenter  the path of Notification Center's per-host preferences
QStringList writeDefaultValueCommand(const MacPreference& preference, const std::optional<QString>& value,
                                     const QString& notificationCenter);

/// Puts the preferences back as the user, group by group.
QList<TweakStep> restoreSteps(const SystemSnapshot& snapshot, const QString& notificationCenter);

/// What needs root; empty when the snapshot knows nothing of it. A setting that wasn't captured stays as it is.
QStringList restoreSystemCommands(const SystemSnapshot& snapshot);

} // namespace quorvane
