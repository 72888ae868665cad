#include "platform/portable/ProcessCommandLauncher.h"

#include <QProcess>
#include <QPromise>

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

QFuture<CommandOutcome> refused() {
    CommandOutcome outcome;
    outcome.launchError = u"The program is quitting."_s;
    return QtFuture::makeReadyFuture(outcome);
}

} // namespace

/// One running command. It settles its promise once: when the child has ended, or couldn't be started.
class ProcessCommandLauncher::Child final : public QObject {
public:
    Child(ProcessCommandLauncher& launcher, OutputCapture capture)
        : m_launcher(&launcher)
        , m_capture(capture) {
        connect(&m_process, &QProcess::finished, this, &Child::ended);
        connect(&m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
            if (error == QProcess::FailedToStart) {
                notLaunched();
            }
        });
    }

    QFuture<CommandOutcome> start(const QStringList& arguments) {
        m_process.setProgram(m_launcher->m_environmentTool);
        m_process.setArguments(arguments);
        m_process.setProcessEnvironment(m_launcher->m_environment);
        m_process.setStandardInputFile(QProcess::nullDevice());
        if (m_capture == OutputCapture::Discard) {
            m_process.setStandardOutputFile(QProcess::nullDevice());
            m_process.setStandardErrorFile(QProcess::nullDevice());
        }
        m_promise.start();
        QFuture<CommandOutcome> future = m_promise.future();
        m_process.start();
        return future;
    }

    void kill() { m_process.kill(); }

    /// The launcher goes away first: nobody is told any more, and the child is reaped here.
    void abandon() {
        m_launcher = nullptr;
        m_process.kill();
        m_process.waitForFinished();
    }

private:
    void ended(int code, QProcess::ExitStatus status) {
        CommandOutcome outcome;
        outcome.ending =
            status == QProcess::NormalExit ? CommandOutcome::Ending::Exited : CommandOutcome::Ending::EndedBySignal;
        outcome.code = code;
        if (m_capture == OutputCapture::Capture) {
            outcome.standardOutput = m_process.readAllStandardOutput();
            outcome.standardError = m_process.readAllStandardError();
        }
        settle(std::move(outcome));
    }

    void notLaunched() {
        CommandOutcome outcome;
        outcome.launchError = m_process.errorString();
        settle(std::move(outcome));
    }

    void settle(CommandOutcome outcome) {
        m_promise.addResult(std::move(outcome));
        m_promise.finish();
        if (m_launcher) {
            m_launcher->forget(this);
        }
        deleteLater();
    }

    ProcessCommandLauncher* m_launcher;
    OutputCapture m_capture;
    QProcess m_process;
    QPromise<CommandOutcome> m_promise;
};

ProcessCommandLauncher::ProcessCommandLauncher(QString environmentTool, const QProcessEnvironment& environment)
    : m_environmentTool(std::move(environmentTool))
    , m_environment(environment) {}

ProcessCommandLauncher::~ProcessCommandLauncher() {
    const std::unordered_set<Child*> running = std::exchange(m_running, {});
    for (Child* child : running) {
        child->abandon();
    }
}

QFuture<CommandOutcome> ProcessCommandLauncher::run(QStringList arguments, OutputCapture capture) {
    if (m_isShutDown) {
        return refused();
    }
    auto* child = new Child(*this, capture);
    m_running.insert(child);
    return child->start(arguments);
}

void ProcessCommandLauncher::shutDown() {
    m_isShutDown = true;
    for (Child* child : m_running) {
        child->kill();
    }
}

void ProcessCommandLauncher::forget(Child* child) {
    m_running.erase(child);
}

} // namespace quorvane
