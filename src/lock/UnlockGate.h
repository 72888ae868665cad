#pragma once

#include <QString>

namespace QCoro {
template <typename T>
class Task;
}

namespace quorvane {

/// The gate before everything that changes the system, as those see it who want to pass. It outlives them. Main thread.
class UnlockGate {
public:
    UnlockGate() = default;
    UnlockGate(const UnlockGate&) = delete;
    UnlockGate& operator=(const UnlockGate&) = delete;
    virtual ~UnlockGate() = default;

    /// @param action  "switch profiles"
    /// @return false when the gate is closed; the user has been told by then
    virtual QCoro::Task<bool> requireUnlock(QString action) = 0;
    /// The same without a word.
    virtual bool isUnlocked() const = 0;
    /// While it is true, the gate stays as it is when the program loses the active state.
    virtual void setSuppressAutoLock(bool suppresses) = 0;
};

} // namespace quorvane
