#include "actions/ActiveProfile.h"

#include "actions/SavedProfiles.h"
#include "core/UserDefaultKeys.h"
#include "platform/UserDefaults.h"
#include "system/SystemManager.h"

#include <algorithm>

namespace quorvane {

namespace {

ActiveConfiguration savedConfiguration(const QString& name, const QList<UnifiedProfile>& profiles) {
    ActiveConfiguration active{name, true, {}, {}, {}};
    const auto found = std::find_if(profiles.cbegin(), profiles.cend(),
                                    [&name](const UnifiedProfile& profile) { return profile.name == name; });
    if (found != profiles.cend()) {
        active.id = found->id;
        active.tweaks = found->settings;
    }
    return active;
}

ActiveConfiguration lastApplied(const QString& name, const QList<UnifiedProfile>& profiles) {
    if (isDefaultProfileName(name)) {
        return {name, false, {}, {}, {}};
    }
    const ActiveConfiguration saved = savedConfiguration(name, profiles);
    return saved.id ? saved : ActiveConfiguration{}; // the profile may be gone
}

} // namespace

bool isOfSavedProfile(const ActiveConfiguration& active) {
    return active.isSavedProfile && !active.isKept;
}

ActiveConfiguration activeConfiguration(const ConfigurationReadings& readings) {
    if (!readings.wasScanned) {
        return lastApplied(readings.lastAppliedName.value_or(QString()), readings.profiles);
    }
    if (!readings.match) {
        return {};
    }
    const SystemConfigurationMatch& match = *readings.match;
    ActiveConfiguration active = match.kind == MatchedConfigurationKind::savedProfile
                                     ? savedConfiguration(match.name, readings.profiles)
                                     : ActiveConfiguration{match.name, false, {}, {}, {}};
    active.isKept = match.isKept;
    if (!match.isKept) {
        active.verification = match.verification;
    }
    return active;
}

ActiveProfile::ActiveProfile(const SystemManager& system, const SavedProfiles& profiles, const UserDefaults& defaults,
                             QObject* parent)
    : QObject(parent)
    , m_system(system)
    , m_profiles(profiles)
    , m_defaults(defaults)
    , m_current(read()) {
    connect(&system, &SystemManager::systemMatchChanged, this, &ActiveProfile::update);
    connect(&profiles, &SavedProfiles::changed, this, &ActiveProfile::update);
}

void ActiveProfile::update() {
    const ActiveConfiguration now = read();
    if (now != m_current) {
        m_current = now;
        Q_EMIT changed();
    }
}

ActiveConfiguration ActiveProfile::read() const {
    return activeConfiguration({m_system.hasVerifiedSystem(), m_system.systemMatch(),
                                m_defaults.string(kQuorvaneLastAppliedProfileName), m_profiles.known().profiles});
}

} // namespace quorvane
