#pragma once

#include "lock/AppPasswordSheetMode.h"
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

// What the sheet of the app password says.

QString passwordSheetTitle(AppPasswordSheetMode mode);
QString passwordSheetButton(AppPasswordSheetMode mode);
inline const QString kCurrentPasswordField = QStringLiteral("Current Password");
inline const QString kNewPasswordField = QStringLiteral("New Password");
inline const QString kConfirmPasswordField = QStringLiteral("Confirm Password");
QString useBiometryText(BiometryType biometry);
QString verificationFailedText(BiometryType biometry);

} // namespace quorvane
