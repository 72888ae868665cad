#pragma once

#include <QString>

namespace quorvane {

/// What a file that outlives this Mac calls it. @param computerName  "Mac" stands for an empty one
inline QString deviceNameOf(const QString& computerName) {
    return computerName.isEmpty() ? QStringLiteral("Mac") : computerName;
}

} // namespace quorvane
