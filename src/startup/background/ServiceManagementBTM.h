#pragma once

#include "platform/BackgroundTaskPermissions.h"

#include <QString>

#include <mutex>
#include <optional>

namespace quorvane {

/// Tells the background task manager that the user doesn't allow an item, the same as switching it off in System
/// Settings, where the system's private entry points for it exist. They are looked up on first use and once only.
class ServiceManagementBTM {
public:
    enum class Outcome { Succeeded, Failed, Unavailable };

    explicit ServiceManagementBTM(BackgroundTaskPermissions& permissions)
        : m_permissions(permissions) {}

    /// @param parentApplication  the path of the application that carries the item
    Outcome disallowBackgroundItem(const QString& parentApplication, const QString& label);

private:
    struct ResolvedSymbols {
        BackgroundTaskPermissions::SetUserAllowed setLoginItemUserAllowed;
        BackgroundTaskPermissions::SetUserAllowed setLaunchdPlistUserAllowed;
    };
    ResolvedSymbols resolvedSymbols();
    ResolvedSymbols lookedUpSymbols();

    BackgroundTaskPermissions& m_permissions;
    std::mutex m_lock; ///< held only to read or store the symbols, never while looking up
    std::optional<ResolvedSymbols> m_symbols;
};

} // namespace quorvane
