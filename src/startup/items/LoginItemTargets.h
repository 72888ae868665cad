#pragma once

#include "startup/items/LoginItem.h"
#include "startup/items/StartupConfiguration.h"

#include <QHash>
#include <QSet>
#include <QStringList>

namespace quorvane {

/// Which login items are to go. Several may bear one name: an item is known by its name and, where both sides know it, by
/// its path, and what is kept stays whatever its name.
class LoginItemTargets {
public:
    LoginItemTargets() = default;
    /// Every item of the names, wherever it lies.
    LoginItemTargets(const QStringList& names); // NOLINT(google-explicit-constructor): names alone are such targets

    /// @param item  runs; it goes for nothing that is switched off later
    void keep(const StartupItem& item);
    /// Does nothing for an item whose path is kept: it is the same item.
    void switchOff(const StartupItem& item);

    QSet<QString> names() const;
    bool isEmpty() const { return m_pathsOff.isEmpty(); }
    /// What is switched off under a name: the name alone where it is known by that, or by several paths.
    LoginItem itemOff(const QString& name) const;
    bool takes(const LoginItem& item) const;
    bool keeps(const LoginItem& item) const;
    bool keepsPath(const QString& path) const { return m_keptPaths.contains(comparablePath(path)); }
    /// The items that are kept, by name and path.
    const QList<LoginItem>& kept() const { return m_kept; }

    bool operator==(const LoginItemTargets&) const = default;

private:
    QHash<QString, QSet<QString>> m_pathsOff; ///< by name; an empty path stands for any
    QList<LoginItem> m_kept;
    QSet<QString> m_keptPaths; ///< by path and by id
    QSet<QString> m_keptNames;
    /// Of names with a bar, which earlier versions cut into a name and a path. What such a profile keeps stays.
    QStringList m_keptBeginnings;
};

/// The login items that a configuration switches off, and those among the further items; what it says runs is kept, unless
/// it is one of the further items. An added application that runs is kept in any case.
/// @param further  of its cloud services
LoginItemTargets loginItemTargets(const StartupConfiguration& configuration, const QList<StartupItem>& further);

} // namespace quorvane
