#include "fakes/WindowOnMac.h"

#include "app/simulated/AuthorizationDialog.h"
#include "app/simulated/FingerDialog.h"
#include "fakes/CountingWorkspace.h"
#include "fakes/ScriptedAlertPresenter.h"
#include "lock/LockManager.h"
#include "platform/FileManager.h"
#include "profiles/ProfileManager.h"
#include "ui/Theme.h"
#include "ui/alerts/AlertDialog.h"
#include "ui/window/MainWindow.h"

#include <QFile>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

#include <algorithm>

namespace quorvane {

namespace {

/// A list is behind its own rows.
bool hasSeenPart(const QWidget* widget) {
    const auto* const area = qobject_cast<const QAbstractScrollArea*>(widget);
    return widget->isVisible() && !(area != nullptr ? area->viewport() : widget)->visibleRegion().isEmpty();
}

/// All windows' widgets that can be seen.
QList<QWidget*> seenWidgets() {
    QList<QWidget*> seen;
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        if (!window->isVisible()) {
            continue;
        }
        seen.append(window);
        for (QWidget* const widget : window->findChildren<QWidget*>()) {
            if (hasSeenPart(widget)) {
                seen.append(widget);
            }
        }
    }
    return seen;
}

QString nameOf(const QWidget* widget) {
    if (!widget->accessibleName().isEmpty()) {
        return widget->accessibleName();
    }
    if (const auto* const button = qobject_cast<const QAbstractButton*>(widget)) {
        return button->text();
    }
    const auto* const label = qobject_cast<const QLabel*>(widget);
    return label != nullptr ? label->text() : QString();
}

template <typename Window>
Window* openDialog() {
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        if (auto* const dialog = qobject_cast<Window*>(window); dialog != nullptr && dialog->isVisible()) {
            return dialog;
        }
    }
    return nullptr;
}

QAbstractButton* buttonOf(const QWidget* dialog, const QString& text) {
    for (auto* const button : dialog->findChildren<QAbstractButton*>()) {
        if (button->text() == text) {
            return button;
        }
    }
    return nullptr;
}

void pressInAlert(const QString& button) {
    const auto* const alert = openDialog<AlertDialog>();
    ASSERT_NE(alert, nullptr);
    QAbstractButton* const pressed = buttonOf(alert, button);
    ASSERT_NE(pressed, nullptr) << button.toStdString();
    QTest::mouseClick(pressed, Qt::LeftButton);
}

QAction* commandOf(const QWidget* window, const QString& title) {
    for (auto* const action : window->findChildren<QAction*>()) {
        if (action->text() == title) {
            return action;
        }
    }
    return nullptr;
}

} // namespace

void PrintTo(const ShownAlert& alert, std::ostream* out) {
    *out << alert.title.toStdString() << " / " << alert.text.toStdString() << " / "
         << alert.buttons.join(u", "_s).toStdString() << " / Return: " << alert.onReturn.toStdString();
}

WindowOnMac::WindowOnMac(const QString& description) {
    const QString file = QStringLiteral(QUORVANE_SOURCE_DIR "/examples/macs/") + description + u".json"_s;
    macsim::createMac(macFolder(), macsim::macDescriptionFromFile(file), macsim::simulatorTools().keys(),
                      QStringLiteral(MACSIM_PROGRAM));
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path() + u"/settings"_s);
    makeFail("[]");
    startHost();
}

WindowOnMac::~WindowOnMac() = default;

void WindowOnMac::TearDown() {
    if (delegate != nullptr) {
        quit();
    }
}

// ---- The Mac

void WindowOnMac::startHost(const QByteArray& faults) {
    if (!faults.isEmpty()) {
        makeFail(faults);
    }
    host.reset();
    authorization = std::make_unique<AuthorizationDialogs>();
    finger = std::make_unique<FingerDialogs>();
    panels = std::make_unique<FilePanelDialogs>();
    host = std::make_unique<SimulatedHost>(
        macFolder(), *authorization,
        SimulatedHostOptions{QStringLiteral(MACSIM_PROGRAM), faultsFile(), {}, finger.get(), panels.get()});
    authorization->setMachine(host->mac().machine());
    panels->setMac(host->mac());
}

void WindowOnMac::saveProfile(const QString& example) {
    saveProfile(exampleProfile(example));
}

void WindowOnMac::saveProfile(const UnifiedProfile& profile) {
    const Host ports = host->host();
    ProfileManager(ports.files, profilesDirectory(ports.machine)).saveProfile(profile);
}

void WindowOnMac::keepBaseline() {
    const Host ports = host->host();
    const QString place = ports.machine.homeFolder() + u"/.quorvane"_s;
    ports.files.createFolders(place);
    ports.files.writeAtomically(place + u"/master-baseline-current.json"_s, "{}");
}

void WindowOnMac::enableLock() {
    const Host ports = host->host();
    QStringList steps;
    ScriptedAlertPresenter alerts(steps);
    CountingWorkspace workspace(steps);
    LockManager lock(ports.keychain, ports.biometrics, alerts, workspace, ports.defaults);
    ASSERT_EQ(lock.enableLock(kLockPassword, kLockPassword), std::nullopt);
}

void WindowOnMac::makeFail(const QByteArray& faults) {
    QFile file(faultsFile());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(faults);
}

QString WindowOnMac::shell(const QString& line) {
    QFuture<CommandOutcome> outcome = host->host().commands.run({u"/bin/sh"_s, u"-c"_s, line}, OutputCapture::Capture);
    processEventsUntil([&outcome] { return outcome.isFinished(); });
    return QString::fromUtf8(outcome.result().standardOutput);
}

// ---- The program

void WindowOnMac::shutDownPorts() {
    host->shutDown();
    authorization->shutDown();
    finger->shutDown();
    panels->shutDown();
}

void WindowOnMac::start() {
    delegate = std::make_unique<AppDelegate>(
        AppParts{ports(), host->systemLook(), windowPlatform.appearance, windowPlatform.workspace, placeOfStatusItem(),
                 windowPlatform.documentation, windowPlatform.activity, [this] { shutDownPorts(); }});
    QObject::connect(delegate.get(), &AppDelegate::terminated, [this] { hasTerminated = true; });
    delegate->applicationDidFinishLaunching();
}

void WindowOnMac::launch() {
    start();
    if (isTall) {
        mainWindow()->resize(1000, 1300);
    }
    activateWhatIsInFront();
    processEventsUntil([this] { return session().savedProfiles.wasRead(); });
}

void WindowOnMac::launchAndScan() {
    launch();
    processEventsUntil([this] { return session().system.hasVerifiedSystem(); });
}

void WindowOnMac::quit() {
    delegate->quit();
    processEventsUntil([this] { return hasTerminated; });
    delegate.reset();
}

void WindowOnMac::quitAndLaunch() {
    quit();
    hasTerminated = false;
    startHost();
    launch();
}

void WindowOnMac::resignActive() {
    Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationInactive);
}

void WindowOnMac::becomeActive() {
    Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationActive);
}

// ---- The screen

QWidget* WindowOnMac::mainWindow() {
    return openDialog<MainWindow>();
}

bool WindowOnMac::isSeen(const QString& name) {
    const QList<QWidget*> seen = seenWidgets();
    return std::any_of(seen.begin(), seen.end(), [&name](const QWidget* widget) { return nameOf(widget) == name; });
}

QStringList WindowOnMac::seenTexts(const QWidget* in) {
    QStringList texts;
    for (const QWidget* const widget : seenWidgets()) {
        const QString name = nameOf(widget);
        if (in->isAncestorOf(widget) && !name.isEmpty() && !texts.contains(name)) {
            texts.append(name);
        }
    }
    return texts;
}

QWidget* WindowOnMac::control(const QString& name) {
    for (QWidget* const widget : seenWidgets()) {
        if (nameOf(widget) == name && widget->isEnabled() && widget->focusPolicy() != Qt::NoFocus) {
            return widget;
        }
    }
    ADD_FAILURE() << "nothing to use is called " << name.toStdString();
    return nullptr;
}

bool WindowOnMac::isUsable(const QString& name) {
    const QList<QWidget*> seen = seenWidgets();
    return std::any_of(seen.begin(), seen.end(), [&name](const QWidget* widget) {
        return nameOf(widget) == name && widget->isEnabled() && widget->focusPolicy() != Qt::NoFocus;
    });
}

QAbstractItemView* WindowOnMac::profileList() {
    return qobject_cast<QAbstractItemView*>(control(kSavedProfilesTitle));
}

QString WindowOnMac::alertTitle() {
    const auto* const alert = openDialog<AlertDialog>();
    return alert != nullptr ? alert->accessibleName() : QString();
}

ShownAlert WindowOnMac::alert() {
    const auto* const shown = openDialog<AlertDialog>();
    if (shown == nullptr) {
        return {};
    }
    ShownAlert alert{shown->accessibleName(), shown->accessibleDescription(), {}, {}};
    QList<QPushButton*> buttons = shown->findChildren<QPushButton*>();
    std::sort(buttons.begin(), buttons.end(),
              [](const QPushButton* one, const QPushButton* other) { return one->x() > other->x(); });
    for (const QPushButton* const button : std::as_const(buttons)) {
        alert.buttons.append(button->text());
        if (button->isDefault() && button->hasFocus()) {
            alert.onReturn = button->text();
        }
    }
    return alert;
}

QStringList WindowOnMac::profileRows() {
    QStringList rows;
    const QAbstractItemView* const list = profileList();
    for (int row = 0; list != nullptr && row < list->model()->rowCount(); ++row) {
        rows.append(list->model()->index(row, 0).data().toString());
    }
    return rows;
}

QString WindowOnMac::currentProfileRow() {
    const QAbstractItemView* const list = profileList();
    return list != nullptr ? list->currentIndex().data().toString() : QString();
}

QString WindowOnMac::focused() {
    const QWidget* const widget = mainWindow()->focusWidget();
    return widget != nullptr ? nameOf(widget) : QString();
}

QString WindowOnMac::log() {
    return session().system.logMessages().join(u'\n');
}

// ---- The user

void WindowOnMac::click(const QString& name) {
    if (QWidget* const widget = control(name)) {
        QTest::mouseClick(widget, Qt::LeftButton);
    }
}

void WindowOnMac::clickProfile(const QString& name) {
    QAbstractItemView* const list = profileList();
    for (int row = 0; list != nullptr && row < list->model()->rowCount(); ++row) {
        const QModelIndex index = list->model()->index(row, 0);
        if (index.data() == name) {
            const QRect rect = list->visualRect(index);
            QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, QPoint(rect.left() + 80, rect.center().y()));
            return;
        }
    }
    ADD_FAILURE() << "no row is called " << name.toStdString();
}

void WindowOnMac::clickDeleteOf(const QString& name) {
    QAbstractItemView* const list = profileList();
    ASSERT_NE(list, nullptr);
    const QRect row = list->visualRect(list->model()->index(static_cast<int>(profileRows().indexOf(name)), 0));
    const QPoint button(row.right() - 2 * Theme::kGap12, row.center().y());
    QWidget* const over = list->viewport()->childAt(button);
    QWidget* const clicked = over != nullptr ? over : list->viewport();
    QTest::mouseClick(clicked, Qt::LeftButton, {}, clicked->mapFrom(list->viewport(), button));
}

void WindowOnMac::chooseTab(const QString& name) {
    auto* const sidebar = qobject_cast<QListWidget*>(control(u"Sidebar"_s));
    ASSERT_NE(sidebar, nullptr);
    const QList<QListWidgetItem*> items = sidebar->findItems(name, Qt::MatchExactly);
    ASSERT_EQ(items.size(), 1) << name.toStdString();
    QTest::mouseClick(sidebar->viewport(), Qt::LeftButton, {}, sidebar->visualItemRect(items.first()).center());
}

void WindowOnMac::chooseCommand(const QString& title) {
    ASSERT_TRUE(isCommandEnabled(title)) << title.toStdString();
    commandOf(mainWindow(), title)->trigger();
}

bool WindowOnMac::isCommandEnabled(const QString& title) {
    const QAction* const command = commandOf(mainWindow(), title);
    return command != nullptr && command->isEnabled();
}

void WindowOnMac::press(int key, Qt::KeyboardModifiers modifiers) {
    QWidget* const window = QApplication::activeWindow();
    ASSERT_NE(window, nullptr);
    QTest::keyClick(window->windowHandle(), static_cast<Qt::Key>(key), modifiers);
}

void WindowOnMac::type(const QString& text) {
    QWidget* const window = QApplication::activeWindow();
    ASSERT_NE(window, nullptr);
    for (const QChar character : text) {
        QTest::keyClick(window->windowHandle(), character.toLatin1());
    }
}

void WindowOnMac::answerAlert(const QString& title, const QString& button) {
    waitUntilAlert(title);
    pressInAlert(button);
    activateWhatIsInFront();
}

void WindowOnMac::answerQuitQuestion(const QString& button) {
    waitUntilAlert(u"Quit Quorvane?"_s);
    pressInAlert(button);
}

void WindowOnMac::answerByKey(const ShownAlert& expected, int key) {
    waitUntilAlert(expected.title);
    EXPECT_EQ(alert(), expected);
    const QPointer<QWidget> answered(openDialog<AlertDialog>());
    press(key);
    EXPECT_TRUE(answered == nullptr || answered->isHidden());
    activateWhatIsInFront();
}

void WindowOnMac::unlock(const QString& password) {
    QWidget* const field = control(u"Password"_s);
    ASSERT_NE(field, nullptr);
    QTest::keyClicks(field, password);
    QTest::keyClick(field, Qt::Key_Return);
}

void WindowOnMac::waitForFingerDialog() {
    processEventsUntil([] { return openDialog<FingerDialog>() != nullptr; });
}

void WindowOnMac::answerFinger(const QString& button) {
    waitForFingerDialog();
    QTest::mouseClick(buttonOf(openDialog<FingerDialog>(), button), Qt::LeftButton);
    activateWhatIsInFront();
}

void WindowOnMac::waitForAuthorization() {
    processEventsUntil([] { return openDialog<AuthorizationDialog>() != nullptr; });
}

void WindowOnMac::authorize(const QString& password) {
    waitForAuthorization();
    auto* const field = openDialog<AuthorizationDialog>()->findChild<QLineEdit*>();
    QTest::keyClicks(field, password);
    QTest::keyClick(field, Qt::Key_Return);
    activateWhatIsInFront();
}

/// As a system does when a window goes. Another one may come meanwhile.
void WindowOnMac::activateWhatIsInFront() {
    processEventsUntil([] {
        QWidget* const modal = QApplication::activeModalWidget();
        QWidget* const front = modal != nullptr ? modal : mainWindow();
        if (front != nullptr && !front->isActiveWindow()) {
            front->activateWindow();
        }
        return front == nullptr || front->isActiveWindow();
    });
}

void WindowOnMac::cancelAuthorization() {
    waitForAuthorization();
    QTest::keyClick(openDialog<AuthorizationDialog>(), Qt::Key_Escape);
    activateWhatIsInFront();
}

bool WindowOnMac::isInMenu(const QString& title, bool isEnabled) {
    const QList<QAction*> actions = statusItem.menu->actions();
    return std::any_of(actions.begin(), actions.end(), [&](const QAction* action) {
        return action->text() == title && action->isEnabled() == isEnabled;
    });
}

void WindowOnMac::chooseInMenu(const QString& title) {
    for (QAction* const action : statusItem.menu->actions()) {
        if (action->text() == title) {
            ASSERT_TRUE(action->isEnabled()) << title.toStdString();
            action->trigger();
            return;
        }
    }
    ADD_FAILURE() << "the menu has no " << title.toStdString();
}

QStringList WindowOnMac::menuTitles() {
    QStringList titles;
    for (const QAction* const action : statusItem.menu->actions()) {
        titles.append(action->isSeparator() ? u"-"_s : action->text());
    }
    return titles;
}

void WindowOnMac::waitUntilSeen(const QString& name) {
    processEventsUntil([&name] { return isSeen(name); });
}

void WindowOnMac::waitUntilAlert(const QString& title) {
    processEventsUntil([&title] { return alertTitle() == title && openDialog<AlertDialog>()->isActiveWindow(); });
    EXPECT_EQ(alertTitle(), title);
}

void WindowOnMac::waitUntilIdle() {
    processEventsUntil([this] { return session().turnstile.isIdle(); });
}

} // namespace quorvane
