#include "platform/simulated/PasswordAttempts.h"

#include <utility>

namespace quorvane {

using macsim::Authorization;

namespace {

constexpr int kAttempts = 3;

} // namespace

PasswordAttempts::PasswordAttempts(QString password)
    : m_password(std::move(password)) {}

std::optional<Authorization> PasswordAttempts::ending(const QString& typed) {
    if (typed == m_password) {
        return Authorization::Allow;
    }
    ++m_wrongOnes;
    return m_wrongOnes < kAttempts ? std::nullopt : std::optional(Authorization::Deny);
}

} // namespace quorvane
