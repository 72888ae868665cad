#pragma once

#include "platform/simulated/AuthorizationPrompt.h"
#include "simulator/Machine.h"

#include <QList>
#include <QObject>
#include <QPointer>

namespace quorvane {

class AuthorizationDialog;

/// Asks whoever sits before the simulated Mac for its administrator password, by dialogs like the system's.
class AuthorizationDialogs final : public QObject, public AuthorizationPrompt {
    Q_OBJECT

public:
    AuthorizationDialogs() = default;
    ~AuthorizationDialogs() override;

    /// Whose password it is. To be called before anything is asked.
    void setMachine(const macsim::Machine& machine) { m_machine = machine; }
    QFuture<macsim::Authorization> ask(const QString& prompt) override;
    /// Cancels the dialogs that are open, and each later one at once.
    void shutDown();

private:
    macsim::Machine m_machine;
    QList<QPointer<AuthorizationDialog>> m_dialogs;
    bool m_isShutDown = false;
};

} // namespace quorvane
