#pragma once

#include "platform/LoginService.h"

namespace quorvane {

/// Of the system's SMAppServiceStatus (SMAppService.h). One that isn't found isn't enabled: a program that isn't signed, or that
/// runs from a disk image.
LoginService::State loginServiceState(long status);

/// What the system's error means to who asked for it: registering what is registered and taking back what isn't are no failures.
/// @param code  of SMErrors.h
/// @param words the system's
std::optional<QString> failureOfRegistering(long code, const QString& words);
std::optional<QString> failureOfUnregistering(long code, const QString& words);

} // namespace quorvane
