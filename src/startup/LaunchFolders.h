#pragma once

#include <QList>
#include <QString>

namespace quorvane {

// Where launchd's plists lie, and where the program keeps the ones that it has switched off.

/// A folder of launch plists.
struct LaunchFolder {
    QString path;
    QString backupFolder; ///< where its plists wait while they are switched off
    bool isUsers = false; ///< lies in the user's home: its plists can be moved without root
    bool isDaemons = false;
};

/// The user's LaunchAgents, the system's LaunchAgents, the system's LaunchDaemons.
/// @param homeFolder  without a "/" at the end
QList<LaunchFolder> launchFolders(const QString& homeFolder);

/// The user's folder for everything that the program puts aside.
QString backupFolder(const QString& homeFolder);

/// True for a plain file name that ends in ".plist". Profiles come from other people: only such a name is looked for.
bool isLaunchPlistName(const QString& label);

/// The shell line that switches a plist off as root: out of launchd, then into the backup folder.
QString disableLaunchPlistCommand(const QString& plist, const LaunchFolder& folder);

} // namespace quorvane
