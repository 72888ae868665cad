#pragma once

#include <QObject>

#include <functional>

namespace QCoro {
template <typename T>
class Task;
}

namespace quorvane {

class ActiveProfile;
class Clock;
class LockManager;
class MasterSystemBaselineManager;
class SystemScans;
class Tasks;
class Turnstile;

/// Says when the master baseline is offered: once per start of the program, where there is none yet, in a window that the user
/// has had a moment to look at, when nothing is in the way. It listens, and never polls. It outlives its tasks. Main thread.
class BaselinePromptSchedule : public QObject {
    Q_OBJECT

public:
    struct Parts {
        Clock& clock;
        Tasks& tasks;
        Turnstile& turnstile;
        SystemScans& scans;
        ActiveProfile& active;
        LockManager& lock;
        MasterSystemBaselineManager& baselines;
    };
    /// @param offer  called once at most, when an action may begin
    BaselinePromptSchedule(const Parts& parts, std::function<void()> offer, QObject* parent = nullptr);

    void windowAppeared();
    /// Where nothing was offered by then, the next window may see it.
    void windowClosed();

private:
    QCoro::Task<void> waitForTheUser(int window);
    void update();
    bool isTheMoment() const;
    QCoro::Task<void> offerWhereThereIsNone();

    Parts m_parts;
    std::function<void()> m_offer;
    int m_window = 0;         ///< which one; another number after each appearance and each closing
    bool m_wasSeen = false;   ///< that window has been there for a moment
    bool m_isLooking = false; ///< for a baseline
    bool m_isSettled = false; ///< for this start
};

} // namespace quorvane
