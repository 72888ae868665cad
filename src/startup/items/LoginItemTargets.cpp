#include "startup/items/LoginItemTargets.h"

#include <algorithm>

namespace quorvane {

LoginItemTargets::LoginItemTargets(const QStringList& names) {
    for (const QString& name : names) {
        m_pathsOff[name].insert({});
    }
}

void LoginItemTargets::keep(const StartupItem& item) {
    m_kept.append({item.name, knownPath(item), false});
    m_keptNames.insert(item.name);
    m_keptPaths += {knownPath(item), comparablePath(item.path)};
    m_keptPaths.remove(QString()); // no path is nobody's
    if (!item.path.isEmpty() && !item.path.startsWith(u'/')) {
        m_keptBeginnings.append(item.name + u'|' + item.path);
    }
}

void LoginItemTargets::switchOff(const StartupItem& item) {
    const QString path = knownPath(item);
    if (!m_keptPaths.contains(path)) {
        m_pathsOff[item.name].insert(path);
    }
}

QSet<QString> LoginItemTargets::names() const {
    return {m_pathsOff.keyBegin(), m_pathsOff.keyEnd()};
}

LoginItem LoginItemTargets::itemOff(const QString& name) const {
    const QSet<QString> paths = m_pathsOff.value(name);
    return {name, paths.size() == 1 ? *paths.begin() : QString(), false};
}

bool LoginItemTargets::takes(const LoginItem& item) const {
    const QSet<QString> paths = m_pathsOff.value(item.name);
    if (paths.isEmpty() || keeps(item)) {
        return false;
    }
    return item.path.isEmpty() || paths.contains(QString()) || paths.contains(comparablePath(item.path));
}

/// An item whose file is gone may be any of its name.
bool LoginItemTargets::keeps(const LoginItem& item) const {
    const auto beginsName = [&item](const QString& beginning) { return item.name.startsWith(beginning); };
    if (std::any_of(m_keptBeginnings.begin(), m_keptBeginnings.end(), beginsName)) {
        return true;
    }
    if (item.path.isEmpty()) {
        return m_keptNames.contains(item.name) && !m_pathsOff.value(item.name).contains(QString());
    }
    return keepsPath(item.path);
}

LoginItemTargets loginItemTargets(const StartupConfiguration& configuration, const QList<StartupItem>& further) {
    QSet<QString> furtherIds;
    for (const StartupItem& item : further) {
        furtherIds.insert(comparableId(item));
    }
    LoginItemTargets targets;
    for (const StartupItem& item : configuration.items) {
        const bool isAdded = item.kind == StartupItemKind::addedApp;
        if (item.runsAtStartup && (isAdded || (isLoginItem(item) && !furtherIds.contains(comparableId(item))))) {
            targets.keep(item);
        }
    }
    for (const StartupItem& item : configuration.items) {
        if (isLoginItem(item) && !item.runsAtStartup) {
            targets.switchOff(item);
        }
    }
    for (const StartupItem& item : further) {
        if (isLoginItem(item)) {
            targets.switchOff(item);
        }
    }
    return targets;
}

} // namespace quorvane
