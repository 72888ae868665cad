#pragma once

#include "actions/ApplyReviewCoordinator.h"
#include "actions/Launch.h"
#include "actions/LockActions.h"
#include "actions/OpenedProfiles.h"
#include "actions/Session.h"
#include "actions/WindowListener.h"
#include "appearance/AppearanceManager.h"
#include "ui/ViewEnvironment.h"
#include "ui/alerts/WindowAlerts.h"
#include "ui/documentation/DocumentationOpener.h"
#include "ui/menu/MenuBarManager.h"
#include "ui/window/MainWindowOpener.h"

#include <QObject>

#include <functional>
#include <memory>

namespace quorvane {

class Activity;
class Appearance;
class DocumentationWindow;
class LockManager;
class StatusItem;
class SystemLook;
class Workspace;

/// What the program is made with: the operating system, and what stands in windows and in the menu bar. All of it outlives the
/// program's delegate.
struct AppParts {
    Host host;
    SystemLook& look;
    Appearance& appearance;
    Workspace& workspace;
    StatusItem& statusItem;
    DocumentationWindow& documentation;
    Activity& activity;
    std::function<void()> shutDownHost; ///< ends every wait on the operating system and on its dialogs
};

/// The program from its launch to its end: makes what lives as long as it does, and opens and closes its window. Main thread.
class AppDelegate : public QObject {
    Q_OBJECT

public:
    explicit AppDelegate(const AppParts& parts);
    ~AppDelegate() override;

    void applicationDidFinishLaunching();
    /// The status item stays when the window is closed; where there is none, nothing would be left.
    bool applicationShouldTerminateAfterLastWindowClosed() const;
    /// "Open Quorvane", the Dock, a second start.
    void openWindow();
    /// Files that were opened with the program.
    /// @param paths  absolute
    void openProfiles(const QStringList& paths);
    /// Asks first while something runs.
    void requestQuit();
    /// Doesn't ask: a signal, or the end of the session.
    void quit();

    Session& session() { return m_session; }

Q_SIGNALS:
    /// The window has been painted for the first time, and the status item is there.
    void windowPainted();
    /// Further starts are to be the first ones from now on.
    void willTerminate();
    /// All has come to its end.
    void terminated();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    SessionParts sessionParts();
    void followLock();
    void makeIconAndMenuBar();
    void connectWindow();
    void connectLook();
    void connectActivity();
    void connectEnds();
    void applyLook();
    QCoro::Task<void> askAndQuit();
    QCoro::Task<void> terminate();

    AppParts m_parts;
    MainWindowInFront m_mainWindowInFront{m_parts.workspace, m_opener};
    AppearanceManager m_appearance;
    WindowAlerts m_alerts;
    LockManager* m_lock = nullptr;
    Session m_session;
    ApplyReviewCoordinator m_reviews;
    WindowListener m_listener;
    LockActions m_lockActions;
    Launch m_launch;
    OpenedProfiles m_openedProfiles;
    DocumentationOpener m_documentation;
    ViewEnvironment m_environment;
    MainWindowOpener m_opener;
    std::unique_ptr<MenuBarManager> m_menuBar;
    QCoro::Task<void> m_ending;
    bool m_isAskingToQuit = false;
    bool m_isQuitting = false;
};

} // namespace quorvane
