#pragma once

#include "platform/LoginService.h"
#include "readings/FullDiskAccess.h"
#include "snapshots/RestoreBaseline.h"

#include <QObject>

#include <optional>

namespace quorvane {

class FileManager;
class Machine;
class ProfileLabel;
class UserDefaults;

/// What is so now of what a user sets outside their profiles.
struct SettingsFacts {
    bool showsLabel = false;         ///< the option is on
    bool hasLabelName = false;       ///< there is a profile to name
    bool isLabelInPlace = false;     ///< every display shows it
    bool hasAnimatedPicture = false; ///< a display was left without it, because macOS animates its picture
    LoginService::State launchAtLogin = LoginService::State::NotEnabled;
    FullDiskAccess fullDiskAccess = FullDiskAccess::Unknown;
    std::optional<RestoreBaseline> restoreBaseline{}; ///< what the ways back use, as far as it is known at home

    bool operator==(const SettingsFacts&) const = default;
};

/// Keeps it for those who show it. Others change most of it, and tell of nothing. Main thread.
class SettingsStatus : public QObject {
    Q_OBJECT

public:
    SettingsStatus(const UserDefaults& defaults, const ProfileLabel& label, const LoginService& loginService,
                   FileManager& files, const Machine& machine, QObject* parent = nullptr);

    /// As it was read last.
    const SettingsFacts& current() const { return m_current; }
    /// To be called when it is about to be seen, and when the user comes back from another program.
    void readAnew();

Q_SIGNALS:
    void changed();

private:
    SettingsFacts read() const;

    const UserDefaults& m_defaults;
    const ProfileLabel& m_label;
    const LoginService& m_loginService;
    FileManager& m_files;
    const Machine& m_machine;
    SettingsFacts m_current;
};

} // namespace quorvane
