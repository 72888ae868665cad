#pragma once

#include "platform/BackgroundTaskPermissions.h"

#include <QString>

#include <mutex>
#include <optional>

namespace quorvane {

class Machine;
class UserDefaults;

/// Tells the background task manager that the user doesn't allow an item, or does again, the same as the switch in System
/// Settings, where the system's private entry points for it exist. They are looked up on first use and once only.
///
/// How they are called is known by trying alone, and one that is called in a wrong way may end the program. So the call is written
/// down before it is made; where that still stands at a later start, no entry point is called again on that version of macOS.
class ServiceManagementBTM {
public:
    enum class Outcome { Succeeded, Failed, Unavailable };

    ServiceManagementBTM(BackgroundTaskPermissions& permissions, UserDefaults& defaults, const Machine& machine)
        : m_permissions(permissions)
        , m_defaults(defaults)
        , m_machine(machine) {}

    /// @param parentApplication  the path of the application that carries the item
    Outcome disallowBackgroundItem(const QString& parentApplication, const QString& label);
    /// Takes that back. Only for what the program itself has disallowed: what the user has switched off stays off.
    Outcome allowBackgroundItem(const QString& parentApplication, const QString& label);
    /// True where the system has one of the entry points, and it may be called.
    bool isAvailable();
    /// True when they are unavailable because the program once ended in one of them.
    bool hasEndedInCall() const { return m_hasEndedInCall; }

private:
    struct ResolvedSymbols {
        BackgroundTaskPermissions::SetUserAllowed setLoginItemUserAllowed;
        BackgroundTaskPermissions::SetUserAllowed setLaunchdPlistUserAllowed;
    };
    Outcome setAllowed(const QString& parentApplication, const QString& label, bool isAllowed);
    ResolvedSymbols resolvedSymbols();
    ResolvedSymbols lookedUpSymbols();
    BackgroundTaskPermissions::SetUserAllowed marked(const QString& symbol);

    BackgroundTaskPermissions& m_permissions;
    UserDefaults& m_defaults;
    const Machine& m_machine;
    bool m_hasEndedInCall = false;
    std::mutex m_lock; ///< held only to read or store the symbols, never while looking up
    std::optional<ResolvedSymbols> m_symbols;
};

} // namespace quorvane
