#pragma once

#include "startup/items/CleanReboot.h"

namespace quorvane {

struct StartupReadings;

/// What an apply would change of what runs at login, by name.
struct StartupChangePreview {
    QList<StartupItem> willDisable; ///< now active, or not known to be off, and switched off by the apply
    QSet<QString> byHand;           ///< the `id` of those of them that only the user can turn off, in System Settings
    QSet<QString> onAgain;          ///< the `id` of those of them that the program had switched off once
    /// A clean reboot takes background items, too, and nobody knows yet which there are.
    bool willDisableUnknownBackgroundItems = false;
    QString unreadLoginItems;            ///< why nothing is known of them; empty where they were read
    QList<StartupLaunchItem> willAdd;    ///< don't open at login yet
    QList<StartupLaunchItem> willRemove; ///< added by the program earlier, no longer in the configuration
    bool disableNetwork = false;
    QList<CloudSyncService> disabledCloudSync; ///< by display name

    bool operator==(const StartupChangePreview&) const = default;
};

/// @param cleanReboot  the one that goes with the configuration, if any
StartupChangePreview startupChangePreview(const StartupConfiguration& configuration,
                                          const std::optional<CleanReboot>& cleanReboot,
                                          const StartupReadings& readings);

/// Of a clean reboot alone, as it goes with tweaks.
StartupChangePreview cleanRebootPreview(const CleanReboot& cleanReboot, const StartupReadings& readings);

} // namespace quorvane
