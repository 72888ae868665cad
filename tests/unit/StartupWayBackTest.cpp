// The way back of what runs at login: as it was, and nothing that its user had off.

#include "fakes/RestoreSystem.h"
#include "network/NetworkOperations.h"
#include "network/SwitchedOffServices.h"
#include "profiles/UnifiedProfile.h"
#include "startup/apply/StartupVerification.h"
#include "startup/background/BackgroundRecord.h"
#include "startup/launchd/KeptOff.h"

namespace quorvane {

namespace {

const QString kWayBackOverrides = u"/Users/alex/.quorvane/launchd-overrides.json"_s;
const QString kWayBackItems = u"/Users/alex/.quorvane/background-items.json"_s;
const QString kWayBackNetwork = u"/Users/alex/.quorvane/network-services-switched-off.json"_s;
const QString kSyncPlist = u"/Library/LaunchAgents/com.sync.plist"_s;
const QString kRootsPlist = u"/Library/LaunchDaemons/com.vpn.plist"_s;
const QString kSyncBootstrap = u"$ /bin/launchctl bootstrap gui/501 /Library/LaunchAgents/com.sync.plist"_s;
const QString kRootsBootstrap = u"/bin/launchctl bootstrap system '/Library/LaunchDaemons/com.vpn.plist' || true"_s;
const QString kEntryPoint = u"SMLoginItemSetUserAllowed_4BTM"_s;
const QString kStandardPrompt = u"Quorvane needs your administrator password to restore system defaults."_s;

class StartupWayBack : public RestoreSystem {
protected:
    /// A plist that only root can change, in folders of which the same holds.
    void addRootsPlist(const QString& path, const QString& label) {
        files.addFile(path, label.toUtf8());
        propertyLists.lists.insert(path, {{u"Label"_s, label}, {u"RunAtLoad"_s, true}});
        for (QString each = path; !each.isEmpty(); each = each.left(each.lastIndexOf(u'/'))) {
            files.setOwner(each, 0);
            files.makeUnwritable(each);
        }
    }
    void recordStopped(const QString& label, const QString& plist, const QByteArray& domain = "user",
                       const QByteArray& wasLoaded = "true") {
        files.addFile(kWayBackOverrides, R"([{"label": ")" + label.toUtf8() + R"(", "domain": ")" + domain +
                                             R"(", "override": "notListed", "wasLoaded": )" + wasLoaded +
                                             R"(, "name": "Sync", "plist": ")" + plist.toUtf8() + R"("}])");
        commands.launchd.overrides.insert((domain == "user" ? u"gui/501/"_s : u"system/"_s) + label, true);
    }
    QStringList reinstated() {
        EXPECT_TRUE(QCoro::waitFor(system.reinstateSystem()).succeeded);
        return std::exchange(trace, {});
    }
    static QStringList bootstraps(const QStringList& lines) { return lines.filter(u"bootstrap"_s); }
};

} // namespace

// ---- What was stopped

TEST_F(StartupWayBack, anAgentThatWasLoadedIsLoadedAgainOnceItIsAllowedTo) {
    addRootsPlist(kSyncPlist, u"com.sync"_s);
    recordStopped(u"com.sync"_s, kSyncPlist);
    commands.launchd.sessionJobs = {u"com.sync"_s};
    const QStringList lines = reinstated();
    EXPECT_LT(lines.indexOf(u"$ /bin/launchctl enable gui/501/com.sync"_s), lines.indexOf(kSyncBootstrap));
    EXPECT_EQ(bootstraps(lines), QStringList(kSyncBootstrap));
    EXPECT_EQ(lines.filter(u"Starts at"_s), QStringList());
    EXPECT_TRUE(lines.contains(u"$> /bin/launchctl list"_s));
    EXPECT_FALSE(files.exists(kWayBackOverrides));
}

TEST_F(StartupWayBack, oneThatItsUserHadStoppedIsNot) {
    addRootsPlist(kSyncPlist, u"com.sync"_s);
    recordStopped(u"com.sync"_s, kSyncPlist, "user", "false");
    const QStringList lines = reinstated();
    EXPECT_EQ(bootstraps(lines), QStringList());
    EXPECT_TRUE(lines.contains(u"$ /bin/launchctl enable gui/501/com.sync"_s));
    EXPECT_EQ(lines.filter(u"Starts at"_s), QStringList());
}

TEST_F(StartupWayBack, oneOfWhichNobodyKnewWhetherItWasDisabledStaysOffAndIsNamed) {
    addRootsPlist(kSyncPlist, u"com.sync"_s);
    files.addFile(kWayBackOverrides, R"([{"label": "com.sync", "domain": "user", "override": "unknown"}])");
    commands.launchd.overrides.insert(u"gui/501/com.sync"_s, true);
    EXPECT_EQ(QCoro::waitFor(system.reinstateSystem()).missing, QStringList(u"com.sync"_s));
    const QStringList lines = std::exchange(trace, {});
    EXPECT_EQ(lines.filter(u"launchctl enable"_s), QStringList());
    EXPECT_EQ(bootstraps(lines), QStringList());
    EXPECT_TRUE(lines.contains(u"  [INFO] Not restored: com.sync"_s));
    EXPECT_TRUE(files.exists(kWayBackOverrides));
}

TEST_F(StartupWayBack, oneOfAnApplicationIsLoadedFromThere) {
    const QString plist = u"/Applications/Chat.app/Contents/Library/LaunchAgents/com.sync.plist"_s;
    files.addFile(plist, "plist");
    propertyLists.lists.insert(plist, {{u"Label"_s, u"com.sync"_s}});
    recordStopped(u"com.sync"_s, plist);
    EXPECT_EQ(bootstraps(reinstated()), QStringList(u"$ /bin/launchctl bootstrap gui/501 "_s + plist));
}

TEST_F(StartupWayBack, whatNobodyCanLoadIsToldOfOnce) {
    const QString helper = u"/Applications/Chat.app/Contents/Library/LoginItems/Sync.app"_s;
    files.addFolders(helper);
    recordStopped(u"com.sync"_s, helper);
    const QStringList lines = reinstated();
    EXPECT_EQ(bootstraps(lines), QStringList());
    EXPECT_EQ(lines.filter(u"Starts at"_s), QStringList(u"  [INFO] Starts at the next login: Sync"_s));
}

TEST_F(StartupWayBack, whatLaunchdDidNotLoadAllTheSameIsToldOf) {
    addRootsPlist(kSyncPlist, u"com.sync"_s);
    recordStopped(u"com.sync"_s, kSyncPlist); // and isn't among the jobs that launchd lists afterwards
    const QStringList lines = reinstated();
    EXPECT_TRUE(lines.contains(u"  [INFO] Starts at the next login: Sync"_s));
    commands.launchd.isMuteOfJobs = true;
    recordStopped(u"com.sync"_s, kSyncPlist);
    EXPECT_TRUE(reinstated().contains(u"  [INFO] Starts at the next login: Sync"_s))
        << "nothing is claimed that isn't read";
}

TEST_F(StartupWayBack, ofAnApplicationThatIsGoneNothingIsSaid) {
    recordStopped(u"com.sync"_s, u"/Applications/Gone.app/Contents/Library/LaunchAgents/com.sync.plist"_s);
    const QStringList lines = reinstated();
    EXPECT_EQ(bootstraps(lines), QStringList());
    EXPECT_EQ(lines.filter(u"Starts at"_s), QStringList());
}

TEST_F(StartupWayBack, noPlistIsLoadedThatTheRecordMayNotName) {
    const QString link = u"/Users/alex/Library/LaunchAgents/com.sync.plist"_s;
    files.addFile(u"/Users/alex/Downloads/com.sync.plist"_s, "plist");
    files.addFolders(u"/Users/alex/Library/LaunchAgents"_s);
    files.addLink(link, u"/Users/alex/Downloads/com.sync.plist"_s);
    files.addFile(u"/System/Library/LaunchAgents/com.sync.plist"_s, "plist");
    files.addFile(u"/Applications/Chat.app/Contents/Library/LaunchAgents/com.other.plist"_s, "plist");
    files.addFile(u"/Applications/Chat.app/Contents/Resources/com.sync.plist"_s, "plist");
    for (const QString& plist :
         {u"/Users/alex/Downloads/com.sync.plist"_s, link, u"/System/Library/LaunchAgents/com.sync.plist"_s,
          u"/Applications/Chat.app/Contents/Library/LaunchAgents/com.other.plist"_s,
          u"/Applications/Chat.app/Contents/Resources/com.sync.plist"_s,
          u"/Applications/Chat.app/Contents/Library/LaunchAgents/../../Resources/com.sync.plist"_s}) {
        const bool isOther = plist.contains(u"com.other"_s);
        propertyLists.lists.insert(plist, {{u"Label"_s, isOther ? u"com.other"_s : u"com.sync"_s}});
        recordStopped(u"com.sync"_s, plist);
        EXPECT_EQ(bootstraps(reinstated()), QStringList()) << plist.toStdString();
    }
}

TEST_F(StartupWayBack, labelsOfApplesAndOfAudioSoftwareAreNoneOfTheProgramsBusiness) {
    for (const QString& label : {u"com.apple.sync"_s, u"com.native-instruments.sync"_s, u"com.quorvane.sync"_s}) {
        addRootsPlist(kSyncPlist, label);
        recordStopped(label, kSyncPlist);
        const QStringList lines = reinstated();
        EXPECT_EQ(bootstraps(lines), QStringList()) << label.toStdString();
        EXPECT_EQ(lines.filter(u"launchctl enable"_s), QStringList()) << label.toStdString();
    }
}

TEST_F(StartupWayBack, aDaemonIsLoadedByRootInTheOneBatch) {
    addRootsPlist(kRootsPlist, u"com.vpn"_s);
    recordStopped(u"com.vpn"_s, kRootsPlist, "system");
    const QStringList lines = reinstated();
    EXPECT_EQ(lines.filter(u"& do shell script"_s),
              QStringList(prompted(u"/bin/launchctl enable system/com.vpn || true ; "_s + kUndoLine + u" ; "_s +
                                       kRootsBootstrap,
                                   kStandardPrompt)
                              .trimmed()));
    EXPECT_TRUE(lines.contains(u"$> /bin/launchctl print system/com.vpn"_s));
    commands.launchd.stoppedJobs.insert(u"com.vpn"_s);
    recordStopped(u"com.vpn"_s, kRootsPlist, "system");
    EXPECT_TRUE(reinstated().contains(u"  [INFO] Starts after the restart: Sync"_s));
}

TEST_F(StartupWayBack, rootLoadsNothingThatAnybodyElseCanHavePutThere) {
    const QString other = u"/Library/LaunchDaemons/com.other.plist"_s;
    addRootsPlist(kRootsPlist, u"com.vpn"_s);
    addRootsPlist(other, u"com.other"_s);
    recordStopped(u"com.vpn"_s, other, "system");
    EXPECT_EQ(bootstraps(reinstated()), QStringList()) << "another job's plist";
    files.setOwner(kRootsPlist, 501);
    recordStopped(u"com.vpn"_s, kRootsPlist, "system");
    EXPECT_EQ(bootstraps(reinstated()), QStringList()) << "the user's file";
    files.setOwner(kRootsPlist, 0);
    files.setOwner(u"/Library/LaunchDaemons"_s, 501);
    recordStopped(u"com.vpn"_s, kRootsPlist, "system");
    EXPECT_EQ(bootstraps(reinstated()), QStringList()) << "the user's folder";
}

TEST_F(StartupWayBack, rootFollowsNoLink) {
    const QString elsewhere = u"/Users/alex/com.vpn.plist"_s;
    files.addFile(elsewhere, "plist");
    files.addFolders(u"/Library/LaunchDaemons"_s);
    files.addLink(kRootsPlist, elsewhere);
    propertyLists.lists.insert(kRootsPlist, {{u"Label"_s, u"com.vpn"_s}});
    recordStopped(u"com.vpn"_s, kRootsPlist, "system");
    EXPECT_EQ(bootstraps(reinstated()), QStringList());
}

// ---- Permissions

TEST_F(StartupWayBack, whatWasDisallowedIsAllowedAgainByTheSameEntryPoint) {
    permissions.isLibraryThere = true;
    permissions.answers.insert(kEntryPoint, true);
    files.addFolders(u"/Applications/Chat.app"_s);
    files.addFile(kWayBackItems, R"({"disallowed": [{"application": "/Applications/Chat.app", "label": "com.sync"}]})");
    const QStringList lines = reinstated();
    EXPECT_EQ(lines.filter(u"? SM"_s),
              QStringList(u"? SMLoginItemSetUserAllowed_4BTM /Applications/Chat.app com.sync true"_s));
    EXPECT_TRUE(lines.contains(u"  [ACTION] Asked macOS to allow: com.sync"_s));
    EXPECT_FALSE(files.exists(kWayBackItems));
    EXPECT_EQ(reinstated().filter(u"? SM"_s), QStringList()) << "once";
}

TEST_F(StartupWayBack, whatCannotBeAllowedIsForTheUserToTurnOn) {
    files.addFolders(u"/Applications/Chat.app"_s);
    files.addFile(kWayBackItems, R"({"disallowed": [{"application": "/Applications/Chat.app", "label": "com.sync"}]})");
    EXPECT_TRUE(reinstated().contains(
        u"  [INFO] Turn it on in System Settings → General → Login Items, if it is off: com.sync"_s));
}

TEST_F(StartupWayBack, aPlantedPermissionIsAskedForByNobody) {
    permissions.isLibraryThere = true;
    permissions.answers.insert(kEntryPoint, true);
    files.addFolders(u"/Applications/Chat.app"_s);
    files.addFile(kWayBackItems, R"({"disallowed": [
        {"application": "/Applications/Chat.app", "label": "com.apple.sync"},
        {"application": "/Applications/Gone.app", "label": "com.sync"},
        {"application": "/Applications/Ableton Live.app", "label": "com.sync"}]})");
    EXPECT_EQ(reinstated().filter(u"? SM"_s), QStringList());
}

// ---- Helpers

TEST_F(StartupWayBack, aHelperGoesBackIntoItsApplication) {
    const QString place = u"/Applications/Chat.app/Contents/Library/LoginItems/Helper.app"_s;
    const QByteArray taken = R"({"helpers": [{"label": "com.sync", "application": "/Applications/Chat.app", "place":
        "/Applications/Chat.app/Contents/Library/LoginItems/Helper.app", "bundleIdentifier": "com.chat", "version": "10"}]})";
    files.addFile(kWayBackItems, taken);
    files.addFile(kQuarantine + u"com.sync/Helper.app/x"_s, "helper");
    files.addFolders(u"/Applications/Chat.app/Contents/Library/LoginItems"_s);
    bundles.byPath.insert(u"/Applications/Chat.app"_s,
                          {{u"CFBundleIdentifier"_s, u"com.chat"_s}, {u"CFBundleVersion"_s, u"11"_s}});
    EXPECT_TRUE(reinstated().contains(
        u"  [INFO] Its application isn't the same any more, the old helper stays aside: Helper.app"_s));
    EXPECT_FALSE(files.exists(place));

    bundles.byPath[u"/Applications/Chat.app"_s][u"CFBundleVersion"_s] = u"10"_s;
    EXPECT_TRUE(reinstated().contains(u"  [RESTORED] Put back into its application: Helper.app"_s));
    EXPECT_EQ(files.read(place + u"/x"_s), "helper");
    EXPECT_FALSE(files.exists(kWayBackItems));
    EXPECT_EQ(reinstated().filter(u"Helper.app"_s), QStringList());

    files.addFile(kWayBackItems, taken);
    files.addFile(kQuarantine + u"com.sync/Helper.app/x"_s, "older");
    EXPECT_TRUE(
        reinstated().contains(u"  [INFO] Its application is whole again, the old helper stays aside: Helper.app"_s));
    EXPECT_EQ(files.read(place + u"/x"_s), "helper");
}

TEST_F(StartupWayBack, aHelperOfAnEarlierVersionOfTheProgramStaysAsideAndIsNamed) {
    files.addFile(kQuarantine + u"com.sync/Helper.app/x"_s, "helper");
    EXPECT_TRUE(
        reinstated().contains(u"  [INFO] Stays aside, as nobody knows which version it belongs to: Helper.app"_s));
}

TEST_F(StartupWayBack, aDamagedRecordOfBackgroundItemsIsToldOf) {
    files.addFile(kWayBackItems, "no record");
    EXPECT_EQ(reinstated().filter(u"The record of background items is damaged"_s).size(), 2);
    EXPECT_TRUE(files.exists(kWayBackItems));
}

// ---- Network services that no snapshot knows

TEST_F(StartupWayBack, servicesThatTheProgramHasSwitchedOffComeOnAgainAndNoOthers) {
    SwitchedOffServices(files, machine).note({u"Dock LAN"_s, u"Gone"_s, u"Wi-Fi"_s});
    SystemSnapshot snapshot = usersOwn();
    snapshot.networkServicesEnabled = QMap<QString, bool>{{u"Wi-Fi"_s, true}};
    save(snapshot);
    commands.print(u"/usr/sbin/networksetup -listallnetworkservices"_s,
                   "An asterisk (*) denotes that a network service is disabled.\nWi-Fi\n*Dock LAN\n*Users own\n");
    commands.print(u"/usr/sbin/networksetup -getnetworkserviceenabled Wi-Fi"_s, "Enabled\n");
    scripts.carryOut = [this](const QString&) {
        commands.print(u"/usr/sbin/networksetup -listallnetworkservices"_s,
                       "An asterisk (*) denotes that a network service is disabled.\nWi-Fi\nDock LAN\n*Users own\n");
    };
    const QStringList lines = reinstated();
    EXPECT_EQ(lines.filter(u"& do shell script"_s),
              QStringList(prompted(u"networksetup -setnetworkserviceenabled 'Wi-Fi' on || true ; "
                                   "networksetup -setnetworkserviceenabled 'Dock LAN' on || true"_s,
                                   kReinstatePrompt)
                              .trimmed()));
    EXPECT_TRUE(lines.contains(u"  [RESTORED] 1 network service(s) switched on again."_s));
    EXPECT_EQ(SwitchedOffServices(files, machine).read(), QStringList(u"Gone"_s))
        << "it may be of another location, and come on again once that is chosen";
}

TEST_F(StartupWayBack, aServiceThatStaysOffIsNamedAndFailsTheWayBack) {
    SwitchedOffServices(files, machine).note({u"Dock LAN"_s});
    commands.print(u"/usr/sbin/networksetup -listallnetworkservices"_s, "*Dock LAN\n");
    EXPECT_FALSE(QCoro::waitFor(system.reinstateSystem()).succeeded);
    EXPECT_TRUE(trace.contains(u"  [INFO] Not restored: network service Dock LAN"_s));
    EXPECT_EQ(SwitchedOffServices(files, machine).read(), QStringList(u"Dock LAN"_s));
}

TEST_F(StartupWayBack, whatWasOnIsNotedBeforeTheNetworkIsSwitchedOff) {
    commands.print(u"networksetup -listallnetworkservices"_s,
                   "An asterisk (*) denotes that a network service is disabled.\nWi-Fi\n*Users own\n");
    QStringList noted;
    scripts.carryOut = [&](const QString&) { noted = SwitchedOffServices(files, machine).read(); };
    EXPECT_TRUE(QCoro::waitFor(system.disableAllNetworkConnections()));
    EXPECT_EQ(noted, QStringList(u"Wi-Fi"_s));
    EXPECT_EQ(trace.filter(u"listallnetworkservices"_s).size(), 1) << "no command more than before";
}

TEST_F(StartupWayBack, afterARefusedPromptNothingIsNotedThatIsStillOn) {
    commands.print(u"networksetup -listallnetworkservices"_s,
                   "An asterisk (*) denotes that a network service is disabled.\nWi-Fi\n*Dock LAN\n*Users own\n");
    commands.print(u"/usr/sbin/networksetup -listallnetworkservices"_s,
                   "An asterisk (*) denotes that a network service is disabled.\nWi-Fi\n*Dock LAN\n*Users own\n");
    StartupConfiguration startup;
    startup.disableNetworkAtStartup = true;
    UnifiedProfile profile;
    profile.name = u"Live"_s;
    profile.startup.disableNetworkAtStartup = true;
    NetworkOperations operations;
    operations.disableAll = true;
    const std::pair<const char*, std::function<bool()>> roads[] = {
        {"a profile", [&] { return QCoro::waitFor(system.applyProfile(profile)); }},
        {"what runs at login", [&] { return QCoro::waitFor(system.applyStartupChanges(startup)).applySucceeded; }},
        {"the network alone", [&] { return QCoro::waitFor(system.disableAllNetworkConnections()); }},
        {"operations", [&] { return QCoro::waitFor(system.runNetworkOperations(operations)).success; }}};
    for (const auto& [name, start] : roads) {
        SCOPED_TRACE(name);
        SwitchedOffServices(files, machine).note({u"Dock LAN"_s, u"Elsewhere"_s});
        const qsizetype before = files.changedPaths().count(kWayBackNetwork);
        scripts.answerNext({std::nullopt, u"User canceled."_s, -128});
        EXPECT_FALSE(start());
        EXPECT_EQ(files.changedPaths().count(kWayBackNetwork), before + 2) << "noted, and struck again";
        EXPECT_EQ(SwitchedOffServices(files, machine).read(), (QStringList{u"Dock LAN"_s, u"Elsewhere"_s}));
    }
}

TEST_F(StartupWayBack, whatTheUserSwitchesOffAfterAllWereSwitchedOnIsTheirs) {
    SwitchedOffServices(files, machine).note({u"Dock LAN"_s});
    commands.print(u"networksetup -listallnetworkservices"_s, "*Dock LAN\n");
    NetworkOperations operations;
    operations.enableAll = true;
    EXPECT_TRUE(QCoro::waitFor(system.runNetworkOperations(operations)).success);
    EXPECT_FALSE(files.exists(kWayBackNetwork));
}

// ---- Login items

TEST_F(StartupWayBack, loginItemsOpenHiddenOrNotAsTheyDid) {
    SystemSnapshot snapshot = usersOwn();
    snapshot.loginItems = QList<LoginItemSnapshot>{{u"Mail"_s, u"/Applications/Mail.app"_s, true},
                                                   {u"Chat"_s, u"/Applications/Chat.app"_s, false},
                                                   {u"Same"_s, u"/Applications/Same.app"_s, true}};
    save(snapshot);
    login = {{u"Mail"_s, u"/Applications/Mail.app"_s, false},
             {u"Chat"_s, u"/Applications/Chat.app/"_s, true},
             {u"Same"_s, u"/Applications/Same.app"_s, true},
             {u"New"_s, u"/Applications/New.app"_s, true}};
    EXPECT_TRUE(QCoro::waitFor(system.reinstateSystem()).succeeded);
    const QString log = takeTrace();
    EXPECT_TRUE(log.contains(u"$> osascript: set hidden:true where path is /Applications/Mail.app and name is Mail; "
                             "set hidden:false where path is /Applications/Chat.app/ and name is Chat\n"
                             "  [RESTORED] 2 login item(s) hidden or shown as before.\n"_s))
        << log.toStdString();
    EXPECT_TRUE(login.at(0).hidden);
    EXPECT_FALSE(login.at(1).hidden);
    EXPECT_TRUE(login.at(3).hidden) << "what the snapshot doesn't know stays";
}

TEST_F(StartupWayBack, applicationsThatTheProgramAddedGoAndTheUsersOwnStay) {
    SystemSnapshot snapshot = usersOwn();
    snapshot.loginItems = QList<LoginItemSnapshot>{{u"Mail"_s, u"/Applications/Mail.app"_s, false}};
    save(snapshot);
    login = {{u"Mail"_s, u"/Applications/Mail.app"_s, false},
             {u"Live"_s, u"/Applications/Live.app"_s, false},
             {u"New"_s, u"/Applications/New.app"_s, false}};
    system.recordManagedStartupAppPath(u"/Applications/Mail.app"_s);
    system.recordManagedStartupAppPath(u"/Applications/Live.app"_s);
    system.recordManagedStartupAppPath(u"/Applications/Gone.app"_s);
    ASSERT_EQ(system.managedStartupAppPaths().size(), 3);
    EXPECT_TRUE(QCoro::waitFor(system.reinstateSystem()).succeeded);
    EXPECT_TRUE(takeTrace().contains(u"  [ACTION] Removing 1 Quorvane-managed startup app(s)...\n"
                                     "$> osascript: delete where path is /Applications/Live.app\n"
                                     "$> osascript: list\n"
                                     "  [APPLIED] Removed startup app from login items: Live\n"_s));
    EXPECT_EQ(login, (QList<LoginItem>{{u"Mail"_s, u"/Applications/Mail.app"_s, false},
                                       {u"New"_s, u"/Applications/New.app"_s, false}}));
    EXPECT_EQ(system.managedStartupAppPaths(), QSet<QString>{u"/Applications/Mail.app"_s});
}

TEST_F(StartupWayBack, itemsWithABarInNameOrPathAreReadWhole) {
    login = {{u"Plain"_s, u"/Applications/Plain.app"_s, false},
             {u"A | B"_s, u"/Applications/Other.app"_s, true},
             {u"a|b"_s, u"/Applications/a|b.app"_s, false}};
    EXPECT_EQ(QCoro::waitFor(system.rawLoginItems()), login);
    EXPECT_EQ(takeTrace(), u"$> osascript: list\n$> osascript: names of 2 3\n"_s);
}

TEST_F(StartupWayBack, whereTheNamesDontFitTheListAnyMoreItIsReadAsItStands) {
    login = {{u"A | B"_s, u"/Applications/Other.app"_s, true}};
    commands.respond = [this, answers = commands.respond](const QStringList& arguments) {
        const auto answer = answers(arguments);
        login.first().name = u"Renamed"_s;
        return answer;
    };
    EXPECT_EQ(QCoro::waitFor(system.rawLoginItems()), (QList<LoginItem>{{u"A "_s, u" B"_s, false}}));
}

// ---- One apply taken back by itself

TEST_F(StartupWayBack, whatIsOffByTheProgramIsKnownFromItsRecords) {
    files.addFile(kWayBackOverrides, R"([{"label": "com.sync", "domain": "user"}])");
    files.addFile(u"/Users/alex/.quorvane/launch-items-put-aside.json"_s,
                  R"(["/Library/LaunchAgents/com.old.plist", {"path": "/Library/LaunchAgents/com.new.plist"}])");
    files.addFile(u"/Users/alex/.quorvane_backup/UserHome_Library_LaunchAgents/com.unrecorded.plist"_s, "plist");
    files.addFile(kWayBackItems, R"({"disallowed": [{"application": "/Applications/Chat.app", "label": "com.off"}],
        "helpers": [{"label": "com.sync", "application": "/Applications/Chat.app", "place":
        "/Applications/Chat.app/Contents/Library/LoginItems/Helper.app"}]})");
    SwitchedOffServices(files, machine).note({u"Dock LAN"_s});
    KeptOff kept;
    kept.overrides = {{LaunchdDomain::User, u"com.sync"_s}};
    kept.plists = {u"/Library/LaunchAgents/com.old.plist"_s, u"/Library/LaunchAgents/com.new.plist"_s,
                   u"/Users/alex/Library/LaunchAgents/com.unrecorded.plist"_s};
    kept.helpers = {kQuarantine + u"com.sync/Helper.app"_s};
    kept.permissions = {u"com.off"_s};
    kept.services = {u"Dock LAN"_s};
    EXPECT_EQ(system.keptOff(), kept);
}

} // namespace quorvane
