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
    return mergedSources({loginItems, launchStartupItems(sources.launchFolders, propertyLists, bundles),
                          backgroundStartupItems(sources.backgroundItems)});
}

} // namespace

StartupItems::StartupItems(FlowEnvironment& environment, LoginItems& loginItems, LaunchItems& launchItems,
                           BackgroundItems& backgroundItems)
    : Flow(environment)
    , m_loginItems(loginItems)
    , m_launchItems(launchItems)
    , m_backgroundItems(backgroundItems) {}

StartupItems::StartupItems(FlowEnvironment& environment, LoginItems& loginItems, const StartupItems& same)
    : Flow(environment)
    , m_loginItems(loginItems)
    , m_launchItems(same.m_launchItems)
    , m_backgroundItems(same.m_backgroundItems)
    , m_cache(same.m_cache) {}

QCoro::Task<QList<StartupItem>> StartupItems::discover() {
    if (m_cache->found) {
        co_return std::as_const(*m_cache->found); // one that isn't const would be moved out
    }
    if (m_run) {
        const QFuture<QList<StartupItem>> running = *m_run;
        co_return co_await running;
    }
    QPromise<QList<StartupItem>> run;
    run.start();
    m_run = run.future();
    const quint64 age = m_cache->age;
    const Findings findings = co_await find();
    if (age == m_cache->age) {
        m_run.reset();
        if (findings.isComplete) {
            m_cache->found = findings.items;
        }
    }
    run.addResult(findings.items);
    run.finish();
    co_return findings.items;
}

QCoro::Task<StartupItems::Findings> StartupItems::find() {
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
    Findings findings;
    findings.items = co_await items;
    findings.isComplete = loginItems.isAnswered;
    co_return findings;
}

void StartupItems::invalidate() {
    ++m_cache->age;
    m_run.reset();
    m_cache->found.reset();
    m_loginItems.drop();
}

} // namespace quorvane
