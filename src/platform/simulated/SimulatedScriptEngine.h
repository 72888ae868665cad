#pragma once

#include "platform/ScriptEngine.h"

#include <QProcessEnvironment>

#include <unordered_set>

namespace quorvane {

class AuthorizationPrompt;

/// Runs AppleScript on a simulated Mac. Each script has a process of its own, the Mac's "/usr/libexec/scriptengine",
/// so that one that hangs can be ended; its questions for administrator rights come back to this process.
class SimulatedScriptEngine final : public ScriptEngine {
public:
    /// @param engineProgram  the script engine's link in the Mac's folder, on the host
    /// @param environment    the environment of the scripts
    SimulatedScriptEngine(QString engineProgram, const QProcessEnvironment& environment,
                          AuthorizationPrompt& authorization);
    ~SimulatedScriptEngine() override;

    QFuture<ScriptOutcome> run(QString source) override;
    void shutDown() override;

private:
    class Script;
    void forget(Script* script);

    QString m_engineProgram;
    QProcessEnvironment m_environment;
    AuthorizationPrompt& m_authorization;
    std::unordered_set<Script*> m_running; ///< each owns itself until it has ended
    bool m_isShutDown = false;
};

} // namespace quorvane
