#include "fakes/StartupSystem.h"

#include "startup/apply/StartupVerification.h"

namespace quorvane {

namespace {

const QString kManaged = u"QuorvaneManagedStartupAppPaths"_s;
const QString kPutAside = u"/Users/alex/.quorvane_backup/"_s;

class StartupApply : public StartupSystem {
protected:
    bool apply(const StartupConfiguration& configuration) {
        return QCoro::waitFor(system.applyStartupConfiguration(configuration));
    }
    StartupApplyResult applyAlone(const StartupConfiguration& configuration) {
        return QCoro::waitFor(system.applyStartupChanges(configuration));
    }

    /// A login item, a launch agent of the user's, a daemon, a background item and Dropbox go, and Live opens.
    StartupConfiguration everything() {
        StartupConfiguration configuration;
        configuration.items = {loginAppOff(u"Chat"_s), launchAgentOff(u"com.chat.plist"_s),
                               launchAgentOff(u"com.vpn.plist"_s), backgroundItemOff(u"com.x.sync"_s),
                               StartupItem::fromLaunchItem({u"Live"_s, u"/Applications/Live.app"_s, true})};
        configuration.disabledCloudSyncAtStartup = {CloudSyncService::dropbox};
        configuration.disableNetworkAtStartup = true;
        return configuration;
    }
    void setUpEverything() {
        login = {{u"Chat"_s, u"/Applications/Chat.app"_s, false},
                 {u"Dropbox"_s, u"/Applications/Dropbox.app"_s, false}};
        files.addFile(u"/Users/alex/Library/LaunchAgents/com.chat.plist"_s, "chat");
        files.addFile(u"/Library/LaunchDaemons/com.vpn.plist"_s, "vpn");
        files.addFolders(u"/Library/LaunchAgents"_s);
        commands.print(u"networksetup -listallnetworkservices"_s, "Wi-Fi\n");
        commands.print(u"/usr/sbin/networksetup -listallnetworkservices"_s, "*Wi-Fi\n");
        commands.print(u"/usr/sbin/networksetup -getnetworkserviceenabled Wi-Fi"_s, "Disabled\n");
    }
    const QString daemonLine =
        u"mkdir -p '/Library/Application Support/Quorvane/LaunchItems/_Library_LaunchDaemons' && "
        "cp -p '/Library/LaunchDaemons/com.vpn.plist' "
        "'/Library/Application Support/Quorvane/LaunchItems/_Library_LaunchDaemons/com.vpn.plist' && "
        "[ ! -L '/Users/alex/.quorvane_backup' ] && "
        "[ ! -L '/Users/alex/.quorvane_backup/_Library_LaunchDaemons' ] && "
        "mkdir -p '/Users/alex/.quorvane_backup/_Library_LaunchDaemons' && "
        "rm -f '/Users/alex/.quorvane_backup/_Library_LaunchDaemons/com.vpn.plist' && "
        "(/bin/launchctl bootout system '/Library/LaunchDaemons/com.vpn.plist' 2>/dev/null || true ; true) && "
        "mv '/Library/LaunchDaemons/com.vpn.plist' "
        "'/Users/alex/.quorvane_backup/_Library_LaunchDaemons/com.vpn.plist'"_s;
    const QString networkLine = u"networksetup -setnetworkserviceenabled 'Wi-Fi' off"_s;
};

/// One item of each kind that asks for nothing.
StartupConfiguration nothingAskedFor() {
    StartupConfiguration configuration;
    for (const StartupItemKind kind : allStartupItemKinds()) {
        StartupItem item;
        item.id = rawValue(kind);
        item.kind = kind;
        item.runsAtStartup = kind != StartupItemKind::addedApp;
        configuration.items.append(item);
    }
    return configuration;
}

const QString kApplied = u"\nApplying startup configuration...\n"
                         "\nStartup configuration applied.\n"_s;

} // namespace

// The trace holds commands, scripts and log lines, so each of these also says that nothing else was run.

TEST_F(StartupApply, anEmptyConfigurationIsAppliedByDoingNothing) {
    EXPECT_TRUE(apply({}));
    EXPECT_EQ(takeTrace(), kApplied);
}

TEST_F(StartupApply, itemsThatStayAsTheyAreAreAppliedByDoingNothing) {
    EXPECT_TRUE(apply(nothingAskedFor()));
    EXPECT_EQ(takeTrace(), kApplied);
}

TEST_F(StartupApply, anAppThatIsNoLongerConfiguredGoesThoughNothingElseChanges) {
    login = {{u"Old"_s, u"/Applications/Old.app"_s, false}};
    defaults.setStringArray(kManaged, {u"/Applications/Old.app"_s});
    EXPECT_TRUE(apply({}));
    EXPECT_EQ(takeTrace(), u"\nApplying startup configuration...\n"
                           "  [ACTION] Removing 1 Quorvane-managed startup app(s)...\n"
                           "$> osascript: list\n"
                           "$> osascript: delete where path is /Applications/Old.app\n"
                           "$> osascript: list\n"
                           "  [APPLIED] Removed startup app from login items: Old\n"
                           "\nStartup configuration applied.\n"_s);
    EXPECT_EQ(login, QList<LoginItem>());
    EXPECT_EQ(defaults.stringArray(kManaged), QStringList());
}

TEST_F(StartupApply, aWholeConfigurationGoesOnStepByStepUnderOnePrompt) {
    setUpEverything();
    cacheDump({backgroundRecord(u"Sync"_s, u"com.x.sync"_s)});
    const StartupApplyResult result = applyAlone(everything());
    const QString flow = takeTrace();
    EXPECT_EQ(flow, u"\nApplying startup configuration...\n"
                    "$> osascript: list\n"
                    "? launchd\n"
                    "  [ACTION] Disabling 2 login item(s)...\n"
                    "$> osascript: delete where name is Chat; delete where name is Dropbox\n"
                    "  [APPLIED] Removed login item: Chat\n"
                    "  [APPLIED] Removed login item: Dropbox\n"
                    "$> osascript: list\n"
                    "$> osascript: delete where path is /Applications/Dropbox.app\n"
                    "  [ACTION] Disabling 2 launch item(s)...\n"
                    "$ /bin/launchctl bootout gui/501 /Users/alex/Library/LaunchAgents/com.chat.plist\n"
                    "  [APPLIED] Disabled launch item: com.chat.plist (/Users/alex/Library/LaunchAgents)\n"
                    "  [ACTION] Requesting Admin rights to disable 1 system launch item(s)...\n"
                    "  [ACTION] Queued disable for launch item: com.vpn.plist @ /Library/LaunchDaemons\n"
                    "  [ACTION] Disabling 1 background item(s)...\n"
                    "  [APPLIED] Disabled cloud sync at startup: Dropbox\n"
                    "  [ACTION] Disabling network interfaces...\n"
                    "\nDisabling all network connections...\n"
                    "$> networksetup -listallnetworkservices\n"
                    "  [ACTION] Found 1 services: Wi-Fi\n"
                    "  [ACTION] Requesting Administrator privileges to disable interfaces...\n"
                    "  [APPLIED] All network connections disabled.\n"
                    "  [ACTION] Configuring 1 application(s) to start at login...\n"
                    "$> osascript: add /Applications/Live.app hidden:true\n"
                    "  [APPLIED] Added login item: Live (hidden)\n"
                    "\nStartup configuration applied.\n"_s +
                        prompted(daemonLine + u" ; "_s + networkLine + u" ; "_s + dumpLine(), kStartupChanges) +
                        kLookAtLaunchd + kLookAtJobs + launchctlLines(u"com.x.sync"_s) + kLookAtLaunchd +
                        u"  [APPLIED] Disabled background login label: com.x.sync\n"
                        "  [APPLIED] Disabled launch item: com.vpn.plist @ /Library/LaunchDaemons\n"
                        "$> osascript: list\n"
                        "$> /usr/sbin/networksetup -listallnetworkservices\n"
                        "$> /usr/sbin/networksetup -getnetworkserviceenabled Wi-Fi\n"
                        "All 8 setting(s) verified on the system.\n"_s);
    EXPECT_TRUE(result.applySucceeded);
    EXPECT_EQ(result.verification.failed, QList<ApplyVerificationResult::Item>());
    EXPECT_EQ(system.lastApplyVerification(), result.verification);
    EXPECT_EQ(login, QList<LoginItem>({{u"Live"_s, u"/Applications/Live.app"_s, true}}));
    EXPECT_EQ(files.read(kPutAside + u"UserHome_Library_LaunchAgents/com.chat.plist"_s), "chat");
    EXPECT_EQ(files.read(kPutAside + u"_Library_LaunchDaemons/com.vpn.plist"_s), "vpn");
    EXPECT_FALSE(files.exists(u"/Library/LaunchDaemons/com.vpn.plist"_s));
    EXPECT_FALSE(isActive(u"com.x.sync"_s));
    EXPECT_EQ(defaults.stringArray(kManaged), QStringList(u"/Applications/Live.app"_s));
    EXPECT_EQ(system.backgroundTaskItemsFetchMode(), SystemManager::BackgroundTaskItemsFetchMode::automatic);
    EXPECT_EQ(system.adminBatchDepth(), 0);
}

TEST_F(StartupApply, theSecondTimeNothingChangesAndAllIsVerified) {
    setUpEverything();
    cacheDump({backgroundRecord(u"Sync"_s, u"com.x.sync"_s)});
    StartupConfiguration configuration = everything();
    configuration.disableNetworkAtStartup = false;
    configuration.items.removeIf(
        [](const StartupItem& item) { return item.kind == StartupItemKind::backgroundLoginItem; });
    EXPECT_TRUE(applyAlone(configuration).applySucceeded);
    const QList<LoginItem> loginBefore = login;
    trace.clear();
    const StartupApplyResult result = applyAlone(configuration);
    EXPECT_TRUE(result.applySucceeded);
    EXPECT_EQ(result.verification.failed, QList<ApplyVerificationResult::Item>());
    EXPECT_EQ(login, loginBefore);
    EXPECT_EQ(prompts(), 0);
    EXPECT_EQ(takeTrace(), u"\nApplying startup configuration...\n"
                           "$> osascript: list\n"
                           "? launchd\n"
                           "  [ACTION] Disabling 1 login item(s)...\n"
                           "$> osascript: delete where name is Chat\n"
                           "$> osascript: list\n"
                           "  [ACTION] Disabling 2 launch item(s)...\n"
                           "  [INFO] Launch item already disabled: com.chat.plist\n"
                           "  [INFO] Launch item already disabled: com.vpn.plist\n"
                           "  [APPLIED] Disabled cloud sync at startup: Dropbox\n"
                           "  [ACTION] Configuring 1 application(s) to start at login...\n"
                           "  [SKIPPED] Already configured to start at login: Live\n"
                           "\nStartup configuration applied.\n"
                           "$> osascript: list\n"
                           "All 5 setting(s) verified on the system.\n"_s);
}

TEST_F(StartupApply, aRefusedPromptFailsWhatNeedsRootItemByItemAndKeepsTheRest) {
    setUpEverything();
    cacheDump({backgroundRecord(u"Sync"_s, u"com.x.sync"_s)});
    commands.print(u"/usr/sbin/networksetup -getnetworkserviceenabled Wi-Fi"_s, "Enabled\n");
    scripts.failNext(u"User canceled."_s);
    const StartupApplyResult result = applyAlone(everything());
    EXPECT_FALSE(result.applySucceeded);
    EXPECT_TRUE(system.logMessages().contains(
        u"  [ERROR] Administrator authorization was cancelled or failed: User canceled."_s));
    EXPECT_EQ(result.verification.failed,
              QList<ApplyVerificationResult::Item>({{u"Launch item: com.vpn.plist"_s, u"still active"_s},
                                                    {u"Background item: Sync"_s, u"still enabled at login"_s},
                                                    {u"Network"_s, u"expected all interfaces disabled"_s}}));
    EXPECT_EQ(system.logMessages().last(), u"5 verified, 3 not confirmed. Check Logs for details."_s);
    EXPECT_EQ(login, QList<LoginItem>({{u"Live"_s, u"/Applications/Live.app"_s, true}}));
    EXPECT_EQ(files.read(u"/Library/LaunchDaemons/com.vpn.plist"_s), "vpn");

    commands.print(u"/usr/sbin/networksetup -getnetworkserviceenabled Wi-Fi"_s, "Disabled\n");
    EXPECT_TRUE(applyAlone(everything()).verification.failed.isEmpty()) << "a second try has all that the first lacked";
}

TEST_F(StartupApply, aFailedStepKeepsNoLaterOneFromRunning) {
    setUpEverything();
    cacheDump({backgroundRecord(u"Sync"_s, u"com.x.sync"_s)});
    deniesSystemEvents = true;
    EXPECT_FALSE(apply(everything()));
    QStringList log = system.logMessages();
    EXPECT_EQ(log.join(u'\n'),
              u"\nApplying startup configuration...\n"
              "  [ERROR] Could not read login items: Not authorized to send Apple events to System Events.\n"
              "  [INFO] Grant Automation permission for System Events in System Settings → Privacy & Security.\n"
              "  [ACTION] Disabling 1 login item(s)...\n"
              "  [ACTION] Disabling 2 launch item(s)...\n"
              "  [APPLIED] Disabled launch item: com.chat.plist (/Users/alex/Library/LaunchAgents)\n"
              "  [ACTION] Requesting Admin rights to disable 1 system launch item(s)...\n"
              "  [APPLIED] Disabled launch item: com.vpn.plist @ /Library/LaunchDaemons\n"
              "  [ACTION] Disabling 1 background item(s)...\n"
              "  [APPLIED] Disabled cloud sync at startup: Dropbox\n"
              "  [APPLIED] Disabled background login label: com.x.sync\n"
              "  [ACTION] Disabling network interfaces...\n"
              "\nDisabling all network connections...\n"
              "  [ACTION] Found 1 services: Wi-Fi\n"
              "  [ACTION] Requesting Administrator privileges to disable interfaces...\n"
              "  [APPLIED] All network connections disabled.\n"
              "  [ACTION] Configuring 1 application(s) to start at login...\n"
              "  [ERROR] Failed to add login item: Live\n"
              "\nStartup configuration applied with errors."_s);
    EXPECT_EQ(defaults.stringArray(kManaged), QStringList()) << "what couldn't be added isn't the program's own";
}

TEST_F(StartupApply, eachFailedStepAloneEndsWithErrors) {
    setUpEverything();
    StartupConfiguration network;
    network.disableNetworkAtStartup = true;
    commands.print(u"networksetup -listallnetworkservices"_s, "");
    EXPECT_FALSE(apply(network));

    StartupConfiguration launchItem;
    launchItem.items = {launchAgentOff(u"com.chat.plist"_s)};
    files.makeUnwritable(u"/Users/alex/Library/LaunchAgents"_s);
    EXPECT_FALSE(apply(launchItem));

    EXPECT_EQ(system.logMessages().filter(u"\nStartup configuration applied with errors."_s).size(), 2);

    launchItem.items.append(StartupItem::fromLaunchItem({u"Live"_s, u"/Applications/Live.app"_s, false}));
    EXPECT_FALSE(apply(launchItem)) << "a later success forgives nothing";
}

TEST_F(StartupApply, aProtectedItemThatIsOffStaysAndFailsItsCheck) {
    login = {{u"Serato DJ Pro"_s, u"/Applications/Serato DJ Pro.app"_s, false}};
    StartupConfiguration configuration;
    configuration.items = {loginAppOff(u"Serato DJ Pro"_s)};
    const StartupApplyResult result = applyAlone(configuration);
    EXPECT_TRUE(result.applySucceeded);
    EXPECT_EQ(result.verification,
              ApplyVerificationResult({{}, {{u"Login item: Serato DJ Pro"_s, u"still active"_s}}}));
    EXPECT_EQ(login.size(), 1);
    EXPECT_TRUE(system.logMessages().contains(u"  [SKIPPED] Protected login item: Serato DJ Pro"_s));
}

TEST_F(StartupApply, aCloudItemThatIsProtectedByNameOrPathIsNotRemovedByItsPath) {
    login = {{u"Serato Backup"_s, u"/Applications/Dropbox.app"_s, false},
             {u"Backup"_s, u"/Applications/Dropbox Plugin.app"_s, false}};
    StartupConfiguration configuration;
    configuration.disabledCloudSyncAtStartup = {CloudSyncService::dropbox};
    apply(configuration);
    EXPECT_EQ(login.size(), 2);
    EXPECT_TRUE(
        system.logMessages().contains(u"  [SKIPPED] Protected login item at path: /Applications/Dropbox.app"_s));
    EXPECT_TRUE(
        system.logMessages().contains(u"  [SKIPPED] Protected login item at path: /Applications/Dropbox Plugin.app"_s));
}

TEST_F(StartupApply, aCloudItemOfAnotherNameGoesByItsPath) {
    // The profile knows the item by an older name.
    StartupItem old = loginAppOff(u"Dropbox Beta"_s);
    old.path = u"/Applications/Dropbox.app"_s;
    login = {{u"Box of mine"_s, u"/Applications/Dropbox.app"_s, false}};
    StartupConfiguration configuration;
    configuration.items = {old};
    configuration.disabledCloudSyncAtStartup = {CloudSyncService::dropbox};
    QCoro::waitFor(system.discoverStartupItems(SystemManager::StartupRefresh::UseCache));
    login.first().name = u"Renamed"_s;
    apply(configuration);
    EXPECT_EQ(login, QList<LoginItem>());
    EXPECT_TRUE(system.logMessages().contains(u"  [APPLIED] Removed login item at path: /Applications/Dropbox.app"_s));
}

// ---- Of one name

/// A login item as a profile knows it.
StartupItem savedLoginItem(const QString& name, const QString& path, bool runs) {
    StartupItem item = startupItemOf(LoginItem{name, path, false});
    item.runsAtStartup = runs;
    return item;
}

TEST_F(StartupApply, ofOneNameWhatTheConfigurationKeepsStaysAndTheOtherGoesByItsPath) {
    const StartupItem off = savedLoginItem(u"Helper"_s, u"/Applications/A.app"_s, false);
    StartupItem offByOlderId = loginAppOff(u"Helper"_s);
    StartupItem runsByIdAlone = savedLoginItem(u"Renamed"_s, u"/Applications/B.app/"_s, true);
    runsByIdAlone.path = u"/elsewhere"_s;
    const StartupItem runsAsAdded = StartupItem::fromLaunchItem({u"B"_s, u"/Applications/B.app"_s, false});
    struct Row {
        const char* description;
        QList<StartupItem> items;
    };
    const LoginItem kept{u"Helper"_s, u"/Applications/B.app"_s, true};
    for (const Row& row : {Row{"it runs", {off, savedLoginItem(u"Helper"_s, u"/Applications/B.app"_s, true)}},
                           Row{"it runs, by its id", {off, runsByIdAlone}},
                           Row{"it runs, by its path", {off, runsAsAdded}}, Row{"it isn't known", {off}},
                           Row{"it runs, and what goes is known by its name",
                               {offByOlderId, savedLoginItem(u"Helper"_s, u"/Applications/B.app"_s, true)}}}) {
        SCOPED_TRACE(row.description);
        system.invalidateStartupCaches();
        login = {{u"Helper"_s, u"/Applications/A.app/"_s, false}, kept};
        StartupConfiguration configuration;
        configuration.items = row.items;
        EXPECT_EQ(QCoro::waitFor(system.previewStartupChanges(configuration)).willDisable.size(), 1);
        trace.clear();
        const StartupApplyResult result = applyAlone(configuration);
        EXPECT_TRUE(result.applySucceeded);
        EXPECT_EQ(login, QList<LoginItem>{kept});
        EXPECT_EQ(trace.filter(u"[APPLIED] Removed login item"_s),
                  QStringList(u"  [APPLIED] Removed login item: Helper"_s));
        const QString removal = u"$> osascript: delete where path is /Applications/A.app/ and name is Helper"_s;
        EXPECT_TRUE(takeTrace().contains(removal));
        EXPECT_EQ(result.verification.failed, QList<ApplyVerificationResult::Item>());
        EXPECT_EQ(QCoro::waitFor(system.previewStartupChanges(configuration)).willDisable, QList<StartupItem>());
        defaults.setStringArray(kManaged, {});
    }
}

TEST_F(StartupApply, ofOneNameAllGoThatTheConfigurationKnowsByTheNameAlone) {
    login = {{u"Helper"_s, u"/Applications/A.app"_s, false}, {u"Helper"_s, u"/Applications/B.app"_s, false}};
    StartupConfiguration configuration;
    configuration.items = {loginAppOff(u"Helper"_s)};
    EXPECT_EQ(applyAlone(configuration).verification,
              (ApplyVerificationResult{{{u"Login item: Helper"_s, u"removed"_s}}, {}}));
    EXPECT_EQ(login, QList<LoginItem>());
}

TEST_F(StartupApply, anItemWhoseFileIsGoneGoesByItsNameUnlessOneOfTheNameRuns) {
    StartupConfiguration configuration;
    configuration.items = {savedLoginItem(u"Helper"_s, u"/Applications/A.app"_s, false)};
    login = {{u"Helper"_s, u"missing value"_s, false}};
    EXPECT_TRUE(applyAlone(configuration).applySucceeded);
    EXPECT_EQ(login, QList<LoginItem>());

    configuration.items.append(savedLoginItem(u"Helper"_s, u"/Applications/B.app"_s, true));
    login = {{u"Helper"_s, u"missing value"_s, false}};
    applyAlone(configuration);
    EXPECT_EQ(login.size(), 1) << "nobody knows which of the two it is";
}

TEST_F(StartupApply, aNameThatTheListDoesntShowIsNotUsedWhereOneOfItStays) {
    StartupConfiguration configuration;
    configuration.items = {savedLoginItem(u"Helper"_s, u"/Applications/A.app"_s, false),
                           savedLoginItem(u"helper"_s, u"/Applications/B.app"_s, true)};
    QCoro::waitFor(system.rawLoginItems());
    login = {{u"Helper"_s, u"/Applications/A.app"_s, false}, {u"helper"_s, u"/Applications/B.app"_s, false}};
    EXPECT_TRUE(apply(configuration)) << "both have come since the list was read";
    EXPECT_EQ(login, (QList<LoginItem>{{u"helper"_s, u"/Applications/B.app"_s, false}}));
}

TEST_F(StartupApply, aCloudItemGoesWhereverItsPathEndsAndTakesNoOtherOfItsName) {
    const LoginItem other{u"Helper"_s, u"/Applications/B.app"_s, false};
    login = {{u"Helper"_s, u"/Applications/Dropbox.app/"_s, false}, other};
    StartupConfiguration configuration;
    configuration.disabledCloudSyncAtStartup = {CloudSyncService::dropbox};
    const StartupApplyResult result = applyAlone(configuration);
    EXPECT_EQ(login, QList<LoginItem>{other});
    EXPECT_EQ(result.verification.failed, QList<ApplyVerificationResult::Item>());
    EXPECT_EQ(QCoro::waitFor(system.previewStartupChanges(configuration)).willDisable, QList<StartupItem>());
}

TEST_F(StartupApply, anAddedApplicationIsNotSwitchedOffByItsOwnTrace) {
    const LoginItem bitwig{u"Bitwig Studio"_s, u"/Applications/Bitwig Studio.app"_s, false};
    StartupItem trace1 = savedLoginItem(bitwig.name, bitwig.path, false);
    StartupConfiguration configuration;
    configuration.items = {StartupItem::fromLaunchItem({bitwig.name, bitwig.path + u'/', false}), trace1};
    configuration.disabledCloudSyncAtStartup = {CloudSyncService::box};
    login = {bitwig};
    EXPECT_EQ(configuration.disabledLoginNames(), QSet<QString>());
    EXPECT_EQ(QCoro::waitFor(system.previewStartupChanges(configuration)).willDisable, QList<StartupItem>());
    const StartupApplyResult result = applyAlone(configuration);
    EXPECT_TRUE(system.logMessages().filter(u"Removed login item"_s).isEmpty());
    EXPECT_EQ(result.verification, (ApplyVerificationResult{{{u"Cloud sync: Box"_s, u"not installed"_s},
                                                             {u"Startup app: Bitwig Studio"_s, u"configured"_s}},
                                                            {}}));
}

TEST_F(StartupApply, anAddedApplicationOfACloudServiceStays) {
    const LoginItem dropbox{u"Dropbox"_s, u"/Applications/Dropbox.app"_s, false};
    StartupConfiguration configuration;
    configuration.items = {StartupItem::fromLaunchItem({dropbox.name, dropbox.path, false})};
    configuration.disabledCloudSyncAtStartup = {CloudSyncService::dropbox};
    login = {dropbox};
    EXPECT_EQ(QCoro::waitFor(system.previewStartupChanges(configuration)).willDisable, QList<StartupItem>());
    const StartupApplyResult result = applyAlone(configuration);
    EXPECT_TRUE(system.logMessages().filter(u"Removed login item"_s).isEmpty());
    EXPECT_EQ(login, QList<LoginItem>{dropbox});
    EXPECT_EQ(result.verification, (ApplyVerificationResult{{{u"Startup app: Dropbox"_s, u"configured"_s}},
                                                            {{u"Cloud sync: Dropbox"_s, u"still active"_s}}}));
}

TEST_F(StartupApply, anEmptyConfigurationAloneShowsNoPrompt) {
    const StartupApplyResult result = applyAlone({});
    EXPECT_TRUE(result.applySucceeded);
    EXPECT_EQ(takeTrace(), kApplied + u"All 0 setting(s) verified on the system.\n"_s);
}

TEST_F(StartupApply, theCachesAreDroppedSoThatTheEditorShowsWhatIsTrue) {
    login = {{u"Chat"_s, u"/Applications/Chat.app"_s, false}};
    StartupConfiguration configuration;
    configuration.items = {loginAppOff(u"Chat"_s)};
    applyAlone(configuration);
    const QList<StartupItem> discovered =
        QCoro::waitFor(system.discoverStartupItems(SystemManager::StartupRefresh::UseCache));
    EXPECT_EQ(discovered, QList<StartupItem>());
}

TEST_F(StartupApply, whereOnlyABackgroundItemGoesTheDumpJoinsTheOnePrompt) {
    dump = dumpOf({backgroundRecord(u"Sync"_s, u"com.x.sync"_s)});
    StartupConfiguration configuration;
    configuration.items = {backgroundItemOff(u"com.x.sync"_s)};
    const StartupApplyResult result = applyAlone(configuration);
    EXPECT_EQ(takeTrace(), u"\nApplying startup configuration...\n"
                           "$> osascript: list\n"
                           "? launchd\n"
                           "  [ACTION] Disabling 1 background item(s)...\n"
                           "\nStartup configuration applied.\n"_s +
                               prompted(dumpLine(), kStartupChanges) + kLookAtLaunchd + kLookAtJobs +
                               launchctlLines(u"com.x.sync"_s) + kLookAtLaunchd +
                               u"  [APPLIED] Disabled background login label: com.x.sync\n"
                               "$> osascript: list\n"
                               "All 1 setting(s) verified on the system.\n"_s);
    EXPECT_EQ(result.verification,
              ApplyVerificationResult({{{u"Background item: Sync"_s, u"disabled at login"_s}}, {}}));
}

} // namespace quorvane
