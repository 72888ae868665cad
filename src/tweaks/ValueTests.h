#pragma once

#include <QString>

#include <optional>

namespace quorvane {

// Preferences are read as text, and each question about a value has its own answer for a key that isn't set.

/// "1", "true" or "yes" in any case; false for none.
bool isTruthy(const std::optional<QString>& value);
/// "0", "false" or "no" in any case; true for none: a missing key is falsy.
bool isFalsy(const std::optional<QString>& value);
/// "0", "false", "no" or "off" in any case; false for none: a missing key isn't off.
bool isOffValue(const std::optional<QString>& value);

} // namespace quorvane
