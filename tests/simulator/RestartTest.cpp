#include "simulator/Restart.h"

#include "StartupBench.h"
#include "simulator/PropertyList.h"

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

class Restart : public StartupBench {
protected:
    using StartupBench::StartupBench;

    void SetUp() override {
        putFile(mac, u"/Library/LaunchDaemons/d.plist"_s, plist(u"com.x.daemon"_s));
        putFile(mac, u"/Users/alex/Library/LaunchAgents/a.plist"_s, plist(u"com.x.agent"_s));
        addChat();
    }
    QStringList overrides() const {
        QStringList labels;
        for (const LaunchdDomain& domain : {LaunchdDomain{LaunchdDomain::Kind::Gui, 501}, LaunchdDomain{}}) {
            for (const auto& [label, isDisabled] : LaunchdState(mac.mac).overrides(domain)) {
                labels.append(label + (isDisabled ? u" off"_s : u" on"_s));
            }
        }
        labels.sort();
        return labels;
    }
};

class RestartOfTahoe : public Restart {
protected:
    RestartOfTahoe()
        : Restart("26.5") {}
};

} // namespace

TEST_F(Restart, whatStartsRunsAfterwardsAndNothingElse) {
    putFile(mac, u"/Applications/Notes.app/Contents/MacOS/Notes"_s, "x");
    setState(mac, "loginItems", Json::array({{{"name", "Notes"}, {"path", "/Applications/Notes.app"}}}));
    launchctl(u"disable"_s, u"gui/501/com.chat.agent"_s);
    setState(
        mac, "processes",
        Json::array({{{"pid", 300}, {"name", "gone"}, {"path", "/opt/gone"}, {"uid", 501}, {"label", "com.x.gone"}},
                     {{"pid", 301}, {"name", "kernel"}, {"path", "/System/kernel"}, {"uid", 0}},
                     {{"pid", 302},
                      {"name", "Paint"},
                      {"path", "/Applications/Paint.app/Contents/MacOS/Paint"},
                      {"uid", 501}}}));
    mac.mac.state().update("launchd", [](Json& state) {
        state["jobs"]["gui/501"]["com.x.gone"] = {{"path", "/gone.plist"}, {"pid", 300}};
        state["jobs"]["gui/501"]["com.apple.Dock.agent"] = {
            {"path", "/System/Library/LaunchAgents/com.apple.Dock.plist"}};
        state["guiSession"] = false;
    });
    restart(mac.mac);
    EXPECT_EQ(services(),
              (QStringList{u"/Applications/Big Chat.app: gui/501"_s,
                           u"/Applications/Notes.app: gui/501, runs, starts"_s, u"com.chat.agent: gui/501"_s,
                           u"com.chat.daemon: system, runs, starts"_s, u"com.chat.helper: gui/501, runs, starts"_s,
                           u"com.x.agent: gui/501, runs, starts"_s, u"com.x.daemon: system, runs, starts"_s}));
    EXPECT_EQ(
        programs(),
        (QStringList{
            u"/Applications/Big Chat.app/Contents/Library/LoginItems/Chat Helper.app/Contents/MacOS/Chat Helper"_s,
            u"/Applications/Notes.app/Contents/MacOS/Notes"_s, u"/System/kernel"_s, u"/opt/com.chat.daemon"_s,
            u"/opt/com.x.agent"_s, u"/opt/com.x.daemon"_s}));
    EXPECT_TRUE(LaunchdState(mac.mac).job({LaunchdDomain::Kind::Gui, 501}, u"com.apple.Dock.agent"_s));
    EXPECT_TRUE(LaunchdState(mac.mac).exists({LaunchdDomain::Kind::Gui, 501}));
}

TEST_F(Restart, whatWasBootedOutIsBackUnlessItIsDisabled) {
    restart(mac.mac);
    EXPECT_EQ(launchctl(u"bootout"_s, u"gui/501/com.chat.helper"_s), kSilent);
    EXPECT_EQ(launchctl(u"bootout"_s, u"system/com.x.daemon"_s), kSilent);
    EXPECT_EQ(launchctl(u"disable"_s, u"system/com.x.daemon"_s), kSilent);
    EXPECT_TRUE(services().contains(u"com.chat.helper: gui/501, starts"_s));
    EXPECT_TRUE(services().contains(u"com.x.daemon: system"_s));
    restart(mac.mac);
    EXPECT_TRUE(services().contains(u"com.chat.helper: gui/501, runs, starts"_s));
    EXPECT_TRUE(services().contains(u"com.x.daemon: system"_s));
}

TEST_F(Restart, aPlistThatWasMovedAwayDoesNotComeBack) {
    restart(mac.mac);
    mac.mac.volume(Actor::Root).remove(u"/Library/LaunchDaemons/d.plist"_s);
    EXPECT_TRUE(services().contains(u"com.x.daemon: system, runs"_s));
    restart(mac.mac);
    EXPECT_FALSE(services().join(u'\n').contains(u"com.x.daemon"_s));
}

TEST_F(Restart, overridesOutliveIt) {
    launchctl(u"disable"_s, u"gui/501/com.x.agent"_s);
    launchctl(u"disable"_s, u"gui/501/com.apple.x"_s);
    launchctl(u"disable"_s, u"system/com.x.daemon"_s);
    restart(mac.mac);
    EXPECT_EQ(overrides(), (QStringList{u"com.apple.x off"_s, u"com.x.agent off"_s, u"com.x.daemon off"_s}));
}

TEST_F(RestartOfTahoe, applesOwnOverridesAreUndone) {
    launchctl(u"disable"_s, u"gui/501/com.x.agent"_s);
    launchctl(u"disable"_s, u"gui/501/com.apple.x"_s);
    launchctl(u"disable"_s, u"system/com.apple.y"_s);
    restart(mac.mac);
    EXPECT_EQ(overrides(), QStringList{u"com.x.agent off"_s});
}

TEST_F(RestartOfTahoe, aKeptOverrideOfApplesKeepsTheJobFromStartingUntilItIsTakenBack) {
    const QString center = u"/System/Library/LaunchAgents/com.apple.center.plist"_s;
    putFile(mac, center, plist(u"com.apple.center.agent"_s));
    putFile(mac, u"/System/Library/LaunchAgents/com.apple.dock.plist"_s, plist(u"com.apple.dock.agent"_s));
    mac.mac.state().update("launchd", [](Json& state) { state["appleOverrides"] = "kept"; });
    const LaunchdDomain session{LaunchdDomain::Kind::Gui, 501};
    restart(mac.mac);
    EXPECT_TRUE(programs().contains(u"/opt/com.apple.center.agent"_s));
    const int dock = LaunchdState(mac.mac).job(session, u"com.apple.dock.agent"_s)->pid;

    launchctl(u"disable"_s, u"gui/501/com.apple.center.agent"_s);
    EXPECT_TRUE(programs().contains(u"/opt/com.apple.center.agent"_s));
    restart(mac.mac);
    EXPECT_EQ(overrides(), QStringList{u"com.apple.center.agent off"_s});
    EXPECT_FALSE(LaunchdState(mac.mac).job(session, u"com.apple.center.agent"_s));
    EXPECT_FALSE(programs().contains(u"/opt/com.apple.center.agent"_s));
    EXPECT_EQ(LaunchdState(mac.mac).job(session, u"com.apple.dock.agent"_s)->pid, dock);

    launchctl(u"enable"_s, u"gui/501/com.apple.center.agent"_s);
    restart(mac.mac);
    EXPECT_TRUE(programs().contains(u"/opt/com.apple.center.agent"_s));
}

TEST_F(Restart, anIgnoredOverrideOfApplesKeepsNothingFromStarting) {
    const QString center = u"/System/Library/LaunchAgents/com.apple.center.plist"_s;
    putFile(mac, center, plist(u"com.apple.center.agent"_s));
    restart(mac.mac);
    launchctl(u"disable"_s, u"gui/501/com.apple.center.agent"_s);
    restart(mac.mac);
    EXPECT_EQ(overrides(), QStringList());
    EXPECT_TRUE(programs().contains(u"/opt/com.apple.center.agent"_s));
}

} // namespace macsim
