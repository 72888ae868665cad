#pragma once

#include "startup/background/BackgroundTaskList.h"
#include "startup/items/CleanReboot.h"

namespace quorvane {

/// What is to happen to background items once the dump can be read: it needs root, and so waits for the batch.
struct BackgroundLoginItemChangePlan {
    std::optional<QSet<QString>> cleanRebootPermittedNames; ///< when present, everything not permitted goes
    std::optional<StartupConfiguration> cleanRebootStartup; ///< the configuration that goes with those names
    CloudSyncServices cloudSyncServices;                    ///< services whose helpers go
    QSet<QString> disabledBackgroundLaunchLabels;           ///< labels that go
    QSet<QString> keptIdentifiers; ///< labels and file names of launch plists that the profile wants to have on

    bool hasWork() const {
        return cleanRebootPermittedNames || !cloudSyncServices.empty() || !disabledBackgroundLaunchLabels.isEmpty();
    }
    bool operator==(const BackgroundLoginItemChangePlan&) const = default;
};

/// The records that the plan switches off, each once.
QList<BackgroundTaskItem> plannedRecords(const BackgroundLoginItemChangePlan& plan, const BackgroundTaskList& list);

/// The active records that belong to one of the services.
QList<BackgroundTaskItem> activeRecordsOfServices(const QList<BackgroundTaskItem>& items,
                                                  const CloudSyncServices& services);
bool matchesCloudService(const BackgroundTaskItem& item, CloudSyncService service);

} // namespace quorvane
