#include "startup/apply/StartupItems.h"

#include "core/Background.h"
#include "platform/FileManager.h"
#include "platform/Host.h"
#include "startup/apply/StartupDiscovery.h"
#include "startup/background/BackgroundItems.h"
#include "startup/launchd/LaunchItems.h"
#include "startup/login/LoginItems.h"

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
    QList<StartupItem> launchItems = launchStartupItems(sources.launchFolders, propertyLists, bundles);
    protectByRecords(launchItems, sources.backgroundItems);
    return mergedSources({loginItems, launchItems, backgroundStartupItems(sources.backgroundItems)});
}

} // namespace

StartupItems::StartupItems(FlowEnvironment& environment, LoginItems& loginItems, LaunchItems& launchItems,
                           BackgroundItems& backgroundItems)
    : Flow(environment)
    , m_loginItems(loginItems)
    , m_launchItems(launchItems)
    , m_backgroundItems(backgroundItems) {}

QCoro::Task<QList<StartupItem>> StartupItems::discover() {
    if (m_found) {
        co_return std::as_const(*m_found); // one that isn't const would be moved out
    }
    if (m_run) {
        const QFuture<QList<StartupItem>> running = *m_run;
        co_return co_await running;
    }
    QPromise<QList<StartupItem>> run;
    run.start();
    m_run = run.future();
    const quint64 age = m_age;
    const QList<StartupItem> items = co_await find();
    if (age == m_age) {
        m_found = items;
        m_run.reset();
    }
    run.addResult(items);
    run.finish();
    co_return items;
}

QCoro::Task<QList<StartupItem>> StartupItems::find() {
    StartupSources sources;
    const LoginItemList loginItems = co_await m_loginItems.current();
    sources.loginItems = loginItems.items;
    if (sources.loginItems.isEmpty()) {
        co_await m_loginItems.logMissingPermission();
    }
    sources.launchFolders = listedLaunchFolders(m_launchItems.folders(), host().files);
    sources.backgroundItems = m_backgroundItems.records();
    const QFuture<QList<StartupItem>> items =
        inBackground(startupItemsOf, sources, std::cref(host().propertyLists), std::cref(host().bundles));
    co_return co_await items;
}

void StartupItems::invalidate() {
    ++m_age;
    m_run.reset();
    m_found.reset();
    m_loginItems.drop();
}

} // namespace quorvane
