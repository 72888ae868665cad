#include "core/Flow.h"

#include <QCoroTask>

#include <utility>

namespace quorvane {

QCoro::Task<CommandResult> Flow::runCommand(QStringList arguments, OutputCapture capture) {
    return m_environment.runCommand(std::move(arguments), capture);
}

QCoro::Task<CommandResult> Flow::executeAdminScript(QString script, QString prompt) {
    return m_environment.executeAdminScript(std::move(script), std::move(prompt));
}

} // namespace quorvane
