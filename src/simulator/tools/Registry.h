#pragma once

#include "simulator/Tool.h"

namespace macsim {

/// Every command of the simulated Mac.
const ToolTable& simulatorTools();

} // namespace macsim
