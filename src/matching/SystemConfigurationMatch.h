#pragma once

#include "verification/ApplyVerificationResult.h"

#include <QString>

namespace quorvane {

enum class MatchedConfigurationKind { savedProfile, builtinMode };

/// The configuration that this Mac is in.
struct SystemConfigurationMatch {
    QString name;
    MatchedConfigurationKind kind = MatchedConfigurationKind::savedProfile;
    ApplyVerificationResult verification; ///< empty when the match was only kept
    /// True: no scan has found it. It was in force before, and what was read since fits nothing or wasn't complete.
    bool isKept = false;

    bool operator==(const SystemConfigurationMatch&) const = default;
};

} // namespace quorvane
