#pragma once

#include "readings/CurrentSettings.h"
#include "readings/ExportedPreferences.h"
#include "snapshots/SystemSnapshot.h"

#include <QStringList>

namespace quorvane {

/// One look at all that tweaks change, as the half of a snapshot that tells of settings: without its id, its time, its label,
/// the network services and the login items. Of a preference that an organization has set nothing is known of the user's own, and
/// it is left out, as is what nobody has answered. Of those that every version has captured that reads as not set: see below.
/// @param typed  read after the texts: where the two differ somebody has changed the value in between, and the later one counts
SystemSnapshot snapshotOf(const CurrentSettings& current, const TypedReadings& typed);

/// The names of the tweaks that have a preference which wasn't answered. A snapshot of that would delete it on the way
/// back: it is none to keep.
QStringList tweaksNotAnswered(const CurrentSettings& current);

/// The preferences of which a reading of the type is worth a command: those that are the user's own and set.
QList<MacPreference> preferencesThatAreSet(const CurrentSettings& current);

/// Those whose printed text doesn't bring them back, and of which nothing else is known: lists, dictionaries and data.
QList<MacPreference> preferencesKnownByTextAlone(const CurrentSettings& current, const TypedReadings& typed);

} // namespace quorvane
