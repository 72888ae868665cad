// What a simulated Mac tells all programs, and to whom. The watcher hears of changes in their order: where a change must not
// be heard, a later one that is heard shows that its time is over.

#include "fakes/EventLoop.h"
#include "fakes/SimulatedMacFolder.h"
#include "platform/simulated/SimulatedNotifications.h"
#include "platform/simulated/SimulatedSystemLook.h"
#include "simulator/PreferenceStore.h"

#include <gtest/gtest.h>

#include <memory>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kDesktop = u"com.apple.desktop"_s;
const QString kTheme = u"AppleInterfaceThemeChangedNotification"_s;

class SystemNotificationsContract : public ::testing::Test {
protected:
    /// As another process does it.
    void change(const char* subject) {
        const macsim::StateStore store(mac.hostFolder() + macsim::kStateFolder.toString());
        store.update(subject, [this](macsim::Json& state) { state = macsim::Json{{"change", ++changes}}; });
    }
    /// As the user does it in the settings, or anybody by `defaults`.
    void setStyle(const QString& style) {
        const macsim::PreferenceStore store(mac.mac, mac.mac.volume(macsim::Actor::User));
        store.write({macsim::kGlobalDomain.toString()}, u"AppleInterfaceStyle"_s, style);
    }
    void changeTheme() {
        const bool isDark = SimulatedSystemLook(mac.mac).scheme() == ColorScheme::Dark;
        setStyle(isDark ? u"Light"_s : u"Dark"_s);
    }
    std::unique_ptr<NotificationObservation> count(const QString& name, int& heard) {
        return notifications.observe(name, [&heard] { ++heard; });
    }
    void waitFor(const int& heard, int wanted) {
        processEventsUntil([&] { return heard >= wanted; });
    }

    macsim::SimulatedMacFolder mac;
    SimulatedNotifications notifications{mac.mac};
    int changes = 0;
};

} // namespace

TEST_F(SystemNotificationsContract, aChangeByAnotherIsHeardThroughTheEventLoop) {
    int desktops = 0;
    int themes = 0;
    const auto desktop = count(kDesktop, desktops);
    const auto theme = count(kTheme, themes);
    change("displays");
    EXPECT_EQ(desktops, 0) << "not before the event loop comes round";
    waitFor(desktops, 1);
    changeTheme();
    waitFor(themes, 1);
    EXPECT_EQ(desktops, 1);
    EXPECT_EQ(themes, 1);
}

TEST_F(SystemNotificationsContract, eachOfTwoChangesInTurnIsHeard) {
    int heard = 0;
    const auto theme = count(kTheme, heard);
    for (int round = 1; round <= 3; ++round) {
        changeTheme();
        waitFor(heard, round);
        EXPECT_EQ(heard, round);
    }
}

TEST_F(SystemNotificationsContract, everybodyWhoObservesHears) {
    int one = 0;
    int two = 0;
    const auto first = count(kDesktop, one);
    const auto second = count(kDesktop, two);
    change("displays");
    waitFor(one, 1);
    waitFor(two, 1);
}

TEST_F(SystemNotificationsContract, whatWasBeforeIsNotHeardAndNothingElseEither) {
    change("displays");
    int desktops = 0;
    int themes = 0;
    int others = 0;
    const auto desktop = count(kDesktop, desktops);
    const auto theme = count(kTheme, themes);
    const auto other = count(u"com.apple.screenIsLocked"_s, others);
    change("power");
    change("processes");
    mac.mac.state().update("displays", [](macsim::Json&) {});
    setStyle(u"Light"_s); // as without one
    changeTheme();
    waitFor(themes, 1);
    EXPECT_EQ(desktops, 0);
    EXPECT_EQ(others, 0);
}

TEST_F(SystemNotificationsContract, nothingIsHeardOnceTheObservationHasEnded) {
    int ended = 0;
    int later = 0;
    auto observation = count(kDesktop, ended);
    const auto other = count(kDesktop, later);
    change("displays");
    observation.reset();
    waitFor(later, 1);
    EXPECT_EQ(ended, 0) << "not even of a change that was on its way";
}

TEST_F(SystemNotificationsContract, aHandlerMayEndItsOwnObservation) {
    int heard = 0;
    int later = 0;
    std::unique_ptr<NotificationObservation> once;
    once = notifications.observe(kDesktop, [&] {
        once.reset();
        ++heard;
    });
    const auto other = count(kDesktop, later);
    change("displays");
    waitFor(heard, 1);
    waitFor(later, 1);
    change("displays");
    waitFor(later, 2);
    EXPECT_EQ(heard, 1);
}

} // namespace quorvane
