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

    QFuture<int> present(const Alert& alert) override;
    void cancelOpen() override;
    void shutDown() override;

    /// From now on this button is pressed, and no longer the first.
    void press(int button) { m_pressed = button; }

    /// From now on alerts stay open until they are answered.
    void hold() { m_isHolding = true; }
    qsizetype openCount() const;
    /// Of the alert that came last.
    AlertStyle lastStyle() const { return m_lastStyle; }
    /// Presses a button of all open alerts.
    void answer(int button);

private:
    QFuture<int> heldBack(int cancelButton);

    QStringList& m_trace;
    bool m_isHolding = false;
    bool m_isShutDown = false;
    int m_pressed = 0;
    AlertStyle m_lastStyle = AlertStyle::Informational;
    std::vector<std::pair<QPromise<int>, int>> m_open; ///< with their cancel buttons
};

} // namespace quorvane
