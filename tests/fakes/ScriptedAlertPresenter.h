#pragma once

#include "platform/AlertPresenter.h"

#include <QList>
#include <QPromise>

#include <utility>
#include <vector>

namespace quorvane {

/// Presses the default button of every alert at once, unless a test says otherwise, and writes the alert into a trace:
/// "! {message} | {informative text} | {buttons}".
class ScriptedAlertPresenter final : public AlertPresenter {
public:
    explicit ScriptedAlertPresenter(QStringList& trace)
        : m_trace(trace) {}

    QFuture<int> present(const Alert& alert) override {
        m_trace.append(QStringLiteral("! ") + alert.message + QStringLiteral(" | ") + alert.informativeText +
                       QStringLiteral(" | ") + alert.buttons.join(QStringLiteral(", ")));
        return m_isHolding ? heldBack() : QtFuture::makeReadyFuture(0);
    }

    void shutDown() override {
        m_isHolding = false;
        answer(0);
    }

    /// From now on alerts stay open until they are answered.
    void hold() { m_isHolding = true; }
    qsizetype openCount() const { return static_cast<qsizetype>(m_open.size()); }
    /// Presses a button of all open alerts.
    void answer(int button) {
        for (QPromise<int>& promise : std::exchange(m_open, {})) {
            promise.addResult(button);
            promise.finish();
        }
    }

private:
    QFuture<int> heldBack() {
        QPromise<int>& promise = m_open.emplace_back();
        promise.start();
        return promise.future();
    }

    QStringList& m_trace;
    bool m_isHolding = false;
    std::vector<QPromise<int>> m_open;
};

} // namespace quorvane
