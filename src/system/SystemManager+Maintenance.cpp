#include "system/SystemManager.h"

#include "core/AdminPrompts.h"
#include "core/Osascript.h"
#include "core/Turns.h"
#include "maintenance/CacheCleaning.h"
#include "maintenance/FolderEmptying.h"
#include "maintenance/MaintenanceSelection.h"
#include "platform/FileManager.h"
#include "platform/Machine.h"
#include "system/BusyBracket.h"

#include <QCoroTask>

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

QCoro::Task<MaintenanceOutcome> SystemManager::runMaintenance(MaintenanceSelection selection) {
    const BusyBracket busy(*this, u"Running maintenance…"_s);
    MaintenanceOutcome outcome;
    if (selection.clearCache) {
        log(u"Starting cache cleanup..."_s);
        co_await clearCacheDirectory(m_host.machine.homeFolder() + u"/Library/Caches"_s, u"User Caches"_s);
        outcome.succeeded = co_await clearSystemCaches();
        outcome.messages.append(outcome.succeeded ? u"System caches cleared."_s
                                                  : u"System cache cleanup failed or was cancelled."_s);
    }
    if (selection.cleanTrash) {
        log(u"Emptying Trash..."_s);
        co_await emptyTrash();
        outcome.messages.append(u"Trash emptied."_s);
    }
    if (selection.purgeDownloads) {
        log(u"Purging Downloads folder..."_s);
        co_await purgeDownloads();
        outcome.messages.append(u"Downloads folder purged."_s);
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

QCoro::Task<bool> SystemManager::clearSystemCaches() {
    const QStringList commands = co_await systemCacheCommands();
    if (commands.isEmpty()) {
        log(u"No unprotected items found in system caches to clean."_s);
        co_return !isQuitting();
    }
    log(u"Requesting Administrator privileges to clear system caches..."_s);
    const CommandResult result = co_await runAdminCommand(joinedCacheCommands(commands), kSystemChangesPrompt);
    if (result.status != 0) {
        log(u"  [ERROR] System cache cleanup was cancelled or failed: "_s + result.standardError);
        co_return false;
    }
    log(u"  [APPLIED] Successfully cleared unprotected items in system caches."_s);
    co_return !isQuitting();
}

QCoro::Task<QStringList> SystemManager::systemCacheCommands() {
    QStringList commands;
    for (const QString& folder : systemCacheFolders()) {
        if (!m_host.files.exists(folder)) {
            log(u"Skipping %1 (does not exist)."_s.arg(folder));
            continue;
        }
        log(u"Scanning System Caches in %1..."_s.arg(folder));
        QStringList ofFolder;
        try {
            const std::unique_ptr<FolderEntries> entries = m_host.files.entries(folder);
            co_await inTurns(m_host.clock, [&] { return takeSystemCacheEntry(*entries, folder, ofFolder); });
        } catch (const FileError&) {
            log(u"Permission denied to read %1."_s.arg(folder));
            continue;
        }
        commands.append(ofFolder);
    }
    co_return std::as_const(commands);
}

/// Takes the next entry of a system cache folder into the commands if it may go; false after the last.
bool SystemManager::takeSystemCacheEntry(FolderEntries& entries, const QString& folder, QStringList& commands) {
    const std::optional<QString> name = entries.next();
    if (!name) {
        return false;
    }
    if (isProtectedCacheItem(*name) || isUnsafeCacheName(*name)) {
        logSkippedCacheItem(*name);
    } else if (!isSystemIconStore(*name)) {
        commands.append(cacheRemovalCommand(folder + u'/' + *name));
    }
    return true;
}

void SystemManager::logSkippedCacheItem(const QString& name) {
    if (m_debugMode) {
        log(u"  [SKIPPED] %1 (Protected)"_s.arg(name));
    }
}

QCoro::Task<void> SystemManager::emptyTrash() {
    log(u"Emptying Trash..."_s);
    const QString folder = m_host.machine.homeFolder() + u"/.Trash"_s;
    if (m_host.files.exists(folder)) {
        // No shell takes part, so the asterisk is a name like any other. What empties the Trash is the Finder, which knows
        // those of other volumes too.
        const QStringList removal{u"/bin/rm"_s, u"-rf"_s, folder + u"/*"_s};
        co_await runCommand(removal, OutputCapture::Discard);
        log(u"  [APPLIED] Cleared items from Trash folder."_s);
    }
    const QStringList script =
        osascriptCommand(u"tell application \"Finder\" to if (count of items in trash) > 0 then empty trash"_s);
    const CommandResult result = co_await runCommand(script, OutputCapture::Capture);
    if (isAutomationRefused(result)) {
        log(u"  [INFO] Grant Automation permission for Finder in System Settings → Privacy & Security."_s);
    }
}

QCoro::Task<void> SystemManager::purgeDownloads() {
    log(u"Clearing Downloads folder..."_s);
    const QString folder = m_host.machine.homeFolder() + u"/Downloads"_s;
    if (!m_host.files.exists(folder)) {
        log(u"  [INFO] Downloads folder not found."_s);
        co_return;
    }
    int count = 0;
    const auto spareNone = [](const QString&) { return false; };
    const auto report = [this, &count](const QString& name, const std::optional<QString>& error) {
        count += error ? 0 : 1;
        if (error && m_debugMode) {
            log(u"  [ERROR] Removing %1 from Downloads: %2"_s.arg(name, *error));
        }
    };
    try {
        FolderEmptying emptying(m_host.files, folder, spareNone, report);
        co_await inTurns(m_host.clock, [&emptying] { return emptying.step(); });
    } catch (const FileError& error) {
        log(u"  [ERROR] Failed to clear Downloads: "_s + error.message());
        co_return;
    }
    log(u"  [APPLIED] Cleared %1 item(s) from Downloads."_s.arg(count));
}

} // namespace quorvane
