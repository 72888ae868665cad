#pragma once

#include "platform/LoginService.h"

namespace quorvane {

/// The program's own bundle as a login item of the system's (SMAppService). The system keeps it by where the program lies.
class MacLoginService final : public LoginService {
public:
    State state() const override;
    std::optional<QString> registerProgram() override;
    std::optional<QString> unregisterProgram() override;
};

} // namespace quorvane
