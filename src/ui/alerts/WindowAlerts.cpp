#include "ui/alerts/WindowAlerts.h"

#include "ui/alerts/AlertDialog.h"

#include <QWidget>

#include <algorithm>
#include <utility>

namespace quorvane {

WindowAlerts::WindowAlerts(Workspace& workspace, std::function<QWidget*()> mainWindow, QObject* parent)
    : QObject(parent)
    , m_workspace(workspace)
    , m_mainWindow(std::move(mainWindow)) {}

WindowAlerts::~WindowAlerts() {
    delete m_dialog;
}

QFuture<int> WindowAlerts::present(const Alert& alert) {
    return enqueue(alert, false);
}

QFuture<int> WindowAlerts::enqueue(const Alert& alert, bool isOfLock) {
    if (m_isShutDown) {
        return QtFuture::makeReadyFuture(alert.cancelButton);
    }
    Pending& pending = m_pending.emplace_back(Pending{alert, isOfLock, {}});
    pending.answer.start();
    const QFuture<int> answer = pending.answer.future();
    showNext();
    return answer;
}

void WindowAlerts::showNext() {
    const auto next = std::find_if(m_pending.begin(), m_pending.end(),
                                   [this](const Pending& pending) { return pending.isOfLock || !m_isLocked; });
    if (m_dialog != nullptr || next == m_pending.end()) {
        return;
    }
    std::rotate(m_pending.begin(), next, next + 1);
    QWidget* const window = m_mainWindow();
    if (window == nullptr) {
        m_workspace.activateIgnoringOtherApps();
    }
    m_dialog = new AlertDialog(m_pending.front().alert);
    connect(m_dialog, &AlertDialog::answered, this, &WindowAlerts::answer);
    m_dialog->showOver(window);
}

void WindowAlerts::answer(int button) {
    Pending answered = std::move(m_pending.front());
    m_pending.pop_front();
    m_dialog.clear();
    answered.answer.addResult(button);
    answered.answer.finish();
    showNext();
}

void WindowAlerts::cancelOpen() {
    if (m_dialog != nullptr) {
        m_dialog->reject();
    }
}

void WindowAlerts::setLocked(bool isLocked) {
    m_isLocked = isLocked;
    showNext();
}

void WindowAlerts::shutDown() {
    m_isShutDown = true;
    while (!m_pending.empty()) {
        if (m_dialog == nullptr) {
            Pending waiting = std::move(m_pending.front());
            m_pending.pop_front();
            waiting.answer.addResult(waiting.alert.cancelButton);
            waiting.answer.finish();
        } else {
            m_dialog->reject();
        }
    }
}

} // namespace quorvane
