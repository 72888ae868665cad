#include "simulator/Permissions.h"

namespace macsim {

namespace {

constexpr const char* kUnanswered = "unanswered";

Json decisionOn(const StateStore& state, const QString& application) {
    const Json permissions = state.read("permissions");
    const Json automation = permissions.is_object() ? permissions.value("automation", Json()) : Json();
    return automation.is_object() ? automation.value(application.toStdString(), Json()) : Json();
}

bool isOn(const StateStore& state, const char* key) {
    const Json permissions = state.read("permissions");
    return permissions.is_null() || permissions.value(key, true);
}

} // namespace

bool hasFullDiskAccess(const StateStore& state) {
    return isOn(state, "fullDiskAccess");
}

bool mayChangeApplications(const StateStore& state) {
    const Json permissions = state.read("permissions");
    return permissions.is_object() && permissions.value("appManagement", permissions.value("fullDiskAccess", false));
}

bool mayReadDownloads(const StateStore& state) {
    return isOn(state, "downloads");
}

bool isSystemIntegrityProtected(const StateStore& state) {
    return isOn(state, "systemIntegrityProtection");
}

std::string automationAnswerName(AutomationAnswer answer) {
    switch (answer) {
    case AutomationAnswer::Allow:
        return "allow";
    case AutomationAnswer::Deny:
        return "deny";
    case AutomationAnswer::Unanswered:
        break;
    }
    return kUnanswered;
}

std::optional<bool> automationDecision(const StateStore& state, const QString& application) {
    const Json decision = decisionOn(state, application);
    return decision.is_boolean() ? std::optional(decision.get<bool>()) : std::nullopt;
}

AutomationAnswer askForAutomation(const StateStore& state, const QString& application) {
    const Json permissions = state.read("permissions");
    const Json policy = permissions.is_object() ? permissions.value("automationQuestion", Json()) : Json();
    if (decisionOn(state, application) == kUnanswered || (policy != "allow" && policy != "deny")) {
        return AutomationAnswer::Unanswered;
    }
    const bool isAllowed = policy == "allow";
    state.update("permissions", [&](Json& kept) { kept["automation"][application.toStdString()] = isAllowed; });
    return isAllowed ? AutomationAnswer::Allow : AutomationAnswer::Deny;
}

} // namespace macsim
