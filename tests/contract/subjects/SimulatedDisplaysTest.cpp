// The simulated displays: the contract, and what they keep.

#include "platform/simulated/SimulatedDisplays.h"
#include "contract/DisplaysContract.h"
#include "fakes/SimulatedMacFolder.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>

#include <functional>

namespace quorvane {

namespace {

class SimulatedDisplaysSubject final : public TwoDisplaysSubject {
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
    QString folder() const override { return u"/Users/alex/Pictures"_s; }
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

} // namespace

INSTANTIATE_TEST_SUITE_P(Simulated, DisplaysContract,
                         ::testing::Values(&makeSubject<DisplaysSubject, SimulatedDisplaysSubject>));
INSTANTIATE_TEST_SUITE_P(Simulated, TwoDisplaysContract,
                         ::testing::Values(&makeSubject<TwoDisplaysSubject, SimulatedDisplaysSubject>));

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
    const QString hostFolder =
        mac.mac.hostFolder() + u"/System/Library/CoreServices"_s; // sealed for everybody on the Mac
    ASSERT_TRUE(QDir().mkpath(hostFolder));
    QFile file(hostFolder + u"/DefaultDesktop.heic"_s);
    ASSERT_TRUE(file.open(QFile::WriteOnly));
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
