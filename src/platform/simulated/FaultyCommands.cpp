#include "platform/simulated/FaultyCommands.h"

#include "platform/simulated/AdapterFaults.h"

#include <csignal>
#include <stdexcept>

namespace quorvane {

CommandCounter::CommandCounter(const QString& faultsFile) {
    for (const macsim::Json& rule : adapterRules(faultsFile, "commands")) {
        if (!rule.contains("run") || !rule.at("run").is_number_integer() || !rule.value("kill", false)) {
            throw std::invalid_argument(faultsFile.toStdString() +
                                        R"(: of commands a rule says "run", a number, and "kill", true)");
        }
        m_killingRun = rule.at("run").get<int>();
    }
}

void CommandCounter::beforeRun() {
    ++m_runs;
    if (m_runs == m_killingRun) {
        std::raise(SIGKILL);
    }
}

QFuture<CommandOutcome> FaultyCommandLauncher::run(QStringList arguments, OutputCapture capture) {
    m_counter.beforeRun();
    return m_commands.run(std::move(arguments), capture);
}

QFuture<ScriptOutcome> FaultyScriptEngine::run(QString source) {
    m_counter.beforeRun();
    return m_scripts.run(std::move(source));
}

} // namespace quorvane
