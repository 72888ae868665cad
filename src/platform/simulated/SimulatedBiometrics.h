#pragma once

#include "platform/Biometrics.h"
#include "simulator/Mac.h"

namespace quorvane {

/// How a simulated Mac recognises its user, by the state subject "biometrics"; without it the Mac has no means:
///
///     {"type": 1, "canEvaluate": true, "enrolment": "right index"}
///
/// "type"        1 for Touch ID, 4 for Optic ID
/// "canEvaluate" false with the lid closed, or when nobody has enrolled
/// "enrolment"   names the fingers that are enrolled: any other text means other fingers
class SimulatedBiometrics final : public Biometrics {
public:
    explicit SimulatedBiometrics(const macsim::Mac& mac)
        : m_mac(mac) {}

    bool canEvaluate() const override;
    BiometryType type() const override;

private:
    const macsim::Mac& m_mac;
};

/// The name of the fingers that are enrolled; empty when none are.
QString simulatedEnrolment(const macsim::Mac& mac);

} // namespace quorvane
