#pragma once

#include "core/CommandResult.h"
#include "core/OpenBatch.h"

#include <QDateTime>
#include <QHash>
#include <QString>
#include <QStringList>

namespace QCoro {
template <typename T>
class Task;
}

namespace quorvane {

class FlowEnvironment;
class ScriptEngine;

/// What runs as root: a shell line at once, or, while a batch is open, everything together as one line under one prompt.
/// Main thread.
class AdminBatch {
public:
    /// @param environment  takes the log lines
    AdminBatch(FlowEnvironment& environment, ScriptEngine& scripts);

    /// Runs one shell line at once, whether a batch is open or not.
    /// @param prompt  shown to the user on one line; replaced by a neutral text for five minutes after the same line has
    ///                succeeded, because the system may hold its authorization then, unless a run has failed since. One that
    ///                holds a double quote fails the run before the script engine sees it, and so does a line of more than
    ///                200,000 bytes.
    /// @return status 0 and the script's text; or 1 with the system's message: a cancel is a failure like any other
    QCoro::Task<CommandResult> execute(QString script, QString prompt);
    /// Forgets what has succeeded: each line shows its caller's prompt.
    void clearAuthorization() { m_successes.clear(); }

    /// Queues the line when a batch is open, and gives status 0 at once; otherwise runs it.
    QCoro::Task<CommandResult> run(QString script, QString prompt);
    /// The same for commands that are made tolerant and joined.
    QCoro::Task<CommandResult> runTolerantly(const QStringList& commands, QString prompt);

    bool isOpen() const { return m_depth > 0; }
    int depth() const { return m_depth; }
    /// Batches nest; what the inner one queues joins what the outer one has queued. The first begins empty: what was queued
    /// while none was open is dropped.
    void begin();
    /// What waits for the batch to run.
    OpenBatch& open() { return m_open; }
    const OpenBatch& open() const { return m_open; }

    enum class Flush { NothingQueued, Done, Failed };
    /// Runs what was queued as one line. A failure is in the log.
    QCoro::Task<Flush> flush(QString prompt);
    /// Closes the batch, whatever became of its line; does nothing where none is open.
    void close();
    /// The places to which the batch that was closed last brought launch plists back; given once.
    QStringList takePlistsBroughtBack();

private:
    bool isAuthorized(const QString& line);

    FlowEnvironment& m_environment;
    ScriptEngine& m_scripts;
    OpenBatch m_open;
    int m_depth = 0;
    QStringList m_plistsBroughtBack;
    QHash<QString, QDateTime> m_successes; ///< when each line succeeded for which the system may hold an authorization
};

} // namespace quorvane
