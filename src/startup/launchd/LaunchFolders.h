#pragma once

#include "startup/launchd/DisabledServices.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QtGlobal>

namespace quorvane {

// Where launchd's plists lie, and where the program keeps the ones that it has switched off.

/// A folder of launch plists.
struct LaunchFolder {
    QString path;
    QString backupFolder; ///< in the user's home, where its plists wait while they are switched off
    QString keepFolder;   ///< where root keeps copies of them for the way back; empty for the user's own folder
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

/// The shell line that switches a plist off as root: out of launchd, whatever launchd says to it, then into the backup folder.
/// @param outOfLaunchd  commands that take its job out
QString disableLaunchPlistCommand(const QString& plist, const LaunchFolder& folder, const QStringList& outOfLaunchd);

/// The shell line by which root keeps a copy of a plist. It goes before the one that switches the plist off: whatever
/// runs as the user can replace what lies in their backup folder, so root takes nothing out of there again.
QString keepLaunchPlistCommand(const QString& plist, const LaunchFolder& folder);

/// The shell line that fails where a link has come to the place of a backup folder. It goes before the one that switches the
/// plist off; see requireNoLinksCommand.
QString requireRealBackupFolderCommand(const LaunchFolder& folder);

/// A plist of which root keeps a copy.
struct KeptLaunchPlist {
    QString fileName;
    LaunchFolder folder;
    QString label;             ///< of its job; empty where launchctl can't be told
    bool isRecorded = false;   ///< what was overridden for it is written down, and is lifted by that alone
    bool isLoadedAgain = true; ///< false of one that its user had stopped before it was put aside

    QString path() const { return folder.path + u'/' + fileName; }
    QString keptPath() const { return folder.keepFolder + u'/' + fileName; }
    LaunchdService service() const { return {folder.isDaemons ? LaunchdDomain::System : LaunchdDomain::User, label}; }
};

/// The shell line that brings a plist back as root and never fails: to its place, out of the overrides of the system and the
/// user that an earlier version has left without a record, and a daemon that was loaded into launchd. The copy goes last, so that a run that ends half-way can be taken up again.
/// A plist that has come to its place since, which may be as late as that moment, stays; the copy then gets a name by which it
/// isn't found again.
QString reinstateLaunchPlistCommand(const KeptLaunchPlist& plist, quint32 userId);

} // namespace quorvane
