#include "core/SystemManager.h"

#include "core/UserDefaultKeys.h"
#include "platform/UserDefaults.h"
#include "startup/StartupChanges.h"

#include <QCoroTask>

namespace quorvane {

using namespace Qt::StringLiterals;

QCoro::Task<bool> SystemManager::applyStartupConfiguration(StartupConfiguration configuration) {
    log(u"\nApplying startup configuration..."_s);
    // Managed apps that the configuration doesn't hold would have to leave the login items.
    const bool nothingToRemove = m_host.defaults.stringArray(kQuorvaneManagedStartupAppPaths).isEmpty();
    const bool succeeded = nothingToRemove && !hasStartupChanges(configuration);
    if (!succeeded) {
        log(u"  [ERROR] Startup changes can't be applied yet."_s);
    }
    log(succeeded ? u"\nStartup configuration applied."_s : u"\nStartup configuration applied with errors."_s);
    co_return succeeded;
}

} // namespace quorvane
