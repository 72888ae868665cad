#include "ui/window/MainWindow.h"

#include "actions/ActiveProfile.h"
#include "actions/ApplyReview.h"
#include "actions/ApplyReviewCoordinator.h"
#include "actions/Session.h"
#include "actions/SheetModel.h"
#include "actions/WindowListener.h"
#include "ui/Theme.h"
#include "ui/ViewEnvironment.h"
#include "ui/window/ContentView.h"
#include "ui/window/MainMenu.h"

#include <QCloseEvent>
#include <QMenuBar>
#include <QScreen>
#include <QSettings>

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr QSize kMinimumSize(900, 700);
const QString kPlace = u"window/place"_s;
const QString kColumns = u"window/columns"_s;

} // namespace

MainWindow::MainWindow(const ViewEnvironment& environment)
    : m_environment(environment)
    , m_content(new ContentView(environment, this)) {
    setCentralWidget(m_content);
    auto* const menu = new MainMenu(environment, *menuBar(), this);
    connect(menu, &MainMenu::settingsRequested, m_content, [this] { m_content->setSelectedTab(Tab::settings); });
    connect(menu, &MainMenu::quitRequested, this, &MainWindow::quitRequested);
    // A screen may be smaller than what is wanted.
    setMinimumSize(kMinimumSize.boundedTo(screen()->availableSize()));
    resize(minimumSize());
    restorePlace();
    connect(&environment.session.activeProfile, &ActiveProfile::changed, this, &MainWindow::refreshWindowTitle);
    refreshWindowTitle();
}

MainWindow::~MainWindow() {
    savePlace();
}

void MainWindow::refreshWindowTitle() {
    QString title = quorvane::windowTitle(m_environment.session.activeProfile.current());
    setWindowTitle(title.replace(u"[*]"_s, u"[*][*]"_s)); // Qt takes a single one for a mark of its own
}

void MainWindow::restorePlace() {
    const QSettings settings;
    restoreGeometry(settings.value(kPlace).toByteArray());
    m_content->setColumns(settings.value(kColumns).toByteArray());
}

void MainWindow::savePlace() const {
    QSettings settings;
    settings.setValue(kPlace, saveGeometry());
    settings.setValue(kColumns, m_content->columns());
}

/// A sheet that carries something out stays, and so does its window.
bool MainWindow::closesSheets() {
    m_environment.reviews.dismiss();
    const std::shared_ptr<SheetModel> sheet = m_environment.listener.sheet();
    if (sheet != nullptr) {
        sheet->dismiss();
    }
    return !m_environment.reviews.request() && m_environment.listener.sheet() == nullptr;
}

void MainWindow::closeEvent(QCloseEvent* event) {
    if (!closesSheets()) {
        event->ignore();
        return;
    }
    event->accept();
    Q_EMIT closed();
}

void MainWindow::paintEvent(QPaintEvent* event) {
    QMainWindow::paintEvent(event);
    if (!std::exchange(m_wasPainted, true)) {
        QMetaObject::invokeMethod(this, &MainWindow::painted, Qt::QueuedConnection);
    }
}

} // namespace quorvane
