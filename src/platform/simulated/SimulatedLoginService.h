#pragma once

#include "platform/LoginService.h"
#include "simulator/Mac.h"

namespace quorvane {

/// Launching the program at login on a simulated Mac: its bundle is among the login items (see macsim::LoginItems), so that
/// System Events lists it and the user can take it out there. What the system makes of a call is said in the state subject
/// "loginService":
///
///     {"needsApproval": true, "registeringFails": "Operation not permitted", "unregisteringFails": "…"}
///
/// "needsApproval"       what is registered waits until the user allows it; without it nothing does
/// "registeringFails"    the system's words; without the key it does what it is asked for
/// "unregisteringFails"  likewise
class SimulatedLoginService final : public LoginService {
public:
    explicit SimulatedLoginService(const macsim::Mac& mac)
        : m_mac(mac) {}

    State state() const override;
    std::optional<QString> registerProgram() override;
    std::optional<QString> unregisterProgram() override;

private:
    std::optional<QString> refusal(const char* key) const;

    const macsim::Mac& m_mac;
};

} // namespace quorvane
