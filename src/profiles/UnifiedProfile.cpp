#include "profiles/UnifiedProfile.h"

#include "profiles/ProfileNames.h"

using namespace Qt::StringLiterals;

namespace quorvane {

namespace {

UnifiedProfile makeDefaultProfile() {
    UnifiedProfile profile;
    profile.id = QUuid(u"00000000-0000-0000-0000-000000000001"_s);
    profile.name = u"Default"_s;
    // The reference date of the Mac's clock, so that it sorts behind every saved profile.
    profile.dateCreated = QDateTime(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC);
    return profile;
}

} // namespace

bool UnifiedProfile::hasSameContent(const UnifiedProfile& other) const {
    return name == other.name && settings == other.settings && startup == other.startup;
}

const UnifiedProfile& UnifiedProfile::defaultProfile() {
    static const UnifiedProfile profile = makeDefaultProfile();
    return profile;
}

size_t qHash(const UnifiedProfile& profile, size_t seed) {
    return qHash(profile.id, seed);
}

bool isDefaultProfileName(const QString& name) {
    return profileNameKey(name) == profileNameKey(UnifiedProfile::defaultProfile().name);
}

bool isDefaultProfile(const UnifiedProfile& profile) {
    return profile.id == UnifiedProfile::defaultProfile().id || isDefaultProfileName(profile.name);
}

CleanReboot cleanRebootOf(const UnifiedProfile& profile) {
    return cleanRebootOf(profile.settings, profile.startup);
}

CleanReboot cleanRebootOf(const PerformanceSettings& settings, const StartupConfiguration& startup) {
    if (!settings.cleanReboot) {
        return {};
    }
    return {startup.permittedLoginNames(), startup, {}};
}

} // namespace quorvane
