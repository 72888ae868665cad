#include "startup/apply/ActiveStartup.h"

#include "core/Paths.h"
#include "startup/background/BackgroundState.h"

#include <algorithm>

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
        return ofFile(item.launchIdentifier.value_or(item.name)).isActive;
    }
    if ((item.kind == Kind::loginApp || item.kind == Kind::backgroundAgent) && areLoginItemsKnown()) {
        if (isRegisteredUnlisted(item.path)) {
            return true;
        }
        const QSet<QString> paths = m_targetPaths.value(item.name);
        const QString path = knownPath(item);
        return !paths.isEmpty() && (path.isEmpty() || paths.contains(QString()) || paths.contains(path));
    }
    if (item.kind == Kind::backgroundLoginItem) {
        return ofLabel(item.launchIdentifier.value_or(QString())).isActive;
    }
    return std::nullopt;
}

bool ActiveStartup::isRegisteredUnlisted(const QString& path) const {
    const auto isThisOne = [&path](const QString& other) { return comparablePath(other) == comparablePath(path); };
    const QStringList& registered = m_readings.memory.registeredApplications;
    return !path.isEmpty() && areLoginItemsKnown() && !hasLoginPath(path) &&
           std::any_of(registered.begin(), registered.end(), isThisOne);
}

Standing ActiveStartup::ofFile(const QString& fileName) const {
    return fileStanding(fileName, m_readings.backgroundItems, m_readings.launchd);
}

Standing ActiveStartup::ofLabel(const QString& label) const {
    return labelStanding(label, m_readings.backgroundItems, m_readings.launchd, m_readings.memory);
}

bool ActiveStartup::isActive(const BackgroundTaskItem& record) const {
    if (isLoginRecord(record)) {
        return isOn(record, m_readings.launchd) != false &&
               !isLeftAlone(record, *m_readings.backgroundItems, m_readings.launchd);
    }
    return isRegisteredUnlisted(recordedPath(record).value_or(QString()));
}

} // namespace quorvane
