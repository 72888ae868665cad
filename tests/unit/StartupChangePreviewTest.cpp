#include "startup/apply/StartupChangePreview.h"

#include "fakes/ReadLaunchd.h"
#include "profiles/ApplyPreviews.h"
#include "startup/apply/ActiveStartup.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

using Kind = StartupItemKind;
using Service = CloudSyncService;

StartupItem previewedItem(Kind kind, const QString& name, bool runs = false,
                          const std::optional<QString>& launchIdentifier = std::nullopt) {
    StartupItem made;
    made.id = u"id:"_s + name;
    made.name = name;
    made.kind = kind;
    made.runsAtStartup = runs;
    made.launchIdentifier = launchIdentifier;
    return made;
}

StartupItem addedToOpen(const QString& name, const QString& path, bool hidden = false) {
    return StartupItem::fromLaunchItem({name, path, hidden});
}

QStringList itemNames(const QList<StartupItem>& items) {
    QStringList names;
    for (const StartupItem& each : items) {
        names.append(each.name);
    }
    return names;
}

class StartupChangePreviewTest : public ::testing::Test {
protected:
    StartupChangePreviewTest() { readings.loginItems.wasRead = true; }

    StartupChangePreview preview() const { return startupChangePreview(configuration, std::nullopt, readings); }
    void addLoginItem(const QString& name, const QString& path) {
        readings.loginItems.items.append({name, path, false});
    }

    StartupConfiguration configuration;
    StartupReadings readings = readingsWithLaunchd();
};

TEST_F(StartupChangePreviewTest, anEmptyConfigurationChangesNothing) {
    addLoginItem(u"Foo"_s, u"/Foo.app"_s);
    readings.discovered = {previewedItem(Kind::loginApp, u"Foo"_s, true)};
    EXPECT_EQ(preview(), StartupChangePreview());
}

TEST_F(StartupChangePreviewTest, whatWaitsForThisApplyIsShownUnlessTheProfileKeepsIt) {
    LaunchPlist daemon;
    daemon.fileName = u"com.vpn.plist"_s;
    daemon.folder = launchFolders(u"/Users/alex"_s).last();
    daemon.label = u"com.vpn"_s;
    readings.launchd = LaunchdReadings(readLaunchd().overrides(), {daemon});
    readings.memory.waiting = {{{LaunchdDomain::System, u"com.vpn"_s}, daemon.path(), u"VPN"_s},
                               {{LaunchdDomain::System, u"com.job"_s}, {}, u"Sync"_s, u"com.sync"_s, true}};
    EXPECT_EQ(itemNames(preview().willDisable), (QStringList{u"Sync"_s, u"VPN"_s}));
    EXPECT_EQ(itemNames(cleanRebootPreview({}, readings).willDisable), (QStringList{u"Sync"_s, u"VPN"_s}));
    configuration.items = {previewedItem(Kind::launchDaemon, u"VPN"_s, true, u"com.vpn.plist"_s),
                           previewedItem(Kind::backgroundLoginItem, u"Sync"_s, true, u"com.sync"_s)};
    EXPECT_EQ(itemNames(preview().willDisable), QStringList());
}

TEST_F(StartupChangePreviewTest, saysWhyTheLoginItemsAreNotKnown) {
    EXPECT_EQ(preview().unreadLoginItems, QString());
    readings.loginItems.wasRead = false;
    readings.loginItems.failure = ScriptFailure{-1743, u"Nein."_s};
    EXPECT_EQ(preview().unreadLoginItems, u"not permitted"_s);
    EXPECT_EQ(cleanRebootPreview({}, readings).unreadLoginItems, u"not permitted"_s);
    readings.loginItems.failure = ScriptFailure{-1712, u"Zu spät."_s};
    EXPECT_EQ(preview().unreadLoginItems, u"not answered"_s);
    readings.loginItems.failure = ScriptFailure{-609, u"Connection is invalid."_s};
    EXPECT_EQ(preview().unreadLoginItems, u"Connection is invalid."_s);
}

TEST_F(StartupChangePreviewTest, whatIsSwitchedOffAndStillActiveWillBeDisabled) {
    addLoginItem(u"zed"_s, u"/z"_s);
    addLoginItem(u"Alpha"_s, u"/a"_s);
    addLoginItem(u"Runs"_s, u"/r"_s);
    readings.launchd = readLaunchd({u"com.m.plist"_s});
    readings.backgroundItems = BackgroundTaskList({{u"B"_s, u"com.b"_s, {}, {}, u"[enabled]"_s, {}, {}, {}},
                                                   {u"Off"_s, u"com.off"_s, {}, {}, u"[disabled]"_s, {}, {}, {}}});
    configuration.items = {previewedItem(Kind::loginApp, u"zed"_s),
                           previewedItem(Kind::loginApp, u"Gone"_s),
                           previewedItem(Kind::loginApp, u"Runs"_s, true),
                           previewedItem(Kind::backgroundAgent, u"Alpha"_s),
                           previewedItem(Kind::launchDaemon, u"mid"_s, false, u"com.m.plist"_s),
                           previewedItem(Kind::launchAgent, u"moved"_s, false, u"com.n.plist"_s),
                           previewedItem(Kind::backgroundLoginItem, u"Bee"_s, false, u"com.b"_s),
                           previewedItem(Kind::backgroundLoginItem, u"Off"_s, false, u"com.off"_s)};
    EXPECT_EQ(itemNames(preview().willDisable), (QStringList{u"Alpha"_s, u"Bee"_s, u"mid"_s, u"zed"_s}));
}

TEST_F(StartupChangePreviewTest, whatIsOnAgainAndWhatOnlyTheUserCanTurnOffIsMarked) {
    readings.launchd = readLaunchd({u"com.m.plist"_s, u"com.n.plist"_s});
    readings.onAgain = {u"com.m"_s, u"com.b"_s};
    readings.memory.registeredApplications = {u"/Applications/Chat.app"_s};
    StartupItem chat = previewedItem(Kind::loginApp, u"Chat"_s);
    chat.path = u"/Applications/Chat.app"_s;
    configuration.items = {chat, previewedItem(Kind::launchAgent, u"M"_s, false, u"com.m.plist"_s),
                           previewedItem(Kind::launchAgent, u"N"_s, false, u"com.n.plist"_s),
                           previewedItem(Kind::backgroundLoginItem, u"B"_s, false, u"com.b"_s)};
    EXPECT_EQ(itemNames(preview().willDisable), (QStringList{u"B"_s, u"Chat"_s, u"M"_s, u"N"_s}));
    EXPECT_EQ(preview().onAgain, (QSet<QString>{u"id:M"_s, u"id:B"_s}));
    EXPECT_EQ(preview().byHand, QSet<QString>{u"id:Chat"_s});
    QStringList details;
    const QList<ReviewSection> sections = reviewSections(preview());
    for (const ReviewSection::Row& row : sections.first().rows) {
        details.append(row.detail);
    }
    EXPECT_EQ(details, (QStringList{u"Background Item, on again since it was switched off"_s,
                                    u"App, turn off in System Settings"_s,
                                    u"Launch Agent, on again since it was switched off"_s, u"Launch Agent"_s}));
}

TEST_F(StartupChangePreviewTest, whatCantBeToldStaysInTheList) {
    readings.loginItems.wasRead = false;
    configuration.items = {previewedItem(Kind::loginApp, u"login"_s),
                           previewedItem(Kind::backgroundLoginItem, u"background"_s, false, u"com.b"_s),
                           previewedItem(Kind::launchAgent, u"launch"_s, false, u"com.n.plist"_s)};
    EXPECT_EQ(itemNames(preview().willDisable), (QStringList{u"background"_s, u"login"_s}));
}

TEST_F(StartupChangePreviewTest, activeItemsOfADisabledServiceWillBeDisabledOnce) {
    addLoginItem(u"Dropbox"_s, u"/Applications/Dropbox.app"_s);
    addLoginItem(u"MEGAsync"_s, u"/Applications/MEGAsync.app"_s);
    configuration.disabledCloudSyncAtStartup = {Service::dropbox};
    configuration.items = {previewedItem(Kind::loginApp, u"Dropbox"_s)};
    readings.discovered = {previewedItem(Kind::loginApp, u"Dropbox"_s, true),
                           previewedItem(Kind::loginApp, u"MEGAsync"_s, true),
                           previewedItem(Kind::launchAgent, u"Dropbox Gone"_s, true, u"com.dropbox.plist"_s)};
    EXPECT_EQ(itemNames(preview().willDisable), QStringList(u"Dropbox"_s));
    configuration.items.clear();
    EXPECT_EQ(preview().willDisable, QList<StartupItem>{readings.discovered.first()});
}

TEST_F(StartupChangePreviewTest, anAddedApplicationWillBeAddedUnlessItsPathIsALoginItem) {
    addLoginItem(u"Renamed"_s, u"/Applications/There.app"_s);
    addLoginItem(u"New"_s, u"/elsewhere"_s);
    configuration.items = {addedToOpen(u"new"_s, u"/Applications/New.app"_s, true),
                           addedToOpen(u"Another"_s, u"/Applications/Another.app"_s),
                           addedToOpen(u"There"_s, u"/Applications/There.app"_s)};
    EXPECT_EQ(preview().willAdd, (QList<StartupLaunchItem>{{u"Another"_s, u"/Applications/Another.app"_s, false},
                                                           {u"new"_s, u"/Applications/New.app"_s, true}}));
}

TEST_F(StartupChangePreviewTest, aManagedApplicationThatIsNoLongerConfiguredWillBeRemoved) {
    addLoginItem(u"shown"_s, u"/Applications/Old.app"_s);
    addLoginItem(u"Another"_s, u"/Applications/A.app"_s);
    addLoginItem(u"Kept"_s, u"/Applications/Kept.app"_s);
    addLoginItem(u"User's"_s, u"/Applications/User.app"_s);
    readings.managedPaths = {u"/Applications/Old.app"_s, u"/Applications/A.app"_s, u"/Applications/Kept.app"_s,
                             u"/Applications/Gone.app"_s};
    configuration.items = {addedToOpen(u"Kept"_s, u"/Applications/Kept.app"_s)};
    EXPECT_EQ(preview().willRemove, (QList<StartupLaunchItem>{{u"Another"_s, u"/Applications/A.app"_s, false},
                                                              {u"shown"_s, u"/Applications/Old.app"_s, false}}));
}

// ---- A clean reboot

TEST_F(StartupChangePreviewTest, aCleanRebootTakesWhatNothingPermitsEachItemOnce) {
    addLoginItem(u"Zoom"_s, u"/Applications/zoom.us.app/"_s);
    addLoginItem(u"Chat"_s, u"/Applications/Chat.app"_s);
    addLoginItem(u"Mail"_s, u"/Applications/Mail.app"_s);
    addLoginItem(u"Sync Agent"_s, u"/Applications/Sync.app"_s);
    addLoginItem(u"Deck"_s, u"/Applications/Traktor.app"_s);
    configuration.items = {previewedItem(Kind::loginApp, u"Chat"_s)}; // as an older profile knows it
    CleanReboot cleanReboot{{u"Mail"_s}, configuration, {u"Sync Agent"_s}};
    const StartupChangePreview unknown = startupChangePreview(configuration, cleanReboot, readings);
    EXPECT_EQ(itemNames(unknown.willDisable), (QStringList{u"Chat"_s, u"Zoom"_s}));
    EXPECT_EQ(unknown.willDisable.last(), startupItemOf(readings.loginItems.items.first()));
    EXPECT_TRUE(unknown.willDisableUnknownBackgroundItems);
    readings.backgroundItems = BackgroundTaskList({});
    EXPECT_TRUE(startupChangePreview(configuration, cleanReboot, readings).willDisableUnknownBackgroundItems)
        << "an empty list is one that couldn't be read";

    readings.backgroundItems =
        BackgroundTaskList({{u"Helper"_s, u"com.h"_s, {}, u"agent"_s, u"[enabled]"_s, {}, {}, {}},
                            {u"Mail Helper"_s, u"com.m"_s, {}, u"agent"_s, u"[enabled]"_s, {}, {}, {}},
                            {u"Off"_s, u"com.off"_s, {}, u"agent"_s, u"[disabled]"_s, {}, {}, {}}});
    const StartupChangePreview known = startupChangePreview(configuration, cleanReboot, readings);
    EXPECT_EQ(itemNames(known.willDisable), (QStringList{u"Chat"_s, u"Helper"_s, u"Zoom"_s}));
    EXPECT_FALSE(known.willDisableUnknownBackgroundItems);
    EXPECT_FALSE(preview().willDisableUnknownBackgroundItems);
}

TEST_F(StartupChangePreviewTest, aCleanRebootAloneTakesNeitherServicesNorWhatItPermits) {
    addLoginItem(u"Dropbox"_s, u"/Applications/Dropbox.app"_s);
    addLoginItem(u"Chat"_s, u"/Applications/Chat.app"_s);
    addLoginItem(u"Old"_s, u"/Applications/Old.app"_s);
    readings.managedPaths = {u"/Applications/Old.app"_s};
    readings.launchd = readLaunchd({u"com.a.plist"_s, u"com.x.agent.plist"_s});
    StartupItem agent = previewedItem(Kind::backgroundAgent, u"X Agent"_s, false, u"com.x.agent.plist"_s);
    agent.id = launchItemId(u"com.x.agent.plist"_s);
    configuration.items = {previewedItem(Kind::launchAgent, u"A"_s, false, u"com.a.plist"_s),
                           previewedItem(Kind::launchAgent, u"Gone"_s, false, u"com.gone.plist"_s),
                           previewedItem(Kind::backgroundLoginItem, u"B"_s, false, u"com.b"_s),
                           previewedItem(Kind::loginApp, u"Chat"_s),
                           agent,
                           addedToOpen(u"New"_s, u"/Applications/New.app"_s)};
    configuration.disabledCloudSyncAtStartup = {Service::dropbox};
    configuration.disableNetworkAtStartup = true;
    StartupChangePreview expected;
    expected.willDisable = {configuration.items[0], configuration.items[2], startupItemOf(readings.loginItems.items[1]),
                            startupItemOf(readings.loginItems.items[2])};
    expected.willDisableUnknownBackgroundItems = true;
    EXPECT_EQ(cleanRebootPreview({{u"Dropbox"_s}, configuration, {}}, readings), expected);
    EXPECT_EQ(itemNames(cleanRebootPreview({}, readings).willDisable),
              (QStringList{u"Chat"_s, u"Dropbox"_s, u"Old"_s}));
}

TEST_F(StartupChangePreviewTest, theNetworkAndTheServicesAreThoseOfTheConfiguration) {
    configuration.disableNetworkAtStartup = true;
    configuration.disabledCloudSyncAtStartup = {Service::syncCom, Service::synologyDrive, Service::iCloudDrive,
                                                Service::mega};
    EXPECT_TRUE(preview().disableNetwork);
    EXPECT_EQ(preview().disabledCloudSync,
              (QList<Service>{Service::iCloudDrive, Service::mega, Service::syncCom, Service::synologyDrive}))
        << "by display name, which isn't the order of the table";
    EXPECT_EQ(preview().willDisable, QList<StartupItem>());
}

} // namespace
} // namespace quorvane
