#pragma once

#include "platform/simulated/BiometricPrompt.h"

#include <QPromise>

#include <utility>
#include <vector>

namespace quorvane {

/// Somebody who takes their time: every prompt of a simulated Mac stands open until a test answers it.
class HeldBiometricPrompt final : public BiometricPrompt {
public:
    QStringList reasons;

    QFuture<BiometricAnswer> ask(const QString& reason) override;
    void shutDown() override;

    /// Answers all open prompts.
    void answer(BiometricAnswer answer);

private:
    std::vector<QPromise<BiometricAnswer>> m_open;
};

} // namespace quorvane
