#include "startup/items/StartupChanges.h"

#include <algorithm>

namespace quorvane {

bool hasStartupChanges(const StartupConfiguration& configuration) {
    return configuration.disableNetworkAtStartup || !configuration.disabledCloudSyncAtStartup.empty() ||
           std::any_of(configuration.items.begin(), configuration.items.end(), [](const StartupItem& item) {
               const bool isAdded = item.kind == StartupItemKind::addedApp;
               return isAdded ? item.runsAtStartup : !item.runsAtStartup;
           });
}

} // namespace quorvane
