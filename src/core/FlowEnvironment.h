#pragma once

#include "core/CommandResult.h"
#include "platform/CommandLauncher.h"

#include <QString>
#include <QStringList>

namespace QCoro {
template <typename T>
class Task;
}

namespace quorvane {

struct Host;

/// What a flow reaches the world through: the log, a tool as the user, a shell line as root, and the ports. Flows see this
/// and never the façade that holds them. It outlives them. Main thread.
class FlowEnvironment {
public:
    FlowEnvironment() = default;
    FlowEnvironment(const FlowEnvironment&) = delete;
    FlowEnvironment& operator=(const FlowEnvironment&) = delete;
    virtual ~FlowEnvironment() = default;

    /// Appends one entry to the log exactly as given; one whose own tag is "[WARNING]" is dropped.
    virtual void log(const QString& message) = 0;

    /// Runs a tool as the user, through "/usr/bin/env". The first argument is its path or its name. A failure shows in the
    /// result alone.
    virtual QCoro::Task<CommandResult> runCommand(QStringList arguments, OutputCapture capture) = 0;

    /// Runs one shell line as root behind a single authorization prompt, whether a batch is open or not.
    /// @return status 0 and the script's text; or 1 with the system's message: a cancel is a failure like any other
    virtual QCoro::Task<CommandResult> executeAdminScript(QString script, QString prompt) = 0;

    virtual const Host& host() const = 0;
};

} // namespace quorvane
