#include "actions/ActionStage.h"

#include "system/SystemManager.h"

#include <QCoroTask>

#include <exception>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

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
    Review shown = review;
    shown.prepare = [this, review] { return prepared(review); };
    if (!co_await m_listener.review(shown)) {
        co_return false;
    }
    co_return mayGoOn();
}

QCoro::Task<ReviewPreview> Action::prepared(Review review) {
    const ReviewPreview preview = co_await review.prepare();
    if (const auto* const ofProfile = std::get_if<ProfileApplyPreview>(&preview)) {
        outcome.preview = *ofProfile;
    }
    co_return preview;
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

QCoro::Task<void> Action::showResult(ResultPanel panel) {
    return m_listener.showResult(std::move(panel));
}

QCoro::Task<void> Action::tell(ClosingAlert alert) {
    outcome.alert = alert;
    co_await m_listener.tell(alert);
}

} // namespace quorvane
