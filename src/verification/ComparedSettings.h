#pragma once

#include "snapshots/RestoreComparison.h"
#include "verification/ApplyVerificationResult.h"

namespace quorvane {

/// The end of a way back as any other read-back: what is back as verified, what is missing as failed.
ApplyVerificationResult asVerification(const QList<ComparedSetting>& settings);

} // namespace quorvane
