#include "fakes/ReadingLines.h"
#include "fakes/RestoreSystem.h"

#include "core/UserDefaultKeys.h"
#include "startup/launchd/LaunchFolders.h"

namespace quorvane {

namespace {

const QString kCloudBaseline = u"/Users/alex/Library/Mobile Documents/7KX2MR04TD~com~quorvane~app/Documents/Quorvane/"
                               "SystemBaselines/master-baseline-current.json"_s;

const QString kStaysOff =
    u"  [INFO] Time Machine stays off: automatic backups were off when these settings were saved. "
    "Turn them on in System Settings.\n"_s;

class RestoreFlow : public RestoreSystem {
protected:
    bool restore(const SystemSnapshot& snapshot) { return QCoro::waitFor(system.restoreFromSnapshot(snapshot)); }
    RestoreOutcome revert() { return QCoro::waitFor(system.revertPerformanceTweaks()); }
    RestoreOutcome reinstate() { return QCoro::waitFor(system.reinstateSystem()); }
    std::optional<RestoreBaseline> selected() { return QCoro::waitFor(system.selectRestoreBaseline()); }
    bool isAvailable() { return QCoro::waitFor(system.findRestoreBaseline()).baseline.has_value(); }
    void signIn() {
        cloud.account = true;
        cloud.container = u"/Users/alex/Library/Mobile Documents/7KX2MR04TD~com~quorvane~app"_s;
    }
    static SystemSnapshot withServices(const QMap<QString, bool>& services) {
        SystemSnapshot snapshot = usersOwn();
        snapshot.networkServicesEnabled = services;
        return snapshot;
    }
    /// What the network tool lists from now on, and how: "*Wi-Fi" is off.
    void answerServices(const QStringList& listed) {
        commands.print(kListServices, "An asterisk (*) denotes that a network service is disabled.\n" +
                                          listed.join(u'\n').toUtf8() + '\n');
        for (const QString& service : listed) {
            const bool isOff = service.startsWith(u'*');
            const QStringList query{u"/usr/sbin/networksetup"_s, u"-getnetworkserviceenabled"_s,
                                    isOff ? service.mid(1) : service};
            commands.print(commandLine(query), isOff ? "Disabled\n" : "Enabled\n");
        }
    }
    bool logs(const QString& line) const { return system.logMessages().contains(line); }

    const QString kListServices = u"/usr/sbin/networksetup -listallnetworkservices"_s;
    const QString kServicesBack = u"  [RESTORED] Network services from snapshot."_s;
};

} // namespace

// ---- What is gone back to

TEST_F(RestoreFlow, hasNothingToGoBackToWhereNothingWasCaptured) {
    EXPECT_EQ(selected(), std::nullopt);
    EXPECT_FALSE(isAvailable());
    EXPECT_EQ(takeTrace(), u"\n"_s);
}

TEST_F(RestoreFlow, goesBackToTheLocalSnapshotWithoutAWord) {
    save(usersOwn());
    EXPECT_EQ(selected(), (RestoreBaseline{usersOwn()}));
    saveBaseline(kHomeBaseline, usersOwn()); // of the same time
    EXPECT_EQ(selected(), (RestoreBaseline{usersOwn()}));
    EXPECT_TRUE(isAvailable());
    EXPECT_EQ(takeTrace(), u"\n"_s);
}

TEST_F(RestoreFlow, goesBackToTheProtectedBaselineWhereThereIsNoSnapshot) {
    saveBaseline(kHomeBaseline, usersOwn());
    EXPECT_TRUE(isAvailable());
    EXPECT_EQ(takeTrace(), u"\n"_s);
    EXPECT_EQ(selected(), (RestoreBaseline{usersOwn(), RestoreSource::Baseline, false, {}}));
    EXPECT_EQ(takeTrace(), u"  [MASTER] Using protected baseline from ~/.quorvane.\n"_s);
}

TEST_F(RestoreFlow, goesBackToANewerProtectedBaseline) {
    save(usersOwn(1));
    saveBaseline(kHomeBaseline, usersOwn(2));
    EXPECT_EQ(selected(), (RestoreBaseline{usersOwn(2), RestoreSource::Baseline, true, {}}));
    EXPECT_EQ(takeTrace(), u"  [MASTER] Using newer protected baseline from ~/.quorvane.\n"_s);
}

TEST_F(RestoreFlow, namesICloudForAUserWhoIsSignedIn) {
    signIn();
    saveBaseline(kCloudBaseline, usersOwn());
    selected();
    EXPECT_EQ(takeTrace(), u"  [MASTER] Using protected baseline from iCloud.\n"_s);
    files.remove(kCloudBaseline);
    saveBaseline(kHomeBaseline, usersOwn()); // the account counts, wherever the baseline came from
    selected();
    EXPECT_EQ(takeTrace(), u"  [MASTER] Using protected baseline from iCloud.\n"_s);
}

TEST_F(RestoreFlow, saysWhenABaselineIsAnotherMacs) {
    saveBaseline(kHomeBaseline, usersOwn(), u"Anna's MacBook"_s);
    selected();
    EXPECT_EQ(takeTrace(), u"  [MASTER] Using protected baseline from ~/.quorvane.\n"
                           "  [INFO] This baseline was saved on Anna's MacBook.\n"_s);
}

TEST_F(RestoreFlow, anotherMacsBaselineIsNothingToAMacWithASnapshotOrABaselineOfItsOwn) {
    signIn();
    const QString others = u"9E4D02C7-16BB-5A8F-A3F0-2C7D5E814B66"_s;
    save(usersOwn(1));
    saveBaseline(kHomeBaseline, usersOwn(1), u"Studio"_s, machine.id);
    saveBaseline(kCloudBaseline, usersOwn(50), u"Studio"_s, others); // later, and of the same name
    EXPECT_EQ(selected(), (RestoreBaseline{usersOwn(1)}));
    EXPECT_EQ(takeTrace(), u"\n"_s);
    files.remove(kSnapshotFile);
    EXPECT_EQ(selected(), (RestoreBaseline{usersOwn(1), RestoreSource::Baseline, false, {}}));
    files.remove(kHomeBaseline);
    save(usersOwn(1));
    EXPECT_EQ(selected(), (RestoreBaseline{usersOwn(1)}));
    takeTrace();
    files.remove(kSnapshotFile);
    EXPECT_EQ(selected(), (RestoreBaseline{usersOwn(50), RestoreSource::Baseline, false, u"Studio"_s}));
    EXPECT_EQ(takeTrace(), u"  [MASTER] Using protected baseline from iCloud.\n"
                           "  [INFO] This baseline was saved on Studio.\n"_s);
}

TEST_F(RestoreFlow, aBaselineOfThisMacUnderAnOlderNameIsItsOwn) {
    save(usersOwn(1));
    saveBaseline(kHomeBaseline, usersOwn(2), u"Before"_s, machine.id);
    EXPECT_EQ(selected(), (RestoreBaseline{usersOwn(2), RestoreSource::Baseline, true, {}}));
    EXPECT_EQ(takeTrace(), u"  [MASTER] Using newer protected baseline from ~/.quorvane.\n"_s);
}

TEST_F(RestoreFlow, goesBackToTheBaselineWhereTheSnapshotIsDamaged) {
    files.addFile(kSnapshotFile, "{ cut o");
    saveBaseline(kHomeBaseline, usersOwn());
    EXPECT_EQ(selected()->source, RestoreSource::Baseline);
    files.addFile(kHomeBaseline, "[]");
    EXPECT_EQ(selected(), std::nullopt);
}

// ---- Restoring by itself

TEST_F(RestoreFlow, putsThePreferencesBackAndAsksNobodyWhenNothingElseIsKnown) {
    EXPECT_TRUE(restore(usersOwn()));
    EXPECT_EQ(takeTrace(), kRestoreSteps + kApplied);
}

TEST_F(RestoreFlow, putsTheSystemBackUnderOnePromptOfItsOwn) {
    SystemSnapshot snapshot = usersOwn();
    snapshot.pmsetStandby = u"1"_s;
    snapshot.pmsetDisksleep = u"10"_s;
    snapshot.pmsetSleep = u"5"_s;
    snapshot.pmsetSms = u"1"_s;
    snapshot.spotlightIndexingEnabled = true;
    snapshot.timeMachineEnabled = true;
    EXPECT_TRUE(restore(snapshot));
    EXPECT_EQ(takeTrace(),
              kRestoreSteps + reading::traced({reading::kTimeMachine}) + kAction +
                  prompted(u"pmset -a standby 1 disksleep 10 sleep 5 ; pmset -a sms 1 ; mdutil -a -i on || true ; "
                           "tmutil enable || true"_s,
                           kSystemChanges) +
                  kApplied);
}

TEST_F(RestoreFlow, isFalseWhenItsPromptIsCancelled) {
    SystemSnapshot snapshot = usersOwn();
    snapshot.pmsetSms = u"1"_s;
    scripts.failNext(u"User canceled."_s);
    EXPECT_FALSE(restore(snapshot));
    EXPECT_EQ(takeTrace(), kRestoreSteps + kAction + prompted(u"pmset -a sms 1"_s, kSystemChanges) +
                               u"  [ERROR] Snapshot restoration was cancelled or failed: User canceled.\n"_s);
}

// ---- The tweaks alone

TEST_F(RestoreFlow, revertsTheTweaksAndLeavesEverythingElse) {
    SystemSnapshot snapshot = usersOwn();
    snapshot.label = u"Tour"_s;
    snapshot.pmsetSms = u"1"_s;
    snapshot.loginItems = QList<LoginItemSnapshot>{{u"Live"_s, u"/Applications/Live.app"_s, false}};
    snapshot.networkServicesEnabled = QMap<QString, bool>{{u"Wi-Fi"_s, true}};
    save(snapshot);
    EXPECT_EQ(revert(), (RestoreOutcome{true, RestoreSource::Snapshot}));
    EXPECT_EQ(takeTrace(), u"\nRestoring from saved system snapshot (Tour)...\n"_s + kRestoreSteps + kAction +
                               kApplied + prompted(u"pmset -a sms 1"_s, kRevertPrompt) +
                               readBack({u"Motion Sensor"_s}));
    EXPECT_EQ(system.adminBatchDepth(), 0);
}

TEST_F(RestoreFlow, revertsToStandardDefaultsWhereNothingWasCaptured) {
    EXPECT_EQ(revert(), (RestoreOutcome{true, RestoreSource::StandardDefaults}));
    const QString log = takeTrace();
    EXPECT_TRUE(log.startsWith(u"\nUndoing Audio Performance tweaks (no snapshot — using standard defaults)...\n"_s));
    EXPECT_TRUE(log.endsWith(prompted(kUndoLine, kRevertPrompt) + readBackOfStandard()));
}

TEST_F(RestoreFlow, revertsToABaselineAlthoughTheSnapshotFileIsDamaged) {
    files.addFile(kSnapshotFile, "{");
    saveBaseline(kHomeBaseline, usersOwn());
    EXPECT_EQ(revert(), (RestoreOutcome{true, RestoreSource::Baseline}));
}

TEST_F(RestoreFlow, isFalseAfterACancelAlthoughTheLogHasItsLastLine) {
    SystemSnapshot snapshot = usersOwn();
    snapshot.pmsetSms = u"1"_s;
    save(snapshot);
    scripts.failNext(u"User canceled."_s);
    EXPECT_EQ(revert(), (RestoreOutcome{false, RestoreSource::Snapshot}));
    EXPECT_EQ(takeTrace(), u"\nRestoring from saved system snapshot...\n"_s + kRestoreSteps + kAction + kApplied +
                               prompted(u"pmset -a sms 1"_s, kRevertPrompt) + kCancelled +
                               readBack({u"Motion Sensor"_s}));
}

// ---- Time Machine

TEST_F(RestoreFlow, saysThatTimeMachineStaysOffOnceTheBatchHasSwitchedIt) {
    SystemSnapshot snapshot = usersOwn();
    snapshot.timeMachineEnabled = false;
    save(snapshot);
    EXPECT_TRUE(revert().succeeded);
    const QString looked = reading::traced({reading::kTimeMachine});
    EXPECT_TRUE(takeTrace().endsWith(looked + kAction + kApplied +
                                     prompted(u"tmutil disable || true"_s, kRevertPrompt) + looked + kStaysOff +
                                     readBack({u"Time Machine"_s})));
    EXPECT_TRUE(reinstate().succeeded);
    EXPECT_TRUE(takeTrace().endsWith(prompted(u"tmutil disable || true"_s, kNeutral) + looked + kStaysOff +
                                     readBack({u"Time Machine"_s})));
    EXPECT_FALSE(defaults.boolean(kQuorvaneSwitchedBackupsOff)) << "the user had switched them off";
    setAutomaticBackups(true);
    scripts.carryOut = {}; // the line of the batch drops it when `tmutil` refuses
    EXPECT_EQ(revert(), (RestoreOutcome{false, RestoreSource::Snapshot, {u"Time Machine"_s}}));
    EXPECT_FALSE(takeTrace().contains(u"stays off"_s));
}

TEST_F(RestoreFlow, leavesTimeMachineAloneWhereItMayNotBeReadAndSaysSo) {
    makeBackupsUnreadable();
    SystemSnapshot snapshot = usersOwn();
    snapshot.pmsetSms = u"1"_s;
    snapshot.timeMachineEnabled = true;
    save(snapshot);
    EXPECT_TRUE(revert().succeeded);
    const QString asked = reading::traced({reading::kBackupDestination});
    const QString mayNotBeRead = u"  [INFO] Time Machine may not be read.\n"_s;
    EXPECT_TRUE(takeTrace().endsWith(
        asked + mayNotBeRead +
        u"  [INFO] Allow Quorvane to read it in System Settings › Privacy & Security › Full Disk Access.\n"_s +
        kAction + kApplied + prompted(u"pmset -a sms 1"_s, kRevertPrompt) + readBack({u"Motion Sensor"_s})));
    files.removeAsRoot(kSnapshotFile);
    EXPECT_TRUE(revert().succeeded);
    const QString undone = takeTrace();
    EXPECT_TRUE(undone.contains(asked + mayNotBeRead + u"  [ACTION] Requesting Admin rights to restore"_s));
    EXPECT_FALSE(undone.contains(u"tmutil enable"_s));
}

TEST_F(RestoreFlow, leavesTimeMachineAloneWithoutAWordWhereItIsNotSetUp) {
    files.removeAsRoot(kTimeMachineSettings);
    setBackupDestination(false);
    EXPECT_TRUE(revert().succeeded);
    const QString undone = takeTrace();
    EXPECT_TRUE(undone.endsWith(
        prompted(u"pmset -a standby 1 disksleep 10 sleep 1 ; mdutil -a -i on || true ; pmset -a sms 1"_s,
                 kRevertPrompt) +
        readBack({u"Spotlight"_s, u"USB Power"_s, u"Motion Sensor"_s})));
    EXPECT_FALSE(undone.contains(u"may not be read"_s));
}

TEST_F(RestoreFlow, saysNothingOfTimeMachineWhereThePromptIsCancelled) {
    SystemSnapshot snapshot = usersOwn();
    snapshot.timeMachineEnabled = false;
    save(snapshot);
    scripts.failNext(u"User canceled."_s);
    EXPECT_FALSE(revert().succeeded);
    scripts.failNext(u"User canceled."_s);
    EXPECT_FALSE(reinstate().succeeded);
    EXPECT_FALSE(takeTrace().contains(u"stays off"_s));
}

// ---- The whole system

TEST_F(RestoreFlow, reinstatesTheWholeSystemUnderOnePrompt) {
    SystemSnapshot snapshot = usersOwn();
    snapshot.label = u"Tour"_s;
    snapshot.pmsetSms = u"1"_s;
    snapshot.loginItems = QList<LoginItemSnapshot>{{u"Live"_s, u"/Applications/Live.app"_s, false},
                                                   {u"Mail"_s, u"/Applications/Mail.app"_s, false},
                                                   {u"Dropbox"_s, u"/Applications/Dropbox.app"_s, true}};
    snapshot.networkServicesEnabled =
        QMap<QString, bool>{{u"Wi-Fi"_s, true}, {u"Ethernet"_s, false}, {u"Bob's iPhone"_s, true}};
    save(snapshot);
    answerServices({u"Wi-Fi"_s, u"*Ethernet"_s, u"Bob's iPhone"_s});
    login = {{u"Mail"_s, u"/Applications/Mail.app"_s, false}, {u"New"_s, u"/Applications/New.app"_s, false}};
    const QString backup = u"/Users/alex/.quorvane_backup/UserHome_Library_LaunchAgents/com.example.plist"_s;
    files.addFile(backup, "plist");
    files.addFolders(u"/Users/alex/Library/LaunchAgents"_s);
    EXPECT_EQ(reinstate(), (RestoreOutcome{true, RestoreSource::Snapshot}));
    EXPECT_EQ(
        takeTrace(),
        u"\nReinstating from saved system snapshot (Tour)...\n"_s + kRestoreSteps + kAction + kApplied +
            u"$> osascript: list\n"
            "$> osascript: add /Applications/Live.app hidden:false; "
            "add /Applications/Dropbox.app hidden:true\n"
            "  [RESTORED] 2 login item(s) from snapshot.\n"
            "$> /usr/sbin/networksetup -listallnetworkservices\n"
            "$ /bin/launchctl load /Users/alex/Library/LaunchAgents/com.example.plist\n"
            "  [REVERTED] Restored 1 LaunchAgents/Daemons.\n"_s +
            prompted(u"pmset -a sms 1 ; networksetup -setnetworkserviceenabled 'Bob'\\''s iPhone' on || true ; "
                     "networksetup -setnetworkserviceenabled 'Ethernet' off || true ; "
                     "networksetup -setnetworkserviceenabled 'Wi-Fi' on || true"_s,
                     kReinstatePrompt) +
            u"$> /usr/sbin/networksetup -listallnetworkservices\n"
            "$> /usr/sbin/networksetup -getnetworkserviceenabled Wi-Fi\n"
            "$> /usr/sbin/networksetup -getnetworkserviceenabled Ethernet\n"
            "$> /usr/sbin/networksetup -getnetworkserviceenabled \"Bob's iPhone\"\n"
            "  [RESTORED] Network services from snapshot.\n"
            "$> osascript: list\n"_s +
            readBack({u"Motion Sensor"_s},
                     {u"login item Live"_s, u"login item Mail"_s, u"login item Dropbox"_s, u"network service Wi-Fi"_s,
                      u"network service Ethernet"_s, u"network service Bob's iPhone"_s},
                     u"$> osascript: list\n"_s));
    EXPECT_FALSE(files.exists(backup));
    EXPECT_EQ(login.size(), 4); // what has come since stays
    EXPECT_TRUE(login.last().hidden);
}

TEST_F(RestoreFlow, reinstatesRootsOwnCopiesBeforeEverythingElseOfTheLine) {
    SystemSnapshot snapshot = usersOwn();
    snapshot.pmsetSms = u"1"_s;
    snapshot.networkServicesEnabled = QMap<QString, bool>{{u"Wi-Fi"_s, true}};
    save(snapshot);
    answerServices({u"Wi-Fi"_s});
    const QString folder = u"/Library/Application Support/Quorvane/LaunchItems/_Library_LaunchDaemons"_s;
    files.addFile(folder + u"/com.vpn.plist"_s, "vpn");
    for (QString path = folder + u"/com.vpn.plist"_s; path != u"/Library"_s; path = path.left(path.lastIndexOf(u'/'))) {
        files.setOwner(path, 0);
        files.makeUnwritable(path);
    }
    propertyLists.lists.insert(folder + u"/com.vpn.plist"_s, {{u"Label"_s, u"com.vpn"_s}});
    EXPECT_TRUE(reinstate().succeeded);
    const KeptLaunchPlist kept{u"com.vpn.plist"_s, launchFolders(u"/Users/alex"_s).at(2), u"com.vpn"_s};
    EXPECT_EQ(takeTrace(),
              u"\nReinstating from saved system snapshot...\n"
              "  [ACTION] Queued restore for system launch item: com.vpn.plist\n"_s +
                  kRestoreSteps + kAction + kApplied + u"$> /usr/sbin/networksetup -listallnetworkservices\n"_s +
                  prompted(reinstateLaunchPlistCommand(kept, 501) +
                               u" ; pmset -a sms 1 ; networksetup -setnetworkserviceenabled 'Wi-Fi' on || "
                               "true"_s,
                           kReinstatePrompt) +
                  u"  [INFO] Not restored: com.vpn.plist\n"
                  "$> /usr/sbin/networksetup -listallnetworkservices\n"
                  "$> /usr/sbin/networksetup -getnetworkserviceenabled Wi-Fi\n"
                  "  [RESTORED] Network services from snapshot.\n"_s + // root's line is only written down here
                  readBack({u"Motion Sensor"_s}, {u"network service Wi-Fi"_s}));
}

TEST_F(RestoreFlow, aProgramThatQuitsEndsItsWayBackAsAFailedOne) {
    SystemSnapshot snapshot = usersOwn();
    snapshot.pmsetSms = u"1"_s;
    save(snapshot);
    commands.shutDown();
    cloud.shutDown();
    clock.shutDown();
    scripts.failNext(u"The program is quitting."_s);
    EXPECT_FALSE(reinstate().succeeded);
    EXPECT_EQ(system.adminBatchDepth(), 0);
    EXPECT_EQ(SnapshotManager(files, machine).load(), snapshot);
}

TEST_F(RestoreFlow, leavesLoginItemsAndNetworkAloneWhereTheSnapshotKnowsNothingOfThem) {
    save(usersOwn());
    EXPECT_EQ(reinstate(), (RestoreOutcome{true, RestoreSource::Snapshot}));
    EXPECT_EQ(takeTrace(), u"\nReinstating from saved system snapshot...\n"_s + kRestoreSteps + kApplied + readBack());
}

TEST_F(RestoreFlow, leavesTheNetworkAloneWhereTheSnapshotFoundNoService) {
    SystemSnapshot snapshot = usersOwn();
    snapshot.networkServicesEnabled = QMap<QString, bool>();
    snapshot.loginItems = QList<LoginItemSnapshot>();
    save(snapshot);
    EXPECT_TRUE(reinstate().succeeded);
    EXPECT_EQ(takeTrace(), u"\nReinstating from saved system snapshot...\n"_s + kRestoreSteps + kApplied +
                               u"$> osascript: list\n"_s + readBack({}, {}, u"$> osascript: list\n"_s));
}

TEST_F(RestoreFlow, readsTheLoginItemsAfreshBeforeItRestoresThem) {
    SystemSnapshot snapshot = usersOwn();
    snapshot.loginItems = QList<LoginItemSnapshot>{{u"Live"_s, u"/Applications/Live.app"_s, false}};
    save(snapshot);
    login = {{u"Live"_s, u"/Applications/Live.app"_s, false}};
    QCoro::waitFor(system.rawLoginItems());
    login.clear(); // the user removed it since
    EXPECT_TRUE(reinstate().succeeded);
    EXPECT_EQ(login.size(), 1);
}

TEST_F(RestoreFlow, saysWhichLoginItemsCouldNotBeAdded) {
    SystemSnapshot snapshot = usersOwn();
    snapshot.loginItems = QList<LoginItemSnapshot>{{u"Live"_s, u"/Applications/Live.app"_s, false}};
    save(snapshot);
    deniesSystemEvents = true;
    EXPECT_EQ(reinstate(), (RestoreOutcome{false, RestoreSource::Snapshot, {u"login items"_s}}));
    EXPECT_TRUE(logs(u"  [MISSING] login items — could not be read"_s));
    EXPECT_TRUE(system.logMessages().contains(u"  [ERROR] Failed to add login item: Live"_s));
    EXPECT_FALSE(system.logMessages().join(u'\n').contains(u"login item(s) from snapshot"_s));
}

TEST_F(RestoreFlow, addsNoLoginItemWhoseFileWasNotKnown) {
    SystemSnapshot snapshot = usersOwn();
    snapshot.loginItems = QList<LoginItemSnapshot>{{u"Uninstalled"_s, u"missing value"_s, false},
                                                   {u"Intro "_s, u" loud"_s, false},
                                                   {u"Live"_s, u"/Applications/Live.app"_s, false}};
    save(snapshot);
    EXPECT_TRUE(reinstate().succeeded);
    EXPECT_EQ(login, (QList<LoginItem>{{u"Live"_s, u"/Applications/Live.app"_s, false}}));
    EXPECT_TRUE(system.logMessages().contains(
        u"  [INFO] Login item can't be added again, its file isn't known: Uninstalled"_s));
    EXPECT_TRUE(system.logMessages().contains(u"  [RESTORED] 1 login item(s) from snapshot."_s));
}

TEST_F(RestoreFlow, reinstatesStandardDefaultsAloneWhereNothingWasCaptured) {
    login = {{u"Mail"_s, u"/Applications/Mail.app"_s, false}};
    EXPECT_EQ(reinstate(), (RestoreOutcome{true, RestoreSource::StandardDefaults}));
    const QString log = takeTrace();
    EXPECT_TRUE(log.startsWith(u"  [INFO] No system snapshot found — using standard restore.\n"
                               "\nUndoing Audio Performance tweaks (no snapshot — using standard defaults)...\n"_s));
    EXPECT_TRUE(
        log.endsWith(prompted(kUndoLine, u"Quorvane needs your administrator password to restore system defaults."_s) +
                     readBackOfStandard()));
    EXPECT_FALSE(log.contains(u"osascript"_s));
    EXPECT_FALSE(log.contains(u"networksetup"_s));
}

TEST_F(RestoreFlow, whatLaunchdWasToldIsLiftedAlsoWhereNothingWasCaptured) {
    const QString record = u"/Users/alex/.quorvane/launchd-overrides.json"_s;
    files.addFile(record, R"([{"label": "com.chat", "domain": "user"}, {"label": "com.vpn", "domain": "system"}])");
    EXPECT_TRUE(reinstate().succeeded);
    const QString log = takeTrace();
    EXPECT_TRUE(log.startsWith(u"  [INFO] No system snapshot found — using standard restore.\n"
                               "$ /bin/launchctl enable gui/501/com.chat\n"_s));
    EXPECT_TRUE(log.endsWith(prompted(u"/bin/launchctl enable system/com.vpn || true ; "_s + kUndoLine,
                                      u"Quorvane needs your administrator password to restore system defaults."_s) +
                             u"? launchd\n"
                             "  [RESTORED] 2 background item(s) allowed to start again.\n"_s +
                             readBackOfStandard()));
    EXPECT_FALSE(files.exists(record));
}

TEST_F(RestoreFlow, keepsWhatItWroteAsTheUserWhenReinstatingIsCancelled) {
    save(withServices({{u"Wi-Fi"_s, true}}));
    answerServices({u"*Wi-Fi"_s});
    scripts.failNext(u"User canceled."_s);
    EXPECT_EQ(reinstate(), (RestoreOutcome{false, RestoreSource::Snapshot}));
    EXPECT_EQ(takeTrace(),
              u"\nReinstating from saved system snapshot...\n"_s + kRestoreSteps + kApplied +
                  u"$> /usr/sbin/networksetup -listallnetworkservices\n"_s +
                  prompted(u"networksetup -setnetworkserviceenabled 'Wi-Fi' on || true"_s, kReinstatePrompt) +
                  kCancelled + readBack());
}

// ---- Reading back

TEST_F(RestoreFlow, namesWhatSomebodyHasChangedWhileThePromptStoodOpen) {
    SystemSnapshot snapshot = usersOwn();
    snapshot.pmsetSms = u"1"_s;
    snapshot.spotlightIndexingEnabled = true;
    save(snapshot);
    scripts.carryOut = [this](const QString&) {
        commands.respond = [respond = commands.respond](const QStringList& arguments) {
            const bool isAppNap = commandLine(arguments) == reading::kAppNap;
            return isAppNap ? std::optional(ScriptedCommandLauncher::succeeded("1\n")) : respond(arguments);
        };
        commands.print(reading::kPower, "AC Power:\n sms 0\n");
        commands.print(reading::kSpotlight, reading::indexing("Indexing disabled. "));
    };
    EXPECT_EQ(revert(),
              (RestoreOutcome{false, RestoreSource::Snapshot, {u"App Nap"_s, u"Spotlight"_s, u"Motion Sensor"_s}}));
    EXPECT_TRUE(logs(u"  [MISSING] App Nap — NSAppSleepDisabled is 1, was not set"_s));
    EXPECT_TRUE(logs(u"  [MISSING] Spotlight — not as it was"_s));
    EXPECT_TRUE(logs(u"  [MISSING] Motion Sensor — sms is 0, was 1"_s));
    EXPECT_TRUE(logs(u"  [OK] Siri"_s));
    EXPECT_EQ(trace.count(u"$> "_s + reading::kSpotlight), 1 + 6) << "before, and until it would have been right";
}

TEST_F(RestoreFlow, waitsForSpotlightsAnswerThatLagsBehind) {
    SystemSnapshot snapshot = usersOwn();
    snapshot.spotlightIndexingEnabled = true;
    save(snapshot);
    commands.print(reading::kSpotlight, reading::indexing("Indexing disabled. "));
    int looks = 0;
    commands.respond = [&looks, respond = commands.respond](const QStringList& arguments) {
        const bool isOn = commandLine(arguments) == reading::kSpotlight && ++looks > 3;
        return isOn ? std::optional(ScriptedCommandLauncher::succeeded(reading::indexing("Indexing enabled. ")))
                    : respond(arguments);
    };
    EXPECT_TRUE(revert().succeeded);
    EXPECT_EQ(looks, 4);
    EXPECT_TRUE(logs(u"  [OK] Spotlight"_s));
}

TEST_F(RestoreFlow, comparesTheTypesOfWhatItHasWritten) {
    SystemSnapshot snapshot = usersOwn();
    snapshot.typedPreferences = TypedValues{
        {u"com.apple.systemsound com.apple.sound.uiaudio.enabled"_s, *TypedValue::ofXml(u"<string>7</string>"_s)}};
    save(snapshot);
    const QString exported = u"/usr/bin/defaults export com.apple.systemsound -"_s;
    const auto exportedAs = [](const QByteArray& value) {
        return "<plist><dict><key>com.apple.sound.uiaudio.enabled</key>" + value + "</dict></plist>";
    };
    commands.print(exported, exportedAs("<string>7</string>"));
    EXPECT_TRUE(revert().succeeded);
    const QString log = takeTrace();
    EXPECT_TRUE(
        log.contains(u"$ /usr/bin/defaults write com.apple.systemsound com.apple.sound.uiaudio.enabled -string 7\n"_s));
    EXPECT_TRUE(log.endsWith(readBack()));
    commands.print(exported, exportedAs("<integer>7</integer>"));
    EXPECT_EQ(revert().missing, QStringList(u"UI Sounds"_s));
    EXPECT_TRUE(logs(u"  [MISSING] UI Sounds — com.apple.sound.uiaudio.enabled is 7 (whole number), was 7 (text)"_s));
}

TEST_F(RestoreFlow, saysWhichVolumeIsNotThereNow) {
    SystemSnapshot snapshot = usersOwn();
    snapshot.spotlightByVolume = QMap<QString, QString>{{u"/"_s, u"on"_s}, {u"/Volumes/Samples"_s, u"off"_s}};
    save(snapshot);
    EXPECT_TRUE(revert().succeeded);
    EXPECT_TRUE(logs(u"  [INFO] Not restored: Spotlight on /Volumes/Samples"_s));
    EXPECT_TRUE(logs(u"  [OK] Spotlight"_s));
}

TEST_F(RestoreFlow, namesAnOverrideAndALaunchItemThatStayed) {
    save(usersOwn());
    files.addFile(u"/Users/alex/.quorvane/launchd-overrides.json"_s, R"([{"label": "com.chat", "domain": "user"}])");
    files.addFile(u"/Users/alex/.quorvane/launch-items-put-aside.json"_s, R"(["/Library/LaunchAgents/com.vpn.plist"])");
    files.addFile(u"/Users/alex/.quorvane_backup/_Library_LaunchAgents/com.vpn.plist"_s, "vpn");
    commands.launchd.overrides[u"gui/501/com.chat"_s] = true;
    commands.launchd.stubborn.insert(u"gui/501/com.chat"_s);
    EXPECT_EQ(reinstate().missing, (QStringList{u"com.chat"_s, u"launch item com.vpn.plist"_s}));
}

// ---- Automatic backups of which nobody knows how they were

TEST_F(RestoreFlow, switchesBackupsOnAgainThatTheProgramHasSwitchedOff) {
    save(usersOwn());
    defaults.setBoolean(kQuorvaneSwitchedBackupsOff, true);
    EXPECT_TRUE(revert().succeeded);
    EXPECT_TRUE(takeTrace().contains(prompted(u"tmutil enable || true"_s, kRevertPrompt)));
    EXPECT_FALSE(defaults.boolean(kQuorvaneSwitchedBackupsOff));
    setAutomaticBackups(false); // the user's
    EXPECT_TRUE(revert().succeeded);
    EXPECT_FALSE(takeTrace().contains(u"tmutil"_s));
}

TEST_F(RestoreFlow, triesThatAlsoWhereTheBackupsMayNotBeReadAndClaimsNothing) {
    makeBackupsUnreadable();
    scripts.carryOut = {};
    save(usersOwn());
    defaults.setBoolean(kQuorvaneSwitchedBackupsOff, true);
    EXPECT_EQ(revert(), (RestoreOutcome{false, RestoreSource::Snapshot, {u"Time Machine"_s}}));
    EXPECT_TRUE(takeTrace().contains(prompted(u"tmutil enable || true"_s, kRevertPrompt)));
    EXPECT_TRUE(logs(u"  [MISSING] Time Machine — could not be read"_s));
    EXPECT_TRUE(defaults.boolean(kQuorvaneSwitchedBackupsOff)) << "nobody has seen them on";
    SystemSnapshot usersOff = usersOwn();
    usersOff.timeMachineEnabled = false;
    save(usersOff);
    EXPECT_TRUE(revert().succeeded);
    EXPECT_FALSE(takeTrace().contains(u"tmutil enable"_s));
}

// ---- Network services

TEST_F(RestoreFlow, aServiceThatIsGoneIsNamedAndFailsNothing) {
    save(withServices({{u"Dock LAN"_s, true}, {u"Old VPN"_s, false}, {u"Wi-Fi"_s, true}}));
    answerServices({u"Wi-Fi"_s, u"New LAN"_s});
    EXPECT_EQ(reinstate(), (RestoreOutcome{true, RestoreSource::Snapshot}));
    EXPECT_EQ(takeTrace(),
              u"\nReinstating from saved system snapshot...\n"_s + kRestoreSteps + kApplied +
                  u"$> /usr/sbin/networksetup -listallnetworkservices\n"
                  "  [INFO] Not restored: network service Dock LAN\n"
                  "  [INFO] Not restored: network service Old VPN\n"_s +
                  prompted(u"networksetup -setnetworkserviceenabled 'Wi-Fi' on || true"_s, kReinstatePrompt) +
                  u"$> /usr/sbin/networksetup -listallnetworkservices\n"
                  "$> /usr/sbin/networksetup -getnetworkserviceenabled Wi-Fi\n"
                  "$> /usr/sbin/networksetup -getnetworkserviceenabled \"New LAN\"\n"
                  "  [RESTORED] Network services from snapshot.\n"_s +
                  readBack({}, {u"network service Wi-Fi"_s}));
}

TEST_F(RestoreFlow, whereAllServicesAreGoneNothingIsAskedOrClaimed) {
    save(withServices({{u"Dock LAN"_s, true}}));
    answerServices({u"Wi-Fi"_s});
    EXPECT_TRUE(reinstate().succeeded);
    EXPECT_EQ(takeTrace(), u"\nReinstating from saved system snapshot...\n"_s + kRestoreSteps + kApplied +
                               u"$> /usr/sbin/networksetup -listallnetworkservices\n"
                               "  [INFO] Not restored: network service Dock LAN\n"_s +
                               readBack());
}

TEST_F(RestoreFlow, aServiceThatGoesWhileThePromptStandsOpenIsNamedAndFailsNothing) {
    save(withServices({{u"Dock LAN"_s, true}, {u"Wi-Fi"_s, true}}));
    answerServices({u"*Dock LAN"_s, u"*Wi-Fi"_s});
    scripts.carryOut = [this](const QString&) { answerServices({u"Wi-Fi"_s}); };
    EXPECT_TRUE(reinstate().succeeded);
    EXPECT_EQ(system.logMessages().mid(system.logMessages().indexOf(kServicesBack), 2),
              (QStringList{kServicesBack, u"  [INFO] Not restored: network service Dock LAN"_s}));
    EXPECT_EQ(system.logMessages().last(), u"  [OK] network service Wi-Fi"_s);
}

TEST_F(RestoreFlow, aServiceThatDoesNotSwitchFailsTheWayBackWhereverItStandsInTheLine) {
    for (const QString& unswitched : {u"Ethernet"_s, u"LAN"_s, u"Wi-Fi"_s}) {
        SCOPED_TRACE(unswitched.toStdString());
        save(withServices({{u"Ethernet"_s, true}, {u"LAN"_s, true}, {u"Wi-Fi"_s, true}}));
        answerServices({u"*Ethernet"_s, u"*LAN"_s, u"*Wi-Fi"_s});
        scripts.carryOut = [&](const QString&) {
            QStringList now{u"Ethernet"_s, u"LAN"_s, u"Wi-Fi"_s};
            now.replaceInStrings(QRegularExpression(u"^"_s + unswitched), u"*"_s + unswitched);
            answerServices(now);
        };
        EXPECT_EQ(reinstate(), (RestoreOutcome{false, RestoreSource::Snapshot, {u"network service "_s + unswitched}}));
        EXPECT_EQ(system.logMessages().mid(system.logMessages().lastIndexOf(kServicesBack), 2),
                  (QStringList{kServicesBack, u"  [INFO] Not restored: network service "_s + unswitched}));
        EXPECT_TRUE(logs(u"  [MISSING] network service %1 — it is off, was on"_s.arg(unswitched)));
    }
}

TEST_F(RestoreFlow, servicesThatCannotBeListedAreNotRestoredAndFailTheWayBack) {
    save(withServices({{u"Wi-Fi"_s, true}}));
    commands.fail(kListServices, 14);
    EXPECT_EQ(reinstate(), (RestoreOutcome{false, RestoreSource::Snapshot, {u"network services"_s}}));
    EXPECT_TRUE(logs(u"  [MISSING] network services — could not be read"_s));
    EXPECT_TRUE(logs(u"  [INFO] Not restored: network service Wi-Fi"_s));
    EXPECT_FALSE(logs(kServicesBack));
}

TEST_F(RestoreFlow, servicesThatCannotBeReadAfterwardsAreNotClaimed) {
    save(withServices({{u"Wi-Fi"_s, true}}));
    answerServices({u"*Wi-Fi"_s});
    scripts.carryOut = [this](const QString&) { commands.fail(kListServices, 14); };
    EXPECT_EQ(reinstate(), (RestoreOutcome{false, RestoreSource::Snapshot, {u"network services"_s}}));
    EXPECT_TRUE(logs(u"  [MISSING] network services — could not be read"_s));
    EXPECT_TRUE(logs(u"  [INFO] Not restored: network service Wi-Fi"_s));
    EXPECT_FALSE(logs(kServicesBack));
}

TEST_F(RestoreFlow, forgetsWhatItKnewOfStartupAfterReinstating) {
    save(usersOwn());
    login = {{u"Mail"_s, u"/Applications/Mail.app"_s, false}};
    QCoro::waitFor(system.discoverStartupItems(SystemManager::StartupRefresh::UseCache));
    reinstate();
    trace.clear();
    QCoro::waitFor(system.discoverStartupItems(SystemManager::StartupRefresh::UseCache));
    EXPECT_EQ(takeTrace(), u"$> osascript: list\n"_s + kLookAtLaunchd);
}

} // namespace quorvane
