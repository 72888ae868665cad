#pragma once

#include "simulator/StateStore.h"

namespace macsim {

/// What the privacy settings grant the program that drives this Mac, and whether the system protects itself.
///
/// Subject "permissions":
///
///     {"fullDiskAccess": true, "systemIntegrityProtection": true, "automation": {"System Events": true, …}}
///
/// What isn't there is true. Both switches bind root as well.
bool hasFullDiskAccess(const StateStore& state);
bool isSystemIntegrityProtected(const StateStore& state);

} // namespace macsim
