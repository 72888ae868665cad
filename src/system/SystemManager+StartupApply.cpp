#include "system/SystemManager.h"

#include "startup/apply/StartupTargets.h"
#include "startup/apply/StartupVerification.h"
#include "startup/background/BackgroundItems.h"
#include "startup/items/StartupChanges.h"
#include "startup/login/LoginItemRemoval.h"
#include "startup/login/LoginItems.h"

#include <QCoroTask>

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// Audio software may be known by its name alone, which a path doesn't show.
LoginItemRemoval sparingProtectedItems(QList<LoginItem> items) {
    items.removeIf([](const LoginItem& item) { return !isProtectedLoginItem(item); });
    return LoginItemRemoval(items);
}

} // namespace

QCoro::Task<bool> SystemManager::applyStartupConfiguration(StartupConfiguration configuration) {
    log(u"\nApplying startup configuration..."_s);
    bool succeeded = co_await removeUnconfiguredManagedApps(configuration);
    if (hasStartupChanges(configuration)) {
        succeeded = co_await carryOutStartupChanges(configuration) && succeeded;
    }
    succeeded = succeeded && !isQuitting();
    log(succeeded ? u"\nStartup configuration applied."_s : u"\nStartup configuration applied with errors."_s);
    co_return succeeded;
}

/// Every step runs whatever became of the others.
QCoro::Task<bool> SystemManager::carryOutStartupChanges(StartupConfiguration configuration) {
    const CloudSyncServices services = configuration.disabledCloudSyncAtStartup;
    const QList<StartupItem> discovered = co_await discoverStartupItems(StartupRefresh::UseCache);
    const StartupTargetSets targets =
        disabledTargetSets(configuration, services, wideningItems(configuration, discovered));
    const QList<StartupLaunchItem> launchItems = configuration.startupLaunchItems();

    bool succeeded = co_await disableTargetLoginItems(targets.loginItems);
    co_await removeTargetLoginPaths(targets.loginPaths);
    succeeded = co_await disableTargetLaunchItems(targets.launchLabels) && succeeded;
    succeeded = co_await disableTargetBackgroundItems(targets.backgroundLabels) && succeeded;
    succeeded = co_await disableCloudServices(services) && succeeded;
    if (configuration.disableNetworkAtStartup) {
        log(u"  [ACTION] Disabling network interfaces..."_s);
        succeeded = co_await disableAllNetworkConnections() && succeeded;
    }
    if (!launchItems.isEmpty()) {
        log(u"  [ACTION] Configuring %1 application(s) to start at login..."_s.arg(launchItems.size()));
        succeeded = co_await configureStartupApps(launchItems) && succeeded;
    }
    co_return succeeded;
}

QCoro::Task<bool> SystemManager::disableTargetLoginItems(LoginItemTargets targets) {
    if (targets.isEmpty()) {
        co_return true;
    }
    log(u"  [ACTION] Disabling %1 login item(s)..."_s.arg(targets.names().size()));
    co_return co_await disableLoginItems(targets, {});
}

/// Of cloud services. An item that has already gone by its name is no failure.
QCoro::Task<void> SystemManager::removeTargetLoginPaths(QSet<QString> paths) {
    if (paths.isEmpty()) {
        co_return;
    }
    const QList<LoginItem> items = co_await rawLoginItems();
    const LoginItemRemoval removal = sparingProtectedItems(items);
    for (const QString& path : sortedTexts(paths)) {
        const QString asListed = listedPath(items, path);
        if (isExcludedName(path) || !removal.canGoByPath(asListed)) {
            log(u"  [SKIPPED] Protected login item at path: "_s + path);
        } else if (co_await removeLoginItemAtPath(asListed)) {
            log(u"  [APPLIED] Removed login item at path: "_s + path);
        } else {
            log(u"  [WARNING] Could not remove login item at path: "_s + path);
        }
    }
}

QCoro::Task<bool> SystemManager::disableTargetLaunchItems(QSet<QString> labels) {
    if (labels.isEmpty()) {
        co_return true;
    }
    log(u"  [ACTION] Disabling %1 launch item(s)..."_s.arg(labels.size()));
    co_return co_await disableLaunchItems(sortedTexts(labels), {});
}

QCoro::Task<bool> SystemManager::disableTargetBackgroundItems(QSet<QString> labels) {
    if (labels.isEmpty()) {
        co_return true;
    }
    log(u"  [ACTION] Disabling %1 background item(s)..."_s.arg(labels.size()));
    if (m_backgroundItems->isDeferred()) {
        m_backgroundItems->planLabels(labels);
        co_return true;
    }
    co_return co_await disableBackgroundLabels(labels);
}

QCoro::Task<bool> SystemManager::disableCloudServices(CloudSyncServices services) {
    if (services.empty()) {
        co_return true;
    }
    QStringList names;
    std::transform(services.begin(), services.end(), std::back_inserter(names), displayName);
    names.sort();
    log(u"  [APPLIED] Disabled cloud sync at startup: "_s + names.join(u", "_s));
    if (m_backgroundItems->isDeferred()) {
        m_backgroundItems->planServices(services);
        co_return true;
    }
    co_return co_await disableCloudSyncBackgroundItems(services);
}

QCoro::Task<StartupApplyResult> SystemManager::applyStartupChanges(StartupConfiguration configuration) {
    m_lastApplyVerification.reset();
    const bool isDeferred =
        !configuration.disabledBackgroundLabels().isEmpty() || !configuration.disabledCloudSyncAtStartup.empty();
    if (isDeferred) {
        deferBackgroundTaskFetchToAdminBatch();
    }
    beginAdminBatch();
    const bool isCarriedOut = co_await applyStartupConfiguration(configuration);
    const bool isFlushed =
        co_await finishAdminBatch(u"Quorvane needs your administrator password to apply startup changes."_s);
    m_loginItems->drop();
    StartupApplyResult result;
    result.applySucceeded = isCarriedOut && isFlushed;
    result.verification = co_await verifyStartupConfiguration(configuration);
    result.applySucceeded = result.applySucceeded && !isQuitting();
    invalidateStartupCaches();
    m_lastApplyVerification = result.verification;
    log(summary(result.verification));
    co_return result;
}

} // namespace quorvane
