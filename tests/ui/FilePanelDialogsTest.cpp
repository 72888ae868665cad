// The panels in which whoever sits before a simulated Mac chooses files.

#include "app/simulated/DiskFileDialog.h"
#include "fakes/QuickWindowOnMac.h"
#include "ui/alerts/AlertDialog.h"

#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QTest>

namespace quorvane {

namespace {

using Choice = std::optional<QString>;

/// The program needn't run: its host has the panels.
class FilePanelDialogsTest : public QuickWindowOnMac {
protected:
    static QDialog* openPanel() {
        for (QWidget* const window : QApplication::topLevelWidgets()) {
            auto* const dialog = qobject_cast<QDialog*>(window);
            if (dialog != nullptr && dialog->isVisible() && qobject_cast<AlertDialog*>(window) == nullptr) {
                return dialog;
            }
        }
        return nullptr;
    }
    static void waitForPanel() {
        processEventsUntil([] { return openPanel() != nullptr; });
    }
    static void enterName(const QString& name) {
        waitForPanel();
        auto* const field = openPanel()->findChild<QLineEdit*>(u"fileNameEdit"_s);
        ASSERT_NE(field, nullptr);
        field->setFocus();
        field->selectAll();
        QTest::keyClicks(field, name);
        QTest::keyClick(field, Qt::Key_Return);
    }
    static Choice ended(const QFuture<Choice>& future) {
        processEventsUntil([&future] { return future.isFinished(); });
        return future.result();
    }
    FilePanels& filePanels() { return host->host().filePanels; }
    QFuture<Choice> saving() { return filePanels().save(u"Export Log"_s, u"quorvane_log.txt"_s, FileKind::PlainText); }
    QString onDisk(const QString& name) const { return folder.path() + u'/' + name; }
};

} // namespace

TEST_F(FilePanelDialogsTest, aNameOnThisComputerIsChosen) {
    const QFuture<Choice> choice = saving();
    waitForPanel();
    EXPECT_EQ(openPanel()->windowTitle(), u"Export Log"_s);
    EXPECT_EQ(openPanel()->findChild<QLineEdit*>(u"fileNameEdit"_s)->text(), u"quorvane_log.txt"_s);
    enterName(onDisk(u"log.txt"_s));
    EXPECT_EQ(ended(choice), onDisk(u"log.txt"_s));
    EXPECT_FALSE(QFile::exists(onDisk(u"log.txt"_s))) << "nothing is written by choosing";
}

TEST_F(FilePanelDialogsTest, aNameWithoutASuffixGetsOne) {
    const QFuture<Choice> choice = saving();
    enterName(onDisk(u"log"_s));
    EXPECT_EQ(ended(choice), onDisk(u"log.txt"_s));
}

TEST_F(FilePanelDialogsTest, anExistingFileIsOnlyReplacedWhenThatIsWanted) {
    QFile file(onDisk(u"log.txt"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    const QFuture<Choice> choice = saving();
    enterName(onDisk(u"log.txt"_s));
    const ShownAlert question{u"“log.txt” already exists. Do you want to replace it?"_s,
                              u"A file with that name is there already. Replacing it overwrites what it holds."_s,
                              {u"Replace"_s, u"Cancel"_s},
                              u"Cancel"_s};
    answerByKey(question, Qt::Key_Return);
    EXPECT_FALSE(choice.isFinished());
    enterName(onDisk(u"log.txt"_s));
    answerAlert(question.title, u"Replace"_s);
    EXPECT_EQ(ended(choice), onDisk(u"log.txt"_s));
}

TEST_F(FilePanelDialogsTest, aPanelIsCancelledByItsKeyByTheProgramAndByItsEnd) {
    QFuture<Choice> choice = saving();
    waitForPanel();
    QTest::keyClick(openPanel(), Qt::Key_Escape);
    EXPECT_EQ(ended(choice), std::nullopt);

    choice = saving();
    waitForPanel();
    filePanels().cancelOpen();
    EXPECT_EQ(ended(choice), std::nullopt);

    choice = saving();
    waitForPanel();
    filePanels().shutDown();
    EXPECT_EQ(ended(choice), std::nullopt);
    EXPECT_EQ(openPanel(), nullptr);
    EXPECT_EQ(ended(saving()), std::nullopt);
    EXPECT_EQ(ended(filePanels().open(u"Add Application"_s, FileKind::Application)), std::nullopt);
}

TEST_F(FilePanelDialogsTest, theQuestionGoesWithItsPanel) {
    QFile file(onDisk(u"log.txt"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    const QFuture<Choice> choice = saving();
    enterName(onDisk(u"log.txt"_s));
    processEventsUntil([] { return !alertTitle().isEmpty(); });
    filePanels().cancelOpen();
    EXPECT_EQ(ended(choice), std::nullopt);
    EXPECT_EQ(alertTitle(), QString());
}

TEST_F(FilePanelDialogsTest, aProfilesFileIsOpenedOnlyWhereThereIsOne) {
    const QFuture<Choice> choice = filePanels().open(u"Import Profile"_s, FileKind::Profile);
    enterName(onDisk(u"missing.json"_s));
    EXPECT_FALSE(choice.isFinished());
    QFile file(onDisk(u"gig.json"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    enterName(onDisk(u"gig.json"_s));
    EXPECT_EQ(ended(choice), onDisk(u"gig.json"_s));
}

TEST_F(FilePanelDialogsTest, applicationsAreThoseOfTheMac) {
    shell(u"mkdir -p /Applications/Zebra.app/Contents /Applications/Amp.app/Contents"_s);
    const QFuture<Choice> choice = filePanels().open(u"Add Application"_s, FileKind::Application);
    waitForPanel();
    auto* const list = openPanel()->findChild<QListWidget*>();
    ASSERT_NE(list, nullptr);
    ASSERT_GE(list->count(), 2);
    EXPECT_EQ(list->findItems(u"Amp"_s, Qt::MatchExactly).size(), 1);
    list->setCurrentItem(list->findItems(u"Zebra"_s, Qt::MatchExactly).first());
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_EQ(ended(choice), u"/Applications/Zebra.app"_s);
}

// ---- In the program

TEST_F(FilePanelDialogsTest, theLogIsExportedToThisComputer) {
    keepBaseline();
    launchAndScan();
    chooseTab(u"Logs"_s);
    letEventsPass();
    click(u"Export Log…"_s);
    enterName(onDisk(u"log.txt"_s));
    answerAlert(u"Export Successful"_s);
    QFile file(onDisk(u"log.txt"_s));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(QString::fromUtf8(file.readAll()).startsWith(u"Ready.\n"));
}

TEST_F(FilePanelDialogsTest, anExportThatFailsSaysWhy) {
    keepBaseline();
    launchAndScan();
    chooseTab(u"Logs"_s);
    letEventsPass();
    click(u"Export Log…"_s);
    enterName(u"/nowhere/log.txt"_s);
    processEventsUntil([] { return alertTitle() == u"Export Error"_s; });
    EXPECT_TRUE(alert().text.startsWith(u"Failed to save log: /nowhere/log.txt: ")) << alert().text.toStdString();
    answerAlert(u"Export Error"_s);
}

TEST_F(FilePanelDialogsTest, aPanelGoesWhenTheLockEngages) {
    keepBaseline();
    enableLock();
    launch();
    unlock();
    processEventsUntil([this] { return session().system.hasVerifiedSystem(); });
    waitUntilIdle();
    chooseTab(u"Logs"_s);
    letEventsPass();
    click(u"Export Log…"_s);
    waitForPanel();
    resignActive();
    EXPECT_EQ(openPanel(), nullptr);
    letEventsPass();
    waitUntilIdle();
    EXPECT_EQ(alertTitle(), QString());
}

TEST_F(FilePanelDialogsTest, anOwnerWhoForgotThePasswordGetsInAsTheManualSays) {
    enableLock();
    keepBaseline();
    launch();
    EXPECT_TRUE(isSeen(u"Quorvane is Locked"_s));
    quit();
    shell(u"defaults delete com.quorvane.app QuorvaneAppLockEnabled"_s);
    hasTerminated = false;
    startHost();
    launchAndScan();
    EXPECT_FALSE(isSeen(u"Quorvane is Locked"_s));
    EXPECT_TRUE(isUsable(u"System Tweaks"_s));
}

} // namespace quorvane
