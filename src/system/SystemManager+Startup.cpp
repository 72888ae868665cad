// What runs at login is the business of LoginItems, LaunchItems, BackgroundItems and StartupItems; this gives them the names
// by which the rest of the program asks.

#include "system/SystemManager.h"

#include "platform/Machine.h"
#include "profiles/ProfileManager.h"
#include "startup/apply/StartupItems.h"
#include "startup/background/BackgroundItems.h"
#include "startup/launchd/LaunchItems.h"
#include "startup/login/LoginItems.h"

#include <QCoroTask>

#include <chrono>
#include <utility>

namespace quorvane {

namespace {

/// How long somebody who looks on waits for System Events.
constexpr std::chrono::seconds kSystemEventsLimit(10);

QSet<QString> pathsOf(const QList<StartupLaunchItem>& items) {
    QSet<QString> paths;
    for (const StartupLaunchItem& item : items) {
        paths.insert(comparablePath(item.path));
    }
    return paths;
}

} // namespace

// ---- Discovery

QCoro::Task<QList<StartupItem>> SystemManager::discoverStartupItems(StartupRefresh refresh) {
    if (refresh == StartupRefresh::Force) {
        invalidateStartupCaches();
    }
    const DiscoveredStartup found = co_await m_startupItems->discover();
    co_return found.items;
}

QCoro::Task<DiscoveredStartup> SystemManager::discoverStartup(StartupRefresh refresh) {
    if (refresh == StartupRefresh::Force) {
        invalidateStartupCaches();
    }
    return m_startupItems->discoverWithin(kSystemEventsLimit);
}

void SystemManager::invalidateStartupCaches() {
    m_startupItems->invalidate();
}

// ---- Login items

QCoro::Task<QList<LoginItem>> SystemManager::rawLoginItems() {
    const LoginItemList list = co_await m_loginItems->current();
    co_return list.items;
}

QCoro::Task<LoginItemList> SystemManager::readLoginItemsFromSystemEvents() {
    return m_loginItems->readFromSystemEvents();
}

QCoro::Task<QList<LoginItem>> SystemManager::visibleLoginItems() {
    return m_loginItems->visible();
}

QCoro::Task<QList<bool>> SystemManager::removeLoginItems(QList<LoginItemSelector> selectors) {
    return m_loginItems->remove(std::move(selectors));
}

QCoro::Task<QList<bool>> SystemManager::addLoginItems(QList<LoginItemAddition> additions) {
    return m_loginItems->add(std::move(additions));
}

QCoro::Task<bool> SystemManager::disableLoginItems(LoginItemTargets targets, QSet<QString> excludedIds) {
    return unlessQuitting(m_loginItems->disable(std::move(targets), std::move(excludedIds)));
}

// ---- Launch agents and daemons

QCoro::Task<bool> SystemManager::disableLaunchItems(QStringList labels, QSet<QString> excludedIds) {
    const LaunchItemGuards guards = co_await m_backgroundItems->launchItemGuards();
    const LaunchItems::Outcome outcome = co_await m_launchItems->disable(labels, excludedIds, guards);
    for (const LaunchPlist& daemon : outcome.held) {
        m_backgroundItems->planHeldDaemon(daemon);
    }
    co_return outcome.succeeded && !isQuitting();
}

QCoro::Task<void> SystemManager::restoreLaunchItems() {
    return m_launchItems->restore();
}

void SystemManager::queueKeptLaunchItems() {
    m_launchItems->queueKept();
}

QCoro::Task<void> SystemManager::settleKeptLaunchItems() {
    m_backgroundItems->forgetWaiting();
    return m_launchItems->settleKept();
}

// ---- Applications

QList<StartupLaunchItem> SystemManager::performanceApplications() {
    return m_loginItems->performanceApplications();
}

QSet<QString> SystemManager::managedStartupAppPaths() const {
    return m_loginItems->managedPaths();
}

void SystemManager::recordManagedStartupAppPath(const QString& path) {
    m_loginItems->recordManagedPath(path);
}

void SystemManager::recordManagedStartupApps(const QList<StartupLaunchItem>& items) {
    for (const StartupLaunchItem& item : items) {
        m_loginItems->recordManagedPath(item.path);
    }
}

void SystemManager::forgetManagedStartupAppPath(const QString& path) {
    m_loginItems->forgetManagedPath(path);
}

QSet<QString> SystemManager::profileStartupAppPaths() const {
    QSet<QString> paths;
    for (const UnifiedProfile& profile :
         ProfileManager(m_host.files, profilesDirectory(m_host.machine)).listProfiles()) {
        paths.unite(pathsOf(profile.startup.startupLaunchItems()));
    }
    return paths;
}

QCoro::Task<bool> SystemManager::removeUnconfiguredManagedApps(const StartupConfiguration& configuration) {
    return unlessQuitting(m_loginItems->removeManaged(configuration.notOpenedOf(managedStartupAppPaths())));
}

QCoro::Task<bool> SystemManager::removeManagedStartupApps(const std::optional<QSet<QString>>& paths) {
    return unlessQuitting(m_loginItems->removeManaged(paths.value_or(managedStartupAppPaths())));
}

QCoro::Task<bool> SystemManager::configureStartupApps(QList<StartupLaunchItem> launchItems) {
    return unlessQuitting(m_loginItems->configure(std::move(launchItems)));
}

// ---- Background items

QString SystemManager::backgroundDumpPath() const {
    return m_backgroundItems->dumpPath();
}

QCoro::Task<void> SystemManager::loadPrivilegedBackgroundDump() {
    return m_backgroundItems->loadPrivilegedDump();
}

const std::optional<BackgroundTaskList>& SystemManager::backgroundTaskItems() const {
    return m_backgroundItems->list();
}

QCoro::Task<ApplyVerificationResult>
SystemManager::verifyBackgroundLoginItems(QSet<QString> permittedNames, std::optional<StartupConfiguration> startup) {
    return m_backgroundItems->verify(std::move(permittedNames), std::move(startup));
}

} // namespace quorvane
