#pragma once

#include "startup/apply/ActiveStartup.h"
#include "startup/items/StartupConfiguration.h"
#include "verification/ApplyVerificationResult.h"

namespace quorvane {

/// Checks item by item that what the configuration switches off is off, and that its applications open at login. Background
/// items are checked only when their list is known.
ApplyVerificationResult startupVerification(const StartupConfiguration& configuration, const StartupReadings& readings);

/// The outcome of applying a startup configuration by itself.
struct StartupApplyResult {
    bool applySucceeded = false;
    ApplyVerificationResult verification;

    bool operator==(const StartupApplyResult&) const = default;
};

} // namespace quorvane
