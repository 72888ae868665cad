#pragma once

#include "actions/ActionOutcome.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace QCoro {
template <typename T>
class Task;
}

namespace quorvane {

class Action;
class ActionListener;
class ActionStage;
class FilePanels;
class Machine;
class RunLogs;
class RunLogWriter;
class SystemManager;

/// A run of the program whose log is kept.
struct KeptRun {
    QString file;  ///< its name in the folder
    QString title; ///< when it began, in the user's words; no two have the same

    bool operator==(const KeptRun&) const = default;
};

struct KeptRuns {
    QList<KeptRun> runs; ///< the newest first
    QString problem;     ///< why they can't be listed; empty where they were
};

/// What is kept of a run.
struct KeptLog {
    QStringList lines;
    QString problem; ///< why there are none; empty where it was read
};

/// What a user does with the log. Switching its debug lines, clearing it and reading an earlier one are free at any time: a flow
/// that runs logs on.
class LogActions {
public:
    struct Parts {
        SystemManager& system;
        FilePanels& panels;
        const Machine& machine;
        const RunLogs& logs;
        const RunLogWriter& writer;
    };
    LogActions(ActionStage& stage, const Parts& parts)
        : m_stage(stage)
        , m_parts(parts) {}

    /// "Verbose Debug Logging".
    void setDebugMode(bool debugMode);
    /// Of this run, as it is shown: what is kept of it stays.
    void clearLog();
    /// Asks for a file, and writes the log as it is into it. Without a text there is nothing to ask for.
    QCoro::Task<ActionOutcome> exportLog(ActionListener& listener);
    /// The same of an earlier run's, with the lines that were read.
    QCoro::Task<ActionOutcome> exportKept(const KeptRun& run, const QStringList& lines, ActionListener& listener);

    /// The earlier runs and those of other processes.
    KeptRuns keptRuns() const;
    /// Reads what is kept of a run. What isn't UTF-8 in it, such as a character that a sudden end has cut, is shown as U+FFFD.
    QCoro::Task<KeptLog> readKept(KeptRun run) const;

private:
    QCoro::Task<void> exportLines(Action& action, QStringList lines, QString fileName);

    ActionStage& m_stage;
    Parts m_parts;
};

} // namespace quorvane
