#include "fakes/ScriptedAlertPresenter.h"

namespace quorvane {

QFuture<int> ScriptedAlertPresenter::present(const Alert& alert) {
    if (m_isShutDown) {
        return QtFuture::makeReadyFuture(alert.cancelButton);
    }
    m_trace.append(QStringLiteral("! ") + alert.message + QStringLiteral(" | ") + alert.informativeText +
                   QStringLiteral(" | ") + alert.buttons.join(QStringLiteral(", ")));
    m_lastStyle = alert.style;
    return m_isHolding ? heldBack(alert.cancelButton) : QtFuture::makeReadyFuture(m_pressed);
}

void ScriptedAlertPresenter::cancelOpen() {
    for (auto& [promise, cancelButton] : std::exchange(m_open, {})) {
        promise.addResult(cancelButton);
        promise.finish();
    }
}

void ScriptedAlertPresenter::shutDown() {
    m_isShutDown = true;
    cancelOpen();
}

qsizetype ScriptedAlertPresenter::openCount() const {
    return static_cast<qsizetype>(m_open.size());
}

void ScriptedAlertPresenter::answer(int button) {
    for (auto& [promise, cancelButton] : std::exchange(m_open, {})) {
        promise.addResult(button);
        promise.finish();
    }
}

QFuture<int> ScriptedAlertPresenter::heldBack(int cancelButton) {
    QPromise<int>& promise = m_open.emplace_back(QPromise<int>(), cancelButton).first;
    promise.start();
    return promise.future();
}

} // namespace quorvane
