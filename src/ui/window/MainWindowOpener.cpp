#include "ui/window/MainWindowOpener.h"

#include "platform/Workspace.h"
#include "ui/ViewEnvironment.h"
#include "ui/window/MainWindow.h"

namespace quorvane {

MainWindowOpener::MainWindowOpener(const ViewEnvironment& environment, QObject* parent)
    : QObject(parent)
    , m_environment(environment) {}

MainWindowOpener::~MainWindowOpener() {
    shutDown();
}

void MainWindowOpener::ensureMainWindowVisible() {
    if (m_isShutDown) {
        return;
    }
    if (m_window == nullptr) {
        openWindow();
    } else if (m_window->isMinimized()) {
        m_window->setWindowState(m_window->windowState() & ~Qt::WindowMinimized);
    }
    m_environment.workspace.activateIgnoringOtherApps();
    m_environment.workspace.makeWindowsKeyAndOrderFront();
}

void MainWindowOpener::openWindow() {
    m_window = new MainWindow(m_environment);
    connect(m_window, &MainWindow::closed, this, [this] {
        m_window->deleteLater();
        m_window.clear();
        Q_EMIT windowClosed();
    });
    Q_EMIT windowMade(m_window);
    m_window->show();
}

MainWindow* MainWindowOpener::mainWindow() const {
    return m_window;
}

void MainWindowOpener::shutDown() {
    m_isShutDown = true;
    MainWindow* const window = m_window;
    m_window.clear(); // nobody is to meet one that is half gone
    if (window != nullptr) {
        delete window;
        Q_EMIT windowClosed();
    }
}

} // namespace quorvane
