// The whole program, as its user starts and ends it, on a display of the test's own.

#include "app/ChildProgram.h"
#include "app/DisplayCheck.h"
#include "fakes/ProfileStore.h"
#include "fakes/XDisplay.h"
#include "platform/simulated/SimulatedFileManager.h"
#include "platform/simulated/SimulatedMachine.h"
#include "profiles/ProfileJson.h"
#include "profiles/ProfileManager.h"

#include <QDir>
#include <QElapsedTimer>

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int kUnusableStatus = 2;

class ProgramTest : public ::testing::Test {
protected:
    explicit ProgramTest(const QSize& screen = {1400, 1000})
        : display(screen) {}

    std::unique_ptr<ChildProgram> start(const QStringList& arguments = {}) {
        return start(display.environment(), arguments);
    }
    std::unique_ptr<ChildProgram> start(QProcessEnvironment environment, const QStringList& arguments = {}) const {
        environment.insert(u"XDG_DATA_HOME"_s, folder.filePath(u"data"_s));
        environment.insert(u"XDG_CONFIG_HOME"_s, folder.filePath(u"config"_s));
        environment.insert(u"XDG_RUNTIME_DIR"_s, folder.path());
        environment.insert(u"TMPDIR"_s, folder.path());
        return std::make_unique<ChildProgram>(QStringLiteral(QUORVANE_PROGRAM), arguments, environment);
    }
    std::unique_ptr<ChildProgram> startWithWindow(const QStringList& arguments = {}) {
        auto program = start(arguments);
        processEventsUntil([this, &program] { return !window().isEmpty() || !program->isRunning(); });
        EXPECT_TRUE(program->isRunning()) << program->errors().toStdString();
        return program;
    }
    QString window() const { return display.act({u"search"_s, u"--onlyvisible"_s, u"--name"_s, u"^Quorvane$"_s}); }
    void waitForWindow() const {
        processEventsUntil([this] { return !window().isEmpty(); });
    }
    bool isActive(const QString& id) const { return display.act({u"getactivewindow"_s}) == id; }
    QString dataFolder() const { return folder.filePath(u"data/Quorvane"_s); }
    QStringList savedProfileNames() const {
        const macsim::Mac mac(dataFolder() + u"/Mac"_s);
        SimulatedFileManager files(mac.volume(macsim::Actor::User));
        QStringList names;
        const ProfileListing listing = ProfileManager(files, profilesDirectory(SimulatedMachine(mac))).listing();
        for (const UnifiedProfile& profile : listing.profiles) {
            names.append(profile.name);
        }
        return names;
    }

    /// @return the path of a profile's file on this computer
    QString fileOf(const UnifiedProfile& profile) const {
        QFile file(folder.filePath(profile.name + u".json"_s));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(encodeProfile(profile));
        return file.fileName();
    }

    QTemporaryDir folder;
    XDisplay display;
};

/// Smaller than the window wants to be at least.
class ProgramOnSmallScreen : public ProgramTest {
protected:
    ProgramOnSmallScreen()
        : ProgramTest(screen) {}

    static constexpr QSize screen{800, 600};
};

} // namespace

TEST_F(ProgramTest, theFirstStartMakesTheMacAndASignalEndsItQuietly) {
    const auto program = startWithWindow();
    EXPECT_EQ(savedProfileNames().size(), 5);
    QElapsedTimer time;
    time.start();
    program->signal(SIGTERM); // in the midst of what a start looks at
    EXPECT_EQ(program->status(), 0);
    EXPECT_LT(time.elapsed(), 20000);
    EXPECT_EQ(program->errors(), QByteArray());
}

TEST_F(ProgramTest, aSecondStartRestoresTheFirstOnesWindow) {
    const auto first = startWithWindow();
    const QString id = window();
    display.act({u"windowminimize"_s, u"--sync"_s, id});
    processEventsUntil([this] { return window().isEmpty(); });

    const auto second = start();
    EXPECT_EQ(second->status(), 0);
    EXPECT_EQ(second->errors(), QByteArray());
    processEventsUntil([this, &id] { return window() == id && isActive(id); });
    EXPECT_TRUE(first->isRunning());
}

TEST_F(ProgramTest, aSecondStartOpensAWindowThatWasClosed) {
    display.openStatusArea();
    const auto first = startWithWindow();
    display.act({u"windowactivate"_s, u"--sync"_s, window()});
    display.act({u"key"_s, u"ctrl+w"_s});
    processEventsUntil([this] { return window().isEmpty(); });

    const auto second = start();
    EXPECT_EQ(second->status(), 0);
    waitForWindow();
    EXPECT_TRUE(first->isRunning());
}

TEST_F(ProgramTest, aCheckOfTheStartEndsByItselfOnceTheWindowIsThere) {
    constexpr int starts = 20; // the window is there for a blink, which a look from outside may miss
    QString seen;
    for (int count = 0; count < starts && seen.isEmpty(); ++count) {
        const auto program = start({u"--check-start"_s});
        processEventsUntil([this, &program, &seen] {
            seen = seen.isEmpty() ? window() : seen;
            return !program->isRunning();
        });
        EXPECT_EQ(program->status(), 0);
        EXPECT_EQ(program->errors(), QByteArray());
    }
    EXPECT_FALSE(seen.isEmpty());
}

TEST_F(ProgramTest, aCheckOfTheStartBesideARunningProgramSaysThatItChecksNothing) {
    const auto first = startWithWindow();
    const auto check = start({u"--check-start"_s});
    EXPECT_EQ(check->status(), kUnusableStatus);
    EXPECT_EQ(QString::fromUtf8(check->errors()), u"quorvane: it runs already, so this start wasn’t checked.\n"_s);
    EXPECT_TRUE(first->isRunning());
}

TEST_F(ProgramTest, aProfileFileThatIsOpenedIsImported) {
    const auto first = startWithWindow({fileOf(numberedProfile(41, u"Späte Show"_s))});
    processEventsUntil([this] { return savedProfileNames().contains(u"Späte Show"_s); });

    const auto second = start({fileOf(numberedProfile(42, u"Matinee"_s))});
    EXPECT_EQ(second->status(), 0);
    // It waits until the alerts and sheets that are open are closed.
    processEventsUntil([this] {
        display.act({u"key"_s, u"Escape"_s});
        return savedProfileNames().contains(u"Matinee"_s);
    });
    EXPECT_TRUE(first->isRunning());
}

TEST_F(ProgramTest, closingTheWindowWithoutAStatusAreaEndsIt) {
    const auto program = startWithWindow();
    display.act({u"windowactivate"_s, u"--sync"_s, window()});
    display.act({u"key"_s, u"ctrl+w"_s});
    EXPECT_EQ(program->status(), 0);
    EXPECT_EQ(program->errors(), QByteArray());
}

TEST_F(ProgramTest, afterAKillTheNextStartWorks) {
    const auto killed = startWithWindow();
    killed->signal(SIGKILL);
    killed->waitForEnd();
    processEventsUntil([this] { return window().isEmpty(); });
    const auto next = startWithWindow();
    EXPECT_TRUE(next->isRunning());
    EXPECT_EQ(savedProfileNames().size(), 5);
}

TEST_F(ProgramTest, withoutADisplayItSaysHowToGetOne) {
    QProcessEnvironment environment = display.environment();
    for (const QString& name : {u"DISPLAY"_s, u"QT_QPA_PLATFORM"_s, u"XDG_SESSION_TYPE"_s}) {
        environment.remove(name);
    }
    const auto program = start(environment);
    EXPECT_EQ(program->status(), kUnusableStatus);
    EXPECT_EQ(QString::fromUtf8(program->errors()), noDisplayText({}));
    EXPECT_FALSE(QFileInfo::exists(dataFolder())) << "nothing is made for nobody";
}

TEST_F(ProgramTest, aMacThatCannotBeUsedIsNamedAndLeftAsItIs) {
    const QString mac = dataFolder() + u"/Mac"_s;
    ASSERT_TRUE(QDir().mkpath(mac + u"/Users"_s));
    const auto program = start();
    EXPECT_EQ(program->status(), kUnusableStatus);
    EXPECT_EQ(QString::fromUtf8(program->errors()),
              u"quorvane: The simulated Mac “%1” can’t be used: there is no machine.json in it. It is left as it is. "
              "Move it away or remove it, and start again: a new one is made then.\n"_s.arg(mac));
    EXPECT_EQ(QDir(mac).entryList(QDir::NoDotAndDotDot | QDir::AllEntries), QStringList(u"Users"_s));
}

TEST_F(ProgramOnSmallScreen, theWindowIsNoLargerThanItsScreen) {
    const auto program = startWithWindow();
    const QRect place = display.placeOf(window());
    EXPECT_GT(place.width(), screen.width() / 2);
    EXPECT_LE(place.width(), screen.width());
    EXPECT_LE(place.height(), screen.height());
}

} // namespace quorvane
