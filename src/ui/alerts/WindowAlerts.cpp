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
    showNext();
    return answer;
}

std::deque<WindowAlerts::Pending>::iterator WindowAlerts::next() {
    return std::find_if(m_pending.begin(), m_pending.end(),
                        [this](const Pending& pending) { return pending.isOfLock || !m_isLocked; });
}

/// When nothing else is left to do: what led to the alert is painted first.
void WindowAlerts::showNext() {
    if (m_dialog == nullptr && next() != m_pending.end()) {
        m_whenIdle.start();
    }
}

void WindowAlerts::show() {
    const auto shown = next();
    if (m_dialog != nullptr || shown == m_pending.end()) {
        return;
    }
    std::rotate(m_pending.begin(), shown, shown + 1);
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
    give(m_pending.begin(), button);
}

void WindowAlerts::give(const std::deque<Pending>::iterator& pending, int button) {
    Pending answered = std::move(*pending);
    m_pending.erase(pending);
    answered.answer.addResult(button);
    answered.answer.finish();
    showNext();
}

/// Also one that is about to be shown.
void WindowAlerts::cancelOpen() {
    if (m_dialog != nullptr) {
        m_dialog->reject();
    } else if (const auto coming = next(); coming != m_pending.end()) {
        give(coming, coming->alert.cancelButton);
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
            give(m_pending.begin(), m_pending.front().alert.cancelButton);
        } else {
            m_dialog->reject();
        }
    }
}

} // namespace quorvane
