#pragma once

#include "simulator/StateStore.h"

namespace macsim {

/// What the privacy settings grant the program that drives this Mac, and whether the system protects itself.
///
/// Subject "permissions":
///
///     {"fullDiskAccess": true, "appManagement": true, "systemIntegrityProtection": true, "automation": {"System Events": true, …},
///      "tellNeedsAutomation": true}
///
/// What isn't there is true. The first three switches bind root as well. Places.h says what each keeps.
bool hasFullDiskAccess(const StateStore& state);
/// Whether it may change what other applications hold: by App Management or by Full Disk Access.
bool mayChangeApplications(const StateStore& state);
bool isSystemIntegrityProtected(const StateStore& state);

/// Whether scripts may send an application events. A refusal is an error in whatever sends one (-1743).
bool mayAutomate(const StateStore& state, const QString& application);
/// Whether a `tell` fails already where automation is refused, so that `tell application "System Events" to return 0`
/// tells of the refusal. That probe sends no event; which of the two a Mac does is not established, and both can be had.
bool tellNeedsAutomation(const StateStore& state);

} // namespace macsim
