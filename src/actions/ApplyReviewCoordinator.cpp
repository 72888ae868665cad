#include "actions/ApplyReviewCoordinator.h"

#include "actions/ProfileActions.h"
#include "actions/SystemActions.h"
#include "actions/Tasks.h"
#include "actions/Turnstile.h"
#include "actions/TweakActions.h"
#include "platform/Clock.h"
#include "platform/Workspace.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <exception>
#include <utility>

namespace quorvane {

ApplyReviewCoordinator::ApplyReviewCoordinator(const Parts& parts, QObject* parent)
    : QObject(parent)
    , m_parts(parts) {}

void ApplyReviewCoordinator::bringForward() {
    m_parts.workspace.activateIgnoringOtherApps();
    if (ensureMainWindowVisible) {
        ensureMainWindowVisible();
    }
    m_parts.workspace.makeWindowsKeyAndOrderFront();
}

// ---- For pages and menu

void ApplyReviewCoordinator::presentProfile(const UnifiedProfile& profile, ActionListener& listener,
                                            const std::function<void(const ProfileApplyResult&)>& onApplied) {
    const Start start = [=, this, &listener] { return m_parts.profiles.review(profile, listener); };
    const End end = [=](const ActionOutcome& outcome) {
        if (onApplied) {
            onApplied({outcome.succeeded, outcome.verification.value_or(ApplyVerificationResult{}), profile.name});
        }
    };
    m_parts.tasks.start(present(start, end));
}

void ApplyReviewCoordinator::presentTweaks(const PerformanceSettings& settings, const CleanReboot& cleanReboot,
                                           ActionListener& listener,
                                           const std::function<void(const TweaksApplyResult&)>& onApplied) {
    const Start start = [=, this, &listener] { return m_parts.tweaks.execute(settings, cleanReboot, listener); };
    const End end = [=](const ActionOutcome& outcome) {
        if (onApplied) {
            onApplied({outcome.succeeded, outcome.verification.value_or(ApplyVerificationResult{})});
        }
    };
    m_parts.tasks.start(present(start, end));
}

void ApplyReviewCoordinator::presentStartup(const StartupConfiguration& configuration, ActionListener& listener,
                                            const std::function<void(const StartupApplyResult&)>& onApplied) {
    const Start start = [=, this, &listener] { return m_parts.system.applyStartup(configuration, listener); };
    const End end = [=](const ActionOutcome& outcome) {
        if (onApplied) {
            onApplied({outcome.succeeded, outcome.verification.value_or(ApplyVerificationResult{})});
        }
    };
    m_parts.tasks.start(present(start, end));
}

QCoro::Task<void> ApplyReviewCoordinator::present(Start start, End end) {
    ActionOutcome outcome;
    if (m_parts.turnstile.isIdle()) {
        outcome = co_await start();
    } else {
        bringForward();
    }
    end(outcome);
}

void ApplyReviewCoordinator::dismiss() {
    if (m_request) {
        const std::shared_ptr<ApplyReview> review = m_request->review;
        review->close();
    }
}

// ---- For the listener

/// The sheet comes when the event loop has come round: until then the window isn't there, and isn't the one in front.
QCoro::Task<bool> ApplyReviewCoordinator::review(Review review) {
    if (m_isShutDown) {
        co_return false;
    }
    bringForward();
    co_await m_parts.clock.sleepFor(std::chrono::milliseconds(0));
    if (m_isShutDown || m_request) {
        co_return false;
    }
    const auto shown = std::make_shared<ApplyReview>(review);
    open(shown);
    const bool isAgreed = co_await shown->agreement();
    co_return isAgreed;
}

void ApplyReviewCoordinator::open(const std::shared_ptr<ApplyReview>& review) {
    connect(review.get(), &ApplyReview::closed, this, [this] {
        m_request.reset();
        Q_EMIT requestChanged();
    });
    m_request = ApplyReviewRequest{QUuid::createUuid(), review};
    Q_EMIT requestChanged();
    m_parts.tasks.start(load(review));
}

/// Without a preview there is nothing to agree to.
QCoro::Task<void> ApplyReviewCoordinator::load(std::shared_ptr<ApplyReview> review) {
    try {
        const ReviewPreview preview = co_await review->review().prepare();
        review->setPreview(preview);
    } catch (const std::exception&) {
        review->end();
        throw;
    }
}

QCoro::Task<void> ApplyReviewCoordinator::showResult(ResultPanel panel) {
    if (!m_request) {
        co_return; // taken away at the shut-down
    }
    const std::shared_ptr<ApplyReview> review = m_request->review;
    review->finish(panel);
    co_await review->closing();
}

void ApplyReviewCoordinator::withdrawReview() {
    if (m_request) {
        const std::shared_ptr<ApplyReview> review = m_request->review;
        review->end();
    }
}

void ApplyReviewCoordinator::shutDown() {
    m_isShutDown = true;
    withdrawReview();
}

} // namespace quorvane
