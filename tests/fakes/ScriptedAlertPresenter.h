#pragma once

#include "platform/AlertPresenter.h"

#include <QList>
#include <QPromise>

#include <utility>
#include <vector>

namespace quorvane {

/// Presses the first button of every alert at once, unless a test says otherwise, and writes the alert into a trace:
/// "! {message} | {informative text} | {buttons}".
class ScriptedAlertPresenter final : public AlertPresenter {
public:
    explicit ScriptedAlertPresenter(QStringList& trace)
        : m_trace(trace) {}

    QFuture<int> present(const Alert& alert) override {
        if (m_isShutDown) {
            return QtFuture::makeReadyFuture(alert.cancelButton);
        }
        m_trace.append(QStringLiteral("! ") + alert.message + QStringLiteral(" | ") + alert.informativeText +
                       QStringLiteral(" | ") + alert.buttons.join(QStringLiteral(", ")));
        return m_isHolding ? heldBack(alert.cancelButton) : QtFuture::makeReadyFuture(m_pressed);
    }

    void cancelOpen() override {
        for (auto& [promise, cancelButton] : std::exchange(m_open, {})) {
            promise.addResult(cancelButton);
            promise.finish();
        }
    }
    void shutDown() override {
        m_isShutDown = true;
        cancelOpen();
    }

    /// From now on this button is pressed, and no longer the first.
    void press(int button) { m_pressed = button; }

    /// From now on alerts stay open until they are answered.
    void hold() { m_isHolding = true; }
    qsizetype openCount() const { return static_cast<qsizetype>(m_open.size()); }
    /// Presses a button of all open alerts.
    void answer(int button) {
        for (auto& [promise, cancelButton] : std::exchange(m_open, {})) {
            promise.addResult(button);
            promise.finish();
        }
    }

private:
    QFuture<int> heldBack(int cancelButton) {
        QPromise<int>& promise = m_open.emplace_back(QPromise<int>(), cancelButton).first;
        promise.start();
        return promise.future();
    }

    QStringList& m_trace;
    bool m_isHolding = false;
    bool m_isShutDown = false;
    int m_pressed = 0;
    std::vector<std::pair<QPromise<int>, int>> m_open; ///< with their cancel buttons
};

} // namespace quorvane
