#pragma once

#include "platform/Workspace.h"

#include <QObject>
#include <QPointer>

namespace quorvane {

class MainWindow;
struct ViewEnvironment;

/// The one way to the main window: shows the one that there is, or makes one.
class MainWindowOpener : public QObject {
    Q_OBJECT

public:
    explicit MainWindowOpener(const ViewEnvironment& environment, QObject* parent = nullptr);
    ~MainWindowOpener() override;

    /// Opens the main window, or restores it where it is minimised, and brings it to the front.
    void ensureMainWindowVisible();
    /// Null while it is closed.
    MainWindow* mainWindow() const;
    /// Takes the window away, whatever it shows, and opens none from then on: the program ends.
    void shutDown();

Q_SIGNALS:
    /// It is about to come onto the screen.
    void windowMade(MainWindow* window);
    void windowClosed();

private:
    void openWindow();

    const ViewEnvironment& m_environment;
    QPointer<MainWindow> m_window;
    bool m_isShutDown = false;
};

/// The program among the others, for who sends the user to the main window: it is opened where it is closed.
class MainWindowInFront final : public Workspace {
public:
    MainWindowInFront(Workspace& workspace, MainWindowOpener& opener)
        : m_workspace(workspace)
        , m_opener(opener) {}

    bool isActive() const override { return m_workspace.isActive(); }
    void activateIgnoringOtherApps() override { m_workspace.activateIgnoringOtherApps(); }
    void makeWindowsKeyAndOrderFront() override { m_opener.ensureMainWindowVisible(); }

private:
    Workspace& m_workspace;
    MainWindowOpener& m_opener;
};

} // namespace quorvane
