#pragma once

#include "startup/launchd/DisabledServices.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>

namespace quorvane {

/// What is known of launch items beside launchd and their plists: what the background task list tells, and an organization's rules.
struct LaunchItemGuards {
    QSet<QString> protectedNames;         ///< file names of plists of audio software
    QHash<QString, QString> managedNames; ///< of those that an organization manages, with what people know them by
    QSet<QString> pathsSwitchedOff;       ///< of plists that the user has switched off in System Settings
    QList<LaunchdService> staying;        ///< under other plists than those in the launch folders
    bool areDaemonsHeld = false;          ///< an organization manages something on this Mac, and nobody knows yet what
};

} // namespace quorvane
