#include "startup/background/BackgroundItems.h"

#include "core/AdminBatch.h"
#include "core/AdminPrompts.h"
#include "core/AdminScript.h"
#include "core/Paths.h"
#include "platform/FileManager.h"
#include "platform/FolderNames.h"
#include "platform/Host.h"
#include "platform/Machine.h"
#include "platform/TreeRemoval.h"
#include "startup/background/BackgroundDisableTarget.h"
#include "startup/background/QuarantineLeftovers.h"
#include "startup/launchd/BackupFolders.h"
#include "startup/launchd/LaunchFolders.h"

#include <QCoroTask>

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kStillInItsPlace = u"it is still in its place"_s;
const QString kKeptOut =
    u"Operation not permitted"_s; // EPERM in the words of the system's tools, which speak English only

QString sourceOf(const BackgroundDisableTarget& target) {
    return target.bundledResourceURL->toLocalFile();
}

} // namespace

QString BackgroundItems::quarantineDestination(const BackgroundDisableTarget& target) const {
    return quarantineFolder(host().machine.homeFolder()) + u'/' + target.label + u'/' +
           lastPathComponent(sourceOf(target));
}

/// Leaves out a helper whose place in the quarantine another one takes in the same run: it would replace its only copy.
QList<BackgroundDisableTarget> BackgroundItems::withoutSharedPlaces(const QList<BackgroundDisableTarget>& targets) {
    QList<BackgroundDisableTarget> kept;
    QSet<QString> taken;
    for (const BackgroundDisableTarget& target : targets) {
        const QString place = target.bundledResourceURL ? quarantineDestination(target).toCaseFolded() : QString();
        if (!place.isEmpty() && taken.contains(place)) {
            logFailedQuarantine(sourceOf(target), u"another helper of this name has just been put aside"_s);
            continue;
        }
        taken.insert(place);
        kept.append(target);
    }
    return kept;
}

QCoro::Task<bool> BackgroundItems::quarantine(QList<BackgroundDisableTarget> targets, QuarantineRights rights) {
    const QList<BackgroundDisableTarget> placed = withoutSharedPlaces(targets);
    bool succeeded = placed.size() == targets.size();
    QList<BackgroundDisableTarget> forRoot;
    for (const BackgroundDisableTarget& target : placed) {
        switch (co_await quarantineHelper(target, rights)) {
        case QuarantineStep::Done:
            break;
        case QuarantineStep::Failed:
            succeeded = false;
            break;
        case QuarantineStep::NeedsRoot:
            forRoot.append(target);
        }
    }
    succeeded = co_await quarantineAsRoot(forRoot) && succeeded;
    tellOfAppManagement();
    co_return succeeded;
}

QCoro::Task<BackgroundItems::QuarantineStep> BackgroundItems::quarantineHelper(BackgroundDisableTarget target,
                                                                               QuarantineRights rights) {
    if (!target.bundledResourceURL || host().files.status(sourceOf(target)).kind == FileStatus::Kind::Missing) {
        co_return QuarantineStep::Done;
    }
    const QString source = sourceOf(target);
    if (isProtectedTarget(target)) {
        log(u"  [SKIPPED] Protected bundled startup resource: "_s + lastPathComponent(source));
        co_return QuarantineStep::Done;
    }
    if (m_batch.open().moves(source, host().files)) {
        co_return QuarantineStep::Done;
    }
    if (!requireQuarantine(target)) {
        co_return QuarantineStep::Failed;
    }
    if (rights == QuarantineRights::Queued) {
        co_return queueQuarantine(target) ? QuarantineStep::Done : QuarantineStep::Failed;
    }
    if (isWithinReachOfUser(target, host().files)) {
        const bool isMoved = co_await quarantineAsUser(target);
        co_return isMoved ? QuarantineStep::Done : QuarantineStep::Failed;
    }
    if (rights == QuarantineRights::Privileged) {
        co_return QuarantineStep::NeedsRoot;
    }
    log(u"  [WARNING] Could not quarantine bundled startup resource without admin rights: "_s +
        lastPathComponent(source));
    co_return QuarantineStep::Failed;
}

/// False, with a line in the log, when a folder on the way to the target's place in the quarantine is no real one.
bool BackgroundItems::requireQuarantine(const BackgroundDisableTarget& target) {
    const QString home = host().machine.homeFolder();
    const QStringList folders{backupFolder(home), quarantineFolder(home), quarantineFolder(home) + u'/' + target.label};
    return requireRealFolders(environment(), folders);
}

/// What the user can write waits for the batch, too, and is then moved as the user: root would copy what they have put there
/// while the prompt stood open.
bool BackgroundItems::queueQuarantine(const BackgroundDisableTarget& target) {
    if (!isWithinReachOfUser(target, host().files)) {
        const std::optional<QString> command = rootsCommand(target);
        if (!command) {
            return false;
        }
        m_batch.open().queue(*command);
    }
    m_batch.open().rememberMove(sourceOf(target));
    m_queuedHelpers.append(target);
    log(u"  [ACTION] Queued quarantine for bundled startup resource: "_s + lastPathComponent(sourceOf(target)));
    return true;
}

/// Called when the batch has run.
QCoro::Task<void> BackgroundItems::followQueuedQuarantine() {
    const QList<BackgroundDisableTarget> queued = std::exchange(m_queuedHelpers, {});
    for (const BackgroundDisableTarget& target : queued) {
        if (host().files.status(sourceOf(target)).kind == FileStatus::Kind::Missing) {
            continue;
        }
        if (!isWithinReachOfUser(target, host().files)) {
            logFailedQuarantine(sourceOf(target), kStillInItsPlace);
        } else if (requireQuarantine(target)) {
            co_await quarantineAsUser(target);
        }
    }
    tellOfAppManagement();
}

/// A copy that is there from another time gets a name of its own. Throws FileError.
void BackgroundItems::makeRoom(const QString& destination) {
    if (host().files.status(destination).kind != FileStatus::Kind::Missing) {
        host().files.move(destination, freePath(host().files, destination));
    }
}

/// None, with a line in the log, when nothing can be put aside there.
std::optional<QString> BackgroundItems::rootsCommand(const BackgroundDisableTarget& target) {
    const QString source = sourceOf(target);
    try {
        const QString realFolder = host().files.resolved(parentFolder(source));
        makeRoom(quarantineDestination(target));
        return quarantineCommand(realFolder + u'/' + lastPathComponent(source), quarantineDestination(target));
    } catch (const FileError& error) {
        logFailedQuarantine(source, error.message());
        return std::nullopt;
    }
}

QCoro::Task<bool> BackgroundItems::quarantineAsUser(BackgroundDisableTarget target) {
    const QString source = sourceOf(target);
    const QString destination = quarantineDestination(target);
    try {
        makeRoom(destination);
        const QStringList copy{u"/usr/bin/ditto"_s, source, destination};
        const CommandResult result = co_await runCommand(copy, OutputCapture::Capture);
        if (result.status != 0) {
            logFailedQuarantine(source, result.standardError.trimmed());
            if (host().files.status(destination).kind != FileStatus::Kind::Missing) {
                removeTree(host().files, destination); // a part would pass for the copy
            }
            co_return false;
        }
        co_return removeHelper(source);
    } catch (const FileError& error) {
        logFailedQuarantine(source, error.message());
        co_return false;
    }
}

/// In one step out of the reach of whatever starts it: a removal that stops half-way must not leave a broken helper, which
/// the next run would take for the whole one. False when it stays in its place.
bool BackgroundItems::removeHelper(const QString& source) {
    const QString aside = freePath(host().files, source + kLeftoverEnding);
    try {
        host().files.move(source, aside);
    } catch (const FileError& error) {
        logFailedQuarantine(source, error.message());
        m_wasKeptOut = m_wasKeptOut || isKeptFromOthers(error.message());
        return false;
    }
    try {
        removeTree(host().files, aside);
    } catch (const FileError& error) {
        log(u"  [ERROR] Could not remove "_s + error.message());
    }
    log(u"  [APPLIED] Quarantined bundled startup resource: "_s + lastPathComponent(source));
    return true;
}

/// All of them in one line under one prompt. Each has succeeded when it is gone, whatever became of the others.
QCoro::Task<bool> BackgroundItems::quarantineAsRoot(QList<BackgroundDisableTarget> targets) {
    if (targets.isEmpty()) {
        co_return true;
    }
    QStringList commands;
    QStringList sources;
    for (const BackgroundDisableTarget& target : targets) {
        if (const std::optional<QString> command = rootsCommand(target)) {
            commands.append(*command);
            sources.append(sourceOf(target));
        }
    }
    if (commands.isEmpty()) {
        co_return false;
    }
    const CommandResult result = co_await executeAdminScript(joinedAdminCommands(commands), kSystemChangesPrompt);
    bool succeeded = sources.size() == targets.size();
    for (const QString& source : sources) {
        if (host().files.status(source).kind == FileStatus::Kind::Missing) {
            log(u"  [APPLIED] Quarantined bundled startup resource: "_s + lastPathComponent(source));
        } else {
            logFailedQuarantine(source, result.status != 0 ? result.standardError : kStillInItsPlace);
            m_wasKeptOut = m_wasKeptOut || isKeptFromOthers(result.standardError);
            succeeded = false;
        }
    }
    co_return succeeded;
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

/// An item that is still on, and whose helper is still in its application, gets one more try, which never prompts.
QCoro::Task<void> BackgroundItems::retryQuarantineOfActiveTargets(QList<BackgroundDisableTarget> targets) {
    for (const BackgroundDisableTarget& target : targets) {
        const bool isStillThere = target.bundledResourceURL && !m_batch.open().moves(sourceOf(target), host().files) &&
                                  host().files.status(sourceOf(target)).kind != FileStatus::Kind::Missing;
        if (isStillThere && m_list && m_list->isActive(target.label)) {
            log(u"  [WARNING] BTM item still enabled with bundled startup resources present: "_s +
                (target.item ? target.item->name : target.label));
            co_await quarantineHelper(target, QuarantineRights::User);
        }
    }
}

} // namespace quorvane
