#pragma once

#include "simulator/Tool.h"

namespace macsim {

/// `sh -c LINE`: runs a line in the simulated Mac's own shell. Scripts in files and interactive use are refused.
int runSh(ToolContext& context);

} // namespace macsim
