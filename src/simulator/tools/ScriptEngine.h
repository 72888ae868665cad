#pragma once

#include "simulator/Tool.h"

namespace macsim {

/// "/usr/libexec/scriptengine": runs one AppleScript for a program on the host, over this process's standard input and
/// output; see ScriptProtocol. It is the simulated Mac's in-process AppleScript, which no person starts by hand.
int runScriptEngine(ToolContext& context);

} // namespace macsim
