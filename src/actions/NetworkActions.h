#pragma once

#include "actions/ActionListener.h"
#include "actions/ActionOutcome.h"
#include "network/NetworkOperations.h"

namespace quorvane {

class ActionStage;
class SystemManager;

/// What a user does with the network.
class NetworkActions {
public:
    NetworkActions(ActionStage& stage, SystemManager& system)
        : m_stage(stage)
        , m_system(system) {}

    QCoro::Task<ActionOutcome> execute(NetworkOperations operations, ActionListener& listener);

private:
    ActionStage& m_stage;
    SystemManager& m_system;
};

} // namespace quorvane
