#pragma once

#include "simulator/Tool.h"

namespace macsim {

/// `osascript [-s flags] -e LINE [-e LINE …] | FILE | -`: runs AppleScript. Other options, arguments for a `run`
/// handler and other languages are refused.
int runOsascript(ToolContext& context);

} // namespace macsim
