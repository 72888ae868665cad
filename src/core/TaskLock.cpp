#include "core/TaskLock.h"

#include <QCoroFuture>
#include <QCoroTask>

namespace quorvane {

QCoro::Task<TaskLock::Hold> TaskLock::acquire() {
    if (m_isHeld) {
        QPromise<void>& promise = m_waiting.emplace_back();
        promise.start();
        const QFuture<void> turn = promise.future();
        co_await turn;
    }
    m_isHeld = true;
    co_return Hold(*this);
}

void TaskLock::release() {
    if (m_waiting.empty()) {
        m_isHeld = false;
        return;
    }
    QPromise<void> next = std::move(m_waiting.front());
    m_waiting.pop_front();
    next.finish();
}

} // namespace quorvane
