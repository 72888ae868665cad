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

QCoro::Task<bool> SystemManager::removeLoginItemByName(QString name) {
    return unlessQuitting(m_loginItems->removeByName(std::move(name)));
}

QCoro::Task<bool> SystemManager::removeLoginItemAtPath(QString path) {
    return unlessQuitting(m_loginItems->removeAtPath(std::move(path)));
}

QCoro::Task<bool> SystemManager::addLoginItem(QString path, bool hidden) {
    return unlessQuitting(m_loginItems->add(std::move(path), hidden));
}

QCoro::Task<bool> SystemManager::disableLoginItems(LoginItemTargets targets, QSet<QString> excludedIds) {
    return unlessQuitting(m_loginItems->disable(std::move(targets), std::move(excludedIds)));
}

// ---- Launch agents and daemons

QCoro::Task<bool> SystemManager::disableLaunchItems(QStringList labels, QSet<QString> excludedIds) {
    return unlessQuitting(
        m_launchItems->disable(std::move(labels), std::move(excludedIds), m_backgroundItems->protectedPlists()));
}

QCoro::Task<void> SystemManager::restoreLaunchItems() {
    return m_launchItems->restore();
}

void SystemManager::queueKeptLaunchItems() {
    m_launchItems->queueKept();
}

QCoro::Task<void> SystemManager::settleKeptLaunchItems() {
    m_backgroundItems->forgetSwitchedOff();
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

QCoro::Task<std::optional<QList<BackgroundTaskItem>>> SystemManager::readBackgroundTaskDumpUnprivileged() {
    return m_backgroundItems->readUnprivileged();
}

QCoro::Task<void> SystemManager::loadBackgroundTaskItems() {
    return m_backgroundItems->load();
}

QCoro::Task<void> SystemManager::ensureBackgroundTaskItems(QString prompt, PrivilegedFetch privileged) {
    return m_backgroundItems->ensure(std::move(prompt), privileged);
}

QCoro::Task<void> SystemManager::loadPrivilegedBackgroundDump() {
    return m_backgroundItems->loadPrivilegedDump();
}

void SystemManager::markBackgroundLabelDisabled(const QString& label) {
    m_backgroundItems->markDisabled(label);
}

const std::optional<BackgroundTaskList>& SystemManager::backgroundTaskItems() const {
    return m_backgroundItems->list();
}

QCoro::Task<bool> SystemManager::disableBackgroundItems(QList<BackgroundTaskItem> items, BackgroundItemKind kind) {
    return unlessQuitting(m_backgroundItems->disable(std::move(items), kind));
}

QCoro::Task<bool> SystemManager::disableBackgroundLabels(QSet<QString> labels) {
    return unlessQuitting(m_backgroundItems->disableLabels(std::move(labels)));
}

QCoro::Task<bool> SystemManager::disableCloudSyncBackgroundItems(CloudSyncServices services) {
    return unlessQuitting(m_backgroundItems->disableServices(std::move(services)));
}

QCoro::Task<ApplyVerificationResult>
SystemManager::verifyBackgroundLoginItems(QSet<QString> permittedNames, std::optional<StartupConfiguration> startup) {
    return m_backgroundItems->verify(std::move(permittedNames), std::move(startup));
}

} // namespace quorvane
