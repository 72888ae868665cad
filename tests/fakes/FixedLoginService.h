#pragma once

#include "platform/LoginService.h"

namespace quorvane {

/// A login service that does what it is asked for, unless a test says otherwise.
class FixedLoginService final : public LoginService {
public:
    State current = State::NotEnabled;
    bool needsApproval = false;
    std::optional<QString> failure;

    State state() const override { return current; }
    std::optional<QString> registerProgram() override {
        return change(needsApproval ? State::RequiresApproval : State::Enabled);
    }
    std::optional<QString> unregisterProgram() override { return change(State::NotEnabled); }

private:
    std::optional<QString> change(State wanted) {
        if (!failure) {
            current = wanted;
        }
        return failure;
    }
};

} // namespace quorvane
