#include "ui/documentation/DocumentationOpener.h"

#include "platform/Workspace.h"
#include "ui/documentation/DocumentationWindow.h"
#include "ui/documentation/ShippedDocumentation.h"

namespace quorvane {

DocumentationOpener::DocumentationOpener(Workspace& workspace)
    : m_workspace(workspace) {}

DocumentationOpener::~DocumentationOpener() = default;

void DocumentationOpener::showDocumentationWindow() {
    if (m_isShutDown) {
        return;
    }
    if (m_window == nullptr) {
        m_window = std::make_unique<DocumentationWindow>(shippedDocumentation());
    }
    if (m_window->isMinimized()) {
        m_window->setWindowState(m_window->windowState() & ~Qt::WindowMinimized);
    }
    m_window->show();
    m_workspace.activateIgnoringOtherApps();
    m_window->raise();
    m_window->activateWindow(); // last: of the program's windows this is the one that was asked for
}

void DocumentationOpener::shutDown() {
    m_isShutDown = true;
    m_window.reset();
}

} // namespace quorvane
