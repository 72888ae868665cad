#pragma once

#include "actions/ActionOutcome.h"
#include "flows/FlowRecord.h"

namespace QCoro {
template <typename T>
class Task;
}

namespace quorvane {

class Action;
class ActionListener;
class ActionStage;
struct Anew;
class ProfileActions;
class SystemManager;
struct InterruptedOutcome;

/// What becomes of a flow that a run of the program was in when it ended.
class InterruptionActions {
public:
    struct Parts {
        SystemManager& system;
        ProfileActions& profiles;
    };
    InterruptionActions(ActionStage& stage, const Parts& parts);

    /// Asks the user, where there is one. A question that is taken away unanswered, by the lock or by the program's end, leaves it
    /// for the next time.
    QCoro::Task<ActionOutcome> offer(ActionListener& listener);
    // Without a question. Failed where there is nothing to do.
    QCoro::Task<ActionOutcome> finish(ActionListener& listener);
    QCoro::Task<ActionOutcome> goBack(ActionListener& listener);

private:
    using CarryOut = QCoro::Task<void> (InterruptionActions::*)(Action&, FlowRecord, Anew);

    QCoro::Task<ActionOutcome> takeUp(ActionListener& listener, CarryOut carryOut);
    QCoro::Task<void> carryOutFinish(Action& action, FlowRecord interrupted, Anew changed);
    QCoro::Task<void> carryOutGoingBack(Action& action, FlowRecord interrupted, Anew changed);
    QCoro::Task<void> follow(Action& action, FlowRecord interrupted, InterruptedOutcome outcome);
    bool isQuitting() const;

    ActionStage& m_stage;
    Parts m_parts;
};

} // namespace quorvane
