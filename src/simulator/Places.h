#pragma once

#include "simulator/Machine.h"

#include <QString>
#include <QStringView>

namespace macsim {

// What the place of a file says about it. Every path is absolute, as the Mac sees it, and without links.

bool isAtOrBelow(const QString& path, QStringView folder);

/// What System Integrity Protection and the read-only system volume keep from everybody, and what isn't the Mac's
/// at all: the simulator's own state.
bool isSealed(const QString& path);

/// Root's folders in which the user may make, rename and remove things: /private/tmp, /Users/Shared, /Applications and
/// /Volumes.
bool isSharedFolder(const QString& path);
/// The shared folders in which nobody but root removes what is somebody else's: the first two.
bool isGuardedFolder(const QString& path);

/// What the privacy settings keep from every program that wasn't given Full Disk Access, root's too: they know that it is
/// there, and may not read it.
bool isPrivate(const QString& path);

/// What System Integrity Protection keeps for the one service of the system that made it, from root too: a data vault, such as
/// there is among the caches of everybody, and everything in it.
bool isInDataVault(const QString& path);

/// The user's Downloads folder and everything in it.
bool isInDownloads(const QString& path, const Machine& machine);

/// What App Management keeps from being changed, by root too: everything inside an installed application, however deep.
/// The application itself may be moved and thrown away, and copies elsewhere are nobody's.
bool isInApplication(const QString& path);

/// The user's is what lies in their home, their temporary folder (both included) and the shared folders; the rest is
/// root's.
Actor ownerByPlace(const QString& path, const Machine& machine);

} // namespace macsim
