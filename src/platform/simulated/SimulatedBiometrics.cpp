#include "platform/simulated/SimulatedBiometrics.h"

#include <string>

namespace quorvane {

using macsim::Json;

namespace {

Json state(const macsim::Mac& mac) {
    const Json biometrics = mac.state().read("biometrics");
    return biometrics.is_object() ? biometrics : Json::object();
}

} // namespace

bool SimulatedBiometrics::canEvaluate() const {
    return state(m_mac).value("canEvaluate", false);
}

BiometryType SimulatedBiometrics::type() const {
    return static_cast<BiometryType>(state(m_mac).value("type", 0));
}

QString simulatedEnrolment(const macsim::Mac& mac) {
    return QString::fromStdString(state(mac).value("enrolment", std::string()));
}

} // namespace quorvane
