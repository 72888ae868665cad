#include "actions/SettingsStatus.h"

#include "core/UserDefaultKeys.h"
#include "platform/UserDefaults.h"
#include "profiles/ProfileLabel.h"
#include "profiles/UnifiedProfile.h"
#include "snapshots/FirstBaseline.h"
#include "snapshots/HomeBaselines.h"

#include <utility>

namespace quorvane {

SettingsStatus::SettingsStatus(const UserDefaults& defaults, const ProfileLabel& label,
                               const LoginService& loginService, FileManager& files, const Machine& machine,
                               QObject* parent)
    : QObject(parent)
    , m_defaults(defaults)
    , m_label(label)
    , m_loginService(loginService)
    , m_files(files)
    , m_machine(machine) {
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
    facts.restoreBaseline = restoreBaselineOf(capturesAtHome(m_files, m_machine), identityOf(m_machine));
    return facts;
}

} // namespace quorvane
