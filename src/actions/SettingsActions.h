#pragma once

#include "actions/ActionListener.h"
#include "actions/ActionOutcome.h"

#include <QString>

#include <optional>

namespace quorvane {

class ActionStage;
class ActiveProfile;
class LoginService;
class ProfileLabel;
class SettingsStatus;
class SystemManager;
class UserDefaults;

/// What a user sets.
class SettingsActions {
public:
    struct Parts {
        SystemManager& system;
        const UserDefaults& defaults;
        LoginService& loginService;
        ProfileLabel& label;
        const ActiveProfile& active;
        SettingsStatus& status;
    };
    SettingsActions(ActionStage& stage, const Parts& parts)
        : m_stage(stage)
        , m_parts(parts) {}

    /// "Show Current Profile on Wallpaper"; a question first where macOS animates the picture of a display. Succeeded when
    /// every display shows the label.
    /// @param name  none takes that of the title, and where that has none the one that stood there last
    QCoro::Task<ActionOutcome> showLabel(const QString& name, ActionListener& listener);
    /// Gives the displays their own pictures back.
    QCoro::Task<ActionOutcome> removeLabel(ActionListener& listener);
    /// "Launch at Login". Succeeded when it is as it is wanted.
    QCoro::Task<ActionOutcome> setLaunchAtLogin(bool isWanted, ActionListener& listener);
    /// "Open System Settings…": its steps first.
    QCoro::Task<ActionOutcome> openPrivacySettings(ActionListener& listener);

private:
    QString labelName() const;
    std::optional<QString> changeLoginItem(bool isWanted);

    ActionStage& m_stage;
    Parts m_parts;
};

} // namespace quorvane
