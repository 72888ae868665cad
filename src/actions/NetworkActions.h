#pragma once

#include "actions/ActionListener.h"
#include "actions/ActionOutcome.h"
#include "network/NetworkOperations.h"

#include <functional>

namespace quorvane {

class ActionStage;
class SystemManager;

/// What a user does with the network.
class NetworkActions {
public:
    NetworkActions(ActionStage& stage, SystemManager& system)
        : m_stage(stage)
        , m_system(system) {}

    /// @param whenRun  called when it has run, before its outcome is told; not where nothing was carried out
    QCoro::Task<ActionOutcome> execute(NetworkOperations operations, ActionListener& listener,
                                       const std::function<void()>& whenRun = {});

private:
    ActionStage& m_stage;
    SystemManager& m_system;
};

} // namespace quorvane
