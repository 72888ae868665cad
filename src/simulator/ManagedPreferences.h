#pragma once

#include "simulator/PreferenceStore.h"

namespace macsim {

/// For whom an organization has decided a setting.
enum class ManagedScope {
    Computer, ///< /Library/Managed Preferences/{domain}.plist
    User,     ///< /Library/Managed Preferences/{user}/{domain}.plist
};

/// Where an organization's decisions on a domain stand. The files are root's, and everybody may read them.
PreferenceDomain managedDomain(const Machine& machine, const QString& domain, ManagedScope scope);

/// What an organization has decided of a setting; nothing where it left it to the user. It wins over every other value,
/// and that for one user over that for all of them. `defaults read` of the domain doesn't show it, since the tool shows
/// what is stored there.
std::optional<PropertyList> managedPreference(const Mac& mac, const QString& domain, const QString& key);

} // namespace macsim
