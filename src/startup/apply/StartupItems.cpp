#include "startup/apply/StartupItems.h"

#include "core/Background.h"
#include "platform/Clock.h"
#include "platform/FileManager.h"
#include "platform/Host.h"
#include "startup/apply/StartupDiscovery.h"
#include "startup/background/BackgroundItems.h"
#include "startup/launchd/Launchd.h"
#include "startup/login/LoginItems.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <QPromise>

#include <functional>
#include <utility>

namespace quorvane {

namespace {

/// What is known of each source before the plists are read.
struct StartupSources {
    QList<LoginItem> loginItems;
    LaunchdReadings launchd;
    QList<BackgroundTaskItem> backgroundItems;
    QStringList registeredApplications; ///< paths
    QSet<QString> protectedPaths;       ///< by their records
};

QList<StartupItem> startupItemsOf(const StartupSources& sources, const PropertyLists& propertyLists,
                                  const Bundles& bundles) {
    QList<StartupItem> loginItems;
    for (const LoginItem& item : sources.loginItems) {
        if (!isOwnLoginItem(item)) { // its switch is in Settings
            loginItems.append(startupItemOf(item));
        }
    }
    QList<StartupItem> launchItems =
        launchStartupItems(sources.launchd, sources.backgroundItems, propertyLists, bundles);
    protectByRecords(launchItems, sources.backgroundItems);
    return mergedSources({loginItems, registeredStartupItems(sources.registeredApplications, sources.protectedPaths),
                          launchItems, backgroundStartupItems(sources.backgroundItems, sources.launchd)});
}

LoginItemsSource sourceOf(const LoginItemList& list) {
    if (!list.isAnswered || (list.failure && list.failure->isNotAnswered())) {
        return LoginItemsSource::Unanswered;
    }
    return list.wasRead ? LoginItemsSource::Read : LoginItemsSource::Refused;
}

/// Takes the first that comes: what was found, or the end of the time.
using FirstAnswer = std::shared_ptr<QPromise<std::optional<DiscoveredStartup>>>;

void answerOnce(const FirstAnswer& first, const std::optional<DiscoveredStartup>& answer) {
    if (!first->future().isFinished()) {
        first->addResult(answer);
        first->finish();
    }
}

QCoro::Task<void> settle(FirstAnswer first, QFuture<DiscoveredStartup> discovery) {
    const DiscoveredStartup found = co_await discovery;
    answerOnce(first, found);
}

QCoro::Task<void> settle(FirstAnswer first, QFuture<void> timeIsOver) {
    co_await timeIsOver;
    answerOnce(first, std::nullopt);
}

} // namespace

StartupItems::StartupItems(FlowEnvironment& environment, LoginItems& loginItems, Launchd& launchd,
                           BackgroundItems& backgroundItems)
    : Flow(environment)
    , m_loginItems(loginItems)
    , m_launchd(launchd)
    , m_backgroundItems(backgroundItems) {}

StartupItems::StartupItems(FlowEnvironment& environment, LoginItems& loginItems, Launchd& launchd,
                           const StartupItems& same)
    : Flow(environment)
    , m_loginItems(loginItems)
    , m_launchd(launchd)
    , m_backgroundItems(same.m_backgroundItems)
    , m_cache(same.m_cache) {}

QCoro::Task<DiscoveredStartup> StartupItems::discover() {
    if (m_cache->found) {
        co_return std::as_const(*m_cache->found); // one that isn't const would be moved out
    }
    if (m_run) {
        const QFuture<DiscoveredStartup> running = *m_run;
        co_return co_await running;
    }
    QPromise<DiscoveredStartup> run;
    run.start();
    m_run = run.future();
    const quint64 age = m_cache->age;
    const DiscoveredStartup found = co_await find();
    if (age == m_cache->age) {
        m_run.reset();
        if (found.loginItems != LoginItemsSource::Unanswered) {
            m_cache->found = found;
        }
    }
    run.addResult(found);
    run.finish();
    co_return found;
}

/// What is left waiting behind knows nothing of this object, which may be gone by then.
QCoro::Task<DiscoveredStartup> StartupItems::discoverWithin(std::chrono::milliseconds limit) {
    if (!m_run) {
        co_return co_await discover();
    }
    const auto first = std::make_shared<QPromise<std::optional<DiscoveredStartup>>>();
    first->start();
    const QFuture<std::optional<DiscoveredStartup>> answer = first->future();
    settle(first, *m_run);
    settle(first, host().clock.sleepFor(limit));
    const std::optional<DiscoveredStartup> found = co_await answer;
    if (found) {
        co_return *found;
    }
    LoginItemList unanswered;
    unanswered.isAnswered = false;
    co_return co_await findBeside(unanswered);
}

QCoro::Task<DiscoveredStartup> StartupItems::find() {
    const LoginItemList loginItems = co_await m_loginItems.current();
    m_loginItems.tellUnread(loginItems);
    co_return co_await findBeside(loginItems);
}

/// The other sources, together with the login items.
QCoro::Task<DiscoveredStartup> StartupItems::findBeside(LoginItemList loginItems) {
    StartupSources sources;
    sources.loginItems = loginItems.items;
    sources.launchd = co_await m_launchd.readings();
    sources.backgroundItems = m_backgroundItems.records();
    sources.registeredApplications = m_backgroundItems.memory().registeredApplications;
    sources.protectedPaths = m_backgroundItems.protectedPaths();
    DiscoveredStartup found;
    found.loginItems = sourceOf(loginItems);
    // There is no Mac without a record.
    found.backgroundItems =
        sources.backgroundItems.isEmpty() ? BackgroundItemsSource::NotYetRead : BackgroundItemsSource::Read;
    const QFuture<QList<StartupItem>> items =
        inBackground(startupItemsOf, sources, std::cref(host().propertyLists), std::cref(host().bundles));
    found.items = co_await items;
    co_return found;
}

void StartupItems::invalidate() {
    ++m_cache->age;
    m_run.reset();
    m_cache->found.reset();
    m_loginItems.drop();
    m_launchd.drop();
}

} // namespace quorvane
