#pragma once

#include "startup/items/StartupConfiguration.h"

namespace quorvane {

/// True when applying the configuration has anything to do: the network goes off, a cloud service stays off,
/// an added app opens at login, or any other item is switched off.
bool hasStartupChanges(const StartupConfiguration& configuration);

} // namespace quorvane
