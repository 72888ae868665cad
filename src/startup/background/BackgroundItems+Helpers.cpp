// The helpers inside applications. An override keeps them off, so they stay: an application that something is taken out of counts as
// damaged, and macOS keeps applications from being changed by others. One is taken out only where launchd shows it on all the same
// and its application is broken anyway.

#include "startup/background/BackgroundItems.h"

#include "core/Paths.h"
#include "platform/Bundles.h"
#include "platform/FileManager.h"
#include "platform/FolderNames.h"
#include "platform/Host.h"
#include "platform/Machine.h"
#include "startup/background/BackgroundDisableTarget.h"
#include "startup/background/BackgroundState.h"
#include "startup/background/QuarantineLeftovers.h"
#include "startup/launchd/BackupFolders.h"
#include "startup/launchd/LaunchFolders.h"

#include <QCoroTask>

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int kSealIsBroken = 1; // codesign(1); anything else says nothing of the seal

QString sourceOf(const BackgroundDisableTarget& target) {
    return target.bundledResourceURL->toLocalFile();
}

/// False as well when nobody can tell.
bool isOnAllTheSame(const BackgroundDisableTarget& target, const QList<LaunchdService>& tried,
                    const LaunchdReadings& launchd) {
    const std::optional<LaunchdService> service =
        target.item ? serviceOf(*target.item, launchd) : LaunchdService{LaunchdDomain::User, target.label};
    if (!service || !tried.contains(*service)) {
        return false;
    }
    const OverrideState state = launchd.overrides().stateOf(*service);
    return state == OverrideState::Enabled || state == OverrideState::NotListed;
}

} // namespace

/// @param tried  the services whose override was tried
QCoro::Task<void> BackgroundItems::settleHelpers(QList<BackgroundDisableTarget> targets, QList<LaunchdService> tried,
                                                 LaunchdReadings launchd) {
    for (const BackgroundDisableTarget& target : targets) {
        if (!target.bundledResourceURL || host().files.status(sourceOf(target)).kind == FileStatus::Kind::Missing) {
            continue;
        }
        bool goes = isOnAllTheSame(target, tried, launchd) && !isProtectedTarget(target) &&
                    isWithinReachOfUser(target, host().files);
        if (goes) {
            goes = co_await hasBrokenSeal(target.parentAppURL.toLocalFile());
        }
        if (goes) {
            quarantine(target);
        } else {
            log(u"  [INFO] Left in its application: "_s + (target.item ? target.item->name : target.label));
        }
    }
    tellOfAppManagement();
}

QCoro::Task<bool> BackgroundItems::hasBrokenSeal(QString application) {
    const QStringList verify{u"/usr/bin/codesign"_s, u"--verify"_s, application};
    const CommandResult result = co_await runCommand(verify, OutputCapture::Capture);
    co_return result.isAnswered&& result.status == kSealIsBroken;
}

/// By one step: a refusal leaves everything as it was.
void BackgroundItems::quarantine(const BackgroundDisableTarget& target) {
    const QString source = sourceOf(target);
    if (!requireQuarantine(target) || !recordTaken(target)) {
        return;
    }
    try {
        makeRoom(quarantineDestination(target));
        host().files.move(source, quarantineDestination(target));
        log(u"  [APPLIED] Quarantined bundled startup resource: "_s + lastPathComponent(source));
    } catch (const FileError& error) {
        logFailedQuarantine(source, error.message());
        m_wasKeptOut = m_wasKeptOut || isKeptFromOthers(error.message());
    }
}

/// Where it stood and in which version of its application: without that nobody could put it back.
/// @return false, with a line in the log, when it can't be saved
bool BackgroundItems::recordTaken(const BackgroundDisableTarget& target) {
    std::optional<BackgroundChanges> changes = changesToAddTo();
    if (!changes) {
        return false;
    }
    const QString application = target.parentAppURL.toLocalFile();
    const QVariantMap info = host().bundles.infoDictionary(application).value_or(QVariantMap());
    const TakenHelper helper{target.label, sourceOf(target), application, applicationVersion(info)};
    changes->helpers.removeIf([&helper](const TakenHelper& other) {
        return other.label == helper.label && lastPathComponent(other.place) == lastPathComponent(helper.place);
    });
    changes->helpers.append(helper);
    return saveChanges(*changes);
}

QString BackgroundItems::quarantineDestination(const BackgroundDisableTarget& target) const {
    return quarantineFolder(host().machine.homeFolder()) + u'/' + target.label + u'/' +
           lastPathComponent(sourceOf(target));
}

/// False, with a line in the log, when a folder on the way to the target's place in the quarantine is no real one.
bool BackgroundItems::requireQuarantine(const BackgroundDisableTarget& target) {
    const QString home = host().machine.homeFolder();
    const QStringList folders{backupFolder(home), quarantineFolder(home), quarantineFolder(home) + u'/' + target.label};
    return requireRealFolders(environment(), folders);
}

/// A copy that is there from another time gets a name of its own. Throws FileError.
void BackgroundItems::makeRoom(const QString& destination) {
    if (host().files.status(destination).kind != FileStatus::Kind::Missing) {
        host().files.move(destination, freePath(host().files, destination));
    }
}

void BackgroundItems::logFailedQuarantine(const QString& source, const QString& error) {
    log(u"  [ERROR] Failed to quarantine bundled startup resource: %1: %2"_s.arg(lastPathComponent(source), error));
}

/// Once for all that was refused. Neither the user's own rights nor root's count where the system keeps applications from being
/// changed by others.
void BackgroundItems::tellOfAppManagement() {
    if (std::exchange(m_wasKeptOut, false)) {
        log(u"  [INFO] Allow Quorvane in System Settings → Privacy & Security → App Management to change other applications."_s);
    }
}

/// What an earlier run has left in the applications of the records.
void BackgroundItems::settleLeftovers(const QList<BackgroundTaskItem>& records) {
    if (!m_list) {
        return;
    }
    for (const QUrl& application : applicationsOf(records, *m_list)) {
        const SettledLeftovers settled = settleQuarantineLeftovers(
            application.toLocalFile(), quarantineFolder(host().machine.homeFolder()), host().files);
        for (const QString& name : settled.removed) {
            log(u"  [INFO] Removed what an interrupted run had left: "_s + name);
        }
        for (const QString& name : settled.putBack) {
            log(u"  [INFO] Put back what an interrupted run had left: "_s + name);
        }
        m_wasKeptOut = m_wasKeptOut || settled.wasRefused;
    }
    tellOfAppManagement();
}

} // namespace quorvane
