#pragma once

#include "platform/ScriptEngine.h"

namespace quorvane {

/// Compiles and runs a script on the calling thread, which waits for its end: for as long as a dialog of the script's stands.
/// There is no way to end it from outside.
ScriptOutcome runAppleScript(const QString& source);

} // namespace quorvane
