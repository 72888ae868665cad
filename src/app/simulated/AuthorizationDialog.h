#pragma once

#include "platform/simulated/PasswordAttempts.h"
#include "simulator/Machine.h"
#include "ui/pieces/SystemDialog.h"

class QLineEdit;

namespace quorvane {

class TextLabel;

/// The dialog in which a simulated Mac asks for its administrator's password. It says in small letters that this is a simulated
/// Mac, and the password.
class AuthorizationDialog final : public SystemDialog {
    Q_OBJECT

public:
    /// @param prompt  what the script says that it is for
    AuthorizationDialog(const QString& prompt, const macsim::Machine& machine);

    /// The Cancel button.
    void reject() override;

Q_SIGNALS:
    /// Once.
    void answered(macsim::Authorization authorization);

private:
    void submit();
    void end(macsim::Authorization authorization);

    PasswordAttempts m_attempts;
    QLineEdit* m_password;
    TextLabel* m_error;
    bool m_isAnswered = false;
};

} // namespace quorvane
