#include "ui/window/MainMenu.h"

#include "actions/ActionTexts.h"
#include "actions/ApplyReviewCoordinator.h"
#include "actions/Session.h"
#include "actions/WindowListener.h"
#include "actions/WindowTexts.h"
#include "lock/LockManager.h"
#include "ui/ViewEnvironment.h"
#include "ui/documentation/DocumentationOpener.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

#include <QCoroTask>

namespace quorvane {

using namespace Qt::StringLiterals;

MainMenu::MainMenu(const ViewEnvironment& environment, QMenuBar& bar, QWidget* window)
    : QObject(window)
    , m_environment(environment) {
    addEditMenu(bar);
    addWindowMenu(bar, window);
    addHelpMenu(bar);
    connect(&environment.session.turnstile, &Turnstile::idleChanged, this, &MainMenu::update);
    connect(&environment.lock, &LockManager::isUnlockedChanged, this, &MainMenu::update);
    connect(&environment.listener, &WindowListener::sheetChanged, this, &MainMenu::update);
    connect(&environment.reviews, &ApplyReviewCoordinator::requestChanged, this, &MainMenu::update);
    update();
}

/// A text field takes the key first, as it does each of its own.
void MainMenu::addEditMenu(QMenuBar& bar) {
    QMenu* const menu = bar.addMenu(u"&Edit"_s);
    m_undo = menu->addAction(u"Undo Performance Tweaks"_s);
    m_undo->setShortcut(QKeySequence::Undo);
    connect(m_undo, &QAction::triggered, this, &MainMenu::undo);
    menu->addSeparator();
    m_settings = menu->addAction(u"Settings…"_s, this, &MainMenu::settingsRequested);
    m_settings->setShortcut(u"Ctrl+,"_s);
    m_settings->setMenuRole(QAction::PreferencesRole);
}

void MainMenu::addWindowMenu(QMenuBar& bar, QWidget* window) {
    QMenu* const menu = bar.addMenu(u"&Window"_s);
    QAction* const minimize = menu->addAction(u"Minimize"_s, window, &QWidget::showMinimized);
    minimize->setShortcut(u"Ctrl+M"_s);
    QAction* const close = menu->addAction(u"Close"_s, window, &QWidget::close);
    close->setShortcut(u"Ctrl+W"_s);
    menu->addSeparator();
    QAction* const quit = menu->addAction(u"Quit Quorvane"_s, this, &MainMenu::quitRequested);
    quit->setShortcut(u"Ctrl+Q"_s);
    quit->setMenuRole(QAction::QuitRole);
}

void MainMenu::addHelpMenu(QMenuBar& bar) {
    QMenu* const menu = bar.addMenu(u"&Help"_s);
    QAction* const manual =
        menu->addAction(kDocumentation, this, [this] { m_environment.documentation.showDocumentationWindow(); });
    manual->setShortcut(QKeySequence::HelpContents);
    menu->addSeparator();
    m_about = menu->addAction(u"About Quorvane"_s, this, &MainMenu::showAbout);
    m_about->setMenuRole(QAction::AboutRole);
}

/// What begins something waits for what runs; another page is chosen where pages can be seen and used.
void MainMenu::update() {
    const bool isIdle = m_environment.session.turnstile.isIdle();
    const bool isUnderSheet = m_environment.listener.sheet() != nullptr || m_environment.reviews.request();
    m_settings->setEnabled(m_environment.lock.isUnlocked() && !isUnderSheet);
    m_undo->setEnabled(isIdle);
    m_about->setEnabled(isIdle);
}

void MainMenu::undo() {
    Session& session = m_environment.session;
    session.tasks.start(session.tweakActions.undo(m_environment.listener));
}

void MainMenu::showAbout() {
    Session& session = m_environment.session;
    session.tasks.start(session.systemActions.showAbout(m_environment.listener));
}

} // namespace quorvane
