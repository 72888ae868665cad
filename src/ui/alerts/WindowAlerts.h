#pragma once

#include "platform/AlertPresenter.h"
#include "platform/Workspace.h"

#include <QObject>
#include <QPointer>
#include <QPromise>
#include <QTimer>

#include <deque>
#include <functional>

namespace quorvane {

class AlertDialog;

/// Alerts as dialogs: one at a time, over the main window where there is one. Without one an alert stands alone and brings the
/// program forward. While the program is locked only the lock's own are shown; others wait until it is unlocked.
class WindowAlerts final : public QObject, public AlertPresenter {
    Q_OBJECT

public:
    /// @param mainWindow  the one that is there now; null without one
    WindowAlerts(Workspace& workspace, std::function<QWidget*()> mainWindow, QObject* parent = nullptr);
    ~WindowAlerts() override;

    QFuture<int> present(const Alert& alert) override;
    void cancelOpen() override;
    void shutDown() override;

    /// Those of the lock, which are shown while the program is locked.
    AlertPresenter& ofLock() { return m_ofLock; }
    void setLocked(bool isLocked);

private:
    struct Pending {
        Alert alert;
        bool isOfLock = false;
        QPromise<int> answer;
    };
    class OfLock final : public AlertPresenter {
    public:
        explicit OfLock(WindowAlerts& alerts)
            : m_alerts(alerts) {}
        QFuture<int> present(const Alert& alert) override { return m_alerts.enqueue(alert, true); }
        void cancelOpen() override { m_alerts.cancelOpen(); }
        void shutDown() override { m_alerts.shutDown(); }

    private:
        WindowAlerts& m_alerts;
    };

    QFuture<int> enqueue(const Alert& alert, bool isOfLock);
    void openNext();
    void show();
    /// The first one; nothing of it remains.
    void answer(int button);

    Workspace& m_workspace;
    std::function<QWidget*()> m_mainWindow;
    OfLock m_ofLock{*this};
    std::deque<Pending> m_pending;
    bool m_isOpen = false; ///< the first of them is shown, or about to be
    QTimer m_whenIdle;
    QPointer<AlertDialog> m_dialog;
    bool m_isLocked = false;
    bool m_isShutDown = false;
};

} // namespace quorvane
