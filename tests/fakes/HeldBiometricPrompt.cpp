#include "fakes/HeldBiometricPrompt.h"

namespace quorvane {

QFuture<BiometricAnswer> HeldBiometricPrompt::ask(const QString& reason) {
    reasons.append(reason);
    QPromise<BiometricAnswer>& promise = m_open.emplace_back();
    promise.start();
    return promise.future();
}

void HeldBiometricPrompt::shutDown() {
    answer(BiometricAnswer::Cancel);
}

void HeldBiometricPrompt::answer(BiometricAnswer answer) {
    for (QPromise<BiometricAnswer>& promise : std::exchange(m_open, {})) {
        promise.addResult(answer);
        promise.finish();
    }
}

} // namespace quorvane
