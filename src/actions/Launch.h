#pragma once

#include "actions/BaselinePromptSchedule.h"
#include "actions/InterruptionSchedule.h"

namespace quorvane {

class ActionListener;
class AppearanceManager;
class Session;

/// What happens by itself when a main window appears. Nothing of it is in the way of the first picture. It outlives its
/// tasks. Main thread.
class Launch {
public:
    struct Parts {
        Session& session;
        Clock& clock;
        AppearanceManager& appearance;
        LockManager& lock;
        ActionListener& listener;
    };
    explicit Launch(const Parts& parts);

    /// To be called before it is painted: the look, the lock.
    void windowAppeared();
    /// To be called when it has been painted for the first time: what looks at the disk and the Mac, most of it once per start.
    void windowPainted();
    void windowClosed();

private:
    QCoro::Task<void> lookAround();

    Parts m_parts;
    BaselinePromptSchedule m_baselinePrompt;
    InterruptionSchedule m_interruption;
};

} // namespace quorvane
