#pragma once

#include "platform/Biometrics.h"

namespace quorvane {

/// What LocalAuthentication says of this Mac's sensor and its user, asked anew each time. The first answer may take a tenth of a
/// second.
class MacBiometrics final : public Biometrics {
public:
    bool canEvaluate() const override;
    BiometryType type() const override;
};

} // namespace quorvane
