#pragma once

#include "core/ClosingAlert.h"
#include "matching/SystemConfigurationMatch.h"
#include "profiles/ApplyPreviews.h"
#include "snapshots/RestoreBaseline.h"
#include "snapshots/SnapshotCapture.h"
#include "verification/ApplyVerificationResult.h"

#include <optional>

namespace quorvane {

/// What an action came to.
struct ActionOutcome {
    bool wasCarriedOut = false; ///< false: it didn't begin, or the lock or the user ended it before its first change
    bool succeeded = false;
    std::optional<ApplyVerificationResult> verification; ///< where the action verifies
    std::optional<ProfileApplyPreview> preview;          ///< where the user has reviewed a profile
    std::optional<RestoreOutcome> restore;               ///< where the action is a way back
    std::optional<SnapshotCapture> capture;              ///< where the action captures
    std::optional<SystemConfigurationMatch> match;       ///< where the action scans, and one is found or kept
    std::optional<ClosingAlert> alert;                   ///< what was told last
};

} // namespace quorvane
