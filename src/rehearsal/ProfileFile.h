#pragma once

#include "profiles/UnifiedProfile.h"

#include <QString>

namespace quorvane {

/// Reads a profile from a file on the host. Throws UnusableInput that names the file and what is wrong.
UnifiedProfile profileFromFile(const QString& hostPath);

/// Throws UnusableInput for a profile that asks for what can't be applied yet: startup changes or a clean reboot.
void requireApplicable(const UnifiedProfile& profile, const QString& hostPath);

} // namespace quorvane
