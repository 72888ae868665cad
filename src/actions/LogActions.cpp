#include "actions/LogActions.h"

#include "actions/ActionStage.h"
#include "actions/ActionTexts.h"
#include "actions/ExportedFile.h"
#include "core/Background.h"
#include "platform/FilePanels.h"
#include "system/SystemManager.h"

#include <QCoroFuture>
#include <QCoroTask>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

QByteArray exportedText(const QStringList& messages) {
    return messages.join(u'\n').toUtf8();
}

} // namespace

void LogActions::setDebugMode(bool debugMode) {
    m_system.setDebugMode(debugMode);
}

void LogActions::clearLog() {
    m_system.clearLog();
}

QCoro::Task<ActionOutcome> LogActions::exportLog(ActionListener& listener) {
    return m_stage.run(listener, [this](Action& action) -> QCoro::Task<void> {
        const QByteArray text = co_await inBackground(exportedText, m_system.logMessages());
        if (!action.mayGoOn()) {
            co_return; // a panel would stand above the lock screen
        }
        if (text.isEmpty()) {
            co_await action.tell(emptyLogAlert());
            co_return;
        }
        const std::optional<QString> path =
            co_await m_panels.save(u"Export Log"_s, u"quorvane_log.txt"_s, FileKind::PlainText);
        if (!path || !action.mayGoOn()) {
            co_return;
        }
        action.carryOutAtOnce();
        const std::optional<QString> problem = problemOfExporting(m_panels.files(), *path, text);
        action.outcome.succeeded = !problem;
        co_await action.tell(exportAlert(problem));
    });
}

} // namespace quorvane
