// The panels in which whoever sits before a simulated Mac chooses files.

#include "app/simulated/ApplicationDialog.h"
#include "fakes/FilePanelUser.h"
#include "fakes/QuickWindowOnMac.h"
#include "ui/pieces/AppButtons.h"

#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QSignalSpy>
#include <QTest>
#include <QUuid>

#include <array>
#include <functional>

namespace quorvane {

namespace {

using Choice = std::optional<QString>;

/// The program needn't run: its host has the panels.
class FilePanelDialogsTest : public QuickWindowOnMac {
protected:
    static void waitForPanel() {
        processEventsUntil([] { return openFilePanel() != nullptr; });
    }
    static Choice ended(const QFuture<Choice>& future) {
        processEventsUntil([&future] { return future.isFinished(); });
        return future.isFinished() ? future.result() : u"(the panel is still open)"_s;
    }
    FilePanels& filePanels() { return host->host().filePanels; }
    QFuture<Choice> saving() { return filePanels().save(u"Export Log"_s, u"quorvane_log.txt"_s, FileKind::PlainText); }
    QString onDisk(const QString& name) const { return folder.path() + u'/' + name; }
};

} // namespace

TEST_F(FilePanelDialogsTest, aNameOnThisComputerIsChosen) {
    const QFuture<Choice> choice = saving();
    waitForPanel();
    EXPECT_EQ(openFilePanel()->windowTitle(), u"Export Log"_s);
    EXPECT_EQ(openFilePanel()->findChild<QLineEdit*>(u"fileNameEdit"_s)->text(), u"quorvane_log.txt"_s);
    enterFileName(onDisk(u"log.txt"_s));
    EXPECT_EQ(ended(choice), onDisk(u"log.txt"_s));
    EXPECT_FALSE(QFile::exists(onDisk(u"log.txt"_s))) << "nothing is written by choosing";
}

TEST_F(FilePanelDialogsTest, aNameWithoutASuffixGetsOne) {
    const QFuture<Choice> choice = saving();
    enterFileName(onDisk(u"log"_s));
    EXPECT_EQ(ended(choice), onDisk(u"log.txt"_s));
}

TEST_F(FilePanelDialogsTest, aFolderIsEnteredAndTheHomeFolderHasItsShortName) {
    ASSERT_TRUE(QDir(folder.path()).mkdir(u"Logs"_s));
    QFuture<Choice> choice = saving();
    enterFileName(onDisk(u"Logs"_s));
    EXPECT_FALSE(choice.isFinished());
    enterFileName(u"log"_s);
    EXPECT_EQ(ended(choice), onDisk(u"Logs/log.txt"_s));

    const QString unused = QUuid::createUuid().toString(QUuid::Id128);
    choice = saving();
    enterFileName(u"~/"_s + unused);
    EXPECT_EQ(ended(choice), QDir::homePath() + u'/' + unused + u".txt"_s);
}

TEST_F(FilePanelDialogsTest, anExistingFileIsOnlyReplacedWhenThatIsWanted) {
    QFile file(onDisk(u"log.txt"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    const QFuture<Choice> choice = saving();
    enterFileName(onDisk(u"log.txt"_s));
    const ShownAlert question{u"“log.txt” already exists. Do you want to replace it?"_s,
                              u"A file with that name is there already. Replacing it overwrites what it holds."_s,
                              {u"Replace"_s, u"Cancel"_s},
                              u"Cancel"_s};
    answerByKey(question, Qt::Key_Return);
    EXPECT_FALSE(choice.isFinished());
    enterFileName(onDisk(u"log.txt"_s));
    answerAlert(question.title, u"Replace"_s);
    EXPECT_EQ(ended(choice), onDisk(u"log.txt"_s));
}

TEST_F(FilePanelDialogsTest, aPanelIsCancelledByItsKeyByTheProgramAndByItsEnd) {
    QFuture<Choice> choice = saving();
    waitForPanel();
    QTest::keyClick(openFilePanel(), Qt::Key_Escape);
    EXPECT_EQ(ended(choice), std::nullopt);

    choice = saving();
    waitForPanel();
    filePanels().cancelOpen();
    EXPECT_EQ(ended(choice), std::nullopt);

    choice = saving();
    waitForPanel();
    filePanels().shutDown();
    EXPECT_EQ(ended(choice), std::nullopt);
    EXPECT_EQ(openFilePanel(), nullptr);
    EXPECT_EQ(ended(saving()), std::nullopt);
    EXPECT_EQ(ended(filePanels().open(u"Add Application"_s, FileKind::Application)), std::nullopt);
}

TEST_F(FilePanelDialogsTest, theQuestionGoesWithItsPanel) {
    QFile file(onDisk(u"log.txt"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    const QFuture<Choice> choice = saving();
    enterFileName(onDisk(u"log.txt"_s));
    processEventsUntil([] { return !alertTitle().isEmpty(); });
    filePanels().cancelOpen();
    EXPECT_EQ(ended(choice), std::nullopt);
    EXPECT_EQ(alertTitle(), QString());
}

TEST_F(FilePanelDialogsTest, aProfilesFileIsOpenedOnlyWhereThereIsOne) {
    const QFuture<Choice> choice = filePanels().open(u"Import Profile"_s, FileKind::Profile);
    enterFileName(onDisk(u"missing.json"_s));
    EXPECT_FALSE(choice.isFinished());
    QFile file(onDisk(u"gig.json"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    enterFileName(onDisk(u"gig.json"_s));
    EXPECT_EQ(ended(choice), onDisk(u"gig.json"_s));
}

TEST_F(FilePanelDialogsTest, applicationsAreThoseOfTheMac) {
    shell(u"mkdir -p /Applications/Zebra.app/Contents /Applications/Amp.app/Contents"_s);
    const QFuture<Choice> choice = filePanels().open(u"Add Application"_s, FileKind::Application);
    waitForPanel();
    auto* const list = openFilePanel()->findChild<QListWidget*>();
    ASSERT_NE(list, nullptr);
    ASSERT_GE(list->count(), 2);
    EXPECT_EQ(list->findItems(u"Amp"_s, Qt::MatchExactly).size(), 1);
    list->setCurrentItem(list->findItems(u"Zebra"_s, Qt::MatchExactly).first());
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_EQ(ended(choice), u"/Applications/Zebra.app"_s);
}

TEST_F(FilePanelDialogsTest, anApplicationIsChosenOnceHoweverThatIsDone) {
    const std::array<std::function<void(QListWidget&, QAbstractButton&)>, 3> ways{
        [](QListWidget& list, QAbstractButton&) { QTest::keyClick(&list, Qt::Key_Return); },
        [](QListWidget& list, QAbstractButton&) {
            const QPoint place = list.visualItemRect(list.item(0)).center();
            QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, place);
            QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, place);
        },
        [](QListWidget&, QAbstractButton& open) { QTest::mouseClick(&open, Qt::LeftButton); }};
    for (const auto& choose : ways) {
        ApplicationDialog dialog(u"Add Application"_s, {u"/Applications/Amp.app"_s});
        const QSignalSpy chosen(&dialog, &ApplicationDialog::chosen);
        dialog.show();
        choose(*dialog.findChild<QListWidget*>(), *dialog.findChild<AppPrimaryButton*>());
        EXPECT_EQ(chosen.count(), 1);
        EXPECT_FALSE(dialog.isVisible());
    }
}

// ---- In the program

TEST_F(FilePanelDialogsTest, theLogIsExportedToThisComputer) {
    keepBaseline();
    launchAndScan();
    chooseTab(u"Logs"_s);
    letEventsPass();
    click(u"Export Log…"_s);
    enterFileName(onDisk(u"log.txt"_s));
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
    enterFileName(u"/nowhere/log.txt"_s);
    processEventsUntil([] { return alertTitle() == u"Export Error"_s; });
    EXPECT_TRUE(alert().text.startsWith(u"Failed to save log: /nowhere/log.txt: ")) << alert().text.toStdString();
    answerAlert(u"Export Error"_s);
}

TEST_F(FilePanelDialogsTest, anExportGoesOnWithoutTheWindow) {
    keepBaseline();
    launchAndScan();
    chooseTab(u"Logs"_s);
    letEventsPass();
    click(u"Export Log…"_s);
    waitForPanel();
    mainWindow()->close();
    processEventsUntil([] { return mainWindow() == nullptr; });
    enterFileName(onDisk(u"log.txt"_s));
    answerAlert(u"Export Successful"_s);
    EXPECT_TRUE(QFile::exists(onDisk(u"log.txt"_s)));
}

TEST_F(FilePanelDialogsTest, aPanelGoesWithTheProgram) {
    keepBaseline();
    launchAndScan();
    chooseTab(u"Logs"_s);
    letEventsPass();
    click(u"Export Log…"_s);
    waitForPanel();
    quit();
    EXPECT_EQ(openFilePanel(), nullptr);
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
    EXPECT_EQ(openFilePanel(), nullptr);
    letEventsPass();
    waitUntilIdle();
    EXPECT_EQ(alertTitle(), QString());
}

} // namespace quorvane
