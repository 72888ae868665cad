#include "startup/login/LoginItems.h"

#include "core/Json.h"
#include "core/OneLine.h"
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

namespace {

bool listsItem(const LoginItemList& list, const LoginItem& item) {
    return std::any_of(list.items.begin(), list.items.end(),
                       [&item](const LoginItem& other) { return other.name == item.name && other.path == item.path; });
}

bool hasTwinIn(const QList<LoginItem>& items, const LoginItem& item) {
    return std::any_of(items.begin(), items.end(),
                       [&item](const LoginItem& other) { return sharesNameOrPath(other, item.name, item.path); });
}

} // namespace

LoginItems::LoginItems(FlowEnvironment& environment, std::function<QSet<QString>()> protectedPaths,
                       std::function<QSet<QString>()> registeredPaths,
                       std::function<void(const QList<LoginItem>&)> onListed)
    : Flow(environment)
    , m_protectedPaths(std::move(protectedPaths))
    , m_registeredPaths(std::move(registeredPaths))
    , m_onListed(std::move(onListed)) {}

LoginItems::LoginItems(FlowEnvironment& environment, const LoginItems& same)
    : Flow(environment)
    , m_protectedPaths(same.m_protectedPaths)
    , m_registeredPaths(same.m_registeredPaths)
    , m_onListed(same.m_onListed)
    , m_cache(same.m_cache) {}

QCoro::Task<LoginItemList> LoginItems::current() {
    if (m_cache->list) {
        co_return std::as_const(*m_cache->list); // a lasting value that isn't const would be moved out
    }
    if (m_cache->heldUpBy) {
        LoginItemList heldUp;
        heldUp.failure = m_cache->heldUpBy;
        co_return heldUp;
    }
    const quint64 age = m_cache->age;
    const LoginItemList list = co_await readFromSystemEvents();
    if (list.isAnswered && age == m_cache->age) {
        m_cache->list = list;
        if (list.wasRead) {
            m_onListed(list.items);
        }
    }
    co_return list;
}

void LoginItems::readAgain() {
    if (!m_cache->heldUpBy) {
        forgetList();
    }
}

void LoginItems::dropUnread() {
    if (m_cache->heldUpBy || (m_cache->list && !m_cache->list->wasRead)) {
        drop();
    }
}

void LoginItems::drop() {
    forgetList();
    m_cache->heldUpBy.reset(); // the user may have permitted it since
    m_cache->isUnreadTold = false;
    m_cache->isWhereToPermitTold = false;
    m_cache->namesOfLines.clear();
}

void LoginItems::forgetList() {
    ++m_cache->age;
    m_cache->list.reset();
}

QCoro::Task<LoginItemList> LoginItems::readFromSystemEvents() {
    const CommandResult result = co_await runCommand(osascriptCommand(readLoginItemsScript()), OutputCapture::Capture);
    LoginItemList list;
    if (result.isAnswered && result.status == 0) {
        list = co_await understood(result.standardOutput);
    } else {
        list.failure = scriptFailure(result);
    }
    list.isAnswered = result.isAnswered;
    if (result.isAnswered && !list.wasRead && !list.failure) {
        list.failure = ScriptFailure{0, u"osascript has failed with status %1."_s.arg(result.status)};
    }
    if (list.failure && list.failure->isOfPermission()) {
        m_cache->heldUpBy = list.failure;
    }
    const QSet<QString> protectedPaths = m_protectedPaths();
    for (LoginItem& item : list.items) {
        item.hasProtectedRecord = protectedPaths.contains(withoutFinalSlashes(item.path));
    }
    co_return list;
}

/// Asks once more where a "|" in a name or path leaves it open what is which, and once in a flow for each such line.
QCoro::Task<LoginItemList> LoginItems::understood(QString output) {
    const LoginItemList list = parsedLoginItems(output);
    QList<qsizetype> unknown = list.wasRead ? ambiguousLoginItems(output) : QList<qsizetype>();
    if (unknown.isEmpty()) {
        co_return list;
    }
    const QStringList lines = output.split(u'\n', Qt::SkipEmptyParts);
    LoginItemNames names;
    for (const qsizetype number : std::as_const(unknown)) {
        if (const QString known = m_cache->namesOfLines.value(lines.at(number - 1)); !known.isEmpty()) {
            names.insert(number, known);
        }
    }
    unknown.removeIf([&names](qsizetype number) { return names.contains(number); });
    if (!unknown.isEmpty()) {
        const QStringList ask = osascriptCommand(readLoginItemNamesScript(unknown));
        const CommandResult result = co_await runCommand(ask, OutputCapture::Capture);
        const bool isTold = result.isAnswered && result.status == 0;
        const LoginItemNames told = isTold ? parsedLoginItemNames(result.standardOutput, unknown) : LoginItemNames();
        for (auto name = told.begin(); name != told.end(); ++name) {
            m_cache->namesOfLines.insert(lines.at(name.key() - 1), *name);
        }
        names.insert(told);
    }
    co_return parsedLoginItems(output, names);
}

QCoro::Task<QList<LoginItem>> LoginItems::visible() {
    const LoginItemList list = co_await current();
    tellUnread(list);
    QList<LoginItem> items = list.items;
    items.removeIf([](const LoginItem& item) { return isProtectedLoginItem(item) || looksLikeBackgroundAgent(item); });
    co_return items;
}

void LoginItems::tellUnread(const LoginItemList& list) {
    if (list.failure && !std::exchange(m_cache->isUnreadTold, true)) {
        log(u"  [ERROR] Could not read login items: "_s + onOneLine(list.failure->text));
        tellWhereToPermit();
    }
}

void LoginItems::tellWhereToPermit() {
    if (!std::exchange(m_cache->isWhereToPermitTold, true)) {
        log(u"  [INFO] Grant Automation permission for System Events in System Settings → Privacy & Security."_s);
    }
}

/// Runs scripts that may change the login items. Unless they say that they left all alone, the items are read anew by whoever
/// looks next.
///
/// What the user has refused stays refused until they permit it in the system's settings, and a question that they leave alone
/// would be waited for again: it is told, and not tried any more.
QCoro::Task<QList<LoginItemAnswer>> LoginItems::change(QList<LoginItemScript> scripts) {
    QList<LoginItemAnswer> answers;
    for (const LoginItemScript& script : scripts) {
        LoginItemAnswers parsed = parsedLoginItemAnswers({}, script.count);
        if (!m_cache->heldUpBy) {
            const CommandResult result = co_await runCommand(osascriptCommand(script.source), OutputCapture::Capture);
            const bool hasEnded = result.isAnswered && result.status == 0;
            parsed = parsedLoginItemAnswers(hasEnded ? result.standardOutput : QString(), script.count);
            const std::optional<ScriptFailure> failure = scriptFailure(result);
            m_cache->heldUpBy = failure && failure->isOfPermission() ? failure : parsed.heldUpBy;
            if (parsed.answers.count(LoginItemAnswer::Unchanged) < script.count) {
                forgetList();
            }
        }
        if (m_cache->heldUpBy) {
            tellWhereToPermit();
        }
        answers += parsed.answers;
    }
    co_return answers;
}

QCoro::Task<QList<bool>> LoginItems::remove(QList<LoginItemSelector> selectors) {
    QList<bool> removed;
    for (const LoginItemAnswer answer : co_await change(removeLoginItemsScripts(selectors))) {
        removed.append(answer == LoginItemAnswer::Done);
    }
    co_return removed;
}

QCoro::Task<QList<bool>> LoginItems::add(QList<LoginItemAddition> additions) {
    QList<bool> added;
    for (const LoginItemAnswer answer : co_await change(addLoginItemsScripts(additions))) {
        added.append(answer != LoginItemAnswer::Failed);
    }
    co_return added;
}

QCoro::Task<QList<bool>> LoginItems::hide(QList<LoginItemHiding> hidings) {
    QList<bool> done;
    for (const LoginItemAnswer answer : co_await change(hideLoginItemsScripts(hidings))) {
        done.append(answer == LoginItemAnswer::Done);
    }
    co_return done;
}

bool LoginItems::haveTwins(const QList<Going>& going) {
    return std::any_of(going.begin(), going.end(), [](const Going& each) { return !each.twins.isEmpty(); });
}

QCoro::Task<QList<bool>> LoginItems::takeOut(QList<Going> going) {
    QList<LoginItemSelector> selectors;
    for (const Going& each : going) {
        if (each.selector) {
            selectors.append(*each.selector);
        }
    }
    QList<LoginItemAnswer> answers = co_await change(removeLoginItemsScripts(selectors));
    QList<LoginItem> done;
    for (Going& each : going) {
        each.answer = each.selector ? answers.takeFirst() : LoginItemAnswer::Failed;
        if (each.answer == LoginItemAnswer::Done) {
            done.append(each.item);
        }
    }
    const auto mayHaveGoneAlong = [&done](const Going& each) {
        return each.answer == LoginItemAnswer::Unchanged && hasTwinIn(done, each.item);
    };
    const bool isInDoubt = haveTwins(going) || std::any_of(going.begin(), going.end(), mayHaveGoneAlong);
    LoginItemList now;
    if (isInDoubt) {
        readAgain();
        now = co_await current();
        tellUnread(now);
    }
    QList<bool> taken;
    for (const Going& each : going) {
        const bool isTaken = each.answer == LoginItemAnswer::Done || mayHaveGoneAlong(each);
        const bool isSure = each.answer == LoginItemAnswer::Done && each.twins.isEmpty();
        taken.append(isSure || (isTaken && now.tellsAll() && !listsItem(now, each.item)));
    }
    co_return taken;
}

QCoro::Task<bool> LoginItems::addTwinsAgain(QList<Going> going) {
    QList<LoginItem> twins;
    for (const Going& each : going) {
        twins += each.twins;
    }
    if (twins.isEmpty()) {
        co_return true;
    }
    const LoginItemList now = co_await current();
    if (!now.tellsAll()) {
        co_return false;
    }
    QList<LoginItem> gone;
    QList<LoginItemAddition> additions;
    for (const LoginItem& twin : twins) {
        if (!listsItem(now, twin) && !gone.contains(twin)) {
            gone.append(twin);
            if (!twin.path.isEmpty()) {
                additions.append({twin.path, twin.hidden});
            }
        }
    }
    QList<bool> answers = co_await add(additions);
    bool areThere = true;
    for (const LoginItem& twin : gone) {
        const bool isAdded = !twin.path.isEmpty() && answers.takeFirst();
        log(isAdded ? u"  [INFO] Added again, it went along with another of its name or path: "_s + twin.name
                    : u"  [ERROR] Went along with another of its name or path, and could not be added again: "_s +
                          twin.name);
        areThere = areThere && isAdded;
    }
    co_return areThere;
}

QCoro::Task<bool> LoginItems::disable(LoginItemTargets targets, QSet<QString> excludedIds) {
    if (targets.isEmpty()) {
        co_return true;
    }
    createBackupFolder(environment());
    const LoginItemList list = co_await current();
    tellUnread(list);
    const NamedLoginItems named = namedLoginItems(list, targets, excludedIds);
    writeRemoved(named.matched);
    QList<Going> going;
    for (const LoginItem& item : named.matched) {
        going.append(goingByName(item, excludedIds, named.removal));
    }
    going += leftoverOf(named, targets, excludedIds);
    const QList<bool> taken = co_await takeOut(going);
    bool succeeded = true;
    QSet<QString> missing;
    for (qsizetype i = 0; i < going.size(); ++i) {
        if (i < named.matched.size()) {
            succeeded = logRemoval(going.at(i), taken.at(i), u"  [ERROR] Failed to remove login item: "_s) && succeeded;
        } else if (!logRemoval(going.at(i), taken.at(i),
                               u"  [WARNING] Login item not found or could not be removed: "_s)) {
            missing.insert(going.at(i).item.name);
        }
    }
    succeeded = co_await addTwinsAgain(going) && succeeded;
    if (missing.isEmpty()) {
        co_return succeeded; // apart from the line below: g++ 12 awaits the right side of a co_return's "||" in every case
    }
    const bool areMissingOnesGone = co_await areGone(missing, targets);
    co_return areMissingOnesGone&& succeeded;
}

/// @return false when it was to go and didn't
bool LoginItems::logRemoval(const Going& going, bool isTaken, const QString& failure) {
    if (!going.heldBackLine.isEmpty()) {
        log(going.heldBackLine);
        return true;
    }
    log((isTaken ? u"  [APPLIED] Removed login item: "_s : failure) + going.item.name);
    return isTaken;
}

/// What stays although it was asked to go, or how it goes.
LoginItems::Going LoginItems::goingByName(const LoginItem& item, const QSet<QString>& excludedIds,
                                          const LoginItemRemoval& removal) {
    Going going{item};
    if (isProtectedLoginItem(item)) {
        going.heldBackLine = u"  [SKIPPED] Protected login item: "_s + item.name;
    } else if (isExcludedAgent(item, excludedIds)) {
        going.heldBackLine = u"  [SKIPPED] Excluded App Background Activity login item: "_s + item.name;
    } else {
        going.selector = removal.byName(item.name, item.path);
        going.twins = going.selector ? removal.twinsOf(*going.selector) : QList<LoginItem>();
    }
    return going;
}

/// Names that the list doesn't show: it may be older than the item, or the item is gone already.
QList<LoginItems::Going> LoginItems::leftoverOf(const NamedLoginItems& named, const LoginItemTargets& targets,
                                                const QSet<QString>& excludedIds) {
    QList<Going> leftover;
    for (const QString& name : named.leftover) {
        const bool canGoByName = named.leftoverRemoval.canGoByName(name);
        Going going = goingByName(canGoByName ? LoginItem{name, {}, false} : targets.itemOff(name), excludedIds,
                                  named.leftoverRemoval);
        if (named.protectedLeftover.contains(name)) {
            going = Going{going.item, u"  [SKIPPED] Protected login item: "_s + name};
        }
        going.twins.clear(); // the list doesn't show them either
        leftover.append(going);
    }
    return leftover;
}

/// Asks the system anew: an item that isn't there needs no removal, but one that nobody may see could be there.
QCoro::Task<bool> LoginItems::areGone(QSet<QString> names, LoginItemTargets targets) {
    readAgain();
    const LoginItemList list = co_await current();
    const auto isAmongThem = [&](const LoginItem& item) { return names.contains(item.name) && targets.takes(item); };
    const bool isShown = std::any_of(list.items.begin(), list.items.end(), isAmongThem) ||
                         std::any_of(names.begin(), names.end(),
                                     [&list](const QString& name) { return !shownLine(list, name).isEmpty(); });
    co_return list.tellsAll() ? !isShown : false;
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
        tellUnread(list);
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
    QList<Going> going;
    for (const LoginItem& item : divided.going) {
        going.append(goingByName(item, cleanReboot.excludedIds, removal));
    }
    const QList<bool> taken = co_await takeOut(going);
    bool succeeded = true;
    for (qsizetype i = 0; i < going.size(); ++i) {
        succeeded = logRemoval(going.at(i), taken.at(i), u"  [ERROR] Failed to remove login item: "_s) && succeeded;
    }
    succeeded = co_await addTwinsAgain(going) && succeeded;
    co_return succeeded;
}

} // namespace quorvane
