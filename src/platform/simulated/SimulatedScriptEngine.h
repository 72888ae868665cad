#pragma once

#include "platform/portable/ProcessScriptEngine.h"

namespace quorvane {

class AuthorizationPrompt;

/// Runs AppleScript on a simulated Mac, by the Mac's "/usr/libexec/scriptengine". A script's questions for administrator rights
/// come back to this process.
class SimulatedScriptEngine final : public ProcessScriptEngine {
public:
    /// @param engineProgram  the script engine's link in the Mac's folder, on the host
    /// @param environment    the environment of the scripts
    SimulatedScriptEngine(QString engineProgram, const QProcessEnvironment& environment,
                          AuthorizationPrompt& authorization);
};

} // namespace quorvane
