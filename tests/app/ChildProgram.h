#pragma once

#include "fakes/EventLoop.h"

#include <QProcess>

#include <csignal>
#include <sys/resource.h>

namespace quorvane {

/// One run of a program, mostly of the one that does what comes before the window. It is killed with this object at the latest.
class ChildProgram {
public:
    enum class DiskIs { Roomy, Full };

    explicit ChildProgram(const QStringList& arguments, DiskIs disk = DiskIs::Roomy)
        : ChildProgram(arguments, QProcessEnvironment::systemEnvironment(), disk) {}
    ChildProgram(const QStringList& arguments, const QProcessEnvironment& environment, DiskIs disk = DiskIs::Roomy)
        : ChildProgram(QStringLiteral(APP_SUPPORT_PROGRAM), arguments, environment, disk) {}
    ChildProgram(const QString& program, const QStringList& arguments, const QProcessEnvironment& environment,
                 DiskIs disk = DiskIs::Roomy) {
        if (disk == DiskIs::Full) {
            m_process.setChildProcessModifier([] {
                const rlimit nothing{0, 0};
                ::setrlimit(RLIMIT_FSIZE, &nothing);
                ::signal(SIGXFSZ, SIG_IGN); // the write fails instead
            });
        }
        m_process.setProcessEnvironment(environment);
        m_process.start(program, arguments);
        EXPECT_TRUE(m_process.waitForStarted());
    }
    ~ChildProgram() {
        m_process.kill();
        m_process.waitForFinished();
    }

    bool isRunning() const { return m_process.state() != QProcess::NotRunning; }
    qint64 processId() const { return m_process.processId(); }
    void signal(int number) { ::kill(static_cast<pid_t>(m_process.processId()), number); }

    /// Waits for one more line.
    QString line() {
        processEventsUntil([this] { return m_process.canReadLine() || !isRunning(); });
        return QString::fromUtf8(m_process.readLine()).trimmed();
    }
    void waitForEnd() {
        processEventsUntil([this] { return !isRunning(); });
    }
    /// Waits for the end. -1 for one by a signal.
    int status() {
        waitForEnd();
        return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
    }
    QByteArray errors() { return m_process.readAllStandardError(); }

private:
    QProcess m_process;
};

} // namespace quorvane
