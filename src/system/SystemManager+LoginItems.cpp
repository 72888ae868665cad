#include "system/SystemManager.h"

#include "core/Json.h"
#include "platform/FileManager.h"
#include "platform/Machine.h"
#include "startup/items/LoginItem.h"
#include "startup/launchd/LaunchFolders.h"
#include "startup/login/LoginItemRemoval.h"
#include "startup/login/LoginItemScripts.h"

#include <QCoroTask>

#include <algorithm>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

QStringList osascript(const QString& script) {
    return {u"/usr/bin/osascript"_s, u"-e"_s, script};
}

} // namespace

QCoro::Task<QList<LoginItem>> SystemManager::rawLoginItems() {
    const LoginItemList list = co_await loginItems();
    co_return list.items;
}

QCoro::Task<LoginItemList> SystemManager::loginItems() {
    if (m_rawLoginItemsCache) {
        co_return std::as_const(*m_rawLoginItemsCache); // a lasting value that isn't const would be moved out
    }
    const quint64 age = m_loginItemsAge;
    const LoginItemList list = co_await readLoginItemsFromSystemEvents();
    if (age == m_loginItemsAge) {
        m_rawLoginItemsCache = list;
    }
    co_return list;
}

void SystemManager::dropLoginItems() {
    ++m_loginItemsAge;
    m_rawLoginItemsCache.reset();
}

QCoro::Task<LoginItemList> SystemManager::readLoginItemsFromSystemEvents() {
    const CommandResult result = co_await runCommand(osascript(readLoginItemsScript()), OutputCapture::Capture);
    co_return result.status == 0 ? parsedLoginItems(result.standardOutput) : LoginItemList();
}

QCoro::Task<QList<LoginItem>> SystemManager::visibleLoginItems() {
    QList<LoginItem> items = co_await rawLoginItems();
    if (items.isEmpty()) {
        co_await logMissingSystemEventsPermission();
    }
    items.removeIf([](const LoginItem& item) { return isProtectedLoginItem(item) || looksLikeBackgroundAgent(item); });
    co_return items;
}

QCoro::Task<void> SystemManager::logMissingSystemEventsPermission() {
    const CommandResult probe = co_await runCommand(osascript(systemEventsProbeScript()), OutputCapture::Capture);
    if (probe.status != 0) {
        log(u"  [ERROR] Could not read login items: "_s + probe.standardError.trimmed());
        log(u"  [INFO] Grant Automation permission for System Events in System Settings → Privacy & Security."_s);
    }
}

/// Runs a script that may change the login items. Unless it says that it left them alone, they are read anew by whoever
/// looks next.
QCoro::Task<SystemManager::SystemEventsReply> SystemManager::changeLoginItems(QString script) {
    const CommandResult result = co_await runCommand(osascript(script), OutputCapture::Capture);
    const QString reply = result.status == 0 ? result.standardOutput.trimmed() : QString();
    if (reply == u"missing"_s || reply == u"exists"_s) {
        co_return SystemEventsReply::Unchanged;
    }
    dropLoginItems();
    co_return reply == u"ok"_s ? SystemEventsReply::Done : SystemEventsReply::Failed;
}

QCoro::Task<bool> SystemManager::removeLoginItemByName(QString name) {
    co_return co_await changeLoginItems(removeLoginItemByNameScript(name)) == SystemEventsReply::Done;
}

QCoro::Task<bool> SystemManager::removeLoginItemAtPath(QString path) {
    co_return co_await changeLoginItems(removeLoginItemAtPathScript(path)) == SystemEventsReply::Done;
}

QCoro::Task<bool> SystemManager::addLoginItem(QString path, bool hidden) {
    co_return co_await changeLoginItems(addLoginItemScript(path, hidden)) != SystemEventsReply::Failed;
}

/// Removes one item by the means that takes no other with it.
QCoro::Task<bool> SystemManager::removeLoginItem(LoginItem item, LoginItemRemoval removal) {
    switch (removal.meansFor(item.name, item.path)) {
    case LoginItemRemoval::Means::ByName:
        co_return co_await removeLoginItemByName(item.name);
    case LoginItemRemoval::Means::ByPath:
        co_return co_await removeLoginItemAtPath(item.path);
    case LoginItemRemoval::Means::None:
        break;
    }
    co_return false;
}

QCoro::Task<bool> SystemManager::disableLoginItems(QStringList names, QSet<QString> excludedIds) {
    if (names.isEmpty()) {
        co_return true;
    }
    createBackupFolder();
    const LoginItemList list = co_await loginItems();
    const NamedLoginItems named = namedLoginItems(list, names, excludedIds);
    writeRemovedLoginItems(named.matched);
    bool succeeded = true;
    for (const LoginItem& item : named.matched) {
        if (holdsBack(item, excludedIds)) {
            continue;
        }
        const bool isRemoved = co_await removeLoginItem(item, named.removal);
        log((isRemoved ? u"  [APPLIED] Removed login item: "_s : u"  [ERROR] Failed to remove login item: "_s) +
            item.name);
        succeeded = succeeded && isRemoved;
    }
    const bool leftoversAreGone = co_await removeLeftoverLoginItems(named, excludedIds);
    co_return leftoversAreGone ? succeeded : false;
}

/// Names that the list doesn't show: it may be older than the item, or the item is gone already.
QCoro::Task<bool> SystemManager::removeLeftoverLoginItems(NamedLoginItems named, QSet<QString> excludedIds) {
    QSet<QString> missing;
    for (const QString& name : named.leftover) {
        const LoginItem item{name, {}, false};
        if (named.protectedLeftover.contains(name)) {
            log(u"  [SKIPPED] Protected login item: "_s + name);
            continue;
        }
        if (holdsBack(item, excludedIds)) {
            continue;
        }
        if (co_await removeLoginItem(item, named.removal)) {
            log(u"  [APPLIED] Removed login item: "_s + name);
        } else {
            log(u"  [WARNING] Login item not found or could not be removed: "_s + name);
            missing.insert(name);
        }
    }
    if (missing.isEmpty()) {
        co_return true; // apart from the line below: g++ 12 awaits the right side of a co_return's "||" in every case
    }
    co_return co_await areLoginItemsGone(missing);
}

/// Asks the system anew: an item that isn't there needs no removal, but one that nobody may see could be there.
QCoro::Task<bool> SystemManager::areLoginItemsGone(QSet<QString> names) {
    dropLoginItems();
    const LoginItemList list = co_await loginItems();
    const bool isShown = std::any_of(list.items.begin(), list.items.end(),
                                     [&names](const LoginItem& item) { return names.contains(item.name); }) ||
                         std::any_of(names.begin(), names.end(),
                                     [&list](const QString& name) { return !shownLine(list, name).isEmpty(); });
    co_return list.wasRead ? !isShown : false;
}

/// True, with a line in the log, for what stays although it was asked to go.
bool SystemManager::holdsBack(const LoginItem& item, const QSet<QString>& excludedIds) {
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
void SystemManager::writeRemovedLoginItems(const QList<LoginItem>& items) {
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
        m_host.files.writeAtomically(backupFolder(m_host.machine.homeFolder()) + u"/login_items.json"_s,
                                     jsonText(record));
    } catch (const FileError& error) {
        log(u"  [WARNING] Could not record the removed login items: "_s + error.message());
    }
}

} // namespace quorvane
