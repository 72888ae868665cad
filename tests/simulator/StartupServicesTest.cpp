#include "simulator/StartupServices.h"

#include "StartupBench.h"
#include "simulator/LoginItems.h"
#include "simulator/MacDescription.h"
#include "simulator/PropertyList.h"
#include "simulator/tools/Osascript.h"

namespace macsim {

using namespace Qt::StringLiterals;

using StartupServices = StartupBench;

TEST_F(StartupServices, aMacWithNothingHasNone) {
    EXPECT_EQ(services(), QStringList());
}

TEST_F(StartupServices, plistsStartUnlessTheyAreKeptOff) {
    putFile(mac, u"/Library/LaunchDaemons/d.plist"_s, plist(u"com.x.daemon"_s));
    putFile(mac, u"/Library/LaunchAgents/a.plist"_s, plist(u"com.x.agent"_s));
    putFile(mac, u"/Users/alex/Library/LaunchAgents/u.plist"_s, plist(u"com.x.mine"_s));
    putFile(mac, u"/Users/alex/Library/LaunchAgents/off.plist"_s, plist(u"com.x.off"_s, {{u"Disabled"_s, true}}));
    putFile(mac, u"/Library/LaunchAgents/broken.plist"_s, "<plist><dict><key>Label");
    putFile(mac, u"/Library/LaunchAgents/notes.txt"_s, plist(u"com.x.text"_s));
    EXPECT_EQ(services(), (QStringList{u"com.x.agent: gui/501, starts"_s, u"com.x.daemon: system, starts"_s,
                                       u"com.x.mine: gui/501, starts"_s, u"com.x.off: gui/501"_s}));
    launchctl(u"disable"_s, u"gui/501/com.x.agent"_s);
    launchctl(u"disable"_s, u"system/com.x.daemon"_s);
    launchctl(u"disable"_s, u"system/com.x.mine"_s);
    launchctl(u"enable"_s, u"gui/501/com.x.off"_s);
    EXPECT_EQ(services(), (QStringList{u"com.x.agent: gui/501"_s, u"com.x.daemon: system"_s,
                                       u"com.x.mine: gui/501, starts"_s, u"com.x.off: gui/501, starts"_s}));
}

TEST_F(StartupServices, aPlistsOwnRecordKeepsItOff) {
    putFile(mac, u"/Library/LaunchDaemons/d.plist"_s, plist(u"com.x.daemon"_s));
    putFile(mac, u"/Library/LaunchAgents/a.plist"_s, plist(u"com.x.agent"_s));
    putFile(mac, u"/Library/LaunchAgents/b.plist"_s, plist(u"com.x.other"_s));
    addRecords({{{"uid", -2},
                 {"type", "curated legacy daemon"},
                 {"identifier", "16.com.x.daemon"},
                 {"url", "file:///Library/LaunchDaemons/d.plist"},
                 {"allowed", false}},
                {{"uid", 501}, {"type", "legacy agent"}, {"identifier", "8.com.x.agent"}, {"enabled", false}},
                // Of a list that bore the label elsewhere.
                {{"uid", 501},
                 {"type", "legacy agent"},
                 {"identifier", "8.com.x.other"},
                 {"url", "file:///Users/501/Library/LaunchAgents/b.plist"},
                 {"allowed", false}}});
    EXPECT_EQ(services(),
              (QStringList{u"com.x.agent: gui/501"_s, u"com.x.daemon: system"_s, u"com.x.other: gui/501, starts"_s}));
}

TEST_F(StartupServices, whatAnApplicationRegisteredGoesByItsRecordAndItsOverride) {
    addChat();
    const QString chat = u"/Applications/Big Chat.app: gui/501"_s;
    EXPECT_EQ(services(), (QStringList{chat, u"com.chat.agent: gui/501, starts"_s, u"com.chat.daemon: system, starts"_s,
                                       u"com.chat.helper: gui/501, starts"_s}));
    launchctl(u"disable"_s, u"gui/501/com.chat.helper"_s);
    launchctl(u"disable"_s, u"system/com.chat.daemon"_s);
    updateBackgroundTasks(mac.mac.state(), [](const BackgroundTask& task, Json& record) {
        record["allowed"] = task.identifier != u"8.com.chat.agent"_s;
    });
    EXPECT_EQ(services(), (QStringList{chat, u"com.chat.agent: gui/501"_s, u"com.chat.daemon: system"_s,
                                       u"com.chat.helper: gui/501"_s}));
}

TEST_F(StartupServices, whatIsNoLongerInItsApplicationDoesNotStart) {
    addChat();
    ASSERT_TRUE(
        QDir(mac.hostFolder() + u"/Applications/Big Chat.app/Contents/Library/LoginItems"_s).removeRecursively());
    EXPECT_TRUE(services().contains(u"com.chat.helper: gui/501"_s));
    EXPECT_TRUE(services().contains(u"com.chat.agent: gui/501, starts"_s));
}

TEST_F(StartupServices, loadedJobsRunAndThoseWithoutAPlistDoNotStartAgain) {
    putFile(mac, u"/Library/LaunchAgents/a.plist"_s, plist(u"com.x.agent"_s));
    setState(mac, "launchd",
             {{"jobs",
               {{"gui/501",
                 {{"com.x.agent", {{"path", "/Library/LaunchAgents/a.plist"}}},
                  {"com.x.gone", {{"path", "/Library/LaunchAgents/gone.plist"}}},
                  {"com.apple.Dock.agent", {{"path", "/System/Library/LaunchAgents/com.apple.Dock.plist"}}}}},
                {"system", {{"com.x.agent", {{"path", "/gone.plist"}}}}}}}});
    EXPECT_EQ(services(), (QStringList{u"com.x.agent: gui/501, runs, starts"_s, u"com.x.agent: system, runs"_s,
                                       u"com.x.gone: gui/501, runs"_s}));
}

TEST_F(StartupServices, loginItemsAndApplicationsThatRegisteredThemselvesOpen) {
    putFile(mac, u"/Applications/Chat.app/Contents/MacOS/Chat"_s, "x");
    putFile(mac, u"/Applications/Notes.app/Contents/MacOS/Notes"_s, "x");
    setState(mac, "loginItems",
             Json::array({{{"name", "Chat"}, {"path", "/Applications/Chat.app"}},
                          {{"name", "Gone"}, {"path", "/Applications/Gone.app"}},
                          {{"name", "Lost"}, {"path", nullptr}}}));
    addRecords({{{"uid", 501}, {"type", "app"}, {"identifier", "2.chat"}, {"url", "file:///Applications/Chat.app/"}},
                {{"uid", 501}, {"type", "app"}, {"identifier", "2.notes"}, {"url", "/Applications/Notes.app"}},
                {{"uid", 502}, {"type", "app"}, {"identifier", "2.notes"}, {"url", "/Applications/Notes.app"}}});
    setState(
        mac, "processes",
        Json::array(
            {{{"pid", 9}, {"name", "Notes"}, {"path", "/Applications/Notes.app/Contents/MacOS/Notes"}, {"uid", 501}}}));
    EXPECT_EQ(services(),
              (QStringList{u"/Applications/Chat.app: gui/501, starts"_s, u"/Applications/Gone.app: gui/501"_s,
                           u"/Applications/Notes.app: gui/501, runs, starts"_s, u": gui/501"_s}));
}

TEST_F(StartupServices, applicationsThatRegisteredThemselvesAreNotSystemEvents) {
    putFile(mac, u"/Applications/Notes.app/Contents/MacOS/Notes"_s, "x");
    addRecords({{{"uid", 501}, {"type", "app"}, {"identifier", "2.notes"}, {"url", "/Applications/Notes.app"}}});
    setState(mac, "permissions", {{"automation", {{"System Events", true}}}});
    const QStringList line{u"osascript"_s, u"-e"_s,
                           u"tell application \"System Events\" to return name of every login item"_s};
    EXPECT_EQ(runTool(mac, runOsascript, line), (ToolRun{0, "\n", {}}));
    EXPECT_EQ(services(), QStringList{u"/Applications/Notes.app: gui/501, starts"_s});
    setState(mac, "loginItems", Json::array({{{"name", "Notes"}, {"path", "/Applications/Notes.app"}}}));
    EXPECT_EQ(runTool(mac, runOsascript, line), (ToolRun{0, "Notes\n", {}}));
    EXPECT_EQ(services(), QStringList{u"/Applications/Notes.app: gui/501, starts"_s}) << "once";
}

TEST_F(StartupServices, aMacThatIsMadeRunsWhatApplicationsRegistered) {
    addChat();
    Json records = mac.mac.state().read("backgroundTasks");
    records["records"][2]["enabled"] = false;
    const Json description{
        {"machine", SimulatedMacFolder::defaultMachine()},
        {"files",
         {{{"path",
            "/Applications/Big Chat.app/Contents/Library/LoginItems/Chat Helper.app/Contents/MacOS/Chat Helper"},
           {"text", "x"}},
          {{"path", "/Applications/Big Chat.app/Contents/Library/LaunchDaemons/com.chat.daemon.plist"},
           {"text", plist(u"com.chat.daemon"_s).toStdString()}}}},
        {"backgroundTasks", records},
        {"launchd", {{"disabled", {{"system", {{"com.chat.daemon", true}}}}}}}};
    const QString folder = mac.outside() + u"/Made"_s;
    createMac(folder, description, {}, u"/nowhere/macsim"_s);
    const Mac made(folder);
    const LaunchdState launchd(made);
    const LaunchdDomain session{LaunchdDomain::Kind::Gui, 501};
    ASSERT_EQ(launchd.jobs(session).size(), 1U);
    EXPECT_EQ(launchd.jobs(session)[0].label, u"com.chat.helper"_s);
    EXPECT_GT(launchd.jobs(session)[0].pid, 0);
    EXPECT_EQ(launchd.jobs({}).size(), 0U);
    ASSERT_EQ(ProcessTable(made.state()).list().size(), 1U);
    EXPECT_EQ(ProcessTable(made.state()).list()[0].name, u"Chat Helper"_s);
}

} // namespace macsim
