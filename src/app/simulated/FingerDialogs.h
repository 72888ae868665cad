#pragma once

#include "platform/simulated/BiometricPrompt.h"

#include <QList>
#include <QObject>
#include <QPointer>

class QDialog;

namespace quorvane {

/// Asks whoever sits before the simulated Mac for a finger, which has no sensor for one: by dialogs.
class FingerDialogs final : public QObject, public BiometricPrompt {
    Q_OBJECT

public:
    FingerDialogs() = default;
    ~FingerDialogs() override;

    QFuture<BiometricAnswer> ask(const QString& reason) override;
    void shutDown() override;

private:
    QList<QPointer<QDialog>> m_dialogs;
};

} // namespace quorvane
