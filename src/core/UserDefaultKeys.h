#pragma once

#include <QString>

namespace quorvane {

// The program's own preferences, by their keys.

/// String: the name of the profile that was last applied. It is never removed: the profile may be gone.
inline const QString kQuorvaneLastAppliedProfileName = QStringLiteral("QuorvaneLastAppliedProfileName");

/// String: the raw value of the current `AppMode`.
inline const QString kQuorvaneCurrentMode = QStringLiteral("QuorvaneCurrentMode");

/// String array: the paths of the apps that this program has put into the login items.
inline const QString kQuorvaneManagedStartupAppPaths = QStringLiteral("QuorvaneManagedStartupAppPaths");

} // namespace quorvane
