#pragma once

#include "platform/LoginService.h"
#include "readings/FullDiskAccess.h"

#include <QObject>

namespace quorvane {

class FileManager;
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

    bool operator==(const SettingsFacts&) const = default;
};

/// Keeps it for those who show it. Others change most of it, and tell of nothing. Main thread.
class SettingsStatus : public QObject {
    Q_OBJECT

public:
    SettingsStatus(const UserDefaults& defaults, const ProfileLabel& label, const LoginService& loginService,
                   const FileManager& files, QObject* parent = nullptr);

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
    const FileManager& m_files;
    SettingsFacts m_current;
};

} // namespace quorvane
