// The window by keys alone: where they lead, and where the focus goes.

#include "fakes/ShownWindow.h"
#include "ui/review/ApplyReviewSheet.h"

#include <QAbstractItemView>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>

namespace quorvane {

namespace {

class WindowKeys : public ShownWindow {
protected:
    QAbstractItemView* list(const QString& name) const { return qobject_cast<QAbstractItemView*>(named(name)); }
    void focus(const QString& name) const {
        if (QWidget* const widget = named(name)) {
            widget->setFocus(Qt::TabFocusReason);
        }
    }
    void showTweaks() {
        open();
        click(u"System Tweaks"_s);
        settle();
    }
    void showReview() {
        open();
        focus(kSavedProfilesTitle);
        reviews.presentProfile(live, window, {});
        waitFor(ApplyReview::State::Reviewing);
        settle();
    }
    /// The current row of a list is where it can be seen.
    static bool showsCurrent(const QAbstractItemView* view) {
        return view->visibleRegion().boundingRect().contains(view->visualRect(view->currentIndex()));
    }
    QStringList questions() const { return steps.filter(u"! "_s); }
};

} // namespace

// ---- Lists

TEST_F(WindowKeys, arrowsChooseATabAndPassOverTheTitlesOfGroups) {
    open();
    focus(u"Sidebar"_s);
    for (const Tab tab : {Tab::maintenance, Tab::network, Tab::logs, Tab::settings}) {
        press(Qt::Key_Down);
        EXPECT_EQ(mainWindow->contentView().selectedTab(), tab);
    }
    for (int row = 0; row < 4; ++row) {
        press(Qt::Key_Up);
    }
    EXPECT_EQ(mainWindow->contentView().selectedTab(), Tab::performance);
    EXPECT_EQ(focusedName(), u"Sidebar"_s);
}

TEST_F(WindowKeys, thePageScrollsAlongWithTheCurrentProfile) {
    saveProfiles(60);
    open();
    focus(kSavedProfilesTitle);
    QAbstractItemView* const profiles = list(kSavedProfilesTitle);
    for (int step = 0; step < 40; ++step) {
        press(Qt::Key_Down);
        ASSERT_EQ(profiles->currentIndex().row(), step + 1);
        ASSERT_TRUE(showsCurrent(profiles)) << step;
    }
    press(Qt::Key_Home);
    EXPECT_EQ(profiles->currentIndex().row(), 0);
    EXPECT_TRUE(showsCurrent(profiles));
    press(Qt::Key_End);
    EXPECT_EQ(profiles->currentIndex().row(), 61);
    EXPECT_TRUE(showsCurrent(profiles));
}

TEST_F(WindowKeys, tabComesToTheCurrentProfileHoweverLongTheListIs) {
    saveProfiles(60);
    open();
    focus(kSavedProfilesTitle);
    for (int step = 0; step < 30; ++step) {
        press(Qt::Key_Down);
    }
    focus(u"System Tweaks"_s);
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(focusedName(), kDeleteProfile);
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(focusedName(), kEditRow);
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(focusedName(), kSavedProfilesTitle);
    EXPECT_TRUE(showsCurrent(list(kSavedProfilesTitle)));
}

TEST_F(WindowKeys, deleteAsksForTheCurrentProfile) {
    open();
    alerts.hold();
    focus(kSavedProfilesTitle);
    press(Qt::Key_Delete);
    processEventsUntil([this] { return alerts.openCount() == 1; });
    EXPECT_TRUE(questions().last().contains(u"Live"_s)) << questions().last().toStdString();
    alerts.answer(1);
    waitForTasks();
}

TEST_F(WindowKeys, afterADeletionTheNextProfileHasTheFocus) {
    saveProfiles(3);
    open();
    focus(kSavedProfilesTitle);
    press(Qt::Key_Down);
    press(Qt::Key_Delete);
    waitForTasks();
    settle();
    EXPECT_EQ(focusedName(), kSavedProfilesTitle);
    EXPECT_EQ(list(kSavedProfilesTitle)->currentIndex().data().toString(), u"Gig 2"_s);
}

TEST_F(WindowKeys, theDeleteButtonOfTheLastProfileLeavesTheFocusToTheList) {
    open();
    focus(kDeleteProfile);
    press(Qt::Key_Return);
    waitForTasks();
    settle();
    EXPECT_EQ(list(kSavedProfilesTitle)->model()->rowCount(), 1);
    EXPECT_EQ(focusedName(), kSavedProfilesTitle);
}

TEST_F(WindowKeys, theStartupItems) {
    for (int number = 0; number < 40; ++number) {
        loginItems.items.append(
            {u"Item %1"_s.arg(number, 2, 10, QChar(u'0')), u"/Applications/Item %1.app"_s.arg(number)});
    }
    session->workingCopy.addLaunchItem({u"Live"_s, u"/Applications/Live.app"_s, false});
    QCoro::waitFor(session->system.discoverStartupItems(SystemManager::StartupRefresh::UseCache));
    open();
    click(u"Startup Optimization"_s);
    processEventsUntil([this] { return !session->startupEditing.isRefreshing(); });
    settle();
    focus(u"Search startup items…"_s);
    press(Qt::Key_Down);
    ASSERT_EQ(focusedName(), u"Startup Items"_s);
    QAbstractItemView* const items = list(u"Startup Items"_s);
    const auto current = [items] { return items->currentIndex().data().toString(); };

    press(Qt::Key_End);
    EXPECT_EQ(current(), u"Disable Network on Startup"_s);
    press(Qt::Key_Up);
    EXPECT_EQ(current(), u"Live"_s) << "past the heading";
    press(Qt::Key_Down);
    EXPECT_EQ(current(), u"Disable Network on Startup"_s);
    int pages = 0;
    for (; current() != u"Chat"_s && pages < 20; ++pages) {
        press(Qt::Key_PageUp);
        EXPECT_TRUE(showsCurrent(items)) << current().toStdString();
    }
    EXPECT_GT(pages, 1);
    for (; current() != u"Disable Network on Startup"_s && pages > 0; --pages) {
        press(Qt::Key_PageDown);
        EXPECT_TRUE(showsCurrent(items)) << current().toStdString();
    }
    EXPECT_EQ(current(), u"Disable Network on Startup"_s);
    press(Qt::Key_Home);
    EXPECT_EQ(current(), u"Chat"_s);

    press(Qt::Key_Space);
    EXPECT_EQ(items->currentIndex().data(Qt::CheckStateRole), Qt::Unchecked);
    EXPECT_EQ(session->workingCopy.startup().disabledLoginNames(), QSet<QString>{u"Chat"_s});
    press(Qt::Key_Menu);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr) << "there is nothing else to do with it";
    press(Qt::Key_L);
    EXPECT_EQ(current(), u"Live"_s);
    press(Qt::Key_Menu);
    QWidget* const menu = QApplication::activePopupWidget();
    ASSERT_NE(menu, nullptr);
    QTest::keyClick(menu, Qt::Key_Down);
    QTest::keyClick(menu, Qt::Key_Return);
    EXPECT_EQ(session->workingCopy.startup().startupLaunchItems().first().hidden, true);
    EXPECT_EQ(focusedName(), u"Startup Items"_s);
    press(Qt::Key_Delete);
    EXPECT_EQ(session->workingCopy.startup().startupLaunchItems(), QList<StartupLaunchItem>());
    EXPECT_EQ(focusedName(), u"Startup Items"_s);
    EXPECT_EQ(current(), u"Disable Network on Startup"_s) << "the next row";
    press(Qt::Key_Escape);
    settle();
    EXPECT_EQ(focusedName(), u"Startup Optimization"_s);
}

// ---- Rows, switches and icons

TEST_F(WindowKeys, returnAndSpaceFollowARowAndComeBackToIt) {
    open();
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
        focus(u"System Tweaks"_s);
        press(key);
        settle();
        EXPECT_EQ(focusedName(), u"Performance"_s) << "the way back";
        press(key);
        settle();
        EXPECT_EQ(focusedName(), u"System Tweaks"_s);
    }
}

TEST_F(WindowKeys, spaceTogglesASwitch) {
    showTweaks();
    focus(u"Deactivate Siri Core Services"_s);
    press(Qt::Key_Space);
    EXPECT_TRUE(session->workingCopy.settings().siri);
    press(Qt::Key_Space);
    EXPECT_FALSE(session->workingCopy.settings().siri);
}

TEST_F(WindowKeys, anIconIsChosenInItsGrid) {
    showTweaks();
    focus(u"Icon of Deactivate Siri Core Services"_s);
    press(Qt::Key_Return);
    EXPECT_EQ(focusedName(), kSearchIconLabel);
    press(Qt::Key_Down);
    ASSERT_EQ(focusedName(), kSelectIcon);
    auto* const icons = qobject_cast<QAbstractItemView*>(mainWindow->focusWidget());
    ASSERT_NE(icons, nullptr);
    icons->setCurrentIndex(icons->model()->index(0, 0));
    press(Qt::Key_Right);
    EXPECT_EQ(icons->currentIndex().row(), 1);
    press(Qt::Key_Down);
    EXPECT_EQ(icons->currentIndex().row(), 9);
    const QString chosen = icons->currentIndex().data().toString();
    press(Qt::Key_Return);
    settle();
    EXPECT_EQ(session->workingCopy.settings().customIcons.value(u"siri"_s), chosen);
    EXPECT_EQ(focusedName(), u"Icon of Deactivate Siri Core Services"_s);
}

TEST_F(WindowKeys, tabStaysInAPopoverUntilEscapeClosesIt) {
    showTweaks();
    focus(u"Icon of Deactivate Siri Core Services"_s);
    press(Qt::Key_Space);
    for (int round = 0; round < 2; ++round) {
        press(Qt::Key_Tab);
        EXPECT_EQ(focusedName(), kSelectIcon);
        press(Qt::Key_Tab);
        EXPECT_EQ(focusedName(), kSearchIconLabel);
    }
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(focusedName(), kSelectIcon);
    press(Qt::Key_Escape);
    settle();
    EXPECT_EQ(focusedName(), u"Icon of Deactivate Siri Core Services"_s);
}

// ---- Sheets and alerts

TEST_F(WindowKeys, escapeClosesAReviewAndTheFocusGoesBack) {
    showReview();
    EXPECT_EQ(focusedName(), u"Apply Profile"_s);
    press(Qt::Key_Escape);
    waitForTasks();
    settle();
    EXPECT_FALSE(reviews.request().has_value());
    EXPECT_EQ(focusedName(), kSavedProfilesTitle);
}

TEST_F(WindowKeys, returnAppliesAndReturnIsDone) {
    showReview();
    press(Qt::Key_Return);
    waitFor(ApplyReview::State::Finished);
    settle();
    EXPECT_EQ(focusedName(), kDone);
    press(Qt::Key_Return);
    waitForTasks();
    settle();
    EXPECT_FALSE(reviews.request().has_value());
    EXPECT_EQ(focusedName(), kSavedProfilesTitle);
}

TEST_F(WindowKeys, returnPressesTheDefaultButtonAlsoWhereAnotherHasTheFocus) {
    showReview();
    focus(kClose);
    press(Qt::Key_Return);
    waitFor(ApplyReview::State::Finished);
}

TEST_F(WindowKeys, aLongReviewIsReadToItsEndByKeys) {
    UnifiedProfile profile = numberedProfile(9, u"Long"_s);
    for (int number = 0; number < 40; ++number) {
        StartupItem item;
        item.id = u"login:Chat %1"_s.arg(number);
        item.name = u"Chat %1"_s.arg(number);
        item.kind = StartupItemKind::loginApp;
        item.runsAtStartup = false;
        profile.startup.items.append(item);
        loginItems.items.append({item.name, u"/Applications/%1.app"_s.arg(item.name)});
    }
    open();
    reviews.presentProfile(profile, window, {});
    waitFor(ApplyReview::State::Reviewing);
    settle();
    const auto* const sheet = mainWindow->findChild<ApplyReviewSheet*>();
    const QScrollBar& bar = *sheet->findChild<QScrollArea*>()->verticalScrollBar();
    ASSERT_GT(bar.maximum(), 100);
    press(Qt::Key_PageDown);
    EXPECT_GT(bar.value(), 0);
    press(Qt::Key_End);
    EXPECT_EQ(bar.value(), bar.maximum());
    press(Qt::Key_PageUp);
    EXPECT_LT(bar.value(), bar.maximum());
    press(Qt::Key_Home);
    EXPECT_EQ(bar.value(), 0);
}

TEST_F(WindowKeys, returnIsNeverDestructiveInAnAlert) {
    const Alert question{u"Delete?"_s, {}, {u"Delete"_s, u"Cancel"_s}, 1, 0, AlertStyle::Warning};
    const auto answerTo = [&question](const QList<Qt::Key>& keys) {
        const QPointer<AlertDialog> dialog(new AlertDialog(question)); // goes when it is answered
        int answer = -1;
        QObject::connect(dialog, &AlertDialog::answered, [&answer](int button) { answer = button; });
        dialog->show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(dialog));
        for (const Qt::Key key : keys) {
            QTest::keyClick(dialog->windowHandle(), key);
        }
        return answer;
    };
    EXPECT_EQ(answerTo({Qt::Key_Return}), 1);
    EXPECT_EQ(answerTo({Qt::Key_Tab, Qt::Key_Return}), 1) << "although the other has the focus";
    EXPECT_EQ(answerTo({Qt::Key_Escape}), 1);
    EXPECT_EQ(answerTo({Qt::Key_Tab, Qt::Key_Space}), 0);
}

// ---- The program's own keys

TEST_F(WindowKeys, theWindowClosesMinimizesAndQuits) {
    open();
    QSignalSpy quits(mainWindow.get(), &MainWindow::quitRequested);
    press(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_EQ(quits.count(), 1);
    press(Qt::Key_M, Qt::ControlModifier);
    EXPECT_TRUE(mainWindow->isMinimized());
    mainWindow->showNormal();
    QSignalSpy closes(mainWindow.get(), &MainWindow::closed);
    press(Qt::Key_W, Qt::ControlModifier);
    EXPECT_EQ(closes.count(), 1);
}

TEST_F(WindowKeys, theSettingsHaveAKeyWhereverOneIs) {
    showTweaks();
    focus(u"Deactivate Siri Core Services"_s);
    press(Qt::Key_Comma, Qt::ControlModifier);
    settle();
    EXPECT_EQ(mainWindow->contentView().selectedTab(), Tab::settings);
    EXPECT_EQ(focusedName(), u"Follow macOS"_s);
    waitForTasks();
}

TEST_F(WindowKeys, theKeyOfTheSettingsShowsNothingBehindTheLockOrUnderASheet) {
    enableLock();
    open();
    lock->lockIfEnabled();
    settle();
    press(Qt::Key_Comma, Qt::ControlModifier);
    settle();
    EXPECT_EQ(mainWindow->contentView().selectedTab(), Tab::performance);
    EXPECT_EQ(focusedName(), u"Password"_s);
    ASSERT_TRUE(lock->unlockWithPassword(kPassword));
    settle();
    reviews.presentProfile(live, window, {});
    waitFor(ApplyReview::State::Reviewing);
    settle();
    press(Qt::Key_Comma, Qt::ControlModifier);
    EXPECT_EQ(mainWindow->contentView().selectedTab(), Tab::performance);
    press(Qt::Key_Escape);
    waitForTasks();
    settle();
    press(Qt::Key_Comma, Qt::ControlModifier);
    EXPECT_EQ(mainWindow->contentView().selectedTab(), Tab::settings);
    waitForTasks();
}

TEST_F(WindowKeys, undoIsACommandWhereNoFieldHasTheFocus) {
    open();
    alerts.hold();
    focus(kSavedProfilesTitle);
    press(Qt::Key_Z, Qt::ControlModifier);
    processEventsUntil([this] { return alerts.openCount() == 1; });
    EXPECT_TRUE(questions().last().startsWith(u"! Undo Performance Tweaks? |"_s));
    alerts.answer(1);
    waitForTasks();
}

TEST_F(WindowKeys, undoBelongsToAFieldAlsoToAnEmptyOne) {
    showTweaks();
    focus(u"Icon of Deactivate Siri Core Services"_s);
    press(Qt::Key_Space);
    press(Qt::Key_Z, Qt::ControlModifier);
    press(Qt::Key_B);
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(mainWindow->focusWidget()->property("text").toString(), QString());
    press(Qt::Key_Z, Qt::ControlModifier);
    settle();
    EXPECT_EQ(questions(), QStringList());
    EXPECT_EQ(session->tasks.count(), 0);
}

TEST_F(WindowKeys, undoBelongsToThePasswordOfTheLock) {
    enableLock();
    open();
    lock->lockIfEnabled();
    settle();
    ASSERT_EQ(focusedName(), u"Password"_s);
    steps.clear();
    press(Qt::Key_Z, Qt::ControlModifier);
    press(Qt::Key_B);
    press(Qt::Key_Z, Qt::ControlModifier);
    settle();
    EXPECT_EQ(questions(), QStringList());
    EXPECT_EQ(session->tasks.count(), 0);
}

TEST_F(WindowKeys, theFocusComesBackFromTheLock) {
    enableLock();
    open();
    focus(u"System Tweaks"_s);
    lock->lockIfEnabled();
    settle();
    ASSERT_EQ(focusedName(), u"Password"_s);
    for (const QChar character : kPassword) {
        QTest::keyClick(mainWindow->windowHandle(), character.toLatin1());
    }
    press(Qt::Key_Return);
    settle();
    EXPECT_TRUE(lock->isUnlocked());
    EXPECT_EQ(focusedName(), u"System Tweaks"_s);
}

TEST_F(WindowKeys, whatIsUnderTheOverlayIsOutOfReachAndComesBack) {
    open();
    mainWindow->contentView().setSelectedTab(Tab::logs);
    focus(u"Log"_s);
    {
        const Turnstile::Hold busy = session->turnstile.busy(u"Working…"_s);
        settle();
        EXPECT_FALSE(named(u"Log"_s)->isEnabled());
        EXPECT_EQ(focusedName(), QString());
        press(Qt::Key_Tab);
        EXPECT_EQ(focusedName(), u"Sidebar"_s);
        mainWindow->focusWidget()->clearFocus();
    }
    settle();
    EXPECT_EQ(focusedName(), u"Log"_s);
}

} // namespace quorvane
