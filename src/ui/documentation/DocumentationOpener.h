#pragma once

namespace quorvane {

class DocumentationWindow;
class Workspace;

/// The one way to the documentation. Always free, also while the program is locked or busy.
class DocumentationOpener {
public:
    DocumentationOpener(Workspace& workspace, DocumentationWindow& window)
        : m_workspace(workspace)
        , m_window(window) {}

    void showDocumentationWindow();
    /// Takes the window away, and shows none from then on: the program ends.
    void shutDown();

private:
    Workspace& m_workspace;
    DocumentationWindow& m_window;
    bool m_isShutDown = false;
};

} // namespace quorvane
