#include "startup/launchd/Launchd.h"

#include "fakes/ScriptedSystem.h"
#include "startup/launchd/OverrideRecord.h"

namespace quorvane {

namespace {

using Operation = MemoryFileManager::Operation;

const QString kOverrideRecord = u"/Users/alex/.quorvane/launchd-overrides.json"_s;
const LaunchdService kAgentService{LaunchdDomain::User, u"com.agent"_s};
const LaunchdService kDaemonService{LaunchdDomain::System, u"com.daemon"_s};

class LaunchdFlows : public ScriptedSystem {
protected:
    LaunchdOverrides overrides() { return QCoro::waitFor(launchd.overrides()); }
    bool recordOverrides(const QList<LaunchdService>& services) {
        return QCoro::waitFor(launchd.recordOverrides(services));
    }
    QList<LaunchdService> recorded() {
        QList<LaunchdService> services;
        for (const RecordedOverride& each : OverrideRecord(files, machine).read()) {
            services.append(each.service);
        }
        return services;
    }

    Launchd launchd{system};
};

} // namespace

// ---- Reading

TEST_F(LaunchdFlows, bothDomainsAreAskedOnceUntilTheyAreDropped) {
    commands.launchd.overrides.insert(u"gui/501/com.agent"_s, true);
    EXPECT_EQ(launchd.known(), LaunchdOverrides());
    EXPECT_TRUE(overrides().isDisabled(kAgentService));
    EXPECT_EQ(overrides().stateOf(kDaemonService), OverrideState::NotListed);
    EXPECT_EQ(takeTrace(), kLookAtLaunchd);
    commands.launchd.overrides.insert(u"system/com.daemon"_s, true);
    launchd.drop();
    EXPECT_FALSE(launchd.known().isDisabled(kDaemonService));
    EXPECT_TRUE(overrides().isDisabled(kDaemonService));
    EXPECT_TRUE(launchd.known().isDisabled(kDaemonService));
    EXPECT_EQ(takeTrace(), kLookAtLaunchd);
}

TEST_F(LaunchdFlows, aDomainThatFailsOrTalksNonsenseIsNone) {
    commands.launchd.overrides.insert(u"system/com.daemon"_s, true);
    commands.fail(u"/bin/launchctl print-disabled gui/501"_s, 125, "Domain does not support specified action\n");
    EXPECT_FALSE(overrides().user);
    EXPECT_TRUE(overrides().isDisabled(kDaemonService));
    launchd.drop();
    commands.print(u"/bin/launchctl print-disabled gui/501"_s, "disabled services = {\n\t\"com.agent\" => dis");
    EXPECT_FALSE(overrides().user);
    EXPECT_EQ(overrides().stateOf(kAgentService), OverrideState::Unknown);
}

TEST_F(LaunchdFlows, whatFailsIsNotBelievedForItsOutput) {
    CommandOutcome outcome =
        ScriptedCommandLauncher::succeeded("disabled services = {\n\"com.agent\" => disabled\n}\n");
    outcome.code = 1;
    commands.answer(u"/bin/launchctl print-disabled gui/501"_s, outcome);
    EXPECT_FALSE(overrides().user);
}

TEST_F(LaunchdFlows, noAnswerIsNoneAndIsAskedForAgain) {
    for (const CommandOutcome& outcome : ScriptedCommandLauncher::unanswered()) {
        commands.answer(u"/bin/launchctl print-disabled gui/501"_s, outcome);
        EXPECT_FALSE(overrides().user);
        EXPECT_EQ(takeTrace(), kLookAtLaunchd);
    }
}

TEST_F(LaunchdFlows, aSlowReadThatComesAfterADropDoesNotFillTheCache) {
    commands.launchd.overrides.insert(u"gui/501/com.agent"_s, true);
    commands.hold();
    QCoro::Task<LaunchdOverrides> slow = launchd.overrides();
    launchd.drop();
    commands.release();
    EXPECT_TRUE(QCoro::waitFor(std::move(slow)).isDisabled(kAgentService));
    EXPECT_EQ(launchd.known(), LaunchdOverrides());
    trace.clear();
    overrides();
    EXPECT_EQ(takeTrace(), kLookAtLaunchd);
}

TEST_F(LaunchdFlows, whatOneWayHasReadTheOtherKnows) {
    Launchd other(system, launchd);
    commands.launchd.overrides.insert(u"gui/501/com.agent"_s, true);
    overrides();
    trace.clear();
    EXPECT_TRUE(QCoro::waitFor(other.overrides()).isDisabled(kAgentService));
    EXPECT_TRUE(trace.isEmpty());
    other.drop();
    overrides();
    EXPECT_EQ(takeTrace(), kLookAtLaunchd);
}

// ---- Switching off

TEST_F(LaunchdFlows, anAgentIsDisabledBeforeItIsBootedOutAndLaunchdIsAskedAnew) {
    overrides();
    trace.clear();
    commands.fail(u"/bin/launchctl disable gui/501/com.agent"_s, 1);
    QCoro::waitFor(launchd.switchOff(u"com.agent"_s));
    overrides();
    EXPECT_EQ(takeTrace(), u"$ /bin/launchctl disable gui/501/com.agent\n"
                           "$ /bin/launchctl bootout gui/501/com.agent\n"_s +
                               kLookAtLaunchd);
}

TEST_F(LaunchdFlows, rootsCommandsNameTheServiceInItsDomain) {
    using End = Launchd::End;
    EXPECT_EQ(launchd.target(kAgentService), u"gui/501/com.agent"_s);
    EXPECT_EQ(launchd.target(kDaemonService), u"system/com.daemon"_s);
    EXPECT_EQ(launchd.rootsSwitchOffCommands(kAgentService, End::Now),
              QStringList({u"/bin/launchctl disable gui/501/com.agent"_s,
                           u"/bin/launchctl bootout gui/501/com.agent 2>/dev/null || true"_s}));
    EXPECT_EQ(launchd.rootsSwitchOffCommands(kDaemonService, End::Now),
              QStringList({u"/bin/launchctl bootout system/com.daemon 2>/dev/null || true"_s,
                           u"/bin/launchctl disable system/com.daemon"_s}));
    EXPECT_EQ(launchd.rootsSwitchOffCommands(kDaemonService, End::AtRestart),
              QStringList(u"/bin/launchctl disable system/com.daemon"_s));
    EXPECT_EQ(launchd.rootsSwitchOffCommands({LaunchdDomain::System, u"a'; rm -rf $HOME"_s}, End::AtRestart),
              QStringList(uR"(/bin/launchctl disable system/'a'\''; rm -rf $HOME')"_s));
}

TEST_F(LaunchdFlows, onlyWhatLaunchdDoesNotHaveAsDisabledIsWrittenDown) {
    commands.launchd.overrides.insert(u"gui/501/com.users.own"_s, true);
    EXPECT_TRUE(recordOverrides({{LaunchdDomain::User, u"com.users.own"_s}, kAgentService, kDaemonService}));
    EXPECT_EQ(files.read(kOverrideRecord), "[\n"
                                           "  {\n"
                                           "    \"label\": \"com.agent\",\n"
                                           "    \"domain\": \"user\",\n"
                                           "    \"isPending\": true\n"
                                           "  },\n"
                                           "  {\n"
                                           "    \"label\": \"com.daemon\",\n"
                                           "    \"domain\": \"system\",\n"
                                           "    \"isPending\": true\n"
                                           "  }\n"
                                           "]");
}

TEST_F(LaunchdFlows, whatNobodyCanSayIsWrittenDown) {
    commands.fail(u"/bin/launchctl print-disabled gui/501"_s, 1);
    EXPECT_TRUE(recordOverrides({kAgentService}));
    EXPECT_EQ(recorded(), QList<LaunchdService>{kAgentService});
}

TEST_F(LaunchdFlows, theRecordGrowsAndHoldsEachOnce) {
    EXPECT_TRUE(recordOverrides({kAgentService}));
    EXPECT_TRUE(recordOverrides({kAgentService, kDaemonService}));
    EXPECT_EQ(recorded(), QList<LaunchdService>({kAgentService, kDaemonService}));
    const int changes = files.changes();
    EXPECT_TRUE(recordOverrides({kAgentService}));
    EXPECT_EQ(files.changes(), changes);
}

TEST_F(LaunchdFlows, nothingToWriteDownAsksNobody) {
    EXPECT_TRUE(recordOverrides({}));
    EXPECT_TRUE(trace.isEmpty());
    EXPECT_EQ(files.changes(), 0);
}

TEST_F(LaunchdFlows, aRecordThatCannotBeReadOrSavedIsLeftAndTold) {
    files.addFile(kOverrideRecord, R"([{"label": "com.agent", "domain": "user"}])");
    for (const Operation operation : {Operation::Read, Operation::Write}) {
        trace.clear();
        files.failOn(operation, kOverrideRecord);
        EXPECT_FALSE(recordOverrides({kDaemonService}));
        EXPECT_EQ(trace.last(), u"  [ERROR] Could not read or write the record of what is switched off: "_s +
                                    kOverrideRecord + u": Operation not permitted"_s);
    }
    EXPECT_TRUE(files.exists(kOverrideRecord));
}

TEST_F(LaunchdFlows, aDamagedRecordIsKeptUnderAnotherName) {
    files.addFile(kOverrideRecord, "not JSON");
    files.addFile(kOverrideRecord + u".unreadable"_s, "an older one");
    EXPECT_TRUE(recordOverrides({kAgentService}));
    EXPECT_EQ(takeTrace(), kLookAtLaunchd +
                               u"  [ERROR] The record of what is switched off is damaged: not valid JSON (line 1)\n"
                               "  [INFO] It is kept: "_s +
                               kOverrideRecord + u".unreadable.1\n"_s);
    EXPECT_EQ(files.read(kOverrideRecord + u".unreadable"_s), "an older one");
    EXPECT_EQ(files.read(kOverrideRecord + u".unreadable.1"_s), "not JSON");
    EXPECT_EQ(recorded(), QList<LaunchdService>{kAgentService});
}

TEST_F(LaunchdFlows, aDamagedRecordThatCannotMakeRoomIsNotReplaced) {
    files.addFile(kOverrideRecord, "not JSON");
    files.failOn(Operation::Move, kOverrideRecord);
    EXPECT_FALSE(recordOverrides({kAgentService}));
    EXPECT_EQ(files.read(kOverrideRecord), "not JSON");
}

TEST_F(LaunchdFlows, whatWasWrittenDownInVainIsTakenOutAgain) {
    files.addFile(kOverrideRecord, R"([{"label": "com.older", "domain": "user"}])");
    EXPECT_TRUE(recordOverrides({kAgentService, kDaemonService}));
    commands.launchd.overrides.insert(u"gui/501/com.agent"_s, true);
    launchd.drop();
    QCoro::waitFor(launchd.settleRecorded());
    const QList<LaunchdService> left{{LaunchdDomain::User, u"com.older"_s}, kAgentService};
    EXPECT_EQ(recorded(), left);
    EXPECT_TRUE(OverrideRecord(files, machine).read().last().isConfirmed);
    trace.clear();
    launchd.drop();
    QCoro::waitFor(launchd.settleRecorded()); // nothing has come since
    EXPECT_TRUE(trace.isEmpty());
}

TEST_F(LaunchdFlows, whereLaunchdDoesNotTellItStaysWrittenDown) {
    EXPECT_TRUE(recordOverrides({kAgentService}));
    commands.fail(u"/bin/launchctl print-disabled gui/501"_s, 1);
    launchd.drop();
    QCoro::waitFor(launchd.settleRecorded());
    EXPECT_EQ(recorded(), QList<LaunchdService>{kAgentService});
}

TEST_F(LaunchdFlows, whatARunThatWasKilledHasWrittenDownInVainIsTakenOutWhenLaunchdIsAskedNext) {
    files.addFile(kOverrideRecord, R"([{"label": "com.agent", "domain": "user", "isPending": true},
                                       {"label": "com.daemon", "domain": "system", "isPending": true},
                                       {"label": "com.older", "domain": "user"}])");
    commands.launchd.overrides.insert(u"system/com.daemon"_s, true);
    commands.fail(u"/bin/launchctl print-disabled gui/501"_s, 1);
    overrides();
    const QList<RecordedOverride> untold = OverrideRecord(files, machine).read();
    EXPECT_EQ(untold,
              (QList<RecordedOverride>{
                  {kAgentService, false}, {kDaemonService, true}, {{LaunchdDomain::User, u"com.older"_s}, true}}))
        << "of the user's domain launchd told nothing";
    commands.print(u"/bin/launchctl print-disabled gui/501"_s, "disabled services = {\n}\n");
    launchd.drop();
    overrides();
    EXPECT_EQ(recorded(), (QList<LaunchdService>{kDaemonService, {LaunchdDomain::User, u"com.older"_s}}))
        << "one that was off once is on again, and stays in the record";
}

TEST_F(LaunchdFlows, beforeTheWayBackAKilledRunIsSettled) {
    files.addFile(kOverrideRecord, R"([{"label": "com.agent", "domain": "user", "isPending": true}])");
    QCoro::waitFor(launchd.settleInterrupted());
    EXPECT_EQ(recorded(), QList<LaunchdService>());
    trace.clear();
    launchd.drop();
    QCoro::waitFor(launchd.settleInterrupted());
    EXPECT_TRUE(trace.isEmpty()) << "there is nothing to ask launchd about";
}

TEST_F(LaunchdFlows, whatTheOpenBatchIsAboutToSwitchOffStaysWrittenDown) {
    EXPECT_TRUE(recordOverrides({kAgentService}));
    launchd.drop();
    overrides(); // of somebody who looks on
    EXPECT_EQ(recorded(), QList<LaunchdService>{kAgentService});
}

TEST_F(LaunchdFlows, whatWasBeforeIsWrittenDownWithIt) {
    commands.launchd.sessionJobs = {u"com.agent"_s};
    commands.launchd.overrides.insert(u"system/com.daemon"_s, false);
    const QList<ServiceGoing> going{{kAgentService, u"Agent"_s, u"/Library/LaunchAgents/com.agent.plist"_s},
                                    {kDaemonService},
                                    {{LaunchdDomain::System, u"com.bundled"_s}, {}, {}, false}};
    EXPECT_TRUE(QCoro::waitFor(launchd.recordServices(going)));
    EXPECT_EQ(takeTrace(), kLookAtLaunchd + u"$> /bin/launchctl list\n$> /bin/launchctl print system/com.daemon\n"_s);
    const QList<RecordedOverride> expected{
        {kAgentService, false, OverrideState::NotListed, true, u"Agent"_s, u"/Library/LaunchAgents/com.agent.plist"_s},
        {kDaemonService, false, OverrideState::Enabled, true},
        {{LaunchdDomain::System, u"com.bundled"_s}, false, OverrideState::NotListed}};
    EXPECT_EQ(OverrideRecord(files, machine).read(), expected);
}

TEST_F(LaunchdFlows, noJobIsAskedForOfWhatIsOffOrRecordedAlready) {
    commands.launchd.overrides.insert(u"gui/501/com.agent"_s, true);
    files.addFile(kOverrideRecord, R"([{"label": "com.daemon", "domain": "system"}])");
    EXPECT_TRUE(QCoro::waitFor(launchd.recordServices({{kAgentService}, {kDaemonService}})));
    EXPECT_EQ(takeTrace(), kLookAtLaunchd);
}

TEST_F(LaunchdFlows, whatLaunchdDoesNotTellIsUnknown) {
    commands.launchd.isMute = true;
    commands.launchd.isMuteOfJobs = true;
    EXPECT_TRUE(QCoro::waitFor(launchd.recordServices({{kAgentService}, {kDaemonService}})));
    const QList<RecordedOverride> expected{{kAgentService, false, OverrideState::Unknown},
                                           {kDaemonService, false, OverrideState::Unknown}};
    EXPECT_EQ(OverrideRecord(files, machine).read(), expected);
    EXPECT_EQ(launchd.liftableOverrides({}), QList<RecordedOverride>());
    EXPECT_EQ(launchd.liftableOverrides({}).size() + 2, launchd.recordedOverrides().size());
}

TEST_F(LaunchdFlows, aJobIsAskedForOnceInAFlowAndAnewInTheNext) {
    commands.launchd.sessionJobs = {u"com.agent"_s};
    EXPECT_EQ(QCoro::waitFor(launchd.isLoaded(kAgentService)), true);
    EXPECT_EQ(QCoro::waitFor(launchd.isLoaded(kDaemonService)), true);
    commands.launchd.stoppedJobs = {u"com.agent"_s, u"com.daemon"_s};
    launchd.drop();
    EXPECT_EQ(QCoro::waitFor(launchd.isLoaded(kAgentService)), true);
    EXPECT_EQ(QCoro::waitFor(launchd.isLoaded(kDaemonService)), true);
    launchd.beginFlow();
    EXPECT_EQ(QCoro::waitFor(launchd.isLoaded(kAgentService)), false);
    EXPECT_EQ(QCoro::waitFor(launchd.isLoaded(kDaemonService)), false);
    for (const QByteArray& nonsense : {QByteArray(), QByteArray("PID Status Label\n"), QByteArray("nothing\n")}) {
        commands.print(u"/bin/launchctl list"_s, nonsense);
        launchd.beginFlow();
        EXPECT_EQ(QCoro::waitFor(launchd.isLoaded(kAgentService)), std::nullopt);
    }
    commands.fail(u"/bin/launchctl print system/com.daemon"_s, 64);
    launchd.beginFlow();
    EXPECT_EQ(QCoro::waitFor(launchd.isLoaded(kDaemonService)), std::nullopt);
}

TEST_F(LaunchdFlows, whatIsKeptOffIsNeitherLiftedNorNamed) {
    files.addFile(kOverrideRecord, R"([{"label": "com.agent", "domain": "user"},
                                       {"label": "com.daemon", "domain": "system"}])");
    commands.launchd.overrides = {{u"gui/501/com.agent"_s, true}, {u"system/com.daemon"_s, true}};
    KeptOff kept;
    kept.overrides = {kAgentService, kDaemonService};
    QCoro::waitFor(launchd.liftUsersOverrides(kept));
    EXPECT_EQ(launchd.rootsLiftCommands(kept), QStringList());
    QCoro::waitFor(launchd.settleLifted(kept));
    EXPECT_EQ(takeTrace(), u"\n"_s);
    EXPECT_EQ(recorded(), (QList<LaunchdService>{kAgentService, kDaemonService}));
}

// ---- The way back

TEST_F(LaunchdFlows, onlyLabelsThatMayBeOverriddenAreLiftedAndTheOthersStayInTheFile) {
    files.addFile(kOverrideRecord, R"([{"label": "com.apple.x", "domain": "system"},
                                       {"label": "com.agent", "domain": "user"}])");
    EXPECT_EQ(launchd.recordedOverrides(), QList<LaunchdService>{kAgentService});
    EXPECT_EQ(launchd.rootsLiftCommands(), QStringList());
    QCoro::waitFor(launchd.liftUsersOverrides());
    QCoro::waitFor(launchd.settleLifted());
    EXPECT_EQ(takeTrace(), u"$ /bin/launchctl enable gui/501/com.agent\n"_s + kLookAtLaunchd +
                               u"  [RESTORED] 1 background item(s) allowed to start again.\n"_s);
    EXPECT_EQ(recorded(), (QList<LaunchdService>{{LaunchdDomain::System, u"com.apple.x"_s}}));
}

TEST_F(LaunchdFlows, aRecordThatCannotBeChangedIsToldAndNothingIsCalledRestored) {
    files.addFile(kOverrideRecord, R"([{"label": "com.agent", "domain": "user"}])");
    files.failOn(Operation::Remove, kOverrideRecord);
    QCoro::waitFor(launchd.settleLifted());
    EXPECT_EQ(takeTrace(), kLookAtLaunchd +
                               u"  [ERROR] Could not read or write the record of what is switched off: "_s +
                               kOverrideRecord + u": Operation not permitted\n"_s);
}

} // namespace quorvane
