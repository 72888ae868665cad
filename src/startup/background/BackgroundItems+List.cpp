#include "startup/background/BackgroundItems.h"

#include "core/AdminBatch.h"
#include "core/Background.h"
#include "core/Quoting.h"
#include "core/Utf8.h"
#include "platform/FileManager.h"
#include "platform/Host.h"
#include "platform/Machine.h"
#include "platform/TreeRemoval.h"
#include "startup/background/BackgroundTaskDump.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <QCoreApplication>

namespace quorvane {

using namespace Qt::StringLiterals;

QList<BackgroundTaskItem> BackgroundItems::records() const {
    return m_list ? m_list->items() : QList<BackgroundTaskItem>();
}

QString BackgroundItems::dumpPath() const {
    return u"%1/quorvane-btm-%2.txt"_s.arg(host().machine.temporaryFolder()).arg(QCoreApplication::applicationPid());
}

QString BackgroundItems::dumpCommand() const {
    return u"/usr/bin/sfltool dumpbtm > %1 2>/dev/null || true"_s.arg(shellQuoted(dumpPath()));
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
    const QList<BackgroundTaskItem> items = co_await inBackground(parseBackgroundTaskDump, text);
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
    if (m_list) {
        m_needsPrivilegedFetch = false;
        co_return;
    }
    if (m_batch.isOpen() || isDeferred()) {
        queueDump();
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
    if (text.isEmpty()) {
        log(u"  [WARNING] Privileged background login item dump was empty."_s);
        m_list.emplace(QList<BackgroundTaskItem>());
        co_return;
    }
    m_list.emplace(co_await inBackground(parseBackgroundTaskDump, text));
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

} // namespace quorvane
