#include "actions/SystemActions.h"

#include "actions/ActionStage.h"
#include "actions/ActionTexts.h"
#include "actions/ActiveProfile.h"
#include "actions/MasterBaselineOffer.h"
#include "actions/SystemScans.h"
#include "startup/apply/StartupVerification.h"

#include <QCoroTask>

namespace quorvane {

using namespace Qt::StringLiterals;

SystemActions::SystemActions(ActionStage& stage, SystemManager& system, SystemScans& scans, const ActiveProfile& active)
    : m_stage(stage)
    , m_system(system)
    , m_scans(scans)
    , m_active(active) {}

QCoro::Task<ActionOutcome> SystemActions::verify(ActionListener& listener) {
    return m_stage.run(listener, [this](Action& action) -> QCoro::Task<void> {
        {
            const Turnstile::Hold busy = action.carryingOut(u"Verifying system settings…"_s);
            action.outcome.match = co_await m_scans.scanned();
        }
        action.outcome.succeeded = action.outcome.match && !action.outcome.match->isKept;
        co_await action.tell(systemMatchAlert(action.outcome.match));
    });
}

QCoro::Task<ActionOutcome> SystemActions::saveSnapshot(const std::optional<QString>& label,
                                                       SystemManager::MasterArchive archive, ActionListener& listener) {
    return m_stage.run(listener, [=, this](Action& action) -> QCoro::Task<void> {
        if (!co_await action.passesGate(u"save a system snapshot"_s)) {
            co_return;
        }
        if (!co_await action.isAgreedTo(questionBeforeSnapshot(m_active.current()))) {
            co_return;
        }
        {
            const Turnstile::Hold busy = action.carryingOut(u"Saving system snapshot…"_s, {.snapshot = true});
            action.outcome.capture = co_await m_system.captureSystemSnapshot(label, archive);
        }
        action.outcome.succeeded = isComplete(*action.outcome.capture, archive);
        co_await action.tell(snapshotAlert(*action.outcome.capture, archive));
    });
}

QCoro::Task<ActionOutcome> SystemActions::offerMasterBaseline(ActionListener& listener) {
    return m_stage.run(listener, [this](Action& action) -> QCoro::Task<void> {
        const auto offer = std::make_shared<MasterBaselineOffer>();
        action.show(offer);
        bool isWanted = co_await offer->answer();
        while (isWanted) {
            co_await createMasterBaseline(action, offer);
            isWanted = co_await offer->answer();
        }
    });
}

/// What keeps it from being created leaves it offered.
QCoro::Task<void> SystemActions::createMasterBaseline(Action& action, std::shared_ptr<MasterBaselineOffer> offer) {
    if (!co_await action.passesGate(u"create the master system baseline"_s)) {
        co_return;
    }
    if (!co_await action.isAgreedTo(questionBeforeSnapshot(m_active.current()))) {
        co_return;
    }
    if (offer->isOver()) {
        co_return;
    }
    const Turnstile::Hold busy = action.carryingOut(kCapturingBaseline, {.snapshot = true});
    offer->beginSaving();
    action.outcome.succeeded = false;
    co_await action.endsProperly(captureMasterBaseline(action));
    offer->endSaving(action.outcome.succeeded);
}

/// What was written counts, and not what the writing says of itself.
QCoro::Task<void> SystemActions::captureMasterBaseline(Action& action) {
    const std::optional<QString> label = u"Master baseline"_s;
    action.outcome.capture = co_await m_system.captureSystemSnapshot(label, MasterArchive::Yes);
    action.outcome.succeeded = co_await m_system.masterBaselines().hasMasterBaseline();
}

QCoro::Task<ActionOutcome> SystemActions::reinstate(ActionListener& listener) {
    return m_stage.run(listener, [this](Action& action) -> QCoro::Task<void> {
        if (!co_await action.passesGate(u"reinstate the system"_s)) {
            co_return;
        }
        const std::optional<FoundBaseline> found = co_await foundForTheQuestion(action);
        const std::optional<Alert> question =
            found ? std::optional(reinstateQuestion(found->baseline.has_value())) : std::nullopt;
        if (!co_await action.isAgreedTo(question)) {
            co_return;
        }
        RestoreOutcome restore;
        {
            const Turnstile::Hold busy =
                action.carryingOut(u"Reinstating system…"_s, {.match = true, .startupItems = true});
            restore = co_await m_system.reinstateWholeSystem(found);
        }
        action.outcome.restore = restore;
        action.outcome.succeeded = restore.succeeded;
        co_await action.tell(reinstateAlert(restore));
    });
}

/// None where nobody is there to be asked: it isn't looked for a baseline then.
QCoro::Task<std::optional<FoundBaseline>> SystemActions::foundForTheQuestion(Action& action) {
    std::optional<FoundBaseline> found;
    if (action.asks()) {
        const Turnstile::Hold busy = action.waiting();
        found = co_await m_system.findRestoreBaseline();
    }
    co_return found;
}

QCoro::Task<ActionOutcome> SystemActions::showChanges(ActionListener& listener) {
    return m_stage.run(listener, [this](Action& action) -> QCoro::Task<void> {
        const std::optional<LastFlowStanding> standing = m_system.lastFlowStanding();
        if (standing && !standing->changed.isEmpty()) {
            co_await action.tell(changesAlert(*standing));
        }
    });
}

QCoro::Task<ActionOutcome> SystemActions::showAbout(ActionListener& listener) {
    return m_stage.run(listener, [](Action& action) { return action.tell(aboutAlert()); });
}

QCoro::Task<ActionOutcome> SystemActions::applyStartup(const StartupConfiguration& configuration,
                                                       ActionListener& listener) {
    return m_stage.run(listener, [=, this](Action& action) -> QCoro::Task<void> {
        if (!co_await action.passesGate(u"apply startup changes"_s)) {
            co_return;
        }
        Review review = reviewOf(ReviewSubject::Startup);
        review.prepare = [=, this] { return preview(configuration); };
        if (!co_await action.isAgreedTo(review)) {
            co_return;
        }
        StartupApplyResult result;
        {
            const UnlockGate::AutoLockSuppression noAutoLock = action.suppressAutoLock();
            if (!co_await action.keepsWayBack()) {
                co_return;
            }
            const Turnstile::Hold busy = action.carryingOut(review.busyText, {.match = true, .startupItems = true});
            result = co_await m_system.applyStartupChanges(configuration);
            action.outcome.succeeded = result.applySucceeded;
            action.outcome.verification = result.verification;
            action.showResult(resultPanel(ReviewSubject::Startup, action.outcome));
        }
        co_await action.tell(startupAlert(result));
    });
}

QCoro::Task<ReviewPreview> SystemActions::preview(StartupConfiguration configuration) {
    co_return co_await m_system.previewStartupChanges(configuration);
}

} // namespace quorvane
