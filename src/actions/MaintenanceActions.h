#pragma once

#include "actions/ActionListener.h"
#include "actions/ActionOutcome.h"
#include "maintenance/MaintenanceSelection.h"

namespace quorvane {

class ActionStage;
class SystemManager;

/// What a user does about caches, Trash and Downloads.
class MaintenanceActions {
public:
    MaintenanceActions(ActionStage& stage, SystemManager& system)
        : m_stage(stage)
        , m_system(system) {}

    QCoro::Task<ActionOutcome> execute(MaintenanceSelection selection, ActionListener& listener);

private:
    ActionStage& m_stage;
    SystemManager& m_system;
};

} // namespace quorvane
