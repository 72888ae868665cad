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

#include <algorithm>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

QList<BackgroundTaskItem> BackgroundItems::records() const {
    return m_list ? m_list->items() : QList<BackgroundTaskItem>();
}

QSet<QString> BackgroundItems::protectedPlists() const {
    return m_list ? protectedLaunchPlists(*m_list) : QSet<QString>();
}

QSet<QString> BackgroundItems::protectedPaths() const {
    return m_list ? protectedFiles(*m_list) : QSet<QString>();
}

QString BackgroundItems::dumpPath() const {
    return u"%1/quorvane-btm-%2.txt"_s.arg(host().machine.temporaryFolder()).arg(QCoreApplication::applicationPid());
}

QString BackgroundItems::dumpCommand() const {
    return u"/usr/bin/sfltool dumpbtm > %1 2>/dev/null || true"_s.arg(shellQuoted(dumpPath()));
}

bool BackgroundItems::queueDump(PlaceInLine place) {
    m_needsPrivilegedFetch = requireRoomForDump();
    if (m_needsPrivilegedFetch && place == PlaceInLine::First) {
        m_batch.open().queueFirst(dumpCommand());
    } else if (m_needsPrivilegedFetch) {
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

QCoro::Task<std::optional<QList<BackgroundTaskItem>>> BackgroundItems::readUnprivileged() {
    const QStringList arguments{u"/usr/bin/sfltool"_s, u"dumpbtm"_s};
    const CommandResult result = co_await runCommand(arguments, OutputCapture::Capture);
    const QString text = result.standardOutput + result.standardError;
    if (result.status != 0 || text.trimmed().isEmpty()) {
        co_return std::nullopt;
    }
    const QList<BackgroundTaskItem> items =
        co_await inBackground(parseBackgroundTaskDump, text, host().machine.userId());
    if (items.isEmpty()) {
        co_return std::nullopt;
    }
    co_return items;
}

QCoro::Task<void> BackgroundItems::load() {
    if (!m_list) {
        const std::optional<QList<BackgroundTaskItem>> items = co_await readUnprivileged();
        if (items) {
            m_list.emplace(*items);
        }
    }
    if (m_list) {
        m_needsPrivilegedFetch = false;
    }
}

QCoro::Task<void> BackgroundItems::ensure(QString prompt, PrivilegedFetch privileged) {
    const bool isInBatch = m_batch.isOpen() || isDeferred();
    if (isInBatch && !isListRead()) {
        queueDump(PlaceInLine::Last);
        co_return;
    }
    if (m_list) { // also an empty one: nobody is asked twice in one flow
        m_needsPrivilegedFetch = false;
        co_return;
    }
    co_await load();
    if (m_list || privileged == PrivilegedFetch::Refused) {
        co_return;
    }
    if (!requireRoomForDump()) {
        co_return;
    }
    const CommandResult result = co_await executeAdminScript(dumpCommand(), std::move(prompt));
    if (result.status == 0) {
        co_await loadPrivilegedDump();
    } else if (!result.standardError.trimmed().isEmpty()) {
        log(u"  [WARNING] Could not read background login items: "_s + result.standardError);
    }
    m_needsPrivilegedFetch = false;
}

QCoro::Task<void> BackgroundItems::loadPrivilegedDump() {
    const QString text = takeDump();
    const QList<BackgroundTaskItem> items =
        co_await inBackground(parseBackgroundTaskDump, text, host().machine.userId());
    if (items.isEmpty()) {
        log(u"  [WARNING] Privileged background login item dump was empty."_s);
    }
    if (!items.isEmpty() || !m_list) {
        m_list.emplace(items);
    }
    for (const QString& label : std::as_const(m_switchedOff)) {
        markOverridden(label);
    }
}

/// The text of the dump file, which is gone afterwards. Anybody can plant something in a temporary folder: only a
/// regular file of root's or the user's own is read.
QString BackgroundItems::takeDump() {
    const QString path = dumpPath();
    const FileStatus status = host().files.status(path);
    QString text;
    if (status.kind == FileStatus::Kind::File && (status.owner == 0 || status.owner == host().machine.userId())) {
        try {
            text = strictUtf8(host().files.read(path));
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

void BackgroundItems::markDisabled(const QString& label) {
    m_batch.open().keepLabelOff(label); // an open batch had only meant to
    if (m_list) {
        m_list->markDisabled(label);
    }
}

/// What an override in the user's own domain switches off.
void BackgroundItems::markOverridden(const QString& label) {
    if (m_list) {
        m_list->markDisabled(label, [this](const BackgroundTaskItem& record) { return !runsForWholeMac(record); });
    }
}

/// True for a daemon whose plist is in its place and stays there.
bool BackgroundItems::runsForWholeMac(const BackgroundTaskItem& record) const {
    if (!isDaemonRecord(record)) {
        return false;
    }
    const std::optional<QString> plist = recordedPath(record);
    return !plist || (host().files.exists(*plist) && !m_batch.open().moves(*plist, host().files));
}

bool BackgroundItems::leavesADaemon(const QString& label) const {
    const QList<BackgroundTaskItem> records = m_list ? m_list->itemsWithLabel(label) : QList<BackgroundTaskItem>();
    return std::any_of(records.begin(), records.end(), [this](const BackgroundTaskItem& record) {
        return quorvane::isActive(record) && runsForWholeMac(record);
    });
}

} // namespace quorvane
