#pragma once

#include "actions/ActionListener.h"
#include "actions/ActionOutcome.h"
#include "profiles/ProfileCloudBackup.h"

#include <optional>

namespace quorvane {

class Action;
class ActionStage;
class Machine;
class ProfileCloudManager;
class ProfileManager;
class SavedProfiles;

/// What a user does with the profiles in iCloud. A failure is told by an alert.
class BackupActions {
public:
    BackupActions(ActionStage& stage, ProfileCloudManager& backups, ProfileManager& store, SavedProfiles& saved,
                  const Machine& machine);

    /// "Back Up Profiles to iCloud".
    QCoro::Task<ActionOutcome> backUp(ActionListener& listener);
    /// Lists the backups anew.
    QCoro::Task<ActionOutcome> refresh(ActionListener& listener);
    /// Merges a backup's profiles into the saved ones.
    /// @param id  as the list of backups has it; they are listed anew where it isn't in there
    QCoro::Task<ActionOutcome> restore(const QString& id, ActionListener& listener);

private:
    QCoro::Task<void> tellingOfFailure(Action& action, QCoro::Task<void> task);
    QCoro::Task<void> carryOutBackUp(Action& action);
    QCoro::Task<void> carryOutRefresh(Action& action);
    QCoro::Task<void> carryOutRestore(Action& action, QString id);
    QCoro::Task<ProfileCloudBackupInfo> findBackup(Action& action, QString id);
    std::optional<ProfileCloudBackupInfo> listed(const QString& id) const;
    QCoro::Task<std::optional<Alert>> questionBeforeRestore(Action& action, ProfileCloudBackupInfo info);

    ActionStage& m_stage;
    ProfileCloudManager& m_backups;
    ProfileManager& m_store;
    SavedProfiles& m_saved;
    const Machine& m_machine;
};

/// The names of the saved profiles that a backup's would replace by others.
QStringList namesReplacedBy(const ProfileCloudBackup& backup, const QList<UnifiedProfile>& saved);

} // namespace quorvane
