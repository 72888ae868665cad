#pragma once

#include "platform/DocumentationWindow.h"

#include <memory>

namespace quorvane {

class TextDocumentationWindow;

/// The documentation in a window of Qt's, which stays as it is read when it is closed.
class WindowDocumentation final : public DocumentationWindow {
public:
    WindowDocumentation();
    ~WindowDocumentation() override;

    void bringForward() override;
    void takeAway() override;

private:
    std::unique_ptr<TextDocumentationWindow> m_window;
};

} // namespace quorvane
