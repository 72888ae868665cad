#pragma once

#include "tweaks/TweakPreferences.h"

#include <QString>

#include <optional>

namespace quorvane {

class Machine;
class PropertyLists;

/// The value of a preference that an organization has set on this Mac, as `defaults` would print it; none where it hasn't. It wins
/// over the user's, can't be changed here, and `defaults read` doesn't show it. That of the user's own profile goes before that of
/// the whole Mac.
///
/// Source: the files of managed preferences under "/Library/Managed Preferences", which anybody may read. The user's folder there has
/// the short name, taken from the home folder's.
std::optional<QString> managedValue(const MacPreference& preference, const PropertyLists& propertyLists,
                                    const Machine& machine);

} // namespace quorvane
