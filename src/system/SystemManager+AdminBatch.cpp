#include "system/SystemManager.h"

#include "core/AdminScript.h"
#include "platform/ScriptEngine.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// Shown while the system may still hold the authorization of an earlier run.
const QString kNeutralPrompt = u"Quorvane is applying system changes."_s;

/// The longest shell line that is handed over, in bytes of UTF-8. The line becomes one argument of a shell, and the system
/// gives arguments and environment 1 MiB together; what lies beyond would fail after the user has given his password.
constexpr qsizetype kLongestAdminLine = 200'000;

} // namespace

QCoro::Task<CommandResult> SystemManager::executeAdminScript(QString script, QString prompt) {
    const QString shownPrompt = m_adminAuthorizationFlag ? kNeutralPrompt : prompt;
    if (shownPrompt.contains(u'"')) {
        // A profile's name can come from somebody else's file: a quote in it would end the prompt's literal,
        // and what follows would be script.
        co_return CommandResult{1, {}, u"The authorization prompt can't contain a double quote: "_s + shownPrompt};
    }
    const qsizetype length = script.toUtf8().size();
    if (length > kLongestAdminLine) {
        const QString problem = u"The administrator command line is too long: %1 bytes of at most %2"_s;
        co_return CommandResult{1, {}, problem.arg(length).arg(kLongestAdminLine)};
    }
    if (script.contains(QChar::Null)) {
        // It would end the line for the shell, in the middle of a quoted word.
        co_return CommandResult{1, {}, u"The administrator command line holds a null character"_s};
    }
    const ScriptOutcome outcome = co_await m_host.scripts.run(adminScriptSource(script, shownPrompt));
    m_adminAuthorizationFlag = outcome.result.has_value();
    if (outcome.result) {
        co_return CommandResult{0, *outcome.result, {}};
    }
    co_return CommandResult{1, {}, outcome.errorMessage.value_or(u"Unknown error"_s)};
}

QCoro::Task<CommandResult> SystemManager::runAdminCommand(QString script, QString prompt) {
    if (m_adminBatchDepth < 1) {
        co_return co_await executeAdminScript(std::move(script), std::move(prompt));
    }
    m_adminCommandBatch.append(script);
    co_return CommandResult{};
}

void SystemManager::beginAdminBatch() {
    if (m_adminBatchDepth == 0) {
        m_adminCommandBatch.clear();
    }
    ++m_adminBatchDepth;
}

void SystemManager::queueAdminCommands(const QStringList& commands) {
    m_adminCommandBatch.append(joinedAdminCommands(makeAdminCommandsTolerant(commands)));
}

void SystemManager::deferBackgroundTaskFetchToAdminBatch() {
    m_backgroundTaskItemsFetchMode = BackgroundTaskItemsFetchMode::deferredToAdminBatch;
    m_needsPrivilegedBackgroundTaskItemFetch = !m_backgroundTaskItemsCache;
    m_pendingBackgroundLoginItemChanges = BackgroundLoginItemChangePlan();
}

QCoro::Task<bool> SystemManager::finishAdminBatch(QString prompt) {
    const bool planHasWork = m_pendingBackgroundLoginItemChanges && m_pendingBackgroundLoginItemChanges->hasWork();
    const bool needsDump = planHasWork && !m_backgroundTaskItemsCache;
    const bool dumpComes = needsDump && queueBackgroundDump();
    bool isPrepared = dumpComes == needsDump;
    if (planHasWork && !needsDump) {
        isPrepared = co_await resolvePendingBackgroundPlan(PlanResolution::BeforeFlush);
    }
    const bool isFlushed = co_await flushAdminBatch(std::move(prompt));
    if (isFlushed && dumpComes) {
        co_await resolvePendingBackgroundPlan(PlanResolution::AfterFlush);
    }
    closeAdminBatch();
    co_return isPrepared ? isFlushed : false;
}

QCoro::Task<bool> SystemManager::flushAdminBatch(QString prompt) {
    if (m_adminCommandBatch.isEmpty()) {
        co_return true;
    }
    const QString line = joinedAdminCommands(std::exchange(m_adminCommandBatch, {}));
    const CommandResult result = co_await executeAdminScript(line, std::move(prompt));
    if (result.status != 0) {
        log(u"  [ERROR] Administrator authorization was cancelled or failed: "_s + result.standardError);
        takeBackQueuedBackgroundLabels();
        co_return false;
    }
    if (std::exchange(m_needsPrivilegedBackgroundTaskItemFetch, false)) {
        co_await loadPrivilegedBackgroundDump();
    }
    co_return true;
}

void SystemManager::closeAdminBatch() {
    endBackgroundTaskFetchDeferral();
    m_queuedMoves.clear();
    m_queuedBackgroundLabels.clear();
    m_dispositionsBeforeBatch.clear();
    if (m_adminBatchDepth >= 1) {
        --m_adminBatchDepth;
    }
}

void SystemManager::endBackgroundTaskFetchDeferral() {
    m_pendingBackgroundLoginItemChanges.reset();
    m_backgroundTaskItemsFetchMode = BackgroundTaskItemsFetchMode::automatic;
    m_needsPrivilegedBackgroundTaskItemFetch = false;
}

} // namespace quorvane
