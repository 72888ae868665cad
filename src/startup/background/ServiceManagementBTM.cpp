#include "startup/background/ServiceManagementBTM.h"

#include "core/UserDefaultKeys.h"
#include "platform/Machine.h"
#include "platform/UserDefaults.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// Stands in the preferences, for good, while a call lasts.
class CallMark {
public:
    CallMark(UserDefaults& defaults, const QString& call)
        : m_defaults(defaults) {
        m_defaults.setString(kQuorvaneBackgroundTaskCallBegan, call);
        m_defaults.synchronize();
    }
    ~CallMark() {
        m_defaults.remove(kQuorvaneBackgroundTaskCallBegan);
        m_defaults.synchronize();
    }
    CallMark(const CallMark&) = delete;
    CallMark& operator=(const CallMark&) = delete;

private:
    UserDefaults& m_defaults;
};

} // namespace

ServiceManagementBTM::Outcome ServiceManagementBTM::disallowBackgroundItem(const QString& parentApplication,
                                                                           const QString& label) {
    return setAllowed(parentApplication, label, false);
}

ServiceManagementBTM::Outcome ServiceManagementBTM::allowBackgroundItem(const QString& parentApplication,
                                                                        const QString& label) {
    return setAllowed(parentApplication, label, true);
}

bool ServiceManagementBTM::isAvailable() {
    const ResolvedSymbols symbols = resolvedSymbols();
    return symbols.setLoginItemUserAllowed || symbols.setLaunchdPlistUserAllowed;
}

ServiceManagementBTM::Outcome ServiceManagementBTM::setAllowed(const QString& parentApplication, const QString& label,
                                                               bool isAllowed) {
    const ResolvedSymbols symbols = resolvedSymbols();
    if (!symbols.setLoginItemUserAllowed && !symbols.setLaunchdPlistUserAllowed) {
        return Outcome::Unavailable;
    }
    if (symbols.setLoginItemUserAllowed && symbols.setLoginItemUserAllowed(parentApplication, label, isAllowed)) {
        return Outcome::Succeeded;
    }
    if (symbols.setLaunchdPlistUserAllowed && symbols.setLaunchdPlistUserAllowed(parentApplication, label, isAllowed)) {
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
    const QString left = m_defaults.string(kQuorvaneBackgroundTaskCallBegan).value_or(QString());
    m_hasEndedInCall = left.endsWith(u' ' + m_machine.systemVersion());
    if (m_hasEndedInCall ||
        !m_permissions.openLibrary(u"/System/Library/Frameworks/ServiceManagement.framework/ServiceManagement"_s)) {
        return {};
    }
    return {marked(u"SMLoginItemSetUserAllowed_4BTM"_s), marked(u"SMLaunchdPlistSetUserAllowed_4BTM"_s)};
}

/// The entry point, with a mark around each call of it; empty where the system lacks it.
BackgroundTaskPermissions::SetUserAllowed ServiceManagementBTM::marked(const QString& symbol) {
    const BackgroundTaskPermissions::SetUserAllowed entryPoint = m_permissions.entryPoint(symbol);
    if (!entryPoint) {
        return {};
    }
    return [this, symbol, entryPoint](const QString& application, const QString& label, bool isAllowed) {
        const CallMark mark(m_defaults, symbol + u' ' + m_machine.systemVersion());
        return entryPoint(application, label, isAllowed);
    };
}

} // namespace quorvane
