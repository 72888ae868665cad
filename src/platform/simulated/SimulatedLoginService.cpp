#include "platform/simulated/SimulatedLoginService.h"

#include "simulator/LoginItems.h"

#include <string>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kProgram = u"/Applications/Quorvane.app"_s;

macsim::Json loginServiceState(const macsim::Mac& mac) {
    const macsim::Json state = mac.state().read("loginService");
    return state.is_object() ? state : macsim::Json::object();
}

/// None where it isn't registered.
std::optional<QString> identityOfProgram(macsim::LoginItems& items) {
    for (const macsim::LoginItem& item : items.all()) {
        if (item.path == kProgram) {
            return item.identity();
        }
    }
    return std::nullopt;
}

} // namespace

LoginService::State SimulatedLoginService::state() const {
    macsim::LoginItems items(m_mac);
    if (!identityOfProgram(items)) {
        return State::NotEnabled;
    }
    return loginServiceState(m_mac).value("needsApproval", false) ? State::RequiresApproval : State::Enabled;
}

std::optional<QString> SimulatedLoginService::registerProgram() {
    if (const std::optional<QString> words = refusal("registeringFails")) {
        return words;
    }
    macsim::LoginItems(m_mac).add(kProgram, false);
    return std::nullopt;
}

std::optional<QString> SimulatedLoginService::unregisterProgram() {
    if (const std::optional<QString> words = refusal("unregisteringFails")) {
        return words;
    }
    macsim::LoginItems items(m_mac);
    if (const std::optional<QString> identity = identityOfProgram(items)) {
        items.remove(*identity);
    }
    return std::nullopt;
}

std::optional<QString> SimulatedLoginService::refusal(const char* key) const {
    const macsim::Json state = loginServiceState(m_mac);
    return state.contains(key) ? std::optional(QString::fromStdString(state.value(key, std::string()))) : std::nullopt;
}

} // namespace quorvane
