#pragma once

#include <QObject>

#include <functional>

namespace QCoro {
template <typename T>
class Task;
}

namespace quorvane {

class LockManager;
class SystemManager;
class Tasks;
class Turnstile;
struct ActionOutcome;

/// Says when the user is asked what is to become of a flow that was cut off: in a window that shows something, unlocked, before
/// anything looks at the Mac. It listens, and never polls. It outlives its tasks. Main thread.
class InterruptionSchedule : public QObject {
    Q_OBJECT

public:
    struct Parts {
        SystemManager& system;
        Tasks& tasks;
        Turnstile& turnstile;
        LockManager& lock;
    };
    /// @param offer    asks, and carries out the answer
    /// @param proceed  called once: there is nothing to ask, or it was answered
    InterruptionSchedule(const Parts& parts, std::function<QCoro::Task<ActionOutcome>()> offer,
                         std::function<void()> proceed, QObject* parent = nullptr);

    void windowPainted();

private:
    void update();
    QCoro::Task<void> ask();
    void settle();

    Parts m_parts;
    std::function<QCoro::Task<ActionOutcome>()> m_offer;
    std::function<void()> m_proceed;
    bool m_isToAsk = false;
    bool m_isAsking = false;
    bool m_isSettled = false; ///< for this start
};

} // namespace quorvane
