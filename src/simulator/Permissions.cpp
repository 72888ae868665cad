#include "simulator/Permissions.h"

namespace macsim {

namespace {

bool isOn(const StateStore& state, const char* key) {
    const Json permissions = state.read("permissions");
    return permissions.is_null() || permissions.value(key, true);
}

} // namespace

bool hasFullDiskAccess(const StateStore& state) {
    return isOn(state, "fullDiskAccess");
}

bool mayChangeApplications(const StateStore& state) {
    return isOn(state, "appManagement") || hasFullDiskAccess(state);
}

bool isSystemIntegrityProtected(const StateStore& state) {
    return isOn(state, "systemIntegrityProtection");
}

bool mayAutomate(const StateStore& state, const QString& application) {
    const Json permissions = state.read("permissions");
    return permissions.is_null() ||
           permissions.value("automation", Json::object()).value(application.toStdString(), true);
}

bool tellNeedsAutomation(const StateStore& state) {
    return isOn(state, "tellNeedsAutomation");
}

} // namespace macsim
