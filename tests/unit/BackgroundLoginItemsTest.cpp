#include "core/UserDefaultKeys.h"
#include "fakes/StartupSystem.h"
#include "startup/apply/StartupVerification.h"
#include "startup/background/BackgroundLoginItemChangePlan.h"
#include "startup/background/StartupMemory.h"

namespace quorvane {

namespace {

const QString kLibrary = u"/System/Library/Frameworks/ServiceManagement.framework/ServiceManagement"_s;
const QString kLoginItemSymbol = u"SMLoginItemSetUserAllowed_4BTM"_s;
const QString kLaunchdSymbol = u"SMLaunchdPlistSetUserAllowed_4BTM"_s;
const QString kLookUp = u"? open "_s + kLibrary + u'\n';
const QString kNoList =
    u"  [INFO] ServiceManagement BTM APIs unavailable; using launchctl and quarantine fallback.\n"_s;
const QString kPrompt = u"Please."_s;

const QString kDropboxHelper = u"com.getdropbox.dropbox.helper"_s;
const QString kDropboxHelperFile = u"/Applications/Dropbox.app/Contents/Library/LoginItems/Dropbox Helper.app"_s;
const QString kUpdater = u"com.getdropbox.updater"_s;
const QString kAgentFile = u"/Applications/Dropbox.app/Contents/Library/LaunchAgents/com.getdropbox.updater.plist"_s;
const QString kPlayer = u"com.player.menu"_s;

/// Dropbox with a helper, its updater which only the bundle knows, a player with a login item, and DJ software.
QList<BackgroundTaskItem> laptopRecords() {
    return {applicationRecord(u"Dropbox"_s, u"com.getdropbox.dropbox"_s),
            backgroundRecord(u"Dropbox Helper"_s, kDropboxHelper, u"com.getdropbox.dropbox"_s),
            backgroundRecord(u"Player"_s, kPlayer), backgroundRecord(u"Serato Helper"_s, u"com.x.sync"_s)};
}

const QString kVpnLabel = u"com.vpn.daemon"_s;
const QString kVpnPlist = u"/Library/LaunchDaemons/com.vpn.plist"_s;

BackgroundTaskItem vpnDaemon(const QString& url = u"file://"_s + kVpnPlist) {
    BackgroundTaskItem daemon = backgroundRecord(u"VPN"_s, kVpnLabel, {}, u"legacy daemon (0x10010)"_s);
    daemon.url = url;
    return daemon;
}

class BackgroundLoginItems : public StartupSystem {
protected:
    BackgroundLoginItems() {
        files.addFile(kDropboxHelperFile, "helper");
        files.addFile(kAgentFile, "agent");
    }

    ApplyVerificationResult verify(const QSet<QString>& permittedNames) {
        return QCoro::waitFor(system.verifyBackgroundLoginItems(permittedNames, std::nullopt));
    }
    bool finish() { return QCoro::waitFor(system.finishAdminBatch(kPrompt)); }
    void openDeferredBatch() {
        system.deferBackgroundTaskFetchToAdminBatch();
        system.beginAdminBatch();
    }
    /// What a flow puts into the plan of an open batch.
    void plan(const QSet<QString>& labels, const CloudSyncServices& services = {}) {
        StartupConfiguration configuration;
        for (const QString& label : sortedTexts(labels)) {
            configuration.items.append(backgroundItemOff(label));
        }
        configuration.disabledCloudSyncAtStartup = services;
        QCoro::waitFor(system.applyStartupConfiguration(configuration));
        trace.clear();
    }
    /// A batch of its own.
    bool switchOff(const QSet<QString>& labels, const CloudSyncServices& services = {}) {
        openDeferredBatch();
        plan(labels, services);
        return finish();
    }
    void planCleanReboot(const QSet<QString>& permittedNames) {
        QCoro::waitFor(system.applyCleanReboot({permittedNames, std::nullopt, {}}));
        trace.clear();
    }
    /// @param keys  further ones
    void addDaemonPlist(const QVariantMap& keys = {{u"RunAtLoad"_s, true}}) {
        files.addFile(kVpnPlist, "plist");
        QVariantMap plist = keys;
        plist.insert(u"Label"_s, kVpnLabel);
        propertyLists.lists.insert(kVpnPlist, plist);
    }
    bool isOff(const QString& label) const { return commands.launchd.isOff(u"gui/501/"_s + label); }
    bool isDaemonOff(const QString& label) const { return commands.launchd.isOff(u"system/"_s + label); }
    static QString disabledLines(const QStringList& labels) {
        QString lines;
        for (const QString& label : labels) {
            lines += u"  [APPLIED] Disabled background login label: "_s + label + u'\n';
        }
        return lines;
    }
    static QString guessedLine(const QString& label) {
        return u"  [INFO] Disabled by its label alone, as no list of background items was read: "_s + label + u'\n';
    }
    QString logged(const QString& beginning) const {
        QString lines;
        for (const QString& line : system.logMessages()) {
            lines += line.startsWith(beginning) ? line + u'\n' : QString();
        }
        return lines;
    }
    StartupMemory memory() { return StartupMemoryFile(files, machine).load(); }
};

} // namespace

// ---- The user's part

TEST_F(BackgroundLoginItems, aDumpThatComesWithTheBatchIsWorkedOffAsTheUser) {
    dump = dumpOf(laptopRecords());
    openDeferredBatch();
    plan({kPlayer}, {CloudSyncService::dropbox});
    EXPECT_TRUE(finish());
    EXPECT_EQ(takeTrace(), prompted(dumpLine(), kPrompt) + kLookAtLaunchd + kLookUp + kNoList + kLookAtJobs +
                               launchctlLines(kDropboxHelper) + launchctlLines(kPlayer) + kLookAtLaunchd +
                               disabledLines({kDropboxHelper, kPlayer}) +
                               u"  [INFO] Left in its application: Dropbox Helper\n"_s);
    EXPECT_TRUE(isOff(kDropboxHelper));
    EXPECT_FALSE(isOff(u"com.x.sync"_s));
    EXPECT_TRUE(files.exists(kDropboxHelperFile));
}

TEST_F(BackgroundLoginItems, withAKnownListTheUsersPartNeedsNoPrompt) {
    cacheDump(laptopRecords());
    openDeferredBatch();
    plan({kPlayer});
    EXPECT_TRUE(finish());
    EXPECT_EQ(takeTrace(), kLookAtJobs + launchctlLines(kPlayer) + kLookAtLaunchd + disabledLines({kPlayer}));
}

TEST_F(BackgroundLoginItems, onlyLaunchdsOwnWordMakesAnItemDisabled) {
    cacheDump(laptopRecords());
    commands.launchd.stubborn.insert(u"gui/501/"_s + kPlayer);
    EXPECT_TRUE(switchOff({kPlayer, kDropboxHelper}));
    EXPECT_EQ(logged(u"  [APPLIED] Disabled background"_s) + logged(u"  [ERROR]"_s),
              disabledLines({kDropboxHelper}) +
                  u"  [ERROR] Failed to disable background login label: com.player.menu\n"_s);
    commands.launchd.isMute = true;
    EXPECT_TRUE(switchOff({u"com.other"_s}));
    EXPECT_TRUE(logged(u"  [ERROR]"_s).endsWith(u"Failed to disable background login label: com.other\n"_s));
}

TEST_F(BackgroundLoginItems, whatIsOffAlreadyAsksForNothing) {
    cacheDump(laptopRecords());
    EXPECT_TRUE(switchOff({kPlayer, kDropboxHelper}));
    EXPECT_TRUE(switchOff({kPlayer, kDropboxHelper}));
    EXPECT_EQ(takeTrace(), kLookAtLaunchd) << "one look, and no command: nothing has changed since";
    EXPECT_EQ(prompts(), 0);
}

TEST_F(BackgroundLoginItems, anItemThatOnlyAProfileKnowsGoesByItsLabel) {
    EXPECT_TRUE(switchOff({kUpdater}));
    EXPECT_TRUE(isOff(kUpdater)) << "the dump had no record at all";
}

TEST_F(BackgroundLoginItems, anOverrideThatNobodyCouldLiftIsNotWritten) {
    cacheDump(laptopRecords());
    files.failOn(MemoryFileManager::Operation::Write, u"/Users/alex/.quorvane/launchd-overrides.json"_s);
    EXPECT_TRUE(switchOff({kPlayer}));
    EXPECT_FALSE(isOff(kPlayer));
    EXPECT_FALSE(logged(u"  [ERROR] Could not read or write the record of what is switched off: "_s).isEmpty());
}

TEST_F(BackgroundLoginItems, theSystemsSwitchIsAskedFirstAndBelievedByLaunchdOnly) {
    permissions.isLibraryThere = true;
    permissions.answers = {{kLoginItemSymbol, true}};
    cacheDump(laptopRecords());
    commands.launchd.stubborn.insert(u"gui/501/"_s + kDropboxHelper);
    EXPECT_TRUE(switchOff({kDropboxHelper}));
    EXPECT_EQ(takeTrace(), kLookUp + u"? look up "_s + kLoginItemSymbol + u"\n? look up "_s + kLaunchdSymbol +
                               u"\n? "_s + kLoginItemSymbol +
                               u" /Applications/Dropbox.app com.getdropbox.dropbox.helper false\n"
                               "  [ACTION] Asked macOS to disallow: com.getdropbox.dropbox.helper\n"_s +
                               kLookAtJobs + launchctlLines(kDropboxHelper) + kLookAtLaunchd +
                               u"  [ERROR] Failed to disable background login label: com.getdropbox.dropbox.helper\n"
                               "$> /usr/bin/codesign --verify /Applications/Dropbox.app\n"
                               "  [INFO] Left in its application: Dropbox Helper\n"_s);
}

TEST_F(BackgroundLoginItems, anEndInTheSystemsSwitchIsToldOnce) {
    permissions.isLibraryThere = true;
    permissions.answers = {{kLoginItemSymbol, true}};
    defaults.setString(kQuorvaneBackgroundTaskCallBegan, kLoginItemSymbol + u" 14.7"_s);
    cacheDump(laptopRecords());
    const QString told =
        u"  [INFO] Quorvane once ended in a ServiceManagement BTM API; none is called again on macOS 14.7.\n"_s;
    EXPECT_TRUE(switchOff({kDropboxHelper}));
    EXPECT_TRUE(takeTrace().startsWith(told + kNoList));
    commands.launchd.overrides.clear();
    EXPECT_TRUE(switchOff({kDropboxHelper}));
    const QString again = takeTrace();
    EXPECT_TRUE(again.contains(kNoList));
    EXPECT_FALSE(again.contains(told));
}

// ---- What stays

TEST_F(BackgroundLoginItems, labelsThatCannotStandInATargetAreSkipped) {
    cacheDump(laptopRecords());
    EXPECT_TRUE(switchOff({u"."_s, u".."_s, u"-k"_s, u"a/b"_s, u"com.a\u0007b"_s, kPlayer}));
    EXPECT_EQ(takeTrace(), u"  [SKIPPED] Unusable background label: -k\n"
                           "  [SKIPPED] Unusable background label: .\n"
                           "  [SKIPPED] Unusable background label: ..\n"
                           "  [SKIPPED] Unusable background label: a/b\n"
                           "  [SKIPPED] Unusable background label: com.a\u0007b\n"_s +
                               kLookAtJobs + launchctlLines(kPlayer) + kLookAtLaunchd + disabledLines({kPlayer}));
}

TEST_F(BackgroundLoginItems, audioSoftwareIsSkippedByLabelRecordAndApplication) {
    BackgroundTaskItem daemon = backgroundRecord(u"NTKDaemon"_s, u"com.ntk.daemon"_s);
    daemon.url = u"file:///Library/Application%20Support/Native%20Instruments/NTKDaemon.app/"_s;
    QList<BackgroundTaskItem> records = laptopRecords();
    records += {daemon, applicationRecord(u"Traktor"_s, u"com.ni.deck"_s),
                backgroundRecord(u"Deck Sync"_s, u"com.ni.sync"_s, u"com.ni.deck"_s),
                backgroundRecord(u"Dropbox Plugin"_s, u"com.getdropbox.finder"_s)};
    cacheDump(records);
    EXPECT_TRUE(switchOff(
        {u"com.ableton.push"_s, u"com.x.sync"_s, u"com.ntk.daemon"_s, u"com.ni.sync"_s, u"com.getdropbox.finder"_s}));
    EXPECT_EQ(takeTrace(), u"  [SKIPPED] Protected background login item: com.ableton.push\n"
                           "  [SKIPPED] Protected background login item: com.getdropbox.finder\n"
                           "  [SKIPPED] Protected background login item: com.ni.sync\n"
                           "  [SKIPPED] Protected background login item: com.ntk.daemon\n"
                           "  [SKIPPED] Protected background login item: com.x.sync\n"_s);
}

TEST_F(BackgroundLoginItems, labelsOfTheSystemAndTheProgramAreNeverSwitchedOff) {
    cacheDump(
        {backgroundRecord(u"Siri"_s, u"com.apple.siri.agent"_s), backgroundRecord(u"Own"_s, u"com.quorvane.helper"_s)});
    EXPECT_TRUE(switchOff({u"com.apple.siri.agent"_s, u"com.quorvane.helper"_s}));
    EXPECT_EQ(takeTrace(), u"  [SKIPPED] Protected background item: com.apple.siri.agent\n"
                           "  [SKIPPED] Protected background item: com.quorvane.helper\n"_s);
}

TEST_F(BackgroundLoginItems, whatAnOrganizationManagesStays) {
    BackgroundTaskItem byType = backgroundRecord(u"Agent of IT"_s, u"com.it.agent"_s, {}, u"managed legacy agent"_s);
    BackgroundTaskItem byFlags = backgroundRecord(u"Flagged"_s, u"com.it.flag"_s);
    byFlags.flags = u"[ managed ] (0x8)"_s;
    cacheDump(laptopRecords() + QList<BackgroundTaskItem>{byType, byFlags});
    EXPECT_TRUE(switchOff({u"com.it.agent"_s, u"com.it.flag"_s, kPlayer}));
    EXPECT_EQ(logged(u"  [SKIPPED]"_s), u"  [SKIPPED] Managed by your organization: Agent of IT\n"
                                        "  [SKIPPED] Managed by your organization: Flagged\n"_s);
    EXPECT_FALSE(isOff(u"com.it.agent"_s));
    EXPECT_FALSE(isOff(u"com.it.flag"_s));
    EXPECT_EQ(verify({u"Dropbox"_s}).failed, QList<ApplyVerificationResult::Item>()) << "it counts as permitted";
}

TEST_F(BackgroundLoginItems, anUnusableLabelNeverReachesABatch) {
    cacheDump(laptopRecords());
    EXPECT_TRUE(switchOff({u"-w"_s, u"a/b"_s}));
    EXPECT_EQ(prompts(), 0);
}

// ---- Root's part: daemons

TEST_F(BackgroundLoginItems, aDaemonThatTheProfileNamesJoinsTheOneLineBeforeItsDump) {
    addDaemonPlist();
    dump = dumpOf({vpnDaemon()});
    openDeferredBatch();
    plan({kVpnLabel});
    EXPECT_TRUE(finish());
    EXPECT_EQ(takeTrace(), u"$> /bin/launchctl print system/com.vpn.daemon\n"
                           "  [ACTION] Queued disable for background login label: com.vpn.daemon\n"_s +
                               prompted(queuedLaunchctl(kVpnLabel) + u" ; "_s + dumpLine(), kPrompt) + kLookAtLaunchd);
    EXPECT_TRUE(isDaemonOff(kVpnLabel));
    EXPECT_FALSE(isOff(kVpnLabel)) << "an override of the user's says nothing of a daemon";
}

TEST_F(BackgroundLoginItems, aDaemonThatWaitsForItsApplicationIsLeftAlone) {
    addDaemonPlist({{u"MachServices"_s, QVariantMap{{kVpnLabel, true}}}});
    dump = dumpOf({vpnDaemon()});
    EXPECT_TRUE(switchOff({kVpnLabel}));
    EXPECT_EQ(logged(u"  [INFO] Only"_s), u"  [INFO] Only runs when its application needs it: com.vpn.daemon\n"_s);
    EXPECT_FALSE(isDaemonOff(kVpnLabel));
}

TEST_F(BackgroundLoginItems, aDaemonInABundleIsOnlyDisabled) {
    const QString plist = u"/Applications/VPN.app/Contents/Library/LaunchDaemons/com.vpn.daemon.plist"_s;
    propertyLists.lists.insert(plist, {{u"Label"_s, kVpnLabel}, {u"KeepAlive"_s, true}});
    BackgroundTaskItem daemon = backgroundRecord(u"VPN"_s, kVpnLabel, u"com.vpn"_s, u"daemon (0x10)"_s);
    daemon.url = u"Contents/Library/LaunchDaemons/com.vpn.daemon.plist"_s;
    BackgroundTaskItem application = applicationRecord(u"VPN"_s, u"com.vpn"_s);
    application.url = u"file:///Applications/VPN.app/"_s;
    cacheDump({application, daemon});
    dump = dumpOf({application, daemon});
    openDeferredBatch();
    plan({kVpnLabel});
    EXPECT_TRUE(finish());
    EXPECT_EQ(takeTrace(),
              u"  [ACTION] Queued disable for background login label: com.vpn.daemon (off after the restart)\n"_s +
                  prompted(u"/bin/launchctl disable system/com.vpn.daemon ; "_s + dumpLine(), kPrompt) +
                  kLookAtLaunchd);
    EXPECT_TRUE(isDaemonOff(kVpnLabel));
}

TEST_F(BackgroundLoginItems, whatTheDumpRevealsTooLateForRootIsLeftForTheNextApply) {
    const QString plist = u"/Applications/VPN.app/Contents/Library/LaunchDaemons/com.vpn.daemon.plist"_s;
    BackgroundTaskItem daemon = backgroundRecord(u"VPN"_s, kVpnLabel, {}, u"daemon (0x10)"_s);
    daemon.url = u"file://"_s + plist;
    propertyLists.lists.insert(plist, {{u"Label"_s, kVpnLabel}, {u"RunAtLoad"_s, true}});
    dump = dumpOf({daemon});
    EXPECT_TRUE(switchOff({kVpnLabel}));
    EXPECT_EQ(logged(u"  [INFO]"_s), u"  [INFO] Will be switched off at the next apply: VPN\n"_s);
    EXPECT_EQ(prompts(), 1);
    EXPECT_FALSE(isDaemonOff(kVpnLabel));
    EXPECT_EQ(memory().waiting,
              (QList<WaitingService>{{{LaunchdDomain::System, kVpnLabel}, plist, u"VPN"_s, kVpnLabel, true}}));

    EXPECT_TRUE(switchOff({kVpnLabel}));
    EXPECT_TRUE(isDaemonOff(kVpnLabel));
    EXPECT_EQ(memory().waiting, QList<WaitingService>()) << "launchd shows it off";
}

TEST_F(BackgroundLoginItems, whatWaitsGoesWithTheNextApplyWhateverItNames) {
    StartupMemoryFile(files, machine).save({{{{LaunchdDomain::System, kVpnLabel}, kVpnPlist}}, {}});
    addDaemonPlist();
    cacheDump(laptopRecords());
    EXPECT_TRUE(switchOff({kPlayer}));
    EXPECT_TRUE(isDaemonOff(kVpnLabel));
    EXPECT_EQ(memory().waiting, QList<WaitingService>());
}

TEST_F(BackgroundLoginItems, whatWaitsPassesTheSameGuards) {
    StartupMemoryFile(files, machine)
        .save({{{{LaunchdDomain::System, u"com.apple.audio"_s}, {}},
                {{LaunchdDomain::System, u"../x"_s}, {}},
                {{LaunchdDomain::System, u"com.ableton.daemon"_s}, {}}},
               {}});
    cacheDump(laptopRecords());
    EXPECT_TRUE(switchOff({kPlayer}));
    EXPECT_EQ(prompts(), 0) << "the file lies open to whatever runs as the user";
}

TEST_F(BackgroundLoginItems, whatAProfileWantsToHaveOnWaitsNoLonger) {
    StartupMemoryFile(files, machine).save({{{{LaunchdDomain::System, kVpnLabel}, kVpnPlist}}, {}});
    cacheDump(laptopRecords());
    StartupConfiguration configuration;
    StartupItem kept = backgroundItemOff(kVpnLabel);
    kept.runsAtStartup = true;
    configuration.items = {kept, backgroundItemOff(kPlayer)};
    openDeferredBatch();
    QCoro::waitFor(system.applyStartupConfiguration(configuration));
    EXPECT_TRUE(finish());
    EXPECT_FALSE(isDaemonOff(kVpnLabel));
    EXPECT_EQ(memory().waiting, QList<WaitingService>());
}

TEST_F(BackgroundLoginItems, whatAProfileWithoutChangesWantsToHaveOnWaitsNoLonger) {
    const QList<StartupItem> ways{backgroundItemOff(u"com.vpn.bundle"_s), backgroundItemOff(kVpnLabel),
                                  launchAgentOff(u"com.vpn.plist"_s)};
    addDaemonPlist();
    for (StartupItem kept : ways) {
        SCOPED_TRACE(kept.id.toStdString());
        StartupMemoryFile(files, machine)
            .save({{{{LaunchdDomain::System, kVpnLabel}, kVpnPlist, u"VPN"_s, u"com.vpn.bundle"_s, true}}, {}});
        kept.runsAtStartup = true;
        StartupConfiguration configuration;
        configuration.items = {kept};
        openDeferredBatch();
        QCoro::waitFor(system.applyStartupConfiguration(configuration));
        EXPECT_TRUE(finish());
        EXPECT_FALSE(isDaemonOff(kVpnLabel));
        EXPECT_EQ(memory().waiting, QList<WaitingService>());
        EXPECT_EQ(prompts(), 0);
    }
}

TEST_F(BackgroundLoginItems, whatWaitsIsHeldToWhatTheListShowsNow) {
    addDaemonPlist();
    const StartupMemory waiting{{{{LaunchdDomain::System, kVpnLabel}, kVpnPlist}}, {}};
    BackgroundTaskItem managed = vpnDaemon();
    managed.itemType = u"managed legacy daemon (0x10010)"_s;
    BackgroundTaskItem ofAudio = vpnDaemon();
    ofAudio.parentIdentifier = u"2.com.serato.dj"_s;
    const QList<QPair<QList<BackgroundTaskItem>, QString>> lists{
        {{managed}, u"  [SKIPPED] Managed by your organization: VPN\n"_s},
        {{applicationRecord(u"Serato DJ"_s, u"com.serato.dj"_s), ofAudio},
         u"  [SKIPPED] Protected background login item: com.vpn.daemon\n"_s}};
    for (const auto& [records, line] : lists) {
        StartupMemoryFile(files, machine).save(waiting);
        cacheDump(records);
        EXPECT_TRUE(switchOff({kPlayer}));
        EXPECT_TRUE(logged(u"  [SKIPPED]"_s).endsWith(line)) << line.toStdString();
        EXPECT_FALSE(isDaemonOff(kVpnLabel));
        EXPECT_EQ(memory().waiting, QList<WaitingService>()) << "it never goes";
    }
    addDaemonPlist({{u"MachServices"_s, QVariantMap{{kVpnLabel, true}}}});
    StartupMemoryFile(files, machine).save(waiting);
    cacheDump({vpnDaemon()});
    EXPECT_TRUE(switchOff({kPlayer}));
    EXPECT_FALSE(isDaemonOff(kVpnLabel));
    EXPECT_EQ(prompts(), 0);
}

TEST_F(BackgroundLoginItems, whatWaitsWithoutHavingBeenSeenInAListWaitsOnWhereAnOrganizationManagesTheMac) {
    addDaemonPlist();
    files.addFile(u"/Library/Managed Preferences/com.it.plist"_s, "rules");
    StartupMemoryFile(files, machine).save({{{{LaunchdDomain::System, kVpnLabel}, kVpnPlist}}, {}});
    EXPECT_TRUE(switchOff({kPlayer}));
    EXPECT_FALSE(isDaemonOff(kVpnLabel)) << "the dump failed";
    ASSERT_EQ(memory().waiting.size(), 1);
    EXPECT_FALSE(memory().waiting.first().isCleared);
    dump = dumpOf({vpnDaemon()});
    EXPECT_TRUE(switchOff({kPlayer}));
    EXPECT_FALSE(isDaemonOff(kVpnLabel));
    ASSERT_EQ(memory().waiting.size(), 1);
    EXPECT_TRUE(memory().waiting.first().isCleared);
    SystemManager later(host, notifications); // which has read no list
    later.deferBackgroundTaskFetchToAdminBatch();
    later.beginAdminBatch();
    EXPECT_TRUE(QCoro::waitFor(later.finishAdminBatch(kPrompt)));
    EXPECT_TRUE(isDaemonOff(kVpnLabel));
    EXPECT_EQ(memory().waiting, QList<WaitingService>());
}

TEST_F(BackgroundLoginItems, aLaunchDaemonWaitsForTheListWhereAnOrganizationManagesTheMac) {
    addDaemonPlist();
    files.addFile(u"/Library/Managed Preferences/com.it.plist"_s, "rules");
    dump = dumpOf({vpnDaemon()});
    const auto apply = [this] {
        StartupConfiguration configuration;
        configuration.items = {launchAgentOff(u"com.vpn.plist"_s)};
        EXPECT_TRUE(QCoro::waitFor(system.applyStartupChanges(configuration)).applySucceeded);
    };
    apply();
    EXPECT_TRUE(files.exists(kVpnPlist));
    EXPECT_FALSE(isDaemonOff(kVpnLabel));
    EXPECT_EQ(logged(u"  [INFO]"_s), u"  [INFO] Will be switched off at the next apply: com.vpn.plist\n"_s);
    EXPECT_TRUE(memory().waitsFor(u"com.vpn.plist"_s));
    apply();
    EXPECT_FALSE(files.exists(kVpnPlist));
    EXPECT_TRUE(isDaemonOff(kVpnLabel));
    EXPECT_EQ(memory().waiting, QList<WaitingService>());
}

TEST_F(BackgroundLoginItems, aLaunchItemThatAnOrganizationManagesStays) {
    addDaemonPlist();
    BackgroundTaskItem managed = vpnDaemon();
    managed.itemType = u"managed legacy daemon (0x10010)"_s;
    cacheDump({managed});
    EXPECT_TRUE(QCoro::waitFor(system.disableLaunchItems({u"com.vpn.plist"_s}, {})));
    EXPECT_EQ(logged(u"  ["_s), u"  [SKIPPED] Managed by your organization: VPN\n"_s);
    EXPECT_TRUE(files.exists(kVpnPlist));
}

TEST_F(BackgroundLoginItems, aLaunchItemThatIsOffInSettingsStaysWhereItIs) {
    addDaemonPlist();
    BackgroundTaskItem disallowed = vpnDaemon();
    disallowed.disposition = u"[enabled, disallowed, notified] (0x9)"_s;
    cacheDump({disallowed});
    EXPECT_TRUE(QCoro::waitFor(system.disableLaunchItems({u"com.vpn.plist"_s}, {})));
    EXPECT_EQ(logged(u"  ["_s), u"  [INFO] Launch item already disabled: com.vpn.plist\n"_s);
    EXPECT_EQ(prompts(), 0);
}

TEST_F(BackgroundLoginItems, aLeftoverPlistTakesNoAgentAlongThatStaysInItsApplication) {
    const QString leftover = u"/Users/alex/Library/LaunchAgents/com.player.plist"_s;
    BackgroundTaskItem agent = backgroundRecord(u"Player"_s, kPlayer, {}, u"agent (0x8)"_s);
    agent.url = u"file:///Applications/Player.app/Contents/Library/LaunchAgents/com.player.menu.plist"_s;
    StartupItem kept = backgroundItemOff(kPlayer);
    kept.runsAtStartup = true;
    for (const bool isListKnown : {false, true}) {
        SCOPED_TRACE(isListKnown);
        files.addFile(leftover, "plist");
        propertyLists.lists.insert(leftover, {{u"Label"_s, kPlayer}, {u"RunAtLoad"_s, true}});
        if (isListKnown) {
            cacheDump({agent});
        }
        StartupConfiguration configuration;
        configuration.items = {kept, launchAgentOff(u"com.player.plist"_s)};
        QCoro::waitFor(system.applyStartupConfiguration(configuration));
        EXPECT_FALSE(files.exists(leftover));
        EXPECT_FALSE(isOff(kPlayer));
    }
}

TEST_F(BackgroundLoginItems, aLabelIsNotOverriddenThatSomethingElseBearsWhichStays) {
    BackgroundTaskItem going = backgroundRecord(u"Going"_s, u"com.job"_s, {}, u"agent (0x8)"_s);
    going.bundleIdentifier = u"com.going"_s;
    BackgroundTaskItem staying = going;
    staying.name = u"Staying"_s;
    staying.bundleIdentifier = u"com.staying"_s;
    dump = dumpOf({going, staying});
    EXPECT_TRUE(switchOff({u"com.going"_s}));
    EXPECT_EQ(logged(u"  [SKIPPED]"_s), u"  [SKIPPED] Something that stays has the same label: com.job\n"_s);
    EXPECT_FALSE(isOff(u"com.job"_s));
    EXPECT_TRUE(switchOff({u"com.going"_s, u"com.staying"_s}));
    EXPECT_TRUE(isOff(u"com.job"_s));
}

TEST_F(BackgroundLoginItems, aLabelThatAPlistOfAudioSoftwareBearsIsNotOverridden) {
    const QString plist = u"/Users/alex/Library/LaunchAgents/com.serato.plist"_s;
    files.addFile(plist, "plist");
    propertyLists.lists.insert(plist, {{u"Label"_s, kPlayer}, {u"RunAtLoad"_s, true}});
    EXPECT_TRUE(switchOff({kPlayer}));
    EXPECT_EQ(logged(u"  [SKIPPED]"_s), u"  [SKIPPED] Protected background login item: com.player.menu\n"_s);
    EXPECT_FALSE(isOff(kPlayer));
}

TEST_F(BackgroundLoginItems, anOverrideThatTheUserWritesWhileThePromptStandsIsTheirs) {
    const QString overrides = u"/Users/alex/.quorvane/launchd-overrides.json"_s;
    dump = dumpOf(laptopRecords());
    const auto carryOut = scripts.carryOut;
    scripts.carryOut = [this, carryOut](const QString& source) {
        carryOut(source);
        commands.launchd.overrides.insert(u"gui/501/"_s + kPlayer, true);
    };
    EXPECT_TRUE(switchOff({kPlayer, kDropboxHelper}));
    EXPECT_TRUE(isOff(kDropboxHelper));
    EXPECT_TRUE(files.read(overrides).contains(kDropboxHelper.toUtf8()));
    EXPECT_FALSE(files.read(overrides).contains(kPlayer.toUtf8()));
}

TEST_F(BackgroundLoginItems, theStandardRestoreStrikesWhatWaits) {
    StartupMemoryFile(files, machine).save({{{{LaunchdDomain::System, kVpnLabel}, kVpnPlist}}, {}});
    QCoro::waitFor(system.reinstateSystem());
    EXPECT_EQ(memory().waiting, QList<WaitingService>());
}

TEST_F(BackgroundLoginItems, withoutAListADaemonsLabelIsNotSwitchedOffForTheUser) {
    const QString plist = u"/Applications/VPN.app/Contents/Library/LaunchDaemons/com.vpn.daemon.plist"_s;
    BackgroundTaskItem daemon = backgroundRecord(u"VPN"_s, kVpnLabel, {}, u"daemon (0x10)"_s);
    daemon.url = u"file://"_s + plist;
    dump = dumpOf({daemon});
    EXPECT_TRUE(switchOff({kVpnLabel}));
    EXPECT_TRUE(switchOff({kVpnLabel}));
    EXPECT_TRUE(isDaemonOff(kVpnLabel));
    SystemManager later(host, notifications); // which has read no list
    StartupConfiguration configuration;
    configuration.items = {backgroundItemOff(kVpnLabel)};
    const qsizetype before = prompts();
    later.beginAdminBatch();
    QCoro::waitFor(later.applyStartupConfiguration(configuration));
    EXPECT_TRUE(QCoro::waitFor(later.finishAdminBatch(kPrompt)));
    EXPECT_EQ(prompts(), before) << "it is off";
    EXPECT_FALSE(isOff(kVpnLabel));
}

TEST_F(BackgroundLoginItems, whereAnOrganizationManagesTheMacADaemonWaitsForTheList) {
    addDaemonPlist();
    files.addFile(u"/Library/Managed Preferences/com.it.plist"_s, "rules");
    dump = dumpOf({vpnDaemon()});
    EXPECT_TRUE(switchOff({kVpnLabel}));
    EXPECT_FALSE(isDaemonOff(kVpnLabel));
    EXPECT_EQ(logged(u"  [INFO]"_s), u"  [INFO] Will be switched off at the next apply: VPN\n"_s);
    EXPECT_TRUE(switchOff({kVpnLabel}));
    EXPECT_TRUE(isDaemonOff(kVpnLabel));
}

TEST_F(BackgroundLoginItems, aCleanRebootTakesNoDaemonAndSaysSo) {
    addDaemonPlist();
    dump = dumpOf(laptopRecords() + QList<BackgroundTaskItem>{vpnDaemon()});
    openDeferredBatch();
    planCleanReboot({u"Player"_s});
    EXPECT_TRUE(finish());
    EXPECT_EQ(logged(u"  [APPLIED] Disabled background"_s), disabledLines({kDropboxHelper}));
    EXPECT_FALSE(isDaemonOff(kVpnLabel));
    EXPECT_FALSE(isOff(kPlayer));
    EXPECT_FALSE(isOff(u"com.x.sync"_s));
    const ApplyVerificationResult result = verify({u"Player"_s});
    EXPECT_EQ(result.failed, QList<ApplyVerificationResult::Item>());
    ASSERT_EQ(result.verified.size(), 1);
    EXPECT_EQ(result.verified.first().note, u"Daemons stay on: VPN"_s);
}

TEST_F(BackgroundLoginItems, aLabelStandsInQuotesInALine) {
    propertyLists.lists.insert(kVpnPlist, {{u"Label"_s, u"com.it's odd;x"_s}, {u"RunAtLoad"_s, true}});
    files.addFile(kVpnPlist, "plist");
    dump = dumpOf(laptopRecords());
    openDeferredBatch();
    plan({u"com.it's odd;x"_s});
    EXPECT_TRUE(finish());
    EXPECT_TRUE(
        takeTrace().contains(prompted(u"/bin/launchctl bootout system/'com.it'\\''s odd;x' 2>/dev/null || true ; "
                                      "/bin/launchctl disable system/'com.it'\\''s odd;x' ; "_s +
                                          dumpLine(),
                                      kPrompt)));
}

// ---- Without a dump, and with a refused one

TEST_F(BackgroundLoginItems, withoutADumpOnlyWhatTheProfileNamesGoes) {
    openDeferredBatch();
    planCleanReboot({});
    plan({kDropboxHelper}, {CloudSyncService::dropbox});
    EXPECT_TRUE(finish());
    EXPECT_EQ(takeTrace(), prompted(dumpLine(), kPrompt) + kLookAtLaunchd + kLookAtJobs +
                               launchctlLines(kDropboxHelper) + kLookAtLaunchd + guessedLine(kDropboxHelper));
    EXPECT_TRUE(system.backgroundTaskItems()->isEmpty());
}

TEST_F(BackgroundLoginItems, aRefusedPromptSwitchesNothingOffAndLearnsNothing) {
    addDaemonPlist();
    dump = dumpOf(laptopRecords());
    openDeferredBatch();
    plan({kDropboxHelper, kVpnLabel});
    scripts.failNext(u"User canceled."_s);
    EXPECT_FALSE(finish());
    EXPECT_TRUE(logged(u"  [ERROR]"_s).endsWith(u"cancelled or failed: User canceled.\n"_s));
    EXPECT_FALSE(isOff(kDropboxHelper));
    EXPECT_FALSE(isDaemonOff(kVpnLabel));
    EXPECT_FALSE(system.backgroundTaskItems().has_value());
    EXPECT_EQ(system.backgroundTaskItemsFetchMode(), SystemManager::BackgroundTaskItemsFetchMode::automatic);
    EXPECT_FALSE(system.pendingBackgroundLoginItemChanges().has_value());
}

TEST_F(BackgroundLoginItems, aDumpThatCannotBeTakenFailsTheBatchThatNeedsIt) {
    files.addLink(system.backgroundDumpPath(), u"/etc/sudoers"_s);
    files.failOn(MemoryFileManager::Operation::Remove, system.backgroundDumpPath());
    openDeferredBatch();
    plan({kDropboxHelper});
    QCoro::waitFor(system.runAdminCommand(u"pmset -a sms 0"_s, kPrompt));
    EXPECT_FALSE(finish());
    EXPECT_TRUE(takeTrace().startsWith(u"  [ERROR] Background items can't be read: "_s + system.backgroundDumpPath() +
                                       u": Operation not permitted\n"_s + prompted(u"pmset -a sms 0"_s, kPrompt)));
    EXPECT_FALSE(system.backgroundTaskItems().has_value());
}

// ---- The list is taken anew with each line

TEST_F(BackgroundLoginItems, newcomersAreWorkedOffWhereTheListWasKnown) {
    cacheDump(laptopRecords());
    dump = dumpOf(laptopRecords() + QList<BackgroundTaskItem>{backgroundRecord(u"Newcomer"_s, u"com.new"_s)});
    openDeferredBatch();
    planCleanReboot({u"Player"_s, u"Dropbox"_s});
    QCoro::waitFor(system.runAdminCommand(u"pmset -a sms 0"_s, kPrompt));
    EXPECT_TRUE(finish());
    EXPECT_EQ(takeTrace(), kLookAtLaunchd + prompted(u"pmset -a sms 0 ; "_s + dumpLine(), kPrompt) + kLookAtLaunchd +
                               kLookAtJobs + launchctlLines(u"com.new"_s) + kLookAtLaunchd +
                               disabledLines({u"com.new"_s}));
}

TEST_F(BackgroundLoginItems, theDumpCostsNoPrompt) {
    cacheDump({backgroundRecord(u"Player"_s, kPlayer)});
    openDeferredBatch();
    planCleanReboot({u"Player"_s});
    EXPECT_TRUE(finish());
    EXPECT_EQ(prompts(), 0) << "nothing else needed root";
}

TEST_F(BackgroundLoginItems, aRefusedDumpLeavesTheListAsItWas) {
    addDaemonPlist();
    cacheDump(laptopRecords());
    dump = dumpOf({backgroundRecord(u"Newcomer"_s, u"com.new"_s)});
    openDeferredBatch();
    plan({kVpnLabel});
    scripts.failNext(u"User canceled."_s);
    EXPECT_FALSE(finish());
    EXPECT_FALSE(system.backgroundTaskItems()->contains(u"com.new"_s));
}

TEST_F(BackgroundLoginItems, anEmptyDumpTakesNothingAwayFromAKnownList) {
    cacheDump(laptopRecords());
    for (const QByteArray& empty : {QByteArray(), QByteArray(""), QByteArray("no records\n")}) {
        dump = empty;
        openDeferredBatch();
        plan({kPlayer});
        QCoro::waitFor(system.runAdminCommand(u"pmset -a sms 0"_s, kPrompt));
        EXPECT_TRUE(finish());
        EXPECT_TRUE(system.backgroundTaskItems()->contains(kDropboxHelper));
    }
}

TEST_F(BackgroundLoginItems, aPlanWithoutWorkLearnsNothingFromItsBatch) {
    openDeferredBatch();
    QCoro::waitFor(system.runAdminCommand(u"pmset -a sms 0"_s, kPrompt));
    EXPECT_TRUE(finish());
    EXPECT_FALSE(system.backgroundTaskItems().has_value()) << "no dump was taken";
}

TEST_F(BackgroundLoginItems, aLaunchItemOfARecordOfAudioSoftwareStays) {
    const QString agents = u"/Users/alex/Library/LaunchAgents/"_s;
    BackgroundTaskItem byPlace = backgroundRecord(u"Traktor Agent"_s, u"com.other.label"_s, {}, u"legacy agent"_s);
    byPlace.url = u"file://"_s + agents + u"com.place.plist"_s;
    cacheDump({backgroundRecord(u"Serato Agent"_s, u"com.label"_s, {}, u"legacy agent"_s), byPlace,
               applicationRecord(u"Rekordbox"_s, u"com.app"_s),
               backgroundRecord(u"Sync"_s, u"com.child"_s, u"com.app"_s, u"legacy agent"_s),
               backgroundRecord(u"Chat"_s, u"com.chat"_s, {}, u"legacy agent"_s)});
    const QStringList plists{u"com.chat.plist"_s, u"com.child.plist"_s, u"com.label.plist"_s, u"com.place.plist"_s};
    for (const QString& plist : plists) {
        files.addFile(agents + plist, "plist");
    }
    EXPECT_TRUE(QCoro::waitFor(system.disableLaunchItems(plists, {})));
    EXPECT_EQ(logged(u"  ["_s), u"  [APPLIED] Disabled launch item: com.chat.plist (/Users/alex/Library/LaunchAgents)\n"
                                "  [SKIPPED] Protected launch item: com.child.plist\n"
                                "  [SKIPPED] Protected launch item: com.label.plist\n"
                                "  [SKIPPED] Protected launch item: com.place.plist\n"_s);
    EXPECT_EQ(files.list(agents.chopped(1)),
              QStringList({u"com.child.plist"_s, u"com.label.plist"_s, u"com.place.plist"_s}));
}

TEST_F(BackgroundLoginItems, aLoginItemOfARecordOfAudioSoftwareStays) {
    BackgroundTaskItem inside = backgroundRecord(u"Notifier"_s, u"com.x.notifier"_s, u"com.focusrite.control"_s);
    inside.url = u"Contents/Library/LoginItems/Notifier.app"_s;
    cacheDump({applicationRecord(u"Control"_s, u"com.focusrite.control"_s), inside,
               applicationRecord(u"Chat"_s, u"com.chat"_s)});
    const LoginItem control{u"Control"_s, u"/Applications/Control.app/"_s, false};
    const LoginItem notifier{u"Notifier"_s, u"/Applications/Control.app/Contents/Library/LoginItems/Notifier.app"_s,
                             false};
    login = {control, {u"Chat"_s, u"/Applications/Chat.app"_s, false}, notifier};
    const QStringList loginNames{u"Control"_s, u"Chat"_s, u"Notifier"_s};
    EXPECT_TRUE(QCoro::waitFor(system.disableLoginItems(loginNames, {})));
    EXPECT_EQ(logged(u"  [SKIPPED]"_s), u"  [SKIPPED] Protected login item: Control\n"
                                        "  [SKIPPED] Protected login item: Notifier\n"_s);
    EXPECT_EQ(login, QList<LoginItem>({control, notifier}));
    planCleanReboot({});
    EXPECT_EQ(login, QList<LoginItem>({control, notifier}));
}

TEST_F(BackgroundLoginItems, withoutADumpNothingIsVerified) {
    EXPECT_EQ(verify({}), ApplyVerificationResult());
}

TEST_F(BackgroundLoginItems, anEmptyDumpCannotBeVerified) {
    QCoro::waitFor(system.loadPrivilegedBackgroundDump());
    EXPECT_EQ(verify({}),
              ApplyVerificationResult(
                  {{}, {{u"Background login items"_s, u"status unavailable without administrator access"_s}}}));
}

TEST_F(BackgroundLoginItems, eachRecordThatNothingPermitsFails) {
    cacheDump(laptopRecords());
    EXPECT_EQ(verify({}), ApplyVerificationResult({{},
                                                   {{u"Background item: Dropbox Helper"_s, u"still enabled at login"_s},
                                                    {u"Background item: Player"_s, u"still enabled at login"_s}}}));
    EXPECT_EQ(verify({u"Dropbox Helper"_s, u"Player"_s}),
              ApplyVerificationResult({{{u"Background login items"_s, u"only permitted items remain"_s}}, {}}));
}

} // namespace quorvane
