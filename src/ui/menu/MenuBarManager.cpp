#include "ui/menu/MenuBarManager.h"

#include "actions/ActionTexts.h"
#include "actions/Session.h"
#include "actions/WindowListener.h"
#include "platform/AlertPresenter.h"
#include "platform/StatusItem.h"
#include "ui/QuorvaneStyle.h"
#include "ui/pieces/WhenFinished.h"
#include "ui/symbols/Symbols.h"

#include <QAction>
#include <QEvent>
#include <QTimer>

#include <QCoroTask>

#include <utility>

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
    , m_item(item)
    , m_alerts(alerts) {
    sharedManager = this;
    m_menu.setTitle(u"Quorvane"_s);
    // What changes while the menu is open is in it the next time.
    connect(&m_menu, &QMenu::aboutToShow, this, &MenuBarManager::rebuildMenu);
    connect(&m_menu, &QMenu::aboutToHide, this, &MenuBarManager::scheduleRebuild);
    m_menu.installEventFilter(this);
    rebuildMenu();
    m_item.setMenu(m_menu);
}

MenuBarManager::~MenuBarManager() {
    m_item.remove();
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

/// Its symbols are painted in the ink of the menu.
bool MenuBarManager::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::StyleChange) {
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

/// What stays as it is isn't touched: there may be a thousand profiles, and each action's beginning and end enables or
/// disables them.
void MenuBarManager::rebuildMenu() {
    const QColor ink = themeOf(&m_menu).text;
    const bool hasOtherInk = std::exchange(m_ink, ink) != ink;
    const QList<StatusMenuEntry> shown = std::exchange(m_entries, entriesNow());
    for (qsizetype place = 0; place < m_entries.size(); ++place) {
        const StatusMenuEntry& entry = m_entries.at(place);
        if (place >= shown.size()) {
            show(entry, {}, *addAction());
        } else if (hasOtherInk) {
            show(entry, {}, *m_actions.at(place));
        } else if (entry != shown.at(place)) {
            show(entry, shown.at(place), *m_actions.at(place));
        }
    }
    while (m_actions.size() > m_entries.size()) {
        delete m_actions.takeLast();
    }
}

QList<StatusMenuEntry> MenuBarManager::entriesNow() const {
    if (!m_managers) {
        return statusMenu(activeConfiguration({}), {}, true);
    }
    const Session& session = m_managers->session;
    return statusMenu(session.activeProfile.current(), session.savedProfiles.known().profiles,
                      session.turnstile.isIdle());
}

QAction* MenuBarManager::addAction() {
    QAction* const action = m_menu.addAction(QString());
    action->setShortcutContext(Qt::WidgetShortcut); // it is shown; the window has its own
    connect(action, &QAction::triggered, this, [this, action] {
        const StatusMenuEntry chosen = m_entries.at(m_actions.indexOf(action)); // what is chosen may change the menu
        choose(chosen);
    });
    m_actions.append(action);
    return action;
}

/// @param shown  what the action has shown until now
void MenuBarManager::show(const StatusMenuEntry& entry, const StatusMenuEntry& shown, QAction& action) const {
    action.setSeparator(entry.kind == StatusMenuEntry::Kind::Separator);
    action.setText(plainTitle(entry.title));
    action.setEnabled(entry.isEnabled);
    action.setCheckable(entry.isChecked);
    action.setChecked(entry.isChecked);
    if (entry.symbol != shown.symbol) {
        action.setIcon(entry.symbol.isEmpty() ? QIcon() : symbolIcon(entry.symbol, m_ink));
    }
    action.setShortcut(entry.key.isEmpty() ? QKeySequence() : QKeySequence(u"Ctrl+"_s + entry.key));
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
