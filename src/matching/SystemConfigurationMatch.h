#pragma once

#include "verification/ApplyVerificationResult.h"

#include <QString>

namespace quorvane {

enum class MatchedConfigurationKind { savedProfile, builtinMode };

/// The configuration that this Mac is in.
struct SystemConfigurationMatch {
    QString name;
    MatchedConfigurationKind kind = MatchedConfigurationKind::savedProfile;
    ApplyVerificationResult verification;

    bool operator==(const SystemConfigurationMatch&) const = default;
};

} // namespace quorvane
