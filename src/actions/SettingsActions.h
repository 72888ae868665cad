#pragma once

#include "actions/ActionListener.h"
#include "actions/ActionOutcome.h"

#include <QString>

namespace quorvane {

class ActionStage;
class ActiveProfile;
class ProfileLabel;

/// What a user sets.
class SettingsActions {
public:
    SettingsActions(ActionStage& stage, ProfileLabel& label, const ActiveProfile& active)
        : m_stage(stage)
        , m_label(label)
        , m_active(active) {}

    /// "Show Current Profile on Wallpaper". Succeeded when every display shows the label.
    /// @param name  none takes that of the active profile
    QCoro::Task<ActionOutcome> showLabel(const QString& name, ActionListener& listener);
    /// Gives the displays their own pictures back.
    QCoro::Task<ActionOutcome> removeLabel(ActionListener& listener);

private:
    ActionStage& m_stage;
    ProfileLabel& m_label;
    const ActiveProfile& m_active;
};

} // namespace quorvane
