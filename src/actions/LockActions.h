#pragma once

#include "actions/ActionListener.h"
#include "actions/ActionOutcome.h"
#include "lock/AppPasswordSheetMode.h"
#include "platform/Biometrics.h"

#include <optional>

namespace quorvane {

class Action;
class ActionStage;
class AppPasswordEntry;
class LockManager;

/// What a user does about the app lock beside opening it.
class LockActions {
public:
    LockActions(ActionStage& stage, LockManager& lock)
        : m_stage(stage)
        , m_lock(lock) {}

    /// "Set App Password…", "Change Password…", "Remove App Lock…": ends with its sheet. Succeeded when it was done.
    QCoro::Task<ActionOutcome> askPassword(AppPasswordSheetMode mode, ActionListener& listener);
    void lockNow();

private:
    QCoro::Task<void> carryOut(Action& action, AppPasswordSheetMode mode);
    QCoro::Task<void> askForFinger(Action& action, std::shared_ptr<AppPasswordEntry> entry);
    std::optional<BiometryType> biometryFor(AppPasswordSheetMode mode) const;

    ActionStage& m_stage;
    LockManager& m_lock;
};

} // namespace quorvane
