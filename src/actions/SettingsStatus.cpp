#include "actions/SettingsStatus.h"

#include "core/UserDefaultKeys.h"
#include "platform/UserDefaults.h"
#include "profiles/ProfileLabel.h"
#include "profiles/UnifiedProfile.h"

#include <utility>

namespace quorvane {

SettingsStatus::SettingsStatus(const UserDefaults& defaults, const ProfileLabel& label,
                               const LoginService& loginService, const FileManager& files, QObject* parent)
    : QObject(parent)
    , m_defaults(defaults)
    , m_label(label)
    , m_loginService(loginService)
    , m_files(files) {
    connect(&label, &ProfileLabel::displaysLabelled, this, &SettingsStatus::readAnew);
}

void SettingsStatus::readAnew() {
    const SettingsFacts facts = read();
    if (std::exchange(m_current, facts) != facts) {
        Q_EMIT changed();
    }
}

SettingsFacts SettingsStatus::read() const {
    const QString name = m_defaults.string(kWallpaperProfileName).value_or(QString());
    SettingsFacts facts;
    facts.showsLabel = m_defaults.boolean(kShowProfileOnWallpaper);
    facts.hasLabelName = !name.isEmpty() && !isDefaultProfileName(name);
    facts.isLabelInPlace = facts.showsLabel && facts.hasLabelName && m_label.isOverlayInPlace();
    facts.hasAnimatedPicture = facts.showsLabel && m_label.hasAnimatedPicture();
    facts.launchAtLogin = m_loginService.state();
    facts.fullDiskAccess = readFullDiskAccess(m_files);
    return facts;
}

} // namespace quorvane
