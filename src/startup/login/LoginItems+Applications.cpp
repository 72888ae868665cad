#include "startup/login/LoginItems.h"

#include "core/Collation.h"
#include "core/ExcludedNames.h"
#include "core/Paths.h"
#include "core/UserDefaultKeys.h"
#include "platform/FileManager.h"
#include "platform/Host.h"
#include "platform/UserDefaults.h"
#include "startup/login/LoginItemRemoval.h"

#include <QCoroTask>

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

bool isPerformanceApplication(const QString& name) {
    static const QStringList names{u"Ableton Live"_s, u"Logic Pro"_s,     u"Traktor Pro"_s, u"Serato DJ Pro"_s,
                                   u"rekordbox"_s,    u"Bitwig Studio"_s, u"MainStage"_s,   u"Cubase"_s,
                                   u"Studio One"_s,   u"Pro Tools"_s,     u"REAPER"_s,      u"VirtualDJ"_s};
    return std::any_of(names.begin(), names.end(),
                       [&name](const QString& part) { return name.contains(part, Qt::CaseInsensitive); });
}

QSet<QString> comparablePaths(const QStringList& paths) {
    QSet<QString> comparable;
    for (const QString& path : paths) {
        comparable.insert(comparablePath(path));
    }
    return comparable;
}

bool showsPath(const QList<LoginItem>& items, const QString& path) {
    return std::any_of(items.begin(), items.end(),
                       [&path](const LoginItem& item) { return isLoginItemOf(item, path); });
}

} // namespace

QList<StartupLaunchItem> LoginItems::performanceApplications() {
    if (m_performanceApplications) {
        return *m_performanceApplications;
    }
    const QString folder = u"/Applications"_s;
    QList<StartupLaunchItem> applications;
    try {
        for (const QString& entry : host().files.list(folder)) {
            if (entry.endsWith(u".app"_s) && isPerformanceApplication(entry.chopped(4))) {
                applications.append({entry.chopped(4), folder + u'/' + entry, false});
            }
        }
    } catch (const FileError&) {
        return {}; // not kept: the folder may be readable the next time
    }
    sortLocalized(applications, &StartupLaunchItem::name);
    m_performanceApplications = applications;
    return applications;
}

QSet<QString> LoginItems::managedPaths() const {
    return comparablePaths(host().defaults.stringArray(kQuorvaneManagedStartupAppPaths));
}

void LoginItems::recordManagedPath(const QString& path) {
    if (!managedPaths().contains(comparablePath(path))) {
        const QStringList paths = host().defaults.stringArray(kQuorvaneManagedStartupAppPaths);
        host().defaults.setStringArray(kQuorvaneManagedStartupAppPaths, paths + QStringList(comparablePath(path)));
    }
}

void LoginItems::forgetManagedPath(const QString& path) {
    QStringList paths = host().defaults.stringArray(kQuorvaneManagedStartupAppPaths);
    const auto isForgotten = [&path](const QString& other) { return comparablePath(other) == comparablePath(path); };
    if (paths.removeIf(isForgotten) > 0) {
        host().defaults.setStringArray(kQuorvaneManagedStartupAppPaths, paths);
    }
}

/// What the removal of managed applications has to know of the login items before it begins.
struct LoginItems::ManagedAppRemoval {
    QHash<QString, LoginItem> items; ///< as they are listed, by comparable path
    QSet<QString> heldBack;          ///< paths that stay: audio software that the user didn't add through the program
    LoginItemRemoval removal;        ///< spares every other login item
};

QCoro::Task<bool> LoginItems::removeManaged(QSet<QString> paths) {
    paths = comparablePaths(paths.values());
    if (paths.isEmpty()) {
        co_return true;
    }
    log(u"  [ACTION] Removing %1 Quorvane-managed startup app(s)..."_s.arg(paths.size()));
    const QStringList sorted = sortedTexts(paths);
    const LoginItemList before = co_await current();
    tellUnread(before);
    const QList<Going> going = managedAppsGoing(sorted, managedAppRemoval(before, paths));
    co_await takeOut(going);
    const auto goes = [](const Going& app) { return app.heldBackLine.isEmpty(); };
    if (std::any_of(going.begin(), going.end(), goes) && !haveTwins(going)) {
        readAgain(); // also where System Events had nothing to remove: the list may be older
    }
    const LoginItemList now = co_await current();
    bool succeeded = true;
    for (qsizetype i = 0; i < going.size(); ++i) {
        succeeded = settleManagedApp(sorted.at(i), going.at(i), now) && succeeded;
    }
    succeeded = co_await addTwinsAgain(going) && succeeded;
    co_return succeeded;
}

LoginItems::ManagedAppRemoval LoginItems::managedAppRemoval(const LoginItemList& list,
                                                            const QSet<QString>& going) const {
    const QSet<QString> managed = managedPaths();
    QHash<QString, LoginItem> items;
    QSet<QString> heldBack;
    QList<LoginItem> staying;
    for (const QString& path : going) {
        if (!managed.contains(path) && isExcludedName(path)) {
            heldBack.insert(path);
        }
    }
    QHash<QString, QString> goingByName;
    for (const QString& path : going) {
        goingByName.insert(nameInPath(path), path);
    }
    for (const LoginItem& item : list.items) {
        const QString itemPath = comparablePath(item.path);
        const QString path = going.contains(itemPath) ? itemPath : goingByName.value(item.name);
        const bool isGoing = !path.isEmpty() && isLoginItemOf(item, path);
        const bool isHeldBack = isGoing && !managed.contains(path) && isProtectedLoginItem(item);
        if (isGoing) {
            items.insert(path, item);
        }
        if (isHeldBack) {
            heldBack.insert(path);
        }
        if (isHeldBack || !isGoing) {
            staying.append(item);
        }
    }
    return {items, heldBack, LoginItemRemoval(staying, LoginItemRemoval::knowledgeOf(list))};
}

/// One for each path. Where System Events no longer knows an item's file, its name tells which it is.
QList<LoginItems::Going> LoginItems::managedAppsGoing(const QStringList& paths, const ManagedAppRemoval& before) const {
    QList<Going> going;
    for (const QString& path : paths) {
        Going app{before.items.value(path, LoginItem{nameInPath(path), path, false})};
        const LoginItem& item = app.item;
        if (before.heldBack.contains(path)) {
            app.heldBackLine = u"  [SKIPPED] Protected login item at path: "_s + path;
        } else {
            app.selector = item.path.isEmpty() ? before.removal.byName(item.name, {})
                                               : before.removal.byPath(item.name, item.path);
            app.twins = app.selector ? before.removal.twinsOf(*app.selector) : QList<LoginItem>();
        }
        going.append(app);
    }
    return going;
}

/// Forgets an application that is gone; any other stays recorded, to be tried the next time.
bool LoginItems::settleManagedApp(const QString& path, const Going& going, const LoginItemList& now) {
    if (!going.heldBackLine.isEmpty()) {
        log(going.heldBackLine);
        return true;
    }
    if (!now.tellsAll() || showsPath(now.items, path)) {
        log(u"  [ERROR] Failed to remove startup app from login items: "_s + going.item.name);
        return false;
    }
    log(u"  [APPLIED] Removed startup app from login items: "_s + going.item.name);
    forgetManagedPath(path);
    return true;
}

/// An application is written down first: a program that ends in between still knows whose it is.
QCoro::Task<bool> LoginItems::configure(QList<StartupLaunchItem> applications) {
    if (applications.isEmpty()) {
        co_return true;
    }
    QSet<QString> present = m_registeredPaths(); // a second entry would open it twice
    const LoginItemList list = co_await current();
    tellUnread(list);
    for (const LoginItem& item : list.items) {
        present.insert(comparablePath(item.path));
    }
    const QSet<QString> recorded = managedPaths();
    QList<LoginItemAddition> additions;
    for (const StartupLaunchItem& item : applications) {
        const QString path = comparablePath(item.path);
        if (!present.contains(path)) {
            recordManagedPath(path);
            additions.append({path, item.hidden});
        }
    }
    QList<bool> added = co_await add(additions);
    bool succeeded = true;
    for (const StartupLaunchItem& item : applications) {
        const QString path = comparablePath(item.path);
        if (present.contains(path)) { // the user's own, or recorded already
            log(u"  [SKIPPED] Already configured to start at login: "_s + item.name);
        } else if (added.takeFirst()) {
            log(u"  [APPLIED] Added login item: "_s + item.name + (item.hidden ? u" (hidden)"_s : QString()));
        } else {
            log(u"  [ERROR] Failed to add login item: "_s + item.name);
            succeeded = false;
            if (!recorded.contains(path)) {
                forgetManagedPath(path);
            }
        }
    }
    co_return succeeded;
}

} // namespace quorvane
