#include "fakes/ScriptedLoginItems.h"

#include "startup/background/BackgroundLoginItemChangePlan.h"
#include "startup/items/LegacyStartupFields.h"

namespace quorvane {

namespace {

const QString kRestorationOff =
    u"$ /usr/bin/defaults write com.apple.loginwindow TALLogoutSavesState -bool false\n"
    "$ /usr/bin/defaults write com.apple.loginwindow LoginwindowLaunchesRelaunchApps -bool false\n"
    "$ /usr/bin/defaults write NSGlobalDomain NSQuitAlwaysKeepsWindows -bool false\n"
    "  [APPLIED] Disabled app and window restoration on reboot.\n"_s;
/// Where no batch is open the background items have one of their own. With nothing to switch off it asks for nothing.
const QString kNoBackgroundItems = kLookAtLaunchd;

const LoginItem kZoom{u"zoom"_s, u"/Applications/zoom.us.app"_s, false};
const LoginItem kDropbox{u"Dropbox"_s, u"/Applications/Dropbox.app"_s, false};
const LoginItem kAgent{u"Sync Agent"_s, u"/Applications/Sync.app"_s, false};
const LoginItem kTraktor{u"Traktor Helper"_s, u"/Applications/T.app"_s, false};

class CleanRebootFlow : public ScriptedStartup {
protected:
    CleanRebootFlow() {
        takeDump("#1:\n Name: Updater\n Type: agent (0x8)\n Identifier: 8.com.up\n Disposition: [disabled]\n");
    }
    bool apply(const CleanReboot& cleanReboot) { return QCoro::waitFor(system.applyCleanReboot(cleanReboot)); }
};

StartupItem offItem(StartupItemKind kind, const QString& id, const QString& label) {
    StartupItem item;
    item.id = id;
    item.name = label;
    item.kind = kind;
    item.runsAtStartup = false;
    item.launchIdentifier = label;
    return item;
}

} // namespace

TEST_F(CleanRebootFlow, removesWhatIsNotPermittedInTheOrderOfNames) {
    loginItems.items = {kZoom, kTraktor, {u"Mail"_s, u"/Applications/Mail.app"_s, false}, kDropbox};
    EXPECT_TRUE(apply({{u"Mail"_s}, std::nullopt, {}}));
    EXPECT_EQ(takeTrace(), kRestorationOff +
                               u"$> System Events: list\n"
                               "  [ACTION] Removing 2 login item(s) not in permitted startup list...\n"
                               "$> System Events: delete where name is Dropbox; delete where name is zoom\n"
                               "  [APPLIED] Removed login item: Dropbox\n"
                               "  [APPLIED] Removed login item: zoom\n"_s +
                               kNoBackgroundItems);
    EXPECT_EQ(loginItems.names(), (QStringList{u"Traktor Helper"_s, u"Mail"_s}));
}

TEST_F(CleanRebootFlow, aMacThatMatchesIsLeftAsItIs) {
    loginItems.items = {kTraktor, kZoom};
    EXPECT_TRUE(apply({{u"zoom"_s}, std::nullopt, {}}));
    EXPECT_EQ(takeTrace(), kRestorationOff +
                               u"$> System Events: list\n"
                               "  [APPLIED] Login items already match permitted startup list.\n"_s +
                               kNoBackgroundItems);
}

TEST_F(CleanRebootFlow, aPermittedNameIsComparedExactly) {
    loginItems.items = {kZoom};
    EXPECT_TRUE(apply({{u"Zoom"_s}, std::nullopt, {}}));
    EXPECT_EQ(loginItems.names(), QStringList());
}

TEST_F(CleanRebootFlow, anExcludedAgentStaysByIdOrName) {
    const LoginItem other{u"Other Agent"_s, u"/Applications/Other.app"_s, false};
    loginItems.items = {kAgent, other, kZoom};
    EXPECT_TRUE(apply({{}, std::nullopt, {u"login:/Applications/Sync.app"_s, u"Other Agent"_s, u"zoom"_s}}));
    EXPECT_EQ(takeTrace(), kRestorationOff +
                               u"$> System Events: list\n"
                               "  [ACTION] Removing 3 login item(s) not in permitted startup list...\n"
                               "$> System Events: delete where name is zoom\n"
                               "  [SKIPPED] Excluded App Background Activity login item: Other Agent\n"
                               "  [SKIPPED] Excluded App Background Activity login item: Sync Agent\n"
                               "  [APPLIED] Removed login item: zoom\n"_s +
                               kNoBackgroundItems);
    EXPECT_EQ(loginItems.items, (QList<LoginItem>{kAgent, other}));
}

TEST_F(CleanRebootFlow, aRemovalThatFailsStopsNoOther) {
    loginItems.items = {kDropbox, kZoom};
    loginItems.unchangeable = {u"Dropbox"_s};
    EXPECT_FALSE(apply({}));
    EXPECT_EQ(takeTrace(), kRestorationOff +
                               u"$> System Events: list\n"
                               "  [ACTION] Removing 2 login item(s) not in permitted startup list...\n"
                               "$> System Events: delete where name is Dropbox; delete where name is zoom\n"
                               "  [ERROR] Failed to remove login item: Dropbox\n"
                               "  [APPLIED] Removed login item: zoom\n"_s +
                               kNoBackgroundItems);
}

TEST_F(CleanRebootFlow, whereAnItemOfTheNameStaysTheOtherGoesByItsPath) {
    const LoginItem protectedOne{u"Helper"_s, u"/Applications/rekordbox.app"_s, false};
    loginItems.items = {protectedOne, {u"helper"_s, u"/Applications/H.app"_s, false}};
    EXPECT_TRUE(apply({}));
    EXPECT_TRUE(trace.contains(u"$> System Events: delete where path is /Applications/H.app and name is helper"_s));
    EXPECT_EQ(loginItems.items, QList<LoginItem>{protectedOne});
}

TEST_F(CleanRebootFlow, whereAnExcludedAgentOfTheNameStaysTheOtherGoesByItsPath) {
    const LoginItem excluded{u"Foo Agent"_s, u"/Applications/A.app"_s, false};
    loginItems.items = {excluded, {u"foo agent"_s, u"/Applications/B.app"_s, false}};
    EXPECT_TRUE(apply({{}, std::nullopt, {u"login:/Applications/A.app"_s}}));
    EXPECT_EQ(loginItems.items, QList<LoginItem>{excluded});
}

TEST_F(CleanRebootFlow, anAppThatTheConfigurationOpensStaysByNameOrPath) {
    loginItems.items = {
        {u"Renamed"_s, u"/Applications/Live.app"_s, false}, {u"Mixer"_s, u"/elsewhere.app"_s, false}, kZoom};
    StartupConfiguration startup;
    startup.items = {StartupItem::fromLaunchItem({u"Live"_s, u"/Applications/Live.app"_s, false}),
                     StartupItem::fromLaunchItem({u"Mixer"_s, u"/Applications/Mixer.app"_s, false})};
    EXPECT_TRUE(apply({{}, startup, {}}));
    EXPECT_EQ(loginItems.names(), (QStringList{u"Renamed"_s, u"Mixer"_s}));
}

TEST_F(CleanRebootFlow, whatTheConfigurationKeepsIsKnownByIdOrPathToo) {
    const LoginItem byId{u"Shown"_s, u"/Applications/Id.app/"_s, false};
    const LoginItem byPath{u"Found"_s, u"/Applications/Path.app"_s, false};
    const LoginItem added{u"Added"_s, u"/Applications/Live.app/"_s, false};
    const LoginItem olderProfiles{u"Chat"_s, u"/Applications/Chat.app"_s, false};
    loginItems.items = {byId, byPath, added, olderProfiles, {u"Off"_s, u"/Applications/Off.app"_s, false}};
    StartupConfiguration startup;
    startup.items = {startupItemOf(LoginItem{u"Older name"_s, u"/Applications/Id.app"_s, false}),
                     startupItemOf(LoginItem{u"Older name"_s, u"/elsewhere"_s, false}),
                     StartupItem::fromLaunchItem({u"Live"_s, u"/Applications/Live.app"_s, false}),
                     startupItemOf(LoginItem{u"Off"_s, u"/Applications/Off.app"_s, false})};
    startup.items[1].path = u"/Applications/Path.app/"_s;
    startup.items[3].runsAtStartup = false;
    LegacyStartupFields fields;
    fields.permittedStartupApps = {u"/Applications/Chat.app"_s};
    fields.cleanReboot = true;
    startup.items += StartupConfiguration::fromLegacyFields(fields).items;
    EXPECT_TRUE(apply({startup.permittedLoginNames(), startup, {}}));
    EXPECT_EQ(loginItems.items, (QList<LoginItem>{byId, byPath, added, olderProfiles}));
}

TEST_F(CleanRebootFlow, withoutPermissionNothingIsRemoved) {
    loginItems.items = {kZoom};
    loginItems.denial = "Not authorized";
    apply({});
    EXPECT_EQ(takeTrace(), kRestorationOff +
                               u"$> System Events: list\n"
                               "  [ERROR] Could not read login items: Not authorized\n"
                               "  [INFO] Grant Automation permission for System Events in System Settings → Privacy & "
                               "Security.\n"_s +
                               kNoBackgroundItems);
}

TEST_F(CleanRebootFlow, launchItemsThatAreOffAreDisabledInOrder) {
    StartupConfiguration startup;
    startup.items = {offItem(StartupItemKind::launchAgent, u"launch:b.plist"_s, u"b.plist"_s),
                     offItem(StartupItemKind::launchDaemon, u"launch:a.plist"_s, u"a.plist"_s),
                     offItem(StartupItemKind::launchAgent, u"launch:c.agent.plist"_s, u"c.agent.plist"_s)};
    files.addFile(u"/Users/alex/Library/LaunchAgents/a.plist"_s, "a");
    files.addFile(u"/Users/alex/Library/LaunchAgents/c.agent.plist"_s, "c");
    EXPECT_TRUE(apply({{}, startup, {u"launch:c.agent.plist"_s}}));
    EXPECT_EQ(takeTrace(), kRestorationOff +
                               u"$> System Events: list\n"
                               "  [APPLIED] Login items already match permitted startup list.\n"
                               "  [ACTION] Disabling 3 launch item(s) for clean reboot...\n"
                               "? launchd\n"
                               "$ /bin/launchctl bootout gui/501 /Users/alex/Library/LaunchAgents/a.plist\n"
                               "  [APPLIED] Disabled launch item: a.plist (/Users/alex/Library/LaunchAgents)\n"
                               "  [SKIPPED] Excluded App Background Activity launch item: c.agent.plist\n"_s);
}

TEST_F(CleanRebootFlow, aLaunchItemThatFailsMakesItFalse) {
    StartupConfiguration startup;
    startup.items = {offItem(StartupItemKind::launchAgent, u"launch:a.plist"_s, u"a.plist"_s)};
    files.addFile(u"/Users/alex/Library/LaunchAgents/a.plist"_s, "a");
    files.failOn(MemoryFileManager::Operation::Move, u"/Users/alex/Library/LaunchAgents/a.plist"_s);
    EXPECT_FALSE(apply({{}, startup, {}}));
}

// ---- Background items

TEST_F(CleanRebootFlow, backgroundItemsThatAreNotPermittedAreDisabled) {
    takeDump("#1:\n Name: Updater\n Type: agent (0x8)\n Identifier: 8.com.up\n Disposition: [enabled]\n"
             "#2:\n Name: Mail Helper\n Type: agent (0x8)\n Identifier: 8.com.mail\n Disposition: [enabled]\n"
             "#3:\n Name: Chosen\n Type: agent (0x8)\n Identifier: 8.com.off\n Disposition: [disabled]\n");
    StartupConfiguration startup;
    startup.items = {offItem(StartupItemKind::backgroundLoginItem, u"btm:com.off"_s, u"com.off"_s),
                     StartupItem::fromLaunchItem({u"Mail"_s, u"/Applications/Mail.app"_s, false})};
    EXPECT_TRUE(apply({{}, startup, {}}));
    EXPECT_EQ(takeTrace(), kRestorationOff +
                               u"$> System Events: list\n"
                               "  [APPLIED] Login items already match permitted startup list.\n"_s +
                               kLookAtLaunchd + kLookAtJobs +
                               u"$ /bin/launchctl disable gui/501/com.up\n"
                               "$ /bin/launchctl bootout gui/501/com.up\n"_s +
                               kLookAtLaunchd + u"  [APPLIED] Disabled background login label: com.up\n"_s);
    EXPECT_TRUE(commands.launchd.isOff(u"gui/501/com.up"_s));
    EXPECT_FALSE(commands.launchd.isOff(u"gui/501/com.mail"_s));
}

TEST_F(CleanRebootFlow, aListThatNeedsRootIsAskedForOnce) {
    SystemManager fresh(hostWith(files, clock), notifications);
    scripts.failNext(u"User canceled."_s);
    EXPECT_FALSE(QCoro::waitFor(fresh.applyCleanReboot({})));
    EXPECT_EQ(trace.filter(u"& do shell script"_s).size(), 1);
    EXPECT_FALSE(fresh.backgroundTaskItems().has_value());
}

TEST_F(CleanRebootFlow, inABatchThatTakesTheDumpBackgroundItemsAreOnlyPlanned) {
    StartupConfiguration startup;
    startup.items = {offItem(StartupItemKind::backgroundLoginItem, u"btm:com.off"_s, u"com.off"_s),
                     StartupItem::fromLaunchItem({u"Mail"_s, u"/Applications/Mail.app"_s, false})};
    system.deferBackgroundTaskFetchToAdminBatch();
    system.beginAdminBatch();
    EXPECT_TRUE(apply({{u"zoom"_s}, startup, {}}));
    EXPECT_EQ(takeTrace(), kRestorationOff + u"$> System Events: list\n"
                                             "  [APPLIED] Login items already match permitted startup list.\n"_s);
    BackgroundLoginItemChangePlan plan;
    plan.cleanRebootPermittedNames = QSet<QString>{u"zoom"_s, u"Mail"_s};
    plan.cleanRebootStartup = startup;
    plan.disabledBackgroundLaunchLabels = {u"com.off"_s};
    EXPECT_EQ(system.pendingBackgroundLoginItemChanges(), plan);
}

TEST_F(CleanRebootFlow, thePlanOfACleanRebootWithoutAConfigurationHoldsOnlyTheNames) {
    system.deferBackgroundTaskFetchToAdminBatch();
    system.beginAdminBatch();
    loginItems.items = {kZoom};
    loginItems.unchangeable = {u"zoom"_s};
    EXPECT_FALSE(apply({}));
    BackgroundLoginItemChangePlan plan;
    plan.cleanRebootPermittedNames = QSet<QString>();
    EXPECT_EQ(system.pendingBackgroundLoginItemChanges(), plan);
}

} // namespace quorvane
