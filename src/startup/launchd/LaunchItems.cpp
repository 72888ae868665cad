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
#include "startup/launchd/LaunchdReadings.h"
#include "startup/launchd/OverrideRecord.h"

#include <QCoroTask>

#include <algorithm>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// What the log says of an item that stays although it was asked to go; empty when it may go.
QString lineOfHeldBackItem(const QString& label, const QSet<QString>& excludedIds, const LaunchItemGuards& guards) {
    if (isExcludedName(label) || guards.protectedNames.contains(label)) {
        return u"  [SKIPPED] Protected launch item: "_s + label;
    }
    if (guards.managedNames.contains(label)) {
        return u"  [SKIPPED] Managed by your organization: "_s + guards.managedNames.value(label);
    }
    const bool isExcluded = excludedIds.contains(launchItemId(label)) || excludedIds.contains(label);
    if (isExcluded && looksLikeBackgroundAgent(label)) {
        return u"  [SKIPPED] Excluded App Background Activity launch item: "_s + label;
    }
    return {};
}

QString nameAndPlace(const LaunchPlist& plist) {
    return plist.fileName + u" @ "_s + plist.folder.path;
}

} // namespace

LaunchItems::LaunchItems(FlowEnvironment& environment, AdminBatch& batch)
    : Flow(environment)
    , m_batch(batch)
    , m_launchd(environment) {}

/// What lies in the folders under a file name and isn't on its way out already.
struct LaunchItems::Found {
    QList<LaunchPlist> plists; ///< that can be switched off
    QList<LaunchPlist> held;   ///< that can't before the background task list was read
    bool isOff = false; ///< one waits in a backup folder, or the open batch puts it there, or launchd has it as off
    bool runsOnDemand = false; ///< one is a daemon that waits for its application

    /// Why nothing is done about one; empty where something is.
    QString lineOf(const QString& label) const {
        if (runsOnDemand) {
            return u"  [INFO] Only runs when its application needs it: "_s + label;
        }
        if (!plists.isEmpty() || !held.isEmpty()) {
            return {};
        }
        return isOff ? u"  [INFO] Launch item already disabled: "_s + label
                     : u"  [WARNING] Launch item not found: "_s + label;
    }
};

/// Which services launchd has switched off, and of those the ones that a run has left with their plists still in place.
struct LaunchItems::SwitchedOff {
    LaunchdOverrides overrides;
    PutAsideRecord::Jobs putAside{};
    QList<LaunchdService> recorded{};

    /// True where a run has ended between launchd's override and the move. What an installer has brought back isn't: the
    /// old one lies aside.
    bool isHalfwayAside(const LaunchPlist& plist, const FileManager& files) const {
        return putAside.contains(plist.path()) && recorded.contains(plist.service()) &&
               !files.exists(plist.folder.backupFolder + u'/' + plist.fileName);
    }
};

/// What is known before anything goes.
struct LaunchItems::Preparation {
    SwitchedOff switchedOff;
    QList<LaunchdService> services; ///< that are switched off by their labels
    bool isRecorded = true;         ///< false when nothing can be, because it couldn't be written down
};

/// A plist that only root can move.
struct LaunchItems::SystemPlist {
    LaunchPlist plist;
    bool isOverridden = false;
};

QList<LaunchFolder> LaunchItems::folders() const {
    return launchFolders(host().machine.homeFolder());
}

QCoro::Task<LaunchItems::Outcome> LaunchItems::disable(QStringList labels, QSet<QString> excludedIds,
                                                       LaunchItemGuards guards) {
    Outcome outcome;
    if (labels.isEmpty()) {
        co_return outcome;
    }
    createBackupFolder(environment());
    const auto line = [&](const QString& label) { return lineOfHeldBackItem(label, excludedIds, guards); };
    QStringList going = labels;
    going.removeIf([&line](const QString& label) { return !line(label).isEmpty(); });
    const Preparation prepared = co_await prepare(going, guards);
    bool succeeded = prepared.isRecorded;
    QList<SystemPlist> systemPlists;
    for (const QString& label : labels) {
        const Found found = going.contains(label) ? find(label, prepared.switchedOff, guards) : Found();
        const QString reason = going.contains(label) ? found.lineOf(label) : line(label);
        if (!reason.isEmpty()) {
            log(reason);
        }
        outcome.held += found.held;
        for (const LaunchPlist& plist : found.plists) {
            const LaunchFolder& folder = plist.folder;
            const bool isOverridden = prepared.services.contains(plist.service());
            if (!requireRealFolders(environment(), {backupFolder(host().machine.homeFolder()), folder.backupFolder})) {
                succeeded = false;
            } else if (folder.isUsers) {
                succeeded = co_await disableUsersPlist(plist, isOverridden) && succeeded;
            } else if (!isRootsAlone(folder.keepFolder)) {
                logUnusableFolder(environment(), folder.keepFolder);
                succeeded = false;
            } else {
                systemPlists.append({plist, isOverridden});
                m_batch.open().rememberMove(plist.path());
            }
        }
    }
    outcome.succeeded = co_await disableSystemPlists(systemPlists) && succeeded;
    co_return outcome;
}

LaunchItems::Found LaunchItems::find(const QString& label, const SwitchedOff& switchedOff,
                                     const LaunchItemGuards& guards) const {
    Found found;
    for (const LaunchFolder& folder : isLaunchPlistName(label) ? folders() : QList<LaunchFolder>()) {
        const QString path = folder.path + u'/' + label;
        const bool isQueued = m_batch.open().moves(path, host().files);
        if (isQueued || !host().files.exists(path)) {
            const bool waitsAside =
                host().files.exists(folder.path) && host().files.exists(folder.backupFolder + u'/' + label);
            found.isOff = found.isOff || isQueued || waitsAside;
            continue;
        }
        const LaunchPlist plist = readLaunchPlist(folder, label, host().propertyLists);
        const bool isOverridden =
            !isOn(plist, switchedOff.overrides).value_or(true) && !switchedOff.isHalfwayAside(plist, host().files);
        if (isOverridden || guards.pathsSwitchedOff.contains(path)) {
            found.isOff = true;
        } else if (plist.runsOnDemand()) {
            found.runsOnDemand = true;
        } else if (folder.isDaemons && guards.areDaemonsHeld) {
            found.held.append(plist);
        } else {
            found.plists.append(plist);
        }
    }
    return found;
}

/// Asks launchd, and writes down which services are about to be switched off by their labels.
QCoro::Task<LaunchItems::Preparation> LaunchItems::prepare(QStringList labels, LaunchItemGuards guards) {
    Preparation prepared;
    if (!hasJob(labels)) {
        co_return prepared;
    }
    const LaunchdReadings launchd = co_await m_launchd.readings();
    prepared.switchedOff = {launchd.overrides(), putAside(), m_launchd.recordedOverrides()};
    QList<LaunchPlist> going;
    for (const QString& label : labels) {
        going += find(label, prepared.switchedOff, guards).plists;
    }
    prepared.services = servicesThatGo(going, launchd.plists(), guards.staying);
    QList<ServiceGoing> services;
    for (const LaunchPlist& plist : going) {
        if (prepared.services.contains(plist.service())) {
            services.append({plist.service(), plist.fileName, plist.path()});
        }
    }
    prepared.isRecorded = co_await m_launchd.recordServices(services);
    if (!prepared.isRecorded) {
        prepared.services.clear();
    }
    co_return prepared;
}

/// False where there is nothing to ask launchd about, because no plist tells a label.
bool LaunchItems::hasJob(const QStringList& labels) const {
    return std::any_of(labels.begin(), labels.end(), [this](const QString& label) {
        const Found found = find(label, {}, {});
        return found.runsOnDemand || std::any_of(found.plists.begin(), found.plists.end(),
                                                 [](const LaunchPlist& plist) { return !plist.label.isEmpty(); });
    });
}

/// An override is for the label: what stays under the same one would be switched off, too.
QList<LaunchdService> LaunchItems::servicesThatGo(const QList<LaunchPlist>& going, const QList<LaunchPlist>& all,
                                                  const QList<LaunchdService>& staying) const {
    OpenBatch moves = m_batch.open();
    QList<LaunchdService> services;
    for (const LaunchPlist& plist : going) {
        moves.rememberMove(plist.path());
        if (mayOverride(plist.label) && !services.contains(plist.service()) && !staying.contains(plist.service())) {
            services.append(plist.service());
        }
    }
    for (const LaunchPlist& plist : all) {
        if (!moves.moves(plist.path(), host().files)) {
            services.removeAll(plist.service());
        }
    }
    return services;
}

QCoro::Task<bool> LaunchItems::disableUsersPlist(LaunchPlist plist, bool isOverridden) {
    const QString backup = plist.folder.backupFolder + u'/' + plist.fileName;
    co_await notePutAside(QList<LaunchPlist>(1, plist));
    try {
        if (host().files.status(backup).kind != FileStatus::Kind::Missing) {
            host().files.remove(backup);
        }
        if (isOverridden) {
            co_await m_launchd.switchOff(plist.label);
        } else {
            co_await m_launchd.stopAgent(plist.path());
        }
        host().files.move(plist.path(), backup);
    } catch (const FileError& error) {
        log(u"  [ERROR] Failed to disable launch item %1: %2"_s.arg(plist.fileName, error.message()));
        co_return false;
    }
    log(u"  [APPLIED] Disabled launch item: %1 (%2)"_s.arg(plist.fileName, plist.folder.path));
    co_return true;
}

QCoro::Task<bool> LaunchItems::disableSystemPlists(QList<SystemPlist> plists) {
    if (plists.isEmpty()) {
        co_return true;
    }
    log(u"  [ACTION] Requesting Admin rights to disable %1 system launch item(s)..."_s.arg(plists.size()));
    QStringList commands;
    QList<LaunchPlist> queued;
    for (const auto& [plist, isOverridden] : plists) {
        queued.append(plist);
        const LaunchdService service = plist.service();
        const QStringList outOfLaunchd = isOverridden
                                             ? m_launchd.rootsSwitchOffCommands(service, Launchd::End::Now)
                                             : QStringList(m_launchd.rootsStopCommand(service.domain, plist.path()));
        commands.append(keepLaunchPlistCommand(plist.path(), plist.folder));
        commands.append(requireRealBackupFolderCommand(plist.folder));
        commands.append(disableLaunchPlistCommand(plist.path(), plist.folder, outOfLaunchd));
    }
    co_await notePutAside(queued);
    m_queued += queued;
    const CommandResult result = co_await m_batch.run(commands.join(u" && "_s), kSystemChangesPrompt);
    if (m_batch.isOpen()) {
        for (const LaunchPlist& plist : queued) {
            log(u"  [ACTION] Queued disable for launch item: "_s + nameAndPlace(plist));
        }
        co_return true;
    }
    m_batch.open().forgetMoves(); // nothing waits: the commands have run
    m_launchd.drop();
    if (result.status != 0) {
        log(u"  [ERROR] Failed to disable system launch items: "_s + result.standardError);
    }
    co_await settleDisabled(result.status != 0);
    co_return result.status == 0;
}

QCoro::Task<void> LaunchItems::settleDisabled(bool hasFailed) {
    const QList<LaunchPlist> queued = std::exchange(m_queued, {});
    for (const LaunchPlist& plist : queued) {
        bool isOff = host().files.status(plist.path()).kind == FileStatus::Kind::Missing;
        if (!isOff && !plist.label.isEmpty()) {
            const LaunchdOverrides overrides = co_await m_launchd.overrides();
            isOff = isOn(plist, overrides) == false;
        }
        if (isOff) {
            log(u"  [APPLIED] Disabled launch item: "_s + nameAndPlace(plist));
        } else if (!hasFailed) {
            log(u"  [ERROR] Failed to disable launch item: "_s + nameAndPlace(plist));
        }
    }
}

/// What is put aside without being noted is taken for an earlier version's. One that is noted as loaded and still lies in its
/// place was stopped by a run that ended before the move: that it isn't loaded now is the program's own doing.
QCoro::Task<void> LaunchItems::notePutAside(QList<LaunchPlist> plists) {
    PutAsideRecord::Jobs jobs = putAside();
    for (const LaunchPlist& plist : plists) {
        if (jobs.value(plist.path(), JobBefore::Unrecorded) == JobBefore::Loaded) {
            continue;
        }
        std::optional<bool> isLoaded;
        if (!plist.label.isEmpty()) {
            isLoaded = co_await m_launchd.isLoaded(plist.service());
        }
        const JobBefore known = isLoaded.value_or(false) ? JobBefore::Loaded : JobBefore::NotLoaded;
        jobs.insert(plist.path(), isLoaded ? known : JobBefore::Unknown);
    }
    try {
        PutAsideRecord(host().files, host().machine).write(jobs);
    } catch (const FileError& error) {
        log(u"  [ERROR] Could not note what is put aside: "_s + error.message());
    }
}

PutAsideRecord::Jobs LaunchItems::putAside() const {
    return PutAsideRecord(host().files, host().machine).read();
}

} // namespace quorvane
