#pragma once

#include "startup/items/StartupItem.h"

#include <QList>
#include <QStringList>

// Older profile files have no startup configuration but flat lists: login items and launch plists that are
// off, background items that stay, the only login items that may run after a clean reboot, and applications
// to open. `StartupConfiguration::fromLegacyFields` turns them into items; where several lists speak of one
// item, the later of the fields below wins.
namespace quorvane {

/// The flat fields of an older profile file.
struct LegacyStartupFields {
    QStringList disabledLoginItems;              ///< names or paths
    QStringList disabledLaunchItems;             ///< plist file names
    QStringList excludedBackgroundActivityItems; ///< identifiers of startup items
    QStringList permittedStartupApps;            ///< names or paths; means something only for a clean reboot
    QList<StartupLaunchItem> startupLaunchItems;
    bool disableNetwork = false;
    bool cleanReboot = false; ///< from the settings of the same file
};

} // namespace quorvane
