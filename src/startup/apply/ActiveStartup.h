#pragma once

#include "startup/background/BackgroundTaskList.h"
#include "startup/items/LoginItemTargets.h"

namespace quorvane {

/// What was read of the system, to compare a startup configuration with.
struct StartupReadings {
    QList<StartupItem> discovered;
    LoginItemList loginItems;
    QSet<QString> launchPlists; ///< the file names among those asked for that lie in a launch folder
    std::optional<BackgroundTaskList> backgroundItems; ///< none when the list was never read
    QSet<QString> managedPaths;                        ///< of the applications that the program has added
    std::optional<bool> isNetworkOff;                  ///< none when nobody asked
};

/// What runs at login at this moment, as far as it is known.
class ActiveStartup {
public:
    /// @param readings  outlive this object
    /// @param targets   the login items that are to go; one that stays isn't active as one that shares its name
    ActiveStartup(const StartupReadings& readings, const LoginItemTargets& targets);

    bool areLoginItemsKnown() const { return m_readings.loginItems.wasRead; }
    /// True while a login item of that name is there that is to go.
    bool hasTarget(const QString& name) const { return m_targetPaths.contains(name); }
    bool hasLoginPath(const QString& path) const { return m_namesByPath.contains(comparablePath(path)); }
    /// The same for an application that is to go: by its name, too, where its file is gone.
    bool hasLoginItemOf(const QString& path) const;
    /// True for a login item of that path that opens hidden.
    bool isHidden(const QString& path) const { return m_hiddenPaths.contains(comparablePath(path)); }
    /// The name of the login item of a path, else the last component of the path without its extension.
    QString nameOfLoginPath(const QString& path) const;
    bool hasLaunchPlist(const QString& label) const { return m_readings.launchPlists.contains(label); }

    /// None when it can't be told.
    std::optional<bool> isActive(const StartupItem& item) const;

private:
    const StartupReadings& m_readings;
    QHash<QString, QSet<QString>> m_targetPaths; ///< of the login items that are to go, by name; comparable
    QHash<QString, QString> m_namesByPath;       ///< of all login items, by comparable path
    QSet<QString> m_namesWithoutPath;
    QSet<QString> m_hiddenPaths;
};

} // namespace quorvane
