#include "actions/BackupActions.h"

#include "actions/ActionStage.h"
#include "actions/ActionTexts.h"
#include "actions/ProfileChanges.h"
#include "actions/RowChoice.h"
#include "actions/SavedProfiles.h"
#include "actions/SettingsTexts.h"
#include "actions/Tasks.h"
#include "core/FlowEnvironment.h"
#include "profiles/ProfileCloudManager.h"

#include <QCoroFuture>
#include <QCoroTask>
#include <QScopeGuard>

#include <algorithm>
#include <exception>
#include <optional>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kSyncing = u"Syncing profiles with iCloud…"_s;

} // namespace

/// What fails is a line of the log, and no more than that.
QCoro::Task<void> BackupActions::logged(QCoro::Task<void> task) {
    try {
        co_await std::move(task);
    } catch (const ProfileCloudError& error) {
        m_parts.environment.log(u"  [INFO] "_s + error.message());
    }
}

QCoro::Task<void> BackupActions::tellingOfFailure(Action& action, QCoro::Task<void> task) {
    std::optional<QString> failure;
    try {
        co_await std::move(task);
    } catch (const ProfileCloudError& error) {
        failure = error.message();
    }
    if (failure) {
        co_await action.tell(errorAlert(*failure));
    }
}

// ---- Back up

QCoro::Task<ActionOutcome> BackupActions::backUp(ActionListener& listener) {
    return m_stage.run(listener, [this](Action& action) { return tellingOfFailure(action, carryOutBackUp(action)); });
}

QCoro::Task<void> BackupActions::carryOutBackUp(Action& action) {
    if (!co_await action.passesGate(u"back up profiles"_s)) {
        co_return;
    }
    ProfileCloudBackupResult result;
    {
        const Turnstile::Hold busy = action.carryingOut(kSyncing, {.backups = true});
        result = co_await m_parts.backups.backupAllProfiles(m_parts.store);
    }
    action.outcome.succeeded = true;
    co_await action.tell(backupCompleteAlert(result));
}

// ---- List

QCoro::Task<ActionOutcome> BackupActions::refresh(ActionListener& listener) {
    return m_stage.run(listener, [this](Action& action) { return tellingOfFailure(action, carryOutRefresh(action)); });
}

QCoro::Task<void> BackupActions::carryOutRefresh(Action& action) {
    const Turnstile::Hold busy = action.carryingOut(kSyncing, {.backups = true});
    co_await m_parts.backups.refreshBackups();
    action.outcome.succeeded = true;
}

/// Each by itself: the list is of use without the copies, and they without the list.
QCoro::Task<void> BackupActions::lookAround() {
    if (std::exchange(m_isLookingAround, true)) {
        co_return;
    }
    const auto ends = qScopeGuard([this] { m_isLookingAround = false; });
    co_await logged(m_parts.backups.refreshBackups());
    co_await logged(m_parts.backups.ensureDefaultBackups(m_parts.store));
}

// ---- Restore

QCoro::Task<ActionOutcome> BackupActions::restore(const QString& id, ActionListener& listener) {
    return m_stage.run(listener,
                       [=, this](Action& action) { return tellingOfFailure(action, carryOutRestore(action, id)); });
}

QCoro::Task<void> BackupActions::carryOutRestore(Action& action, QString id) {
    const std::optional<ProfileImportResult> result = co_await restored(action, id, [](bool) {});
    if (result) {
        action.outcome.succeeded = true;
        co_await action.tell(profilesRestoredAlert(*result));
    }
}

QCoro::Task<ActionOutcome> BackupActions::chooseAndRestore(ActionListener& listener) {
    return m_stage.run(listener, [this](Action& action) { return carryOutChoice(action); });
}

/// The sheet stays until a backup was restored, or its user closes it.
QCoro::Task<void> BackupActions::carryOutChoice(Action& action) {
    const auto choice = std::make_shared<RowChoice>(backupChoiceTexts());
    const auto goes = qScopeGuard([choice] { choice->end(); });
    m_parts.tasks.start(load(choice));
    action.show(choice);
    std::optional<ProfileImportResult> result;
    std::optional<QString> id = co_await choice->answer();
    while (id && !result) {
        result = co_await restoredFromSheet(action, choice, *id);
        if (!result) {
            id = co_await choice->answer();
        }
    }
    choice->end();
    if (result) {
        action.outcome.succeeded = true;
        co_await action.tell(profilesRestoredAlert(*result));
    }
}

/// What is known is there at once, and what comes later joins it.
QCoro::Task<void> BackupActions::load(std::shared_ptr<RowChoice> choice) {
    QObject::connect(&m_parts.backups, &ProfileCloudManager::backupsChanged, choice.get(),
                     [this, shown = choice.get()] { shown->setRows(rows()); });
    choice->setRows(rows());
    choice->beginLoading();
    std::optional<QString> failure;
    try {
        co_await m_parts.backups.refreshBackups();
        failure = m_parts.backups.listFailure();
    } catch (const ProfileCloudError& error) {
        failure = error.message();
    }
    choice->setRows(rows());
    choice->endLoading(choice->rows().isEmpty() ? failure.value_or(QString()) : QString());
}

/// None where it failed, or the user thought better of it; the sheet says so.
QCoro::Task<std::optional<ProfileImportResult>>
BackupActions::restoredFromSheet(Action& action, std::shared_ptr<RowChoice> choice, QString id) {
    std::optional<ProfileImportResult> result;
    QString failure;
    try {
        const std::function<void(bool)> showIt = [choice](bool isUnderWay) {
            if (isUnderWay) {
                choice->beginCarryingOut();
            } else {
                choice->endCarryingOut({});
            }
        };
        result = co_await restored(action, id, showIt);
    } catch (const ProfileCloudError& error) {
        failure = error.message();
    }
    choice->endCarryingOut(failure);
    co_return result;
}

/// None where the user didn't want it. Throws ProfileCloudError.
/// @param showUnderWay  called with true when it begins or goes on, and with false when the user is asked
QCoro::Task<std::optional<ProfileImportResult>> BackupActions::restored(Action& action, QString id,
                                                                        std::function<void(bool)> showUnderWay) {
    if (!co_await action.passesGate(u"restore profiles"_s)) {
        co_return std::nullopt;
    }
    showUnderWay(true); // what it would replace may have to come from iCloud first
    const ProfileCloudBackupInfo info = co_await findBackup(action, id);
    const std::optional<Alert> question = co_await questionBeforeRestore(action, info);
    if (question) {
        showUnderWay(false);
    }
    if (!co_await action.isAgreedTo(question)) {
        co_return std::nullopt;
    }
    showUnderWay(true);
    const ProfileListing before = co_await m_parts.saved.list();
    ProfileImportResult result;
    std::exception_ptr failure;
    try {
        const Turnstile::Hold busy = action.carryingOut(kRestoringProfiles, {.match = true});
        result = co_await m_parts.backups.restore(info, m_parts.store);
    } catch (const ProfileCloudError&) {
        failure = std::current_exception();
    }
    co_await m_parts.changes.followArrival(before.profiles); // a failed one may have saved some
    if (failure != nullptr) {
        std::rethrow_exception(failure);
    }
    co_return result;
}

QList<ChoosableRow> BackupActions::rows() const {
    QList<ChoosableRow> rows;
    for (const ProfileCloudBackupInfo& info : m_parts.backups.backups()) {
        rows.append({info.id, backupRow(info, m_parts.machine)});
    }
    return rows;
}

/// Throws ProfileCloudError.
QCoro::Task<ProfileCloudBackupInfo> BackupActions::findBackup(Action& action, QString id) {
    std::optional<ProfileCloudBackupInfo> info = listed(id);
    if (!info) {
        const Turnstile::Hold busy = action.waiting(kRestoringProfiles);
        co_await m_parts.backups.refreshBackups();
        info = listed(id);
    }
    if (!info) {
        const bool isAvailable = m_parts.backups.isICloudAvailable();
        throw ProfileCloudError(isAvailable ? ProfileCloudError::Code::backupNotFound
                                            : ProfileCloudError::Code::iCloudUnavailable);
    }
    co_return *std::move(info);
}

std::optional<ProfileCloudBackupInfo> BackupActions::listed(const QString& id) const {
    const QList<ProfileCloudBackupInfo>& backups = m_parts.backups.backups();
    const auto found = std::find_if(backups.cbegin(), backups.cend(),
                                    [&id](const ProfileCloudBackupInfo& info) { return info.id == id; });
    return found == backups.cend() ? std::nullopt : std::optional(*found);
}

/// None where no saved profile would become another, or nobody is there to be asked: the backup isn't read for that then.
QCoro::Task<std::optional<Alert>> BackupActions::questionBeforeRestore(Action& action, ProfileCloudBackupInfo info) {
    std::optional<Alert> question;
    if (action.asks()) {
        const Turnstile::Hold busy = action.waiting(kRestoringProfiles);
        const ProfileCloudBackup backup = co_await m_parts.backups.contents(info);
        question = co_await m_parts.changes.questionBeforeArrival(backup.profiles, info.title(m_parts.machine));
    }
    co_return question;
}

} // namespace quorvane
