#pragma once

#include "startup/background/BackgroundState.h"
#include "startup/background/StartupMemory.h"
#include "startup/items/LoginItemTargets.h"
#include "startup/launchd/LaunchdReadings.h"

namespace quorvane {

/// What was read of the system, to compare a startup configuration with.
struct StartupReadings {
    QList<StartupItem> discovered;
    LoginItemList loginItems;
    LaunchdReadings launchd;
    std::optional<BackgroundTaskList> backgroundItems; ///< none when the list was never read
    QSet<QString> managedPaths;                        ///< of the applications that the program has added
    StartupMemory memory;
    QSet<QString> onAgain;            ///< labels that the program had switched off
    std::optional<bool> isNetworkOff; ///< none when nobody asked
};

/// What runs at login at this moment, as far as it is known.
class ActiveStartup {
public:
    /// @param readings  outlive this object
    /// @param targets   the login items that are to go; one that stays isn't active as one that shares its name
    ActiveStartup(const StartupReadings& readings, const LoginItemTargets& targets);

    bool areLoginItemsKnown() const { return m_readings.loginItems.tellsAll(); }
    /// True while a login item of that name is there that is to go.
    bool hasTarget(const QString& name) const { return m_targetPaths.contains(name); }
    bool hasLoginPath(const QString& path) const { return m_namesByPath.contains(comparablePath(path)); }
    /// The same for an application that is to go: by its name, too, where its file is gone.
    bool hasLoginItemOf(const QString& path) const;
    /// True for a login item of that path that opens hidden.
    bool isHidden(const QString& path) const { return m_hiddenPaths.contains(comparablePath(path)); }
    /// The name of the login item of a path, else the last component of the path without its extension.
    QString nameOfLoginPath(const QString& path) const;
    /// An application that opens at login by its own registration, and that System Events doesn't list.
    bool isRegisteredUnlisted(const QString& path) const;
    /// As a login item, or by its own registration.
    bool opensAtLogin(const QString& path) const { return hasLoginPath(path) || isRegisteredUnlisted(path); }

    // ---- What starts at login and would be switched off by an apply: what that leaves alone isn't active

    /// None when it can't be told.
    std::optional<bool> isActive(const StartupItem& item) const;
    /// True when it can't be told. Of an application: it opens by its own registration alone.
    /// @param record  of the background items that were read
    bool isActive(const BackgroundTaskItem& record) const;
    /// Of the launch plists of a file name.
    Standing ofFile(const QString& fileName) const;
    /// Of what bears the label of a background item.
    Standing ofLabel(const QString& label) const;

private:
    const StartupReadings& m_readings;
    QHash<QString, QSet<QString>> m_targetPaths; ///< of the login items that are to go, by name; comparable
    QHash<QString, QString> m_namesByPath;       ///< of all login items, by comparable path
    QSet<QString> m_namesWithoutPath;
    QSet<QString> m_hiddenPaths;
};

} // namespace quorvane
