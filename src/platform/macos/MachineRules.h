#pragma once

#include <QString>

namespace quorvane {

/// As the system's settings have it: "14.0", "14.7.1". Every update has another one; Qt's own text of it leaves the third number
/// out.
QString versionText(long major, long minor, long patch);

} // namespace quorvane
