#include "ui/menu/MenuBarManager.h"

#include "actions/ActionTexts.h"
#include "actions/Session.h"
#include "actions/WindowListener.h"
#include "platform/AlertPresenter.h"
#include "ui/QuorvaneStyle.h"
#include "ui/menu/StatusItem.h"
#include "ui/pieces/WhenFinished.h"
#include "ui/symbols/Symbols.h"

#include <QAction>
#include <QEvent>
#include <QTimer>

#include <QCoroTask>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

MenuBarManager* sharedManager = nullptr;

/// Qt takes "&" for the mark of a shortcut.
QString plainTitle(QString title) {
    return title.replace(u'&', u"&&"_s);
}

} // namespace

MenuBarManager::MenuBarManager(StatusItem& item, AlertPresenter& alerts, QObject* parent)
    : QObject(parent)
    , m_alerts(alerts) {
    sharedManager = this;
    m_menu.setTitle(u"Quorvane"_s);
    // What changes while the menu is open is in it the next time.
    connect(&m_menu, &QMenu::aboutToShow, this, &MenuBarManager::rebuildMenu);
    connect(&m_menu, &QMenu::aboutToHide, this, &MenuBarManager::scheduleRebuild);
    m_menu.installEventFilter(this);
    rebuildMenu();
    item.setMenu(m_menu);
}

MenuBarManager::~MenuBarManager() {
    sharedManager = nullptr;
}

MenuBarManager* MenuBarManager::shared() {
    return sharedManager;
}

void MenuBarManager::configureManagers(Session& session, WindowListener& listener) {
    if (m_managers) {
        return;
    }
    m_managers.emplace(Managers{session, listener});
    connect(&session.activeProfile, &ActiveProfile::changed, this, &MenuBarManager::scheduleRebuild);
    connect(&session.savedProfiles, &SavedProfiles::changed, this, &MenuBarManager::scheduleRebuild);
    connect(&session.turnstile, &Turnstile::idleChanged, this, &MenuBarManager::scheduleRebuild);
    rebuildMenu();
}

/// Its symbols are pictures in the colour of its texts.
bool MenuBarManager::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::PaletteChange) {
        scheduleRebuild();
    }
    return QObject::eventFilter(watched, event);
}

/// Several changes of one turn of the event loop are one.
void MenuBarManager::scheduleRebuild() {
    if (!m_isScheduled) {
        m_isScheduled = true;
        QTimer::singleShot(0, this, [this] {
            m_isScheduled = false;
            if (!m_menu.isVisible()) {
                rebuildMenu();
            }
        });
    }
}

void MenuBarManager::rebuildMenu() {
    const QList<StatusMenuEntry> entries = m_managers ? statusMenu(m_managers->session.activeProfile.current(),
                                                                   m_managers->session.savedProfiles.known().profiles,
                                                                   m_managers->session.turnstile.isIdle())
                                                      : statusMenu({}, {}, true);
    const QColor ink = m_menu.palette().color(QPalette::Text);
    if (entries == m_entries && ink == m_ink) {
        return;
    }
    m_entries = entries;
    m_ink = ink;
    m_menu.clear();
    for (const StatusMenuEntry& entry : entries) {
        addEntry(entry);
    }
}

void MenuBarManager::addEntry(const StatusMenuEntry& entry) {
    if (entry.kind == StatusMenuEntry::Kind::Separator) {
        m_menu.addSeparator();
        return;
    }
    QAction* const action = m_menu.addAction(plainTitle(entry.title));
    action->setEnabled(entry.isEnabled);
    action->setCheckable(entry.isChecked);
    action->setChecked(entry.isChecked);
    if (!entry.symbol.isEmpty()) {
        action->setIcon(symbolIcon(entry.symbol, m_ink));
    }
    if (!entry.key.isEmpty()) {
        action->setShortcut(QKeySequence(u"Ctrl+"_s + entry.key));
        action->setShortcutContext(Qt::WidgetShortcut); // it is shown; the window has its own
    }
    connect(action, &QAction::triggered, this, [this, entry] { choose(entry); });
}

void MenuBarManager::choose(const StatusMenuEntry& entry) {
    if (entry.kind == StatusMenuEntry::Kind::OpenWindow) {
        Q_EMIT windowRequested();
        return;
    }
    if (entry.kind == StatusMenuEntry::Kind::Quit) {
        Q_EMIT quitRequested();
        return;
    }
    const std::optional<Managers> managers = requireManagers();
    if (!managers) {
        return;
    }
    Session& session = managers->session;
    if (entry.kind == StatusMenuEntry::Kind::RestoreDefault) {
        session.tasks.start(session.profileActions.restoreDefault(StartedFrom::Menu, managers->listener));
    } else {
        session.tasks.start(session.profileActions.pick(entry.name, entry.id, StartedFrom::Menu, managers->listener));
    }
}

std::optional<MenuBarManager::Managers> MenuBarManager::requireManagers() {
    if (!m_managers) {
        const Alert question = notReadyQuestion();
        whenFinished(m_alerts.present(question), this,
                     [this, cancel = question.cancelButton](const QFuture<int>& pressed) {
                         if (pressed.result() != cancel) {
                             Q_EMIT windowRequested();
                         }
                     });
    }
    return m_managers;
}

} // namespace quorvane
