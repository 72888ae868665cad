// What the system's panels for files are asked for, seen in Qt's own.

#include "app/NativeFilePanels.h"
#include "fakes/EventLoop.h"
#include "fakes/FilePanelUser.h"
#include "fakes/MemoryFileManager.h"

#include <QFileDialog>
#include <QTemporaryDir>
#include <QTest>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

class NativeFilePanelsTest : public ::testing::Test {
protected:
    using Choice = std::optional<QString>;

    static const QFileDialog* panel() { return qobject_cast<const QFileDialog*>(openFilePanel()); }
    static void waitUntilOpen() {
        processEventsUntil([] { return panel() != nullptr; });
    }
    static Choice choiceOf(const QFuture<Choice>& chosen) {
        processEventsUntil([&chosen] { return chosen.isFinished(); });
        return chosen.resultCount() == 1 ? chosen.result() : Choice(u"There is no answer."_s);
    }

    QTemporaryDir folder;
    MemoryFileManager files;
    NativeFilePanels panels{files};
};

} // namespace

TEST_F(NativeFilePanelsTest, aNewFileGetsTheEndingOfItsKind) {
    const QFuture<Choice> log = panels.save(u"Export Log"_s, u"log.txt"_s, FileKind::PlainText);
    enterFileName(folder.filePath(u"gig"_s));
    EXPECT_EQ(choiceOf(log), folder.filePath(u"gig.txt"_s));
    const QFuture<Choice> profile = panels.save(u"Export Profile"_s, u"gig.json"_s, FileKind::Profile);
    enterFileName(folder.filePath(u"gig"_s));
    EXPECT_EQ(choiceOf(profile), folder.filePath(u"gig.json"_s));
}

TEST_F(NativeFilePanelsTest, aPanelSaysWhatItIsForAndShowsItsKindAlone) {
    panels.save(u"Export Log"_s, u"log.txt"_s, FileKind::PlainText);
    waitUntilOpen();
    EXPECT_EQ(panel()->windowTitle(), u"Export Log"_s);
    EXPECT_EQ(panel()->acceptMode(), QFileDialog::AcceptSave);
    EXPECT_EQ(panel()->nameFilters(), QStringList(u"Plain Text (*.txt)"_s));
    panels.cancelOpen();
    panels.open(u"Import Profile"_s, FileKind::Profile);
    waitUntilOpen();
    EXPECT_EQ(panel()->acceptMode(), QFileDialog::AcceptOpen);
    EXPECT_EQ(panel()->nameFilters(), QStringList(u"Profiles (*.json)"_s));
    panels.cancelOpen();
    panels.open(u"Choose an Application"_s, FileKind::Application);
    waitUntilOpen();
    EXPECT_EQ(panel()->nameFilters(), QStringList(u"Applications (*.app)"_s));
}

TEST_F(NativeFilePanelsTest, aPanelThatGoesWithItsWindowWasCancelled) {
    auto window = std::make_unique<QWidget>();
    window->show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    const QFuture<Choice> chosen = panels.open(u"Import Profile"_s, FileKind::Profile);
    waitUntilOpen();
    ASSERT_EQ(panel()->parentWidget(), window.get());
    window.reset();
    EXPECT_EQ(choiceOf(chosen), std::nullopt);
}

TEST_F(NativeFilePanelsTest, aPanelThatGoesByItselfWasCancelled) {
    const QFuture<Choice> chosen = panels.open(u"Import Profile"_s, FileKind::Profile);
    waitUntilOpen();
    delete panel();
    EXPECT_EQ(choiceOf(chosen), std::nullopt);
}

TEST_F(NativeFilePanelsTest, theFilesAreThoseOfTheHost) {
    EXPECT_EQ(&panels.files(), &files);
}

} // namespace quorvane
