// The way back for launch items on a simulated Mac, through real child processes: from root's own copies, whatever became of
// the backup in the user's home, and also after runs that were killed half-way.

#include "fakes/SimulatedStartup.h"
#include "simulator/Restart.h"
#include "simulator/Updaters.h"

namespace quorvane {

namespace {

using macsim::Actor;
using Kind = macsim::Volume::Kind;

const QString kOwn = u"/Users/alex/Library/LaunchAgents/com.own.plist"_s;
const QString kAgent = u"/Library/LaunchAgents/com.agent.plist"_s;
const QString kDaemon = u"/Library/LaunchDaemons/com.daemon.plist"_s;
const QString kBackup = u"/Users/alex/.quorvane_backup"_s;
const QString kKeep = u"/Library/Application Support/Quorvane/LaunchItems"_s;
const QString kKeptAgent = kKeep + u"/_Library_LaunchAgents/com.agent.plist"_s;
const QString kKeptDaemon = kKeep + u"/_Library_LaunchDaemons/com.daemon.plist"_s;

/// A Mac with an agent of the user's, one of all users, and a daemon; each label differs from the file's name.
class KeptLaunchItemsOnSimulatedMac : public SimulatedStartup {
protected:
    KeptLaunchItemsOnSimulatedMac() {
        addLaunchItem(kOwn, u"com.own.job"_s);
        addLaunchItem(kAgent, u"com.agent.job"_s);
        addLaunchItem(kDaemon, u"com.daemon.job"_s);
        agentBefore = content(kAgent);
        daemonBefore = content(kDaemon);
    }

    bool switchSystemsOff() {
        return switchOff({launchAgentOff(u"com.agent.plist"_s), launchAgentOff(u"com.daemon.plist"_s)}).applySucceeded;
    }
    bool switchAllOff() { return switchOff({launchAgentOff(u"com.own.plist"_s)}).applySucceeded && switchSystemsOff(); }
    /// What Reinstate does about launch items.
    bool reinstate() {
        system->beginAdminBatch();
        system->queueKeptLaunchItems();
        QCoro::waitFor(system->restoreLaunchItems());
        const bool isFlushed = QCoro::waitFor(system->finishAdminBatch(u"Back, please."_s));
        QCoro::waitFor(system->settleKeptLaunchItems());
        return isFlushed;
    }
    /// The user's session as after a login: agents whose plists aren't at their place aren't loaded.
    void logOutAndIn() {
        changeState("launchd", [](macsim::Json& launchd) { launchd["jobs"]["gui/501"].erase("com.agent.job"); });
    }

    bool exists(const QString& path) const { return volume(Actor::Root).kind(path) != Kind::Missing; }
    QByteArray content(const QString& path) const { return volume(Actor::Root).read(path); }
    bool holds(const QString& path, const QByteArray& bytes) const {
        return volume(Actor::Root).kind(path) == Kind::File && content(path) == bytes;
    }
    /// Whole, at its place or in root's keeping.
    bool isSafe(const QString& place, const QString& kept, const QByteArray& bytes) const {
        return holds(place, bytes) || (!exists(place) && holds(kept, bytes));
    }
    void expectNothingLost() const {
        EXPECT_TRUE(isSafe(kAgent, kKeptAgent, agentBefore));
        EXPECT_TRUE(isSafe(kDaemon, kKeptDaemon, daemonBefore));
    }
    QStringList labelsThatStayOff() const {
        QStringList labels = disabledLabels();
        for (const auto& [label, isDisabled] : macsim::LaunchdState(host->mac()).overrides(kSystemDomain)) {
            if (isDisabled) {
                labels.append(label);
            }
        }
        return labels;
    }
    /// Gone, or launchd starts it no more.
    bool isOff(const QString& plist, const QString& label) const {
        return !exists(plist) || labelsThatStayOff().contains(label);
    }
    void expectAllBack() const {
        EXPECT_TRUE(holds(kAgent, agentBefore));
        EXPECT_TRUE(holds(kDaemon, daemonBefore));
        for (const QString& plist : {kAgent, kDaemon}) {
            EXPECT_EQ(volume(Actor::Root).owner(plist), Actor::Root);
        }
        EXPECT_TRUE(isLoaded(u"com.agent.job"_s));
        EXPECT_TRUE(isLoaded(u"com.daemon.job"_s, kSystemDomain));
        EXPECT_EQ(labelsThatStayOff(), QStringList());
        EXPECT_EQ(keptNames(), QStringList());
    }
    /// The copies that could come back another time.
    QStringList keptNames() const {
        QStringList names;
        for (const QString& keep : {u"/_Library_LaunchAgents"_s, u"/_Library_LaunchDaemons"_s}) {
            names += exists(kKeep + keep) ? volume(Actor::Root).list(kKeep + keep) : QStringList();
        }
        names.removeIf([](const QString& name) { return !name.endsWith(u".plist"_s); });
        return names;
    }
    /// As something that runs as the user does it.
    void plant(const QString& path) const {
        const macsim::Volume user = volume(Actor::User);
        if (user.kind(path) != Kind::Missing) {
            user.remove(path);
        }
        user.write(path, plistText({{u"Label"_s, u"com.evil"_s}, {u"Program"_s, u"/Users/alex/evil"_s}}));
    }

    QByteArray agentBefore;
    QByteArray daemonBefore;
};

} // namespace

TEST_F(KeptLaunchItemsOnSimulatedMac, everythingComesBackAsItWas) {
    const macsim::MacPicture before = picture();
    ASSERT_TRUE(switchAllOff());
    ASSERT_TRUE(holds(kKeptAgent, agentBefore));
    ASSERT_TRUE(holds(kKeptDaemon, daemonBefore));
    ASSERT_FALSE(isLoaded(u"com.own.job"_s) || isLoaded(u"com.daemon.job"_s, kSystemDomain));
    ASSERT_EQ(labelsThatStayOff(), QStringList({u"com.agent.job"_s, u"com.own.job"_s, u"com.daemon.job"_s}));
    start();
    EXPECT_TRUE(reinstate());
    EXPECT_EQ(log(), u"  [ACTION] Queued restore for system launch item: com.agent.plist\n"
                     "  [ACTION] Queued restore for system launch item: com.daemon.plist\n"
                     "  [REVERTED] Restored 1 LaunchAgents/Daemons.\n"
                     "  [RESTORED] 3 background item(s) allowed to start again.\n"_s);
    expectAllBack();
    EXPECT_TRUE(isLoaded(u"com.own.job"_s));
    EXPECT_EQ(picture().changesSince(before),
              u"+ /Library/Application Support/Quorvane: folder\n"
              "+ /Library/Application Support/Quorvane/LaunchItems: folder\n"
              "+ /Library/Application Support/Quorvane/LaunchItems/_Library_LaunchAgents: folder\n"
              "+ /Library/Application Support/Quorvane/LaunchItems/_Library_LaunchDaemons: folder\n"
              "+ /Users/alex/.quorvane: folder\n"
              "+ /Users/alex/.quorvane_backup: folder\n"
              "+ /Users/alex/.quorvane_backup/UserHome_Library_LaunchAgents: folder\n"
              "+ /Users/alex/.quorvane_backup/_Library_LaunchAgents: folder\n"
              "+ /Users/alex/.quorvane_backup/_Library_LaunchDaemons: folder\n"
              "- state launchd/disabled/system: null\n"
              "+ state launchd/disabled/system/com.daemon.job: false\n"
              "- state launchd/disabled/user~1501: null\n"
              "+ state launchd/disabled/user~1501/com.agent.job: false\n"
              "+ state launchd/disabled/user~1501/com.own.job: false\n"
              "+ state launchd/jobs/gui~1501/com.agent.job/lastExitStatus: null\n"
              "+ state launchd/jobs/gui~1501/com.own.job/lastExitStatus: null\n"
              "+ state launchd/jobs/system/com.daemon.job/lastExitStatus: null\n"_s);
}

TEST_F(KeptLaunchItemsOnSimulatedMac, anAgentIsLoadedIntoTheSessionThatLacksIt) {
    ASSERT_TRUE(switchAllOff());
    logOutAndIn();
    EXPECT_TRUE(reinstate());
    expectAllBack();
    EXPECT_FALSE(isLoaded(u"com.agent.job"_s, kSystemDomain));
}

TEST_F(KeptLaunchItemsOnSimulatedMac, offAndBackAgainAndAgain) {
    ASSERT_TRUE(switchAllOff());
    ASSERT_TRUE(reinstate());
    const macsim::MacPicture once = picture();
    ASSERT_TRUE(switchAllOff());
    expectNothingLost();
    ASSERT_TRUE(reinstate());
    expectAllBack();
    EXPECT_EQ(picture().changesSince(once), QString());
    const qsizetype prompts = authorization.prompts().size();
    ASSERT_TRUE(reinstate());
    EXPECT_EQ(picture().changesSince(once), QString());
    EXPECT_EQ(authorization.prompts().size(), prompts) << "nothing is left to bring back";
}

TEST_F(KeptLaunchItemsOnSimulatedMac, theNewestOfTwoSwitchedOffComesBack) {
    ASSERT_TRUE(switchAllOff());
    addLaunchItem(kDaemon, u"com.daemon.job"_s);
    addFile(kDaemon, startingPlist(u"com.daemon.job"_s, u"/usr/bin/newer"_s));
    daemonBefore = content(kDaemon);
    start();
    ASSERT_TRUE(switchAllOff());
    EXPECT_TRUE(reinstate());
    expectAllBack();
}

TEST_F(KeptLaunchItemsOnSimulatedMac, whatAnUpdaterPutsBackStaysOffAndASecondApplyAsksForNothing) {
    ASSERT_TRUE(switchAllOff());
    const QByteArray newer = startingPlist(u"com.daemon.job"_s, u"/usr/bin/newer"_s);
    macsim::updaterInstalls(host->mac(), kDaemon, newer);
    macsim::updaterInstalls(host->mac(), kAgent, agentBefore);
    macsim::updaterInstalls(host->mac(), kOwn, startingPlist(u"com.own.job"_s, u"/usr/bin/newer"_s));
    const qsizetype prompts = authorization.prompts().size();
    start();
    const QStringList labels{u"com.own.plist"_s, u"com.agent.plist"_s, u"com.daemon.plist"_s};
    EXPECT_TRUE(QCoro::waitFor(system->disableLaunchItems(labels, {})));
    EXPECT_EQ(log(), u"  [INFO] Launch item already disabled: com.own.plist\n"
                     "  [INFO] Launch item already disabled: com.agent.plist\n"
                     "  [INFO] Launch item already disabled: com.daemon.plist\n"_s);
    EXPECT_EQ(authorization.prompts().size(), prompts);
    EXPECT_TRUE(holds(kDaemon, newer));
    macsim::restart(host->mac());
    EXPECT_FALSE(isLoaded(u"com.own.job"_s) || isLoaded(u"com.agent.job"_s) ||
                 isLoaded(u"com.daemon.job"_s, kSystemDomain));
    EXPECT_TRUE(reinstate());
    EXPECT_EQ(labelsThatStayOff(), QStringList());
    EXPECT_TRUE(holds(kDaemon, newer));
    EXPECT_TRUE(isLoaded(u"com.daemon.job"_s, kSystemDomain));
}

TEST_F(KeptLaunchItemsOnSimulatedMac, theUsersOwnOverrideIsNotLifted) {
    changeState("launchd", [](macsim::Json& launchd) {
        launchd["disabled"]["user/501"]["com.own.job"] = true;
        launchd["disabled"]["system"]["com.daemon.job"] = true;
        launchd["disabled"]["system"]["com.agent.job"] = true; // which says nothing of an agent
    });
    ASSERT_TRUE(switchAllOff());
    EXPECT_TRUE(exists(kOwn) && exists(kDaemon)) << "both are off already";
    EXPECT_FALSE(exists(kAgent));
    EXPECT_TRUE(reinstate());
    EXPECT_TRUE(holds(kAgent, agentBefore));
    EXPECT_EQ(labelsThatStayOff(), QStringList({u"com.own.job"_s, u"com.daemon.job"_s, u"com.agent.job"_s}));
    EXPECT_EQ(disabledLabels(), QStringList(u"com.own.job"_s));
}

TEST_F(KeptLaunchItemsOnSimulatedMac, whatAnEarlierVersionHasPutAsideWithoutARecordStartsAgain) {
    ASSERT_TRUE(switchAllOff());
    for (const QString& record : {u"launchd-overrides.json"_s, u"launch-items-put-aside.json"_s}) {
        volume().remove(u"/Users/alex/.quorvane/"_s + record);
    }
    EXPECT_TRUE(reinstate());
    expectAllBack();
    EXPECT_TRUE(isLoaded(u"com.own.job"_s));
}

TEST_F(KeptLaunchItemsOnSimulatedMac, aDaemonThatWaitsForItsApplicationStaysWhereItIs) {
    addFile(kDaemon, plistText({{u"Label"_s, u"com.daemon.job"_s}, {u"Program"_s, u"/usr/bin/true"_s}}));
    const macsim::MacPicture before = picture();
    EXPECT_TRUE(QCoro::waitFor(system->disableLaunchItems(QStringList(u"com.daemon.plist"_s), {})));
    EXPECT_EQ(log(), u"  [INFO] Only runs when its application needs it: com.daemon.plist\n"_s);
    EXPECT_EQ(picture().changesSince(before), u"+ /Users/alex/.quorvane_backup: folder\n"_s);
}

TEST_F(KeptLaunchItemsOnSimulatedMac, aCancelledPromptLeavesWhatNeedsRootForTheNextTime) {
    ASSERT_TRUE(switchSystemsOff());
    logOutAndIn();
    authorization.setAnswer(macsim::Authorization::Cancel);
    EXPECT_FALSE(reinstate());
    EXPECT_TRUE(logs(u"  [INFO] Not restored: com.agent.plist"_s));
    EXPECT_TRUE(logs(u"  [INFO] Not restored: com.daemon.plist"_s));
    EXPECT_TRUE(logs(u"  [INFO] Not restored: com.daemon.job"_s));
    EXPECT_TRUE(logs(u"  [RESTORED] 1 background item(s) allowed to start again."_s)) << "the user's part";
    EXPECT_EQ(labelsThatStayOff(), QStringList(u"com.daemon.job"_s));
    EXPECT_FALSE(exists(kAgent) || exists(kDaemon));
    expectNothingLost();
    authorization.setAnswer(macsim::Authorization::Allow);
    EXPECT_TRUE(reinstate());
    expectAllBack();
}

TEST_F(KeptLaunchItemsOnSimulatedMac, aPlistThatItsInstallerHasBroughtBackStaysAndTheOldOneNeverReturns) {
    ASSERT_TRUE(switchAllOff());
    addFile(kDaemon, startingPlist(u"com.daemon.job"_s, u"/usr/bin/newer"_s));
    const QByteArray newer = content(kDaemon);
    EXPECT_TRUE(reinstate());
    EXPECT_EQ(content(kDaemon), newer);
    EXPECT_TRUE(isLoaded(u"com.daemon.job"_s, kSystemDomain));
    EXPECT_TRUE(holds(kKeptDaemon + u".replaced"_s, daemonBefore));
    volume(Actor::Root).remove(kDaemon); // its application is thrown away, years later
    EXPECT_TRUE(reinstate());
    EXPECT_FALSE(exists(kDaemon));
}

// ---- What runs as the user

TEST_F(KeptLaunchItemsOnSimulatedMac, whatIsPlantedInTheBackupNeverReachesTheSystem) {
    ASSERT_TRUE(switchAllOff());
    const QString daemons = kBackup + u"/_Library_LaunchDaemons/"_s;
    plant(daemons + u"com.evil.plist"_s);
    plant(daemons + u"com.daemon.plist"_s);
    plant(kBackup + u"/_Library_LaunchAgents/com.evil.plist"_s);
    EXPECT_TRUE(reinstate());
    EXPECT_TRUE(logs(u"  [INFO] Not restored: com.evil.plist"_s));
    expectAllBack();
    EXPECT_EQ(volume().list(u"/Library/LaunchDaemons"_s).filter(u"evil"_s), QStringList());
    EXPECT_EQ(volume().list(u"/Library/LaunchAgents"_s).filter(u"evil"_s), QStringList());
    EXPECT_EQ(volume(Actor::Root).owner(daemons + u"com.evil.plist"_s), Actor::User);
    EXPECT_FALSE(isLoaded(u"com.evil"_s) || isLoaded(u"com.evil"_s, kSystemDomain));
}

TEST_F(KeptLaunchItemsOnSimulatedMac, aBackupFolderThatBecameALinkGivesAndTakesNothing) {
    ASSERT_TRUE(switchSystemsOff());
    const QString bait = u"/Users/alex/bait"_s;
    for (const QString& target : {u"/Library/LaunchDaemons"_s, u"/Users/alex/bait"_s}) {
        for (const QString& link : {kBackup, kBackup + u"/_Library_LaunchDaemons"_s}) {
            SCOPED_TRACE((link + u" → "_s + target).toStdString());
            const macsim::Volume user = volume();
            user.createFolders(bait + u"/_Library_LaunchDaemons"_s);
            plant(bait + u"/com.evil.plist"_s);
            plant(bait + u"/_Library_LaunchDaemons/com.evil.plist"_s);
            user.move(link, u"/Users/alex/moved"_s);
            user.createLink(link, target);
            const QStringList baits = user.list(bait);
            const QStringList asideNames = user.list(u"/Users/alex/moved"_s);
            start();
            EXPECT_TRUE(reinstate());
            EXPECT_TRUE(logs(u"  [ERROR] Backup folder is not usable: "_s + link));
            expectAllBack();
            EXPECT_EQ(user.list(bait), baits);
            EXPECT_EQ(user.list(u"/Users/alex/moved"_s), asideNames);
            EXPECT_EQ(user.list(u"/Library/LaunchDaemons"_s).filter(u"evil"_s), QStringList());
            EXPECT_EQ(volume(Actor::Root).owner(bait + u"/com.evil.plist"_s), Actor::User);
            user.remove(link);
            user.move(u"/Users/alex/moved"_s, link);
            ASSERT_TRUE(switchSystemsOff());
        }
    }
}

TEST_F(KeptLaunchItemsOnSimulatedMac, copiesThatOthersThanRootCouldHaveMadeStayWhereTheyAre) {
    ASSERT_TRUE(switchAllOff());
    volume(Actor::Root).setOwner(u"/Library/Application Support/Quorvane"_s, Actor::User);
    EXPECT_TRUE(reinstate());
    EXPECT_TRUE(logs(u"  [ERROR] Backup folder is not usable: "_s + kKeep + u"/_Library_LaunchDaemons"_s));
    EXPECT_TRUE(logs(u"  [INFO] Not restored: com.daemon.plist"_s));
    EXPECT_FALSE(exists(kDaemon));
    EXPECT_EQ(labelsThatStayOff(), QStringList()) << "launchd was told by the program, whatever became of the copies";
}

TEST_F(KeptLaunchItemsOnSimulatedMac, aLinkThatComesWhileThePromptIsOpenStopsRoot) {
    for (const QString& link : {kBackup, kBackup + u"/_Library_LaunchAgents"_s}) {
        SCOPED_TRACE(link.toStdString());
        start();
        system->beginAdminBatch();
        ASSERT_TRUE(QCoro::waitFor(system->disableLaunchItems(QStringList(u"com.agent.plist"_s), {})));
        volume().move(link, u"/Users/alex/moved"_s);
        volume().createLink(link, u"/Library/LaunchDaemons"_s);
        const QStringList daemons = volume().list(u"/Library/LaunchDaemons"_s);
        EXPECT_FALSE(QCoro::waitFor(system->finishAdminBatch(u"Off, please."_s)));
        EXPECT_TRUE(holds(kAgent, agentBefore));
        EXPECT_EQ(volume().list(u"/Library/LaunchDaemons"_s), daemons);
        volume().remove(link);
        volume().move(u"/Users/alex/moved"_s, link);
    }
}

TEST_F(KeptLaunchItemsOnSimulatedMac, aPlistThatComesWhileThePromptIsOpenStaysAndNothingIsLost) {
    ASSERT_TRUE(switchAllOff());
    system->beginAdminBatch();
    system->queueKeptLaunchItems();
    addFile(kDaemon, startingPlist(u"com.daemon.job"_s, u"/usr/bin/newer"_s));
    const QByteArray newer = content(kDaemon);
    EXPECT_TRUE(QCoro::waitFor(system->finishAdminBatch(u"Back, please."_s)));
    QCoro::waitFor(system->settleKeptLaunchItems());
    EXPECT_EQ(content(kDaemon), newer);
    EXPECT_TRUE(holds(kKeptDaemon + u".replaced"_s, daemonBefore));
    EXPECT_TRUE(holds(kBackup + u"/_Library_LaunchDaemons/com.daemon.plist"_s, daemonBefore));
}

// ---- Full disks and refusing tools

TEST_F(KeptLaunchItemsOnSimulatedMac, aPlistOfWhichNoCopyCanBeMadeStays) {
    const QByteArray rules[] = {R"([{"tool": "cp", "status": 1, "error": "cp: no\n"}])",
                                R"([{"tool": "cp", "diskFull": true}])",
                                R"([{"tool": "mkdir", "arguments": "/Quorvane/", "status": 1}])"};
    for (const QByteArray& rule : rules) {
        start(rule);
        const QStringList labels{u"com.daemon.plist"_s};
        EXPECT_FALSE(QCoro::waitFor(system->disableLaunchItems(labels, {}))) << rule.toStdString();
        EXPECT_TRUE(holds(kDaemon, daemonBefore));
        EXPECT_TRUE(isLoaded(u"com.daemon.job"_s, kSystemDomain));
    }
}

TEST_F(KeptLaunchItemsOnSimulatedMac, aFullDiskOnTheWayBackLosesNothing) {
    ASSERT_TRUE(switchAllOff());
    start(R"([{"tool": "cp", "diskFull": true}])");
    reinstate();
    EXPECT_TRUE(logs(u"  [INFO] Not restored: com.daemon.plist"_s));
    EXPECT_FALSE(exists(kDaemon));
    expectNothingLost();
    start();
    EXPECT_TRUE(reinstate());
    expectAllBack();
}

TEST_F(KeptLaunchItemsOnSimulatedMac, launchdThatRefusesKeepsNoPlistFromItsPlace) {
    ASSERT_TRUE(switchAllOff());
    start(R"([{"tool": "launchctl", "status": 5, "error": "Input/output error\n"}])");
    EXPECT_TRUE(reinstate());
    EXPECT_TRUE(holds(kDaemon, daemonBefore));
    EXPECT_TRUE(holds(kAgent, agentBefore));
    EXPECT_EQ(keptNames(), QStringList());
}

TEST_F(KeptLaunchItemsOnSimulatedMac, aProgramThatEndedBeforeItTidiedUpDoesSoTheNextTime) {
    ASSERT_TRUE(switchAllOff());
    system->beginAdminBatch();
    system->queueKeptLaunchItems();
    ASSERT_TRUE(QCoro::waitFor(system->finishAdminBatch(u"Back, please."_s)));
    start();
    EXPECT_TRUE(reinstate());
    expectAllBack();
    EXPECT_EQ(volume().list(kBackup + u"/_Library_LaunchDaemons"_s), QStringList());
}

// ---- Killed between two commands of root's line

struct KilledAt {
    const char* tool;
    const char* arguments;
};
inline void PrintTo(const KilledAt& killed, std::ostream* stream) {
    *stream << killed.tool << ' ' << killed.arguments;
}

class KilledLaunchItemLine : public KeptLaunchItemsOnSimulatedMac, public ::testing::WithParamInterface<KilledAt> {
protected:
    /// The shell of root dies at the command.
    void startWithKill() {
        start(QByteArray(R"([{"tool": ")") + GetParam().tool + R"(", "arguments": ")" + GetParam().arguments +
              R"(", "signal": 9}])");
    }
};

class KilledSwitchingOff : public KilledLaunchItemLine {};

TEST_P(KilledSwitchingOff, losesNothingAndTheWayBackIsWhole) {
    startWithKill();
    EXPECT_FALSE(switchAllOff());
    expectNothingLost();
    start();
    EXPECT_TRUE(reinstate());
    expectAllBack();
}

TEST_P(KilledSwitchingOff, canBeDoneAgain) {
    startWithKill();
    EXPECT_FALSE(switchAllOff());
    start();
    EXPECT_TRUE(switchAllOff());
    EXPECT_TRUE(isOff(kAgent, u"com.agent.job"_s));
    EXPECT_TRUE(isOff(kDaemon, u"com.daemon.job"_s));
    expectNothingLost();
    EXPECT_TRUE(reinstate());
    expectAllBack();
}

INSTANTIATE_TEST_SUITE_P(
    AtEachCommand, KilledSwitchingOff,
    ::testing::Values(KilledAt{"mkdir", "/Quorvane/LaunchItems/_Library_LaunchAgents"},
                      KilledAt{"cp", "com.agent.plist"}, KilledAt{"mkdir", "quorvane_backup/_Library_LaunchAgents"},
                      KilledAt{"rm", "com.agent.plist"}, KilledAt{"launchctl", "disable gui/501/com.agent"},
                      KilledAt{"launchctl", "bootout gui/501/com.agent"}, KilledAt{"mv", "com.agent.plist"},
                      KilledAt{"mkdir", "/Quorvane/LaunchItems/_Library_LaunchDaemons"},
                      KilledAt{"cp", "com.daemon.plist"}, KilledAt{"mkdir", "quorvane_backup/_Library_LaunchDaemons"},
                      KilledAt{"rm", "com.daemon.plist"}, KilledAt{"launchctl", "bootout system/com.daemon"},
                      KilledAt{"launchctl", "disable system/com.daemon"}, KilledAt{"mv", "com.daemon.plist"}));

class KilledSwitchingOn : public KilledLaunchItemLine {};

TEST_P(KilledSwitchingOn, losesNothingAndTheNextOneCompletesIt) {
    ASSERT_TRUE(switchAllOff());
    logOutAndIn();
    startWithKill();
    EXPECT_FALSE(reinstate());
    expectNothingLost();
    EXPECT_TRUE(logs(u"  [INFO] Not restored: com.daemon.plist"_s));
    start();
    EXPECT_TRUE(reinstate());
    expectAllBack();
    EXPECT_EQ(volume().list(kBackup + u"/_Library_LaunchAgents"_s), QStringList());
    EXPECT_EQ(volume().list(kBackup + u"/_Library_LaunchDaemons"_s), QStringList());
}

INSTANTIATE_TEST_SUITE_P(AtEachCommand, KilledSwitchingOn,
                         ::testing::Values(KilledAt{"cp", "com.agent.plist"}, KilledAt{"mv", "com.agent.plist"},
                                           KilledAt{"rm", "com.agent.plist"}, KilledAt{"cp", "com.daemon.plist"},
                                           KilledAt{"mv", "com.daemon.plist"},
                                           KilledAt{"launchctl", "enable system/com.daemon.job"},
                                           KilledAt{"launchctl", "bootstrap system"},
                                           KilledAt{"rm", "com.daemon.plist"}));

} // namespace quorvane
