#pragma once

#include "verification/ApplyVerificationResult.h"

#include <QString>

namespace quorvane {

// What came of a review, for whoever has presented it. Where nothing was applied, nothing is verified either. That of startup
// changes is a StartupApplyResult.

struct ProfileApplyResult {
    bool applySucceeded = false;
    ApplyVerificationResult verification;
    QString profileName;

    bool operator==(const ProfileApplyResult&) const = default;
};

struct TweaksApplyResult {
    bool applySucceeded = false;
    ApplyVerificationResult verification;

    bool operator==(const TweaksApplyResult&) const = default;
};

} // namespace quorvane
