#include "ui/documentation/DocumentationOpener.h"

#include "platform/DocumentationWindow.h"
#include "platform/Workspace.h"

namespace quorvane {

void DocumentationOpener::showDocumentationWindow() {
    if (!m_isShutDown) {
        m_workspace.activateIgnoringOtherApps();
        m_window.bringForward(); // last: of the program's windows this is the one that was asked for
    }
}

void DocumentationOpener::shutDown() {
    m_isShutDown = true;
    m_window.takeAway();
}

} // namespace quorvane
