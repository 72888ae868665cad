#include "system/SystemManager.h"

#include "core/AdminPrompts.h"
#include "core/Osascript.h"
#include "core/Turns.h"
#include "maintenance/CacheCleaning.h"
#include "maintenance/FolderEmptying.h"
#include "maintenance/MaintenanceProblems.h"
#include "maintenance/MaintenanceSelection.h"
#include "maintenance/SeenEntry.h"
#include "platform/FileManager.h"
#include "platform/Machine.h"
#include "system/BusyBracket.h"

#include <QCoroTask>

#include <algorithm>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

QCoro::Task<MaintenanceOutcome> SystemManager::runMaintenance(MaintenanceSelection selection) {
    const BusyBracket busy(*this, u"Running maintenance…"_s);
    MaintenanceOutcome outcome;
    if (selection.clearCache) {
        log(u"Starting cache cleanup..."_s);
        co_await clearCacheDirectory(m_host.machine.homeFolder() + u"/Library/Caches"_s, u"User Caches"_s);
        const std::optional<QString> problem = co_await clearSystemCaches();
        outcome.add(problem, u"System caches cleared."_s);
    }
    if (selection.cleanTrash) {
        log(u"Emptying Trash..."_s);
        const std::optional<QString> problem = co_await emptyTrash();
        outcome.add(problem, u"Trash emptied."_s);
    }
    if (selection.purgeDownloads) {
        log(u"Purging Downloads folder..."_s);
        const std::optional<QString> problem = co_await purgeDownloads();
        outcome.add(problem, u"Downloads folder purged."_s);
    }
    log(u"\nCleanup Complete!"_s);
    outcome.succeeded = outcome.succeeded && !isQuitting();
    co_return outcome;
}

QCoro::Task<void> SystemManager::clearCacheDirectory(QString path, QString label) {
    if (!m_host.files.exists(path)) {
        log(u"Skipping %1 (does not exist)."_s.arg(path));
        co_return;
    }
    log(u"Scanning %1 in %2..."_s.arg(label, path));
    const auto isSpared = [this](const QString& name) {
        const bool isProtected = isProtectedCacheItem(name);
        if (isProtected) {
            logSkippedCacheItem(name);
        }
        return isProtected;
    };
    const auto report = [this, &path](const QString& name, const std::optional<QString>& error) {
        if (!m_debugMode) {
            return;
        }
        if (!error) {
            log(u"  [DELETED] "_s + name);
        } else if (m_host.files.status(path + u'/' + name).kind != FileStatus::Kind::Missing) {
            log(u"  [ERROR] Removing %1: %2"_s.arg(name, *error));
        } // else its program was quicker
    };
    try {
        // A folder of caches that is a link itself is followed: users keep their caches on another disk then, and
        // nobody but they can have put the link into their Library.
        FolderEmptying emptying(m_host.files, path, isSpared, report);
        co_await inTurns(m_host.clock, [&emptying] { return emptying.step(); });
    } catch (const FileError&) {
        log(u"Permission denied to read %1."_s.arg(path));
    }
}

QCoro::Task<std::optional<QString>> SystemManager::clearSystemCaches() {
    const QList<SeenEntry> named = co_await removableSystemCaches();
    if (named.isEmpty()) {
        log(u"No unprotected items found in system caches to clean."_s);
        co_return isQuitting() ? std::optional(kCachesNotCleared) : std::nullopt;
    }
    log(u"Requesting Administrator privileges to clear system caches..."_s);
    const CommandResult result = co_await runAdminCommand(cacheRemovalLine(named), kSystemChangesPrompt);
    if (!result.isAnswered) {
        log(u"  [ERROR] System cache cleanup was cancelled or failed: "_s + result.standardError);
        co_return std::optional(kCachesNotCleared);
    }
    co_return clearedSystemCaches(named);
}

/// What root's line came to. Its status is that of the last command alone, so the Mac is looked at.
std::optional<QString> SystemManager::clearedSystemCaches(const QList<SeenEntry>& named) {
    const qsizetype stayed = std::count_if(
        named.begin(), named.end(), [this](const SeenEntry& entry) { return isStillThere(m_host.files, entry); });
    if (stayed < named.size()) {
        log(u"  [APPLIED] Successfully cleared unprotected items in system caches."_s);
    }
    if (stayed > 0) {
        const QString problem = protectedItemsText(stayed);
        log(u"  [ERROR] "_s + problem);
        return problem;
    }
    return isQuitting() ? std::optional(kCachesNotCleared) : std::nullopt;
}

QCoro::Task<QList<SeenEntry>> SystemManager::removableSystemCaches() {
    QList<SeenEntry> removable;
    for (const QString& folder : systemCacheFolders()) {
        if (!m_host.files.exists(folder)) {
            log(u"Skipping %1 (does not exist)."_s.arg(folder));
            continue;
        }
        log(u"Scanning System Caches in %1..."_s.arg(folder));
        QList<SeenEntry> ofFolder;
        try {
            const std::unique_ptr<FolderEntries> entries = m_host.files.entries(folder);
            co_await inTurns(m_host.clock, [&] { return takeSystemCacheEntry(*entries, folder, ofFolder); });
        } catch (const FileError&) {
            log(u"Permission denied to read %1."_s.arg(folder));
            continue;
        }
        removable.append(ofFolder);
    }
    co_return std::as_const(removable);
}

/// Takes the next entry of a system cache folder to those that go, if it may; false after the last.
bool SystemManager::takeSystemCacheEntry(FolderEntries& entries, const QString& folder, QList<SeenEntry>& removable) {
    const std::optional<QString> name = entries.next();
    if (!name) {
        return false;
    }
    if (isProtectedCacheItem(*name) || isUnsafeCacheName(*name)) {
        logSkippedCacheItem(*name);
    } else if (!isSystemIconStore(*name)) {
        removable.append(seenEntry(m_host.files, folder + u'/' + *name));
    }
    return true;
}

void SystemManager::logSkippedCacheItem(const QString& name) {
    if (m_debugMode) {
        log(u"  [SKIPPED] %1 (Protected)"_s.arg(name));
    }
}

QCoro::Task<std::optional<QString>> SystemManager::emptyTrash() {
    log(u"Emptying Trash..."_s);
    // The Finder knows the Trash of other volumes too, and whether macOS lets it.
    const QStringList script =
        osascriptCommand(u"tell application \"Finder\" to if (count of items in trash) > 0 then empty trash"_s);
    const CommandResult result = co_await runCommand(script, OutputCapture::Capture);
    if (result.isAnswered && result.status == 0) {
        co_return std::nullopt;
    }
    QString problem = trashNotEmptiedText(result);
    log(u"  [ERROR] "_s + problem);
    if (isAutomationRefused(result)) {
        log(u"  [INFO] "_s + kFinderPermissionPlace);
        problem += u' ' + kFinderPermissionPlace;
    }
    co_return std::optional(problem);
}

QCoro::Task<std::optional<QString>> SystemManager::purgeDownloads() {
    log(u"Clearing Downloads folder..."_s);
    const QString folder = m_host.machine.homeFolder() + u"/Downloads"_s;
    if (!m_host.files.exists(folder)) {
        log(u"  [INFO] Downloads folder not found."_s);
        co_return std::nullopt;
    }
    int count = 0;
    int stayed = 0;
    const auto spareNone = [](const QString&) { return false; };
    const auto report = [&, this](const QString& name, const std::optional<QString>& error) {
        if (!error) {
            ++count;
        } else if (m_host.files.status(folder + u'/' + name).kind != FileStatus::Kind::Missing) {
            ++stayed;
            if (m_debugMode) {
                log(u"  [ERROR] Removing %1 from Downloads: %2"_s.arg(name, *error));
            }
        } // else somebody was quicker
    };
    try {
        FolderEmptying emptying(m_host.files, folder, spareNone, report);
        co_await inTurns(m_host.clock, [&emptying] { return emptying.step(); });
    } catch (const FileError& error) {
        log(u"  [ERROR] Failed to clear Downloads: "_s + error.message());
        co_return std::optional(kDownloadsNotRead);
    }
    log(u"  [APPLIED] Cleared %1 item(s) from Downloads."_s.arg(count));
    if (stayed == 0) {
        co_return std::nullopt;
    }
    const QString problem = stayedInDownloadsText(stayed);
    log(u"  [ERROR] "_s + problem);
    co_return std::optional(problem);
}

} // namespace quorvane
