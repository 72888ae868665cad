#include "actions/BackupActions.h"

#include "actions/ActionStage.h"
#include "actions/ActionTexts.h"
#include "actions/SavedProfiles.h"
#include "profiles/ProfileCloudManager.h"

#include <QCoroFuture>
#include <QCoroTask>
#include <QScopeGuard>

#include <algorithm>
#include <optional>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kSyncing = u"Syncing profiles with iCloud…"_s;
const QString kRestoring = u"Restoring profiles from iCloud…"_s;

} // namespace

BackupActions::BackupActions(ActionStage& stage, ProfileCloudManager& backups, ProfileManager& store,
                             SavedProfiles& saved, const Machine& machine)
    : m_stage(stage)
    , m_backups(backups)
    , m_store(store)
    , m_saved(saved)
    , m_machine(machine) {}

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
        result = co_await m_backups.backupAllProfiles(m_store);
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
    co_await m_backups.refreshBackups();
    action.outcome.succeeded = true;
}

// ---- Restore

QCoro::Task<ActionOutcome> BackupActions::restore(const QString& id, ActionListener& listener) {
    return m_stage.run(listener,
                       [=, this](Action& action) { return tellingOfFailure(action, carryOutRestore(action, id)); });
}

QCoro::Task<void> BackupActions::carryOutRestore(Action& action, QString id) {
    if (!co_await action.passesGate(u"restore profiles"_s)) {
        co_return;
    }
    const ProfileCloudBackupInfo info = co_await findBackup(action, id);
    const std::optional<Alert> question = co_await questionBeforeRestore(action, info);
    if (!co_await action.isAgreedTo(question)) {
        co_return;
    }
    ProfileImportResult result;
    {
        const auto tellChanged = qScopeGuard([this] { m_saved.tellChanged(); }); // a failed one may have saved some
        const Turnstile::Hold busy = action.carryingOut(kRestoring, {.match = true});
        result = co_await m_backups.restore(info, m_store);
    }
    action.outcome.succeeded = true;
    co_await action.tell(profilesRestoredAlert(result));
}

/// Throws ProfileCloudError.
QCoro::Task<ProfileCloudBackupInfo> BackupActions::findBackup(Action& action, QString id) {
    std::optional<ProfileCloudBackupInfo> info = listed(id);
    if (!info) {
        const Turnstile::Hold busy = action.waiting(kRestoring);
        co_await m_backups.refreshBackups();
        info = listed(id);
    }
    if (!info) {
        const bool isAvailable = m_backups.isICloudAvailable();
        throw ProfileCloudError(isAvailable ? ProfileCloudError::Code::backupNotFound
                                            : ProfileCloudError::Code::iCloudUnavailable);
    }
    co_return *std::move(info);
}

std::optional<ProfileCloudBackupInfo> BackupActions::listed(const QString& id) const {
    const QList<ProfileCloudBackupInfo>& backups = m_backups.backups();
    const auto found = std::find_if(backups.cbegin(), backups.cend(),
                                    [&id](const ProfileCloudBackupInfo& info) { return info.id == id; });
    return found == backups.cend() ? std::nullopt : std::optional(*found);
}

/// None where no saved profile would become another, or nobody is there to be asked: the backup isn't read for that then.
QCoro::Task<std::optional<Alert>> BackupActions::questionBeforeRestore(Action& action, ProfileCloudBackupInfo info) {
    std::optional<Alert> question;
    if (action.asks()) {
        const Turnstile::Hold busy = action.waiting(kRestoring);
        const ProfileCloudBackup backup = co_await m_backups.contents(info);
        const ProfileListing listing = co_await m_saved.list();
        const QStringList names = namesReplacedBy(backup, listing.profiles);
        if (!names.isEmpty()) {
            question = restoreQuestion(names, info.title(m_machine));
        }
    }
    co_return question;
}

QStringList namesReplacedBy(const ProfileCloudBackup& backup, const QList<UnifiedProfile>& saved) {
    QStringList names;
    for (const UnifiedProfile& profile : saved) {
        const auto other = std::find(backup.profiles.cbegin(), backup.profiles.cend(), profile);
        if (other != backup.profiles.cend() && !other->hasSameContent(profile)) {
            names.append(profile.name);
        }
    }
    return names;
}

} // namespace quorvane
