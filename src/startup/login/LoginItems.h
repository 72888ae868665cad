#pragma once

#include "core/Flow.h"
#include "startup/items/CleanReboot.h"
#include "startup/items/LoginItem.h"
#include "startup/items/StartupConfiguration.h"

#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

namespace QCoro {
template <typename T>
class Task;
}

namespace quorvane {

class LoginItemRemoval;
class LoginItemTargets;
struct NamedLoginItems;

/// The login items, asked of System Events and changed through it, and the applications that the program has put among them.
/// The list is kept until a script may have changed it or somebody wants to see the system as it is now. Main thread.
class LoginItems : private Flow {
public:
    /// @param protectedPaths  gives the files that the background task list shows to be audio software's, as far as it is known
    LoginItems(FlowEnvironment& environment, std::function<QSet<QString>()> protectedPaths);
    /// The same login items, reached by another way: what one has read the other knows.
    LoginItems(FlowEnvironment& environment, const LoginItems& same);

    // ---- Reading

    /// From the cache if they were read before.
    QCoro::Task<LoginItemList> current();
    QCoro::Task<LoginItemList> readFromSystemEvents();
    /// Called when a reader must see the system as it is now: at the beginning of each flow.
    void drop();
    /// Those fit for showing: neither audio software nor an application's agents. Logs a missing permission.
    QCoro::Task<QList<LoginItem>> visible();
    QCoro::Task<void> logMissingPermission();

    // ---- Changing

    /// True when it was deleted. Every item of the name goes, in any case.
    QCoro::Task<bool> removeByName(QString name);
    QCoro::Task<bool> removeAtPath(QString path);
    /// True when the item exists afterwards.
    QCoro::Task<bool> add(QString path, bool hidden);
    /// Removes login items and writes down which they were.
    /// @param excludedIds  agents that stay all the same, by id or name
    QCoro::Task<bool> disable(LoginItemTargets targets, QSet<QString> excludedIds);
    /// Removes what a clean reboot doesn't leave in place. @return false when something stayed, or nothing could be read
    QCoro::Task<bool> removeNonPermitted(CleanReboot cleanReboot);

    // ---- Applications that the program opens at login

    /// Installed applications for performers, sorted by name; listed once.
    QList<StartupLaunchItem> performanceApplications();
    /// Those that the program has put into the login items.
    QSet<QString> managedPaths() const;
    void recordManagedPath(const QString& path);
    void forgetManagedPath(const QString& path);
    /// Each goes from the login items, and is forgotten when it is gone from there.
    QCoro::Task<bool> removeManaged(QSet<QString> paths);
    /// Adds those that don't open at login already, and records them.
    QCoro::Task<bool> configure(QList<StartupLaunchItem> applications);

private:
    enum class SystemEventsReply { Done, Unchanged, Failed };
    struct ManagedAppRemoval;

    QCoro::Task<SystemEventsReply> change(QString script);
    void forgetList();
    void logWhereToPermit();
    QCoro::Task<bool> remove(LoginItem item, LoginItemRemoval removal);
    QCoro::Task<bool> removeAndLog(LoginItem item, LoginItemRemoval removal);
    QCoro::Task<bool> removeLeftover(NamedLoginItems named, LoginItemTargets targets, QSet<QString> excludedIds);
    bool holdsBack(const LoginItem& item, const QSet<QString>& excludedIds);
    void writeRemoved(const QList<LoginItem>& items);
    QCoro::Task<bool> areGone(QSet<QString> names, LoginItemTargets targets);
    ManagedAppRemoval managedAppRemoval(const LoginItemList& list, const QSet<QString>& going) const;
    QCoro::Task<bool> removeManagedApp(QString path, ManagedAppRemoval before);

    const std::function<QSet<QString>()> m_protectedPaths;
    struct Cache {
        std::optional<LoginItemList> list;
        quint64 age = 0; ///< counts how often the list was forgotten: a slow read may come too late
        bool isRefused =
            false; ///< the user doesn't let the program control System Events; none is asked to change anything then
    };

    std::shared_ptr<Cache> m_cache = std::make_shared<Cache>();
    std::optional<QList<StartupLaunchItem>> m_performanceApplications;
};

} // namespace quorvane
