#pragma once

#include "actions/StatusMenu.h"

#include <QColor>
#include <QMenu>
#include <QObject>

#include <optional>

namespace quorvane {

class AlertPresenter;
class LockManager;
class ModeManager;
class Session;
class StatusItem;
class WindowListener;

/// The status item's menu: which profile is active, the way to another one, back to the defaults, to the window, and out.
class MenuBarManager : public QObject {
    Q_OBJECT

public:
    /// @param item    shows the menu as long as this lives
    /// @param alerts  for what is chosen before there are managers
    MenuBarManager(StatusItem& item, AlertPresenter& alerts, QObject* parent = nullptr);
    ~MenuBarManager() override;

    /// Wires the menu to what it speaks of; the same again changes nothing.
    void configureManagers(Session& session, WindowListener& listener);

    /// The one of the process; null before the launch has come to it.
    static MenuBarManager* shared();

Q_SIGNALS:
    /// "Open Quorvane", here or in an alert.
    void windowRequested();
    void quitRequested();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    /// What has to be there before something can be chosen.
    struct Managers {
        Session& session;
        WindowListener& listener;
    };

    void scheduleRebuild();
    void rebuildMenu();
    QList<StatusMenuEntry> entriesNow() const;
    QAction* addAction();
    void show(const StatusMenuEntry& entry, const StatusMenuEntry& shown, QAction& action) const;
    void choose(const StatusMenuEntry& entry);
    std::optional<Managers> requireManagers();

    StatusItem& m_item;
    QMenu m_menu;
    AlertPresenter& m_alerts;
    std::optional<Managers> m_managers;
    QList<StatusMenuEntry> m_entries; ///< as they stand in the menu
    QList<QAction*> m_actions;        ///< of each entry its own
    QColor m_ink;                     ///< of the menu's symbols
    bool m_isScheduled = false;
};

} // namespace quorvane
