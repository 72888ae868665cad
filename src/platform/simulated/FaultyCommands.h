#pragma once

#include "platform/CommandLauncher.h"
#include "platform/ScriptEngine.h"

#include <QString>

#include <optional>

namespace quorvane {

/// Lets the program die when it is about to run its n-th command. Commands and scripts are counted together, from 1, as a
/// file of faults says it:
///
///     {"adapter": "commands", "run": 7, "kill": true}
class CommandCounter {
public:
    /// No file is no fault. Throws std::invalid_argument.
    explicit CommandCounter(const QString& faultsFile);

    void beforeRun();

private:
    std::optional<int> m_killingRun;
    int m_runs = 0;
};

/// Any launcher, with the program's death on request.
class FaultyCommandLauncher final : public CommandLauncher {
public:
    FaultyCommandLauncher(CommandLauncher& commands, CommandCounter& counter)
        : m_commands(commands)
        , m_counter(counter) {}

    QFuture<CommandOutcome> run(QStringList arguments, OutputCapture capture) override;
    void shutDown() override { m_commands.shutDown(); }
    bool isShutDown() const override { return m_commands.isShutDown(); }

private:
    CommandLauncher& m_commands;
    CommandCounter& m_counter;
};

/// Any script engine, with the program's death on request.
class FaultyScriptEngine final : public ScriptEngine {
public:
    FaultyScriptEngine(ScriptEngine& scripts, CommandCounter& counter)
        : m_scripts(scripts)
        , m_counter(counter) {}

    QFuture<ScriptOutcome> run(QString source) override;
    void shutDown() override { m_scripts.shutDown(); }

private:
    ScriptEngine& m_scripts;
    CommandCounter& m_counter;
};

} // namespace quorvane
