#pragma once

#include "simulator/applescript/AppleScript.h"

namespace macsim::applescript {

enum class LineEndings {
    Altered, ///< LF and CRLF become CR, and one line end at the end goes away
    Kept,
};

/// The text that `do shell script` gives. A status other than 0 is thrown as ScriptError: its number is the
/// status, its message what the line wrote to its error stream, or else to its output.
QString runShellScript(const ShellScriptRequest& request, LineEndings lineEndings, ScriptHost& host);

} // namespace macsim::applescript
