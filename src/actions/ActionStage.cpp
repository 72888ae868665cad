#include "actions/ActionStage.h"

#include "actions/ActionTexts.h"
#include "actions/SheetModel.h"
#include "platform/CommandLauncher.h"
#include "snapshots/FirstBaseline.h"
#include "system/SystemManager.h"

#include <QCoroTask>

#include <exception>
#include <memory>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using ShownPreview = std::shared_ptr<std::optional<ProfileApplyPreview>>;

QCoro::Task<ReviewPreview> prepared(Review review, ShownPreview shown) {
    const ReviewPreview preview = co_await review.prepare();
    if (const auto* const ofProfile = std::get_if<ProfileApplyPreview>(&preview)) {
        *shown = *ofProfile;
    }
    co_return preview;
}

} // namespace

ActionStage::ActionStage(SystemManager& system, Turnstile& turnstile, UnlockGate& gate)
    : m_system(system)
    , m_turnstile(turnstile)
    , m_gate(gate) {}

QCoro::Task<ActionOutcome> ActionStage::run(ActionListener& listener, Body body) {
    Action action(*this, listener);
    if (!m_turnstile.isIdle()) {
        co_return std::move(action.outcome);
    }
    {
        const Turnstile::Hold passage = m_turnstile.open();
        if (!co_await endsProperly(body(action))) {
            action.outcome.succeeded = false;
        }
        co_await endsProperly(action.endReview());
    }
    if (action.outcome.wasCarriedOut) {
        co_await endsProperly(listener.readAnew(action.m_changed));
    }
    co_return std::move(action.outcome);
}

QCoro::Task<bool> ActionStage::endsProperly(QCoro::Task<void> task) {
    try {
        co_await std::move(task);
        co_return true;
    } catch (const std::exception& error) {
        m_system.log(u"  [ERROR] "_s + QString::fromUtf8(error.what()));
        co_return false;
    }
}

QCoro::Task<bool> Action::passesGate(QString activity) {
    co_return co_await m_stage.m_gate.requireUnlock(activity);
}

QCoro::Task<bool> Action::isAgreedTo(std::optional<Alert> question) {
    bool isAgreed = true;
    if (question && asks()) {
        isAgreed = co_await m_listener.ask(*question);
    }
    if (!isAgreed) {
        co_return false;
    }
    co_return mayGoOn();
}

QCoro::Task<bool> Action::isAgreedTo(Review review) {
    const auto preview = std::make_shared<std::optional<ProfileApplyPreview>>();
    Review shown = review;
    shown.prepare = [review, preview] { return prepared(review, preview); }; // it may outlive a review that is closed
    const bool isAgreed = co_await m_listener.review(shown);
    outcome.preview = *preview;
    if (!isAgreed) {
        co_return false;
    }
    m_agreedReview = review.subject;
    co_return mayGoOn();
}

/// A review that was agreed to doesn't stay without an end, whatever has become of the action.
QCoro::Task<void> Action::endReview() {
    if (m_agreedReview && outcome.wasCarriedOut) {
        showResult(resultPanel(*m_agreedReview, outcome));
    } else if (m_agreedReview) {
        m_listener.withdrawReview();
    }
    if (m_shownResult) {
        co_await *m_shownResult;
    }
}

QCoro::Task<bool> Action::endsProperly(QCoro::Task<void> step) {
    return m_stage.endsProperly(std::move(step));
}

QCoro::Task<bool> Action::keepsWayBack() {
    SystemManager& system = m_stage.m_system;
    if (hasOwnCapture(system.host().files, system.host().machine)) {
        co_return true;
    }
    std::optional<QString> failure;
    {
        const Turnstile::Hold busy = waiting(kKeepingSettings);
        try {
            failure = co_await system.keepSettingsBeforeFirstChange();
        } catch (const std::exception& error) {
            failure = QString::fromUtf8(error.what());
        }
    }
    if (system.host().commands.isShutDown()) {
        co_return false; // the program quits: nobody is there to be asked
    }
    const std::optional<Alert> question = failure ? std::optional(noWayBackQuestion(*failure)) : std::nullopt;
    co_return co_await isAgreedTo(question);
}

bool Action::mayGoOn() const {
    return m_stage.m_gate.isUnlocked() && !m_stage.m_system.isBusy();
}

void Action::carryOutAtOnce(Anew changed) {
    outcome.wasCarriedOut = true;
    m_changed = changed;
}

Turnstile::Hold Action::carryingOut(const QString& text, Anew changed) {
    carryOutAtOnce(changed);
    return m_stage.m_turnstile.busy(text);
}

void Action::showResult(const ResultPanel& panel) {
    m_agreedReview.reset();
    m_shownResult = m_listener.showResult(panel);
}

void Action::show(const std::shared_ptr<SheetModel>& sheet) {
    m_listener.showSheet(sheet);
}

QCoro::Task<void> Action::tell(ClosingAlert alert) {
    outcome.alert = alert;
    co_await m_listener.tell(alert);
}

} // namespace quorvane
