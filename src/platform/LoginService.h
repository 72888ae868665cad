#pragma once

#include <QString>

#include <optional>

namespace quorvane {

/// Whether the system launches the program when its user logs in. The user can take that back in the system's settings at any
/// time. Main thread; every call is quick.
class LoginService {
public:
    /// RequiresApproval: it is registered, and the user has to allow it in the system's settings first.
    enum class State { NotEnabled, Enabled, RequiresApproval };

    LoginService() = default;
    LoginService(const LoginService&) = delete;
    LoginService& operator=(const LoginService&) = delete;
    virtual ~LoginService() = default;

    /// As it is now.
    virtual State state() const = 0;
    /// Both give the system's words for a failure. What came of it is the state.
    virtual std::optional<QString> registerProgram() = 0;
    virtual std::optional<QString> unregisterProgram() = 0;
};

} // namespace quorvane
