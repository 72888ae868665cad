#pragma once

#include "app/NativeFilePanels.h"
#include "app/ProgramHost.h"
#include "platform/macos/MacActivity.h"
#include "platform/macos/MacAppearance.h"
#include "platform/macos/MacDocumentationWindow.h"
#include "platform/macos/MacHost.h"
#include "platform/macos/MacStatusItem.h"
#include "platform/macos/MacSystemLook.h"
#include "platform/macos/MacWorkspace.h"

namespace quorvane {

/// The Mac that the program runs on, with its menu bar and its windows. What was set in the preferences has reached the system
/// when the event loop ends.
class MacProgramHost final : public ProgramHost {
public:
    /// @param environment  of the children; see prepareProcess
    explicit MacProgramHost(const QProcessEnvironment& environment);

    AppParts parts() override;

private:
    void shutDown();

    MacHost m_host;
    NativeFilePanels m_filePanels;
    MacSystemLook m_systemLook;
    MacAppearance m_appearance;
    MacWorkspace m_workspace;
    MacStatusItem m_statusItem;
    MacDocumentationWindow m_documentation;
    MacActivity m_activity;
    QObject m_untilTheEnd;
};

} // namespace quorvane
