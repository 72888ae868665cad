#include "system/SystemManager.h"

#include "core/AdminPrompts.h"
#include "platform/FileManager.h"
#include "platform/Machine.h"
#include "startup/items/LoginItem.h"
#include "startup/launchd/LaunchFolders.h"
#include "startup/launchd/LaunchItemNames.h"

#include <QCoroTask>

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kLaunchctl = u"/bin/launchctl"_s;

QString foldedPath(const QString& path) {
    return path.normalized(QString::NormalizationForm_C).toCaseFolded();
}

/// What the log says of an item that stays although it was asked to go; empty when it may go.
QString lineOfHeldBackItem(const QString& label, const QSet<QString>& excludedIds) {
    if (isExcludedName(label)) {
        return u"  [SKIPPED] Protected launch item: "_s + label;
    }
    const bool isExcluded = excludedIds.contains(launchItemId(label)) || excludedIds.contains(label);
    if (isExcluded && looksLikeBackgroundAgent(label)) {
        return u"  [SKIPPED] Excluded App Background Activity launch item: "_s + label;
    }
    return {};
}

} // namespace

/// A plist that only root can move.
struct SystemManager::SystemLaunchPlist {
    QString label;
    LaunchFolder folder;

    QString path() const { return folder.path + u'/' + label; }
};

struct SystemManager::LaunchPlistPlaces {
    QList<LaunchFolder> folders; ///< where it can be switched off
    bool isDisabled = false;     ///< it waits in a backup folder, or the open batch puts it there
};

QList<LaunchFolder> SystemManager::launchFolders() const {
    return quorvane::launchFolders(m_host.machine.homeFolder());
}

QCoro::Task<bool> SystemManager::disableLaunchItems(QStringList labels, QSet<QString> excludedIds) {
    if (labels.isEmpty()) {
        co_return true;
    }
    createBackupFolder();
    bool succeeded = true;
    QList<SystemLaunchPlist> systemPlists;
    for (const QString& label : labels) {
        const QString heldBack = lineOfHeldBackItem(label, excludedIds);
        if (!heldBack.isEmpty()) {
            log(heldBack);
            continue;
        }
        const LaunchPlistPlaces places = placesOfLaunchPlist(label);
        if (places.folders.isEmpty()) {
            log(places.isDisabled ? u"  [INFO] Launch item already disabled: "_s + label
                                  : u"  [WARNING] Launch item not found: "_s + label);
        }
        for (const LaunchFolder& folder : places.folders) {
            if (!requireRealFolders({backupFolder(m_host.machine.homeFolder()), folder.backupFolder})) {
                succeeded = false;
            } else if (folder.isUsers) {
                succeeded = co_await disableUsersLaunchPlist(label, folder) && succeeded;
            } else if (!isRootsAlone(folder.keepFolder)) {
                logUnusableFolder(folder.keepFolder);
                succeeded = false;
            } else {
                systemPlists.append({label, folder});
                rememberMove(systemPlists.last().path());
            }
        }
    }
    co_return co_await disableSystemLaunchPlists(systemPlists) && succeeded;
}

/// Where a plist of that name lies and isn't on its way out already.
SystemManager::LaunchPlistPlaces SystemManager::placesOfLaunchPlist(const QString& label) const {
    LaunchPlistPlaces places;
    if (!isLaunchPlistName(label)) {
        return places;
    }
    for (const LaunchFolder& folder : launchFolders()) {
        const QString plist = folder.path + u'/' + label;
        const bool isQueued = isMoveQueued(plist);
        if (!isQueued && m_host.files.exists(plist)) {
            places.folders.append(folder);
            continue;
        }
        const bool waitsAside =
            m_host.files.exists(folder.path) && m_host.files.exists(folder.backupFolder + u'/' + label);
        places.isDisabled = places.isDisabled || isQueued || waitsAside;
    }
    return places;
}

void SystemManager::rememberMove(const QString& path) {
    m_queuedMoves.insert(foldedPath(path), path);
}

/// A volume that ignores case finds one file under many spellings. Where the folder lists both, they are two files.
bool SystemManager::isMoveQueued(const QString& path) const {
    const QStringList spellings = m_queuedMoves.values(foldedPath(path));
    if (spellings.isEmpty() || spellings.contains(path)) {
        return !spellings.isEmpty();
    }
    const QStringList names = namesIn(path.left(path.lastIndexOf(u'/')));
    const auto isListed = [&names](const QString& spelling) {
        return names.contains(spelling.mid(spelling.lastIndexOf(u'/') + 1));
    };
    return !isListed(path) || std::none_of(spellings.begin(), spellings.end(), isListed);
}

QCoro::Task<bool> SystemManager::disableUsersLaunchPlist(QString label, LaunchFolder folder) {
    const QString source = folder.path + u'/' + label;
    const QString backup = folder.backupFolder + u'/' + label;
    try {
        if (m_host.files.status(backup).kind != FileStatus::Kind::Missing) {
            m_host.files.remove(backup);
        }
        const QString domain = u"gui/%1"_s.arg(m_host.machine.userId());
        const QStringList bootout{kLaunchctl, u"bootout"_s, domain, source};
        co_await runCommand(bootout, OutputCapture::Discard);
        const QStringList unload{kLaunchctl, u"unload"_s, u"-w"_s, source};
        co_await runCommand(unload, OutputCapture::Discard);
        m_host.files.move(source, backup);
    } catch (const FileError& error) {
        log(u"  [ERROR] Failed to disable launch item %1: %2"_s.arg(label, error.message()));
        co_return false;
    }
    log(u"  [APPLIED] Disabled launch item: %1 (%2)"_s.arg(label, folder.path));
    co_return true;
}

QCoro::Task<bool> SystemManager::disableSystemLaunchPlists(QList<SystemLaunchPlist> plists) {
    if (plists.isEmpty()) {
        co_return true;
    }
    log(u"  [ACTION] Requesting Admin rights to disable %1 system launch item(s)..."_s.arg(plists.size()));
    QStringList commands;
    for (const SystemLaunchPlist& plist : plists) {
        commands.append(keepLaunchPlistCommand(plist.path(), plist.folder));
        commands.append(requireRealBackupFolderCommand(plist.folder));
        commands.append(disableLaunchPlistCommand(plist.path(), plist.folder));
    }
    const CommandResult result = co_await runAdminCommand(commands.join(u" && "_s), kSystemChangesPrompt);
    if (m_adminBatchDepth < 1) {
        m_queuedMoves.clear(); // nothing waits for a batch: the commands have run
        if (result.status != 0) {
            log(u"  [ERROR] Failed to disable system launch items: "_s + result.standardError);
            co_return false;
        }
    }
    for (const SystemLaunchPlist& plist : plists) {
        log(u"  [APPLIED] Disabled launch item: %1 @ %2"_s.arg(plist.label, plist.folder.path));
    }
    co_return true;
}

void SystemManager::createBackupFolder() {
    try {
        m_host.files.createFolders(backupFolder(m_host.machine.homeFolder()));
    } catch (const FileError& error) {
        log(u"  [WARNING] Could not create the backup folder: "_s + error.message());
    }
}

/// Creates folders, outer ones first, into which something is about to be moved. A link in the place of one would let
/// root move files to wherever it leads.
bool SystemManager::requireRealFolders(const QStringList& folders) {
    for (const QString& folder : folders) {
        try {
            if (m_host.files.status(folder).kind == FileStatus::Kind::Missing) {
                m_host.files.createFolders(folder);
            }
        } catch (const FileError& error) {
            log(u"  [WARNING] Could not create "_s + error.message()); // the next line tells of it
        }
        if (m_host.files.status(folder).kind != FileStatus::Kind::Folder) {
            logUnusableFolder(folder);
            return false;
        }
    }
    return true;
}

QCoro::Task<void> SystemManager::restoreLaunchItems() {
    int count = 0;
    QString reported;
    for (const LaunchFolder& folder : launchFolders()) {
        const QString unusable = unusableBackupFolder(folder);
        if (!unusable.isEmpty() && unusable != reported) {
            logUnusableFolder(unusable);
            reported = unusable; // the outer folder is the same for all
        }
        for (const QString& name : plistsPutAside(folder)) {
            const bool isRestored = co_await restoreLaunchPlist(folder, name);
            count += isRestored ? 1 : 0;
        }
    }
    if (count > 0) {
        log(u"  [REVERTED] Restored %1 LaunchAgents/Daemons."_s.arg(count));
    }
}

/// True when it was moved back. What has come to its place since is newer and stays; of the user's own it is switched on
/// again instead, because the override that switched the old one off counts for it as well.
QCoro::Task<bool> SystemManager::restoreLaunchPlist(LaunchFolder folder, QString name) {
    const QString restored = folder.path + u'/' + name;
    const QString backup = folder.backupFolder + u'/' + name;
    const bool isTaken = m_host.files.status(restored).kind != FileStatus::Kind::Missing;
    if (m_plistsBroughtBack.contains(restored) || (isTaken && !folder.isUsers)) {
        co_return false; // root brings its own copy, not the user's
    }
    if (folder.isUsers) {
        // Before the move: a run that ends in between finds the backup again.
        co_await enableUsersJob(isTaken ? restored : backup);
    }
    if (m_host.commands.isShutDown()) {
        co_return false; // it is there for the next time
    }
    try {
        m_host.files.move(backup, isTaken ? backup + u".replaced"_s : restored);
    } catch (const FileError& error) {
        log(u"  [WARNING] Could not restore "_s + error.message());
        if (folder.isUsers) {
            log(u"  [INFO] Not restored: "_s + name);
        }
        co_return false;
    }
    co_await loadLaunchPlist(restored);
    co_return !isTaken;
}

/// "unload -w" has left an override behind, and "load" would fail on it.
QCoro::Task<void> SystemManager::enableUsersJob(QString plist) {
    const QString label = launchJobLabel(plist, m_host.propertyLists);
    if (!label.isEmpty()) {
        const QString job = u"gui/%1/"_s.arg(m_host.machine.userId()) + label;
        const QStringList enable{kLaunchctl, u"enable"_s, job};
        co_await runCommand(enable, OutputCapture::Discard);
    }
}

QCoro::Task<void> SystemManager::loadLaunchPlist(QString plist) {
    const QStringList load{kLaunchctl, u"load"_s, plist};
    co_await runCommand(load, OutputCapture::Discard);
}

void SystemManager::logUnusableFolder(const QString& folder) {
    log(u"  [ERROR] Backup folder is not usable: "_s + folder);
}

/// The first of the folders on the way to what was put aside that is no real folder; empty where there is none such. What
/// lies where a link leads was never put aside.
QString SystemManager::unusableBackupFolder(const LaunchFolder& folder) const {
    for (const QString& path : {backupFolder(m_host.machine.homeFolder()), folder.backupFolder}) {
        const FileStatus::Kind kind = m_host.files.status(path).kind;
        if (kind != FileStatus::Kind::Folder && kind != FileStatus::Kind::Missing) {
            return path;
        }
    }
    return {};
}

/// The file names of a folder's plists that wait in the user's backup folder. Whatever else lies there isn't the program's.
QStringList SystemManager::plistsPutAside(const LaunchFolder& folder) const {
    QStringList names = unusableBackupFolder(folder).isEmpty() ? namesIn(folder.backupFolder) : QStringList();
    names.removeIf([](const QString& name) { return !isLaunchPlistName(name); });
    return names;
}

/// Empty where the folder doesn't exist or can't be listed.
QStringList SystemManager::namesIn(const QString& folder) const {
    try {
        return m_host.files.list(folder);
    } catch (const FileError&) {
        return {};
    }
}

} // namespace quorvane
