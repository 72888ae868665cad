#include "ui/documentation/WindowDocumentation.h"

#include "ui/documentation/ShippedDocumentation.h"
#include "ui/documentation/TextDocumentationWindow.h"

namespace quorvane {

WindowDocumentation::WindowDocumentation() = default;

WindowDocumentation::~WindowDocumentation() = default;

void WindowDocumentation::bringForward() {
    if (m_window == nullptr) {
        m_window = std::make_unique<TextDocumentationWindow>(shippedDocumentation());
    }
    if (m_window->isMinimized()) {
        m_window->setWindowState(m_window->windowState() & ~Qt::WindowMinimized);
    }
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
}

void WindowDocumentation::takeAway() {
    m_window.reset();
}

} // namespace quorvane
