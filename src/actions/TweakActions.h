#pragma once

#include "actions/ActionListener.h"
#include "actions/ActionOutcome.h"
#include "startup/items/CleanReboot.h"
#include "tweaks/PerformanceSettings.h"

#include <optional>

namespace quorvane {

class Action;
class ActionStage;
class SystemManager;
struct FoundBaseline;

/// What a user does with the tweaks alone.
class TweakActions {
public:
    TweakActions(ActionStage& stage, SystemManager& system)
        : m_stage(stage)
        , m_system(system) {}

    /// Puts the selected tweaks in force, and leaves the others as they are.
    QCoro::Task<ActionOutcome> execute(const PerformanceSettings& settings, const CleanReboot& cleanReboot,
                                       ActionListener& listener);
    /// "Undo Performance Tweaks".
    QCoro::Task<ActionOutcome> undo(ActionListener& listener);
    /// "Revert All": the same, unasked.
    QCoro::Task<ActionOutcome> revertAll(ActionListener& listener);

private:
    QCoro::Task<std::optional<FoundBaseline>> foundForTheQuestion(Action& action);
    QCoro::Task<ApplyVerificationResult> verification(PerformanceSettings settings, CleanReboot cleanReboot);
    QCoro::Task<ReviewPreview> preview(PerformanceSettings settings, CleanReboot cleanReboot);

    ActionStage& m_stage;
    SystemManager& m_system;
};

} // namespace quorvane
