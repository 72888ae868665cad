#include "system/SystemManager.h"

#include "core/AdminBatch.h"
#include "startup/background/BackgroundItems.h"

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

void SystemManager::beginAdminBatch() {
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

QCoro::Task<bool> SystemManager::finishAdminBatch(QString prompt) {
    const BackgroundItems::Joined joined = co_await m_backgroundItems->joinBatch();
    const AdminBatch::Flush flush = co_await m_adminBatch->flush(std::move(prompt));
    if (flush == AdminBatch::Flush::Done) {
        co_await m_backgroundItems->followBatch(joined);
    } else if (flush == AdminBatch::Flush::Failed) {
        m_backgroundItems->takeBackQueuedLabels();
    }
    m_backgroundItems->endDeferral();
    m_adminBatch->close();
    co_return joined.isPrepared&& flush != AdminBatch::Flush::Failed && !isQuitting();
}

} // namespace quorvane
