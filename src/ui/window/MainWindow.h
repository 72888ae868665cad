#pragma once

#include "actions/PageTexts.h"

#include <QMainWindow>

namespace quorvane {

class ContentView;
class MainMenu;
struct ViewEnvironment;

/// The program's one window. It is made anew each time that it is opened; where it stood is remembered.
class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    explicit MainWindow(const ViewEnvironment& environment);
    ~MainWindow() override;

    ContentView& contentView() { return *m_content; }

Q_SIGNALS:
    /// Once, when it has been painted for the first time.
    void painted();
    void quitRequested();
    /// It has been closed and goes. What it stood for a moment ago is asked again.
    void closed();

protected:
    void closeEvent(QCloseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    bool closesSheets();
    void restorePlace();
    void savePlace() const;
    void refreshWindowTitle();

    const ViewEnvironment& m_environment;
    ContentView* m_content;
    bool m_wasPainted = false;
};

} // namespace quorvane
