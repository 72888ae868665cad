// The way back for launch plists. The user's own are moved back. Of the system's root keeps a copy in a folder of its own when
// one is switched off, because the backup folder in the user's home is open to whatever runs as the user: nothing that lies
// there ever becomes root's again.

#include "startup/launchd/LaunchItems.h"

#include "core/AdminBatch.h"
#include "core/AdminScript.h"
#include "core/Paths.h"
#include "platform/CommandLauncher.h"
#include "platform/FileManager.h"
#include "platform/FolderNames.h"
#include "platform/Host.h"
#include "platform/Machine.h"
#include "startup/launchd/BackupFolders.h"
#include "startup/launchd/LaunchItemNames.h"
#include "startup/launchd/Launchctl.h"
#include "startup/launchd/OverrideRecord.h"

#include <QCoroTask>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using Kind = FileStatus::Kind;

const QString kLibrary = u"/Library"_s; // root's on every Mac

/// The names of the plists that wait in the user's backup folder or were to come back, sorted.
QStringList plistsToSettle(const LaunchFolder& folder, QStringList putAside, const QStringList& broughtBack) {
    for (const QString& plist : broughtBack) {
        if (parentFolder(plist) == folder.path) {
            putAside.append(lastPathComponent(plist));
        }
    }
    putAside.removeDuplicates();
    putAside.sort();
    return putAside;
}

} // namespace

QCoro::Task<void> LaunchItems::restore(KeptOff kept) {
    co_await m_launchd.liftUsersOverrides(kept);
    co_await bringBack(kept);
}

QCoro::Task<void> LaunchItems::bringBack(KeptOff kept) {
    const QList<LaunchdService> lifted = m_launchd.recordedOverrides();
    co_await loadInterrupted(kept);
    int count = 0;
    QString reported;
    for (const LaunchFolder& folder : folders()) {
        const QString unusable = unusableBackupFolder(folder);
        if (!unusable.isEmpty() && unusable != reported) {
            logUnusableFolder(environment(), unusable);
            reported = unusable; // the outer folder is the same for all
        }
        for (const QString& name : plistsPutAside(folder, kept)) {
            const bool isRestored = co_await restorePlist(folder, name, lifted);
            count += isRestored ? 1 : 0;
        }
    }
    if (count > 0) {
        log(u"  [REVERTED] Restored %1 LaunchAgents/Daemons."_s.arg(count));
    }
}

/// Loads what a run that was killed had stopped and not put aside yet.
QCoro::Task<void> LaunchItems::loadInterrupted(KeptOff kept) {
    const LaunchFolder folder = folders().first();
    const QStringList aside = plistsPutAside(folder, kept);
    const PutAsideRecord::Jobs jobs = putAside();
    for (auto job = jobs.begin(); job != jobs.end(); ++job) {
        const QString name = lastPathComponent(job.key());
        const bool isInPlace = parentFolder(job.key()) == folder.path && isLaunchPlistName(name) &&
                               host().files.status(job.key()).kind == Kind::File;
        if (job.value() == JobBefore::Loaded && isInPlace && !aside.contains(name) &&
            !kept.plists.contains(job.key())) {
            co_await load(job.key());
        }
    }
}

/// True when it was moved back. What has come to its place since is newer and stays; of the user's own it is switched on
/// again instead, because the override that switched the old one off counts for it as well.
QCoro::Task<bool> LaunchItems::restorePlist(LaunchFolder folder, QString name, QList<LaunchdService> lifted) {
    const QString restored = folder.path + u'/' + name;
    const QString backup = folder.backupFolder + u'/' + name;
    const bool isTaken = host().files.status(restored).kind != FileStatus::Kind::Missing;
    if (m_batch.open().bringsBack(restored) || (isTaken && !folder.isUsers)) {
        co_return false; // root brings its own copy, not the user's
    }
    const JobBefore job = putAside().value(restored, JobBefore::Unrecorded);
    if (folder.isUsers) {
        // Before the move: a run that ends in between finds the backup again.
        co_await enableUsersJob(isTaken ? restored : backup, lifted);
    }
    if (host().commands.isShutDown()) {
        co_return false; // it is there for the next time
    }
    try {
        host().files.move(backup, isTaken ? backup + u".replaced"_s : restored);
    } catch (const FileError& error) {
        log(u"  [ERROR] Could not restore "_s + error.message());
        if (folder.isUsers) {
            log(u"  [INFO] Not restored: "_s + name);
        }
        co_return false;
    }
    if (isLoadedAgain(job)) {
        co_await load(restored);
    }
    co_return !isTaken;
}

/// Of a plist that an earlier version has put aside: its "unload -w" has left an override behind of which no record tells, and
/// "load" would fail on it.
QCoro::Task<void> LaunchItems::enableUsersJob(QString plist, QList<LaunchdService> lifted) {
    const QString label = launchJobLabel(plist, host().propertyLists);
    const QString place = launchFolders(host().machine.homeFolder()).first().path + u'/' + lastPathComponent(plist);
    if (!label.isEmpty() && !putAside().contains(place) && !lifted.contains({LaunchdDomain::User, label})) {
        const QString job = u"gui/%1/"_s.arg(host().machine.userId()) + label;
        const QStringList enable{kLaunchctlTool, u"enable"_s, job};
        co_await runCommand(enable, OutputCapture::Discard);
    }
}

QCoro::Task<void> LaunchItems::load(QString plist) {
    const QStringList load{kLaunchctlTool, u"load"_s, plist};
    co_await runCommand(load, OutputCapture::Discard);
}

/// The first of the folders on the way to what was put aside that is no real folder; empty where there is none such. What
/// lies where a link leads was never put aside.
QString LaunchItems::unusableBackupFolder(const LaunchFolder& folder) const {
    for (const QString& path : {backupFolder(host().machine.homeFolder()), folder.backupFolder}) {
        const FileStatus::Kind kind = host().files.status(path).kind;
        if (kind != FileStatus::Kind::Folder && kind != FileStatus::Kind::Missing) {
            return path;
        }
    }
    return {};
}

/// The file names of a folder's plists that wait in the user's backup folder. Whatever else lies there isn't the program's.
QStringList LaunchItems::plistsPutAside(const LaunchFolder& folder, const KeptOff& kept) const {
    QStringList names =
        unusableBackupFolder(folder).isEmpty() ? namesIn(host().files, folder.backupFolder) : QStringList();
    names.removeIf([&](const QString& name) {
        return !isLaunchPlistName(name) || kept.plists.contains(folder.path + u'/' + name);
    });
    return names;
}

/// The file names of root's copies; none for the user's own folder.
QStringList LaunchItems::copiesKept(const LaunchFolder& folder) const {
    return folder.isUsers ? QStringList() : namesIn(host().files, folder.keepFolder);
}

QSet<QString> LaunchItems::placesOfPutAside() const {
    const PutAsideRecord::Jobs jobs = putAside();
    QSet<QString> places(jobs.keyBegin(), jobs.keyEnd());
    return places.unite(unrecordedPlaces());
}

QSet<QString> LaunchItems::unrecordedPlaces() const {
    const PutAsideRecord::Jobs jobs = putAside();
    QSet<QString> places;
    for (const LaunchFolder& folder : folders()) {
        for (const QString& name : plistsPutAside(folder, {}) + copiesKept(folder)) {
            const QString place = folder.path + u'/' + name;
            if (!jobs.contains(place)) {
                places.insert(place);
            }
        }
    }
    return places;
}

void LaunchItems::queueLifts(const KeptOff& kept) {
    for (const QString& command : m_launchd.rootsLiftCommands(kept)) {
        m_batch.open().queue(withoutStatus(command));
    }
}

void LaunchItems::queueKept(KeptOff kept) {
    queueLifts(kept);
    const QList<LaunchdService> lifted = m_launchd.recordedOverrides();
    const PutAsideRecord::Jobs aside = putAside();
    for (const LaunchFolder& folder : folders()) {
        QStringList names = copiesKept(folder);
        names.removeIf([&](const QString& name) { return kept.plists.contains(folder.path + u'/' + name); });
        if (!names.isEmpty() && !isRootsAlone(folder.keepFolder)) {
            logUnusableFolder(environment(), folder.keepFolder);
            continue;
        }
        for (const QString& name : names) {
            const KeptLaunchPlist plist = keptPlist(folder, name, lifted, aside);
            if (!isLaunchPlistName(name) || host().files.status(plist.keptPath()).kind != Kind::File) {
                continue;
            }
            m_batch.open().queueLaunchPlistBack(plist.path(),
                                                reinstateLaunchPlistCommand(plist, host().machine.userId()));
            log(u"  [ACTION] Queued restore for system launch item: "_s + name);
        }
    }
}

/// Goes by what the disk shows: a batch may have failed after it put a plist back.
QCoro::Task<void> LaunchItems::settleKept(KeptOff kept) {
    const QStringList broughtBack = m_batch.takePlistsBroughtBack();
    const PutAsideRecord::Jobs jobs = putAside();
    for (const LaunchFolder& folder : folders()) {
        const QStringList aside = folder.isUsers ? QStringList() : plistsPutAside(folder, kept);
        for (const QString& name : plistsToSettle(folder, aside, broughtBack)) {
            const QString plist = folder.path + u'/' + name;
            const bool isRoots = broughtBack.contains(plist);
            const bool isStillKept =
                isRoots && host().files.status(folder.keepFolder + u'/' + name).kind != Kind::Missing;
            if (isStillKept || host().files.status(plist).kind == Kind::Missing) {
                log(u"  [INFO] Not restored: "_s + name);
                continue;
            }
            const QString backup = folder.backupFolder + u'/' + name;
            const bool isBackup = aside.contains(name) && holdTheSame(backup, plist);
            if (!folder.isDaemons && (isRoots || isBackup) && isLoadedAgain(jobs.value(plist, JobBefore::Unrecorded))) {
                co_await load(plist); // an agent runs in the user's session
            }
            if (isBackup) {
                removeBackup(backup);
            }
        }
    }
    forgetBroughtBack();
    co_await m_launchd.settleLifted(kept);
}

/// Whatever has become of it, it isn't aside any more.
void LaunchItems::forgetBroughtBack() {
    const PutAsideRecord::Jobs before = putAside();
    PutAsideRecord::Jobs aside;
    for (const LaunchFolder& folder : folders()) {
        for (const QString& path : before.keys()) {
            const QString name = u'/' + lastPathComponent(path);
            if (parentFolder(path) == folder.path &&
                (host().files.status(folder.backupFolder + name).kind != Kind::Missing ||
                 (!folder.isUsers && host().files.status(folder.keepFolder + name).kind != Kind::Missing))) {
                aside.insert(path, before.value(path));
            }
        }
    }
    try {
        PutAsideRecord(host().files, host().machine).write(aside);
    } catch (const FileError& error) {
        log(u"  [ERROR] Could not note what is put aside: "_s + error.message());
    }
}

/// False when somebody else than root can have put there what lies there: a folder on the way isn't root's, or isn't one.
/// What is missing is made by root, when it is needed.
bool LaunchItems::isRootsAlone(const QString& keepFolder) const {
    for (QString folder = keepFolder; folder != kLibrary; folder = parentFolder(folder)) {
        const FileStatus status = host().files.status(folder);
        const bool isRoots = status.kind == Kind::Folder && status.owner == 0 && !host().files.isWritable(folder);
        if (status.kind != Kind::Missing && !isRoots) {
            return false;
        }
    }
    return true;
}

KeptLaunchPlist LaunchItems::keptPlist(const LaunchFolder& folder, const QString& name,
                                       const QList<LaunchdService>& lifted,
                                       const PutAsideRecord::Jobs& putAside) const {
    KeptLaunchPlist plist{name, folder, {}};
    const QString kept = plist.keptPath();
    if (host().files.status(kept).owner == 0 && !host().files.isWritable(kept)) {
        plist.label =
            launchJobLabel(kept, host().propertyLists); // of a file that others can change root believes nothing
    }
    plist.isRecorded = putAside.contains(plist.path()) || lifted.contains(plist.service());
    plist.isLoadedAgain = isLoadedAgain(putAside.value(plist.path(), JobBefore::Unrecorded));
    return plist;
}

/// False as well when one of them can't be read.
bool LaunchItems::holdTheSame(const QString& path, const QString& otherPath) const {
    try {
        return host().files.read(path) == host().files.read(otherPath);
    } catch (const FileError&) {
        return false;
    }
}

void LaunchItems::removeBackup(const QString& backup) {
    try {
        host().files.remove(backup);
    } catch (const FileError& error) {
        log(u"  [ERROR] Could not remove "_s + error.message());
    }
}

} // namespace quorvane
