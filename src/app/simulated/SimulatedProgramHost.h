#pragma once

#include "app/ProgramHost.h"
#include "app/simulated/AuthorizationDialogs.h"
#include "app/simulated/FilePanelDialogs.h"
#include "app/simulated/FingerDialogs.h"
#include "app/simulated/UnwatchedActivity.h"
#include "platform/simulated/SimulatedHost.h"
#include "ui/documentation/WindowDocumentation.h"
#include "ui/menu/TrayStatusItem.h"
#include "ui/window/WindowAppearance.h"
#include "ui/window/WindowWorkspace.h"

namespace quorvane {

/// The simulated Mac of whoever starts the program (macOfUser), with the dialogs that a Mac has of its own, in a window of Qt's.
class SimulatedProgramHost final : public ProgramHost {
public:
    explicit SimulatedProgramHost(const QString& dataFolder);

    static std::unique_ptr<ProgramHost> make(const QString& dataFolder);
    AppParts parts() override;

private:
    void shutDown();

    AuthorizationDialogs m_authorization;
    FingerDialogs m_finger;
    FilePanelDialogs m_panels;
    SimulatedHost m_host;
    WindowWorkspace m_workspace;
    WindowAppearance m_appearance;
    TrayStatusItem m_statusItem;
    WindowDocumentation m_documentation;
    UnwatchedActivity m_activity;
};

} // namespace quorvane
