#pragma once

#include "lock/UnlockGate.h"

namespace quorvane {

/// Keeps nobody out: of a session that has no lock of its own.
class OpenGate final : public UnlockGate {
public:
    QCoro::Task<bool> requireUnlock(QString action) override;
    bool isUnlocked() const override { return true; }

private:
    void autoLockHeld() override {}
    void autoLockReleased() override {}
};

} // namespace quorvane
