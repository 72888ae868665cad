#pragma once

#include "platform/Biometrics.h"

#include <QString>

#include <optional>

namespace quorvane {

// What the lock says, in its screen and in its alert.

inline const QString kLockedTitle = QStringLiteral("Quorvane is Locked");
inline const QString kPasswordField = QStringLiteral("Password");
inline const QString kUnlock = QStringLiteral("Unlock");
inline const QString kIncorrectPassword = QStringLiteral("Incorrect password.");

/// @param biometry  none where it can't open the lock now
QString lockScreenText(const std::optional<BiometryType>& biometry);
QString unlockWithBiometryText(BiometryType biometry);
QString biometryFailedText(BiometryType biometry);

} // namespace quorvane
