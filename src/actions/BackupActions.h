#pragma once

#include "actions/ActionListener.h"
#include "actions/ActionOutcome.h"
#include "profiles/ProfileCloudBackup.h"

#include <functional>
#include <memory>
#include <optional>

namespace quorvane {

class Action;
class ActionStage;
class RowChoice;
class FlowEnvironment;
class Machine;
class ProfileChanges;
class ProfileCloudManager;
class ProfileManager;
class SavedProfiles;
class Tasks;
struct ChoosableRow;

/// What a user does with the profiles in iCloud. A failure is told by an alert.
class BackupActions {
public:
    struct Parts {
        ProfileCloudManager& backups;
        ProfileManager& store;
        SavedProfiles& saved;
        ProfileChanges& changes;
        Tasks& tasks;
        FlowEnvironment& environment;
        const Machine& machine;
    };
    BackupActions(ActionStage& stage, const Parts& parts)
        : m_stage(stage)
        , m_parts(parts) {}

    /// "Back Up Profiles to iCloud".
    QCoro::Task<ActionOutcome> backUp(ActionListener& listener);
    /// Lists the backups anew.
    QCoro::Task<ActionOutcome> refresh(ActionListener& listener);
    /// When the backups are about to be seen: lists them, and sees to the copies of the Default profile. Nobody has asked for
    /// that, so nobody is told of what fails, and nothing waits for it. While it is under way nothing more is done.
    QCoro::Task<void> lookAround();
    /// "Restore Profiles from iCloud": ends with its sheet. Succeeded when a backup was restored.
    QCoro::Task<ActionOutcome> chooseAndRestore(ActionListener& listener);
    /// Merges a backup's profiles into the saved ones.
    /// @param id  as the list of backups has it; they are listed anew where it isn't in there
    QCoro::Task<ActionOutcome> restore(const QString& id, ActionListener& listener);

private:
    QCoro::Task<void> tellingOfFailure(Action& action, QCoro::Task<void> task);
    QCoro::Task<void> carryOutBackUp(Action& action);
    QCoro::Task<void> carryOutRefresh(Action& action);
    QCoro::Task<void> carryOutRestore(Action& action, QString id);
    QCoro::Task<void> carryOutChoice(Action& action);
    QCoro::Task<void> load(std::shared_ptr<RowChoice> choice);
    QCoro::Task<std::optional<ProfileImportResult>> restoredFromSheet(Action& action, std::shared_ptr<RowChoice> choice,
                                                                      QString id);
    QCoro::Task<std::optional<ProfileImportResult>> restored(Action& action, QString id,
                                                             std::function<void(bool)> showUnderWay);
    QCoro::Task<void> logged(QCoro::Task<void> task);
    QList<ChoosableRow> rows() const;
    QCoro::Task<ProfileCloudBackupInfo> findBackup(Action& action, QString id);
    std::optional<ProfileCloudBackupInfo> listed(const QString& id) const;
    QCoro::Task<std::optional<Alert>> questionBeforeRestore(Action& action, ProfileCloudBackupInfo info);

    ActionStage& m_stage;
    Parts m_parts;
    bool m_isLookingAround = false;
};

} // namespace quorvane
