#pragma once

#include <QString>

#include <optional>
#include <string>

namespace macsim {

/// The administrator's answer to an authorization prompt.
enum class Authorization {
    Allow,
    Deny,   ///< a wrong name or password, three times
    Cancel, ///< the Cancel button
};

/// "allow", "deny", "cancel".
std::string authorizationName(Authorization authorization);
/// None for any other text.
std::optional<Authorization> authorizationNamed(const std::string& name);

/// Asks whoever sits before the simulated Mac for administrator rights.
class Authorizer {
public:
    Authorizer() = default;
    Authorizer(const Authorizer&) = delete;
    Authorizer& operator=(const Authorizer&) = delete;
    virtual ~Authorizer() = default;

    /// @param prompt  the text of the dialog; empty when the script gives none
    virtual Authorization ask(const QString& prompt) = 0;
};

/// Gives the same answer to every question: for scripts that nobody watches.
class FixedAuthorizer final : public Authorizer {
public:
    explicit FixedAuthorizer(Authorization answer)
        : m_answer(answer) {}
    Authorization ask(const QString&) override { return m_answer; }

private:
    Authorization m_answer;
};

} // namespace macsim
