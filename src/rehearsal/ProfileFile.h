#pragma once

#include "profiles/UnifiedProfile.h"

#include <QString>

namespace quorvane {

/// Reads a profile from a file on the host. Throws UnusableInput that names the file and what is wrong.
UnifiedProfile profileFromFile(const QString& hostPath);

} // namespace quorvane
