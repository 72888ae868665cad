#pragma once

#include "actions/ActionOutcome.h"
#include "actions/ApplyResults.h"
#include "actions/ApplyReview.h"
#include "profiles/UnifiedProfile.h"
#include "startup/apply/StartupVerification.h"
#include "startup/items/CleanReboot.h"

#include <QObject>
#include <QUuid>

#include <functional>
#include <memory>
#include <optional>

namespace QCoro {
template <typename T>
class Task;
}

namespace quorvane {

class ActionListener;
class Clock;
class ProfileActions;
class SystemActions;
class Tasks;
class Turnstile;
class TweakActions;
class Workspace;

/// A review that is on the screen. Who shows it keeps it for as long as that.
struct ApplyReviewRequest {
    QUuid id; ///< another one each time, so that the same profile opens a new sheet
    std::shared_ptr<ApplyReview> review;
};

/// The one way to the review sheet, whatever the user is looking at. It outlives its tasks. Main thread.
class ApplyReviewCoordinator : public QObject {
    Q_OBJECT

public:
    struct Parts {
        Workspace& workspace;
        Clock& clock;
        Tasks& tasks;
        Turnstile& turnstile;
        ProfileActions& profiles;
        TweakActions& tweaks;
        SystemActions& system;
    };
    explicit ApplyReviewCoordinator(const Parts& parts, QObject* parent = nullptr);

    /// The main window shows its sheet while there is one.
    const std::optional<ApplyReviewRequest>& request() const { return m_request; }
    /// Opens or restores the main window. Set by who can.
    std::function<void()> ensureMainWindowVisible;
    /// Makes this the active program, with its main window in front.
    void bringForward();

    // ---- For pages and menu. While something runs or is open each only brings the window forward. The callback comes once,
    // ---- when all is over, whatever the outcome; it may be empty.

    void presentProfile(const UnifiedProfile& profile, ActionListener& listener,
                        const std::function<void(const ProfileApplyResult&)>& onApplied);
    void presentTweaks(const PerformanceSettings& settings, const CleanReboot& cleanReboot, ActionListener& listener,
                       const std::function<void(const TweaksApplyResult&)>& onApplied);
    void presentStartup(const StartupConfiguration& configuration, ActionListener& listener,
                        const std::function<void(const StartupApplyResult&)>& onApplied);
    /// Closes the review, unless it applies.
    void dismiss();

    // ---- For the listener of the window's actions: see ActionListener

    QCoro::Task<bool> review(Review review);
    QCoro::Task<void> showResult(ResultPanel panel);
    void withdrawReview();

    /// Closes what is open, also while it applies, and shows nothing from then on.
    void shutDown();

Q_SIGNALS:
    void requestChanged();

private:
    using Start = std::function<QCoro::Task<ActionOutcome>()>;
    using End = std::function<void(const ActionOutcome& outcome)>;
    QCoro::Task<void> present(Start start, End end);
    void open(const std::shared_ptr<ApplyReview>& review);
    QCoro::Task<void> load(std::shared_ptr<ApplyReview> review);

    Parts m_parts;
    std::optional<ApplyReviewRequest> m_request;
    bool m_isShutDown = false;
};

} // namespace quorvane
