#pragma once

#include "startup/items/LoginItemTargets.h"

namespace quorvane {

/// What applying a configuration switches off, by the means that switches it off.
struct StartupTargetSets {
    LoginItemTargets loginItems;
    QSet<QString> loginPaths; ///< of login items that belong to a cloud service; comparable
    QSet<QString> launchLabels;
    QSet<QString> backgroundLabels;

    bool operator==(const StartupTargetSets&) const = default;
};

/// The list that cloud services widen over: the configuration's items, then the discovered ones that it
/// lacks.
QList<StartupItem> wideningItems(const StartupConfiguration& configuration, const QList<StartupItem>& discovered);

/// The items that the configuration switches off, and those of `items` that belong to one of the services.
/// An item known by its launch plist counts with the launch labels, whatever its kind: no login item bears
/// its name.
StartupTargetSets disabledTargetSets(const StartupConfiguration& configuration, const CloudSyncServices& services,
                                     const QList<StartupItem>& items);

} // namespace quorvane
