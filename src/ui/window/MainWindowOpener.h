#pragma once

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
    /// Takes the window away, whatever it shows: the program ends.
    void shutDown();

Q_SIGNALS:
    /// It is about to come onto the screen.
    void windowMade(MainWindow* window);
    void windowClosed();

private:
    void openWindow();

    const ViewEnvironment& m_environment;
    QPointer<MainWindow> m_window;
};

} // namespace quorvane
