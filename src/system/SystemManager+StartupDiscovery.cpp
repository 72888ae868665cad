#include "system/SystemManager.h"

#include "core/Background.h"
#include "platform/FileManager.h"
#include "platform/Machine.h"
#include "startup/apply/StartupDiscovery.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <QPromise>

#include <functional>
#include <utility>

namespace quorvane {

namespace {

QList<LaunchFolderListing> listedLaunchFolders(const QList<LaunchFolder>& folders, const FileManager& files) {
    QList<LaunchFolderListing> listings;
    for (const LaunchFolder& folder : folders) {
        try {
            listings.append({folder, files.list(folder.path)});
        } catch (const FileError&) {
            continue; // a folder that doesn't exist or can't be read holds nothing for this user
        }
    }
    return listings;
}

/// What is known of each source before the plists are read.
struct StartupSources {
    QList<LoginItem> loginItems;
    QList<LaunchFolderListing> launchFolders;
    QList<BackgroundTaskItem> backgroundItems;
};

QList<StartupItem> startupItemsOf(const StartupSources& sources, const PropertyLists& propertyLists,
                                  const Bundles& bundles) {
    QList<StartupItem> loginItems;
    for (const LoginItem& item : sources.loginItems) {
        loginItems.append(startupItemOf(item));
    }
    return mergedSources({loginItems, launchStartupItems(sources.launchFolders, propertyLists, bundles),
                          backgroundStartupItems(sources.backgroundItems)});
}

} // namespace

QCoro::Task<QList<StartupItem>> SystemManager::discoverStartupItems(StartupRefresh refresh) {
    if (refresh == StartupRefresh::Force) {
        invalidateStartupCaches();
    }
    if (m_discoveredStartupItemsCache) {
        co_return std::as_const(*m_discoveredStartupItemsCache); // one that isn't const would be moved out
    }
    if (m_startupDiscoveryTask) {
        const QFuture<QList<StartupItem>> running = *m_startupDiscoveryTask;
        co_return co_await running;
    }
    QPromise<QList<StartupItem>> task;
    task.start();
    m_startupDiscoveryTask = task.future();
    const quint64 age = m_startupCachesAge;
    const QList<StartupItem> items = co_await findStartupItems();
    if (age == m_startupCachesAge) {
        m_discoveredStartupItemsCache = items;
        m_startupDiscoveryTask.reset();
    }
    task.addResult(items);
    task.finish();
    co_return items;
}

QCoro::Task<QList<StartupItem>> SystemManager::findStartupItems() {
    StartupSources sources;
    sources.loginItems = co_await rawLoginItems();
    if (sources.loginItems.isEmpty()) {
        co_await logMissingSystemEventsPermission();
    }
    sources.launchFolders = listedLaunchFolders(launchFolders(), m_host.files);
    if (m_backgroundTaskItemsCache) {
        sources.backgroundItems = m_backgroundTaskItemsCache->items();
    }
    const QFuture<QList<StartupItem>> items =
        inBackground(startupItemsOf, sources, std::cref(m_host.propertyLists), std::cref(m_host.bundles));
    co_return co_await items;
}

void SystemManager::invalidateStartupCaches() {
    ++m_startupCachesAge;
    m_startupDiscoveryTask.reset();
    m_discoveredStartupItemsCache.reset();
    dropLoginItems();
}

} // namespace quorvane
