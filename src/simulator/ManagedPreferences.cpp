#include "simulator/ManagedPreferences.h"

#include "simulator/Mac.h"

namespace macsim {

using namespace Qt::StringLiterals;

PreferenceDomain managedDomain(const Machine& machine, const QString& domain, ManagedScope scope) {
    const QString folder =
        u"/Library/Managed Preferences/"_s + (scope == ManagedScope::User ? machine.userName + u'/' : QString());
    return {folder + (domain == kGlobalDomain ? u".GlobalPreferences"_s : domain)};
}

std::optional<PropertyList> managedPreference(const Mac& mac, const QString& domain, const QString& key) {
    const PreferenceStore store(mac, mac.volume(Actor::Root));
    const auto decided = store.read(managedDomain(mac.machine(), domain, ManagedScope::User), key);
    return decided ? decided : store.read(managedDomain(mac.machine(), domain, ManagedScope::Computer), key);
}

} // namespace macsim
