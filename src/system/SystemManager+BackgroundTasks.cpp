#include "system/SystemManager.h"

#include "core/Background.h"
#include "core/Quoting.h"
#include "core/Utf8.h"
#include "platform/FileManager.h"
#include "platform/Machine.h"
#include "platform/TreeRemoval.h"
#include "startup/background/BackgroundTaskDump.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <QCoreApplication>

namespace quorvane {

using namespace Qt::StringLiterals;

QString SystemManager::backgroundDumpPath() const {
    return u"%1/quorvane-btm-%2.txt"_s.arg(m_host.machine.temporaryFolder()).arg(QCoreApplication::applicationPid());
}

QString SystemManager::backgroundDumpCommand() const {
    return u"/usr/bin/sfltool dumpbtm > %1 2>/dev/null || true"_s.arg(shellQuoted(backgroundDumpPath()));
}

bool SystemManager::queueBackgroundDump() {
    m_needsPrivilegedBackgroundTaskItemFetch = requireRoomForBackgroundDump();
    if (m_needsPrivilegedBackgroundTaskItemFetch) {
        m_adminCommandBatch.append(backgroundDumpCommand());
    }
    return m_needsPrivilegedBackgroundTaskItemFetch;
}

/// False, with a line in the log, when something stays in the dump's place: root would write to wherever a link leads.
bool SystemManager::requireRoomForBackgroundDump() {
    const std::optional<QString> error = removeBackgroundDump();
    if (error) {
        log(u"  [ERROR] Background items can't be read: "_s + *error);
    }
    return !error;
}

QCoro::Task<std::optional<QList<BackgroundTaskItem>>> SystemManager::readBackgroundTaskDumpUnprivileged() {
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

QCoro::Task<void> SystemManager::loadBackgroundTaskItems() {
    if (!m_backgroundTaskItemsCache) {
        const std::optional<QList<BackgroundTaskItem>> items = co_await readBackgroundTaskDumpUnprivileged();
        if (items) {
            m_backgroundTaskItemsCache.emplace(*items);
        }
    }
    if (m_backgroundTaskItemsCache) {
        m_needsPrivilegedBackgroundTaskItemFetch = false;
    }
}

QCoro::Task<void> SystemManager::ensureBackgroundTaskItems(QString prompt, PrivilegedFetch privileged) {
    if (m_backgroundTaskItemsCache) {
        m_needsPrivilegedBackgroundTaskItemFetch = false;
        co_return;
    }
    if (m_adminBatchDepth >= 1 ||
        m_backgroundTaskItemsFetchMode == BackgroundTaskItemsFetchMode::deferredToAdminBatch) {
        queueBackgroundDump();
        co_return;
    }
    co_await loadBackgroundTaskItems();
    if (m_backgroundTaskItemsCache || privileged == PrivilegedFetch::Refused) {
        co_return;
    }
    if (!requireRoomForBackgroundDump()) {
        co_return;
    }
    const CommandResult result = co_await executeAdminScript(backgroundDumpCommand(), std::move(prompt));
    if (result.status == 0) {
        co_await loadPrivilegedBackgroundDump();
    } else if (!result.standardError.trimmed().isEmpty()) {
        log(u"  [WARNING] Could not read background login items: "_s + result.standardError);
    }
    m_needsPrivilegedBackgroundTaskItemFetch = false;
}

QCoro::Task<void> SystemManager::loadPrivilegedBackgroundDump() {
    const QString text = takeBackgroundDump();
    if (text.isEmpty()) {
        log(u"  [WARNING] Privileged background login item dump was empty."_s);
        m_backgroundTaskItemsCache.emplace(QList<BackgroundTaskItem>());
        co_return;
    }
    m_backgroundTaskItemsCache.emplace(co_await inBackground(parseBackgroundTaskDump, text));
}

/// The text of the dump file, which is gone afterwards. Anybody can plant something in a temporary folder: only a
/// regular file of root's or the user's own is read.
QString SystemManager::takeBackgroundDump() {
    const QString path = backgroundDumpPath();
    const FileStatus status = m_host.files.status(path);
    QString text;
    if (status.kind == FileStatus::Kind::File && (status.owner == 0 || status.owner == m_host.machine.userId())) {
        try {
            text = strictUtf8(m_host.files.read(path));
        } catch (const FileError&) {
            text.clear(); // an unreadable dump counts as an empty one
        }
    }
    removeBackgroundDump(); // one that stays is cleared away before the next is taken
    return text;
}

/// @return why something stays there; none when nothing does
std::optional<QString> SystemManager::removeBackgroundDump() {
    const QString path = backgroundDumpPath();
    if (m_host.files.status(path).kind == FileStatus::Kind::Missing) {
        return std::nullopt;
    }
    try {
        removeTree(m_host.files, path);
    } catch (const FileError& error) {
        return error.message();
    }
    return std::nullopt;
}

void SystemManager::markBackgroundLabelDisabled(const QString& label) {
    m_dispositionsBeforeBatch.remove(label); // an open batch had only meant to
    if (m_backgroundTaskItemsCache) {
        m_backgroundTaskItemsCache->markDisabled(label);
    }
}

} // namespace quorvane
