#include "actions/LogActions.h"

#include "actions/ActionStage.h"
#include "actions/ActionTexts.h"
#include "actions/ExportedFile.h"
#include "actions/WindowTexts.h"
#include "core/Background.h"
#include "core/Paths.h"
#include "platform/FileManager.h"
#include "platform/FilePanels.h"
#include "platform/Machine.h"
#include "runlogs/RunLogWriter.h"
#include "runlogs/RunLogs.h"
#include "system/SystemManager.h"

#include <QCoroFuture>
#include <QCoroTask>
#include <QHash>

#include <optional>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

QByteArray exportedText(const QStringList& messages) {
    return messages.join(u'\n').toUtf8();
}

QStringList keptLines(const QByteArray& text) {
    QStringList lines = QString::fromUtf8(text).split(u'\n');
    if (lines.last().isEmpty()) {
        lines.removeLast(); // behind the last line's end
    }
    return lines;
}

/// What a menu says of runs that began in the same minute must differ.
QList<KeptRun> titledRuns(const QList<RunLogName>& runs, const Machine& machine) {
    QList<KeptRun> titled;
    QHash<QString, int> counts;
    for (auto run = runs.crbegin(); run != runs.crend(); ++run) {
        const QString moment = machine.dateAndTimeText(run->began);
        const int number = ++counts[moment];
        titled.prepend({run->file, number == 1 ? moment : moment + u" ("_s + QString::number(number) + u')'});
    }
    return titled;
}

} // namespace

void LogActions::setDebugMode(bool debugMode) {
    m_parts.system.setDebugMode(debugMode);
}

void LogActions::clearLog() {
    m_parts.system.clearLog();
}

// ---- Exporting

QCoro::Task<ActionOutcome> LogActions::exportLog(ActionListener& listener) {
    return m_stage.run(listener, [this](Action& action) {
        return exportLines(action, m_parts.system.logMessages(), u"quorvane_log.txt"_s);
    });
}

QCoro::Task<ActionOutcome> LogActions::exportKept(const KeptRun& run, const QStringList& lines,
                                                  ActionListener& listener) {
    const QString fileName = nameInPath(run.file) + u".txt"_s;
    return m_stage.run(listener,
                       [this, lines, fileName](Action& action) { return exportLines(action, lines, fileName); });
}

QCoro::Task<void> LogActions::exportLines(Action& action, QStringList lines, QString fileName) {
    const QByteArray text = co_await inBackground(exportedText, lines);
    if (!action.mayGoOn()) {
        co_return; // a panel would stand above the lock screen
    }
    if (text.isEmpty()) {
        co_await action.tell(emptyLogAlert());
        co_return;
    }
    const std::optional<QString> path = co_await m_parts.panels.save(u"Export Log"_s, fileName, FileKind::PlainText);
    if (!path || !action.mayGoOn()) {
        co_return;
    }
    action.carryOutAtOnce();
    const std::optional<QString> problem = problemOfExporting(m_parts.panels.files(), *path, text);
    action.outcome.succeeded = !problem;
    co_await action.tell(exportAlert(problem));
}

// ---- Earlier runs

KeptRuns LogActions::keptRuns() const {
    try {
        QList<RunLogName> runs = m_parts.logs.kept();
        runs.removeIf([this](const RunLogName& run) { return run.file == m_parts.writer.file(); });
        return {titledRuns(runs, m_parts.machine), {}};
    } catch (const FileError& error) {
        return {{}, unlistedRunsText(error.message())};
    }
}

QCoro::Task<KeptLog> LogActions::readKept(KeptRun run) const {
    QByteArray text;
    KeptLog unread;
    try {
        text = m_parts.logs.read(run.file);
    } catch (const FileError& error) {
        const bool isGone = error.cause() == FileError::Cause::Missing;
        unread.problem = isGone ? kLogOfRunIsGone : unreadableLogText(error.message());
    }
    if (!unread.problem.isEmpty()) {
        co_return unread;
    }
    KeptLog kept;
    kept.lines = co_await inBackground(keptLines, text);
    co_return kept;
}

} // namespace quorvane
