#pragma once

#include <QString>

namespace quorvane {

/// The prompt of flows that have no words of their own.
inline const QString kSystemChangesPrompt = QStringLiteral(
    "Quorvane needs your administrator password to make these system changes. Use Touch ID when prompted.");

} // namespace quorvane
