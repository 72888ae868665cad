#include "startup/background/BackgroundItems.h"

#include "core/AdminBatch.h"
#include "core/Background.h"
#include "core/Quoting.h"
#include "core/Utf8.h"
#include "platform/FileManager.h"
#include "platform/FolderNames.h"
#include "platform/Host.h"
#include "platform/Machine.h"
#include "platform/TreeRemoval.h"
#include "startup/background/BackgroundLabels.h"
#include "startup/background/BackgroundTaskDump.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <QCoreApplication>
#include <QRegularExpression>

#include <chrono>
#include <functional>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kDumpLimit = 30s;
const QString kEndOfDump = u"Quorvane: end of the list"_s;

/// Without the mark of its end; empty where it has none.
QString wholeDump(const QString& text) {
    const QString end = kEndOfDump + u'\n';
    return text.endsWith(end) ? text.chopped(end.size()) : QString();
}

/// Any thread.
BackgroundTaskList listOf(const QString& dump, quint32 userId, const PropertyLists& propertyLists) {
    const QList<BackgroundTaskItem> items = parseBackgroundTaskDump(dump, userId);
    return BackgroundTaskList(items, bundledDaemons(BackgroundTaskList(items), propertyLists));
}

QStringList pathsOfRegisteredApplications(const QList<BackgroundTaskItem>& items) {
    QStringList paths;
    for (const BackgroundTaskItem& item : items) {
        // Whether the program is opened at login its user says in Settings.
        if (isRegisteredApplication(item) && !isOwnLoginItem({item.name, *recordedPath(item)})) {
            paths.append(*recordedPath(item));
        }
    }
    return paths;
}

} // namespace

QList<BackgroundTaskItem> BackgroundItems::records() const {
    return m_list ? m_list->items() : QList<BackgroundTaskItem>();
}

QSet<QString> BackgroundItems::protectedPaths() const {
    return m_list ? protectedFiles(*m_list) : QSet<QString>();
}

QSet<QString> BackgroundItems::registeredPaths() const {
    QSet<QString> paths;
    for (const QString& path : memory().registeredApplications) {
        paths.insert(comparablePath(path));
    }
    return paths;
}

QString BackgroundItems::dumpPath() const {
    return u"%1/quorvane-btm-%2.txt"_s.arg(host().machine.temporaryFolder()).arg(QCoreApplication::applicationPid());
}

/// The list of a Mac whose background task manager is stuck never comes: Perl, which every Mac has, ends the tool by an alarm that
/// outlives its exec. What is printed behind the list tells that all of it is there.
QString BackgroundItems::dumpCommand() const {
    return u"( /usr/bin/perl -e 'alarm shift; exec @ARGV' %1 /usr/bin/sfltool dumpbtm && echo %2 ) > %3 2>/dev/null || true"_s
        .arg(QString::number(kDumpLimit.count()), shellQuoted(kEndOfDump), shellQuoted(dumpPath()));
}

bool BackgroundItems::queueDump() {
    m_needsPrivilegedFetch = requireRoomForDump();
    if (m_needsPrivilegedFetch) {
        m_batch.open().queue(dumpCommand());
    }
    return m_needsPrivilegedFetch;
}

/// False, with a line in the log, when something stays in the dump's place: root would write to wherever a link leads.
bool BackgroundItems::requireRoomForDump() {
    removeStrayDumps();
    const std::optional<QString> error = removeDump();
    if (error) {
        log(u"  [ERROR] Background items can't be read: "_s + *error);
    }
    return !error;
}

QCoro::Task<void> BackgroundItems::loadPrivilegedDump() {
    const QString text = takeDump();
    const BackgroundTaskList list =
        co_await inBackground(listOf, text, host().machine.userId(), std::cref(host().propertyLists));
    if (list.isEmpty()) {
        log(u"  [WARNING] Privileged background login item dump was empty."_s);
    }
    if (!list.isEmpty() || !m_list) {
        m_list = list;
    }
    if (!list.isEmpty()) {
        StartupMemory memory = this->memory();
        memory.registeredApplications = pathsOfRegisteredApplications(list.items());
        memory.services = unusualServices(list);
        remember(memory);
    }
}

StartupMemory BackgroundItems::memory() const {
    return StartupMemoryFile(host().files, host().machine).load();
}

void BackgroundItems::forgetRegistered(const QList<LoginItem>& listed) {
    StartupMemory memory = this->memory();
    for (const LoginItem& item : listed) {
        memory.registeredApplications.removeIf(
            [&item](const QString& path) { return comparablePath(path) == comparablePath(item.path); });
    }
    remember(memory);
}

/// What can't be saved is found again at the next apply.
void BackgroundItems::remember(const StartupMemory& memory) {
    if (memory == this->memory()) {
        return;
    }
    if (const std::optional<QString> error = StartupMemoryFile(host().files, host().machine).save(memory)) {
        log(u"  [ERROR] Could not note what waits for the next apply: "_s + *error);
    }
}

/// The text of the dump file, which is gone afterwards; empty where it isn't whole. Anybody can plant something in a temporary folder: only a
/// regular file of root's or the user's own is read.
QString BackgroundItems::takeDump() {
    const QString path = dumpPath();
    const FileStatus status = host().files.status(path);
    QString text;
    if (status.kind == FileStatus::Kind::File && (status.owner == 0 || status.owner == host().machine.userId())) {
        try {
            text = wholeDump(strictUtf8(host().files.read(path)));
        } catch (const FileError&) {
            text.clear(); // an unreadable dump counts as an empty one
        }
    }
    removeDump(); // one that stays is cleared away before the next is taken
    return text;
}

/// Of runs that were killed. One that another copy of the program is waiting for right now goes, too: that copy takes its list
/// for one that wasn't read, and asks again.
void BackgroundItems::removeStrayDumps() {
    static const QRegularExpression name(u"^quorvane-btm-[0-9]+\\.txt$"_s);
    const QString folder = host().machine.temporaryFolder();
    for (const QString& each : namesIn(host().files, folder)) {
        try {
            if (name.match(each).hasMatch() && folder + u'/' + each != dumpPath()) {
                removeTree(host().files, folder + u'/' + each);
            }
        } catch (const FileError&) {
            continue; // it bears another process's number, and so is in nobody's way
        }
    }
}

/// @return why something stays there; none when nothing does
std::optional<QString> BackgroundItems::removeDump() {
    const QString path = dumpPath();
    if (host().files.status(path).kind == FileStatus::Kind::Missing) {
        return std::nullopt;
    }
    try {
        removeTree(host().files, path);
    } catch (const FileError& error) {
        return error.message();
    }
    return std::nullopt;
}

} // namespace quorvane
