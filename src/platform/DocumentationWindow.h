#pragma once

namespace quorvane {

/// The window in which the documentation is read. It fetches nothing, runs no script and follows no link out of its page.
/// Main thread.
class DocumentationWindow {
public:
    DocumentationWindow() = default;
    DocumentationWindow(const DocumentationWindow&) = delete;
    DocumentationWindow& operator=(const DocumentationWindow&) = delete;
    virtual ~DocumentationWindow() = default;

    /// Brings it before the program's other windows. It is made where it isn't there, and there is never a second one.
    virtual void bringForward() = 0;
    /// It goes, where it is there.
    virtual void takeAway() = 0;
};

} // namespace quorvane
