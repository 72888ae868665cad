#pragma once

#include <QString>

namespace quorvane {

/// What speaks to launchd, as a user or as root.
inline const QString kLaunchctlTool = QStringLiteral("/bin/launchctl");

} // namespace quorvane
