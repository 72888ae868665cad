// The log as it is read: by keys and clicks in the real window.

#include "actions/WindowTexts.h"
#include "fakes/HeldThreads.h"
#include "fakes/ShownWindow.h"
#include "ui/QuorvaneStyle.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>

#include <cmath>

namespace quorvane {

namespace {

class LogsViewTest : public ShownWindow {
protected:
    void openLogs() {
        open();
        mainWindow->contentView().setSelectedTab(Tab::logs);
        settle();
    }
    void log(const QString& message) { session->system.log(message); }
    void logNumbered(int count) {
        for (int number = 0; number < count; ++number) {
            log(u"line %1"_s.arg(number));
        }
        settle();
    }
    QListView& lines() const { return *qobject_cast<QListView*>(named(u"Log"_s)); }
    QStringList rows() const {
        QStringList texts;
        for (int row = 0; row < lines().model()->rowCount(); ++row) {
            texts.append(lines().model()->index(row, 0).data().toString());
        }
        return texts;
    }
    bool isInView(int row) const {
        const QRect place = lines().visualRect(lines().model()->index(row, 0));
        return lines().viewport()->rect().contains(place.center().y() > 0 ? QPoint(5, place.center().y())
                                                                          : QPoint(-1, -1));
    }
    bool isLatestInView() const { return isInView(lines().model()->rowCount() - 1); }
    QPushButton* latestButton() const {
        for (QPushButton* const button : mainWindow->findChildren<QPushButton*>()) {
            if (button->isVisible() && button->text().startsWith(u"Latest")) {
                return button;
            }
        }
        return nullptr;
    }
    QAbstractButton& button(const QString& name) const { return *qobject_cast<QAbstractButton*>(named(name)); }
    bool isSeen(const QString& text) const {
        const QList<QWidget*> widgets = mainWindow->findChildren<QWidget*>();
        return std::any_of(widgets.begin(), widgets.end(), [&text](const QWidget* widget) {
            return widget->isVisible() && widget->property("text").toString() == text;
        });
    }
    void search(const QString& text) {
        click(kSearchLogLabel);
        QTest::keyClicks(named(kSearchLogLabel), text);
        waitForSearch();
    }
    /// It goes on in turns of the event loop.
    static void waitForSearch() {
        for (int turn = 0; turn < 200; ++turn) {
            QCoreApplication::processEvents();
        }
    }
    int currentRow() const { return lines().currentIndex().row(); }
    void chooseTag(const QString& shown, const QString& title) { choose(kShownMessages + shown, title); }
    void chooseRun(const QString& shown, const QString& title) {
        choose(kShownRun + shown, title);
        waitForTasks();
        settle();
    }
    QStringList runTitles() {
        click(kShownRun + kThisRun);
        settle();
        QStringList titles;
        for (const QAction* const action : qobject_cast<QMenu*>(QApplication::activePopupWidget())->actions()) {
            titles.append((action->isChecked() ? u"✓ "_s : action->isEnabled() ? QString() : u"– "_s) + action->text());
        }
        QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
        settle();
        return titles;
    }
    void keep(const QString& file, const QByteArray& text) { files.addFile(kLogs + file, text); }
    void choose(const QString& button, const QString& title) {
        click(button);
        settle();
        const auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        ASSERT_NE(menu, nullptr);
        for (QAction* const action : menu->actions()) {
            if (action->text() == title) {
                QTest::mouseClick(QApplication::activePopupWidget(), Qt::LeftButton, {},
                                  menu->actionGeometry(action).center());
                settle();
                return;
            }
        }
        ADD_FAILURE() << "no choice is called " << title.toStdString();
    }
    /// Thin letters are nothing but edges, and these are mixed with what is beneath them.
    static bool isMixed(const QColor& seen, const QColor& ground, const QColor& ink) {
        const double share =
            static_cast<double>(ground.blue() - seen.blue()) / static_cast<double>(ground.blue() - ink.blue());
        const auto isMixture = [share](int mixed, int one, int other) {
            return std::abs(mixed - one - share * (other - one)) < 4;
        };
        return share > 0.4 && isMixture(seen.red(), ground.red(), ink.red()) &&
               isMixture(seen.green(), ground.green(), ink.green());
    }
    const QString kLogs = u"/Users/alex/Library/Logs/Quorvane/"_s;
    const QString kFriday = u"Quorvane 2026-03-13 09.15.00 (4711).log"_s;
    const QString kFridayTitle = u"Mar 13, 2026 at 9:15 AM"_s;
    const QString kThursday = u"Quorvane 2026-03-12 18.00.59 (12).log"_s;
    const QString kThursdayTitle = u"Mar 12, 2026 at 6:00 PM"_s;

    static QString copied() { return QGuiApplication::clipboard()->text(); }
};

} // namespace

// ---- What is shown

TEST_F(LogsViewTest, anEmptyLogSaysSo) {
    openLogs();
    EXPECT_EQ(rows(), QStringList());
    EXPECT_EQ(lines().accessibleDescription(),
              u"No log messages yet. Run an optimization or maintenance task to see output here."_s);
    const QImage empty = lines().grab().toImage();
    log(u" "_s);
    settle();
    EXPECT_NE(lines().grab().toImage(), empty);
    EXPECT_EQ(lines().accessibleDescription(), QString());
}

TEST_F(LogsViewTest, everyMessageIsShownInOrderLineByLine) {
    log(u"Ready."_s);
    openLogs();
    log(u"\n[PROFILE] Applying: Live"_s);
    log(u"  [APPLIED] App Nap\nbypassed"_s);
    EXPECT_EQ(rows(), QStringList(u"Ready."_s)) << "a line costs who logs it nothing";
    settle();
    EXPECT_EQ(rows(), (QStringList{u"Ready."_s, u""_s, u"[PROFILE] Applying: Live"_s, u"  [APPLIED] App Nap"_s,
                                   u"bypassed"_s}));
}

TEST_F(LogsViewTest, controlAndFormattingCharactersAreBlanksAndCopiedAsTheyAre) {
    const QString hostile = u"a\tb\u202Ec\u0007d\u2028e"_s;
    log(hostile);
    openLogs();
    EXPECT_EQ(rows(), QStringList(u"a b c d e"_s));
    click(kCopyLog);
    EXPECT_EQ(copied(), hostile);
}

TEST_F(LogsViewTest, aVeryLongLineIsCutAndCopiedWhole) {
    const QString text(300'000, u'x');
    log(text);
    openLogs();
    EXPECT_LT(rows().first().size(), 3000);
    EXPECT_TRUE(rows().first().endsWith(u'…'));
    click(kCopyLog);
    EXPECT_EQ(copied(), text);
}

TEST_F(LogsViewTest, aWideLineCanBeScrolledTo) {
    openLogs();
    EXPECT_EQ(lines().horizontalScrollBar()->maximum(), 0);
    log(QString(500, u'w'));
    settle();
    EXPECT_GT(lines().horizontalScrollBar()->maximum(), 1000);
    lines().setFocus();
    press(Qt::Key_Right);
    EXPECT_GT(lines().horizontalScrollBar()->value(), 0);
}

TEST_F(LogsViewTest, tagsAreTintedByWhatTheySay) {
    openLogs();
    const auto isWrittenIn = [this](const QColor& ink, const QString& line) {
        session->logActions.clearLog();
        log(line);
        processEventsUntil([this, &line] { return rows() == QStringList(line); });
        const QImage picture = lines().viewport()->grab().toImage();
        const QColor ground = picture.pixelColor(0, 0);
        for (int y = 0; y < 20; ++y) {
            for (int x = 0; x < 80; ++x) {
                if (isMixed(picture.pixelColor(x, y), ground, ink)) {
                    return true;
                }
            }
        }
        return false;
    };
    const Theme& theme = themeOf(mainWindow.get());
    EXPECT_TRUE(isWrittenIn(theme.danger, u"[ERROR] x"_s));
    EXPECT_TRUE(isWrittenIn(theme.warning, u"[MISSING] x"_s));
    EXPECT_TRUE(isWrittenIn(theme.success, u"[APPLIED] x"_s));
    EXPECT_FALSE(isWrittenIn(theme.danger, u"[APPLIED] x"_s));
    EXPECT_FALSE(isWrittenIn(theme.danger, u"[MISSING] x"_s));
    EXPECT_FALSE(isWrittenIn(theme.danger, u"ERROR x"_s));
}

// ---- Following

TEST_F(LogsViewTest, theNewestLineStaysInView) {
    openLogs();
    logNumbered(500);
    EXPECT_TRUE(isLatestInView());
    EXPECT_EQ(latestButton(), nullptr);
    log(u"newest"_s);
    settle();
    EXPECT_TRUE(isLatestInView());
    mainWindow->resize(mainWindow->width(), mainWindow->height() - 60);
    settle();
    EXPECT_TRUE(isLatestInView());
}

TEST_F(LogsViewTest, scrolledUpItStaysAndTheButtonLeadsBack) {
    openLogs();
    logNumbered(500);
    lines().setFocus();
    press(Qt::Key_Home);
    settle();
    EXPECT_TRUE(isInView(0));
    ASSERT_NE(latestButton(), nullptr);
    const int before = latestButton()->text().mid(8).chopped(1).toInt();
    EXPECT_GT(before, 400);
    EXPECT_LT(before, 500);
    logNumbered(10);
    EXPECT_TRUE(isInView(0));
    EXPECT_EQ(latestButton()->text(), u"Latest (%1)"_s.arg(before + 10));
    QTest::mouseClick(latestButton(), Qt::LeftButton);
    settle();
    EXPECT_TRUE(isLatestInView());
    EXPECT_EQ(latestButton(), nullptr);
    EXPECT_EQ(focusedName(), u"Log"_s);
    log(u"newest"_s);
    settle();
    EXPECT_TRUE(isLatestInView());
}

TEST_F(LogsViewTest, scrolledDownAgainItFollowsAgain) {
    openLogs();
    logNumbered(500);
    lines().verticalScrollBar()->setValue(100);
    EXPECT_NE(latestButton(), nullptr);
    lines().verticalScrollBar()->setValue(lines().verticalScrollBar()->maximum() - 2);
    EXPECT_EQ(latestButton(), nullptr);
    logNumbered(10);
    EXPECT_TRUE(isLatestInView());
}

// ---- Filter and search

TEST_F(LogsViewTest, theMessagesOfOneTagCanBeShown) {
    log(u"Ready."_s);
    log(u"  [ERROR] No network"_s);
    log(u"  [OK] On"_s);
    openLogs();
    chooseTag(kAllMessages, u"[ERROR]"_s);
    EXPECT_EQ(rows(), QStringList(u"  [ERROR] No network"_s));
    log(u"  [ERROR] Disk\nfull"_s);
    log(u"  [OK] Off"_s);
    settle();
    EXPECT_EQ(rows(), (QStringList{u"  [ERROR] No network"_s, u"  [ERROR] Disk"_s, u"full"_s}));
    chooseTag(u"[ERROR]"_s, kAllMessages);
    EXPECT_EQ(rows().size(), 6);
}

TEST_F(LogsViewTest, aTagWithoutMessagesAnyMoreSaysSo) {
    log(u"[ERROR] No network"_s);
    openLogs();
    chooseTag(kAllMessages, u"[ERROR]"_s);
    session->logActions.clearLog();
    settle();
    EXPECT_EQ(lines().accessibleDescription(), kNoMessagesOfTag);
    chooseTag(u"[ERROR]"_s, kAllMessages);
    EXPECT_EQ(lines().accessibleDescription(), kNoLogMessages);
}

TEST_F(LogsViewTest, searchFindsTheNextAndThePreviousLineRoundTheLog) {
    for (const QString& line : {u"Kick drum"_s, u"snare"_s, u"KICK again"_s, u"hat"_s}) {
        log(line);
    }
    openLogs();
    EXPECT_FALSE(button(kNextMatch).isEnabled());
    search(u"kick"_s);
    EXPECT_EQ(currentRow(), 0);
    press(Qt::Key_Return);
    waitForSearch();
    EXPECT_EQ(currentRow(), 2);
    click(kNextMatch);
    waitForSearch();
    EXPECT_EQ(currentRow(), 0);
    click(kPreviousMatch);
    waitForSearch();
    EXPECT_EQ(currentRow(), 2);
    named(kSearchLogLabel)->setFocus();
    press(Qt::Key_Return, Qt::ShiftModifier);
    waitForSearch();
    EXPECT_EQ(currentRow(), 0);
    lines().setFocus();
    press(Qt::Key_F3);
    waitForSearch();
    EXPECT_EQ(currentRow(), 2);
    press(Qt::Key_F3, Qt::ShiftModifier);
    waitForSearch();
    EXPECT_EQ(currentRow(), 0);
    EXPECT_FALSE(isSeen(kNoMatch));
}

TEST_F(LogsViewTest, searchSaysWhenThereIsNothing) {
    log(u"Kick"_s);
    openLogs();
    search(u"cowbell"_s);
    EXPECT_TRUE(isSeen(kNoMatch));
    press(Qt::Key_Escape);
    EXPECT_FALSE(isSeen(kNoMatch));
    EXPECT_EQ(qobject_cast<QLineEdit*>(named(kSearchLogLabel))->text(), QString());
    search(u"kick"_s);
    EXPECT_FALSE(isSeen(kNoMatch));
}

TEST_F(LogsViewTest, aFoundLineComesIntoView) {
    log(u"needle"_s);
    openLogs();
    logNumbered(2000);
    EXPECT_FALSE(isInView(0));
    search(u"needle"_s);
    EXPECT_EQ(currentRow(), 0);
    EXPECT_TRUE(isInView(0));
    EXPECT_NE(latestButton(), nullptr);
}

TEST_F(LogsViewTest, theKeyForSearchingLeadsIntoTheField) {
    openLogs();
    lines().setFocus();
    press(Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(focusedName(), kSearchLogLabel);
}

// ---- Copying

TEST_F(LogsViewTest, copyTakesTheSelectedLinesElseAll) {
    log(u"one\n\ttwo"_s);
    log(u"three"_s);
    openLogs();
    click(kCopyLog);
    EXPECT_EQ(copied(), u"one\n\ttwo\nthree"_s);
    lines().setFocus();
    press(Qt::Key_Home);
    press(Qt::Key_Down);
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(copied(), u"\ttwo"_s);
    press(Qt::Key_Down, Qt::ShiftModifier);
    click(kCopyLog);
    EXPECT_EQ(copied(), u"\ttwo\nthree"_s);
    lines().setFocus();
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(copied(), u"one\n\ttwo\nthree"_s);
}

// ---- The actions

TEST_F(LogsViewTest, theSwitchIsBoundToTheDebugMode) {
    session->system.setDebugMode(true);
    openLogs();
    EXPECT_TRUE(button(kVerboseLogging).isChecked());
    click(kVerboseLogging);
    EXPECT_FALSE(session->system.debugMode());
    EXPECT_FALSE(button(kVerboseLogging).isChecked());
    session->system.setDebugMode(true);
    EXPECT_TRUE(button(kVerboseLogging).isChecked());
}

TEST_F(LogsViewTest, clearingLeavesNothingAndTheLogGoesOn) {
    openLogs();
    logNumbered(500);
    lines().verticalScrollBar()->setValue(0);
    click(kClearLog);
    settle();
    EXPECT_EQ(rows(), QStringList());
    EXPECT_EQ(session->system.logMessages(), QStringList());
    EXPECT_EQ(latestButton(), nullptr);
    logNumbered(300);
    EXPECT_EQ(rows().size(), 300);
    EXPECT_TRUE(isLatestInView());
}

TEST_F(LogsViewTest, anEmptyLogIsNotExported) {
    openLogs();
    click(kExportLog);
    waitForTasks();
    EXPECT_EQ(takeSteps().filter(u"!"_s), QStringList(u"! Empty Log | The log is empty. | OK"_s));
    EXPECT_EQ(filePanels.asked, QStringList());
}

TEST_F(LogsViewTest, theLogIsExportedAsItIs) {
    files.createFolders(u"/Users/alex"_s);
    filePanels.choose(u"/Users/alex/log.txt"_s);
    log(u"a\tb"_s);
    openLogs();
    click(kExportLog);
    waitForTasks();
    EXPECT_EQ(files.read(u"/Users/alex/log.txt"_s), "a\tb");
}

TEST_F(LogsViewTest, exportWaitsForWhatRunsAndTheRestIsFree) {
    log(u"Ready."_s);
    openLogs();
    {
        const Turnstile::Hold open = session->turnstile.open();
        EXPECT_FALSE(button(kExportLog).isEnabled());
        EXPECT_TRUE(button(kClearLog).isEnabled());
        EXPECT_TRUE(button(kVerboseLogging).isEnabled());
        EXPECT_TRUE(lines().isEnabled());
    }
    EXPECT_TRUE(button(kExportLog).isEnabled());
}

// ---- Many lines

TEST_F(LogsViewTest, manyLinesAreTakenInAndSearched) {
    constexpr int kMany = 200'000;
    for (int number = 0; number < kMany; ++number) {
        log(number == 1000 ? u"  [ERROR] needle"_s : u"  [OK] line %1"_s.arg(number));
    }
    openLogs();
    processEventsUntil([this] { return lines().model()->rowCount() == kMany && isLatestInView(); });
    QTest::keyClicks(named(kSearchLogLabel), u"needle"_s);
    processEventsUntil([this] { return currentRow() == 1000; });
    EXPECT_TRUE(isInView(1000));
    chooseTag(kAllMessages, u"[ERROR]"_s);
    processEventsUntil([this] { return rows() == QStringList(u"  [ERROR] needle"_s); });
}

// ---- Earlier runs

TEST_F(LogsViewTest, theMenuOfRunsNamesThemByTheirMoments) {
    keep(kThursday, "one\n");
    keep(kFriday, "two\n");
    log(u"Ready."_s);
    openLogs();
    EXPECT_TRUE(files.exists(kLogs + session->runLogWriter.file())) << "is kept, too, and is this run";
    EXPECT_EQ(runTitles(), QStringList({u"✓ This Run"_s, kFridayTitle, kThursdayTitle}));
}

TEST_F(LogsViewTest, withoutAnEarlierRunThereIsThisOne) {
    openLogs();
    EXPECT_EQ(runTitles(), QStringList(u"✓ This Run"_s));
}

TEST_F(LogsViewTest, runsThatCantBeListedSayWhyInTheMenu) {
    files.addFile(kLogs.chopped(1), "a file");
    openLogs();
    EXPECT_EQ(runTitles(), QStringList({u"✓ This Run"_s, u"– Earlier runs can’t be listed: "_s + kLogs.chopped(1) +
                                                             u": Not a directory"_s}));
}

TEST_F(LogsViewTest, anEarlierRunIsShownSearchedAndCopiedInTheSameList) {
    keep(kFriday, "Ready.\n\n[PROFILE] Applying: Live\n  [ERROR] No network\n");
    log(u"of today"_s);
    openLogs();
    chooseRun(kThisRun, kFridayTitle);
    const QStringList lines{u"Ready."_s, QString(), u"[PROFILE] Applying: Live"_s, u"  [ERROR] No network"_s};
    EXPECT_EQ(rows(), lines);
    search(u"network"_s);
    EXPECT_EQ(currentRow(), 3);
    click(kCopyLog);
    EXPECT_EQ(copied(), u"  [ERROR] No network"_s);
    chooseTag(kAllMessages, u"[PROFILE]"_s);
    EXPECT_EQ(rows(), QStringList(u"[PROFILE] Applying: Live"_s));
    log(u"of today, later"_s);
    settle();
    EXPECT_EQ(rows(), QStringList(u"[PROFILE] Applying: Live"_s));
    chooseRun(kFridayTitle, kThisRun);
    EXPECT_EQ(rows(), QStringList({u"of today"_s, u"of today, later"_s}));
    EXPECT_NE(named(kShownMessages + kAllMessages), nullptr) << "another run has tags of its own";
}

TEST_F(LogsViewTest, clearingIsOfThisRunAlone) {
    keep(kFriday, "Ready.\n");
    log(u"of today"_s);
    openLogs();
    chooseRun(kThisRun, kFridayTitle);
    EXPECT_FALSE(button(kClearLog).isEnabled());
    session->logActions.clearLog(); // another part of the program's
    settle();
    EXPECT_EQ(rows(), QStringList(u"Ready."_s));
    chooseRun(kFridayTitle, kThisRun);
    EXPECT_TRUE(button(kClearLog).isEnabled());
    EXPECT_EQ(rows(), QStringList());
    EXPECT_EQ(files.read(kLogs + session->runLogWriter.file()), "of today\n") << "what is kept of it stays";
}

TEST_F(LogsViewTest, whatIsShownIsExported) {
    keep(kFriday, "Ready.\n\n[PROFILE] Applying: Live\n");
    files.createFolders(u"/Users/alex/Desktop"_s);
    filePanels.choose(u"/Users/alex/Desktop/log.txt"_s);
    log(u"of today"_s);
    openLogs();
    chooseRun(kThisRun, kFridayTitle);
    chooseTag(kAllMessages, u"[PROFILE]"_s);
    files.removeAsRoot(kLogs + kFriday); // its turn to go came meanwhile
    click(kExportLog);
    waitForTasks();
    EXPECT_EQ(files.read(u"/Users/alex/Desktop/log.txt"_s), "Ready.\n\n[PROFILE] Applying: Live")
        << "whole, whatever tag is shown";
}

TEST_F(LogsViewTest, aRunThatCantBeReadOrWentSaysSoInThePlaceOfItsLines) {
    keep(kFriday, "Ready.\n");
    keep(kThursday, "Ready.\n");
    files.failOn(MemoryFileManager::Operation::Read, kLogs + kFriday);
    log(u"[ERROR] of today"_s);
    openLogs();
    chooseTag(kAllMessages, u"[ERROR]"_s);
    chooseRun(kThisRun, kFridayTitle);
    EXPECT_EQ(rows(), QStringList());
    EXPECT_TRUE(lines().accessibleDescription().startsWith(u"The log of this run can’t be read: "_s))
        << lines().accessibleDescription().toStdString();
    click(kShownRun + kFridayTitle);
    settle();
    files.removeAsRoot(kLogs + kThursday); // another process has begun a run while the menu was open
    const auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    QTest::mouseClick(QApplication::activePopupWidget(), Qt::LeftButton, {},
                      menu->actionGeometry(menu->actions().at(2)).center());
    waitForTasks();
    EXPECT_EQ(lines().accessibleDescription(), kLogOfRunIsGone);
    EXPECT_TRUE(button(kExportLog).isEnabled());
}

TEST_F(LogsViewTest, anEmptyRunSaysSo) {
    keep(kFriday, {});
    openLogs();
    chooseRun(kThisRun, kFridayTitle);
    EXPECT_EQ(lines().accessibleDescription(), kEmptyLogOfRun);
}

TEST_F(LogsViewTest, aRunThatIsWrittenOnIsReadAnewWhenItIsChosenAgain) {
    keep(kFriday, "one\n");
    openLogs();
    chooseRun(kThisRun, kFridayTitle);
    files.append(kLogs + kFriday, "two\n", FileManager::Flush::No);
    settle();
    EXPECT_EQ(rows(), QStringList(u"one"_s));
    chooseRun(kFridayTitle, kFridayTitle);
    EXPECT_EQ(rows(), QStringList({u"one"_s, u"two"_s}));
}

TEST_F(LogsViewTest, ofTwoRunsTheOneThatWasChosenLastIsShown) {
    keep(kFriday, "friday\n");
    keep(kThursday, "thursday\n");
    openLogs();
    choose(kShownRun + kThisRun, kFridayTitle); // is still being read, or just read
    choose(kShownRun + kFridayTitle, kThursdayTitle);
    choose(kShownRun + kThursdayTitle, kThisRun);
    waitForTasks();
    settle();
    EXPECT_EQ(rows(), QStringList());
    EXPECT_EQ(lines().accessibleDescription(), kNoLogMessages);
    EXPECT_TRUE(button(kExportLog).isEnabled());
}

TEST_F(LogsViewTest, theWindowMayGoWhileARunIsRead) {
    keep(kFriday, "Ready.\n");
    openLogs();
    click(kShownRun + kThisRun);
    settle();
    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    HeldThreads threads;
    menu->actions().last()->trigger();
    EXPECT_EQ(session->tasks.count(), 1);
    EXPECT_EQ(lines().accessibleDescription(), kReadingLogOfRun);
    EXPECT_FALSE(button(kExportLog).isEnabled());
    mainWindow.reset();
    threads.release();
    waitForTasks();
    EXPECT_EQ(session->tasks.count(), 0);
}

} // namespace quorvane
