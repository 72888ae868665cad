#pragma once

#include "profiles/UnifiedProfile.h"
#include "verification/ApplyVerificationResult.h"

#include <QList>
#include <QString>

#include <optional>

namespace quorvane {

// Which configuration a Mac is in: the rules, apart from the reading.

/// The profiles in the order in which they are tried: the last applied one first, if there is one of exactly that name, so
/// that it wins a tie and one pass suffices as a rule.
QList<UnifiedProfile> candidateOrder(const QList<UnifiedProfile>& profiles, const std::optional<QString>& appliedName);

/// True when nothing failed. The last applied profile may be partly off, as long as more of it holds than doesn't.
bool isMatch(const ApplyVerificationResult& verification, bool isLastApplied);

/// What it says of the Default configuration.
/// @param inForce              the check of all tweaks: those verified that this Mac has are in force, the others don't
///                             count, and neither does what is as the user had it
/// @param isAppRestorationOff  applications are kept from reopening after a restart, and not by the user's own setting
ApplyVerificationResult defaultVerification(const ApplyVerificationResult& inForce, bool isAppRestorationOff);

} // namespace quorvane
