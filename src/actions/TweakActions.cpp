#include "actions/TweakActions.h"

#include "actions/ActionStage.h"
#include "actions/ActionTexts.h"
#include "system/SystemManager.h"

#include <QCoroTask>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kRevertActivity = u"revert performance tweaks"_s;
const QString kReverting = u"Reverting performance tweaks…"_s;

} // namespace

QCoro::Task<ActionOutcome> TweakActions::execute(const PerformanceSettings& settings, const CleanReboot& cleanReboot,
                                                 ActionListener& listener) {
    return m_stage.run(listener, [=, this](Action& action) -> QCoro::Task<void> {
        if (!co_await action.passesGate(u"apply performance tweaks"_s)) {
            co_return;
        }
        Review review = reviewOf(ReviewSubject::Tweaks);
        review.prepare = [=, this] { return preview(settings, cleanReboot); };
        if (!co_await action.isAgreedTo(review)) {
            co_return;
        }
        const UnlockGate::AutoLockSuppression noAutoLock = action.suppressAutoLock();
        if (!co_await action.keepsWayBack()) {
            co_return;
        }
        const Turnstile::Hold busy = action.carryingOut(review.busyText, {.match = true});
        action.outcome.succeeded = co_await m_system.applyPerformanceTweaks(settings, cleanReboot);
        action.outcome.verification = co_await verification(settings, cleanReboot);
        action.showResult(resultPanel(ReviewSubject::Tweaks, action.outcome));
    });
}

/// An apply whose administrator run failed has verified nothing; what ran as the user before is in force all the same.
QCoro::Task<ApplyVerificationResult> TweakActions::verification(PerformanceSettings settings, CleanReboot cleanReboot) {
    std::optional<ApplyVerificationResult> found = m_system.lastApplyVerification();
    if (!found) {
        found = co_await m_system.verifyAppliedSettings(settings, UnselectedTweaks::Ignored, cleanReboot);
    }
    co_return *found;
}

QCoro::Task<ReviewPreview> TweakActions::preview(PerformanceSettings settings, CleanReboot cleanReboot) {
    co_return co_await m_system.previewTweaks(settings, cleanReboot);
}

QCoro::Task<ActionOutcome> TweakActions::undo(ActionListener& listener) {
    return m_stage.run(listener, [this](Action& action) -> QCoro::Task<void> {
        if (!co_await action.passesGate(kRevertActivity)) {
            co_return;
        }
        const std::optional<FoundBaseline> found = co_await foundForTheQuestion(action);
        const std::optional<Alert> question =
            found ? std::optional(undoQuestion(found->baseline.has_value())) : std::nullopt;
        if (!co_await action.isAgreedTo(question)) {
            co_return;
        }
        RestoreOutcome restore;
        {
            const Turnstile::Hold busy = action.carryingOut(kReverting, {.match = true});
            restore = co_await m_system.undoTweaks(found);
        }
        action.outcome.restore = restore;
        action.outcome.succeeded = restore.succeeded;
        co_await action.tell(undoAlert(restore));
    });
}

/// None where nobody is there to be asked: it isn't looked for a baseline then.
QCoro::Task<std::optional<FoundBaseline>> TweakActions::foundForTheQuestion(Action& action) {
    std::optional<FoundBaseline> found;
    if (action.asks()) {
        found = co_await m_system.findRestoreBaseline();
    }
    co_return found;
}

QCoro::Task<ActionOutcome> TweakActions::revertAll(ActionListener& listener) {
    return m_stage.run(listener, [this](Action& action) -> QCoro::Task<void> {
        if (!co_await action.passesGate(kRevertActivity)) {
            co_return;
        }
        const QSet<QString> managedBefore = m_system.managedStartupAppPaths();
        RestoreOutcome restore;
        {
            const Turnstile::Hold busy = action.carryingOut(kReverting, {.match = true});
            restore = co_await m_system.undoTweaks();
        }
        action.outcome.restore = restore;
        action.outcome.succeeded = restore.succeeded;
        const bool isUnchanged = m_system.managedStartupAppPaths() == managedBefore;
        const LoginItemsAre loginItems = isUnchanged ? LoginItemsAre::Unchanged : LoginItemsAre::Changed;
        co_await action.tell(revertAllAlert(restore, loginItems));
    });
}

} // namespace quorvane
