#pragma once

#include "app/AppDelegate.h"
#include "app/simulated/AuthorizationDialogs.h"
#include "app/simulated/FilePanelDialogs.h"
#include "app/simulated/FingerDialogs.h"
#include "fakes/EventLoop.h"
#include "fakes/RecordingActivity.h"
#include "fakes/SimulatedSystem.h"
#include "platform/StatusItem.h"
#include "ui/documentation/WindowDocumentation.h"
#include "ui/window/WindowAppearance.h"
#include "ui/window/WindowWorkspace.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QLineEdit>
#include <QMenu>
#include <QSettings>

#include <memory>
#include <ostream>

namespace quorvane {

/// A place for the status item that is always there, or never.
class PlacedStatusItem final : public StatusItem {
public:
    void setMenu(QMenu& shown) override {
        menu = &shown;
        ++placements;
    }
    void remove() override { menu = nullptr; }
    bool isShown() const override { return hasPlace; }

    QMenu* menu = nullptr;
    int placements = 0;
    bool hasPlace = true;
};

/// What a program needs that has windows, beside its host.
struct WindowPlatform {
    WindowWorkspace workspace;
    WindowAppearance appearance;
    WindowDocumentation documentation;
    RecordingActivity activity;
};

/// An alert as its user sees it.
struct ShownAlert {
    QString title;
    QString text;
    QStringList buttons; ///< from right to left: the one that says what happens first
    QString onReturn;    ///< the button that Return presses

    bool operator==(const ShownAlert&) const = default;
};
void PrintTo(const ShownAlert& alert, std::ostream* out);

/// The program with its window on a simulated Mac, through real child processes, used by keys and clicks. What is looked for
/// is looked for as a user finds it: among what is seen and enabled, by its name.
class WindowOnMac : public ::testing::Test {
public:
    ~WindowOnMac() override;

protected:
    /// @param description  of examples/macs
    explicit WindowOnMac(const QString& description = u"fresh-macbook"_s);
    void TearDown() override;

    // ---- The Mac, before and while the program runs

    /// Boots it anew, with faults if any are given; see macsim::Faults. To be called while no program runs.
    void startHost(const QByteArray& faults = {});
    /// Saves one of examples/profiles, or any other.
    void saveProfile(const QString& example);
    void saveProfile(const UnifiedProfile& profile);
    /// There is a master baseline already, so that none is offered.
    void keepBaseline();
    /// The app lock is on from the start.
    void enableLock();
    /// What goes wrong with the Mac's tools from now on; see macsim::Faults.
    void makeFail(const QByteArray& faults);
    /// What a line prints in the simulated Mac's shell.
    QString shell(const QString& line);
    macsim::MacPicture picture() const { return macsim::MacPicture(macFolder()); }
    QString macFolder() const { return folder.path() + u"/Mac"_s; }
    QString faultsFile() const { return folder.path() + u"/faults.json"_s; }

    // ---- The program

    /// Starts it, and doesn't wait for anything.
    void start();
    /// Starts it, and waits until its window has been painted.
    void launch();
    /// The same, and until the scan of the start has ended.
    void launchAndScan();
    /// Ends it as a signal does, and waits until it has gone.
    void quit();
    /// Ends it so, and starts it anew on the same Mac.
    void quitAndLaunch();
    AppDelegate& app() { return *delegate; }
    virtual StatusItem& placeOfStatusItem() { return statusItem; }
    Session& session() { return delegate->session(); }
    /// The program is the active one no more.
    static void resignActive();
    static void becomeActive();

    // ---- What is on the screen

    /// Null while it is closed.
    static QWidget* mainWindow();
    /// True while a widget of that name can be seen.
    static bool isSeen(const QString& name);
    /// The texts that can be seen, of labels, buttons and rows, from top to bottom.
    static QStringList seenTexts(const QWidget* in);
    /// The widget of that name that can be seen and used; fails the test without one.
    static QWidget* control(const QString& name);
    static bool isUsable(const QString& name);
    /// The saved profiles' rows.
    static QAbstractItemView* profileList();
    /// All rows' texts, from top to bottom.
    static QStringList profileRows();
    static QString currentProfileRow();
    /// The alert's title; empty without one.
    static QString alertTitle();
    /// None of them when there is none.
    static ShownAlert alert();
    /// The name of what the keys of the main window go to; empty where that is nothing.
    static QString focused();
    /// What the log says.
    QString log();

    // ---- What the user does

    static void click(const QString& name);
    static void clickProfile(const QString& name);
    /// The row's delete button.
    static void clickDeleteOf(const QString& name);
    static void chooseTab(const QString& name);
    /// In the menu bar of the window.
    static void chooseCommand(const QString& title);
    static bool isCommandEnabled(const QString& title);
    static void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    static void type(const QString& text);
    /// Presses a button of the alert, once that is there.
    static void answerAlert(const QString& title, const QString& button = u"OK"_s);
    /// The same of the question whether to quit, after which nothing may be left.
    static void answerQuitQuestion(const QString& button);
    /// Waits for an alert that looks exactly like this, and presses a key in it.
    static void answerByKey(const ShownAlert& expected, int key);
    /// Types into the lock screen.
    static void unlock(const QString& password = kLockPassword);
    static void waitForFingerDialog();
    static void answerFinger(const QString& button);
    /// Types into the system's dialog, once that is there.
    static void authorize(const QString& password = u"quorvane"_s);
    static void cancelAuthorization();
    static void waitForAuthorization();
    static void activateWhatIsInFront();
    bool isInMenu(const QString& title, bool isEnabled);
    /// Chooses in the status item's menu.
    void chooseInMenu(const QString& title);
    QStringList menuTitles();

    /// Runs the event loop until a widget of that name is seen.
    static void waitUntilSeen(const QString& name);
    static void waitUntilAlert(const QString& title);
    void waitUntilIdle();

    static inline const QString kLockPassword = u"gig7"_s;

    // ---- What it runs on

    virtual Host ports() { return host->host(); }
    /// Ends every wait on them.
    virtual void shutDownPorts();

    QTemporaryDir folder;
    PlacedStatusItem statusItem;
    WindowPlatform windowPlatform;
    std::unique_ptr<AuthorizationDialogs> authorization;
    std::unique_ptr<FingerDialogs> finger;
    std::unique_ptr<FilePanelDialogs> panels;
    std::unique_ptr<SimulatedHost> host;
    std::unique_ptr<AppDelegate> delegate;
    bool hasTerminated = false;
    bool isTall = true; ///< nothing has to be scrolled to
};

} // namespace quorvane
