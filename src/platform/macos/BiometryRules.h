#pragma once

#include "platform/Biometrics.h"

namespace quorvane {

/// Of LocalAuthentication's LABiometryType (LAContext.h): its values are those of BiometryType, and one that came later is None.
BiometryType biometryType(long value);

} // namespace quorvane
