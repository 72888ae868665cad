// What the simulated displays and those in memory have in common.

#include "fakes/EventLoop.h"
#include "fakes/MemoryDisplays.h"
#include "fakes/Pictures.h"
#include "fakes/SimulatedMacFolder.h"
#include "platform/simulated/SimulatedDisplays.h"

#include <gtest/gtest.h>

#include <QCryptographicHash>

#include <functional>
#include <memory>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kBlue = u"/Users/alex/Pictures/blue.png"_s;
const QString kRed = u"/Users/alex/Pictures/red.png"_s;

/// Displays, and what is behind them: a built-in one that shows blue.png, and a monitor without a number of which the
/// system doesn't say what it shows.
class DisplaysSubject {
public:
    virtual ~DisplaysSubject() = default;
    virtual Displays& displays() = 0;
    virtual void addFile(const QString& path, const QByteArray& bytes) = 0;
    virtual void unplugBuiltIn() = 0;
    virtual void refuse(const QString& error) = 0;
    virtual void showAnotherSpace() = 0;
    virtual void wake() = 0;
    /// Whether the built-in one draws its file as it is now.
    virtual bool drawsTheFileOfNow() = 0;
};

class SimulatedDisplaysSubject final : public DisplaysSubject {
public:
    SimulatedDisplaysSubject() {
        change([](macsim::Json& state) {
            state = {{{"number", 7},
                      {"localizedName", "Color LCD"},
                      {"frame", {0, 0, 1280, 800}},
                      {"scale", 2},
                      {"picture", "/Users/alex/Pictures/blue.png"}},
                     {{"localizedName", "Booth"}, {"frame", {1280, -20, 1920.5, 1080}}}};
        });
    }
    Displays& displays() override { return m_displays; }
    void addFile(const QString& path, const QByteArray& bytes) override {
        const macsim::Volume volume = m_mac.mac.volume(macsim::Actor::User);
        volume.createFolders(path.left(path.lastIndexOf(u'/')));
        volume.write(path, bytes);
    }
    void unplugBuiltIn() override {
        change([](macsim::Json& state) { state[0]["isConnected"] = false; });
    }
    void refuse(const QString& error) override {
        change([&](macsim::Json& state) { state[0]["settingFails"] = error.toStdString(); });
    }
    void showAnotherSpace() override {
        m_mac.mac.state().update("spaces", [](macsim::Json& state) { state = {{"visible", 2}}; });
    }
    void wake() override {
        m_mac.mac.state().update("session", [](macsim::Json& state) { state = {{"wakes", 1}}; });
    }
    bool drawsTheFileOfNow() override {
        const QString path = m_displays.desktopPicture(m_displays.screens().first()).value();
        const QByteArray content = m_mac.mac.volume(macsim::Actor::User).read(path);
        const QByteArray digest = QCryptographicHash::hash(content, QCryptographicHash::Sha256).toHex();
        return m_mac.mac.state().read("drawnPictures").at(path.toStdString()).get<std::string>() ==
               digest.toStdString();
    }

private:
    void change(const std::function<void(macsim::Json&)>& change) { m_mac.mac.state().update("displays", change); }

    macsim::SimulatedMacFolder m_mac;
    SimulatedDisplays m_displays{m_mac.mac};
};

class MemoryDisplaysSubject final : public DisplaysSubject {
public:
    MemoryDisplaysSubject() {
        m_displays.connected = {{{7, u"Color LCD"_s, {0, 0, 1280, 800}, 2}, kBlue, std::nullopt},
                                {{std::nullopt, u"Booth"_s, {1280, -20, 1920.5, 1080}, 1}, std::nullopt, std::nullopt}};
    }
    Displays& displays() override { return m_displays; }
    void addFile(const QString& path, const QByteArray& bytes) override { m_files.addFile(path, bytes); }
    void unplugBuiltIn() override { m_displays.connected.removeFirst(); }
    void refuse(const QString& error) override { m_displays.connected.first().settingError = error; }
    void showAnotherSpace() override { m_displays.tell(DesktopChange::Space); }
    void wake() override { m_displays.tell(DesktopChange::Other); }
    bool drawsTheFileOfNow() override {
        const MemoryDisplays::Connected& builtIn = m_displays.connected.first();
        return m_displays.drawnOn(builtIn) == m_files.read(*builtIn.picture);
    }

private:
    MemoryFileManager m_files;
    MemoryDisplays m_displays{m_files};
};

template <typename Subject>
std::unique_ptr<DisplaysSubject> make() {
    return std::make_unique<Subject>();
}

class DisplaysContract : public ::testing::TestWithParam<std::unique_ptr<DisplaysSubject> (*)()> {
protected:
    DisplaysContract() {
        subject->addFile(kBlue, pngFile(plainPicture({20, 10}, Qt::blue)));
        subject->addFile(kRed, pngFile(plainPicture({20, 10}, Qt::red)));
    }
    Display builtIn() const { return displays.screens().at(0); }
    Display monitor() const { return displays.screens().at(1); }
    QImage load(const QString& path) {
        QFuture<QImage> picture = displays.loadPicture(path);
        processEventsUntil([&picture] { return picture.isFinished(); });
        return picture.result();
    }

    std::unique_ptr<DisplaysSubject> subject = GetParam()();
    Displays& displays = subject->displays();
};

} // namespace

TEST_P(DisplaysContract, connectedDisplaysAreListedInTheirOrder) {
    EXPECT_EQ(displays.screens(), (QList<Display>{{7, u"Color LCD"_s, {0, 0, 1280, 800}, 2},
                                                  {std::nullopt, u"Booth"_s, {1280, -20, 1920.5, 1080}, 1}}));
    subject->unplugBuiltIn();
    ASSERT_EQ(displays.screens().size(), 1);
    EXPECT_EQ(displays.screens().first().localizedName, u"Booth"_s);
}

TEST_P(DisplaysContract, aDisplayShowsWhatWasSet) {
    EXPECT_EQ(displays.desktopPicture(builtIn()), kBlue);
    EXPECT_EQ(displays.desktopPicture(monitor()), std::nullopt);
    EXPECT_EQ(displays.setDesktopPicture(monitor(), kRed), std::nullopt);
    EXPECT_EQ(displays.desktopPicture(monitor()), kRed);
    EXPECT_EQ(displays.desktopPicture(builtIn()), kBlue);
}

TEST_P(DisplaysContract, aRefusedPictureLeavesTheOldOne) {
    subject->refuse(u"It is locked."_s);
    EXPECT_EQ(displays.setDesktopPicture(builtIn(), kRed), u"It is locked."_s);
    EXPECT_EQ(displays.desktopPicture(builtIn()), kBlue);
}

TEST_P(DisplaysContract, anUnpluggedDisplayShowsNothingAndTakesNothing) {
    const Display gone = builtIn();
    subject->unplugBuiltIn();
    EXPECT_EQ(displays.desktopPicture(gone), std::nullopt);
    EXPECT_NE(displays.setDesktopPicture(gone, kRed), std::nullopt);
}

TEST_P(DisplaysContract, aPathThatWasSetBeforeIsDrawnAsItWas) {
    EXPECT_EQ(displays.setDesktopPicture(builtIn(), kRed), std::nullopt);
    EXPECT_TRUE(subject->drawsTheFileOfNow());
    subject->addFile(kRed, pngFile(plainPicture({20, 10}, Qt::green)));
    EXPECT_EQ(displays.setDesktopPicture(builtIn(), kRed), std::nullopt);
    EXPECT_FALSE(subject->drawsTheFileOfNow());
    EXPECT_EQ(displays.setDesktopPicture(builtIn(), kBlue), std::nullopt);
    EXPECT_TRUE(subject->drawsTheFileOfNow());
    EXPECT_EQ(displays.setDesktopPicture(builtIn(), kRed), std::nullopt);
    EXPECT_FALSE(subject->drawsTheFileOfNow()) << "also after another one";
}

TEST_P(DisplaysContract, theMomentsToLookAgainAreTold) {
    QList<DesktopChange> told;
    auto observation = displays.observe([&told](DesktopChange change) { told.append(change); });
    subject->wake();
    processEventsUntil([&told] { return !told.isEmpty(); });
    EXPECT_EQ(told, QList<DesktopChange>{DesktopChange::Other});
    subject->showAnotherSpace();
    processEventsUntil([&told] { return told.size() > 1; });
    EXPECT_EQ(told, (QList<DesktopChange>{DesktopChange::Other, DesktopChange::Space}));
}

TEST_P(DisplaysContract, nothingIsToldOnceTheObservationHasEnded) {
    int ended = 0;
    int later = 0;
    std::unique_ptr<NotificationObservation> once;
    once = displays.observe([&](DesktopChange) {
        once.reset();
        ++ended;
    });
    auto never = displays.observe([&ended](DesktopChange) { ended += 100; });
    const auto other = displays.observe([&later](DesktopChange) { ++later; });
    never.reset();
    subject->wake();
    processEventsUntil([&] { return ended == 1 && later == 1; });
    subject->showAnotherSpace();
    processEventsUntil([&later] { return later == 2; });
    EXPECT_EQ(ended, 1);
}

TEST_P(DisplaysContract, aPictureIsLoadedInItsNaturalSize) {
    EXPECT_EQ(load(kRed).size(), QSize(20, 10));
    EXPECT_EQ(load(kRed).pixelColor(3, 3), QColor(Qt::red));
}

TEST_P(DisplaysContract, whatCantBeReadIsNoPicture) {
    subject->addFile(u"/Users/alex/Pictures/text.jpg"_s, "text");
    EXPECT_TRUE(load(u"/Users/alex/Pictures/text.jpg"_s).isNull());
    EXPECT_TRUE(load(u"/Users/alex/Pictures/missing.png"_s).isNull());
    EXPECT_TRUE(load(u"/Users/alex/Pictures"_s).isNull());
}

INSTANTIATE_TEST_SUITE_P(Subjects, DisplaysContract,
                         ::testing::Values(&make<SimulatedDisplaysSubject>, &make<MemoryDisplaysSubject>));

TEST(SimulatedDisplays, rememberHowAPictureWasSet) {
    macsim::SimulatedMacFolder mac;
    mac.mac.state().update("displays", [](macsim::Json& state) {
        state = {{{"number", 1}, {"frame", {0, 0, 10, 10}}}};
    });
    mac.mac.volume(macsim::Actor::User).write(u"/Users/alex/a.png"_s, "a");
    SimulatedDisplays displays(mac.mac);
    EXPECT_EQ(displays.setDesktopPicture(displays.screens().first(), u"/Users/alex/a.png"_s), std::nullopt);
    EXPECT_EQ(mac.mac.state().read("displays")[0], (macsim::Json{{"number", 1},
                                                                 {"frame", {0, 0, 10, 10}},
                                                                 {"picture", "/Users/alex/a.png"},
                                                                 {"scaling", 3},
                                                                 {"allowClipping", true}}));
}

TEST(SimulatedDisplays, endAnAnimationWithAnyPicture) {
    const QString standIn = u"/System/Library/CoreServices/DefaultDesktop.heic"_s;
    macsim::SimulatedMacFolder mac;
    mac.mac.state().update("displays", [](macsim::Json& state) {
        state = {{{"number", 1}, {"frame", {0, 0, 10, 10}}, {"animation", "Sonoma Horizon"}}};
    });
    SimulatedDisplays displays(mac.mac);
    EXPECT_EQ(displays.desktopPicture(displays.screens().first()), standIn);
    EXPECT_EQ(displays.setDesktopPicture(displays.screens().first(), standIn), std::nullopt);
    EXPECT_EQ(displays.desktopPicture(displays.screens().first()), standIn);
    EXPECT_FALSE(mac.mac.state().read("displays")[0].contains("animation")) << "the same file, but still";
}

TEST(SimulatedDisplays, readAndChangeTheVisibleSpaceAlone) {
    macsim::SimulatedMacFolder mac;
    mac.mac.state().update("displays", [](macsim::Json& state) {
        state = {{{"number", 1}, {"frame", {0, 0, 10, 10}}, {"picture", "/Users/alex/first.png"}}};
    });
    mac.mac.state().update("spaces", [](macsim::Json& state) { state = {{"visible", 2}}; });
    mac.mac.volume(macsim::Actor::User).write(u"/Users/alex/second.png"_s, "b");
    SimulatedDisplays displays(mac.mac);
    const Display display = displays.screens().first();
    EXPECT_EQ(displays.desktopPicture(display), std::nullopt);
    EXPECT_EQ(displays.setDesktopPicture(display, u"/Users/alex/second.png"_s), std::nullopt);
    EXPECT_EQ(displays.desktopPicture(display), u"/Users/alex/second.png"_s);
    mac.mac.state().update("spaces", [](macsim::Json& state) { state = {{"visible", 1}}; });
    EXPECT_EQ(displays.desktopPicture(display), u"/Users/alex/first.png"_s);
}

TEST(SimulatedDisplays, takeNoPictureThatIsntThere) {
    macsim::SimulatedMacFolder mac;
    mac.mac.state().update("displays", [](macsim::Json& state) {
        state = {{{"number", 1}, {"frame", {0, 0, 10, 10}}}};
    });
    SimulatedDisplays displays(mac.mac);
    EXPECT_EQ(displays.setDesktopPicture(displays.screens().first(), u"/Users/alex/a.png"_s),
              u"The file “a.png” doesn’t exist."_s);
}

TEST(SimulatedDisplays, areNoneOnAMacWithout) {
    macsim::SimulatedMacFolder mac;
    EXPECT_EQ(SimulatedDisplays(mac.mac).screens(), QList<Display>());
}

} // namespace quorvane
