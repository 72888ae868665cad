#include "startup/login/LoginItems.h"

#include "core/Json.h"
#include "core/Osascript.h"
#include "core/Paths.h"
#include "platform/FileManager.h"
#include "platform/Host.h"
#include "platform/Machine.h"
#include "startup/items/LoginItem.h"
#include "startup/launchd/BackupFolders.h"
#include "startup/launchd/LaunchFolders.h"
#include "startup/login/LoginItemRemoval.h"
#include "startup/login/LoginItemScripts.h"

#include <QCoroTask>

#include <algorithm>
#include <iterator>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

LoginItems::LoginItems(FlowEnvironment& environment, std::function<QSet<QString>()> protectedPaths)
    : Flow(environment)
    , m_protectedPaths(std::move(protectedPaths)) {}

LoginItems::LoginItems(FlowEnvironment& environment, const LoginItems& same)
    : Flow(environment)
    , m_protectedPaths(same.m_protectedPaths)
    , m_cache(same.m_cache) {}

QCoro::Task<LoginItemList> LoginItems::current() {
    if (m_cache->list) {
        co_return std::as_const(*m_cache->list); // a lasting value that isn't const would be moved out
    }
    const quint64 age = m_cache->age;
    const LoginItemList list = co_await readFromSystemEvents();
    if (list.isAnswered && age == m_cache->age) {
        m_cache->list = list;
    }
    co_return list;
}

void LoginItems::drop() {
    forgetList();
    m_cache->isRefused = false; // the user may have permitted it since
}

void LoginItems::forgetList() {
    ++m_cache->age;
    m_cache->list.reset();
}

QCoro::Task<LoginItemList> LoginItems::readFromSystemEvents() {
    const CommandResult result = co_await runCommand(osascriptCommand(readLoginItemsScript()), OutputCapture::Capture);
    LoginItemList list;
    if (result.isAnswered && result.status == 0) {
        list = parsedLoginItems(result.standardOutput);
    }
    list.isAnswered = result.isAnswered;
    const QSet<QString> protectedPaths = m_protectedPaths();
    for (LoginItem& item : list.items) {
        item.hasProtectedRecord = protectedPaths.contains(withoutFinalSlashes(item.path));
    }
    co_return list;
}

QCoro::Task<QList<LoginItem>> LoginItems::visible() {
    const LoginItemList list = co_await current();
    QList<LoginItem> items = list.items;
    if (items.isEmpty()) {
        co_await logMissingPermission();
    }
    items.removeIf([](const LoginItem& item) { return isProtectedLoginItem(item) || looksLikeBackgroundAgent(item); });
    co_return items;
}

QCoro::Task<void> LoginItems::logMissingPermission() {
    const CommandResult probe =
        co_await runCommand(osascriptCommand(systemEventsProbeScript()), OutputCapture::Capture);
    if (probe.status != 0) {
        log(u"  [ERROR] Could not read login items: "_s + probe.standardError.trimmed());
        m_cache->isRefused = m_cache->isRefused || isAutomationRefused(probe);
        logWhereToPermit();
    }
}

void LoginItems::logWhereToPermit() {
    log(u"  [INFO] Grant Automation permission for System Events in System Settings → Privacy & Security."_s);
}

/// Runs a script that may change the login items. Unless it says that it left them alone, they are read anew by whoever
/// looks next.
///
/// What the user has refused stays refused until they permit it in the system's settings: it is told, and not tried again.
QCoro::Task<LoginItems::SystemEventsReply> LoginItems::change(QString script) {
    if (m_cache->isRefused) {
        co_return SystemEventsReply::Failed;
    }
    const CommandResult result = co_await runCommand(osascriptCommand(script), OutputCapture::Capture);
    const QString reply = result.status == 0 ? result.standardOutput.trimmed() : QString();
    if (reply == u"missing"_s || reply == u"exists"_s) {
        co_return SystemEventsReply::Unchanged;
    }
    forgetList();
    if (isAutomationRefused(result)) {
        m_cache->isRefused = true;
        logWhereToPermit();
    }
    co_return reply == u"ok"_s ? SystemEventsReply::Done : SystemEventsReply::Failed;
}

QCoro::Task<bool> LoginItems::removeByName(QString name) {
    co_return co_await change(removeLoginItemByNameScript(name)) == SystemEventsReply::Done;
}

QCoro::Task<bool> LoginItems::removeAtPath(QString path) {
    co_return co_await change(removeLoginItemAtPathScript(path)) == SystemEventsReply::Done;
}

QCoro::Task<bool> LoginItems::add(QString path, bool hidden) {
    co_return co_await change(addLoginItemScript(path, hidden)) != SystemEventsReply::Failed;
}

/// Removes one item by the means that takes no other with it.
QCoro::Task<bool> LoginItems::remove(LoginItem item, LoginItemRemoval removal) {
    switch (removal.meansFor(item.name, item.path)) {
    case LoginItemRemoval::Means::ByName:
        co_return co_await removeByName(item.name);
    case LoginItemRemoval::Means::ByPath:
        co_return co_await removeAtPath(item.path);
    case LoginItemRemoval::Means::None:
        break;
    }
    co_return false;
}

QCoro::Task<bool> LoginItems::removeAndLog(LoginItem item, LoginItemRemoval removal) {
    const bool isRemoved = co_await remove(item, removal);
    log((isRemoved ? u"  [APPLIED] Removed login item: "_s : u"  [ERROR] Failed to remove login item: "_s) + item.name);
    co_return isRemoved;
}

QCoro::Task<bool> LoginItems::disable(LoginItemTargets targets, QSet<QString> excludedIds) {
    if (targets.isEmpty()) {
        co_return true;
    }
    createBackupFolder(environment());
    const LoginItemList list = co_await current();
    const NamedLoginItems named = namedLoginItems(list, targets, excludedIds);
    writeRemoved(named.matched);
    bool succeeded = true;
    for (const LoginItem& item : named.matched) {
        if (holdsBack(item, excludedIds)) {
            continue;
        }
        succeeded = co_await removeAndLog(item, named.removal) && succeeded;
    }
    const bool leftoversAreGone = co_await removeLeftover(named, targets, excludedIds);
    co_return leftoversAreGone ? succeeded : false;
}

/// Names that the list doesn't show: it may be older than the item, or the item is gone already.
QCoro::Task<bool> LoginItems::removeLeftover(NamedLoginItems named, LoginItemTargets targets,
                                             QSet<QString> excludedIds) {
    QSet<QString> missing;
    for (const QString& name : named.leftover) {
        LoginItem item{name, {}, false};
        if (!named.leftoverRemoval.canGoByName(name)) {
            item = targets.itemOff(name);
        }
        if (named.protectedLeftover.contains(name)) {
            log(u"  [SKIPPED] Protected login item: "_s + name);
            continue;
        }
        if (holdsBack(item, excludedIds)) {
            continue;
        }
        if (co_await remove(item, named.leftoverRemoval)) {
            log(u"  [APPLIED] Removed login item: "_s + name);
        } else {
            log(u"  [WARNING] Login item not found or could not be removed: "_s + name);
            missing.insert(name);
        }
    }
    if (missing.isEmpty()) {
        co_return true; // apart from the line below: g++ 12 awaits the right side of a co_return's "||" in every case
    }
    co_return co_await areGone(missing, targets);
}

/// Asks the system anew: an item that isn't there needs no removal, but one that nobody may see could be there.
QCoro::Task<bool> LoginItems::areGone(QSet<QString> names, LoginItemTargets targets) {
    forgetList();
    const LoginItemList list = co_await current();
    const auto isAmongThem = [&](const LoginItem& item) { return names.contains(item.name) && targets.takes(item); };
    const bool isShown = std::any_of(list.items.begin(), list.items.end(), isAmongThem) ||
                         std::any_of(names.begin(), names.end(),
                                     [&list](const QString& name) { return !shownLine(list, name).isEmpty(); });
    co_return list.wasRead ? !isShown : false;
}

/// True, with a line in the log, for what stays although it was asked to go.
bool LoginItems::holdsBack(const LoginItem& item, const QSet<QString>& excludedIds) {
    if (isProtectedLoginItem(item)) {
        log(u"  [SKIPPED] Protected login item: "_s + item.name);
        return true;
    }
    if (isExcludedAgent(item, excludedIds)) {
        log(u"  [SKIPPED] Excluded App Background Activity login item: "_s + item.name);
        return true;
    }
    return false;
}

/// A record for the user; the program doesn't read it.
void LoginItems::writeRemoved(const QList<LoginItem>& items) {
    if (items.isEmpty()) {
        return;
    }
    Json record = Json::array();
    for (const LoginItem& item : items) {
        record.push_back({{"name", item.name.toStdString()},
                          {"path", item.path.toStdString()},
                          {"hidden", item.hidden ? "true" : "false"}});
    }
    try {
        host().files.writeAtomically(backupFolder(host().machine.homeFolder()) + u"/login_items.json"_s,
                                     jsonText(record));
    } catch (const FileError& error) {
        log(u"  [ERROR] Could not record the removed login items: "_s + error.message());
    }
}

QCoro::Task<bool> LoginItems::removeNonPermitted(CleanReboot cleanReboot) {
    const LoginItemList list = co_await current();
    if (!list.wasRead) {
        co_await logMissingPermission();
        co_return false; // nobody knows what there is
    }
    const DividedLoginItems divided = dividedLoginItems(list.items, cleanReboot);
    if (divided.going.isEmpty()) {
        log(u"  [APPLIED] Login items already match permitted startup list."_s);
        co_return true;
    }
    log(u"  [ACTION] Removing %1 login item(s) not in permitted startup list..."_s.arg(divided.going.size()));
    const auto isExcluded = [&cleanReboot](const LoginItem& item) {
        return isExcludedAgent(item, cleanReboot.excludedIds);
    };
    QList<LoginItem> staying = divided.staying;
    std::copy_if(divided.going.begin(), divided.going.end(), std::back_inserter(staying), isExcluded);
    const LoginItemRemoval removal(staying);
    bool succeeded = true;
    for (const LoginItem& item : divided.going) {
        if (isExcluded(item)) {
            log(u"  [SKIPPED] Excluded App Background Activity login item: "_s + item.name);
            continue;
        }
        succeeded = co_await removeAndLog(item, removal) && succeeded;
    }
    co_return succeeded;
}

} // namespace quorvane
