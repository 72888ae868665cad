// The program from its launch to its end, through its window and its menu on a simulated Mac.

#include "actions/PageTexts.h"
#include "app/simulated/AuthorizationDialog.h"
#include "fakes/StatusMenuOnScreen.h"
#include "fakes/WindowOnMac.h"
#include "lock/LockTexts.h"

#include <QRegularExpression>
#include <QSplitter>
#include <QTest>

#include <cstddef>
#include <functional>
#include <random>

namespace quorvane {

namespace {

const QString kReviewTitle = u"Review Profile: Live Set"_s;
const QString kInterruptedTitle = u"An Apply Was Interrupted"_s;
const QString kQuitTitle = u"Quit Quorvane?"_s;

class LaunchAndEnd : public WindowOnMac {
protected:
    using WindowOnMac::WindowOnMac;
    void SetUp() override {
        isTall = false;
        keepBaseline();
        saveProfile(u"live-set"_s);
    }
    void TearDown() override {
        if (!hasTerminated) {
            WindowOnMac::TearDown();
        }
    }
    StatusMenuOnScreen menu() const { return StatusMenuOnScreen(*statusItem.menu); }
    /// Picks the profile in the window, and waits for its preview.
    static void review() {
        clickProfile(u"Live Set"_s);
        processEventsUntil([] { return isUsable(u"Apply Profile"_s); });
    }
    /// The same, and agrees: the program is busy from then on, until somebody answers its prompt.
    static void applyUntilPrompt() {
        review();
        press(Qt::Key_Return);
        processEventsUntil([] { return shown<AuthorizationDialog>() != nullptr; });
    }
    /// A review agreed to whose first tool never answers.
    void applyUntilItHangs() {
        review();
        press(Qt::Key_Return);
        processEventsUntil([this] { return session().system.isBusy(); });
    }
    /// What the system sends. QCoreApplication::quit sends none where the event loop is a test's.
    static void askToQuit() {
        QEvent quit(QEvent::Quit);
        QCoreApplication::sendEvent(qGuiApp, &quit);
    }
    /// As a session manager does. Nobody looks at the manager.
    static void endSession() {
        alignas(std::max_align_t) static std::byte manager[64];
        QMetaObject::invokeMethod(qGuiApp, "commitDataRequest", Qt::DirectConnection,
                                  QGenericArgument("QSessionManager&", &manager));
    }
    void closeWindow() {
        mainWindow()->close();
        processEventsUntil([] { return mainWindow() == nullptr; });
    }
    void waitUntilTerminated() {
        processEventsUntil([this] { return hasTerminated; });
        EXPECT_TRUE(openWindows().isEmpty()) << openWindows().join(u", "_s).toStdString();
    }
    static QStringList openWindows() {
        QStringList names;
        for (const QWidget* const window : QApplication::topLevelWidgets()) {
            if (window->isVisible()) {
                names.append(QString::fromLatin1(window->metaObject()->className()));
            }
        }
        return names;
    }
    template <typename Window>
    static Window* shown() {
        for (QWidget* const window : QApplication::topLevelWidgets()) {
            if (auto* const found = qobject_cast<Window*>(window); found != nullptr && found->isVisible()) {
                return found;
            }
        }
        return nullptr;
    }
};

class WithoutStatusArea : public LaunchAndEnd {
protected:
    WithoutStatusArea() { statusItem.hasPlace = false; }
};

} // namespace

// ---- The window comes and goes

TEST_F(LaunchAndEnd, withAStatusAreaTheProgramOutlivesItsWindow) {
    launchAndScan();
    closeWindow();
    QCoreApplication::processEvents();
    EXPECT_FALSE(hasTerminated);
    chooseInMenu(u"Open Quorvane"_s);
    ASSERT_NE(mainWindow(), nullptr);
    waitUntilSeen(kSavedProfilesTitle);
}

TEST_F(LaunchAndEnd, aSecondStartRestoresOrReopensTheWindow) {
    launchAndScan();
    QWidget* const first = mainWindow();
    first->showMinimized();
    app().openWindow();
    EXPECT_EQ(mainWindow(), first);
    EXPECT_FALSE(first->isMinimized());
    closeWindow();
    app().openWindow();
    EXPECT_NE(mainWindow(), nullptr);
}

TEST_F(LaunchAndEnd, aSheetThatAppliesKeepsTheWindow) {
    launchAndScan();
    applyUntilPrompt();
    mainWindow()->close();
    EXPECT_NE(mainWindow(), nullptr);
    EXPECT_EQ(alertTitle(), QString()) << "it closes nothing that would be asked about";
    cancelAuthorization();
    processEventsUntil([this] { return !session().system.isBusy(); });
}

TEST_F(LaunchAndEnd, closingBeforeItAppliesDropsTheReview) {
    launchAndScan();
    review();
    closeWindow();
    waitUntilIdle();
    app().openWindow();
    waitUntilSeen(kSavedProfilesTitle);
    EXPECT_FALSE(isSeen(kReviewTitle));
}

TEST_F(LaunchAndEnd, aProfileChosenWithTheWindowClosedOpensItForTheReview) {
    launchAndScan();
    closeWindow();
    menu().choose(u"Live Set"_s);
    waitUntilSeen(kReviewTitle);
    EXPECT_EQ(mainWindow()->isVisible(), true);
}

TEST_F(LaunchAndEnd, whereTheOpenedWindowIsLockedTheReviewWaitsBehindTheLock) {
    enableLock();
    launchAndScan();
    type(kLockPassword);
    press(Qt::Key_Return);
    processEventsUntil([] { return !isSeen(kLockedTitle); });
    closeWindow();

    menu().choose(u"Live Set"_s);
    waitUntilSeen(kLockedTitle);
    // Its preview is there, and only the user's answer is waited for.
    processEventsUntil([this] { return !session().turnstile.isIdle() && session().tasks.count() == 1; });
    EXPECT_FALSE(isSeen(kReviewTitle));
    activateWhatIsInFront();
    type(kLockPassword);
    press(Qt::Key_Return);
    waitUntilSeen(kReviewTitle);
}

TEST_F(LaunchAndEnd, reopeningShowsTheLockAlsoWhereItWasOpenBefore) {
    enableLock();
    launchAndScan();
    EXPECT_TRUE(isSeen(kLockedTitle));
    type(kLockPassword);
    press(Qt::Key_Return);
    processEventsUntil([] { return !isSeen(kLockedTitle); });
    closeWindow();
    chooseInMenu(u"Open Quorvane"_s);
    waitUntilSeen(kLockedTitle);
    EXPECT_FALSE(isSeen(kSavedProfilesTitle));
}

TEST_F(LaunchAndEnd, choosingWhileLockedTellsSoOverAWindowInWhichToUnlock) {
    enableLock();
    launchAndScan();
    closeWindow();
    menu().choose(u"Restore Default"_s);
    waitUntilAlert(kLockedTitle);
    EXPECT_EQ(alert().text, u"Enter your app password in the Quorvane window to restore default settings."_s);
    EXPECT_NE(mainWindow(), nullptr);
    answerAlert(kLockedTitle);
    waitUntilIdle();
    EXPECT_EQ(alertTitle(), QString());
}

// ---- The menu, at each change on the Mac

TEST_F(LaunchAndEnd, theMenuFollowsAnApplyAndTheWayBack) {
    launchAndScan();
    EXPECT_FALSE(menu().ticked().contains(u"Live Set"_s));
    menu().choose(u"Live Set"_s);
    waitUntilSeen(kReviewTitle);
    EXPECT_EQ(menu().usable(), (QStringList{u"Open Quorvane"_s, u"Quit Quorvane"_s}));
    processEventsUntil([] { return isUsable(u"Apply Profile"_s); });
    activateWhatIsInFront();
    press(Qt::Key_Return);
    authorize();
    answerAlert(u"Restart Required"_s);
    press(Qt::Key_Return);
    processEventsUntil([this] { return menu().ticked() == QStringList(u"Live Set"_s); });
    processEventsUntil([this] { return menu().titles().contains(u"On system: Live Set"_s); });
    waitUntilIdle();
    processEventsUntil([this] { return menu().usable().contains(u"Restore Default"_s); });

    menu().choose(u"Restore Default"_s);
    answerAlert(u"Apply Default Profile?"_s, u"Apply"_s);
    authorize();
    answerAlert(u"Defaults Restored"_s);
    processEventsUntil([this] { return menu().ticked() == QStringList(u"Restore Default"_s); });
}

// ---- Quitting

TEST_F(LaunchAndEnd, atRestEachWayOutEndsAtOnce) {
    const QList<std::function<void()>> ways{
        [this] { chooseInMenu(u"Quit Quorvane"_s); },
        [] { askToQuit(); },
        [] { press(Qt::Key_Q, Qt::ControlModifier); },
        [this] { app().quit(); },
        [] { endSession(); },
    };
    for (const auto& way : ways) {
        hasTerminated = false;
        launch();
        way();
        waitUntilTerminated();
        delegate.reset();
        startHost();
    }
    hasTerminated = false;
}

TEST_F(LaunchAndEnd, whileBusyEachWayOutOfTheUsersAsksAndEscapeKeepsRunning) {
    launchAndScan();
    applyUntilPrompt();
    const QList<std::function<void()>> ways{
        [this] { chooseInMenu(u"Quit Quorvane"_s); },
        [] { askToQuit(); },
    };
    for (const auto& way : ways) {
        way();
        waitUntilAlert(kQuitTitle);
        EXPECT_EQ(alert().text, u"Applying profile…\n\nWhat is done stays done; the rest is left out, and nothing is "
                                "verified."_s);
        EXPECT_EQ(alert().buttons, (QStringList{u"Keep Running"_s, u"Quit"_s}));
        way();
        activateWhatIsInFront();
        press(Qt::Key_Escape);
        processEventsUntil([] { return alertTitle().isEmpty(); });
        EXPECT_FALSE(hasTerminated);
    }
    askToQuit();
    waitUntilAlert(kQuitTitle);
    activateWhatIsInFront();
    press(Qt::Key_Return);
    processEventsUntil([] { return alertTitle().isEmpty(); });
    EXPECT_FALSE(hasTerminated) << "the default keeps running";
    cancelAuthorization();
    waitUntilSeen(u"Done"_s);
}

TEST_F(LaunchAndEnd, whileBusyQuitEndsAlsoWithThePromptOpen) {
    launchAndScan();
    applyUntilPrompt();
    askToQuit();
    answerQuitQuestion(u"Quit"_s);
    waitUntilTerminated();
}

TEST_F(LaunchAndEnd, theQuestionStaysWhenTheWorkEndsAndNothingElseBegins) {
    launchAndScan();
    applyUntilPrompt();
    askToQuit();
    waitUntilAlert(kQuitTitle);
    shown<AuthorizationDialog>()->reject();
    processEventsUntil([this] { return !session().system.isBusy(); });
    EXPECT_EQ(alertTitle(), kQuitTitle);
    EXPECT_FALSE(menu().usable().contains(u"Live Set"_s));
    answerAlert(kQuitTitle, u"Keep Running"_s);
    waitUntilSeen(u"Done"_s);
    EXPECT_FALSE(hasTerminated);
}

TEST_F(LaunchAndEnd, theLockAnswersTheQuestion) {
    enableLock();
    launchAndScan();
    type(kLockPassword);
    press(Qt::Key_Return);
    processEventsUntil([] { return !isSeen(kLockedTitle); });
    const Turnstile::Hold busy = session().turnstile.busy(u"Working…"_s);
    askToQuit();
    waitUntilAlert(kQuitTitle);
    resignActive();
    processEventsUntil([] { return alertTitle().isEmpty(); });
    EXPECT_TRUE(isSeen(kLockedTitle));
    EXPECT_FALSE(hasTerminated);
}

TEST_F(LaunchAndEnd, aSignalAndTheEndOfTheSessionDontAskWhateverIsOpen) {
    const QList<std::function<void()>> ways{[this] { app().quit(); }, [] { endSession(); }};
    for (int i = 0; i < ways.size(); ++i) {
        hasTerminated = false;
        launch();
        if (i > 0) {
            waitUntilAlert(kInterruptedTitle);
            press(Qt::Key_Escape);
        }
        processEventsUntil([this] { return session().system.hasVerifiedSystem(); });
        applyUntilPrompt();
        askToQuit();
        waitUntilAlert(kQuitTitle);
        ways.at(i)();
        askToQuit(); // as Qt does for a session that ends
        waitUntilTerminated();
        delegate.reset();
        startHost();
    }
    hasTerminated = false;
}

TEST_F(LaunchAndEnd, anApplyThatWasCutOffIsAskedAboutBeforeAnythingElse) {
    const macsim::MacPicture before = picture();
    launchAndScan();
    applyUntilPrompt();
    app().quit();
    waitUntilTerminated();
    delegate.reset();
    hasTerminated = false;
    startHost();
    EXPECT_NE(picture().changesSince(before), QString()) << "some is done";
    launch();
    waitUntilAlert(kInterruptedTitle);
    EXPECT_EQ(alert().buttons, (QStringList{u"Finish"_s, u"Go Back"_s, u"Leave as Is"_s}));
    EXPECT_EQ(alert().onReturn, QString());
    EXPECT_EQ(alert().text, u"“Live Set” was being applied when Quorvane ended. 8 of 9 steps were done."_s);
    press(Qt::Key_Return);
    EXPECT_EQ(alertTitle(), kInterruptedTitle) << "Return presses nothing";
    EXPECT_FALSE(session().system.hasVerifiedSystem()) << "nothing is scanned before";
    answerAlert(kInterruptedTitle, u"Go Back"_s);
    waitUntilAlert(u"Success"_s);
    EXPECT_EQ(alert().text, u"Your Mac is as it was before “Live Set” was applied."_s);
    press(Qt::Key_Return);
    processEventsUntil([this] { return session().system.hasVerifiedSystem(); });
    const macsim::MacPicture now = picture();
    QStringList changes;
    for (const macsim::MacDifference& difference : now.differencesSince(before)) {
        static const QRegularExpression own(u"/\\.quorvane|com\\.quorvane\\.app|Support/Quorvane"_s);
        static const QRegularExpression anew(
            u"\\.plist\\z|state processes |state launchd/(jobs|disabled)/"_s); // what macOS notes
        if (!own.match(difference.key).hasMatch() && !anew.match(difference.key).hasMatch()) {
            changes.append(difference.line());
        }
    }
    EXPECT_EQ(changes, QStringList());
}

TEST_F(LaunchAndEnd, anApplyThatHangsInAToolEndsAtOnce) {
    startHost("[{\"tool\": \"defaults\", \"arguments\": \"^write\", \"hang\": true}]");
    launchAndScan();
    applyUntilItHangs();
    app().quit();
    waitUntilTerminated();
}

// ---- Without a status area

TEST_F(WithoutStatusArea, closingTheLastWindowQuits) {
    launchAndScan();
    mainWindow()->close();
    waitUntilTerminated();
}

TEST_F(WithoutStatusArea, closingAsksWhileBusyAndKeepsWindowAndSheet) {
    launchAndScan();
    applyUntilPrompt();
    mainWindow()->close();
    answerQuitQuestion(u"Keep Running"_s);
    QCoreApplication::processEvents(); // the answer has arrived
    EXPECT_TRUE(isSeen(kReviewTitle));
    mainWindow()->close();
    answerQuitQuestion(u"Quit"_s);
    waitUntilTerminated();
}

TEST_F(WithoutStatusArea, closingIsNoQuitOnceThereIsOne) {
    launchAndScan();
    statusItem.hasPlace = true;
    closeWindow();
    QCoreApplication::processEvents();
    EXPECT_FALSE(hasTerminated);
}

// ---- Where the window stands

TEST_F(LaunchAndEnd, placeAndColumnsAreRememberedAlsoAfterASignal) {
    launch();
    mainWindow()->setGeometry(17, 23, mainWindow()->minimumWidth() + 4, mainWindow()->minimumHeight() + 6);
    auto* const columns = mainWindow()->findChild<QSplitter*>();
    columns->setSizes({240, columns->width() - 240});
    const QRect place = mainWindow()->geometry();
    const QList<int> widths = columns->sizes();
    quitAndLaunch();
    EXPECT_EQ(mainWindow()->geometry(), place);
    EXPECT_EQ(mainWindow()->findChild<QSplitter*>()->sizes(), widths);
}

TEST_F(LaunchAndEnd, aPlaceOnAScreenThatIsGoneComesBackOntoOne) {
    launch();
    mainWindow()->move(9000, 4000);
    QCoreApplication::processEvents();
    quitAndLaunch();
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    EXPECT_TRUE(screen.contains(mainWindow()->geometry().topLeft() + QPoint(20, 5)));
}

TEST_F(LaunchAndEnd, whatIsNoPlaceIsPassedOver) {
    QSettings().setValue(u"window/place"_s, QByteArray("\x01\xd9\xd0\xcb nothing"));
    QSettings().setValue(u"window/columns"_s, u"wide"_s);
    launch();
    EXPECT_TRUE(isSeen(kSavedProfilesTitle));
}

// ---- The end, whatever came before it

namespace {

enum class Step {
    CloseWindow,
    OpenWindow,
    Pick,
    Apply,
    Authorize,
    CancelPrompt,
    AskToQuit,
    KeepRunning,
    OfferBaseline,
    Lock,
    Unlock,
    AskFinger,
    Turn,
    Last = Turn,
};

class AnyOrder : public LaunchAndEnd, public ::testing::WithParamInterface<unsigned> {
protected:
    AnyOrder()
        : LaunchAndEnd(u"studio-desktop"_s) {}
    void SetUp() override { saveProfile(u"live-set"_s); }
    /// What the user could do now; nothing where it isn't on the screen.
    void take(Step step) {
        switch (step) {
        case Step::CloseWindow:
            if (mainWindow() != nullptr) {
                mainWindow()->close();
            }
            break;
        case Step::OpenWindow:
            app().openWindow();
            break;
        case Step::Pick:
            chooseIfUsable(u"Live Set"_s);
            break;
        case Step::Apply:
            clickIfUsable(u"Apply Profile"_s);
            break;
        case Step::Authorize:
            if (auto* const dialog = shown<AuthorizationDialog>()) {
                QTest::keyClicks(dialog->findChild<QLineEdit*>(), u"quorvane"_s);
                QTest::keyClick(dialog->findChild<QLineEdit*>(), Qt::Key_Return);
            }
            break;
        case Step::CancelPrompt:
            if (auto* const dialog = shown<AuthorizationDialog>()) {
                dialog->reject();
            }
            break;
        case Step::AskToQuit:
            if (session().system.isBusy()) {
                askToQuit();
            }
            break;
        case Step::KeepRunning:
            clickIfUsable(u"Keep Running"_s);
            break;
        case Step::OfferBaseline:
            clickIfUsable(u"Create Master Baseline"_s);
            break;
        case Step::Lock:
            resignActive();
            break;
        case Step::Unlock:
            becomeActive();
            typeIfShown(kPasswordField, kLockPassword);
            break;
        case Step::AskFinger:
            clickIfUsable(u"Unlock with Touch ID"_s);
            break;
        case Step::Turn:
            processEventsFor(40);
            break;
        }
    }
    void chooseIfUsable(const QString& title) {
        if (statusItem.menu != nullptr && menu().usable().contains(title)) { // it comes with the first picture
            menu().choose(title);
        }
    }
    static void clickIfUsable(const QString& name) {
        if (isUsable(name)) {
            click(name);
        }
    }
    static void typeIfShown(const QString& name, const QString& text) {
        if (auto* const field = isUsable(name) ? qobject_cast<QLineEdit*>(control(name)) : nullptr) {
            QTest::keyClicks(field, text);
            QTest::keyClick(field, Qt::Key_Return);
        }
    }
    /// Turns of the event loop: more or less happens in them, which is the point.
    static void processEventsFor(int turns) {
        for (int turn = 0; turn < turns; ++turn) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }
};

} // namespace

TEST_P(AnyOrder, endsCleanly) {
    std::mt19937 random(GetParam());
    enableLock();
    start();
    QStringList taken;
    const auto count = 4 + random() % 12;
    for (unsigned i = 0; i < count; ++i) {
        const auto step = static_cast<Step>(random() % (static_cast<unsigned>(Step::Last) + 1));
        taken.append(QString::number(static_cast<int>(step)));
        take(step);
        processEventsFor(static_cast<int>(random() % 6));
    }
    SCOPED_TRACE(taken.join(u", "_s).toStdString());
    app().quit();
    processEventsFor(static_cast<int>(random() % 2));
    waitUntilTerminated();
    EXPECT_FALSE(session().system.isBusy());
    EXPECT_TRUE(session().turnstile.isIdle());
    EXPECT_EQ(session().tasks.count(), 0);
}

INSTANTIATE_TEST_SUITE_P(Seeds, AnyOrder, ::testing::Range(1U, 13U));

} // namespace quorvane
