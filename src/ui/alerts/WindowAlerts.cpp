#include "ui/alerts/WindowAlerts.h"

#include "ui/alerts/AlertDialog.h"

#include <QWidget>

#include <algorithm>
#include <utility>

namespace quorvane {

WindowAlerts::WindowAlerts(Workspace& workspace, std::function<QWidget*()> mainWindow, QObject* parent)
    : QObject(parent)
    , m_workspace(workspace)
    , m_mainWindow(std::move(mainWindow)) {
    m_whenIdle.setSingleShot(true);
    m_whenIdle.setInterval(0);
    connect(&m_whenIdle, &QTimer::timeout, this, &WindowAlerts::show);
}

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
    openNext();
    return answer;
}

void WindowAlerts::openNext() {
    const auto next = std::find_if(m_pending.begin(), m_pending.end(),
                                   [this](const Pending& pending) { return pending.isOfLock || !m_isLocked; });
    if (m_isOpen || next == m_pending.end()) {
        return;
    }
    std::rotate(m_pending.begin(), next, next + 1);
    m_isOpen = true;
    m_whenIdle.start();
}

/// When nothing else is left to do: what led to the alert is painted first.
void WindowAlerts::show() {
    if (!m_isOpen || m_dialog != nullptr) {
        return;
    }
    QWidget* const window = m_mainWindow();
    if (window == nullptr) {
        m_workspace.activateIgnoringOtherApps();
    }
    m_dialog = new AlertDialog(m_pending.front().alert);
    connect(m_dialog, &AlertDialog::answered, this, &WindowAlerts::answer);
    m_dialog->showOver(window);
}

void WindowAlerts::answer(int button) {
    m_dialog.clear();
    m_isOpen = false;
    Pending answered = std::move(m_pending.front());
    m_pending.pop_front();
    answered.answer.addResult(button);
    answered.answer.finish();
    openNext();
}

/// Also one that isn't shown yet.
void WindowAlerts::cancelOpen() {
    if (m_dialog != nullptr) {
        m_dialog->reject();
    } else if (m_isOpen) {
        answer(m_pending.front().alert.cancelButton);
    }
}

void WindowAlerts::setLocked(bool isLocked) {
    m_isLocked = isLocked;
    openNext();
}

void WindowAlerts::shutDown() {
    m_isShutDown = true;
    while (!m_pending.empty()) {
        if (m_dialog != nullptr) {
            m_dialog->reject();
        } else {
            answer(m_pending.front().alert.cancelButton);
        }
    }
}

} // namespace quorvane
