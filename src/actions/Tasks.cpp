#include "actions/Tasks.h"

#include "core/FlowEnvironment.h"

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

QFuture<void> Tasks::finished() {
    if (m_count == 0) {
        return QtFuture::makeReadyFuture();
    }
    QPromise<void>& promise = m_waiting.emplace_back();
    promise.start();
    return promise.future();
}

void Tasks::logError(const std::exception& error) {
    m_environment.log(u"  [ERROR] "_s + QString::fromUtf8(error.what()));
}

void Tasks::taskEnded() {
    --m_count;
    if (m_count > 0) {
        return;
    }
    for (QPromise<void>& promise : std::exchange(m_waiting, {})) {
        promise.finish();
    }
}

} // namespace quorvane
