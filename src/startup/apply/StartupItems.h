#pragma once

#include "core/Flow.h"
#include "startup/items/DiscoveredStartup.h"

#include <QFuture>

#include <chrono>
#include <memory>
#include <optional>

namespace quorvane {

class BackgroundItems;
class Launchd;
class LoginItems;
struct LoginItemList;

/// What runs when the user logs in, found among all sources and kept until it is invalidated. Main thread.
class StartupItems : private Flow {
public:
    StartupItems(FlowEnvironment& environment, LoginItems& loginItems, Launchd& launchd,
                 BackgroundItems& backgroundItems);
    /// The same items, found by another way: what one has found the other knows.
    /// @param loginItems, launchd  reached by that way, too
    StartupItems(FlowEnvironment& environment, LoginItems& loginItems, Launchd& launchd, const StartupItems& same);

    /// Each item once, sorted by name. Callers share a run. The background task list is taken as it stands.
    QCoro::Task<DiscoveredStartup> discover();
    /// The same for somebody who looks on while a run of another caller's is under way: when that takes longer, what the other
    /// sources have beside System Events. It isn't kept.
    QCoro::Task<DiscoveredStartup> discoverWithin(std::chrono::milliseconds limit);
    /// Forgets the found items, the login items and what launchd said, and lets a run that is under way end without a trace.
    void invalidate();

private:
    struct Cache {
        std::optional<DiscoveredStartup> found;
        quint64 age = 0; ///< counts how often the items were invalidated
    };
    QCoro::Task<DiscoveredStartup> find();
    QCoro::Task<DiscoveredStartup> findBeside(LoginItemList loginItems);

    LoginItems& m_loginItems;
    Launchd& m_launchd;
    BackgroundItems& m_backgroundItems;
    std::shared_ptr<Cache> m_cache = std::make_shared<Cache>();
    std::optional<QFuture<DiscoveredStartup>> m_run;
};

} // namespace quorvane
