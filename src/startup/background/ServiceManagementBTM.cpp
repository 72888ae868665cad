#include "startup/background/ServiceManagementBTM.h"

namespace quorvane {

using namespace Qt::StringLiterals;

ServiceManagementBTM::Outcome ServiceManagementBTM::disallowBackgroundItem(const QString& parentApplication,
                                                                           const QString& label) {
    const ResolvedSymbols symbols = resolvedSymbols();
    if (!symbols.setLoginItemUserAllowed && !symbols.setLaunchdPlistUserAllowed) {
        return Outcome::Unavailable;
    }
    if (symbols.setLoginItemUserAllowed && symbols.setLoginItemUserAllowed(parentApplication, label, false)) {
        return Outcome::Succeeded;
    }
    if (symbols.setLaunchdPlistUserAllowed && symbols.setLaunchdPlistUserAllowed(parentApplication, label, false)) {
        return Outcome::Succeeded;
    }
    return Outcome::Failed;
}

ServiceManagementBTM::ResolvedSymbols ServiceManagementBTM::resolvedSymbols() {
    {
        const std::lock_guard guard(m_lock);
        if (m_symbols) {
            return *m_symbols;
        }
    }
    const ResolvedSymbols symbols = lookedUpSymbols();
    const std::lock_guard guard(m_lock);
    m_symbols = symbols;
    return symbols;
}

ServiceManagementBTM::ResolvedSymbols ServiceManagementBTM::lookedUpSymbols() {
    if (!m_permissions.openLibrary(u"/System/Library/Frameworks/ServiceManagement.framework/ServiceManagement"_s)) {
        return {};
    }
    return {m_permissions.entryPoint(u"SMLoginItemSetUserAllowed_4BTM"_s),
            m_permissions.entryPoint(u"SMLaunchdPlistSetUserAllowed_4BTM"_s)};
}

} // namespace quorvane
