// The simulated displays: the contract, and what they keep.

#include "platform/simulated/SimulatedDisplays.h"
#include "contract/DisplaysContract.h"
#include "fakes/SimulatedMacFolder.h"

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
