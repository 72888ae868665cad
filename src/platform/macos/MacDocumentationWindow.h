#pragma once

#include "platform/DocumentationWindow.h"
#include "platform/macos/ReturnPath.h"

#include <QString>

#include <functional>
#include <memory>

namespace quorvane {

/// The documentation in a window of AppKit's with a web view for its content: inside a widget it would get neither focus nor keys
/// as it should. It lives as long as it is open, because it brings processes of its own along.
///
/// Scripts are off, nothing is kept on the disk, and whatever leads out of the page is refused; the page itself forbids its view
/// to fetch anything.
class MacDocumentationWindow final : public DocumentationWindow {
public:
    /// @param title  of the window
    /// @param page   makes the page, as HTML; asked each time that the window opens
    MacDocumentationWindow(const QString& title, std::function<QString()> page);
    ~MacDocumentationWindow() override;

    void bringForward() override;
    void takeAway() override;

private:
    struct Window;

    void dropWhenClosed();

    ReturnPath m_path;
    QString m_title;
    std::function<QString()> m_page;
    std::unique_ptr<Window> m_window;
};

} // namespace quorvane
