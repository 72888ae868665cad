#pragma once

#include <QObject>

class QAction;
class QMenuBar;
class QWidget;

namespace quorvane {

struct ViewEnvironment;

/// The commands of the program, in the menu bar of a window. They belong to it.
class MainMenu : public QObject {
    Q_OBJECT

public:
    MainMenu(const ViewEnvironment& environment, QMenuBar& bar, QWidget* window);

Q_SIGNALS:
    void settingsRequested();
    void quitRequested();

private:
    void addEditMenu(QMenuBar& bar);
    void addWindowMenu(QMenuBar& bar, QWidget* window);
    void addHelpMenu(QMenuBar& bar);
    void update();
    void undo();
    void showAbout();

    const ViewEnvironment& m_environment;
    QAction* m_undo = nullptr;
    QAction* m_settings = nullptr;
    QAction* m_about = nullptr;
};

} // namespace quorvane
