#include "startup/StartupChanges.h"

#include <algorithm>

namespace quorvane {

bool hasStartupChanges(const StartupConfiguration& configuration) {
    return configuration.disableNetworkAtStartup || !configuration.disabledCloudSyncAtStartup.empty() ||
           std::any_of(configuration.items.begin(), configuration.items.end(), [](const StartupItem& item) {
               return item.runsAtStartup == (item.kind == StartupItemKind::addedApp);
           });
}

} // namespace quorvane
