#pragma once

#include "startup/items/StartupConfiguration.h"

namespace quorvane {

struct StartupReadings;

/// What applying a startup configuration would change, by name.
struct StartupChangePreview {
    QList<StartupItem> willDisable;      ///< now active, or not known to be off, and switched off by the apply
    QList<StartupLaunchItem> willAdd;    ///< don't open at login yet
    QList<StartupLaunchItem> willRemove; ///< added by the program earlier, no longer in the configuration
    bool disableNetwork = false;
    QList<CloudSyncService> disabledCloudSync; ///< by display name

    bool operator==(const StartupChangePreview&) const = default;
};

StartupChangePreview startupChangePreview(const StartupConfiguration& configuration, const StartupReadings& readings);

} // namespace quorvane
