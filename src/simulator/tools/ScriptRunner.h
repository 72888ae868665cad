#pragma once

#include "simulator/Tool.h"
#include "simulator/applescript/AppleScript.h"

namespace macsim {

/// Runs AppleScript as a process of the simulated Mac: `do shell script` goes to the Mac's own shell, as the process's
/// user, or as root once the authorizer has agreed.
std::variant<ScriptResult, ScriptError> runScriptOnMac(const QString& source, ToolContext& context);

} // namespace macsim
