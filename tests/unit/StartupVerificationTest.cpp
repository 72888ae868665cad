#include "startup/apply/StartupVerification.h"

#include "fakes/ReadLaunchd.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

using Kind = StartupItemKind;
using Service = CloudSyncService;

StartupItem off(Kind kind, const QString& id, const QString& name,
                const std::optional<QString>& launchIdentifier = std::nullopt) {
    StartupItem made;
    made.id = id;
    made.name = name;
    made.kind = kind;
    made.runsAtStartup = false;
    made.launchIdentifier = launchIdentifier;
    return made;
}

StartupItem on(StartupItem item) {
    item.runsAtStartup = true;
    return item;
}

BackgroundTaskItem activeRecord(const QString& name, const QString& label, bool isOn,
                                const QString& type = u"agent (0x8)"_s) {
    BackgroundTaskItem made;
    made.name = name;
    made.bundleIdentifier = label;
    made.itemType = type;
    made.disposition = isOn ? u"[enabled, allowed, notified] (0xb)"_s : u"[disabled, allowed, notified] (0xa)"_s;
    return made;
}

class StartupVerificationTest : public ::testing::Test {
protected:
    StartupVerificationTest() { readings.loginItems.wasRead = true; }

    void addLoginItem(const QString& name, const QString& path = {}) {
        readings.loginItems.items.append({name, path, false});
    }

    /// "+" for a verified and "-" for a failed item, its name, and its detail.
    QStringList checks() const {
        const ApplyVerificationResult result = startupVerification(configuration, readings);
        QStringList lines;
        for (const ApplyVerificationResult::Item& item : result.verified) {
            lines.append(u"+ %1 (%2)"_s.arg(item.name, item.detail.value_or(u"no detail"_s)));
        }
        for (const ApplyVerificationResult::Item& item : result.failed) {
            lines.append(u"- %1 (%2)"_s.arg(item.name, item.detail.value_or(u"no detail"_s)));
        }
        return lines;
    }

    StartupConfiguration configuration;
    StartupReadings readings = readingsWithLaunchd();
};

TEST_F(StartupVerificationTest, anEmptyConfigurationHasNothingToCheck) {
    addLoginItem(u"Foo"_s);
    readings.discovered = {on(off(Kind::loginApp, u"login:Foo"_s, u"Foo"_s))};
    readings.backgroundItems = BackgroundTaskList({activeRecord(u"B"_s, u"com.b"_s, true)});
    EXPECT_EQ(checks(), QStringList());
}

TEST_F(StartupVerificationTest, loginItemsInTheirOrder) {
    configuration.items = {off(Kind::loginApp, u"login:b"_s, u"b"_s), off(Kind::backgroundAgent, u"login:a"_s, u"a"_s),
                           off(Kind::loginApp, u"login:C"_s, u"C"_s), on(off(Kind::loginApp, u"login:d"_s, u"d"_s))};
    addLoginItem(u"a"_s);
    addLoginItem(u"B"_s);
    EXPECT_EQ(checks(), (QStringList{u"+ Login item: C (removed)"_s, u"+ Login item: b (removed)"_s,
                                     u"- Login item: a (still active)"_s}));
}

TEST_F(StartupVerificationTest, loginItemsThatCantBeReadVerifyNothing) {
    readings.loginItems.wasRead = false;
    configuration.items = {off(Kind::loginApp, u"login:a"_s, u"a"_s),
                           StartupItem::fromLaunchItem({u"App"_s, u"/App.app"_s, true})};
    readings.managedPaths = {u"/Old.app"_s};
    EXPECT_EQ(checks(), (QStringList{u"- Login item: a (could not read login items)"_s,
                                     u"- Startup app: App (could not read login items)"_s,
                                     u"- Startup app: Old (could not read login items)"_s}));
}

TEST_F(StartupVerificationTest, launchItemsByTheirPlists) {
    configuration.items = {off(Kind::launchAgent, u"launch:b.plist"_s, u"Bee"_s, u"b.plist"_s),
                           off(Kind::launchDaemon, u"launch:a.plist"_s, u"Aye"_s, u"a.plist"_s),
                           off(Kind::backgroundAgent, u"launch:c.agent.plist"_s, u"Sea"_s, u"c.agent.plist"_s)};
    readings.launchd = readLaunchd({u"b.plist"_s});
    EXPECT_EQ(checks(),
              (QStringList{u"+ Launch item: a.plist (inactive)"_s, u"+ Launch item: c.agent.plist (inactive)"_s,
                           u"- Launch item: b.plist (still active)"_s}));
}

TEST_F(StartupVerificationTest, whatLaunchdDoesNotTellIsNotCalledOff) {
    configuration.items = {off(Kind::launchAgent, u"launch:b.plist"_s, u"Bee"_s, u"b.plist"_s),
                           off(Kind::backgroundLoginItem, u"btm:com.on"_s, u"x"_s, u"com.on"_s)};
    readings.launchd = LaunchdReadings({}, readLaunchd({u"b.plist"_s}).plists());
    readings.backgroundItems = BackgroundTaskList({activeRecord(u"On"_s, u"com.on"_s, true)});
    EXPECT_EQ(checks(), (QStringList{u"- Launch item: b.plist (could not ask launchd)"_s,
                                     u"- Background item: On (could not ask launchd)"_s}));
}

TEST_F(StartupVerificationTest, whatNoApplySwitchesOffIsNotChecked) {
    LaunchPlist waiting;
    waiting.fileName = u"com.waiting.plist"_s;
    waiting.label = u"com.waiting"_s;
    waiting.folder.isDaemons = true;
    waiting.startsByItself = false;
    readings.launchd = LaunchdReadings(readLaunchd().overrides(), {waiting});
    BackgroundTaskItem managed = activeRecord(u"Managed"_s, u"com.it"_s, true, u"managed agent"_s);
    readings.backgroundItems = BackgroundTaskList({managed});
    configuration.items = {off(Kind::launchDaemon, u"launch:com.waiting.plist"_s, u"W"_s, u"com.waiting.plist"_s),
                           off(Kind::backgroundLoginItem, u"btm:com.waiting"_s, u"W"_s, u"com.waiting"_s),
                           off(Kind::backgroundLoginItem, u"btm:com.it"_s, u"M"_s, u"com.it"_s)};
    EXPECT_EQ(checks(), QStringList());
}

TEST_F(StartupVerificationTest, ofAServiceWhatIsLeftAloneIsNotMissedAndWhatWaitsIsSaidToWait) {
    configuration.disabledCloudSyncAtStartup = {Service::dropbox};
    const QString path = u"/Applications/Dropbox.app/Contents/Library/LaunchDaemons/com.d.plist"_s;
    BackgroundTaskItem daemon = activeRecord(u"Dropbox Daemon"_s, u"com.d"_s, true, u"daemon (0x10)"_s);
    daemon.url = path;
    LaunchPlist plist;
    plist.label = u"com.d"_s;
    plist.folder.isDaemons = true;
    plist.startsByItself = false;
    const BackgroundTaskItem managed = activeRecord(u"Dropbox of IT"_s, u"com.d.it"_s, true, u"managed agent"_s);
    readings.backgroundItems = BackgroundTaskList({daemon, managed}, {{path, plist}});
    EXPECT_EQ(checks(), (QStringList{u"+ Cloud sync: Dropbox (disabled at login)"_s,
                                     u"+ Cloud sync helper: Dropbox (background items disabled)"_s}));
    plist.startsByItself = true;
    readings.backgroundItems = BackgroundTaskList({daemon, managed}, {{path, plist}});
    readings.memory.waiting = {{{LaunchdDomain::System, u"com.d"_s}, {}}};
    EXPECT_EQ(checks(), (QStringList{u"- Cloud sync: Dropbox (will be switched off at the next apply)"_s,
                                     u"- Cloud sync helper: Dropbox (will be switched off at the next apply: "
                                     "Dropbox Daemon)"_s}));
    readings.memory.waiting.clear();
    EXPECT_EQ(checks(), (QStringList{u"- Cloud sync: Dropbox (still active)"_s,
                                     u"- Cloud sync helper: Dropbox (still enabled: Dropbox Daemon)"_s}));
}

TEST_F(StartupVerificationTest, aLaunchItemThatWaitsIsSaidToWait) {
    configuration.items = {off(Kind::launchAgent, u"launch:b.plist"_s, u"Bee"_s, u"b.plist"_s)};
    readings.launchd = readLaunchd({u"b.plist"_s});
    readings.memory.waiting = {{{LaunchdDomain::System, u"b"_s}, u"/Library/LaunchDaemons/b.plist"_s}};
    EXPECT_EQ(checks(), QStringList(u"- Launch item: b.plist (will be switched off at the next apply)"_s));
}

TEST_F(StartupVerificationTest, whatWaitsForTheNextApplyIsSaidToWait) {
    configuration.items = {off(Kind::backgroundLoginItem, u"btm:com.on"_s, u"x"_s, u"com.on"_s)};
    readings.backgroundItems = BackgroundTaskList({activeRecord(u"On"_s, u"com.on"_s, true)});
    readings.memory.waiting = {{{LaunchdDomain::System, u"com.on"_s}, {}}};
    EXPECT_EQ(checks(), QStringList(u"- Background item: On (will be switched off at the next apply)"_s));
}

TEST_F(StartupVerificationTest, anApplicationThatOpensByItsOwnRegistrationIsNotCalledRemoved) {
    StartupItem chat = off(Kind::loginApp, u"login:/Applications/Chat.app"_s, u"Chat"_s);
    chat.path = u"/Applications/Chat.app"_s;
    configuration.items = {chat, StartupItem::fromLaunchItem({u"Deck"_s, u"/Applications/Deck.app"_s, false})};
    readings.memory.registeredApplications = {u"/Applications/Chat.app/"_s, u"/Applications/Deck.app"_s};
    EXPECT_EQ(checks(), QStringList(u"- Login item: Chat (will open at login)"_s))
        << "of the one that is to open nobody has looked since";
    BackgroundTaskItem deck = activeRecord(u"Deck"_s, u"com.deck"_s, true);
    deck.itemType = u"app (0x2)"_s;
    deck.url = u"file:///Applications/Deck.app/"_s;
    readings.backgroundItems = BackgroundTaskList({deck});
    EXPECT_EQ(checks(),
              (QStringList{u"+ Startup app: Deck (configured)"_s, u"- Login item: Chat (will open at login)"_s}));
    readings.loginItems.hasUnreadable = true;
    EXPECT_EQ(checks(), (QStringList{u"- Login item: Chat (could not read login items)"_s,
                                     u"- Startup app: Deck (could not read login items)"_s}))
        << "System Events may list them";
    readings.loginItems.hasUnreadable = false;
    EXPECT_EQ(startupVerification(configuration, readings).failed.first().note,
              u"Turn off in System Settings › General › Login Items: Chat"_s);
    addLoginItem(u"Chat"_s, u"/Applications/Chat.app"_s);
    EXPECT_TRUE(checks().contains(u"- Login item: Chat (still active)"_s)) << "System Events lists it: it can go";
}

TEST_F(StartupVerificationTest, backgroundItemsByTheirRecords) {
    configuration.items = {off(Kind::backgroundLoginItem, u"btm:com.on"_s, u"x"_s, u"com.on"_s),
                           off(Kind::backgroundLoginItem, u"btm:com.off"_s, u"x"_s, u"com.off"_s),
                           off(Kind::backgroundLoginItem, u"btm:com.gone"_s, u"x"_s, u"com.gone"_s),
                           off(Kind::backgroundLoginItem, u"btm:com.both"_s, u"x"_s, u"com.both"_s)};
    EXPECT_EQ(checks(), QStringList()) << "without the dump nothing is known";

    readings.backgroundItems = BackgroundTaskList(
        {activeRecord(u"Still On"_s, u"com.on"_s, true), activeRecord(u"Off"_s, u"com.off"_s, false),
         activeRecord(u"First"_s, u"com.both"_s, false), activeRecord(u"Second"_s, u"com.both"_s, true)});
    EXPECT_EQ(checks(), (QStringList{u"+ Background item: com.gone (not installed)"_s,
                                     u"+ Background item: Off (disabled at login)"_s,
                                     u"- Background item: First (still enabled at login)"_s,
                                     u"- Background item: Still On (still enabled at login)"_s}));
}

TEST_F(StartupVerificationTest, servicesInTheOrderOfTheirDisplayNames) {
    configuration.disabledCloudSyncAtStartup = {Service::synologyDrive, Service::syncCom};
    EXPECT_EQ(checks(), (QStringList{u"+ Cloud sync: Sync.com (not installed)"_s,
                                     u"+ Cloud sync: Synology Drive (not installed)"_s}));
}

TEST_F(StartupVerificationTest, servicesByTheirItems) {
    configuration.disabledCloudSyncAtStartup = {Service::mega, Service::dropbox, Service::oneDrive};
    readings.discovered = {on(off(Kind::loginApp, u"login:Dropbox"_s, u"Dropbox"_s)),
                           on(off(Kind::launchAgent, u"launch:od.plist"_s, u"OneDrive"_s, u"od.plist"_s))};
    addLoginItem(u"Dropbox"_s);
    EXPECT_EQ(checks(),
              (QStringList{u"+ Launch item: od.plist (inactive)"_s, u"+ Cloud sync: MEGA (not installed)"_s,
                           u"+ Cloud sync: OneDrive (disabled at login)"_s, u"- Login item: Dropbox (still active)"_s,
                           u"- Cloud sync: Dropbox (still active)"_s}));
}

TEST_F(StartupVerificationTest, helpersOfServicesByTheirRecords) {
    configuration.disabledCloudSyncAtStartup = {Service::mega, Service::dropbox, Service::box};
    readings.backgroundItems = BackgroundTaskList(
        {activeRecord(u"Dropbox Helper"_s, u"com.d.1"_s, true), activeRecord(u"Dropbox Idle"_s, u"com.d.2"_s, false),
         activeRecord(u"Dropbox"_s, u"com.d"_s, true, u"app (0x2)"_s),
         activeRecord(u"Dropbox Daemon"_s, u"com.d.3"_s, true), activeRecord(u"MEGAsync"_s, u"com.m"_s, false)});
    EXPECT_EQ(checks(),
              (QStringList{u"+ Cloud sync: Box (not installed)"_s, u"+ Cloud sync: MEGA (disabled at login)"_s,
                           u"+ Cloud sync helper: MEGA (background items disabled)"_s,
                           u"- Cloud sync: Dropbox (still active)"_s,
                           u"- Cloud sync helper: Dropbox (still enabled: Dropbox Helper, Dropbox Daemon)"_s}));
}

TEST_F(StartupVerificationTest, theNetworkWhenItWasAskedFor) {
    configuration.disableNetworkAtStartup = true;
    readings.isNetworkOff = true;
    EXPECT_EQ(checks(), QStringList(u"+ Network (all interfaces disabled)"_s));
    readings.isNetworkOff = false;
    EXPECT_EQ(checks(), QStringList(u"- Network (expected all interfaces disabled)"_s));
    configuration.disableNetworkAtStartup = false;
    readings.isNetworkOff = std::nullopt;
    EXPECT_EQ(checks(), QStringList());
}

TEST_F(StartupVerificationTest, addedApplicationsByTheirPaths) {
    configuration.items = {StartupItem::fromLaunchItem({u"Shown"_s, u"/Applications/Shown.app"_s, false}),
                           StartupItem::fromLaunchItem({u"Hidden"_s, u"/Applications/Hidden.app"_s, true}),
                           StartupItem::fromLaunchItem({u"Missing"_s, u"/Applications/Missing.app"_s, true})};
    addLoginItem(u"Other Name"_s, u"/Applications/Shown.app"_s);
    addLoginItem(u"Hidden"_s, u"/Applications/Hidden.app"_s);
    addLoginItem(u"Missing"_s, u"/elsewhere"_s);
    const QString shown = u"+ Startup app: Shown (configured)"_s;
    const QString missing = u"- Startup app: Missing (not configured)"_s;
    EXPECT_EQ(checks(), (QStringList{shown, u"+ Startup app: Hidden (configured)"_s, missing})) << "it opens visibly";
    readings.loginItems.items[1].hidden = true;
    EXPECT_EQ(checks(), (QStringList{shown, u"+ Startup app: Hidden (hidden at login)"_s, missing}));
}

TEST_F(StartupVerificationTest, managedApplicationsThatAreNoLongerConfigured) {
    configuration.items = {StartupItem::fromLaunchItem({u"Kept"_s, u"/Applications/Kept.app"_s, false})};
    readings.managedPaths = {u"/Applications/Kept.app"_s, u"/Applications/Gone.app"_s, u"/Applications/Old.app"_s};
    addLoginItem(u"Kept"_s, u"/Applications/Kept.app"_s);
    addLoginItem(u"Shown Name"_s, u"/Applications/Old.app"_s);
    EXPECT_EQ(checks(),
              (QStringList{u"+ Startup app: Kept (configured)"_s, u"+ Startup app: Gone (removed from login items)"_s,
                           u"- Startup app: Shown Name (still in login items)"_s}));
}

TEST_F(StartupVerificationTest, aProtectedItemThatWasLeftInPlaceFails) {
    configuration.items = {off(Kind::loginApp, u"login:Ableton Helper"_s, u"Ableton Helper"_s)};
    addLoginItem(u"Ableton Helper"_s);
    EXPECT_EQ(checks(), QStringList(u"- Login item: Ableton Helper (still active)"_s));
}

TEST_F(StartupVerificationTest, theChecksComeInTheirOrder) {
    configuration.items = {StartupItem::fromLaunchItem({u"App"_s, u"/App.app"_s, false}),
                           off(Kind::backgroundLoginItem, u"btm:com.b"_s, u"x"_s, u"com.b"_s),
                           off(Kind::launchAgent, u"launch:a.plist"_s, u"A"_s, u"a.plist"_s),
                           off(Kind::loginApp, u"login:l"_s, u"l"_s)};
    configuration.disableNetworkAtStartup = true;
    configuration.disabledCloudSyncAtStartup = {Service::dropbox};
    readings.backgroundItems = BackgroundTaskList({activeRecord(u"Dropbox Helper"_s, u"com.d"_s, false)});
    readings.isNetworkOff = true;
    readings.managedPaths = {u"/Old.app"_s};
    addLoginItem(u"App"_s, u"/App.app"_s);
    EXPECT_EQ(checks(), (QStringList{u"+ Login item: l (removed)"_s, u"+ Launch item: a.plist (inactive)"_s,
                                     u"+ Background item: com.b (not installed)"_s,
                                     u"+ Cloud sync: Dropbox (disabled at login)"_s,
                                     u"+ Cloud sync helper: Dropbox (background items disabled)"_s,
                                     u"+ Network (all interfaces disabled)"_s, u"+ Startup app: App (configured)"_s,
                                     u"+ Startup app: Old (removed from login items)"_s}));
}

} // namespace
} // namespace quorvane
