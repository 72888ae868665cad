#pragma once

#include <QFuture>
#include <QString>
#include <QStringList>

namespace quorvane {

/// What an alert says.
struct Alert {
    QString message;
    QString informativeText;
    QStringList buttons; ///< the first is the default

    bool operator==(const Alert&) const = default;
};

/// Alerts, modal to the program. Main thread.
class AlertPresenter {
public:
    AlertPresenter() = default;
    AlertPresenter(const AlertPresenter&) = delete;
    AlertPresenter& operator=(const AlertPresenter&) = delete;
    virtual ~AlertPresenter() = default;

    /// Finishes with the index of the button that was pressed, while the event loop goes on. The future is never cancelled
    /// and holds no exception.
    virtual QFuture<int> present(const Alert& alert) = 0;

    /// Takes away the alerts that are open, and answers them and every later one with their last button; see
    /// CommandLauncher::shutDown.
    virtual void shutDown() = 0;
};

} // namespace quorvane
