#pragma once

#include "platform/Biometrics.h"

namespace quorvane {

/// A Mac without biometrics, unless a test says otherwise.
class FixedBiometrics final : public Biometrics {
public:
    bool isUsable = false;
    BiometryType kind = BiometryType::None;

    bool canEvaluate() const override { return isUsable; }
    BiometryType type() const override { return kind; }
};

} // namespace quorvane
