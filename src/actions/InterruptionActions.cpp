#include "actions/InterruptionActions.h"

#include "actions/ActionListener.h"
#include "actions/ActionStage.h"
#include "actions/InterruptionTexts.h"
#include "actions/ProfileActions.h"
#include "flows/InterruptedOutcome.h"
#include "platform/CommandLauncher.h"
#include "platform/Host.h"
#include "system/SystemManager.h"

#include <QCoroTask>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kActivity = u"take up what was interrupted"_s;
constexpr Anew kAll{.match = true, .startupItems = true, .snapshot = false, .backups = false};
/// At the start a scan follows anyway.
constexpr Anew kAllButMatch{.match = false, .startupItems = true, .snapshot = false, .backups = false};

} // namespace

InterruptionActions::InterruptionActions(ActionStage& stage, const Parts& parts)
    : m_stage(stage)
    , m_parts(parts) {}

QCoro::Task<ActionOutcome> InterruptionActions::offer(ActionListener& listener) {
    return m_stage.run(listener, [this](Action& action) -> QCoro::Task<void> {
        const std::optional<FlowRecord> interrupted = m_parts.system.interruptedFlow();
        if (!interrupted || !co_await action.passesGate(kActivity)) {
            co_return;
        }
        const Alert question = interruptionQuestion(*interrupted);
        const int pressed = co_await action.choose(question);
        if (!action.mayGoOn() || isQuitting()) {
            co_return; // it was taken away
        }
        switch (answerTo(question, pressed)) {
        case InterruptionAnswer::Finish:
            co_await carryOutFinish(action, *interrupted, kAllButMatch);
            break;
        case InterruptionAnswer::GoBack:
            co_await carryOutGoingBack(action, *interrupted, kAllButMatch);
            break;
        case InterruptionAnswer::LeaveAsIs:
            action.carryOutAtOnce();
            m_parts.system.forgetInterrupted();
            action.outcome.succeeded = true;
            break;
        }
    });
}

QCoro::Task<ActionOutcome> InterruptionActions::finish(ActionListener& listener) {
    return takeUp(listener, &InterruptionActions::carryOutFinish);
}

QCoro::Task<ActionOutcome> InterruptionActions::goBack(ActionListener& listener) {
    return takeUp(listener, &InterruptionActions::carryOutGoingBack);
}

QCoro::Task<ActionOutcome> InterruptionActions::takeUp(ActionListener& listener, CarryOut carryOut) {
    return m_stage.run(listener, [this, carryOut](Action& action) -> QCoro::Task<void> {
        const std::optional<FlowRecord> interrupted = m_parts.system.interruptedFlow();
        if (!interrupted) {
            co_await action.tell(nothingInterruptedAlert());
            co_return;
        }
        if (co_await action.passesGate(kActivity)) {
            co_await (this->*carryOut)(action, *interrupted, kAll);
        }
    });
}

QCoro::Task<void> InterruptionActions::carryOutFinish(Action& action, FlowRecord interrupted, Anew changed) {
    InterruptedOutcome outcome;
    {
        const UnlockGate::AutoLockSuppression noAutoLock = action.suppressAutoLock();
        const Turnstile::Hold busy = action.carryingOut(finishingText(interrupted), changed);
        outcome = co_await m_parts.system.finishInterrupted(interrupted);
    }
    action.outcome.succeeded = outcome.succeeded;
    action.outcome.restore = outcome.restore;
    action.outcome.verification = m_parts.system.lastApplyVerification();
    co_await follow(action, interrupted, outcome);
}

/// What a profile or Default leads to when it has been applied, and else what there is to tell.
QCoro::Task<void> InterruptionActions::follow(Action& action, FlowRecord interrupted, InterruptedOutcome outcome) {
    if (outcome.succeeded && interrupted.flow == RecordedFlow::Profile &&
        m_parts.profiles.isSaved(interrupted.profile)) {
        co_await m_parts.profiles.followAppliedProfile(action, interrupted.profile);
        co_return;
    }
    if (outcome.succeeded && interrupted.flow == RecordedFlow::Default) {
        co_await m_parts.profiles.followDefault(StartedFrom::Page);
    }
    co_await action.tell(finishedAlert(interrupted, outcome));
}

QCoro::Task<void> InterruptionActions::carryOutGoingBack(Action& action, FlowRecord interrupted, Anew changed) {
    if (isWayBack(interrupted.flow)) {
        co_await carryOutFinish(action, interrupted, changed);
        co_return;
    }
    InterruptedOutcome outcome;
    {
        const UnlockGate::AutoLockSuppression noAutoLock = action.suppressAutoLock();
        const Turnstile::Hold busy = action.carryingOut(goingBackText(interrupted), changed);
        outcome = co_await m_parts.system.goBackFromInterrupted(interrupted);
    }
    action.outcome.succeeded = outcome.succeeded;
    action.outcome.restore = outcome.restore;
    co_await action.tell(goneBackAlert(interrupted, outcome));
}

bool InterruptionActions::isQuitting() const {
    return m_parts.system.host().commands.isShutDown();
}

} // namespace quorvane
