#pragma once

#include "platform/simulated/BiometricPrompt.h"
#include "ui/pieces/SystemDialog.h"

namespace quorvane {

/// The dialog in which a simulated Mac asks for a finger.
class FingerDialog final : public SystemDialog {
    Q_OBJECT

public:
    explicit FingerDialog(const QString& reason);

    /// The Cancel button.
    void reject() override;

Q_SIGNALS:
    /// Once.
    void answered(BiometricAnswer answer);

private:
    void end(BiometricAnswer answer);

    bool m_isAnswered = false;
};

} // namespace quorvane
