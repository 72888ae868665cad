#pragma once

#include "core/Flow.h"
#include "startup/items/StartupItem.h"

#include <QFuture>
#include <QList>

#include <memory>
#include <optional>

namespace quorvane {

class BackgroundItems;
class LaunchItems;
class LoginItems;

/// What runs when the user logs in, found among all sources and kept until it is invalidated. Main thread.
class StartupItems : private Flow {
public:
    StartupItems(FlowEnvironment& environment, LoginItems& loginItems, LaunchItems& launchItems,
                 BackgroundItems& backgroundItems);
    /// The same items, found by another way: what one has found the other knows.
    /// @param loginItems  reached by that way, too
    StartupItems(FlowEnvironment& environment, LoginItems& loginItems, const StartupItems& same);

    /// Each item once, sorted by name. Callers share a run. The background task list is taken as it stands.
    QCoro::Task<QList<StartupItem>> discover();
    /// Forgets the found items and the login items, and lets a run that is under way end without a trace.
    void invalidate();

private:
    struct Findings {
        QList<StartupItem> items;
        bool isComplete = false; ///< each source has answered
    };
    struct Cache {
        std::optional<QList<StartupItem>> found;
        quint64 age = 0; ///< counts how often the items were invalidated
    };
    QCoro::Task<Findings> find();

    LoginItems& m_loginItems;
    LaunchItems& m_launchItems;
    BackgroundItems& m_backgroundItems;
    std::shared_ptr<Cache> m_cache = std::make_shared<Cache>();
    std::optional<QFuture<QList<StartupItem>>> m_run;
};

} // namespace quorvane
