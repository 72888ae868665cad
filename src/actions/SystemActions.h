#pragma once

#include "actions/ActionListener.h"
#include "actions/ActionOutcome.h"
#include "startup/items/StartupConfiguration.h"
#include "system/SystemManager.h"

#include <memory>
#include <optional>

namespace quorvane {

class Action;
class ActionStage;
class ActiveProfile;
class MasterBaselineOffer;
class SystemScans;

/// What a user does with the system as a whole.
class SystemActions {
public:
    SystemActions(ActionStage& stage, SystemManager& system, SystemScans& scans, const ActiveProfile& active);

    /// "Verify Current System Settings". Succeeded when a configuration fits.
    QCoro::Task<ActionOutcome> verify(ActionListener& listener);
    /// "Create System Snapshot".
    QCoro::Task<ActionOutcome> saveSnapshot(const std::optional<QString>& label, SystemManager::MasterArchive archive,
                                            ActionListener& listener);
    /// Offers to create the master baseline, until the user doesn't want it or there is one. Succeeded when there is.
    QCoro::Task<ActionOutcome> offerMasterBaseline(ActionListener& listener);
    /// "Reinstate System".
    QCoro::Task<ActionOutcome> reinstate(ActionListener& listener);
    /// What has changed since the last apply or way back, as the last scan has found it.
    QCoro::Task<ActionOutcome> showChanges(ActionListener& listener);
    /// "About Quorvane".
    QCoro::Task<ActionOutcome> showAbout(ActionListener& listener);
    /// Carries out the startup half of a profile, after a review.
    QCoro::Task<ActionOutcome> applyStartup(const StartupConfiguration& configuration, ActionListener& listener);

private:
    QCoro::Task<void> createMasterBaseline(Action& action, std::shared_ptr<MasterBaselineOffer> offer);
    QCoro::Task<void> captureMasterBaseline(Action& action);
    QCoro::Task<std::optional<FoundBaseline>> foundForTheQuestion(Action& action);
    QCoro::Task<ReviewPreview> preview(StartupConfiguration configuration);

    ActionStage& m_stage;
    SystemManager& m_system;
    SystemScans& m_scans;
    const ActiveProfile& m_active;
};

} // namespace quorvane
