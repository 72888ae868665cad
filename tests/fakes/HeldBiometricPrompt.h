#pragma once

#include "platform/simulated/BiometricPrompt.h"

#include <QPromise>

#include <utility>
#include <vector>

namespace quorvane {

/// Somebody who takes his time: every prompt of a simulated Mac stands open until a test answers it.
class HeldBiometricPrompt final : public BiometricPrompt {
public:
    QStringList reasons;

    QFuture<BiometricAnswer> ask(const QString& reason) override {
        reasons.append(reason);
        QPromise<BiometricAnswer>& promise = m_open.emplace_back();
        promise.start();
        return promise.future();
    }
    void shutDown() override { answer(BiometricAnswer::Cancel); }

    /// Answers all open prompts.
    void answer(BiometricAnswer answer) {
        for (QPromise<BiometricAnswer>& promise : std::exchange(m_open, {})) {
            promise.addResult(answer);
            promise.finish();
        }
    }

private:
    std::vector<QPromise<BiometricAnswer>> m_open;
};

} // namespace quorvane
