#include "app/AppDelegate.h"

#include "actions/ActionTexts.h"
#include "lock/LockManager.h"
#include "platform/Activity.h"
#include "platform/Clock.h"
#include "platform/FilePanels.h"
#include "platform/StatusItem.h"
#include "platform/SystemLook.h"
#include "ui/QuorvaneStyle.h"
#include "ui/symbols/Logo.h"
#include "ui/window/MainWindow.h"
#include "wallpaper/WallpaperProfileOverlay.h"

#include <QApplication>
#include <QFileOpenEvent>

#include <QCoroFuture>

#include <utility>

namespace quorvane {

AppDelegate::AppDelegate(const AppParts& parts)
    : m_parts(parts)
    , m_appearance(parts.appearance, parts.look, parts.host.defaults)
    , m_alerts(parts.workspace, [this] { return m_opener.mainWindow(); })
    , m_session(parts.host, sessionParts())
    , m_reviews({parts.workspace, parts.host.clock, m_session.tasks, m_session.turnstile, m_session.profileActions,
                 m_session.tweakActions, m_session.systemActions})
    , m_listener({m_alerts, m_session.scans, m_reviews, m_session.startupEditing})
    , m_lockActions(m_session.stage, *m_lock)
    , m_launch({m_session, parts.host.clock, m_appearance, *m_lock, m_listener})
    , m_openedProfiles({m_session.tasks, m_session.turnstile, *m_lock, m_session.profileExchange, m_listener})
    , m_documentation(parts.workspace, parts.documentation)
    , m_environment{m_session,  *m_lock,         m_lockActions,    m_appearance,   m_reviews,
                    m_listener, parts.workspace, parts.host.clock, m_documentation}
    , m_opener(m_environment) {
    m_reviews.ensureMainWindowVisible = [this] { openWindow(); };
    connectLook();
    connectActivity();
    connectWindow();
    connectEnds();
}

AppDelegate::~AppDelegate() {
    qGuiApp->removeEventFilter(this); // what it looks at goes
}

SessionParts AppDelegate::sessionParts() {
    const auto makeGate = [this] {
        const Host& host = m_parts.host;
        auto lock = std::make_unique<LockManager>(host.keychain, host.biometrics, m_alerts.ofLock(),
                                                  m_mainWindowInFront, host.defaults);
        m_lock = lock.get();
        connect(m_lock, &LockManager::isUnlockedChanged, this, [this] { followLock(); });
        m_alerts.setLocked(!m_lock->isUnlocked());
        return lock;
    };
    const auto makeLabel = [this](SystemManager& system) {
        const Host& host = m_parts.host;
        const WallpaperPorts ports{host.files, host.machine, host.displays, host.defaults, host.notifications};
        auto overlay = std::make_unique<WallpaperProfileOverlay>(ports);
        overlay->follow(system);
        return overlay;
    };
    return {makeGate, makeLabel, m_parts.shutDownHost};
}

/// What is open would stand above the lock screen.
void AppDelegate::followLock() {
    m_alerts.setLocked(!m_lock->isUnlocked());
    if (!m_lock->isUnlocked()) {
        m_parts.host.filePanels.cancelOpen();
    }
}

// ---- Launch

void AppDelegate::applicationDidFinishLaunching() {
    applyLook();
    openWindow();
}

/// With the window's first picture, which isn't to wait for the icon and the system's status area; at the latest when the
/// window goes.
void AppDelegate::makeIconAndMenuBar() {
    if (m_menuBar != nullptr || m_isQuitting) {
        return;
    }
    QApplication::setWindowIcon(logoIcon());
    m_menuBar = std::make_unique<MenuBarManager>(m_parts.statusItem, m_alerts.ofLock());
    m_menuBar->configureManagers(m_session, m_listener);
    connect(m_menuBar.get(), &MenuBarManager::windowRequested, this, &AppDelegate::openWindow);
    connect(m_menuBar.get(), &MenuBarManager::quitRequested, this, &AppDelegate::requestQuit);
}

void AppDelegate::openWindow() {
    m_opener.ensureMainWindowVisible();
}

void AppDelegate::openProfiles(const QStringList& paths) {
    openWindow();
    m_openedProfiles.open(paths);
}

void AppDelegate::connectWindow() {
    connect(&m_opener, &MainWindowOpener::windowMade, this, [this](MainWindow* window) {
        window->installEventFilter(this);
        connect(window, &MainWindow::painted, this, [this] {
            makeIconAndMenuBar();
            m_launch.windowPainted();
            Q_EMIT windowPainted();
        });
        connect(window, &MainWindow::quitRequested, this, &AppDelegate::requestQuit);
        m_launch.windowAppeared();
    });
    connect(&m_opener, &MainWindowOpener::windowClosed, this, [this] {
        makeIconAndMenuBar();
        m_launch.windowClosed();
    });
    connect(&m_listener, &WindowListener::snapshotChanged, &m_session.snapshotStatus, &SnapshotStatus::readAnew);
}

void AppDelegate::connectLook() {
    connect(&m_appearance, &AppearanceManager::appearanceChanged, this, &AppDelegate::applyLook);
}

void AppDelegate::connectActivity() {
    connect(&m_session.system, &SystemManager::isBusyChanged, this,
            [this](bool isBusy) { m_parts.activity.setWorking(isBusy); });
}

void AppDelegate::applyLook() {
    auto* const style = qobject_cast<QuorvaneStyle*>(QApplication::style());
    const Look look{m_appearance.scheme(), m_appearance.reducesMotion(), m_appearance.increasesContrast()};
    if (style != nullptr) {
        style->setLook(look);
    } else {
        QApplication::setStyle(new QuorvaneStyle(look));
    }
}

// ---- End

void AppDelegate::connectEnds() {
    // A change of focus among the program's own windows is none of these.
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        if (state != Qt::ApplicationActive) {
            m_lock->applicationWillResignActive();
        }
    });
    connect(qGuiApp, &QGuiApplication::commitDataRequest, this, &AppDelegate::quit, Qt::DirectConnection);
    qGuiApp->installEventFilter(this);
}

bool AppDelegate::applicationShouldTerminateAfterLastWindowClosed() const {
    return !m_parts.statusItem.isShown();
}

bool AppDelegate::eventFilter(QObject* watched, QEvent* event) {
    const bool quits = watched == qGuiApp && event->type() == QEvent::Quit;
    const bool closesLast = watched == m_opener.mainWindow() && event->type() == QEvent::Close &&
                            applicationShouldTerminateAfterLastWindowClosed();
    if (watched == qGuiApp && event->type() == QEvent::FileOpen) {
        openProfiles({static_cast<QFileOpenEvent*>(event)->file()});
        return true;
    }
    // Also while it quits already: Qt would end the event loop, in which what runs comes to its end.
    if (quits || (closesLast && !m_isQuitting)) {
        event->ignore();
        requestQuit();
        return true;
    }
    return QObject::eventFilter(watched, event);
}

void AppDelegate::requestQuit() {
    if (m_isQuitting || !m_session.system.isBusy()) {
        quit();
    } else if (!std::exchange(m_isAskingToQuit, true)) {
        m_session.tasks.start(askAndQuit());
    }
}

/// The question stays when the work ends meanwhile: a dialog that goes by itself may go from under a click. Nothing else begins
/// behind it.
QCoro::Task<void> AppDelegate::askAndQuit() {
    const Turnstile::Hold passage = m_session.turnstile.open();
    const Alert question = quitQuestion(m_session.system.busyMessage());
    const int pressed = co_await m_alerts.ofLock().present(question);
    m_isAskingToQuit = false;
    if (pressed != question.cancelButton) {
        quit();
    }
}

void AppDelegate::quit() {
    if (!std::exchange(m_isQuitting, true)) {
        m_ending = terminate();
    }
}

/// In a turn of its own: who wants it is in the midst of something, mostly of an event of what goes.
QCoro::Task<void> AppDelegate::terminate() {
    constexpr std::chrono::milliseconds oneTurn(0);
    co_await m_parts.host.clock.sleepFor(oneTurn);
    Q_EMIT willTerminate();
    m_session.system.clearAdminAuthorization();
    m_openedProfiles.shutDown();
    m_opener.shutDown();
    m_documentation.shutDown();
    m_alerts.shutDown();
    m_listener.shutDown();
    co_await m_session.shutDown();
    Q_EMIT terminated();
}

} // namespace quorvane
