#include "fakes/ScriptedLoginItems.h"

namespace quorvane {

namespace {

using Operation = MemoryFileManager::Operation;
using Refresh = SystemManager::StartupRefresh;

const QString kOwnAgents = u"/Users/alex/Library/LaunchAgents/"_s;
const QString kSharedAgents = u"/Library/LaunchAgents/"_s;
const QString kSharedDaemons = u"/Library/LaunchDaemons/"_s;

/// "{id} | {name} | {kind} | {path}", with what is out of the ordinary behind it.
QString shown(const StartupItem& item) {
    QStringList parts{item.id, item.name, rawValue(item.kind), item.path};
    if (item.hidden) {
        parts.append(*item.hidden ? u"hidden"_s : u"visible"_s);
    }
    if (item.isProtected) {
        parts.append(u"protected"_s);
    }
    if (!item.runsAtStartup) {
        parts.append(u"off"_s);
    }
    if (item.launchIdentifier) {
        parts.append(u"by "_s + *item.launchIdentifier);
    }
    return parts.join(u" | "_s);
}

QStringList shown(const QList<StartupItem>& items) {
    QStringList lines;
    for (const StartupItem& item : items) {
        lines.append(shown(item));
    }
    return lines;
}

class StartupDiscoveryFlow : public ScriptedStartup {
protected:
    QStringList discover(Refresh refresh = Refresh::UseCache) {
        return shown(QCoro::waitFor(system.discoverStartupItems(refresh)));
    }
    void addPlist(const QString& path, const QVariantMap& content) {
        files.addFile(path, {});
        propertyLists.lists.insert(path, content);
    }
};

const LoginItem kZoomItem{u"zoom"_s, u"/Applications/zoom.us.app"_s, true};

} // namespace

TEST_F(StartupDiscoveryFlow, anItemIsProtectedWhenItsBackgroundRecordIs) {
    addPlist(kOwnAgents + u"com.a.plist"_s, {});
    addPlist(kOwnAgents + u"com.b.plist"_s, {});
    addPlist(kSharedAgents + u"com.c.plist"_s, {});
    addPlist(kSharedDaemons + u"com.d.plist"_s, {});
    takeDump("#1:\nName: Traktor Agent\nType: legacy agent (0x10008)\nIdentifier: 8.com.a\n"
             "#2:\nName: Deck\nType: legacy agent (0x10008)\nIdentifier: 8.com.deck\n"
             "Executable Path: /Library/Application Support/Native Instruments/x\n"
             "URL: file:///Library/LaunchAgents/com.c.plist\n"
             "#3:\nName: Sync\nType: legacy daemon (0x10010)\nIdentifier: 16.com.d\nParent Identifier: 2.com.ni\n"
             "#4:\nName: Traktor\nType: app (0x2)\nIdentifier: 2.com.ni\n"
             "#5:\nName: Sync Helper\nType: login item (0x4)\nIdentifier: 4.com.e\nParent Identifier: 2.com.ni\n");
    QStringList found;
    for (const StartupItem& item : QCoro::waitFor(system.discoverStartupItems(Refresh::UseCache))) {
        found.append(item.id + (item.isProtected ? u" is protected"_s : u""_s));
    }
    found.sort();
    EXPECT_EQ(found, QStringList({u"launch:com.a.plist is protected"_s, u"launch:com.b.plist"_s,
                                  u"launch:com.c.plist is protected"_s, u"launch:com.d.plist is protected"_s}));
}

TEST_F(StartupDiscoveryFlow, findsEverySourceAndSortsByName) {
    loginItems.items = {kZoomItem, {u"Ableton Helper"_s, u"/Applications/Helper.app"_s, false}, {u"Lost"_s, {}, false}};
    addPlist(kOwnAgents + u"com.example.MyTool.plist"_s, {{u"Label"_s, u"com.example.MyTool"_s}});
    addPlist(kSharedAgents + u"org.serato.sync.plist"_s, {{u"Label"_s, u"org.other.Name"_s}});
    addPlist(kSharedDaemons + u"net.box.plist"_s, {{u"Label"_s, u"net.box"_s}});
    files.addFile(kSharedDaemons + u"readme.txt"_s, {});
    takeDump("#1:\n Name: Dropbox\n Type: agent (0x8)\n Identifier: 8.com.dropbox.agent\n"
             " Disposition: [enabled, allowed] (0x3)\n URL: file:///x\n");
    const int changes = files.changes();
    EXPECT_EQ(discover(),
              (QStringList{
                  u"login:/Applications/Helper.app | Ableton Helper | loginApp | /Applications/Helper.app | visible | "
                  "protected"_s,
                  u"launch:net.box.plist | Box | launchDaemon | /Library/LaunchDaemons/net.box.plist | by "
                  "net.box.plist"_s,
                  u"btm:com.dropbox.agent | Dropbox | backgroundLoginItem | file:///x | by com.dropbox.agent"_s,
                  u"launch:com.example.MyTool.plist | Example My Tool | launchAgent | "
                  "/Users/alex/Library/LaunchAgents/com.example.MyTool.plist | by com.example.MyTool.plist"_s,
                  u"login:Lost | Lost | loginApp |  | visible"_s,
                  u"launch:org.serato.sync.plist | Other Name | launchAgent | "
                  "/Library/LaunchAgents/org.serato.sync.plist | protected | by org.serato.sync.plist"_s,
                  u"login:/Applications/zoom.us.app | zoom | loginApp | /Applications/zoom.us.app | hidden"_s,
              }));
    EXPECT_EQ(takeTrace(), u"$> System Events: list\n"_s + kLookAtLaunchd);
    EXPECT_EQ(files.changes(), changes) << "finding them changes nothing";
}

TEST_F(StartupDiscoveryFlow, theProgramsOwnLoginItemIsNotListed) {
    loginItems.items = {{u"Quorvane"_s, u"/Applications/Quorvane.app"_s, false}, kZoomItem};
    const QList<StartupItem> found = QCoro::waitFor(system.discoverStartupItems(Refresh::UseCache));
    ASSERT_EQ(found.size(), 1);
    EXPECT_EQ(found.first().name, u"zoom"_s);
}

// ---- Reuse

TEST_F(StartupDiscoveryFlow, aSecondCallAnswersFromTheFirst) {
    loginItems.items = {kZoomItem};
    const QStringList found = discover();
    loginItems.items.clear();
    EXPECT_EQ(discover(), found);
    EXPECT_EQ(takeTrace(), u"$> System Events: list\n"_s + kLookAtLaunchd);
}

TEST_F(StartupDiscoveryFlow, anEmptyListIsAnAnswerToo) {
    EXPECT_EQ(discover(), QStringList());
    EXPECT_EQ(discover(), QStringList());
    EXPECT_EQ(takeTrace(), u"$> System Events: list\n"_s + kLookAtLaunchd);
}

TEST_F(StartupDiscoveryFlow, callersShareOneRun) {
    loginItems.items = {kZoomItem};
    commands.hold();
    auto first = system.discoverStartupItems(Refresh::UseCache);
    auto second = system.discoverStartupItems(Refresh::UseCache);
    commands.release();
    EXPECT_EQ(QCoro::waitFor(second).size(), 1);
    EXPECT_EQ(QCoro::waitFor(first).size(), 1);
    EXPECT_EQ(takeTrace(), u"$> System Events: list\n"_s + kLookAtLaunchd);
}

TEST_F(StartupDiscoveryFlow, aForcedRefreshReadsEverythingAnew) {
    discover();
    trace.clear();
    loginItems.items = {kZoomItem};
    addPlist(kSharedAgents + u"com.new.plist"_s, {});
    EXPECT_EQ(discover(Refresh::Force).size(), 2);
    EXPECT_EQ(discover().size(), 2);
    EXPECT_EQ(takeTrace(), u"$> System Events: list\n"_s + kLookAtLaunchd);
}

TEST_F(StartupDiscoveryFlow, aRunThatIsOvertakenKeepsNothing) {
    loginItems.items = {kZoomItem};
    commands.hold();
    auto overtaken = system.discoverStartupItems(Refresh::UseCache);
    auto itsWaiter = system.discoverStartupItems(Refresh::UseCache);
    loginItems.items.append({u"Dropbox"_s, u"/Applications/Dropbox.app"_s, false});
    commands.holdNoFurther();
    EXPECT_EQ(discover(Refresh::Force).size(), 2);
    commands.release();
    EXPECT_EQ(QCoro::waitFor(overtaken).size(), 1);
    EXPECT_EQ(QCoro::waitFor(itsWaiter).size(), 1);
    EXPECT_EQ(discover().size(), 2);
    EXPECT_EQ(trace.count(u"$> System Events: list"_s), 2);
}

TEST_F(StartupDiscoveryFlow, invalidatedWhileItRunsItKeepsNothing) {
    loginItems.items = {kZoomItem};
    commands.hold();
    auto running = system.discoverStartupItems(Refresh::UseCache);
    system.invalidateStartupCaches();
    commands.release();
    EXPECT_EQ(QCoro::waitFor(running).size(), 1);
    loginItems.items.clear();
    EXPECT_EQ(discover(), QStringList());
}

TEST_F(StartupDiscoveryFlow, aDumpThatArrivesLaterShowsAfterARefresh) {
    loginItems.items = {kZoomItem};
    discover();
    takeDump("#1:\n Name: Box\n Type: login item (0x4)\n Identifier: 4.com.box\n Disposition: [enabled]\n");
    EXPECT_EQ(discover().size(), 1);
    EXPECT_EQ(discover(Refresh::Force).size(), 2);
    system.invalidateStartupCaches();
    EXPECT_EQ(discover().size(), 2); // the dump stays
    EXPECT_TRUE(trace.filter(u"sfltool"_s).isEmpty());
}

TEST_F(StartupDiscoveryFlow, itTellsWhichSourcesWereRead) {
    loginItems.items = {kZoomItem};
    discover();
    DiscoveredStartup found = QCoro::waitFor(system.discoverStartup(Refresh::UseCache));
    EXPECT_EQ(found.items.size(), 1);
    EXPECT_EQ(found.loginItems, LoginItemsSource::Read);
    EXPECT_EQ(found.backgroundItems, BackgroundItemsSource::NotYetRead);
    takeDump("#1:\n Name: Box\n Type: login item (0x4)\n Identifier: 4.com.box\n Disposition: [enabled]\n");
    loginItems.denial = "Not authorized to send Apple events to System Events. (-1743)\n";
    discover(Refresh::Force);
    found = QCoro::waitFor(system.discoverStartup(Refresh::UseCache));
    EXPECT_EQ(found.items.size(), 1);
    EXPECT_EQ(found.loginItems, LoginItemsSource::Refused);
    EXPECT_EQ(found.backgroundItems, BackgroundItemsSource::Read);
}

TEST_F(StartupDiscoveryFlow, whoLooksOnDoesNotWaitForSystemEventsLongerThanTenSeconds) {
    loginItems.items = {kZoomItem};
    addPlist(kSharedAgents + u"com.box.plist"_s, {});
    commands.hold();
    auto run = system.discoverStartupItems(Refresh::UseCache);
    commands.holdNoFurther();
    const DiscoveredStartup found = QCoro::waitFor(system.discoverStartup(Refresh::UseCache));
    EXPECT_EQ(clock.waits, QList<std::chrono::milliseconds>{std::chrono::seconds(10)});
    EXPECT_EQ(shown(found.items).size(), 1) << "what the other sources have";
    EXPECT_EQ(found.loginItems, LoginItemsSource::Unanswered);
    commands.release();
    EXPECT_EQ(QCoro::waitFor(run).size(), 2);
    EXPECT_EQ(discover().size(), 2) << "nothing that is incomplete is kept";
}

// ---- Permission and bad input

TEST_F(StartupDiscoveryFlow, aMissingPermissionIsSaidAndTheOtherSourcesCount) {
    loginItems.denial = "Not authorized to send Apple events to System Events. (-1743)\n";
    addPlist(kSharedAgents + u"com.box.plist"_s, {});
    EXPECT_EQ(discover().size(), 1);
    EXPECT_EQ(takeTrace(),
              u"$> System Events: list\n"
              "  [ERROR] Could not read login items: Not authorized to send Apple events to System Events.\n"
              "  [INFO] Grant Automation permission for System Events in System Settings → Privacy & Security.\n"_s +
                  kLookAtLaunchd);
}

TEST_F(StartupDiscoveryFlow, aReadingErrorOrGarbageGivesNoLoginItems) {
    const QString notUnderstood = u"The answer of System Events isn’t understood."_s;
    const QList<std::pair<const char*, QString>> rows{
        {"ERROR|-609|Connection is invalid.\n", u"Connection is invalid."_s},
        {"garbage\n", notUnderstood},
        {"a|b\n", notUnderstood}};
    for (const auto& [listing, text] : rows) {
        loginItems.listing = listing;
        EXPECT_EQ(discover(Refresh::Force), QStringList());
        EXPECT_EQ(system.logMessages().at(system.logMessages().size() - 2),
                  u"  [ERROR] Could not read login items: "_s + text);
    }
}

TEST_F(StartupDiscoveryFlow, aFolderThatCannotBeListedIsPassedOver) {
    addPlist(kOwnAgents + u"com.a.plist"_s, {});
    addPlist(kSharedDaemons + u"com.b.plist"_s, {});
    files.failOn(Operation::List, u"/Users/alex/Library/LaunchAgents"_s);
    files.addFile(u"/Library/LaunchAgents"_s, {}); // not even a folder
    EXPECT_EQ(discover(), QStringList(u"launch:com.b.plist | B | launchDaemon | /Library/LaunchDaemons/com.b.plist | "
                                      "by com.b.plist"_s));
    EXPECT_TRUE(system.logMessages().isEmpty());
}

TEST_F(StartupDiscoveryFlow, anUnreadablePlistIsNamedByItsFile) {
    for (const QString& name : {u"com.example.BigTool.plist"_s, u"a b'\"$(x).plist"_s, u"-rf.plist"_s, u".plist"_s}) {
        files.addFile(kSharedAgents + name, "no property list");
    }
    QStringList names;
    for (const StartupItem& item : QCoro::waitFor(system.discoverStartupItems(Refresh::UseCache))) {
        names.append(item.launchIdentifier.value_or(QString()) + u" = "_s + item.name);
    }
    names.sort();
    EXPECT_EQ(names, (QStringList{u"-rf.plist = -rf"_s, u".plist = "_s, u"a b'\"$(x).plist = A B'\"$(x)"_s,
                                  u"com.example.BigTool.plist = Example Big Tool"_s}));
}

// ---- What an item is

TEST_F(StartupDiscoveryFlow, aLoginItemInsideEmbeddedLaunchAgentsIsABackgroundAgent) {
    loginItems.items = {{u"x"_s, u"/Applications/Foo.app/Contents/Library/LaunchAgents/x.plist"_s, false},
                        {u"Foo Agent"_s, u"/Applications/Foo.app"_s, false}};
    EXPECT_EQ(discover(), (QStringList{u"login:/Applications/Foo.app | Foo Agent | backgroundAgent | "
                                       "/Applications/Foo.app | visible"_s,
                                       u"login:/Applications/Foo.app/Contents/Library/LaunchAgents/x.plist | x | "
                                       "backgroundAgent | "
                                       "/Applications/Foo.app/Contents/Library/LaunchAgents/x.plist | visible"_s}));
}

TEST_F(StartupDiscoveryFlow, anAgentPlistAmongTheDaemonsIsABackgroundAgent) {
    addPlist(kSharedDaemons + u"com.example.helper.agent.plist"_s, {});
    EXPECT_EQ(discover(), QStringList(u"launch:com.example.helper.agent.plist | Example Helper | backgroundAgent | "
                                      "/Library/LaunchDaemons/com.example.helper.agent.plist | by "
                                      "com.example.helper.agent.plist"_s));
}

TEST_F(StartupDiscoveryFlow, ofTwoPlistsOfOneNameTheUsersWins) {
    addPlist(kOwnAgents + u"com.box.plist"_s, {{u"Label"_s, u"com.mine"_s}});
    addPlist(kSharedDaemons + u"com.box.plist"_s, {{u"Label"_s, u"com.theirs"_s}});
    EXPECT_EQ(discover(), QStringList(u"launch:com.box.plist | Mine | launchAgent | "
                                      "/Users/alex/Library/LaunchAgents/com.box.plist | by com.box.plist"_s));
}

TEST_F(StartupDiscoveryFlow, ofTwoLoginItemsWithOnePathTheFirstWins) {
    loginItems.items = {kZoomItem, {u"Another"_s, kZoomItem.path, false}};
    EXPECT_EQ(discover(), QStringList(u"login:/Applications/zoom.us.app | zoom | loginApp | "
                                      "/Applications/zoom.us.app | hidden"_s));
}

TEST_F(StartupDiscoveryFlow, aPlistIsNamedByTheApplicationItStarts) {
    addPlist(kSharedAgents + u"com.foo.plist"_s,
             {{u"Label"_s, u"com.foo.label"_s}, {u"Program"_s, u"/Applications/Foo.app/Contents/MacOS/foo"_s}});
    addPlist(kSharedAgents + u"com.apple.foo.bar.plist"_s, {{u"Label"_s, u"com.apple.foo.bar"_s}});
    addPlist(kSharedAgents + u"x.plist"_s, {{u"Label"_s, u"com.apple"_s}});
    bundles.byPath.insert(u"/Applications/Foo.app"_s, {{u"CFBundleDisplayName"_s, u"The Foo"_s}});
    QStringList names;
    for (const StartupItem& item : QCoro::waitFor(system.discoverStartupItems(Refresh::UseCache))) {
        names.append(item.name);
    }
    EXPECT_EQ(names, (QStringList{u"Apple"_s, u"Foo Bar"_s, u"The Foo"_s}));
}

TEST_F(StartupDiscoveryFlow, ofTheBackgroundRecordsThoseCountThatRunAtLogin) {
    loginItems.items = {kZoomItem};
    takeDump("#1:\n Name: App\n Type: app (0x2)\n Identifier: 2.com.app\n Disposition: [enabled]\n"
             "#2:\n Name: Daemon\n Type: legacy daemon (0x10010)\n Identifier: 16.com.d\n Disposition: [visible]\n"
             "#3:\n Name: Off\n Type: Login Item (0x4)\n Identifier: 4.com.off\n Disposition: [enabled, disallowed]\n"
             " Executable Path: /x/off\n"
             "#4:\n Name: Unlabelled\n Type: agent (0x8)\n Identifier: 4.\n Disposition: [enabled]\n"
             "#5:\n Name: Helper\n Type: agent (0x8)\n Identifier: 8.com.h\n Executable Path: /x/Traktor/h\n"
             "#6:\n Name: (null)\n Type: agent (0x8)\n Identifier: 8.com.null\n Disposition: [enabled]\n"
             "#7:\n Name: Bundle\n Type: agent (0x8)\n Identifier: 8.z\n Bundle Identifier: com.bundle\n"
             " Disposition: [enabled]\n"
             "#8:\n Name: Again\n Type: agent (0x8)\n Identifier: 8.com.bundle\n Disposition: [enabled]\n");
    EXPECT_EQ(discover(), (QStringList{
                              u"btm:com.bundle | Bundle | backgroundLoginItem | com.bundle | by com.bundle"_s,
                              u"btm:com.d | Daemon | backgroundLoginItem | com.d | off | by com.d"_s,
                              u"btm:com.off | Off | backgroundLoginItem | /x/off | off | by com.off"_s,
                              u"login:/Applications/zoom.us.app | zoom | loginApp | /Applications/zoom.us.app | "
                              "hidden"_s,
                          }));
}

} // namespace quorvane
