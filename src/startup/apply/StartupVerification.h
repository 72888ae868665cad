#pragma once

#include "startup/apply/ActiveStartup.h"
#include "startup/items/StartupConfiguration.h"
#include "verification/ApplyVerificationResult.h"

namespace quorvane {

/// Checks item by item that what the configuration switches off is off, and that its applications open at login. Background
/// items are checked only when their list is known.
ApplyVerificationResult startupVerification(const StartupConfiguration& configuration, const StartupReadings& readings);

/// The failed item that stands for all where the list is empty: a Mac without a single record has none that could be read.
ApplyVerificationResult::Item unavailableBackgroundItems();

/// The outcome of applying a startup configuration by itself.
struct StartupApplyResult {
    bool applySucceeded = false;
    ApplyVerificationResult verification;

    bool operator==(const StartupApplyResult&) const = default;
};

} // namespace quorvane
