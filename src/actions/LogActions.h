#pragma once

#include "actions/ActionOutcome.h"

namespace QCoro {
template <typename T>
class Task;
}

namespace quorvane {

class ActionListener;
class ActionStage;
class FilePanels;
class SystemManager;

/// What a user does with the log. Switching its debug lines and clearing it are free at any time: a flow that runs logs on.
class LogActions {
public:
    LogActions(ActionStage& stage, SystemManager& system, FilePanels& panels)
        : m_stage(stage)
        , m_system(system)
        , m_panels(panels) {}

    /// "Verbose Debug Logging".
    void setDebugMode(bool debugMode);
    void clearLog();
    /// Asks for a file, and writes the log as it is into it. Without a text there is nothing to ask for.
    QCoro::Task<ActionOutcome> exportLog(ActionListener& listener);

private:
    ActionStage& m_stage;
    SystemManager& m_system;
    FilePanels& m_panels;
};

} // namespace quorvane
