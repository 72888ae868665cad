// What all panels for files promise: those of a simulated Mac's screen, the system's, and those in memory.

#include "app/NativeFilePanels.h"
#include "fakes/EventLoop.h"
#include "fakes/FilePanelUser.h"
#include "fakes/MemoryFileManager.h"
#include "fakes/ScriptedFilePanels.h"
#include "fakes/WindowOnMac.h"
#include "platform/portable/DiskFileManager.h"

#include <QTest>

#include <memory>

namespace quorvane {

namespace {

using PanelChoice = std::optional<QString>;

/// Panels, and who sits before them.
class FilePanelsSubject {
public:
    virtual ~FilePanelsSubject() = default;
    virtual FilePanels& panels() = 0;
    /// A folder in which files may be made.
    virtual QString folder() const = 0;
    /// Chooses in the panel that is open.
    virtual void choose(const QString& path) = 0;
    virtual void dismiss() = 0;
    virtual bool isAnyOpen() const = 0;
};

class ScriptedPanels final : public FilePanelsSubject {
public:
    ScriptedPanels() {
        m_files.createFolders(folder());
        m_panels.hold();
    }
    FilePanels& panels() override { return m_panels; }
    QString folder() const override { return u"/Users/alex/Desktop"_s; }
    void choose(const QString& path) override { m_panels.answer(path); }
    void dismiss() override { m_panels.cancelOpen(); }
    bool isAnyOpen() const override { return m_panels.openCount() > 0; }

private:
    MemoryFileManager m_files;
    ScriptedFilePanels m_panels{m_files};
};

class PanelsOnScreen : public FilePanelsSubject {
public:
    explicit PanelsOnScreen(FilePanels& panels)
        : m_panels(panels) {}
    FilePanels& panels() override { return m_panels; }
    QString folder() const override { return m_folder.path(); }
    void choose(const QString& path) override { enterFileName(path); }
    void dismiss() override { QTest::keyClick(openFilePanel(), Qt::Key_Escape); }
    bool isAnyOpen() const override { return openFilePanel() != nullptr; }

private:
    QTemporaryDir m_folder;
    FilePanels& m_panels;
};

class SimulatedPanels final : public PanelsOnScreen {
public:
    SimulatedPanels()
        : PanelsOnScreen(m_dialogs) {}

private:
    FilePanelDialogs m_dialogs;
};

class NativePanels final : public PanelsOnScreen {
public:
    NativePanels()
        : PanelsOnScreen(m_dialogs) {}

private:
    DiskFileManager m_disk;
    NativeFilePanels m_dialogs{m_disk};
};

class FilePanelsContract : public ::testing::TestWithParam<std::unique_ptr<FilePanelsSubject> (*)()> {
protected:
    FilePanels& panels() { return subject->panels(); }
    QFuture<PanelChoice> saving() { return panels().save(u"Export Log"_s, u"log.txt"_s, FileKind::PlainText); }
    QFuture<PanelChoice> opening() { return panels().open(u"Import Profile"_s, FileKind::Profile); }
    QString inFolder(const QString& name) const { return subject->folder() + u'/' + name; }
    void waitUntilOpen() {
        processEventsUntil([this] { return subject->isAnyOpen(); });
    }
    static void expectEnded(const QFuture<PanelChoice>& panel, const PanelChoice& choice) {
        processEventsUntil([&panel] { return panel.isFinished(); });
        ASSERT_TRUE(panel.isFinished());
        EXPECT_FALSE(panel.isCanceled());
        EXPECT_EQ(panel.result(), choice);
    }

    std::unique_ptr<FilePanelsSubject> subject = GetParam()();
};

template <typename Each>
std::unique_ptr<FilePanelsSubject> makeFilePanels() {
    return std::make_unique<Each>();
}

} // namespace

TEST_P(FilePanelsContract, aNameIsChosenWhileTheEventLoopGoesOnAndNothingIsWrittenByThat) {
    const QFuture<PanelChoice> panel = saving();
    waitUntilOpen();
    EXPECT_FALSE(panel.isFinished());
    subject->choose(inFolder(u"gig.txt"_s));
    expectEnded(panel, inFolder(u"gig.txt"_s));
    EXPECT_FALSE(panels().files().exists(inFolder(u"gig.txt"_s)));
    EXPECT_FALSE(subject->isAnyOpen());
}

TEST_P(FilePanelsContract, whatWasWrittenWhereItWasChosenCanBeOpened) {
    panels().files().writeAtomically(inFolder(u"gig.json"_s), "{}");
    const QFuture<PanelChoice> panel = opening();
    waitUntilOpen();
    subject->choose(inFolder(u"gig.json"_s));
    expectEnded(panel, inFolder(u"gig.json"_s));
    EXPECT_EQ(panels().files().read(inFolder(u"gig.json"_s)), "{}");
}

TEST_P(FilePanelsContract, aPanelThatIsDismissedGivesNoPath) {
    for (const bool saves : {true, false}) {
        const QFuture<PanelChoice> panel = saves ? saving() : opening();
        waitUntilOpen();
        subject->dismiss();
        expectEnded(panel, std::nullopt);
    }
}

TEST_P(FilePanelsContract, allThatAreOpenAreTakenAwayAndALaterOneOpens) {
    const QFuture<PanelChoice> first = saving();
    const QFuture<PanelChoice> second = opening();
    waitUntilOpen();
    panels().cancelOpen();
    expectEnded(first, std::nullopt);
    expectEnded(second, std::nullopt);
    EXPECT_FALSE(subject->isAnyOpen());
    const QFuture<PanelChoice> later = saving();
    waitUntilOpen();
    subject->choose(inFolder(u"later.txt"_s));
    expectEnded(later, inFolder(u"later.txt"_s));
}

TEST_P(FilePanelsContract, theEndTakesAwayWhatIsOpenAndCancelsEachLaterOneAtOnce) {
    const QFuture<PanelChoice> panel = saving();
    waitUntilOpen();
    panels().shutDown();
    expectEnded(panel, std::nullopt);
    for (const QFuture<PanelChoice>& later : {saving(), opening()}) {
        EXPECT_TRUE(later.isFinished());
        expectEnded(later, std::nullopt);
    }
    EXPECT_FALSE(subject->isAnyOpen());
}

INSTANTIATE_TEST_SUITE_P(Of, FilePanelsContract,
                         ::testing::Values(makeFilePanels<ScriptedPanels>, makeFilePanels<SimulatedPanels>,
                                           makeFilePanels<NativePanels>));

} // namespace quorvane
