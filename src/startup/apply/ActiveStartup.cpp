#include "startup/apply/ActiveStartup.h"

#include "core/Paths.h"

namespace quorvane {

ActiveStartup::ActiveStartup(const StartupReadings& readings)
    : m_readings(readings) {
    for (const LoginItem& item : readings.loginItems.items) {
        m_loginNames.insert(item.name);
        m_namesByPath.insert(item.path, item.name);
        if (item.hidden) {
            m_hiddenPaths.insert(item.path);
        }
    }
}

QString ActiveStartup::nameOfLoginPath(const QString& path) const {
    return m_namesByPath.value(path, nameInPath(path));
}

std::optional<bool> ActiveStartup::isActive(const StartupItem& item) const {
    using Kind = StartupItemKind;
    if (item.kind == Kind::launchAgent || item.kind == Kind::launchDaemon || isLaunchItemId(item.id)) {
        return hasLaunchPlist(item.launchIdentifier.value_or(item.name));
    }
    if ((item.kind == Kind::loginApp || item.kind == Kind::backgroundAgent) && areLoginItemsKnown()) {
        return hasLoginName(item.name);
    }
    if (item.kind == Kind::backgroundLoginItem && m_readings.backgroundItems) {
        return item.launchIdentifier && m_readings.backgroundItems->isActive(*item.launchIdentifier);
    }
    return std::nullopt;
}

} // namespace quorvane
