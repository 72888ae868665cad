#include "simulator/Updaters.h"

#include "StartupBench.h"
#include "simulator/PropertyList.h"
#include "simulator/Restart.h"

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

const QString kDaemonFile = u"/Library/LaunchDaemons/com.x d.plist"_s;

class Updaters : public StartupBench {
protected:
    bool says(const QString& line) const { return services().contains(line); }
};

} // namespace

TEST_F(Updaters, aPlistThatIsPutBackIsRegisteredAndRuns) {
    updaterInstalls(mac.mac, kDaemonFile, plist(u"com.x.daemon"_s));
    EXPECT_TRUE(says(u"com.x.daemon: system, runs, starts"_s));
    EXPECT_EQ(mac.mac.volume(Actor::Root).owner(kDaemonFile), Actor::Root);
    const Json record = recordOf("com.x.daemon");
    EXPECT_EQ(record.value("type", std::string()), "legacy daemon");
    EXPECT_EQ(record.value("url", std::string()), "file:///Library/LaunchDaemons/com.x%20d.plist");
    EXPECT_EQ(record.value("uid", 0), -2);

    updaterInstalls(mac.mac, u"/Users/alex/Library/LaunchAgents/a.plist"_s, plist(u"com.x.agent"_s));
    EXPECT_TRUE(says(u"com.x.agent: gui/501, runs, starts"_s));
    EXPECT_EQ(recordOf("com.x.agent").value("uid", 0), 501);
}

TEST_F(Updaters, aPlistThatIsPutBackIsEnabledInTheRecordThatItHas) {
    updaterInstalls(mac.mac, kDaemonFile, plist(u"com.x.daemon"_s));
    updateBackgroundTasks(mac.mac.state(), [](const BackgroundTask&, Json& record) { record["enabled"] = false; });
    launchctl(u"bootout"_s, u"system/com.x.daemon"_s);
    ASSERT_TRUE(says(u"com.x.daemon: system"_s));
    updaterInstalls(mac.mac, kDaemonFile, plist(u"com.x.daemon"_s));
    EXPECT_TRUE(says(u"com.x.daemon: system, runs, starts"_s));
    EXPECT_EQ(mac.mac.state().read("backgroundTasks")["records"].size(), 1U);
}

TEST_F(Updaters, anOverrideKeepsAPlistOffThatIsPutBack) {
    launchctl(u"disable"_s, u"system/com.x.daemon"_s);
    updaterInstalls(mac.mac, kDaemonFile, plist(u"com.x.daemon"_s));
    EXPECT_TRUE(says(u"com.x.daemon: system"_s));
    restart(mac.mac);
    EXPECT_TRUE(says(u"com.x.daemon: system"_s));
}

TEST_F(Updaters, anApplicationThatRegistersItselfAgainWritesOverTheOverride) {
    addChat();
    launchctl(u"disable"_s, u"gui/501/com.chat.helper"_s);
    userAllows(mac.mac, u"com.chat.helper"_s, false);
    ASSERT_TRUE(says(u"com.chat.helper: gui/501"_s));
    EXPECT_TRUE(applicationRegisters(mac.mac, u"com.chat.helper"_s));
    EXPECT_TRUE(says(u"com.chat.helper: gui/501, runs, starts"_s));
    EXPECT_EQ(mac.mac.state().read("launchd")["disabled"]["user/501"], (Json{{"com.chat.helper", false}}));
    EXPECT_TRUE(recordOf("4.com.chat.helper").value("allowed", false));

    EXPECT_TRUE(applicationRegisters(mac.mac, u"com.chat"_s));
    EXPECT_TRUE(says(u"/Applications/Big Chat.app: gui/501, starts"_s));
    EXPECT_FALSE(applicationRegisters(mac.mac, u"com.unknown"_s));
}

TEST_F(Updaters, theUsersSwitchStopsAndStartsAJobWhateverTheOverrideSays) {
    addChat();
    loadBundledServices(mac.mac);
    userAllows(mac.mac, u"com.chat.agent"_s, false);
    EXPECT_TRUE(says(u"com.chat.agent: gui/501"_s));
    launchctl(u"enable"_s, u"gui/501/com.chat.agent"_s);
    restart(mac.mac);
    EXPECT_TRUE(says(u"com.chat.agent: gui/501"_s));
    userAllows(mac.mac, u"com.chat.agent"_s, true);
    EXPECT_TRUE(says(u"com.chat.agent: gui/501, runs, starts"_s));

    launchctl(u"disable"_s, u"gui/501/com.chat.helper"_s);
    userAllows(mac.mac, u"com.chat.helper"_s, false);
    userAllows(mac.mac, u"com.chat.helper"_s, true);
    EXPECT_TRUE(says(u"com.chat.helper: gui/501"_s));
}

} // namespace macsim
