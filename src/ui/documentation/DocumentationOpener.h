#pragma once

#include <memory>

namespace quorvane {

class DocumentationWindow;
class Workspace;

/// The one way to the documentation. Always free, also while the program is locked or busy.
class DocumentationOpener {
public:
    explicit DocumentationOpener(Workspace& workspace);
    ~DocumentationOpener();
    DocumentationOpener(const DocumentationOpener&) = delete;
    DocumentationOpener& operator=(const DocumentationOpener&) = delete;

    /// Brings its one window forward, which is made when it is asked for first.
    void showDocumentationWindow();
    /// Takes the window away, and shows none from then on: the program ends.
    void shutDown();

private:
    Workspace& m_workspace;
    std::unique_ptr<DocumentationWindow> m_window;
    bool m_isShutDown = false;
};

} // namespace quorvane
