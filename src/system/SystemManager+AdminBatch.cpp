#include "system/SystemManager.h"

#include "core/AdminBatch.h"
#include "flows/FlowJournal.h"
#include "flows/FlowSteps.h"
#include "startup/background/BackgroundItems.h"
#include "startup/launchd/LaunchItems.h"
#include "startup/launchd/Launchd.h"
#include "startup/login/LoginItems.h"

#include <QCoroTask>

#include <utility>

namespace quorvane {

QCoro::Task<CommandResult> SystemManager::executeAdminScript(QString script, QString prompt) {
    return m_adminBatch->execute(std::move(script), std::move(prompt));
}

QCoro::Task<CommandResult> SystemManager::runAdminCommand(QString script, QString prompt) {
    return m_adminBatch->run(std::move(script), std::move(prompt));
}

void SystemManager::clearAdminAuthorization() {
    m_adminBatch->clearAuthorization();
}

/// The outermost one begins a flow, which sees the Mac as it is now: a review may have looked at it long ago.
void SystemManager::beginAdminBatch() {
    if (!m_adminBatch->isOpen()) {
        m_loginItems->drop();
        m_launchItems->launchd().beginFlow();
    }
    m_adminBatch->begin();
}

int SystemManager::adminBatchDepth() const {
    return m_adminBatch->depth();
}

void SystemManager::queueAdminCommands(const QStringList& commands) {
    m_adminBatch->open().queueTolerantly(commands);
}

void SystemManager::deferBackgroundTaskFetchToAdminBatch() {
    m_backgroundItems->defer();
}

BackgroundTaskItemsFetchMode SystemManager::backgroundTaskItemsFetchMode() const {
    return m_backgroundItems->fetchMode();
}

const std::optional<BackgroundLoginItemChangePlan>& SystemManager::pendingBackgroundLoginItemChanges() const {
    return m_backgroundItems->plan();
}

/// The dump shows applications as registered that System Events opens; these it can take out again.
void SystemManager::forgetListedRegistrations() {
    if (const std::optional<LoginItemList>& listed = m_loginItems->known()) {
        m_backgroundItems->forgetRegistered(listed->items);
    }
}

QCoro::Task<bool> SystemManager::finishAdminBatch(QString prompt) {
    const BackgroundItems::Joined joined = co_await m_backgroundItems->joinBatch();
    m_journal->flush(); // a prompt may stand open for minutes
    const AdminBatch::Flush flush = co_await m_adminBatch->flush(std::move(prompt));
    Launchd& launchd = m_launchItems->launchd();
    if (flush != AdminBatch::Flush::Failed) {
        m_journal->strike(kAdministratorsStep);
        co_await m_backgroundItems->followBatch(joined, flush == AdminBatch::Flush::Done);
        forgetListedRegistrations();
    } else {
        launchd.drop();
    }
    co_await m_launchItems->settleDisabled(flush == AdminBatch::Flush::Failed);
    co_await launchd.settleRecorded();
    m_backgroundItems->endDeferral();
    m_adminBatch->close();
    co_return joined.isPrepared&& flush != AdminBatch::Flush::Failed && !isQuitting();
}

} // namespace quorvane
