#pragma once

#include <QByteArray>
#include <QFuture>
#include <QString>
#include <QStringList>

namespace quorvane {

/// How a child process ended.
struct CommandOutcome {
    enum class Ending { Exited, EndedBySignal, NotLaunched };

    Ending ending = Ending::NotLaunched;
    int code = 0;              ///< the exit status, or the number of the signal
    QByteArray standardOutput; ///< empty unless captured
    QByteArray standardError;  ///< empty unless captured
    QString launchError;       ///< why it could not be launched, for people
};

enum class OutputCapture { Discard, Capture };

/// Starts the Mac's command-line tools.
class CommandLauncher {
public:
    CommandLauncher() = default;
    CommandLauncher(const CommandLauncher&) = delete;
    CommandLauncher& operator=(const CommandLauncher&) = delete;
    virtual ~CommandLauncher() = default;

    /// Starts "/usr/bin/env" with these arguments, which are not interpreted by any shell. Both streams are drained
    /// while the child runs, so it may print any amount. The future always finishes when the child has ended, on the
    /// thread that called; it is never cancelled and holds no exception. The child reads an empty input.
    virtual QFuture<CommandOutcome> run(QStringList arguments, OutputCapture capture) = 0;

    /// Ends all running children and refuses to start further ones: whoever waits goes on with a failure. Called when
    /// the program quits, so that a tool that hangs can't keep it.
    virtual void shutDown() = 0;
    /// True from then on: what failed since tells nothing of the Mac.
    virtual bool isShutDown() const = 0;
};

} // namespace quorvane
