#include "simulator/Authorizer.h"

#include <array>
#include <utility>

namespace macsim {

namespace {

constexpr std::array<std::pair<Authorization, const char*>, 3> kNames{
    {{Authorization::Allow, "allow"}, {Authorization::Deny, "deny"}, {Authorization::Cancel, "cancel"}}};

} // namespace

std::string authorizationName(Authorization authorization) {
    for (const auto& [candidate, name] : kNames) {
        if (candidate == authorization) {
            return name;
        }
    }
    return {};
}

std::optional<Authorization> authorizationNamed(const std::string& name) {
    for (const auto& [authorization, candidate] : kNames) {
        if (candidate == name) {
            return authorization;
        }
    }
    return std::nullopt;
}

} // namespace macsim
