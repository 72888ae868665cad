#pragma once

#include "startup/background/BackgroundTaskList.h"
#include "startup/items/LoginItem.h"
#include "startup/items/StartupItem.h"

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
    explicit ActiveStartup(const StartupReadings& readings);

    bool areLoginItemsKnown() const { return m_readings.loginItems.wasRead; }
    bool hasLoginName(const QString& name) const { return m_loginNames.contains(name); }
    bool hasLoginPath(const QString& path) const { return m_namesByPath.contains(path); }
    /// True for a login item of that path that opens hidden.
    bool isHidden(const QString& path) const { return m_hiddenPaths.contains(path); }
    /// The name of the login item of a path, else the last component of the path without its extension.
    QString nameOfLoginPath(const QString& path) const;
    bool hasLaunchPlist(const QString& label) const { return m_readings.launchPlists.contains(label); }

    /// None when it can't be told.
    std::optional<bool> isActive(const StartupItem& item) const;

private:
    const StartupReadings& m_readings;
    QSet<QString> m_loginNames;
    QHash<QString, QString> m_namesByPath;
    QSet<QString> m_hiddenPaths;
};

} // namespace quorvane
