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

bool isSystemIntegrityProtected(const StateStore& state) {
    return isOn(state, "systemIntegrityProtection");
}

} // namespace macsim
