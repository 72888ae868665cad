#pragma once

namespace quorvane {

/// What the Mac recognises its user by. The values are those of LocalAuthentication's LABiometryType.
enum class BiometryType { None = 0, TouchId = 1, FaceId = 2, OpticId = 4 };

/// The means by which this Mac recognises its user. Main thread; asks the user nothing.
class Biometrics {
public:
    Biometrics() = default;
    Biometrics(const Biometrics&) = delete;
    Biometrics& operator=(const Biometrics&) = delete;
    virtual ~Biometrics() = default;

    /// True when the user can be recognised now: the Mac has the means, and they have enrolled.
    virtual bool canEvaluate() const = 0;
    /// None also when the means can't be used now, such as with the lid closed.
    virtual BiometryType type() const = 0;
};

} // namespace quorvane
