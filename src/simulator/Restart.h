#pragma once

#include "simulator/Mac.h"

namespace macsim {

/// Starts the Mac anew and logs its user in; for what runs, a log-out and a log-in come to the same.
///
/// All jobs of launchd and all applications end, and what startupServices tells to start is loaded and started, of two
/// property lists with one label the first. Overrides outlive it; those of Apple's own labels are undone from macOS 26.5
/// on, unless this Mac keeps them (LaunchdState.h). What the sealed system brings runs on under the same numbers, but for
/// what a kept override holds disabled: that ends, and is back at the first start without the override.
void restart(const Mac& mac);

} // namespace macsim
