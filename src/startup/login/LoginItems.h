#pragma once

#include "core/Flow.h"
#include "startup/items/CleanReboot.h"
#include "startup/items/LoginItem.h"
#include "startup/items/StartupConfiguration.h"
#include "startup/login/LoginItemScripts.h"

#include <QHash>
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
    /// @param registeredPaths  gives the applications that open at login by their own registration, comparable
    /// @param onListed         told of each list that was read: what System Events lists isn't such an application
    LoginItems(FlowEnvironment& environment, std::function<QSet<QString>()> protectedPaths,
               std::function<QSet<QString>()> registeredPaths, std::function<void(const QList<LoginItem>&)> onListed);
    /// The same login items, reached by another way: what one has read the other knows.
    LoginItems(FlowEnvironment& environment, const LoginItems& same);

    // ---- Reading

    /// From the cache if they were read before.
    QCoro::Task<LoginItemList> current();
    /// As they were read last, without asking; none when they would have to be read.
    const std::optional<LoginItemList>& known() const { return m_cache->list; }
    QCoro::Task<LoginItemList> readFromSystemEvents();
    /// Called when a reader must see the system as it is now: at the beginning of each flow.
    void drop();
    /// Called within a flow that may have changed them. A permission that held the flow up isn't waited for once more.
    void readAgain();
    /// Called when somebody looks who has no flow of their own: what wasn't permitted may be so now.
    void dropUnread();
    /// Those fit for showing: neither audio software nor an application's agents. Tells of a list that couldn't be read.
    QCoro::Task<QList<LoginItem>> visible();
    /// Once in a flow, however many of its steps find out: why the list couldn't be read, and where to permit it.
    void tellUnread(const LoginItemList& list);

    // ---- Changing: one script for all

    /// For each, true when something was deleted.
    QCoro::Task<QList<bool>> remove(QList<LoginItemSelector> selectors);
    /// For each, true when the item exists afterwards.
    QCoro::Task<QList<bool>> add(QList<LoginItemAddition> additions);
    /// Sets whether items that are there open hidden. For each, true when it was set.
    QCoro::Task<QList<bool>> hide(QList<LoginItemHiding> hidings);
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
    /// An item that was asked to go, in the order of the log.
    struct Going {
        LoginItem item;
        QString heldBackLine{};                      ///< why it stays; empty where it goes
        std::optional<LoginItemSelector> selector{}; ///< none: it stays, or can't go without taking another along
        QList<LoginItem> twins{};                    ///< stay, though the same event may take them along
        LoginItemAnswer answer = LoginItemAnswer::Failed;
    };
    struct ManagedAppRemoval;

    QCoro::Task<LoginItemList> understood(QString output);
    QCoro::Task<QList<LoginItemAnswer>> change(QList<LoginItemScript> scripts);
    void forgetList();
    void tellWhereToPermit();
    static bool haveTwins(const QList<Going>& going);
    /// For each, true when it was removed. Where one may have taken another along, the list is read again, and what it shows
    /// hasn't gone.
    QCoro::Task<QList<bool>> takeOut(QList<Going> going);
    /// Puts back what a removal took along. @return false when one of them is gone, or nobody knows
    QCoro::Task<bool> addTwinsAgain(QList<Going> going);
    static Going goingByName(const LoginItem& item, const QSet<QString>& excludedIds, const LoginItemRemoval& removal);
    static QList<Going> leftoverOf(const NamedLoginItems& named, const LoginItemTargets& targets,
                                   const QSet<QString>& excludedIds);
    bool logRemoval(const Going& going, bool isTaken, const QString& failure);
    void writeRemoved(const QList<LoginItem>& items);
    QCoro::Task<bool> areGone(QSet<QString> names, LoginItemTargets targets);
    ManagedAppRemoval managedAppRemoval(const LoginItemList& list, const QSet<QString>& going) const;
    QList<Going> managedAppsGoing(const QStringList& paths, const ManagedAppRemoval& before) const;
    bool settleManagedApp(const QString& path, const Going& going, const LoginItemList& now);

    const std::function<QSet<QString>()> m_protectedPaths;
    const std::function<QSet<QString>()> m_registeredPaths;
    const std::function<void(const QList<LoginItem>&)> m_onListed;
    struct Cache {
        std::optional<LoginItemList> list;
        quint64 age = 0; ///< counts how often the list was forgotten: a slow read may come too late
        // Of the flow at hand:
        std::optional<ScriptFailure> heldUpBy; ///< a permission that is refused or not answered; nothing is tried then
        bool isUnreadTold = false;
        bool isWhereToPermitTold = false;
        QHash<QString, QString> namesOfLines; ///< of lines that don't tell by themselves where the name ends
    };

    std::shared_ptr<Cache> m_cache = std::make_shared<Cache>();
    std::optional<QList<StartupLaunchItem>> m_performanceApplications;
};

} // namespace quorvane
