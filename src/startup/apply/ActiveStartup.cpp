#include "startup/apply/ActiveStartup.h"

#include "core/Paths.h"

namespace quorvane {

ActiveStartup::ActiveStartup(const StartupReadings& readings, const LoginItemTargets& targets)
    : m_readings(readings) {
    for (const LoginItem& item : readings.loginItems.items) {
        const QString path = comparablePath(item.path);
        if (targets.takes(item)) {
            m_targetPaths[item.name].insert(path);
        }
        if (path.isEmpty()) {
            m_namesWithoutPath.insert(item.name);
            continue;
        }
        m_namesByPath.insert(path, item.name);
        if (item.hidden) {
            m_hiddenPaths.insert(path);
        }
    }
}

bool ActiveStartup::hasLoginItemOf(const QString& path) const {
    return hasLoginPath(path) || m_namesWithoutPath.contains(nameInPath(path));
}

QString ActiveStartup::nameOfLoginPath(const QString& path) const {
    return m_namesByPath.value(comparablePath(path), nameInPath(path));
}

std::optional<bool> ActiveStartup::isActive(const StartupItem& item) const {
    using Kind = StartupItemKind;
    if (item.kind == Kind::launchAgent || item.kind == Kind::launchDaemon || isLaunchItemId(item.id)) {
        return hasLaunchPlist(item.launchIdentifier.value_or(item.name));
    }
    if ((item.kind == Kind::loginApp || item.kind == Kind::backgroundAgent) && areLoginItemsKnown()) {
        const QSet<QString> paths = m_targetPaths.value(item.name);
        const QString path = knownPath(item);
        return !paths.isEmpty() && (path.isEmpty() || paths.contains(QString()) || paths.contains(path));
    }
    if (item.kind == Kind::backgroundLoginItem && m_readings.backgroundItems) {
        return item.launchIdentifier && m_readings.backgroundItems->isActive(*item.launchIdentifier);
    }
    return std::nullopt;
}

} // namespace quorvane
