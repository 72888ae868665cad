#pragma once

#include "actions/ActionListener.h"
#include "actions/ActionOutcome.h"
#include "actions/Turnstile.h"
#include "lock/UnlockGate.h"

#include <QCoroTask>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace quorvane {

class FlowEnvironment;
class SheetModel;
class SystemManager;

class Action;

/// Where actions run: each is one coroutine that reads top to bottom, over what all of them have in common.
class ActionStage {
public:
    ActionStage(SystemManager& system, Turnstile& turnstile, UnlockGate& gate);

    using Body = std::function<QCoro::Task<void>(Action& action)>;
    /// Runs an action when nothing else does. What its body throws makes it a failed one, and is a line in the log; what it
    /// holds ends with it. The body is kept until it has come to its end, so it may capture, by value, what it needs.
    QCoro::Task<ActionOutcome> run(ActionListener& listener, Body body);

private:
    friend class Action;
    QCoro::Task<bool> endsProperly(QCoro::Task<void> task);

    SystemManager& m_system;
    Turnstile& m_turnstile;
    UnlockGate& m_gate;
};

/// One action under way. Its steps are taken in this order; the first that gives false ends it without a trace.
class Action {
public:
    /// The lock. @param activity  "switch profiles"
    QCoro::Task<bool> passesGate(QString activity);
    /// False where a question would be agreed to unasked.
    bool asks() const { return m_listener.asks(); }
    /// A question, if there is one, and the lock and the others once more: the answer may have taken its time.
    QCoro::Task<bool> isAgreedTo(std::optional<Alert> question);
    /// A question of several answers. @return the button that was pressed
    QCoro::Task<int> choose(Alert question) { return m_listener.choose(std::move(question)); }
    /// The same by a review. The preview that it showed is in the outcome. Once agreed to, it ends with the action: by its
    /// result, by that of a failed apply, or, where nothing was carried out, without one.
    QCoro::Task<bool> isAgreedTo(Review review);
    /// Before the first change to this Mac: sees to it that the user's own settings are kept, and asks where they can't be.
    /// False where the user doesn't want to go on without them. Whoever keeps the program from locking by itself does so before:
    /// macOS may ask about System Events meanwhile.
    QCoro::Task<bool> keepsWayBack();
    /// Whether it may go on after a wait of its own: nobody has locked the program or begun something else.
    bool mayGoOn() const;

    /// Busy with something that changes nothing, as long as it is held.
    [[nodiscard]] Turnstile::Hold waiting(const QString& text = {}) { return m_stage.m_turnstile.busy(text); }
    /// From here on it leaves traces; busy as long as it is held.
    /// @param changed  looked at anew in the end, whatever the outcome
    [[nodiscard]] Turnstile::Hold carryingOut(const QString& text, Anew changed = {});
    /// The same for what is done at once.
    void carryOutAtOnce(Anew changed = {});
    [[nodiscard]] UnlockGate::AutoLockSuppression suppressAutoLock() { return m_stage.m_gate.suppressAutoLock(); }

    QCoro::Task<void> tell(ClosingAlert alert);
    /// Shows at once what came of the review. The action goes on, and ends when the user has closed it.
    void showResult(const ResultPanel& panel);
    void show(const std::shared_ptr<SheetModel>& sheet);
    /// A step that the action outlives: what it throws is a line in the log. @return false when it has thrown
    QCoro::Task<bool> endsProperly(QCoro::Task<void> step);

    ActionOutcome outcome;

private:
    friend class ActionStage;
    Action(ActionStage& stage, ActionListener& listener)
        : m_stage(stage)
        , m_listener(listener) {}
    QCoro::Task<void> endReview();

    ActionStage& m_stage;
    ActionListener& m_listener;
    Anew m_changed;
    std::optional<ReviewSubject> m_agreedReview; ///< until its result is shown
    std::optional<QCoro::Task<void>> m_shownResult;
};

} // namespace quorvane
