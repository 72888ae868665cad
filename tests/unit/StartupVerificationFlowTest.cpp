#include "fakes/StartupSystem.h"
#include "startup/login/LoginItemScripts.h"

namespace quorvane {

namespace {

using Item = ApplyVerificationResult::Item;

const QString kNetworkTool = u"/usr/sbin/networksetup -"_s;
const QString kManagedKey = u"QuorvaneManagedStartupAppPaths"_s;

StartupConfiguration configured(const QList<StartupItem>& items, const CloudSyncServices& services = {}) {
    StartupConfiguration configuration;
    configuration.items = items;
    configuration.disabledCloudSyncAtStartup = services;
    return configuration;
}

class StartupVerificationFlow : public StartupSystem {
protected:
    ApplyVerificationResult verify(const StartupConfiguration& configuration) {
        trace.clear();
        return QCoro::waitFor(system.verifyStartupConfiguration(configuration));
    }
    static ApplyVerificationResult verified(const QList<Item>& items) { return {items, {}}; }
    static ApplyVerificationResult failed(const QList<Item>& items) { return {{}, items}; }

    void answerNetwork(const QByteArray& services, const QList<QPair<QString, QByteArray>>& states) {
        commands.print(kNetworkTool + u"listallnetworkservices"_s, services);
        for (const auto& [name, state] : states) {
            commands.print(kNetworkTool + u"getnetworkserviceenabled "_s + name, state);
        }
    }
    static StartupConfiguration networkOff() {
        StartupConfiguration configuration;
        configuration.disableNetworkAtStartup = true;
        return configuration;
    }
};

} // namespace

TEST_F(StartupVerificationFlow, withNothingToCheckNobodyIsAsked) {
    EXPECT_EQ(verify({}), ApplyVerificationResult());
    EXPECT_EQ(trace, QStringList());
}

TEST_F(StartupVerificationFlow, whatIsGoneIsVerifiedInTheOrderOfTheSteps) {
    login = {{u"Live"_s, u"/Applications/Live.app"_s, false}, {u"Mixer"_s, u"/Applications/Mixer.app"_s, true}};
    defaults.setStringArray(kManagedKey, {u"/Applications/Old Mixer.app"_s});
    BackgroundTaskItem off = backgroundRecord(u"Sync"_s, u"com.x.sync"_s);
    off.disposition = u"[disabled, allowed, notified] (0xa)"_s;
    BackgroundTaskItem syncHelper = backgroundRecord(u"Dropbox Helper"_s, u"com.getdropbox.helper"_s);
    syncHelper.disposition = u"[enabled, disallowed, notified] (0x9)"_s;
    cacheDump({off, syncHelper});
    answerNetwork("Wi-Fi\n*LAN\n", {{u"Wi-Fi"_s, "Disabled\n"}, {u"LAN"_s, "Disabled\n"}});

    StartupConfiguration configuration =
        configured({loginAppOff(u"Zoom"_s), loginAppOff(u"Chat"_s), launchAgentOff(u"b.plist"_s),
                    launchAgentOff(u"a.plist"_s), backgroundItemOff(u"com.x.sync"_s), backgroundItemOff(u"com.gone"_s),
                    StartupItem::fromLaunchItem({u"Live"_s, u"/Applications/Live.app"_s, false}),
                    StartupItem::fromLaunchItem({u"Mixer"_s, u"/Applications/Mixer.app"_s, true})},
                   {CloudSyncService::box, CloudSyncService::dropbox});
    configuration.disableNetworkAtStartup = true;
    EXPECT_EQ(verify(configuration), verified({{u"Login item: Chat"_s, u"removed"_s},
                                               {u"Login item: Zoom"_s, u"removed"_s},
                                               {u"Launch item: a.plist"_s, u"inactive"_s},
                                               {u"Launch item: b.plist"_s, u"inactive"_s},
                                               {u"Background item: Dropbox Helper"_s, u"disabled at login"_s},
                                               {u"Background item: com.gone"_s, u"not installed"_s},
                                               {u"Background item: Sync"_s, u"disabled at login"_s},
                                               {u"Cloud sync: Box"_s, u"not installed"_s},
                                               {u"Cloud sync: Dropbox"_s, u"disabled at login"_s},
                                               {u"Cloud sync helper: Dropbox"_s, u"background items disabled"_s},
                                               {u"Network"_s, u"all interfaces disabled"_s},
                                               {u"Startup app: Live"_s, u"configured"_s},
                                               {u"Startup app: Mixer"_s, u"hidden at login"_s},
                                               {u"Startup app: Old Mixer"_s, u"removed from login items"_s}}));
    EXPECT_EQ(takeTrace(), u"$> osascript: list\n"
                           "? launchd\n"
                           "$> /usr/sbin/networksetup -listallnetworkservices\n"
                           "$> /usr/sbin/networksetup -getnetworkserviceenabled Wi-Fi\n"
                           "$> /usr/sbin/networksetup -getnetworkserviceenabled LAN\n"_s);
}

TEST_F(StartupVerificationFlow, whatIsStillThereFails) {
    login = {{u"Chat"_s, u"/Applications/Chat.app"_s, false},
             {u"Dropbox"_s, u"/Applications/Dropbox.app"_s, false},
             {u"Mixer of Old"_s, u"/Applications/Old Mixer.app"_s, false}};
    defaults.setStringArray(kManagedKey, {u"/Applications/Old Mixer.app"_s});
    files.addFile(u"/Library/LaunchDaemons/a.plist"_s, "");
    cacheDump({backgroundRecord(u"Sync"_s, u"com.x.sync"_s), backgroundRecord(u"Dropbox Helper"_s, u"com.h"_s),
               backgroundRecord(u"Dropbox Finder"_s, u"com.f"_s)});
    answerNetwork("Wi-Fi\nLAN\n", {{u"Wi-Fi"_s, "Disabled\n"}, {u"LAN"_s, "Enabled\n"}});

    StartupConfiguration configuration =
        configured({loginAppOff(u"Chat"_s), launchAgentOff(u"a.plist"_s), backgroundItemOff(u"com.x.sync"_s),
                    StartupItem::fromLaunchItem({u"Live"_s, u"/Applications/Live.app"_s, false})},
                   {CloudSyncService::dropbox});
    configuration.disableNetworkAtStartup = true;
    EXPECT_EQ(verify(configuration),
              failed({{u"Login item: Chat"_s, u"still active"_s},
                      {u"Login item: Dropbox"_s, u"still active"_s},
                      {u"Launch item: a.plist"_s, u"still active"_s},
                      {u"Background item: Dropbox Finder"_s, u"still enabled at login"_s},
                      {u"Background item: Dropbox Helper"_s, u"still enabled at login"_s},
                      {u"Background item: Sync"_s, u"still enabled at login"_s},
                      {u"Cloud sync: Dropbox"_s, u"still active"_s},
                      {u"Cloud sync helper: Dropbox"_s, u"still enabled: Dropbox Helper, Dropbox Finder"_s},
                      {u"Network"_s, u"expected all interfaces disabled"_s},
                      {u"Startup app: Live"_s, u"not configured"_s},
                      {u"Startup app: Mixer of Old"_s, u"still in login items"_s}}));
}

TEST_F(StartupVerificationFlow, aServiceWithoutAnItemCountsAsVerified) {
    EXPECT_EQ(verify(configured({}, {CloudSyncService::dropbox})),
              verified({{u"Cloud sync: Dropbox"_s, u"not installed"_s}}));
}

TEST_F(StartupVerificationFlow, withoutADumpBackgroundItemsAndHelpersAreNotChecked) {
    EXPECT_EQ(verify(configured({backgroundItemOff(u"com.x.sync"_s)}, {CloudSyncService::box})),
              verified({{u"Cloud sync: Box"_s, u"not installed"_s}}));
}

TEST_F(StartupVerificationFlow, anItemThatLooksLikeAnAgentIsCheckedByItsPlist) {
    const StartupItem agent = switchedOff(StartupItemKind::backgroundAgent, launchItemId(u"com.x.agent.plist"_s),
                                          u"X Agent"_s, u"com.x.agent.plist"_s);
    files.addFile(u"/Users/alex/Library/LaunchAgents/com.x.agent.plist"_s, "");
    EXPECT_EQ(verify(configured({agent})), failed({{u"Launch item: com.x.agent.plist"_s, u"still active"_s}}));
}

TEST_F(StartupVerificationFlow, aLabelThatIsAPathIsNotLookedFor) {
    files.addFile(u"/Library/LaunchDaemons/sub/a.plist"_s, "");
    EXPECT_EQ(verify(configured({launchAgentOff(u"sub/a.plist"_s), launchAgentOff(u""_s)})),
              verified({{u"Launch item: "_s, u"inactive"_s}, {u"Launch item: sub/a.plist"_s, u"inactive"_s}}));
}

TEST_F(StartupVerificationFlow, loginItemsThatNobodyMayReadProveNothing) {
    deniesSystemEvents = true;
    defaults.setStringArray(kManagedKey, {u"/Applications/Old.app"_s});
    const QString unread = u"could not read login items"_s;
    EXPECT_EQ(verify(configured({loginAppOff(u"Dropbox"_s),
                                 StartupItem::fromLaunchItem({u"Live"_s, u"/Applications/Live.app"_s, false})},
                                {CloudSyncService::dropbox, CloudSyncService::box})),
              ApplyVerificationResult({{},
                                       {{u"Login item: Dropbox"_s, unread},
                                        {u"Cloud sync: Box"_s, unread},
                                        {u"Cloud sync: Dropbox"_s, unread},
                                        {u"Startup app: Live"_s, unread},
                                        {u"Startup app: Old"_s, unread}}}));
}

TEST_F(StartupVerificationFlow, anErrorFromSystemEventsIsNoList) {
    commands.respond = nullptr;
    commands.print(commandLine({u"/usr/bin/osascript"_s, u"-e"_s, readLoginItemsScript()}),
                   "ERROR|-609|Connection is invalid.\n");
    EXPECT_EQ(verify(configured({loginAppOff(u"Chat"_s)})),
              failed({{u"Login item: Chat"_s, u"could not read login items"_s}}));
}

TEST_F(StartupVerificationFlow, aPathMayEndInASlashOnEitherSide) {
    login = {{u"Live"_s, u"/Applications/Live.app/"_s, false},
             {u"Mixer"_s, u"/Applications/Mixer.app"_s, true},
             {u"Old"_s, u"/Applications/Old.app/"_s, false}};
    defaults.setStringArray(kManagedKey, {u"/Applications/Old.app"_s, u"/Applications/Live.app/"_s});
    const StartupConfiguration configuration =
        configured({StartupItem::fromLaunchItem({u"Live"_s, u"/Applications/Live.app"_s, false}),
                    StartupItem::fromLaunchItem({u"Mixer"_s, u"/Applications/Mixer.app/"_s, true})});
    EXPECT_EQ(verify(configuration), (ApplyVerificationResult{{{u"Startup app: Live"_s, u"configured"_s},
                                                               {u"Startup app: Mixer"_s, u"hidden at login"_s}},
                                                              {{u"Startup app: Old"_s, u"still in login items"_s}}}));
    const StartupChangePreview preview = QCoro::waitFor(system.previewStartupChanges(configuration));
    EXPECT_EQ(preview.willAdd, QList<StartupLaunchItem>());
    EXPECT_EQ(preview.willRemove, (QList<StartupLaunchItem>{{u"Old"_s, u"/Applications/Old.app"_s, false}}));
}

TEST_F(StartupVerificationFlow, anAddedApplicationThatLeavesIsKnownByItsNameWhenItsFileIsGone) {
    login = {{u"Old"_s, u"missing value"_s, false}};
    defaults.setStringArray(kManagedKey, {u"/Applications/Old.app"_s});
    EXPECT_EQ(verify({}), failed({{u"Startup app: Old"_s, u"still in login items"_s}}));
    EXPECT_EQ(QCoro::waitFor(system.previewStartupChanges({})).willRemove,
              (QList<StartupLaunchItem>{{u"Old"_s, u"/Applications/Old.app"_s, false}}));
}

TEST_F(StartupVerificationFlow, aCloudItemIsStillThereUnderAnotherName) {
    login = {{u"Renamed"_s, u"/Applications/Dropbox.app/"_s, false}};
    StartupItem older = startupItemOf(LoginItem{u"Dropbox Beta"_s, u"/Applications/Dropbox.app"_s, false});
    const StartupConfiguration configuration = configured({older}, {CloudSyncService::dropbox});
    EXPECT_EQ(verify(configuration), (ApplyVerificationResult{{{u"Login item: Dropbox Beta"_s, u"removed"_s}},
                                                              {{u"Cloud sync: Dropbox"_s, u"still active"_s}}}));
    older.name = u"Renamed"_s;
    EXPECT_EQ(QCoro::waitFor(system.previewStartupChanges(configuration)).willDisable, QList<StartupItem>{older});
}

TEST_F(StartupVerificationFlow, aManagedApplicationThatRunsAsALoginItemIsNotExpectedToBeGone) {
    login = {{u"Live"_s, u"/Applications/Live.app"_s, false}};
    defaults.setStringArray(kManagedKey, {u"/Applications/Live.app"_s});
    const StartupConfiguration configuration = configured({startupItemOf(login.first())});
    EXPECT_EQ(verify(configuration), ApplyVerificationResult());
    EXPECT_EQ(QCoro::waitFor(system.previewStartupChanges(configuration)), StartupChangePreview());
}

// ---- Network

TEST_F(StartupVerificationFlow, withoutAServiceTheNetworkFails) {
    EXPECT_EQ(verify(networkOff()), failed({{u"Network"_s, u"expected all interfaces disabled"_s}}));
}

TEST_F(StartupVerificationFlow, aServiceThatCannotBeReadFailsTheNetwork) {
    answerNetwork("Wi-Fi\nLAN\n", {{u"Wi-Fi"_s, "Disabled\n"}});
    commands.fail(kNetworkTool + u"getnetworkserviceenabled LAN"_s, 4);
    EXPECT_EQ(verify(networkOff()), failed({{u"Network"_s, u"expected all interfaces disabled"_s}}));
}

TEST_F(StartupVerificationFlow, theNetworkIsAskedForOnlyWhenItGoesOff) {
    verify(configured({loginAppOff(u"Chat"_s)}));
    EXPECT_EQ(trace.filter(u"networksetup"_s), QStringList());
}

// ---- Preview

TEST_F(StartupVerificationFlow, aPreviewNeitherPromptsNorChangesAnything) {
    login = {{u"Chat"_s, u"/Applications/Chat.app"_s, false}, {u"Old"_s, u"/Applications/Old.app"_s, false}};
    defaults.setStringArray(kManagedKey, {u"/Applications/Old.app"_s, u"/Applications/Gone.app"_s});
    files.addFile(u"/Library/LaunchDaemons/a.plist"_s, "");
    const StartupItem live = StartupItem::fromLaunchItem({u"Live"_s, u"/Applications/Live.app"_s, true});
    StartupConfiguration configuration =
        configured({loginAppOff(u"Chat"_s), loginAppOff(u"Gone"_s), launchAgentOff(u"a.plist"_s),
                    launchAgentOff(u"gone.plist"_s), backgroundItemOff(u"com.unknown"_s), live},
                   {CloudSyncService::oneDrive, CloudSyncService::box});
    configuration.disableNetworkAtStartup = true;
    const int changes = files.changes();
    const StartupChangePreview preview = QCoro::waitFor(system.previewStartupChanges(configuration));
    EXPECT_EQ(preview.willDisable, QList<StartupItem>({launchAgentOff(u"a.plist"_s), loginAppOff(u"Chat"_s),
                                                       backgroundItemOff(u"com.unknown"_s)}));
    EXPECT_EQ(preview.willAdd, QList<StartupLaunchItem>({{u"Live"_s, u"/Applications/Live.app"_s, true}}));
    EXPECT_EQ(preview.willRemove, QList<StartupLaunchItem>({{u"Old"_s, u"/Applications/Old.app"_s, false}}));
    EXPECT_TRUE(preview.disableNetwork);
    EXPECT_EQ(preview.disabledCloudSync, QList<CloudSyncService>({CloudSyncService::box, CloudSyncService::oneDrive}));
    EXPECT_EQ(takeTrace(), u"$> osascript: list\n"_s + kLookAtLaunchd);
    EXPECT_EQ(files.changes(), changes);
    EXPECT_EQ(login.size(), 2);
}

} // namespace quorvane
