// The way back for the system's launch plists. Root keeps a copy of each in a folder of its own when it is switched off,
// because the backup folder in the user's home is open to whatever runs as the user: nothing that lies there ever becomes
// root's again.

#include "system/SystemManager.h"

#include "platform/FileManager.h"
#include "platform/Machine.h"
#include "startup/launchd/LaunchFolders.h"
#include "startup/launchd/LaunchItemNames.h"

#include <QCoroTask>

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using Kind = FileStatus::Kind;

const QString kLibrary = u"/Library"_s; // root's on every Mac

/// The names of the plists that wait in the user's backup folder or were to come back, sorted.
QStringList plistsToSettle(const LaunchFolder& folder, QStringList putAside, const QStringList& broughtBack) {
    for (const QString& plist : broughtBack) {
        const qsizetype slash = plist.lastIndexOf(u'/');
        if (plist.left(slash) == folder.path) {
            putAside.append(plist.mid(slash + 1));
        }
    }
    putAside.removeDuplicates();
    putAside.sort();
    return putAside;
}

} // namespace

void SystemManager::queueKeptLaunchItems() {
    m_plistsBroughtBack.clear();
    for (const LaunchFolder& folder : launchFolders()) {
        const QStringList names = folder.isUsers ? QStringList() : namesIn(folder.keepFolder);
        if (!names.isEmpty() && !isRootsAlone(folder.keepFolder)) {
            logUnusableFolder(folder.keepFolder);
            continue;
        }
        for (const QString& name : names) {
            const KeptLaunchPlist plist = keptLaunchPlist(folder, name);
            if (!isLaunchPlistName(name) || m_host.files.status(plist.keptPath()).kind != Kind::File) {
                continue;
            }
            m_adminCommandBatch.append(reinstateLaunchPlistCommand(plist, m_host.machine.userId()));
            m_plistsBroughtBack.append(plist.path());
            log(u"  [ACTION] Queued restore for system launch item: "_s + name);
        }
    }
}

/// Goes by what the disk shows: a batch may have failed after it put a plist back.
QCoro::Task<void> SystemManager::settleKeptLaunchItems() {
    const QStringList broughtBack = std::exchange(m_plistsBroughtBack, {});
    for (const LaunchFolder& folder : launchFolders()) {
        const QStringList putAside = folder.isUsers ? QStringList() : plistsPutAside(folder);
        for (const QString& name : plistsToSettle(folder, putAside, broughtBack)) {
            const QString plist = folder.path + u'/' + name;
            const bool isRoots = broughtBack.contains(plist);
            const bool isStillKept =
                isRoots && m_host.files.status(folder.keepFolder + u'/' + name).kind != Kind::Missing;
            if (isStillKept || m_host.files.status(plist).kind == Kind::Missing) {
                log(u"  [INFO] Not restored: "_s + name);
                continue;
            }
            if (isRoots && !folder.isDaemons) {
                co_await loadLaunchPlist(plist); // an agent runs in the user's session
            }
            const QString backup = folder.backupFolder + u'/' + name;
            if (putAside.contains(name) && holdTheSame(backup, plist)) {
                removeBackup(backup);
            }
        }
    }
}

/// False when somebody else than root can have put there what lies there: a folder on the way isn't root's, or isn't one.
/// What is missing is made by root, when it is needed.
bool SystemManager::isRootsAlone(const QString& keepFolder) const {
    for (QString folder = keepFolder; folder != kLibrary; folder = folder.left(folder.lastIndexOf(u'/'))) {
        const FileStatus status = m_host.files.status(folder);
        const bool isRoots = status.kind == Kind::Folder && status.owner == 0 && !m_host.files.isWritable(folder);
        if (status.kind != Kind::Missing && !isRoots) {
            return false;
        }
    }
    return true;
}

KeptLaunchPlist SystemManager::keptLaunchPlist(const LaunchFolder& folder, const QString& name) const {
    KeptLaunchPlist plist{name, folder, {}};
    const QString kept = plist.keptPath();
    if (m_host.files.status(kept).owner == 0 && !m_host.files.isWritable(kept)) {
        plist.label =
            launchJobLabel(kept, m_host.propertyLists); // of a file that others can change root believes nothing
    }
    return plist;
}

/// False as well when one of them can't be read.
bool SystemManager::holdTheSame(const QString& path, const QString& otherPath) const {
    try {
        return m_host.files.read(path) == m_host.files.read(otherPath);
    } catch (const FileError&) {
        return false;
    }
}

void SystemManager::removeBackup(const QString& backup) {
    try {
        m_host.files.remove(backup);
    } catch (const FileError& error) {
        log(u"  [WARNING] Could not remove "_s + error.message());
    }
}

} // namespace quorvane
