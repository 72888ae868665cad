#include "startup/launchd/LaunchItems.h"

#include "core/AdminBatch.h"
#include "core/AdminPrompts.h"
#include "core/ExcludedNames.h"
#include "platform/FileManager.h"
#include "platform/FolderNames.h"
#include "platform/Host.h"
#include "platform/Machine.h"
#include "startup/items/LoginItem.h"
#include "startup/items/StartupItem.h"
#include "startup/launchd/BackupFolders.h"
#include "startup/launchd/LaunchItemNames.h"
#include "startup/launchd/Launchctl.h"

#include <QCoroTask>

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// What the log says of an item that stays although it was asked to go; empty when it may go.
QString lineOfHeldBackItem(const QString& label, const QSet<QString>& excludedIds,
                           const QSet<QString>& protectedLabels) {
    if (isExcludedName(label) || protectedLabels.contains(label)) {
        return u"  [SKIPPED] Protected launch item: "_s + label;
    }
    const bool isExcluded = excludedIds.contains(launchItemId(label)) || excludedIds.contains(label);
    if (isExcluded && looksLikeBackgroundAgent(label)) {
        return u"  [SKIPPED] Excluded App Background Activity launch item: "_s + label;
    }
    return {};
}

} // namespace

LaunchItems::LaunchItems(FlowEnvironment& environment, AdminBatch& batch)
    : Flow(environment)
    , m_batch(batch) {}

/// A plist that only root can move.
struct LaunchItems::SystemPlist {
    QString label;
    LaunchFolder folder;

    QString path() const { return folder.path + u'/' + label; }
};

struct LaunchItems::Places {
    QList<LaunchFolder> folders; ///< where it can be switched off
    bool isDisabled = false;     ///< it waits in a backup folder, or the open batch puts it there
};

QList<LaunchFolder> LaunchItems::folders() const {
    return launchFolders(host().machine.homeFolder());
}

bool LaunchItems::hasPlist(const QString& label) const {
    const QList<LaunchFolder> all = folders();
    return isLaunchPlistName(label) && std::any_of(all.begin(), all.end(), [&](const LaunchFolder& folder) {
               return host().files.exists(folder.path + u'/' + label);
           });
}

QCoro::Task<bool> LaunchItems::disable(QStringList labels, QSet<QString> excludedIds, QSet<QString> protectedLabels) {
    if (labels.isEmpty()) {
        co_return true;
    }
    createBackupFolder(environment());
    bool succeeded = true;
    QList<SystemPlist> systemPlists;
    for (const QString& label : labels) {
        const QString heldBack = lineOfHeldBackItem(label, excludedIds, protectedLabels);
        if (!heldBack.isEmpty()) {
            log(heldBack);
            continue;
        }
        const Places places = placesOf(label);
        if (places.folders.isEmpty()) {
            log(places.isDisabled ? u"  [INFO] Launch item already disabled: "_s + label
                                  : u"  [WARNING] Launch item not found: "_s + label);
        }
        for (const LaunchFolder& folder : places.folders) {
            if (!requireRealFolders(environment(), {backupFolder(host().machine.homeFolder()), folder.backupFolder})) {
                succeeded = false;
            } else if (folder.isUsers) {
                succeeded = co_await disableUsersPlist(label, folder) && succeeded;
            } else if (!isRootsAlone(folder.keepFolder)) {
                logUnusableFolder(environment(), folder.keepFolder);
                succeeded = false;
            } else {
                systemPlists.append({label, folder});
                m_batch.open().rememberMove(systemPlists.last().path());
            }
        }
    }
    co_return co_await disableSystemPlists(systemPlists) && succeeded;
}

/// Where a plist of that name lies and isn't on its way out already.
LaunchItems::Places LaunchItems::placesOf(const QString& label) const {
    Places places;
    if (!isLaunchPlistName(label)) {
        return places;
    }
    for (const LaunchFolder& folder : folders()) {
        const QString plist = folder.path + u'/' + label;
        const bool isQueued = m_batch.open().moves(plist, host().files);
        if (!isQueued && host().files.exists(plist)) {
            places.folders.append(folder);
            continue;
        }
        const bool waitsAside =
            host().files.exists(folder.path) && host().files.exists(folder.backupFolder + u'/' + label);
        places.isDisabled = places.isDisabled || isQueued || waitsAside;
    }
    return places;
}

QCoro::Task<bool> LaunchItems::disableUsersPlist(QString label, LaunchFolder folder) {
    const QString source = folder.path + u'/' + label;
    const QString backup = folder.backupFolder + u'/' + label;
    try {
        if (host().files.status(backup).kind != FileStatus::Kind::Missing) {
            host().files.remove(backup);
        }
        const QString domain = u"gui/%1"_s.arg(host().machine.userId());
        const QStringList bootout{kLaunchctlTool, u"bootout"_s, domain, source};
        co_await runCommand(bootout, OutputCapture::Discard);
        const QStringList unload{kLaunchctlTool, u"unload"_s, u"-w"_s, source};
        co_await runCommand(unload, OutputCapture::Discard);
        host().files.move(source, backup);
    } catch (const FileError& error) {
        log(u"  [ERROR] Failed to disable launch item %1: %2"_s.arg(label, error.message()));
        co_return false;
    }
    log(u"  [APPLIED] Disabled launch item: %1 (%2)"_s.arg(label, folder.path));
    co_return true;
}

QCoro::Task<bool> LaunchItems::disableSystemPlists(QList<SystemPlist> plists) {
    if (plists.isEmpty()) {
        co_return true;
    }
    log(u"  [ACTION] Requesting Admin rights to disable %1 system launch item(s)..."_s.arg(plists.size()));
    QStringList commands;
    for (const SystemPlist& plist : plists) {
        commands.append(keepLaunchPlistCommand(plist.path(), plist.folder));
        commands.append(requireRealBackupFolderCommand(plist.folder));
        commands.append(disableLaunchPlistCommand(plist.path(), plist.folder));
    }
    const CommandResult result = co_await m_batch.run(commands.join(u" && "_s), kSystemChangesPrompt);
    if (!m_batch.isOpen()) {
        m_batch.open().forgetMoves(); // nothing waits: the commands have run
        if (result.status != 0) {
            log(u"  [ERROR] Failed to disable system launch items: "_s + result.standardError);
            co_return false;
        }
    }
    for (const SystemPlist& plist : plists) {
        log(u"  [APPLIED] Disabled launch item: %1 @ %2"_s.arg(plist.label, plist.folder.path));
    }
    co_return true;
}

} // namespace quorvane
