#include "fakes/ScriptedAlertPresenter.h"

namespace quorvane {

QFuture<int> ScriptedAlertPresenter::present(const Alert& alert) {
    m_trace.append(QStringLiteral("! ") + alert.message + QStringLiteral(" | ") + alert.informativeText +
                   QStringLiteral(" | ") + alert.buttons.join(QStringLiteral(", ")));
    return m_isHolding ? heldBack() : QtFuture::makeReadyFuture(0);
}

void ScriptedAlertPresenter::shutDown() {
    m_isHolding = false;
    answer(0);
}

qsizetype ScriptedAlertPresenter::openCount() const {
    return static_cast<qsizetype>(m_open.size());
}

void ScriptedAlertPresenter::answer(int button) {
    for (QPromise<int>& promise : std::exchange(m_open, {})) {
        promise.addResult(button);
        promise.finish();
    }
}

QFuture<int> ScriptedAlertPresenter::heldBack() {
    QPromise<int>& promise = m_open.emplace_back();
    promise.start();
    return promise.future();
}

} // namespace quorvane
