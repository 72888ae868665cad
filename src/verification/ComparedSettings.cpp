#include "verification/ComparedSettings.h"

namespace quorvane {

ApplyVerificationResult asVerification(const QList<ComparedSetting>& settings) {
    ApplyVerificationResult result;
    for (const ComparedSetting& setting : settings) {
        if (setting.isBack()) {
            result.verified.append({setting.name, std::nullopt});
        } else if (setting.state == ComparedSetting::State::Missing) {
            result.failed.append({setting.name, setting.what});
        }
    }
    return result;
}

} // namespace quorvane
