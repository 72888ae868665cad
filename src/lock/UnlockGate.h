#pragma once

#include <QString>

#include <utility>

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

    /// Keeps the gate as it is when the program loses the active state, until it ends with its scope. The gate outlives it.
    class AutoLockSuppression {
    public:
        AutoLockSuppression(AutoLockSuppression&& other) noexcept
            : m_gate(std::exchange(other.m_gate, nullptr)) {}
        AutoLockSuppression(const AutoLockSuppression&) = delete;
        AutoLockSuppression& operator=(const AutoLockSuppression&) = delete;
        AutoLockSuppression& operator=(AutoLockSuppression&&) = delete;
        ~AutoLockSuppression() {
            if (m_gate != nullptr) {
                m_gate->autoLockReleased();
            }
        }

    private:
        friend class UnlockGate;
        explicit AutoLockSuppression(UnlockGate& gate)
            : m_gate(&gate) {
            gate.autoLockHeld();
        }

        UnlockGate* m_gate;
    };

    /// The program's own prompts take the active state away, and don't lock it by that. Suppressions nest; when the last one ends
    /// while another program is the active one, the gate closes.
    [[nodiscard]] AutoLockSuppression suppressAutoLock() { return AutoLockSuppression(*this); }

private:
    virtual void autoLockHeld() = 0;
    virtual void autoLockReleased() = 0;
};

} // namespace quorvane
