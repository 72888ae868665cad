#pragma once

#include "core/FlowEnvironment.h"

namespace quorvane {

/// The base of the objects that hold flows with state of their own: what they reach the world through, under short names.
class Flow {
protected:
    /// @param environment  outlives the object
    explicit Flow(FlowEnvironment& environment)
        : m_environment(environment) {}

    FlowEnvironment& environment() const { return m_environment; }
    const Host& host() const { return m_environment.host(); }
    void log(const QString& message) const { m_environment.log(message); }
    QCoro::Task<CommandResult> runCommand(QStringList arguments, OutputCapture capture);
    QCoro::Task<CommandResult> executeAdminScript(QString script, QString prompt);

private:
    FlowEnvironment& m_environment;
};

} // namespace quorvane
