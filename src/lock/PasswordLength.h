#pragma once

#include <QString>

namespace quorvane {

inline constexpr int kMinimumPasswordLength = 4;

/// In characters as a reader counts them: a flag, a family and a letter with its accents are one each.
qsizetype passwordLength(const QString& password);

} // namespace quorvane
