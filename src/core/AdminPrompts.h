#pragma once

#include <QString>

namespace quorvane {

/// The prompt of flows that have no words of their own. It speaks of the password alone: the system's dialog takes no finger
/// (since macOS 14).
inline const QString kSystemChangesPrompt =
    QStringLiteral("Quorvane needs your administrator password to make these system changes.");

} // namespace quorvane
