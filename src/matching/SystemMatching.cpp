#include "matching/SystemMatching.h"

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

QList<UnifiedProfile> candidateOrder(const QList<UnifiedProfile>& profiles, const std::optional<QString>& appliedName) {
    const auto applied = std::find_if(profiles.begin(), profiles.end(), [&appliedName](const UnifiedProfile& profile) {
        return profile.name == appliedName;
    });
    if (applied == profiles.end()) {
        return profiles;
    }
    QList<UnifiedProfile> candidates{*applied};
    std::copy_if(profiles.begin(), profiles.end(), std::back_inserter(candidates),
                 [&applied](const UnifiedProfile& profile) { return profile.id != applied->id; });
    return candidates;
}

bool isMatch(const ApplyVerificationResult& verification, bool isLastApplied) {
    return verification.failed.isEmpty() ||
           (isLastApplied && verification.failed.size() < verification.verified.size());
}

ApplyVerificationResult defaultVerification(const ApplyVerificationResult& inForce, bool isAppRestorationOff) {
    ApplyVerificationResult result;
    result.lacksFullDiskAccess = inForce.lacksFullDiskAccess;
    for (const ApplyVerificationResult::Item& item : inForce.verified) {
        if (item.isOnThisMac && !item.isUsersOwn) {
            result.failed.append({item.name, item.detail.value_or(u"still active"_s)});
        }
    }
    if (result.failed.isEmpty()) {
        result.verified.append({u"Default preset"_s, u"no performance optimizations active"_s});
    }
    if (isAppRestorationOff) {
        result.failed.append({u"Clean Reboot"_s, u"still enabled"_s});
    } else {
        result.verified.append({u"Clean Reboot"_s, u"standard app restoration"_s});
    }
    return result;
}

} // namespace quorvane
