#pragma once

#include <QString>

#include <optional>

namespace quorvane {

/// What the sheet for the app password is for.
enum class AppPasswordSheetMode { enable, change, disable };

/// What the biometric prompt says when it stands in for typing the current password; none where there is no such password
/// yet.
std::optional<QString> verificationReason(AppPasswordSheetMode mode);

} // namespace quorvane
