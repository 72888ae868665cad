#pragma once

#include "runlogs/RunLogs.h"

#include <QObject>
#include <QTimer>

namespace quorvane {

class Clock;
class SystemManager;

/// Keeps the log of this run in a file, so that it outlives the program. What is logged in one turn of the event loop is added when
/// it comes round; the file is made for the first line. What doesn't go is told in the log once, and nothing more is
/// written in this run. Clearing the log takes nothing out of the file. Main thread.
class RunLogWriter : public QObject {
    Q_OBJECT

public:
    /// As much as a file may hold, with the line that says that there is no more.
    static constexpr qsizetype kLargestFile = qsizetype(10) * 1024 * 1024;

    RunLogWriter(SystemManager& system, RunLogs& logs, const Clock& clock);
    /// Writes what is left. Nobody is there any more who could be told when it doesn't go.
    ~RunLogWriter() override;

    /// Writes at once what has come.
    void flush();
    /// Empty before the first line.
    const QString& file() const { return m_file; }

private:
    void take(const QString& message);
    void writePending();
    void forgetOld();

    SystemManager& m_system;
    RunLogs& m_logs;
    const Clock& m_clock;
    QTimer m_turn;
    QString m_file;
    QByteArray m_pending;
    qsizetype m_size = 0;    ///< with what is pending
    bool m_hasEnded = false; ///< nothing more is taken
};

} // namespace quorvane
