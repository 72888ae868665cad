#pragma once

#include "platform/AlertStyle.h"

#include <QFuture>
#include <QString>
#include <QStringList>

#include <optional>

namespace quorvane {

/// What an alert says.
struct Alert {
    QString message;
    QString informativeText;
    QStringList buttons;                    ///< the first stands where the default stands
    int cancelButton = 0;                   ///< leaves everything as it is; a single button is its own
    std::optional<int> destructiveButton{}; ///< what it does can't be taken back
    AlertStyle style = AlertStyle::Informational;

    bool isReturnSafe = true; ///< false where a key that was meant for something else mustn't decide

    /// The one that Return presses; none where it presses nothing.
    std::optional<int> returnButton() const {
        return isReturnSafe ? std::optional(destructiveButton == 0 ? cancelButton : 0) : std::nullopt;
    }

    bool operator==(const Alert&) const = default;
};

/// Alerts, modal to the program. Main thread.
class AlertPresenter {
public:
    AlertPresenter() = default;
    AlertPresenter(const AlertPresenter&) = delete;
    AlertPresenter& operator=(const AlertPresenter&) = delete;
    virtual ~AlertPresenter() = default;

    /// Finishes with the index of the button that was pressed, while the event loop goes on. Escape and closing press the
    /// cancel button. The future is never cancelled and holds no exception.
    virtual QFuture<int> present(const Alert& alert) = 0;

    /// Takes away the alerts that are open, by their cancel buttons.
    virtual void cancelOpen() = 0;

    /// The same, and every later one is answered so, too, without being shown; see CommandLauncher::shutDown.
    virtual void shutDown() = 0;
};

} // namespace quorvane
