#include "startup/background/BackgroundItems.h"

#include "core/AdminBatch.h"
#include "core/AdminPrompts.h"
#include "core/AdminScript.h"
#include "core/Paths.h"
#include "platform/FileManager.h"
#include "platform/Host.h"
#include "platform/Machine.h"
#include "platform/TreeRemoval.h"
#include "startup/background/BackgroundDisableTarget.h"
#include "startup/launchd/BackupFolders.h"
#include "startup/launchd/LaunchFolders.h"

#include <QCoroTask>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

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
    co_return co_await quarantineAsRoot(forRoot) && succeeded;
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
    const QString home = host().machine.homeFolder();
    const QString destination = quarantineDestination(target);
    if (m_batch.open().moves(source, host().files)) {
        co_return QuarantineStep::Done;
    }
    if (!requireRealFolders(environment(), {backupFolder(home), quarantineFolder(home),
                                            quarantineFolder(home) + u'/' + target.label})) {
        co_return QuarantineStep::Failed;
    }
    if (rights == QuarantineRights::Queued) {
        m_batch.open().rememberMove(source);
        m_batch.open().queue(quarantineCommand(source, destination));
        log(u"  [ACTION] Queued quarantine for bundled startup resource: "_s + lastPathComponent(source));
        co_return QuarantineStep::Done;
    }
    if (host().files.isWritable(source)) {
        const bool isMoved = co_await quarantineAsUser(source, destination);
        co_return isMoved ? QuarantineStep::Done : QuarantineStep::Failed;
    }
    if (rights == QuarantineRights::Privileged) {
        co_return QuarantineStep::NeedsRoot;
    }
    log(u"  [WARNING] Could not quarantine bundled startup resource without admin rights: "_s +
        lastPathComponent(source));
    co_return QuarantineStep::Failed;
}

QCoro::Task<bool> BackgroundItems::quarantineAsUser(QString source, QString destination) {
    try {
        if (host().files.status(destination).kind != FileStatus::Kind::Missing) {
            removeTree(host().files, destination);
        }
        const QStringList copy{u"/usr/bin/ditto"_s, source, destination};
        const CommandResult result = co_await runCommand(copy, OutputCapture::Capture);
        if (result.status != 0) {
            logFailedQuarantine(source, result.standardError.trimmed());
            co_return false;
        }
        removeHelper(source);
    } catch (const FileError& error) {
        logFailedQuarantine(source, error.message());
        co_return false;
    }
    log(u"  [APPLIED] Quarantined bundled startup resource: "_s + lastPathComponent(source));
    co_return true;
}

/// In one step out of the reach of whatever starts it: a removal that stops half-way must not leave a broken helper, which
/// the next run would take for the whole one. Throws FileError when it stays in its place.
void BackgroundItems::removeHelper(const QString& source) {
    const QString aside = source + u".removed"_s;
    host().files.move(source, aside);
    try {
        removeTree(host().files, aside);
    } catch (const FileError& error) {
        log(u"  [ERROR] Could not remove "_s + error.message());
    }
}

/// All of them in one line under one prompt. Each has succeeded when it is gone, whatever became of the others.
QCoro::Task<bool> BackgroundItems::quarantineAsRoot(QList<BackgroundDisableTarget> targets) {
    if (targets.isEmpty()) {
        co_return true;
    }
    QStringList commands;
    for (const BackgroundDisableTarget& target : targets) {
        commands.append(quarantineCommand(sourceOf(target), quarantineDestination(target)));
    }
    const CommandResult result = co_await executeAdminScript(joinedAdminCommands(commands), kSystemChangesPrompt);
    bool succeeded = true;
    for (const BackgroundDisableTarget& target : targets) {
        const QString source = sourceOf(target);
        if (host().files.status(source).kind == FileStatus::Kind::Missing) {
            log(u"  [APPLIED] Quarantined bundled startup resource: "_s + lastPathComponent(source));
        } else {
            logFailedQuarantine(source, result.status != 0 ? result.standardError : u"it is still in its place"_s);
            succeeded = false;
        }
    }
    co_return succeeded;
}

void BackgroundItems::logFailedQuarantine(const QString& source, const QString& error) {
    log(u"  [ERROR] Failed to quarantine bundled startup resource: %1: %2"_s.arg(lastPathComponent(source), error));
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
