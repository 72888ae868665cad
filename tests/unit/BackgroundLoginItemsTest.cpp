#include "core/UserDefaultKeys.h"
#include "fakes/StartupSystem.h"

namespace quorvane {

namespace {

const QString kDumpTool = u"/usr/bin/sfltool dumpbtm"_s;
const QString kLibrary = u"/System/Library/Frameworks/ServiceManagement.framework/ServiceManagement"_s;
const QString kLoginItemSymbol = u"SMLoginItemSetUserAllowed_4BTM"_s;
const QString kLaunchdSymbol = u"SMLaunchdPlistSetUserAllowed_4BTM"_s;
const QString kLookUp = u"? open "_s + kLibrary + u'\n';
const QString kNoList =
    u"  [INFO] ServiceManagement BTM APIs unavailable; using launchctl and quarantine fallback.\n"_s;
const QString kPrompt = u"Please."_s;

const QString kDropboxHelper = u"com.getdropbox.dropbox.helper"_s;
const QString kDropboxHelperFile = u"/Applications/Dropbox.app/Contents/Library/LoginItems/Dropbox Helper.app"_s;
const QString kDropboxApp = u"/Applications/Dropbox.app"_s;
const QString kHelperTakenAsUser = u"$> /usr/bin/ditto \""_s + kDropboxHelperFile + u"\" \""_s + kQuarantine +
                                   u"com.getdropbox.dropbox.helper/Dropbox Helper.app\"\n"
                                   "  [APPLIED] Quarantined bundled startup resource: Dropbox Helper.app\n"_s;
const QString kUpdater = u"com.getdropbox.updater"_s;
const QString kAgentFile = u"/Applications/Dropbox.app/Contents/Library/LaunchAgents/com.getdropbox.updater.plist"_s;

/// Dropbox with a helper, its updater which only the bundle knows, a player with a login item, and DJ software.
QList<BackgroundTaskItem> laptopRecords() {
    return {applicationRecord(u"Dropbox"_s, u"com.getdropbox.dropbox"_s),
            backgroundRecord(u"Dropbox Helper"_s, kDropboxHelper, u"com.getdropbox.dropbox"_s),
            backgroundRecord(u"Player"_s, u"com.player.menu"_s), backgroundRecord(u"Serato Helper"_s, u"com.x.sync"_s)};
}

const QString kVpnLabel = u"com.vpn.daemon"_s;
const QString kVpnDaemonPlist = u"/Library/LaunchDaemons/com.vpn.plist"_s;

BackgroundTaskItem vpnDaemon(const QString& type) {
    BackgroundTaskItem daemon = backgroundRecord(u"VPN"_s, kVpnLabel, {}, type);
    daemon.url = u"file://"_s + kVpnDaemonPlist;
    return daemon;
}

class BackgroundLoginItems : public StartupSystem {
protected:
    BackgroundLoginItems() {
        commands.fail(kDumpTool, 1, "sfltool[9:9] authorization failed\n");
        files.addFile(kDropboxHelperFile, "helper");
        files.addFile(kAgentFile, "agent");
    }

    bool disableLabels(const QSet<QString>& labels) { return QCoro::waitFor(system.disableBackgroundLabels(labels)); }
    bool disableItems(const QList<BackgroundTaskItem>& items, BackgroundItemKind kind = BackgroundItemKind::LoginItem) {
        return QCoro::waitFor(system.disableBackgroundItems(items, kind));
    }
    bool disableServices(const CloudSyncServices& services) {
        return QCoro::waitFor(system.disableCloudSyncBackgroundItems(services));
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
    void planCleanReboot(const QSet<QString>& permittedNames) {
        QCoro::waitFor(system.applyCleanReboot({permittedNames, std::nullopt, {}}));
        trace.clear();
    }
    void rebootClean() { QCoro::waitFor(system.applyCleanReboot({{}, std::nullopt, {}})); }
    QString logged(const QString& beginning) const {
        QString lines;
        for (const QString& line : system.logMessages()) {
            lines += line.startsWith(beginning) ? line + u'\n' : QString();
        }
        return lines;
    }
};

} // namespace

// ---- The ladder outside a batch

TEST_F(BackgroundLoginItems, nothingToSwitchOffIsSaidAndAsksForNothing) {
    EXPECT_TRUE(disableItems({}));
    EXPECT_TRUE(disableItems({}, BackgroundItemKind::CloudSyncLaunchItem));
    EXPECT_TRUE(disableLabels({}));
    EXPECT_EQ(takeTrace(), u"  [APPLIED] Background Login Items already match permitted list.\n"
                           "  [APPLIED] Cloud Sync Launch Items already match disabled list.\n"
                           "  [APPLIED] Background Login Items already match permitted list.\n"_s);
}

TEST_F(BackgroundLoginItems, theLadderGoesFromTheSystemsSwitchToTheHelpersFile) {
    cacheDump(laptopRecords());
    EXPECT_TRUE(disableLabels({kDropboxHelper}));
    EXPECT_EQ(takeTrace(), u"  [ACTION] Disabling 1 background login item(s)...\n"_s + kLookUp +
                               u"  [INFO] BTM service API unavailable for com.getdropbox.dropbox.helper; using "
                               "launchctl/quarantine fallback.\n"_s +
                               launchctlLines(kDropboxHelper) +
                               u"  [APPLIED] Disabled background login item: com.getdropbox.dropbox.helper\n"
                               "$> /usr/bin/ditto \""_s +
                               kDropboxHelperFile + u"\" \""_s + kQuarantine +
                               u"com.getdropbox.dropbox.helper/Dropbox Helper.app\"\n"
                               "  [APPLIED] Quarantined bundled startup resource: Dropbox Helper.app\n"_s);
    EXPECT_FALSE(isActive(kDropboxHelper));
    EXPECT_FALSE(files.exists(kDropboxHelperFile));
    EXPECT_EQ(files.read(kQuarantine + kDropboxHelper + u"/Dropbox Helper.app"_s), "helper");
}

TEST_F(BackgroundLoginItems, theSystemsSwitchIsTriedFirstAndMarksTheItem) {
    permissions.isLibraryThere = true;
    permissions.answers = {{kLoginItemSymbol, true}};
    cacheDump(laptopRecords());
    commands.fail(u"/bin/launchctl disable gui/501/"_s + kDropboxHelper, 1, "Could not disable\n");
    EXPECT_FALSE(disableLabels({kDropboxHelper}));
    EXPECT_EQ(takeTrace().section(u"$> /usr/bin/ditto"_s, 0, 0),
              u"  [ACTION] Disabling 1 background login item(s)...\n"_s + kLookUp + u"? look up "_s + kLoginItemSymbol +
                  u"\n? look up "_s + kLaunchdSymbol + u"\n? "_s + kLoginItemSymbol +
                  u" /Applications/Dropbox.app com.getdropbox.dropbox.helper false\n"
                  "  [APPLIED] Disallowed BTM service: com.getdropbox.dropbox.helper\n"_s +
                  launchctlLines(kDropboxHelper) +
                  u"  [ERROR] Failed to disable background login item: com.getdropbox.dropbox.helper\n"_s);
    EXPECT_FALSE(isActive(kDropboxHelper));
}

TEST_F(BackgroundLoginItems, aSwitchThatRefusesStopsNoFurtherRung) {
    permissions.isLibraryThere = true;
    permissions.answers = {{kLoginItemSymbol, false}, {kLaunchdSymbol, false}};
    cacheDump(laptopRecords());
    EXPECT_TRUE(disableLabels({kDropboxHelper}));
    EXPECT_EQ(logged(u"  ["_s), u"  [ACTION] Disabling 1 background login item(s)...\n"
                                "  [APPLIED] Disabled background login item: com.getdropbox.dropbox.helper\n"
                                "  [APPLIED] Quarantined bundled startup resource: Dropbox Helper.app\n"_s);
}

TEST_F(BackgroundLoginItems, aFailureOfLaunchdStopsNeitherTheNextLabelNorTheQuarantine) {
    cacheDump(laptopRecords());
    commands.fail(u"/bin/launchctl disable gui/501/"_s + kDropboxHelper, 1, "Operation not permitted\n");
    EXPECT_FALSE(disableLabels({kDropboxHelper, u"com.player.menu"_s}));
    EXPECT_EQ(logged(u"  [APPLIED]"_s) + logged(u"  [ERROR]"_s),
              u"  [APPLIED] Disabled background login item: com.player.menu\n"
              "  [APPLIED] Quarantined bundled startup resource: Dropbox Helper.app\n"
              "  [ERROR] Failed to disable background login item: com.getdropbox.dropbox.helper\n"_s);
    EXPECT_TRUE(isActive(kDropboxHelper));
    EXPECT_FALSE(isActive(u"com.player.menu"_s));
    EXPECT_FALSE(files.exists(kDropboxHelperFile));
}

TEST_F(BackgroundLoginItems, aServiceThatIsOffOrUnknownToLaunchdCountsAsDisabled) {
    cacheDump(laptopRecords());
    struct Case {
        QByteArray error;
        bool isDisabled;
    };
    for (const auto& [error, isDisabled] :
         {Case{"service already disabled\n", true}, Case{"could not find service\n", true},
          Case{"Could not find service\n", false}, Case{"", false}}) {
        commands.fail(u"/bin/launchctl disable gui/501/com.player.menu"_s, 113, error);
        EXPECT_EQ(disableLabels({u"com.player.menu"_s}), isDisabled) << error.toStdString();
    }
}

TEST_F(BackgroundLoginItems, withoutADumpTheLabelsAloneAreUsed) {
    scripts.failNext(u"User canceled."_s);
    EXPECT_TRUE(disableLabels({kDropboxHelper}));
    EXPECT_EQ(takeTrace(), u"  [ACTION] Disabling 1 background login item(s)...\n$> "_s + kDumpTool + u'\n' +
                               prompted(dumpLine(), kSystemChanges) + launchctlLines(kDropboxHelper) +
                               u"  [APPLIED] Disabled background login item: com.getdropbox.dropbox.helper\n"_s);
}

TEST_F(BackgroundLoginItems, eachLabelIsSwitchedOffOnceAndTheRecordsCounted) {
    cacheDump({backgroundRecord(u"B"_s, u"com.b"_s), backgroundRecord(u"A"_s, u"com.a"_s),
               backgroundRecord(u"B twin"_s, u"com.b"_s)});
    EXPECT_TRUE(disableItems(system.backgroundTaskItems()->items()));
    EXPECT_EQ(takeTrace(), u"  [ACTION] Disabling 3 background login item(s)...\n"_s + launchctlLines(u"com.a"_s) +
                               u"  [APPLIED] Disabled background login item: com.a\n"_s + launchctlLines(u"com.b"_s) +
                               u"  [APPLIED] Disabled background login item: com.b\n"_s);
}

TEST_F(BackgroundLoginItems, labelsThatCannotStandInATargetAreSkipped) {
    cacheDump(laptopRecords());
    EXPECT_TRUE(disableLabels({{}, u"."_s, u".."_s, u"-k"_s, u"a/b"_s, u"com.player.menu"_s}));
    EXPECT_EQ(takeTrace(), u"  [ACTION] Disabling 6 background login item(s)...\n"
                           "  [SKIPPED] Unusable background label: \n"
                           "  [SKIPPED] Unusable background label: -k\n"
                           "  [SKIPPED] Unusable background label: .\n"
                           "  [SKIPPED] Unusable background label: ..\n"
                           "  [SKIPPED] Unusable background label: a/b\n"_s +
                               launchctlLines(u"com.player.menu"_s) +
                               u"  [APPLIED] Disabled background login item: com.player.menu\n"_s);
    EXPECT_TRUE(disableLabels({u"com.a\u0007b"_s}));
    EXPECT_EQ(trace.filter(u"launchctl"_s), QStringList());
}

TEST_F(BackgroundLoginItems, audioSoftwareIsSkippedByLabelRecordAndApplication) {
    BackgroundTaskItem daemon = backgroundRecord(u"NTKDaemon"_s, u"com.ntk.daemon"_s);
    daemon.url = u"file:///Library/Application%20Support/Native%20Instruments/NTKDaemon.app/"_s;
    QList<BackgroundTaskItem> records = laptopRecords();
    records += {daemon, applicationRecord(u"Traktor"_s, u"com.ni.deck"_s),
                backgroundRecord(u"Deck Sync"_s, u"com.ni.sync"_s, u"com.ni.deck"_s)};
    cacheDump(records);
    EXPECT_TRUE(disableLabels({u"com.ableton.push"_s, u"com.x.sync"_s, u"com.ntk.daemon"_s, u"com.ni.sync"_s}));
    EXPECT_EQ(takeTrace(), u"  [ACTION] Disabling 4 background login item(s)...\n"
                           "  [SKIPPED] Protected background login item: com.ableton.push\n"
                           "  [SKIPPED] Protected background login item: com.ni.sync\n"
                           "  [SKIPPED] Protected background login item: com.ntk.daemon\n"
                           "  [SKIPPED] Protected background login item: com.x.sync\n"_s);
}

TEST_F(BackgroundLoginItems, helpersOfAServiceGoAsCloudItems) {
    QList<BackgroundTaskItem> records = laptopRecords();
    records.removeFirst(); // an application is a record of its service too
    cacheDump(records);
    EXPECT_TRUE(disableServices({CloudSyncService::dropbox}));
    EXPECT_EQ(takeTrace(), u"  [ACTION] Disabling 1 cloud sync launch item(s)...\n"_s + launchctlLines(kDropboxHelper) +
                               u"  [APPLIED] Disabled cloud sync launch item: com.getdropbox.dropbox.helper\n"_s);
    EXPECT_TRUE(disableServices({CloudSyncService::dropbox}));
    EXPECT_EQ(takeTrace(), u"  [APPLIED] Cloud Sync Launch Items already match disabled list.\n"_s);
}

TEST_F(BackgroundLoginItems, anEndInTheSystemsSwitchIsToldOnce) {
    permissions.isLibraryThere = true;
    permissions.answers = {{kLoginItemSymbol, true}};
    defaults.setString(kQuorvaneBackgroundTaskCallBegan, kLoginItemSymbol + u" 14.7"_s);
    cacheDump(laptopRecords());
    EXPECT_TRUE(disableLabels({kDropboxHelper}));
    const QString told =
        u"  [INFO] Quorvane once ended in a ServiceManagement BTM API; none is called again on macOS 14.7.\n"_s;
    EXPECT_EQ(takeTrace().section(u"$> "_s, 0, 0),
              u"  [ACTION] Disabling 1 background login item(s)...\n"_s + told +
                  u"  [INFO] BTM service API unavailable for com.getdropbox.dropbox.helper; using "
                  "launchctl/quarantine fallback.\n"_s);
    cacheDump(laptopRecords());
    disableServices({CloudSyncService::dropbox});
    EXPECT_FALSE(takeTrace().contains(told));
}

TEST_F(BackgroundLoginItems, aPlugInWithAProductsNameStays) {
    cacheDump({backgroundRecord(u"Dropbox Plugin"_s, u"com.getdropbox.finder"_s)});
    EXPECT_TRUE(disableServices({CloudSyncService::dropbox}));
    EXPECT_EQ(takeTrace(), u"  [ACTION] Disabling 1 cloud sync launch item(s)...\n"
                           "  [SKIPPED] Protected cloud sync launch item: com.getdropbox.finder\n"_s);
    EXPECT_TRUE(isActive(u"com.getdropbox.finder"_s));
}

// ---- The ladder in a batch

TEST_F(BackgroundLoginItems, anOpenBatchQueuesAndRunsNothing) {
    cacheDump(laptopRecords());
    system.beginAdminBatch();
    EXPECT_TRUE(disableLabels({kDropboxHelper}));
    EXPECT_EQ(takeTrace(), u"  [ACTION] Disabling 1 background login item(s)...\n"_s + kLookUp +
                               u"  [INFO] BTM service API unavailable for com.getdropbox.dropbox.helper; using "
                               "launchctl/quarantine fallback.\n"
                               "  [APPLIED] Queued disable for background login item: com.getdropbox.dropbox.helper\n"
                               "  [ACTION] Queued quarantine for bundled startup resource: Dropbox Helper.app\n"_s);
    EXPECT_FALSE(isActive(kDropboxHelper));
    EXPECT_TRUE(files.exists(kDropboxHelperFile));
    EXPECT_TRUE(finish());
    EXPECT_EQ(takeTrace(), prompted(queuedLaunchctl(kDropboxHelper), kPrompt) + kHelperTakenAsUser)
        << "root doesn't handle what the user can write";
    EXPECT_FALSE(files.exists(kDropboxHelperFile));
}

TEST_F(BackgroundLoginItems, aHelperOfRootsJoinsTheBatchsOnePrompt) {
    giveToRoot(kDropboxApp);
    cacheDump(laptopRecords());
    system.beginAdminBatch();
    EXPECT_TRUE(disableLabels({kDropboxHelper}));
    EXPECT_TRUE(files.exists(kDropboxHelperFile));
    trace.clear();
    EXPECT_TRUE(finish());
    EXPECT_EQ(takeTrace(),
              prompted(queuedLaunchctl(kDropboxHelper) + u" ; "_s + quarantineLine(kDropboxHelperFile, kDropboxHelper),
                       kPrompt));
    EXPECT_FALSE(files.exists(kDropboxHelperFile));
}

TEST_F(BackgroundLoginItems, aHelperThatRootHasLeftInItsPlaceIsSaid) {
    giveToRoot(kDropboxApp);
    cacheDump(laptopRecords());
    system.beginAdminBatch();
    EXPECT_TRUE(disableLabels({kDropboxHelper}));
    stuck.insert(kDropboxHelperFile);
    EXPECT_TRUE(finish());
    EXPECT_EQ(trace.last(), u"  [ERROR] Failed to quarantine bundled startup resource: Dropbox Helper.app: it is still "
                            "in its place"_s);
}

TEST_F(BackgroundLoginItems, aRefusedBatchLeavesEveryHelper) {
    cacheDump(laptopRecords());
    system.beginAdminBatch();
    EXPECT_TRUE(disableLabels({kDropboxHelper}));
    scripts.failNext(u"User canceled."_s);
    EXPECT_FALSE(finish());
    EXPECT_TRUE(files.exists(kDropboxHelperFile));
    system.beginAdminBatch();
    EXPECT_TRUE(finish());
    EXPECT_TRUE(files.exists(kDropboxHelperFile)) << "a later batch doesn't take up what was refused";
}

TEST_F(BackgroundLoginItems, aBatchThatFailsLeavesItsLabelsOn) {
    cacheDump(laptopRecords());
    system.beginAdminBatch();
    EXPECT_TRUE(disableLabels({kDropboxHelper, u"com.player.menu"_s}));
    EXPECT_FALSE(isActive(kDropboxHelper));
    scripts.failNext(u"User canceled."_s);
    EXPECT_FALSE(finish());
    EXPECT_TRUE(isActive(kDropboxHelper));
    EXPECT_TRUE(isActive(u"com.player.menu"_s));
}

TEST_F(BackgroundLoginItems, whatTheSystemHasDisallowedStaysOffWhenTheBatchFails) {
    permissions.isLibraryThere = true;
    permissions.answers = {{kLoginItemSymbol, true}};
    cacheDump(laptopRecords());
    openDeferredBatch();
    plan({kDropboxHelper, u"com.player.menu"_s}); // queued, and then disallowed when the batch is finished
    scripts.failNext(u"User canceled."_s);
    EXPECT_FALSE(finish());
    EXPECT_FALSE(isActive(kDropboxHelper));
    EXPECT_TRUE(isActive(u"com.player.menu"_s));
}

// ---- The plan

TEST_F(BackgroundLoginItems, withAKnownListThePlanGoesIntoTheBatchsOnePrompt) {
    cacheDump(laptopRecords());
    openDeferredBatch();
    plan({u"com.player.menu"_s}, {CloudSyncService::dropbox}); // the helper is discovered as an item of the service
    EXPECT_EQ(logged(u"  [ACTION] Queued"_s),
              u"  [ACTION] Queued disable for background login label: com.getdropbox.dropbox.helper\n"
              "  [ACTION] Queued disable for background login label: com.player.menu\n"_s);
    EXPECT_TRUE(finish());
    EXPECT_EQ(takeTrace(), kLookUp + kNoList +
                               u"  [ACTION] Queued disable for background login label: com.getdropbox.dropbox\n"
                               "  [ACTION] Queued quarantine for bundled startup resource: Dropbox Helper.app\n"_s +
                               prompted(dumpLine() + u" ; "_s + queuedLaunchctl(kDropboxHelper) + u" ; "_s +
                                            queuedLaunchctl(u"com.player.menu"_s) + u" ; "_s +
                                            queuedLaunchctl(u"com.getdropbox.dropbox"_s),
                                        kPrompt) +
                               kHelperTakenAsUser);
    EXPECT_FALSE(isActive(kDropboxHelper));
    EXPECT_FALSE(files.exists(kDropboxHelperFile));
    EXPECT_TRUE(isActive(u"com.x.sync"_s));
}

TEST_F(BackgroundLoginItems, aLaunchAgentThatOnlyTheBundleKnowsGoesToo) {
    giveToRoot(kDropboxApp);
    cacheDump(laptopRecords());
    openDeferredBatch();
    StartupConfiguration startup;
    startup.items = {backgroundItemOff(kUpdater), backgroundItemOff(kDropboxHelper)};
    QCoro::waitFor(system.applyCleanReboot({{u"Player"_s}, startup, {}}));
    trace.clear();
    EXPECT_TRUE(finish());
    EXPECT_EQ(takeTrace(),
              kLookUp + kNoList +
                  u"  [ACTION] Queued disable for background login label: com.getdropbox.dropbox.helper\n"
                  "  [ACTION] Queued disable for bundled launch agent: com.getdropbox.updater\n"
                  "  [ACTION] Queued quarantine for bundled startup resource: Dropbox Helper.app\n"
                  "  [ACTION] Queued quarantine for bundled startup resource: com.getdropbox.updater.plist\n"_s +
                  prompted(dumpLine() + u" ; "_s + queuedLaunchctl(kDropboxHelper) + u" ; "_s +
                               queuedLaunchctl(kUpdater) + u" ; "_s +
                               quarantineLine(kDropboxHelperFile, kDropboxHelper) + u" ; "_s +
                               quarantineLine(kAgentFile, kUpdater),
                           kPrompt));
}

TEST_F(BackgroundLoginItems, aDumpThatComesWithTheBatchIsWorkedOffAsTheUser) {
    dump = dumpOf(laptopRecords());
    openDeferredBatch();
    plan({u"com.player.menu"_s}, {CloudSyncService::dropbox});
    EXPECT_TRUE(finish());
    EXPECT_EQ(takeTrace(), prompted(dumpLine(), kPrompt) + kLookUp + kNoList +
                               launchctlLines(u"com.getdropbox.dropbox"_s) +
                               u"  [APPLIED] Disabled background login label: com.getdropbox.dropbox\n"_s +
                               launchctlLines(kDropboxHelper) +
                               u"  [APPLIED] Disabled background login label: com.getdropbox.dropbox.helper\n"_s +
                               launchctlLines(u"com.player.menu"_s) +
                               u"  [APPLIED] Disabled background login label: com.player.menu\n"
                               "$> /usr/bin/ditto \""_s +
                               kDropboxHelperFile + u"\" \""_s + kQuarantine + kDropboxHelper +
                               u"/Dropbox Helper.app\"\n"
                               "  [APPLIED] Quarantined bundled startup resource: Dropbox Helper.app\n"_s);
    EXPECT_FALSE(isActive(kDropboxHelper));
    EXPECT_TRUE(isActive(u"com.x.sync"_s));
}

TEST_F(BackgroundLoginItems, helpersThatNeedRootAfterTheFlushGoUnderOneSecondPrompt) {
    dump = dumpOf(laptopRecords());
    giveToRoot(kDropboxApp);
    openDeferredBatch();
    plan({kDropboxHelper, kUpdater});
    EXPECT_TRUE(finish());
    EXPECT_EQ(takeTrace(), prompted(dumpLine(), kPrompt) + kLookUp + kNoList + launchctlLines(kDropboxHelper) +
                               u"  [APPLIED] Disabled background login label: com.getdropbox.dropbox.helper\n"_s +
                               launchctlLines(kUpdater) +
                               u"  [APPLIED] Disabled background login label: com.getdropbox.updater\n"_s +
                               prompted(quarantineLine(kDropboxHelperFile, kDropboxHelper) + u" ; "_s +
                                            quarantineLine(kAgentFile, kUpdater),
                                        kNeutral) +
                               u"  [APPLIED] Quarantined bundled startup resource: Dropbox Helper.app\n"
                               "  [APPLIED] Quarantined bundled startup resource: com.getdropbox.updater.plist\n"_s);
    EXPECT_FALSE(files.exists(kDropboxHelperFile));
    EXPECT_EQ(files.read(kQuarantine + kUpdater + u"/com.getdropbox.updater.plist"_s), "agent");
}

TEST_F(BackgroundLoginItems, aRefusedSecondPromptLeavesTheHelperAndTheBatchsSuccess) {
    dump = dumpOf(laptopRecords());
    giveToRoot(kDropboxApp);
    openDeferredBatch();
    plan({kDropboxHelper});
    scripts.answerNext({QString(), std::nullopt});
    scripts.failNext(u"User canceled."_s);
    EXPECT_TRUE(finish());
    EXPECT_EQ(trace.last(),
              u"  [ERROR] Failed to quarantine bundled startup resource: Dropbox Helper.app: User canceled."_s);
    EXPECT_EQ(prompts(), 2);
    EXPECT_TRUE(files.exists(kDropboxHelperFile));
    EXPECT_FALSE(isActive(kDropboxHelper));
}

TEST_F(BackgroundLoginItems, anItemThatWillNotDieIsTriedOnceMoreWithoutAPrompt) {
    dump = dumpOf(laptopRecords());
    giveToRoot(kDropboxApp);
    commands.fail(u"/bin/launchctl disable gui/501/"_s + kDropboxHelper, 1, "Operation not permitted\n");
    openDeferredBatch();
    plan({kDropboxHelper});
    scripts.answerNext({QString(), std::nullopt});
    scripts.failNext(u"User canceled."_s);
    EXPECT_TRUE(finish());
    EXPECT_EQ(prompts(), 2);
    EXPECT_TRUE(isActive(kDropboxHelper));

    stuck.insert(kDropboxHelperFile);
    EXPECT_FALSE(disableLabels({kDropboxHelper})) << "root can't move it either";
    EXPECT_EQ(prompts(), 3) << "the retry asked again";
}

TEST_F(BackgroundLoginItems, aRetrySucceedsOnceTheHelperIsTheUsers) {
    cacheDump(laptopRecords());
    commands.fail(u"/bin/launchctl disable gui/501/"_s + kDropboxHelper, 1, "Operation not permitted\n");
    int copies = 0;
    const auto answer = commands.respond;
    commands.respond = [&](const QStringList& arguments) -> std::optional<CommandOutcome> {
        if (arguments.first() == u"/usr/bin/ditto" && ++copies == 1) {
            CommandOutcome busy = ScriptedCommandLauncher::succeeded({});
            busy.code = 1;
            busy.standardError = "ditto: Resource busy\n";
            return busy;
        }
        return answer(arguments);
    };
    EXPECT_FALSE(disableLabels({kDropboxHelper}));
    EXPECT_EQ(logged(u"  [ERROR]"_s) + logged(u"  [APPLIED]"_s),
              u"  [ERROR] Failed to disable background login item: com.getdropbox.dropbox.helper\n"
              "  [ERROR] Failed to quarantine bundled startup resource: Dropbox Helper.app: ditto: Resource busy\n"
              "  [APPLIED] Quarantined bundled startup resource: Dropbox Helper.app\n"_s);
    EXPECT_FALSE(files.exists(kDropboxHelperFile));
}

TEST_F(BackgroundLoginItems, aRefusedPromptSwitchesNothingOffAndLearnsNothing) {
    dump = dumpOf(laptopRecords());
    openDeferredBatch();
    plan({kDropboxHelper});
    scripts.failNext(u"User canceled."_s);
    EXPECT_FALSE(finish());
    EXPECT_EQ(takeTrace(), prompted(dumpLine(), kPrompt) +
                               u"  [ERROR] Administrator authorization was cancelled or failed: User canceled.\n"_s);
    EXPECT_FALSE(system.backgroundTaskItems().has_value());
    EXPECT_EQ(system.backgroundTaskItemsFetchMode(), SystemManager::BackgroundTaskItemsFetchMode::automatic);
    EXPECT_FALSE(system.pendingBackgroundLoginItemChanges().has_value());
}

TEST_F(BackgroundLoginItems, anEmptyDumpLeavesThePlanWithNothingToDo) {
    openDeferredBatch();
    plan({kDropboxHelper}, {CloudSyncService::dropbox});
    EXPECT_TRUE(finish());
    EXPECT_EQ(takeTrace(), prompted(dumpLine(), kPrompt));
    EXPECT_TRUE(system.backgroundTaskItems()->isEmpty());
}

TEST_F(BackgroundLoginItems, aDumpThatCannotBeTakenFailsTheBatchThatNeedsIt) {
    files.addLink(system.backgroundDumpPath(), u"/etc/sudoers"_s);
    files.failOn(MemoryFileManager::Operation::Remove, system.backgroundDumpPath());
    openDeferredBatch();
    plan({kDropboxHelper});
    QCoro::waitFor(system.runAdminCommand(u"pmset -a sms 0"_s, kPrompt));
    EXPECT_FALSE(finish());
    EXPECT_EQ(takeTrace(), u"  [ERROR] Background items can't be read: "_s + system.backgroundDumpPath() +
                               u": Operation not permitted\n"_s + prompted(u"pmset -a sms 0"_s, kPrompt));
    EXPECT_FALSE(system.backgroundTaskItems().has_value());
}

TEST_F(BackgroundLoginItems, aCleanRebootTakesWhatNothingPermits) {
    dump = dumpOf(laptopRecords());
    openDeferredBatch();
    planCleanReboot({u"Player"_s});
    EXPECT_TRUE(finish());
    EXPECT_EQ(logged(u"  [APPLIED] Disabled background"_s),
              u"  [APPLIED] Disabled background login label: com.getdropbox.dropbox.helper\n"_s);
    EXPECT_TRUE(isActive(u"com.player.menu"_s));
    EXPECT_TRUE(isActive(u"com.x.sync"_s));
}

TEST_F(BackgroundLoginItems, protectedRecordsOfAPlannedServiceAreHeldBackAndSaid) {
    dump = dumpOf({backgroundRecord(u"Dropbox Plugin"_s, u"com.getdropbox.finder"_s)});
    openDeferredBatch();
    plan({}, {CloudSyncService::dropbox});
    EXPECT_TRUE(finish());
    EXPECT_EQ(takeTrace(), prompted(dumpLine(), kPrompt) +
                               u"  [SKIPPED] Protected background login item: com.getdropbox.finder\n"_s);
    EXPECT_TRUE(isActive(u"com.getdropbox.finder"_s));
}

TEST_F(BackgroundLoginItems, anUnusableLabelNeverReachesABatch) {
    cacheDump(laptopRecords());
    openDeferredBatch();
    plan({u"-w"_s, u"a/b"_s});
    EXPECT_TRUE(finish());
    EXPECT_EQ(prompts(), 0);
}

TEST_F(BackgroundLoginItems, aLabelStandsInQuotesInALine) {
    cacheDump({backgroundRecord(u"Odd"_s, u"com.it's odd;x"_s)});
    openDeferredBatch();
    plan({u"com.it's odd;x"_s});
    EXPECT_TRUE(finish());
    EXPECT_EQ(takeTrace(), prompted(dumpLine() + u" ; "_s + queuedLaunchctl(u"'com.it'\\''s odd;x'"_s), kPrompt));
}

// ---- The list is taken anew with each plan that has work

TEST_F(BackgroundLoginItems, newcomersAreWorkedOffWhereTheListWasKnown) {
    cacheDump(laptopRecords());
    dump = dumpOf(laptopRecords() + QList<BackgroundTaskItem>{backgroundRecord(u"Newcomer"_s, u"com.new"_s)});
    openDeferredBatch();
    planCleanReboot({u"Player"_s});
    EXPECT_TRUE(finish());
    EXPECT_EQ(takeTrace(), kLookUp + kNoList +
                               u"  [ACTION] Queued disable for background login label: com.getdropbox.dropbox.helper\n"
                               "  [ACTION] Queued quarantine for bundled startup resource: Dropbox Helper.app\n"_s +
                               prompted(dumpLine() + u" ; "_s + queuedLaunchctl(kDropboxHelper), kPrompt) +
                               kHelperTakenAsUser + launchctlLines(u"com.new"_s) +
                               u"  [APPLIED] Disabled background login label: com.new\n"_s);
    EXPECT_FALSE(isActive(u"com.new"_s));
    EXPECT_FALSE(isActive(kDropboxHelper)) << "the dump was taken before launchd was told";
    EXPECT_TRUE(isActive(u"com.player.menu"_s));
}

TEST_F(BackgroundLoginItems, aNewcomersHelperGoesToo) {
    cacheDump({backgroundRecord(u"Player"_s, u"com.player.menu"_s)});
    dump = dumpOf(laptopRecords());
    openDeferredBatch();
    planCleanReboot({});
    EXPECT_TRUE(finish());
    EXPECT_EQ(prompts(), 1);
    EXPECT_FALSE(files.exists(kDropboxHelperFile));
    EXPECT_FALSE(isActive(kDropboxHelper));
    EXPECT_FALSE(isActive(u"com.player.menu"_s));
    EXPECT_EQ(verify({}).failed, QList<ApplyVerificationResult::Item>());
}

TEST_F(BackgroundLoginItems, whatWasSwitchedOffInThisSessionIsNoNewcomer) {
    dump = dumpOf(laptopRecords()); // launchd's override doesn't show in it
    for (const QString& queued : {QString(), queuedLaunchctl(u"com.player.menu"_s)}) {
        openDeferredBatch();
        planCleanReboot({});
        if (!queued.isEmpty()) {
            plan({u"com.player.menu"_s});
        }
        EXPECT_TRUE(finish());
        EXPECT_EQ(logged(u"  [APPLIED] Disabled background"_s),
                  u"  [APPLIED] Disabled background login label: com.getdropbox.dropbox.helper\n"
                  "  [APPLIED] Disabled background login label: com.player.menu\n"_s);
        EXPECT_FALSE(isActive(kDropboxHelper));
        EXPECT_FALSE(isActive(u"com.player.menu"_s));
    }
    EXPECT_EQ(prompts(), 1) << "of the second round";
}

TEST_F(BackgroundLoginItems, whatIsHeldBackIsSaidOnceThoughTheListIsTakenAnew) {
    const QList<BackgroundTaskItem> records{backgroundRecord(u"Dropbox Plugin"_s, u"com.getdropbox.finder"_s),
                                            backgroundRecord(u"Player"_s, u"com.player.menu"_s)};
    cacheDump(records);
    dump = dumpOf(records);
    openDeferredBatch();
    plan({u"com.player.menu"_s}, {CloudSyncService::dropbox});
    EXPECT_TRUE(finish());
    EXPECT_EQ(logged(u"  [SKIPPED]"_s), u"  [SKIPPED] Protected background login item: com.getdropbox.finder\n"_s);
}

TEST_F(BackgroundLoginItems, theDumpCostsNoPrompt) {
    cacheDump({backgroundRecord(u"Player"_s, u"com.player.menu"_s)});
    openDeferredBatch();
    planCleanReboot({u"Player"_s});
    EXPECT_TRUE(finish());
    EXPECT_EQ(takeTrace(), u"\n"_s) << "nothing else needed root";
}

TEST_F(BackgroundLoginItems, aRefusedDumpLeavesTheListAsItWas) {
    cacheDump(laptopRecords());
    dump = dumpOf({backgroundRecord(u"Newcomer"_s, u"com.new"_s)});
    openDeferredBatch();
    planCleanReboot({});
    scripts.failNext(u"User canceled."_s);
    EXPECT_FALSE(finish());
    EXPECT_TRUE(isActive(kDropboxHelper));
    EXPECT_FALSE(system.backgroundTaskItems()->contains(u"com.new"_s));
}

TEST_F(BackgroundLoginItems, anEmptyDumpIsNotReadAndTheNextBatchAsksAgain) {
    openDeferredBatch();
    plan({kDropboxHelper});
    EXPECT_TRUE(finish());
    EXPECT_TRUE(system.backgroundTaskItems()->isEmpty());
    trace.clear();

    dump = dumpOf(laptopRecords());
    openDeferredBatch();
    plan({kDropboxHelper});
    EXPECT_TRUE(finish());
    EXPECT_EQ(takeTrace(), prompted(dumpLine(), kNeutral) + kLookUp + kNoList + launchctlLines(kDropboxHelper) +
                               u"  [APPLIED] Disabled background login label: com.getdropbox.dropbox.helper\n"_s +
                               kHelperTakenAsUser);
}

TEST_F(BackgroundLoginItems, anEmptyDumpTakesNothingAwayFromAKnownList) {
    cacheDump(laptopRecords());
    for (const QByteArray& empty : {QByteArray(), QByteArray(""), QByteArray("no records\n")}) {
        dump = empty;
        openDeferredBatch();
        plan({kDropboxHelper});
        EXPECT_TRUE(finish());
        EXPECT_TRUE(isActive(u"com.player.menu"_s));
        EXPECT_FALSE(isActive(kDropboxHelper));
    }
}

TEST_F(BackgroundLoginItems, aPlanWithoutWorkLearnsNothingFromItsBatch) {
    openDeferredBatch();
    QCoro::waitFor(system.runAdminCommand(u"pmset -a sms 0"_s, kPrompt));
    EXPECT_TRUE(finish());
    EXPECT_FALSE(system.backgroundTaskItems().has_value()) << "no dump was taken";
}

// ---- Daemons: an override in the user's own domain doesn't stop them

TEST_F(BackgroundLoginItems, aDaemonThatOnlyGotAnOverrideOfTheUsersIsNotCalledDisabled) {
    files.addFile(kVpnDaemonPlist, "vpn");
    cacheDump({vpnDaemon(u"legacy daemon (0x10010)"_s)});
    EXPECT_FALSE(disableLabels({kVpnLabel}));
    EXPECT_EQ(takeTrace(), u"  [ACTION] Disabling 1 background login item(s)...\n"_s + launchctlLines(kVpnLabel) +
                               u"  [ERROR] Failed to disable background login item: com.vpn.daemon\n"_s);
    EXPECT_TRUE(isActive(kVpnLabel));
    EXPECT_EQ(verify({}).failed,
              QList<ApplyVerificationResult::Item>({{u"Background item: VPN"_s, u"still enabled at login"_s}}));
}

TEST_F(BackgroundLoginItems, aDaemonIsKnownByItsTypeOrItsPlace) {
    files.addFile(kVpnDaemonPlist, "vpn");
    for (const QString& type : {u"daemon (0x10)"_s, u"curated legacy daemon (0x90010)"_s, u"Managed Legacy Daemon"_s,
                                u"login item (0x4)"_s}) {
        SCOPED_TRACE(type.toStdString());
        files.addFile(system.backgroundDumpPath(), dumpOf({vpnDaemon(type)}));
        QCoro::waitFor(system.loadPrivilegedBackgroundDump());
        EXPECT_FALSE(disableLabels({kVpnLabel}));
        EXPECT_TRUE(isActive(kVpnLabel));
    }
}

TEST_F(BackgroundLoginItems, aDaemonWhosePlistIsGoneIsOff) {
    cacheDump({vpnDaemon(u"legacy daemon (0x10010)"_s)});
    EXPECT_TRUE(disableLabels({kVpnLabel}));
    EXPECT_FALSE(isActive(kVpnLabel));
}

TEST_F(BackgroundLoginItems, aDaemonOfAnApplicationIsNotOffEither) {
    BackgroundTaskItem daemon =
        backgroundRecord(u"Dropbox Daemon"_s, kVpnLabel, u"com.getdropbox.dropbox"_s, u"daemon (0x10)"_s);
    daemon.url = u"Contents/Library/LaunchDaemons/com.vpn.daemon.plist"_s;
    cacheDump(laptopRecords() + QList<BackgroundTaskItem>{daemon});
    EXPECT_FALSE(disableLabels({kVpnLabel}));
    EXPECT_TRUE(isActive(kVpnLabel));
}

TEST_F(BackgroundLoginItems, ofADaemonAndAnAgentOfOneLabelTheDaemonStaysOn) {
    files.addFile(kVpnDaemonPlist, "vpn");
    cacheDump(
        {backgroundRecord(u"VPN Agent"_s, kVpnLabel, {}, u"agent (0x8)"_s), vpnDaemon(u"legacy daemon (0x10010)"_s)});
    EXPECT_FALSE(disableLabels({kVpnLabel}));
    EXPECT_EQ(system.backgroundTaskItems()->items().first().disposition, disabledDisposition());
    EXPECT_TRUE(isActive(kVpnLabel));
}

TEST_F(BackgroundLoginItems, aDaemonThatTheSystemHasDisallowedIsOff) {
    permissions.isLibraryThere = true;
    permissions.answers = {{kLoginItemSymbol, true}};
    BackgroundTaskItem daemon =
        backgroundRecord(u"Dropbox Daemon"_s, kVpnLabel, u"com.getdropbox.dropbox"_s, u"daemon (0x10)"_s);
    cacheDump(laptopRecords() + QList<BackgroundTaskItem>{daemon});
    EXPECT_TRUE(disableLabels({kVpnLabel}));
    EXPECT_FALSE(isActive(kVpnLabel));
}

TEST_F(BackgroundLoginItems, inABatchADaemonIsOffExactlyWhenItsPlistGoesToo) {
    files.addFile(kVpnDaemonPlist, "vpn");
    const QList<BackgroundTaskItem> records{vpnDaemon(u"legacy daemon (0x10010)"_s)};
    cacheDump(records);
    dump = dumpOf(records);
    openDeferredBatch();
    plan({kVpnLabel});
    EXPECT_TRUE(isActive(kVpnLabel));
    EXPECT_TRUE(finish());
    EXPECT_TRUE(isActive(kVpnLabel));

    openDeferredBatch();
    const QStringList plists{u"com.vpn.plist"_s};
    EXPECT_TRUE(QCoro::waitFor(system.disableLaunchItems(plists, {})));
    plan({kVpnLabel});
    EXPECT_FALSE(isActive(kVpnLabel)) << "the batch moves its plist";
    EXPECT_TRUE(finish());
    EXPECT_FALSE(isActive(kVpnLabel));
}

// ---- Launch items with a record

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
    rebootClean();
    EXPECT_EQ(login, QList<LoginItem>({control, notifier}));
}

// ---- The system's own labels, and the program's

TEST_F(BackgroundLoginItems, labelsOfTheSystemAndTheProgramAreNeverSwitchedOff) {
    cacheDump(laptopRecords() + QList<BackgroundTaskItem>{backgroundRecord(u"Sharing"_s, u"com.apple.sharingd"_s)});
    EXPECT_TRUE(disableLabels({u"com.apple.sharingd"_s, u"com.quorvane.helper"_s, u"com.applebees.menu"_s}));
    EXPECT_EQ(takeTrace(), u"  [ACTION] Disabling 3 background login item(s)...\n"
                           "  [SKIPPED] Protected background item: com.apple.sharingd\n"
                           "  [SKIPPED] Protected background item: com.quorvane.helper\n"_s +
                               launchctlLines(u"com.applebees.menu"_s) +
                               u"  [APPLIED] Disabled background login item: com.applebees.menu\n"_s);
    EXPECT_TRUE(isActive(u"com.apple.sharingd"_s));
}

TEST_F(BackgroundLoginItems, noPlanReachesTheSystemsLabels) {
    const QList<BackgroundTaskItem> records{backgroundRecord(u"Sharing"_s, u"com.apple.sharingd"_s),
                                            backgroundRecord(u"iCloud Drive"_s, u"com.apple.clouddocs"_s)};
    dump = dumpOf(records);
    for (const bool isKnown : {false, true}) {
        SCOPED_TRACE(isKnown);
        openDeferredBatch();
        planCleanReboot({});
        plan({u"com.apple.sharingd"_s, u"com.quorvane.agent"_s}, {CloudSyncService::iCloudDrive});
        EXPECT_TRUE(finish());
        EXPECT_EQ(trace.filter(u"launchctl"_s), QStringList());
        EXPECT_TRUE(isActive(u"com.apple.sharingd"_s));
        EXPECT_TRUE(isActive(u"com.apple.clouddocs"_s));
    }
}

// ---- Verification

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
