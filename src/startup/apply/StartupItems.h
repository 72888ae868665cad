#pragma once

#include "core/Flow.h"
#include "startup/items/StartupItem.h"

#include <QFuture>
#include <QList>

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

    /// Each item once, sorted by name. Callers share a run. The background task list is taken as it stands.
    QCoro::Task<QList<StartupItem>> discover();
    /// Forgets the found items and the login items, and lets a run that is under way end without a trace.
    void invalidate();

private:
    QCoro::Task<QList<StartupItem>> find();

    LoginItems& m_loginItems;
    LaunchItems& m_launchItems;
    BackgroundItems& m_backgroundItems;
    std::optional<QList<StartupItem>> m_found;
    std::optional<QFuture<QList<StartupItem>>> m_run;
    quint64 m_age = 0; ///< counts how often the items were invalidated
};

} // namespace quorvane
