#include "system/SystemManager.h"

#include "core/Background.h"
#include "network/NetworkServices.h"
#include "startup/apply/ActiveStartup.h"
#include "startup/apply/StartupTargets.h"
#include "startup/apply/StartupVerification.h"
#include "startup/background/BackgroundItems.h"
#include "startup/items/StartupChanges.h"
#include "startup/launchd/LaunchItems.h"
#include "startup/login/LoginItems.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <algorithm>

namespace quorvane {

namespace {

/// With no service listed, or one that can't be read, nobody knows.
bool areAllOff(const QList<NetworkServiceState>& services) {
    return !services.isEmpty() && std::all_of(services.begin(), services.end(), [](const NetworkServiceState& service) {
        return service.isEnabled == false;
    });
}

} // namespace

QCoro::Task<StartupReadings> SystemManager::startupReadings(StartupConfiguration configuration) {
    StartupReadings readings;
    readings.discovered = co_await discoverStartupItems(StartupRefresh::UseCache);
    readings.loginItems = co_await m_loginItems->current();
    readings.backgroundItems = m_backgroundItems->list();
    readings.managedPaths = managedStartupAppPaths();
    const StartupTargetSets targets = disabledTargetSets(configuration, configuration.disabledCloudSyncAtStartup,
                                                         wideningItems(configuration, readings.discovered));
    for (const QString& label : targets.launchLabels) {
        if (m_launchItems->hasPlist(label)) {
            readings.launchPlists.insert(label);
        }
    }
    co_return readings;
}

QCoro::Task<StartupChangePreview> SystemManager::previewStartupChanges(StartupConfiguration configuration,
                                                                       std::optional<CleanReboot> cleanReboot) {
    if (!cleanReboot && !hasStartupChanges(configuration) && managedStartupAppPaths().isEmpty()) {
        co_return StartupChangePreview(); // nobody has to wait for System Events
    }
    const StartupReadings readings = co_await startupReadings(configuration);
    co_return co_await inBackground(startupChangePreview, configuration, cleanReboot, readings);
}

QCoro::Task<StartupChangePreview> SystemManager::previewCleanReboot(CleanReboot cleanReboot) {
    const StartupReadings readings = co_await startupReadings(cleanReboot.startup.value_or(StartupConfiguration()));
    co_return co_await inBackground(cleanRebootPreview, cleanReboot, readings);
}

QCoro::Task<ApplyVerificationResult> SystemManager::verifyStartupConfiguration(StartupConfiguration configuration) {
    if (!hasStartupChanges(configuration) && managedStartupAppPaths().isEmpty()) {
        co_return ApplyVerificationResult(); // nothing to check, so nobody has to wait for System Events
    }
    StartupReadings readings = co_await startupReadings(configuration);
    if (configuration.disableNetworkAtStartup) {
        readings.isNetworkOff = areAllOff(co_await readNetworkServices());
    }
    co_return co_await inBackground(startupVerification, configuration, readings);
}

} // namespace quorvane
