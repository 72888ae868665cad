#include "system/SystemManager.h"

#include "core/AdminBatch.h"
#include "core/AdminPrompts.h"
#include "flows/FlowJournal.h"
#include "flows/FlowSteps.h"
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
    m_backgroundItems->planKept(configuration);
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
    disableTargetBackgroundItems(targets.backgroundLabels);
    disableCloudServices(services);
    succeeded = co_await finishPlanOutsideBatch() && succeeded;
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
    QList<LoginItemSelector> selectors;
    QSet<QString> heldBack;
    for (const QString& path : sortedTexts(paths)) {
        const QString asListed = listedPath(items, path);
        if (isExcludedName(path) || !removal.canGoByPath(asListed)) {
            heldBack.insert(path);
        } else {
            selectors.append({{}, asListed});
        }
    }
    QList<bool> removed = co_await removeLoginItems(selectors);
    for (const QString& path : sortedTexts(paths)) {
        if (heldBack.contains(path)) {
            log(u"  [SKIPPED] Protected login item at path: "_s + path);
        } else if (removed.takeFirst()) {
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

/// When the batch is finished: the list of what there is comes with it.
void SystemManager::disableTargetBackgroundItems(const QSet<QString>& labels) {
    if (labels.isEmpty()) {
        return;
    }
    log(u"  [ACTION] Disabling %1 background item(s)..."_s.arg(labels.size()));
    m_backgroundItems->planLabels(labels);
}

void SystemManager::disableCloudServices(const CloudSyncServices& services) {
    if (services.empty()) {
        return;
    }
    QStringList names;
    std::transform(services.begin(), services.end(), std::back_inserter(names), displayName);
    names.sort();
    log(u"  [APPLIED] Disabled cloud sync at startup: "_s + names.join(u", "_s));
    m_backgroundItems->planServices(services);
}

/// The list of what there is comes with a batch. Where the caller has opened none, this one is the plan's own.
QCoro::Task<bool> SystemManager::finishPlanOutsideBatch() {
    if (m_adminBatch->isOpen() || !m_backgroundItems->plan()) {
        co_return true;
    }
    m_adminBatch->begin(); // within a flow, which goes on: what it has read holds
    co_return co_await finishAdminBatch(kSystemChangesPrompt);
}

QCoro::Task<StartupApplyResult> SystemManager::applyStartupChanges(StartupConfiguration configuration) {
    m_lastApplyVerification.reset();
    if (!configuration.disabledBackgroundLabels().isEmpty() || !configuration.disabledCloudSyncAtStartup.empty() ||
        m_backgroundItems->isSomethingWaiting()) {
        deferBackgroundTaskFetchToAdminBatch();
    }
    const FlowRecording recording = recordStartup(configuration);
    beginAdminBatch();
    const bool isCarriedOut = co_await applyStartupConfiguration(configuration);
    m_journal->strike(kStartupStep);
    const bool isFlushed =
        co_await finishAdminBatch(u"Quorvane needs your administrator password to apply startup changes."_s);
    m_loginItems->readAgain();
    StartupApplyResult result;
    result.applySucceeded = isCarriedOut && isFlushed;
    result.verification = co_await verifyStartupConfiguration(configuration);
    result.applySucceeded = result.applySucceeded && !isQuitting();
    invalidateStartupCaches();
    m_lastApplyVerification = result.verification;
    log(summary(result.verification));
    if (result.applySucceeded) {
        noteLeft(result.verification);
    }
    for (const ApplyVerificationResult::Item& item : result.verification.failed) {
        logNoteOf(item);
    }
    if (!isFlushed && configuration.disableNetworkAtStartup) {
        co_await settleSwitchedOff();
    }
    co_return result;
}

} // namespace quorvane
