#include "actions/ActiveProfile.h"

#include "actions/SavedProfiles.h"
#include "core/UserDefaultKeys.h"
#include "platform/UserDefaults.h"
#include "profiles/ProfileNames.h"
#include "system/SystemManager.h"

#include <algorithm>

namespace quorvane {

namespace {

const UnifiedProfile* savedProfile(const QString& name, const QList<UnifiedProfile>& profiles) {
    const auto found = std::find_if(profiles.cbegin(), profiles.cend(),
                                    [&name](const UnifiedProfile& profile) { return profile.name == name; });
    return found == profiles.cend() ? nullptr : &*found;
}

/// A name that was written down goes for the profile of exactly that name before one that differs in case.
const UnifiedProfile* profileMeant(const QString& name, const QList<UnifiedProfile>& profiles) {
    if (const UnifiedProfile* const saved = savedProfile(name, profiles)) {
        return saved;
    }
    const QString key = profileNameKey(name);
    const auto found = std::find_if(profiles.cbegin(), profiles.cend(), [&key](const UnifiedProfile& profile) {
        return profileNameKey(profile.name) == key;
    });
    return found == profiles.cend() ? nullptr : &*found;
}

NamedConfiguration named(const UnifiedProfile& profile) {
    return {profile.name, profile.id, profile.settings};
}

/// No tweak is on in it.
NamedConfiguration defaultConfiguration() {
    return {UnifiedProfile::defaultProfile().name, {}, PerformanceSettings{}};
}

/// None where the profile is gone.
NamedConfiguration lastApplied(const ConfigurationReadings& readings) {
    const QString name = readings.lastAppliedName.value_or(QString());
    if (isDefaultProfileName(name)) {
        return defaultConfiguration();
    }
    const UnifiedProfile* const saved = name.isEmpty() ? nullptr : profileMeant(name, readings.profiles);
    return saved == nullptr ? NamedConfiguration{} : named(*saved);
}

bool isSavedProfile(const SystemConfigurationMatch& match) {
    return match.kind == MatchedConfigurationKind::savedProfile;
}

NamedConfiguration found(const SystemConfigurationMatch& match, const QList<UnifiedProfile>& profiles) {
    if (!isSavedProfile(match)) {
        return defaultConfiguration();
    }
    const UnifiedProfile* const saved = savedProfile(match.name, profiles);
    return saved == nullptr ? NamedConfiguration{match.name, {}, {}} : named(*saved);
}

NamedConfiguration current(const ConfigurationReadings& readings) {
    const NamedConfiguration applied = lastApplied(readings);
    if (!applied.name.isEmpty()) {
        return applied;
    }
    if (readings.wasScanned && readings.match && !readings.match->isKept) {
        return found(*readings.match, readings.profiles);
    }
    return {UnifiedProfile::defaultProfile().name, {}, {}};
}

void addMatch(ActiveConfiguration& active, const SystemConfigurationMatch& match,
              const QList<UnifiedProfile>& profiles) {
    active.name = match.name;
    active.isSavedProfile = isSavedProfile(match);
    active.id = found(match, profiles).id;
    active.isKept = match.isKept;
    if (!match.isKept) {
        active.verification = match.verification;
    }
}

} // namespace

bool isOfSavedProfile(const ActiveConfiguration& active) {
    return active.isSavedProfile && !active.isKept;
}

ActiveConfiguration activeConfiguration(const ConfigurationReadings& readings) {
    ActiveConfiguration active;
    active.wasVerified = readings.wasScanned;
    active.standing = readings.standing;
    active.lastApplied = lastApplied(readings);
    active.current = current(readings);
    if (!readings.wasScanned) {
        active.name = active.lastApplied.name;
        active.id = active.lastApplied.id;
        active.isSavedProfile = active.id.has_value();
    } else if (readings.match) {
        addMatch(active, *readings.match, readings.profiles);
    }
    return active;
}

bool isInForce(const ActiveConfiguration& active, const UnifiedProfile& profile) {
    return active.wasVerified && !active.isKept && active.isSavedProfile && active.id == profile.id;
}

bool isDefaultInForce(const ActiveConfiguration& active) {
    return active.wasVerified && !active.isKept && !active.isSavedProfile && !active.name.isEmpty();
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
                                m_defaults.string(kQuorvaneLastAppliedProfileName), m_profiles.known().profiles,
                                m_system.lastFlowStanding()});
}

} // namespace quorvane
