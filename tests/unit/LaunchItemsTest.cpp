#include "startup/launchd/LaunchItems.h"
#include "core/AdminBatch.h"
#include "core/Json.h"
#include "fakes/ScriptedSystem.h"

#include <QRegularExpression>

namespace quorvane {

namespace {

using Operation = MemoryFileManager::Operation;
using Kind = FileStatus::Kind;

const QString kUsersAgents = u"/Users/alex/Library/LaunchAgents/"_s;
const QString kAgents = u"/Library/LaunchAgents/"_s;
const QString kDaemons = u"/Library/LaunchDaemons/"_s;
const QString kBackup = u"/Users/alex/.quorvane_backup"_s;
const QString kUsersBackup = kBackup + u"/UserHome_Library_LaunchAgents/"_s;
const QString kAgentsBackup = kBackup + u"/_Library_LaunchAgents/"_s;
const QString kDaemonsBackup = kBackup + u"/_Library_LaunchDaemons/"_s;
const QString kLabel = u"com.box.plist"_s;

// Of plists that tell no label.
const QString kDisableUsersBox =
    u"$ /bin/launchctl bootout gui/501 /Users/alex/Library/LaunchAgents/com.box.plist\n"
    "  [APPLIED] Disabled launch item: com.box.plist (/Users/alex/Library/LaunchAgents)\n"_s;

const QString kAgentsBoxCommand =
    u"mkdir -p '/Library/Application Support/Quorvane/LaunchItems/_Library_LaunchAgents' && "
    "cp -p '/Library/LaunchAgents/com.box.plist' "
    "'/Library/Application Support/Quorvane/LaunchItems/_Library_LaunchAgents/com.box.plist' && "
    "[ ! -L '/Users/alex/.quorvane_backup' ] && "
    "[ ! -L '/Users/alex/.quorvane_backup/_Library_LaunchAgents' ] && "
    "mkdir -p '/Users/alex/.quorvane_backup/_Library_LaunchAgents' && "
    "rm -f '/Users/alex/.quorvane_backup/_Library_LaunchAgents/com.box.plist' && "
    "(/bin/launchctl bootout gui/501 '/Library/LaunchAgents/com.box.plist' 2>/dev/null || true ; true) && "
    "mv '/Library/LaunchAgents/com.box.plist' "
    "'/Users/alex/.quorvane_backup/_Library_LaunchAgents/com.box.plist'"_s;
const QString kDaemonsBoxCommand =
    u"mkdir -p '/Library/Application Support/Quorvane/LaunchItems/_Library_LaunchDaemons' && "
    "cp -p '/Library/LaunchDaemons/com.box.plist' "
    "'/Library/Application Support/Quorvane/LaunchItems/_Library_LaunchDaemons/com.box.plist' && "
    "[ ! -L '/Users/alex/.quorvane_backup' ] && "
    "[ ! -L '/Users/alex/.quorvane_backup/_Library_LaunchDaemons' ] && "
    "mkdir -p '/Users/alex/.quorvane_backup/_Library_LaunchDaemons' && "
    "rm -f '/Users/alex/.quorvane_backup/_Library_LaunchDaemons/com.box.plist' && "
    "(/bin/launchctl bootout system '/Library/LaunchDaemons/com.box.plist' 2>/dev/null || true ; true) && "
    "mv '/Library/LaunchDaemons/com.box.plist' "
    "'/Users/alex/.quorvane_backup/_Library_LaunchDaemons/com.box.plist'"_s;

const QString kOverridesFile = u"/Users/alex/.quorvane/launchd-overrides.json"_s;

const QString kPutAsideFile = u"/Users/alex/.quorvane/launch-items-put-aside.json"_s;

class LaunchItemFlows : public ScriptedSystem {
protected:
    LaunchItemFlows() {
        scripts.carryOut = [this](const QString& source) { carryOutAsRoot(source); };
    }
    void carryOutAsRoot(const QString& source) {
        static const QRegularExpression move(u"&& mv '([^']*)' '([^']*)'"_s);
        for (const QRegularExpressionMatch& match : move.globalMatch(source)) {
            if (files.exists(match.captured(1)) && !stuck.contains(match.captured(1))) {
                files.addFile(match.captured(2), files.read(match.captured(1)));
                files.removeAsRoot(match.captured(1));
            }
        }
        commands.launchd.carryOut(source);
    }
    void addJob(const QString& plist, const QString& label, bool runsAtLoad = true) {
        files.addFile(plist, "box");
        propertyLists.lists.insert(plist, {{u"Label"_s, label}, {u"RunAtLoad"_s, runsAtLoad}});
    }
    static Json recordJson(const QList<QPair<QString, QString>>& services) {
        Json record = Json::array();
        for (const auto& [label, domain] : services) {
            record.push_back({{"label", label.toStdString()}, {"domain", domain.toStdString()}});
        }
        return record;
    }
    static QByteArray recordOf(const QList<QPair<QString, QString>>& services) {
        return jsonText(recordJson(services));
    }
    /// A record without what was before.
    static QByteArray servicesIn(const QByteArray& record) {
        Json services = parseJson(record);
        for (Json& each : services) {
            for (const char* key : {"override", "wasLoaded", "name", "plist"}) {
                each.erase(key);
            }
        }
        return jsonText(services);
    }
    /// Before launchd has shown them.
    static QByteArray pendingRecordOf(const QList<QPair<QString, QString>>& services) {
        Json record = recordJson(services);
        for (Json& each : record) {
            each["isPending"] = true;
        }
        return jsonText(record);
    }
    bool disable(const QStringList& labels, const QSet<QString>& excludedIds = {}) {
        return QCoro::waitFor(system.disableLaunchItems(labels, excludedIds));
    }
    bool finishBatch() { return QCoro::waitFor(system.finishAdminBatch(u"Please."_s)); }
    void restore() { QCoro::waitFor(system.restoreLaunchItems()); }
    QString prompted(const QString& line, const QString& prompt) {
        return u"& do shell script \""_s + line + u"\" with prompt \""_s + prompt +
               u"\" with administrator privileges\n"_s;
    }
    QSet<QString> stuck; ///< what root doesn't move
    QString prompted(const QString& line) {
        return prompted(line, u"Quorvane needs your administrator password to make these system changes."_s);
    }
};

} // namespace

TEST_F(LaunchItemFlows, disablingNoneDoesNothing) {
    EXPECT_TRUE(disable({}));
    EXPECT_TRUE(trace.isEmpty());
    EXPECT_EQ(files.changes(), 0);
}

TEST_F(LaunchItemFlows, aPlistOfTheUserIsTakenOutOfLaunchdAndPutAside) {
    files.addFile(kUsersAgents + kLabel, "box");
    EXPECT_TRUE(disable({kLabel}));
    EXPECT_EQ(takeTrace(), kDisableUsersBox);
    EXPECT_FALSE(files.exists(kUsersAgents + kLabel));
    EXPECT_EQ(files.read(kUsersBackup + kLabel), "box");
}

TEST_F(LaunchItemFlows, whatLaunchctlSaysDoesNotMatter) {
    files.addFile(kUsersAgents + kLabel, "box");
    commands.fail(u"/bin/launchctl bootout gui/501 /Users/alex/Library/LaunchAgents/com.box.plist"_s, 5,
                  "Boot-out failed");
    EXPECT_TRUE(disable({kLabel}));
    EXPECT_EQ(takeTrace(), kDisableUsersBox);
    EXPECT_EQ(files.read(kUsersBackup + kLabel), "box");
}

TEST_F(LaunchItemFlows, anOlderBackupIsDeletedFirst) {
    files.addFile(kUsersAgents + kLabel, "new");
    files.addFile(kUsersBackup + kLabel, "old");
    EXPECT_TRUE(disable({kLabel}));
    EXPECT_EQ(takeTrace(), kDisableUsersBox);
    EXPECT_EQ(files.read(kUsersBackup + kLabel), "new");
}

TEST_F(LaunchItemFlows, aPlistThatIsPutAsideAlreadyStaysThere) {
    files.addFolders(kUsersAgents);
    files.addFile(kUsersBackup + kLabel, "box");
    EXPECT_TRUE(disable({kLabel}));
    EXPECT_EQ(takeTrace(), u"  [INFO] Launch item already disabled: com.box.plist\n"_s);
    EXPECT_EQ(files.read(kUsersBackup + kLabel), "box");
}

TEST_F(LaunchItemFlows, aLaunchFolderThatIsGoneSpeaksForNoBackup) {
    files.addFile(kUsersBackup + kLabel, "box");
    EXPECT_TRUE(disable({kLabel}));
    EXPECT_TRUE(trace.isEmpty()); // not found
}

TEST_F(LaunchItemFlows, aPlistOfTheSystemIsMovedByRoot) {
    files.addFile(kDaemons + kLabel, "box");
    EXPECT_TRUE(disable({kLabel}));
    EXPECT_EQ(takeTrace(), u"  [ACTION] Requesting Admin rights to disable 1 system launch item(s)...\n"_s +
                               prompted(kDaemonsBoxCommand) +
                               u"  [APPLIED] Disabled launch item: com.box.plist @ /Library/LaunchDaemons\n"_s);
    EXPECT_EQ(files.status(kDaemonsBackup.chopped(1)).kind, Kind::Folder);
    EXPECT_EQ(files.read(kDaemonsBackup + kLabel), "box");
}

TEST_F(LaunchItemFlows, oneLabelIsHandledInEveryFolder) {
    for (const QString& folder : {kUsersAgents, kAgents, kDaemons}) {
        files.addFile(folder + kLabel, "box");
    }
    EXPECT_TRUE(disable({kLabel}));
    EXPECT_EQ(takeTrace(), kDisableUsersBox +
                               u"  [ACTION] Requesting Admin rights to disable 2 system launch item(s)...\n"_s +
                               prompted(kAgentsBoxCommand + u" && "_s + kDaemonsBoxCommand) +
                               u"  [APPLIED] Disabled launch item: com.box.plist @ /Library/LaunchAgents\n"
                               "  [APPLIED] Disabled launch item: com.box.plist @ /Library/LaunchDaemons\n"_s);
}

TEST_F(LaunchItemFlows, aRefusedPromptLeavesTheSystemsPlistsAndKeepsTheUsersMove) {
    files.addFile(kUsersAgents + kLabel, "mine");
    files.addFile(kAgents + kLabel, "theirs");
    scripts.failNext(u"User canceled."_s);
    EXPECT_FALSE(disable({kLabel}));
    EXPECT_EQ(takeTrace(),
              kDisableUsersBox + u"  [ACTION] Requesting Admin rights to disable 1 system launch item(s)...\n"_s +
                  prompted(kAgentsBoxCommand) + u"  [ERROR] Failed to disable system launch items: User canceled.\n"_s);
    EXPECT_EQ(files.read(kAgents + kLabel), "theirs");
    EXPECT_EQ(files.read(kUsersBackup + kLabel), "mine");
}

TEST_F(LaunchItemFlows, aRefusedOneCanBeAskedForAgain) {
    files.addFile(kAgents + kLabel, "theirs");
    scripts.failNext(u"User canceled."_s);
    EXPECT_FALSE(disable({kLabel}));
    EXPECT_TRUE(disable({kLabel}));
    EXPECT_EQ(trace.count(u"  [ACTION] Requesting Admin rights to disable 1 system launch item(s)..."_s), 2);
}

// ---- By the label

TEST_F(LaunchItemFlows, anAgentOfTheUsersIsSwitchedOffByItsLabelAndThatIsWrittenDownBefore) {
    addJob(kUsersAgents + kLabel, u"com.box.job"_s);
    QByteArray recordThen;
    commands.respond = [&](const QStringList& arguments) {
        if (arguments.value(1) == u"disable") {
            recordThen = files.read(kOverridesFile);
        }
        return std::nullopt;
    };
    EXPECT_TRUE(disable({kLabel}));
    EXPECT_EQ(takeTrace(), kLookAtLaunchd + kLookAtJobs +
                               u"$ /bin/launchctl disable gui/501/com.box.job\n"
                               "$ /bin/launchctl bootout gui/501/com.box.job\n"
                               "  [APPLIED] Disabled launch item: com.box.plist "
                               "(/Users/alex/Library/LaunchAgents)\n"_s);
    EXPECT_TRUE(files.exists(kUsersBackup + kLabel));
    EXPECT_EQ(servicesIn(recordThen), pendingRecordOf({{u"com.box.job"_s, u"user"_s}}));
}

TEST_F(LaunchItemFlows, anAgentOfTheSystemsAndADaemonAreSwitchedOffByRootInTheirOwnDomains) {
    addJob(kAgents + kLabel, u"com.box.agent"_s);
    addJob(kDaemons + kLabel, u"com.box daemon"_s);
    EXPECT_TRUE(disable({kLabel}));
    const QString line = takeTrace();
    EXPECT_TRUE(
        line.contains(u"_Library_LaunchAgents/com.box.plist' && (/bin/launchctl disable gui/501/com.box.agent ; "
                      "/bin/launchctl bootout gui/501/com.box.agent 2>/dev/null || true ; true) && mv "
                      "'/Library/LaunchAgents/com.box.plist' "_s))
        << line.toStdString();
    EXPECT_TRUE(
        line.contains(u"_Library_LaunchDaemons/com.box.plist' && (/bin/launchctl bootout system/'com.box daemon' "
                      "2>/dev/null || true ; /bin/launchctl disable system/'com.box daemon' ; true) && mv "
                      "'/Library/LaunchDaemons/com.box.plist' "_s))
        << line.toStdString();
    EXPECT_EQ(servicesIn(files.read(kOverridesFile)),
              pendingRecordOf({{u"com.box.agent"_s, u"user"_s}, {u"com.box daemon"_s, u"system"_s}}));
}

TEST_F(LaunchItemFlows, aLabelThatMayNotBeOverriddenLeavesTheJobToItsPlist) {
    for (const QString& label : {u"com.apple.box"_s, u"com.quorvane.box"_s, u"com.ableton.box"_s, u"a/b"_s, u"-x"_s}) {
        SCOPED_TRACE(label.toStdString());
        addJob(kUsersAgents + kLabel, label);
        EXPECT_TRUE(disable({kLabel}));
        EXPECT_EQ(takeTrace().remove(kLookAtLaunchd).remove(kLookAtJobs), kDisableUsersBox);
        EXPECT_FALSE(files.exists(kOverridesFile));
    }
}

TEST_F(LaunchItemFlows, whereSomethingThatStaysHasTheSameLabelThereIsNoOverride) {
    addJob(kUsersAgents + kLabel, u"com.box.job"_s);
    addJob(kAgents + u"com.twin.plist"_s, u"com.box.job"_s);
    EXPECT_TRUE(disable({kLabel}));
    EXPECT_EQ(takeTrace(), kLookAtLaunchd + kLookAtJobs + kDisableUsersBox);
    EXPECT_FALSE(files.exists(kOverridesFile));
}

TEST_F(LaunchItemFlows, aProtectedOneOfTheSameLabelStays) {
    addJob(kUsersAgents + kLabel, u"com.box.job"_s);
    addJob(kUsersAgents + u"com.native.Traktor.plist"_s, u"com.box.job"_s);
    EXPECT_TRUE(disable({kLabel, u"com.native.Traktor.plist"_s}));
    EXPECT_EQ(takeTrace(), kLookAtLaunchd + kLookAtJobs + kDisableUsersBox +
                               u"  [SKIPPED] Protected launch item: com.native.Traktor.plist\n"_s);
}

TEST_F(LaunchItemFlows, twoOfOneLabelThatBothGoAreOverridden) {
    addJob(kUsersAgents + kLabel, u"com.box.job"_s);
    addJob(kAgents + u"com.twin.plist"_s, u"com.box.job"_s);
    system.beginAdminBatch();
    EXPECT_TRUE(disable({kLabel, u"com.twin.plist"_s}));
    EXPECT_TRUE(finishBatch());
    EXPECT_EQ(trace.filter(u"/bin/launchctl disable gui/501/com.box.job"_s).size(), 2);
    EXPECT_EQ(servicesIn(files.read(kOverridesFile)), recordOf({{u"com.box.job"_s, u"user"_s}}));
}

TEST_F(LaunchItemFlows, oneThatTheOpenBatchMovesDoesNotStay) {
    addJob(kUsersAgents + kLabel, u"com.box.job"_s);
    addJob(kAgents + u"com.twin.plist"_s, u"com.box.job"_s);
    system.beginAdminBatch();
    EXPECT_TRUE(disable({u"com.twin.plist"_s})); // by its plist: the other one stays so far
    EXPECT_FALSE(files.exists(kOverridesFile));
    EXPECT_TRUE(disable({kLabel}));
    EXPECT_EQ(servicesIn(files.read(kOverridesFile)), pendingRecordOf({{u"com.box.job"_s, u"user"_s}}));
}

TEST_F(LaunchItemFlows, aDaemonOfTheSameLabelIsAnotherService) {
    addJob(kUsersAgents + kLabel, u"com.box.job"_s);
    addJob(kDaemons + u"com.twin.plist"_s, u"com.box.job"_s);
    EXPECT_TRUE(disable({kLabel}));
    EXPECT_TRUE(takeTrace().contains(u"$ /bin/launchctl disable gui/501/com.box.job\n"_s));
}

TEST_F(LaunchItemFlows, aDaemonThatDoesNotStartByItselfIsLeftAlone) {
    addJob(kDaemons + kLabel, u"com.box.job"_s, false);
    EXPECT_TRUE(disable({kLabel}));
    EXPECT_EQ(takeTrace(), kLookAtLaunchd + u"  [INFO] Only runs when its application needs it: com.box.plist\n"_s);
    EXPECT_TRUE(files.exists(kDaemons + kLabel));
    EXPECT_FALSE(files.exists(kOverridesFile));
}

TEST_F(LaunchItemFlows, anAgentThatWaitsToBeAskedGoes) {
    addJob(kUsersAgents + kLabel, u"com.box.job"_s, false);
    EXPECT_TRUE(disable({kLabel}));
    EXPECT_FALSE(files.exists(kUsersAgents + kLabel));
}

TEST_F(LaunchItemFlows, aPlistThatIsBackWhileLaunchdHasItAsOffAsksForNothing) {
    addJob(kUsersAgents + kLabel, u"com.box.job"_s);
    addJob(kAgents + kLabel, u"com.box.job"_s);
    addJob(kDaemons + kLabel, u"com.box.daemon"_s);
    commands.launchd.overrides = {{u"gui/501/com.box.job"_s, true}, {u"system/com.box.daemon"_s, true}};
    EXPECT_TRUE(disable({kLabel}));
    EXPECT_EQ(takeTrace(), kLookAtLaunchd + u"  [INFO] Launch item already disabled: com.box.plist\n"_s);
    for (const QString& folder : {kUsersAgents, kAgents, kDaemons}) {
        EXPECT_TRUE(files.exists(folder + kLabel));
    }
    EXPECT_FALSE(files.exists(kOverridesFile));
}

TEST_F(LaunchItemFlows, aPlistThatAKilledRunHasOverriddenAndNotMovedGoesAndStaysNotedAsLoaded) {
    const QByteArray noted = R"([
  {
    "path": "/Users/alex/Library/LaunchAgents/com.box.plist",
    "wasLoaded": true
  }
])";
    addJob(kUsersAgents + kLabel, u"com.box.job"_s);
    commands.launchd.overrides = {{u"gui/501/com.box.job"_s, true}};
    commands.launchd.stoppedJobs = {u"com.box.job"_s};
    files.addFile(kPutAsideFile, noted);
    EXPECT_TRUE(disable({kLabel}));
    EXPECT_TRUE(files.exists(kUsersAgents + kLabel)) << "the override is the user's own";
    system.invalidateStartupCaches();
    files.addFile(kOverridesFile, recordOf({{u"com.box.job"_s, u"user"_s}}));
    files.addFile(kUsersBackup + kLabel, "older");
    EXPECT_TRUE(disable({kLabel}));
    EXPECT_TRUE(files.exists(kUsersAgents + kLabel)) << "an installer has brought it back";
    system.invalidateStartupCaches();
    files.removeAsRoot(kUsersBackup + kLabel);
    takeTrace();
    EXPECT_TRUE(disable({kLabel}));
    EXPECT_FALSE(takeTrace().contains(u"already disabled"_s));
    EXPECT_FALSE(files.exists(kUsersAgents + kLabel));
    EXPECT_EQ(files.read(kUsersBackup + kLabel), "box");
    EXPECT_EQ(files.read(kPutAsideFile), noted) << "that it isn't loaded is the program's own doing";
}

TEST_F(LaunchItemFlows, aPlistThatIsOffByItselfIsOffUnlessLaunchdSaysOtherwise) {
    addJob(kUsersAgents + kLabel, u"com.box.job"_s);
    propertyLists.lists[kUsersAgents + kLabel].insert(u"Disabled"_s, true);
    EXPECT_TRUE(disable({kLabel}));
    EXPECT_EQ(takeTrace(), kLookAtLaunchd + u"  [INFO] Launch item already disabled: com.box.plist\n"_s);
    EXPECT_TRUE(files.exists(kUsersAgents + kLabel));
    commands.launchd.overrides.insert(u"gui/501/com.box.job"_s, false);
    system.invalidateStartupCaches();
    EXPECT_TRUE(disable({kLabel}));
    EXPECT_FALSE(files.exists(kUsersAgents + kLabel));
}

TEST_F(LaunchItemFlows, whereLaunchdIsSilentTheItemGoesAndTheRecordHasIt) {
    commands.launchd.isMute = true;
    addJob(kUsersAgents + kLabel, u"com.box.job"_s);
    EXPECT_TRUE(disable({kLabel}));
    EXPECT_FALSE(files.exists(kUsersAgents + kLabel));
    EXPECT_EQ(servicesIn(files.read(kOverridesFile)), pendingRecordOf({{u"com.box.job"_s, u"user"_s}}));
}

TEST_F(LaunchItemFlows, whatCannotBeWrittenDownIsNotOverriddenAndGoesByItsPlist) {
    addJob(kUsersAgents + kLabel, u"com.box.job"_s);
    files.failOn(Operation::Write, kOverridesFile);
    EXPECT_FALSE(disable({kLabel}));
    EXPECT_EQ(takeTrace(), kLookAtLaunchd + kLookAtJobs +
                               u"  [ERROR] Could not read or write the record of what is switched off: "_s +
                               kOverridesFile + u": Operation not permitted\n"_s + kDisableUsersBox);
    EXPECT_TRUE(files.exists(kUsersBackup + kLabel));
}

TEST_F(LaunchItemFlows, whatABatchThatFailedHasNotOverriddenIsTakenOutOfTheRecord) {
    addJob(kAgents + kLabel, u"com.box.agent"_s);
    addJob(kUsersAgents + u"com.own.plist"_s, u"com.own"_s);
    system.beginAdminBatch();
    EXPECT_TRUE(disable({kLabel, u"com.own.plist"_s}));
    EXPECT_EQ(servicesIn(files.read(kOverridesFile)),
              pendingRecordOf({{u"com.box.agent"_s, u"user"_s}, {u"com.own"_s, u"user"_s}}));
    scripts.failNext(u"User canceled."_s);
    EXPECT_FALSE(finishBatch());
    EXPECT_EQ(servicesIn(files.read(kOverridesFile)), recordOf({{u"com.own"_s, u"user"_s}}));
}

// ---- Inside a batch

TEST_F(LaunchItemFlows, insideABatchAPlistIsCalledDisabledWhenRootHasMovedIt) {
    files.addFile(kAgents + kLabel, "box");
    system.beginAdminBatch();
    EXPECT_TRUE(disable({kLabel}));
    takeTrace();
    EXPECT_TRUE(finishBatch());
    EXPECT_EQ(takeTrace(), prompted(kAgentsBoxCommand, u"Please."_s) +
                               u"  [APPLIED] Disabled launch item: com.box.plist @ /Library/LaunchAgents\n"_s);
}

TEST_F(LaunchItemFlows, whatRootHasNotDoneIsNotCalledDisabled) {
    addJob(kAgents + kLabel, u"com.box.job"_s);
    stuck.insert(kAgents + kLabel);
    commands.launchd.stubborn.insert(u"gui/501/com.box.job"_s);
    EXPECT_TRUE(disable({kLabel}));
    EXPECT_EQ(trace.last(), u"  [ERROR] Failed to disable launch item: com.box.plist @ /Library/LaunchAgents"_s);
    commands.launchd.stubborn.clear();
    EXPECT_TRUE(disable({kLabel}));
    EXPECT_EQ(trace.last(), u"  [APPLIED] Disabled launch item: com.box.plist @ /Library/LaunchAgents"_s)
        << "its override keeps it off";
}

TEST_F(LaunchItemFlows, insideABatchNothingIsCalledDisabledBeforeThePromptNorAfterARefusal) {
    files.addFile(kAgents + kLabel, "box");
    system.beginAdminBatch();
    EXPECT_TRUE(disable({kLabel}));
    EXPECT_EQ(takeTrace(), u"  [ACTION] Requesting Admin rights to disable 1 system launch item(s)...\n"
                           "  [ACTION] Queued disable for launch item: com.box.plist @ /Library/LaunchAgents\n"_s);
    scripts.failNext(u"User canceled."_s);
    EXPECT_FALSE(finishBatch());
    EXPECT_EQ(takeTrace(), prompted(kAgentsBoxCommand, u"Please."_s) +
                               u"  [ERROR] Administrator authorization was cancelled or failed: User canceled.\n"_s);
}

TEST_F(LaunchItemFlows, aPlistIsQueuedOnceInABatch) {
    files.addFile(kAgents + kLabel, "box");
    system.beginAdminBatch();
    EXPECT_TRUE(disable({kLabel}));
    trace.clear();
    EXPECT_TRUE(disable({kLabel, kLabel}));
    EXPECT_EQ(takeTrace(), u"  [INFO] Launch item already disabled: com.box.plist\n"
                           "  [INFO] Launch item already disabled: com.box.plist\n"_s);
    EXPECT_TRUE(finishBatch());
    EXPECT_EQ(takeTrace(), prompted(kAgentsBoxCommand, u"Please."_s) +
                               u"  [APPLIED] Disabled launch item: com.box.plist @ /Library/LaunchAgents\n"_s);
}

TEST_F(LaunchItemFlows, onePlistUnderTwoSpellingsIsQueuedOnce) {
    MemoryFileManager ignoringCase(MemoryFileManager::Case::Ignored);
    ignoringCase.addFile(kAgents + kLabel, "box");
    SystemManager other(hostWith(ignoringCase, clock), notifications);
    other.beginAdminBatch();
    EXPECT_TRUE(
        QCoro::waitFor(other.disableLaunchItems({kLabel, kLabel.toUpper().replace(u"PLIST"_s, u"plist"_s)}, {})));
    trace.clear();
    EXPECT_TRUE(QCoro::waitFor(other.finishAdminBatch(u"Please."_s)));
    EXPECT_EQ(takeTrace().count(u" && mv "_s), 1) << "a second move would delete the only copy";
}

TEST_F(LaunchItemFlows, twoPlistsThatDifferInCaseAreBothQueued) {
    files.addFile(kAgents + kLabel, "box");
    files.addFile(kAgents + u"COM.BOX.plist"_s, "BOX");
    system.beginAdminBatch();
    EXPECT_TRUE(disable({kLabel, u"COM.BOX.plist"_s}));
    trace.clear();
    EXPECT_TRUE(finishBatch());
    EXPECT_EQ(takeTrace().count(u" && mv "_s), 2);
}

TEST_F(LaunchItemFlows, theNextBatchQueuesAFailedOneAgain) {
    files.addFile(kAgents + kLabel, "box");
    for (int attempt = 1; attempt <= 2; ++attempt) {
        system.beginAdminBatch();
        disable({kLabel});
        scripts.failNext(u"User canceled."_s);
        finishBatch();
    }
    EXPECT_EQ(trace.filter(u"& do shell script"_s).size(), 2);
}

TEST_F(LaunchItemFlows, aLabelThatIsGivenTwiceIsMovedOnce) {
    files.addFile(kAgents + kLabel, "box");
    EXPECT_TRUE(disable({kLabel, kLabel}));
    EXPECT_EQ(takeTrace(), u"  [INFO] Launch item already disabled: com.box.plist\n"
                           "  [ACTION] Requesting Admin rights to disable 1 system launch item(s)...\n"_s +
                               prompted(kAgentsBoxCommand) +
                               u"  [APPLIED] Disabled launch item: com.box.plist @ /Library/LaunchAgents\n"_s);
}

// ---- What is never touched

TEST_F(LaunchItemFlows, audioSoftwareStays) {
    files.addFile(kUsersAgents + u"com.native.Traktor.plist"_s, {});
    EXPECT_TRUE(disable({u"com.native.Traktor.plist"_s}));
    EXPECT_EQ(takeTrace(), u"  [SKIPPED] Protected launch item: com.native.Traktor.plist\n"_s);
    EXPECT_TRUE(files.exists(kUsersAgents + u"com.native.Traktor.plist"_s));
}

TEST_F(LaunchItemFlows, anExcludedLabelStaysOnlyWhenItLooksLikeAnAgent) {
    const QStringList labels{u"a.agent.plist"_s, u"b.agent.plist"_s, kLabel};
    for (const QString& label : labels) {
        files.addFile(kUsersAgents + label, {});
    }
    EXPECT_TRUE(disable(labels, {u"launch:a.agent.plist"_s, u"b.agent.plist"_s, u"launch:com.box.plist"_s, kLabel}));
    EXPECT_EQ(takeTrace(), u"  [SKIPPED] Excluded App Background Activity launch item: a.agent.plist\n"
                           "  [SKIPPED] Excluded App Background Activity launch item: b.agent.plist\n"_s +
                               kDisableUsersBox);
    EXPECT_TRUE(files.exists(kUsersAgents + u"a.agent.plist"_s));
    EXPECT_TRUE(files.exists(kUsersAgents + u"b.agent.plist"_s));
}

TEST_F(LaunchItemFlows, aLabelThatIsNoPlainNameOfAPlistIsNotFound) {
    files.addFile(u"/Users/alex/Library/secret.plist"_s, {});
    files.addFile(kUsersAgents + u"sub/x.plist"_s, {});
    files.addFile(kUsersAgents + u"com.box"_s, {});
    files.addFile(kUsersAgents + u"a\nb.plist"_s, {});
    EXPECT_TRUE(disable({QString(), u"."_s, u".."_s, u"../secret.plist"_s, u"sub/x.plist"_s, u"com.box"_s,
                         u"a\nb.plist"_s, QString(u"x.plist"_s).append(QChar::Null).append(u".plist"_s)}));
    EXPECT_TRUE(trace.isEmpty());
    EXPECT_TRUE(files.exists(u"/Users/alex/Library/secret.plist"_s));
    EXPECT_TRUE(files.exists(kUsersAgents + u"sub/x.plist"_s));
    EXPECT_TRUE(files.exists(kUsersAgents + u"com.box"_s));
}

TEST_F(LaunchItemFlows, aHostileNameIsQuotedForTheShellOfRoot) {
    const QString label = u"-a'; rm -rf \"$HOME\" \\ .plist"_s;
    files.addFile(kDaemons + label, {});
    scripts.carryOut = [this, label](const QString&) { files.removeAsRoot(kDaemons + label); };
    EXPECT_TRUE(disable({label}));
    const QString quoted = uR"('/Library/LaunchDaemons/-a'\\''; rm -rf \"$HOME\" \\ .plist')"_s;
    const QString backup =
        uR"('/Users/alex/.quorvane_backup/_Library_LaunchDaemons/-a'\\''; rm -rf \"$HOME\" \\ .plist')"_s;
    const QString kept =
        uR"('/Library/Application Support/Quorvane/LaunchItems/_Library_LaunchDaemons/-a'\\''; rm -rf \"$HOME\" \\ .plist')"_s;
    EXPECT_EQ(takeTrace(),
              u"  [ACTION] Requesting Admin rights to disable 1 system launch item(s)...\n"_s +
                  prompted(u"mkdir -p '/Library/Application Support/Quorvane/LaunchItems/_Library_LaunchDaemons' && "
                           "cp -p "_s +
                           quoted + u' ' + kept +
                           u" && [ ! -L '/Users/alex/.quorvane_backup' ] && "
                           "[ ! -L '/Users/alex/.quorvane_backup/_Library_LaunchDaemons' ] && "
                           "mkdir -p '/Users/alex/.quorvane_backup/_Library_LaunchDaemons' && rm -f "_s +
                           backup + u" && (/bin/launchctl bootout system "_s + quoted +
                           u" 2>/dev/null || true ; true) && mv "_s + quoted + u' ' + backup) +
                  u"  [APPLIED] Disabled launch item: "_s + label + u" @ /Library/LaunchDaemons\n"_s);
}

// ---- Backup folders

TEST_F(LaunchItemFlows, aLinkInThePlaceOfABackupFolderStopsTheMove) {
    for (const QString& link : {kBackup, kDaemonsBackup.chopped(1), kUsersBackup.chopped(1)}) {
        MemoryFileManager fresh;
        SystemManager manager(hostWith(fresh, clock), notifications);
        fresh.addFolders(u"/tmp/elsewhere"_s);
        fresh.addLink(link, u"/tmp/elsewhere"_s);
        fresh.addFile(kUsersAgents + kLabel, "mine");
        fresh.addFile(kDaemons + kLabel, "theirs");
        EXPECT_FALSE(QCoro::waitFor(manager.disableLaunchItems(QStringList(kLabel), {})));
        EXPECT_TRUE(manager.logMessages().contains(u"  [ERROR] Backup folder is not usable: "_s + link));
        EXPECT_EQ(fresh.list(u"/tmp/elsewhere"_s), QStringList()) << link.toStdString();
        EXPECT_EQ(fresh.exists(kUsersAgents + kLabel), link != kDaemonsBackup.chopped(1));
        EXPECT_EQ(trace.filter(u"_Library_LaunchDaemons/com.box.plist"_s).isEmpty(), link != kUsersBackup.chopped(1));
        trace.clear();
    }
}

TEST_F(LaunchItemFlows, aFileInThePlaceOfABackupFolderStopsTheMove) {
    files.addFile(kUsersAgents + kLabel, "mine");
    files.addFile(kBackup, "a file");
    EXPECT_FALSE(disable({kLabel}));
    EXPECT_EQ(takeTrace(), u"  [ERROR] Backup folder is not usable: /Users/alex/.quorvane_backup\n"_s);
    EXPECT_TRUE(files.exists(kUsersAgents + kLabel));
}

TEST_F(LaunchItemFlows, aBackupFolderThatCannotBeMadeStopsTheMoveAndNoOther) {
    files.addFile(kUsersAgents + kLabel, "mine");
    files.addFile(kAgents + kLabel, "theirs");
    files.failOn(Operation::CreateFolders, kUsersBackup.chopped(1));
    EXPECT_FALSE(disable({kLabel}));
    EXPECT_EQ(takeTrace(),
              u"  [ERROR] Backup folder is not usable: /Users/alex/.quorvane_backup/UserHome_Library_LaunchAgents\n"
              "  [ACTION] Requesting Admin rights to disable 1 system launch item(s)...\n"_s +
                  prompted(kAgentsBoxCommand) +
                  u"  [APPLIED] Disabled launch item: com.box.plist @ /Library/LaunchAgents\n"_s);
    EXPECT_TRUE(files.exists(kUsersAgents + kLabel));
}

TEST_F(LaunchItemFlows, anOlderBackupThatCannotBeDeletedLeavesThePlistInLaunchd) {
    files.addFile(kUsersAgents + kLabel, "new");
    files.addFile(kUsersBackup + kLabel, "old");
    files.failOn(Operation::Remove, kUsersBackup + kLabel);
    EXPECT_FALSE(disable({kLabel}));
    EXPECT_EQ(takeTrace(), u"  [ERROR] Failed to disable launch item com.box.plist: "
                           "/Users/alex/.quorvane_backup/UserHome_Library_LaunchAgents/com.box.plist: Operation not "
                           "permitted\n"_s);
    EXPECT_EQ(files.read(kUsersAgents + kLabel), "new");
}

TEST_F(LaunchItemFlows, aMoveThatFailsStopsNoOther) {
    files.addFile(kUsersAgents + kLabel, "box");
    files.addFile(kUsersAgents + u"com.a.plist"_s, "a");
    files.failOn(Operation::Move, kUsersAgents + u"com.a.plist"_s);
    EXPECT_FALSE(disable({u"com.a.plist"_s, kLabel}));
    EXPECT_EQ(takeTrace(), u"$ /bin/launchctl bootout gui/501 /Users/alex/Library/LaunchAgents/com.a.plist\n"
                           "  [ERROR] Failed to disable launch item com.a.plist: "
                           "/Users/alex/Library/LaunchAgents/com.a.plist: Operation not permitted\n"_s +
                               kDisableUsersBox);
}

TEST_F(LaunchItemFlows, aFailureAtAnyChangeIsReportedAndLosesNoPlist) {
    // The first makes the outer folder alone, which the second makes as well; the next two note what is put aside.
    const QSet<int> harmless{1, 3, 4};
    for (int number = 1; number <= 5; ++number) {
        MemoryFileManager full;
        SystemManager manager(hostWith(full, clock), notifications);
        full.addFile(kUsersAgents + kLabel, "box");
        full.failAtChange(number);
        const bool succeeded = QCoro::waitFor(manager.disableLaunchItems(QStringList(kLabel), {}));
        EXPECT_EQ(succeeded, harmless.contains(number)) << number;
        EXPECT_EQ(full.exists(kUsersAgents + kLabel), !succeeded);
        EXPECT_EQ(full.exists(kUsersBackup + kLabel), succeeded);
    }
}

// ---- Restoring

TEST_F(LaunchItemFlows, restoringWithoutABackupDoesNothing) {
    restore();
    files.addFolders(kUsersBackup);
    restore();
    EXPECT_TRUE(trace.isEmpty());
    EXPECT_EQ(files.changes(), 0);
}

TEST_F(LaunchItemFlows, whatCanBeMovedBackIsRestoredAndLoaded) {
    files.addFolders(kUsersAgents);
    files.addFile(kUsersBackup + kLabel, "box");
    files.addFile(kUsersBackup + u"com.a.plist"_s, "a");
    files.addFile(kDaemonsBackup + kLabel, "root's");
    propertyLists.lists.insert(kUsersBackup + kLabel, {{u"Label"_s, u"com.box.job"_s}});
    files.failOn(Operation::Move, kDaemonsBackup + kLabel);
    restore();
    EXPECT_EQ(takeTrace(), u"$ /bin/launchctl enable gui/501/com.box.job\n"
                           "$ /bin/launchctl load /Users/alex/Library/LaunchAgents/com.box.plist\n"
                           "$ /bin/launchctl load /Users/alex/Library/LaunchAgents/com.a.plist\n"
                           "  [ERROR] Could not restore "_s +
                               kDaemonsBackup + kLabel +
                               u": Operation not permitted\n"
                               "  [REVERTED] Restored 2 LaunchAgents/Daemons.\n"_s);
    EXPECT_EQ(files.read(kUsersAgents + kLabel), "box");
    EXPECT_EQ(files.list(kUsersBackup), QStringList());
    EXPECT_EQ(files.read(kDaemonsBackup + kLabel), "root's");
}

TEST_F(LaunchItemFlows, whatIsRecordedIsLiftedBeforeAnythingIsLoadedAndOnlyOnce) {
    files.addFolders(kUsersAgents);
    files.addFile(kUsersBackup + kLabel, "box");
    propertyLists.lists.insert(kUsersBackup + kLabel, {{u"Label"_s, u"com.box.job"_s}});
    files.addFile(kOverridesFile, recordOf({{u"com.helper"_s, u"user"_s},
                                            {u"com.box.job"_s, u"user"_s},
                                            {u"com.daemon"_s, u"system"_s},
                                            {u"com.apple.planted"_s, u"user"_s}}));
    restore();
    EXPECT_EQ(takeTrace(), u"$ /bin/launchctl enable gui/501/com.helper\n"
                           "$ /bin/launchctl enable gui/501/com.box.job\n"
                           "$ /bin/launchctl load /Users/alex/Library/LaunchAgents/com.box.plist\n"
                           "  [REVERTED] Restored 1 LaunchAgents/Daemons.\n"_s);
}

TEST_F(LaunchItemFlows, whatThisVersionHasPutAsideWithoutAnOverrideLiftsNoneOfTheUsers) {
    addJob(kUsersAgents + kLabel, u"com.box.job"_s);
    addJob(kAgents + u"com.twin.plist"_s, u"com.box.job"_s); // stays, so the label isn't overridden
    EXPECT_TRUE(disable({kLabel}));
    propertyLists.lists.insert(kUsersBackup + kLabel, {{u"Label"_s, u"com.box.job"_s}});
    commands.launchd.overrides.insert(u"gui/501/com.box.job"_s, true); // by the user, later on
    trace.clear();
    restore();
    EXPECT_TRUE(files.exists(kUsersAgents + kLabel));
    EXPECT_TRUE(commands.launchd.isOff(u"gui/501/com.box.job"_s));
    EXPECT_TRUE(files.exists(kPutAsideFile));
    QCoro::waitFor(system.settleKeptLaunchItems());
    EXPECT_FALSE(files.exists(kPutAsideFile)) << "nothing is aside any more";
}

TEST_F(LaunchItemFlows, whatCannotBeNotedIsToldAndGoesAllTheSame) {
    files.addFile(kUsersAgents + kLabel, "box");
    files.failOn(Operation::Write, kPutAsideFile);
    EXPECT_TRUE(disable({kLabel}));
    EXPECT_EQ(takeTrace(), u"  [ERROR] Could not note what is put aside: "_s + kPutAsideFile +
                               u": Operation not permitted\n"_s + kDisableUsersBox);
}

TEST_F(LaunchItemFlows, anOverrideIsClearedOnlyUnderALabelThatCanBeNamed) {
    files.addFolders(kUsersAgents);
    const QList<QVariant> values{
        QString(), u"."_s, u".."_s, u"-x"_s, u"a/b"_s, u"../../system/x"_s, u"a\nb"_s, QStringList{u"x"_s}, true, 7};
    for (const QVariant& value : values) {
        files.addFile(kUsersBackup + kLabel, "box");
        propertyLists.lists.insert(kUsersBackup + kLabel, {{u"Label"_s, value}});
        restore();
        EXPECT_EQ(takeTrace(), u"$ /bin/launchctl load /Users/alex/Library/LaunchAgents/com.box.plist\n"
                               "  [REVERTED] Restored 1 LaunchAgents/Daemons.\n"_s);
        files.remove(kUsersAgents + kLabel);
    }
}

TEST_F(LaunchItemFlows, whatLaunchctlSaysKeepsNothingFromBeingRestored) {
    files.addFolders(kUsersAgents);
    files.addFile(kUsersBackup + kLabel, "box");
    propertyLists.lists.insert(kUsersBackup + kLabel, {{u"Label"_s, u"com.box"_s}});
    commands.fail(u"/bin/launchctl enable gui/501/com.box"_s, 1);
    commands.fail(u"/bin/launchctl load /Users/alex/Library/LaunchAgents/com.box.plist"_s, 5);
    restore();
    EXPECT_EQ(takeTrace(), u"$ /bin/launchctl enable gui/501/com.box\n"
                           "$ /bin/launchctl load /Users/alex/Library/LaunchAgents/com.box.plist\n"
                           "  [REVERTED] Restored 1 LaunchAgents/Daemons.\n"_s);
}

TEST_F(LaunchItemFlows, onlyPlistsAreRestored) {
    files.addFolders(kUsersAgents);
    files.addFile(kUsersBackup + u".DS_Store"_s, "Finder's");
    files.addFile(kUsersBackup + u"a\nb.plist"_s, "odd");
    restore();
    EXPECT_TRUE(trace.isEmpty());
    EXPECT_EQ(files.list(kUsersAgents), QStringList());
}

TEST_F(LaunchItemFlows, aLinkInThePlaceOfABackupFolderGivesNothingBack) {
    for (const QString& link : {kBackup, kDaemonsBackup.chopped(1), kUsersBackup.chopped(1)}) {
        MemoryFileManager fresh;
        SystemManager manager(hostWith(fresh, clock), notifications);
        fresh.addFolders(kUsersAgents);
        fresh.addFolders(kDaemons);
        fresh.addFile(u"/tmp/elsewhere/com.planted.plist"_s, "planted");
        fresh.addFile(u"/tmp/elsewhere/UserHome_Library_LaunchAgents/com.planted.plist"_s, "planted");
        fresh.addLink(link, u"/tmp/elsewhere"_s);
        QCoro::waitFor(manager.restoreLaunchItems());
        EXPECT_EQ(manager.logMessages(), QStringList(u"  [ERROR] Backup folder is not usable: "_s + link));
        EXPECT_EQ(fresh.list(kUsersAgents) + fresh.list(kDaemons), QStringList());
        EXPECT_EQ(trace, QStringList());
    }
}

TEST_F(LaunchItemFlows, aPlistThatHasComeBackSinceStaysAndIsSwitchedOnAgain) {
    files.addFile(kUsersAgents + kLabel, "new");
    files.addFile(kUsersBackup + kLabel, "old");
    propertyLists.lists.insert(kUsersAgents + kLabel, {{u"Label"_s, u"com.box.job"_s}});
    restore();
    EXPECT_EQ(takeTrace(), u"$ /bin/launchctl enable gui/501/com.box.job\n"
                           "$ /bin/launchctl load /Users/alex/Library/LaunchAgents/com.box.plist\n"_s);
    EXPECT_EQ(files.read(kUsersAgents + kLabel), "new");
    EXPECT_EQ(files.list(kUsersBackup), QStringList(u"com.box.plist.replaced"_s));
    restore(); // what the user does with the new one from now on is theirs
    EXPECT_TRUE(trace.isEmpty());
}

TEST_F(LaunchItemFlows, aSystemPlistThatHasComeBackSinceIsLeftToRoot) {
    files.addFile(kDaemons + kLabel, "new");
    files.addFile(kDaemonsBackup + kLabel, "old");
    restore();
    EXPECT_TRUE(trace.isEmpty());
    EXPECT_EQ(files.read(kDaemons + kLabel), "new");
    EXPECT_EQ(files.read(kDaemonsBackup + kLabel), "old");
}

TEST_F(LaunchItemFlows, aPlistOfTheUsersThatCannotBeMovedBackIsSaid) {
    files.addFolders(kUsersAgents);
    files.addFile(kUsersBackup + kLabel, "box");
    files.failOn(Operation::Move, kUsersBackup + kLabel);
    restore();
    EXPECT_EQ(takeTrace(), u"  [ERROR] Could not restore "_s + kUsersBackup + kLabel +
                               u": Operation not permitted\n  [INFO] Not restored: com.box.plist\n"_s);
    EXPECT_EQ(files.read(kUsersBackup + kLabel), "box");
}

TEST_F(LaunchItemFlows, aProgramThatQuitsMovesNothingBack) {
    files.addFolders(kUsersAgents);
    files.addFile(kUsersBackup + kLabel, "box");
    commands.shutDown();
    restore();
    EXPECT_TRUE(trace.isEmpty()); // the override couldn't be cleared: the next time finds the backup
    EXPECT_EQ(files.read(kUsersBackup + kLabel), "box");
}

TEST_F(LaunchItemFlows, aBackupFolderThatCannotBeListedKeepsNoOtherFromBeingRestored) {
    files.addFolders(kUsersAgents);
    files.addFolders(kDaemons);
    files.addFile(kUsersBackup + kLabel, "box");
    files.addFile(kDaemonsBackup + kLabel, "box");
    files.failOn(Operation::List, kUsersBackup.chopped(1));
    restore();
    EXPECT_EQ(takeTrace(), u"$ /bin/launchctl load /Library/LaunchDaemons/com.box.plist\n"
                           "  [REVERTED] Restored 1 LaunchAgents/Daemons.\n"_s);
}

// ---- As it was: whether its job was loaded

TEST_F(LaunchItemFlows, whetherItsJobWasLoadedIsNotedBeforeItGoes) {
    addJob(kUsersAgents + kLabel, u"com.box.job"_s);
    addJob(kUsersAgents + u"com.idle.plist"_s, u"com.idle"_s);
    addJob(kDaemons + u"com.vpn.plist"_s, u"com.vpn"_s);
    commands.launchd.sessionJobs = {u"com.box.job"_s, u"com.idle"_s};
    commands.launchd.stoppedJobs = {u"com.idle"_s};
    EXPECT_TRUE(disable({kLabel, u"com.idle.plist"_s, u"com.vpn.plist"_s}));
    const QString lines = takeTrace();
    EXPECT_EQ(lines.count(u"launchctl list"_s), 1) << lines.toStdString();
    EXPECT_EQ(lines.count(u"launchctl print system/com.vpn"_s), 1);
    EXPECT_LT(lines.indexOf(u"launchctl print system/com.vpn"_s), lines.indexOf(u"launchctl bootout"_s));
    EXPECT_LT(lines.indexOf(u"launchctl list"_s), lines.indexOf(u"launchctl disable"_s));
    EXPECT_EQ(files.read(kPutAsideFile), R"([
  {
    "path": "/Library/LaunchDaemons/com.vpn.plist",
    "wasLoaded": true
  },
  {
    "path": "/Users/alex/Library/LaunchAgents/com.box.plist",
    "wasLoaded": true
  },
  {
    "path": "/Users/alex/Library/LaunchAgents/com.idle.plist",
    "wasLoaded": false
  }
])");
}

TEST_F(LaunchItemFlows, whatWasStoppedComesBackStopped) {
    addJob(kUsersAgents + kLabel, u"com.box.job"_s);
    commands.launchd.stoppedJobs = {u"com.box.job"_s};
    EXPECT_TRUE(disable({kLabel}));
    takeTrace();
    restore();
    EXPECT_EQ(takeTrace(), u"$ /bin/launchctl enable gui/501/com.box.job\n"
                           "  [REVERTED] Restored 1 LaunchAgents/Daemons.\n"_s);
    EXPECT_TRUE(files.exists(kUsersAgents + kLabel));
}

TEST_F(LaunchItemFlows, whereLaunchdDoesNotTellOfJobsNothingIsLoaded) {
    commands.launchd.isMuteOfJobs = true;
    addJob(kUsersAgents + kLabel, u"com.box.job"_s);
    EXPECT_TRUE(disable({kLabel}));
    restore();
    EXPECT_FALSE(takeTrace().contains(u"launchctl load"_s));
    EXPECT_TRUE(files.exists(kUsersAgents + kLabel));
}

TEST_F(LaunchItemFlows, aPlistThatAnUpdaterHasPutBackIsLoadedOnlyWhereItsJobWasLoaded) {
    for (const bool wasLoaded : {true, false}) {
        addJob(kUsersAgents + kLabel, u"com.box.job"_s);
        files.addFile(kUsersBackup + kLabel, "older");
        files.addFile(kPutAsideFile, R"([{"path": "/Users/alex/Library/LaunchAgents/com.box.plist", "wasLoaded": )" +
                                         QByteArray(wasLoaded ? "true" : "false") + "}]");
        restore();
        EXPECT_EQ(takeTrace().contains(u"launchctl load /Users/alex/Library/LaunchAgents/com.box.plist"_s), wasLoaded);
        EXPECT_EQ(files.read(kUsersAgents + kLabel), "box");
    }
}

TEST_F(LaunchItemFlows, whatAKilledRunHasStoppedAndNotMovedIsLoadedAtItsPlace) {
    addJob(kUsersAgents + kLabel, u"com.box.job"_s);
    addJob(kUsersAgents + u"com.idle.plist"_s, u"com.idle"_s);
    files.addFile(kPutAsideFile, R"([{"path": "/Users/alex/Library/LaunchAgents/com.box.plist", "wasLoaded": true},
        {"path": "/Users/alex/Library/LaunchAgents/com.idle.plist", "wasLoaded": false},
        {"path": "/Users/alex/Downloads/com.evil.plist", "wasLoaded": true},
        {"path": "/Users/alex/Library/LaunchAgents/../../Downloads/com.evil.plist", "wasLoaded": true}])");
    files.addFile(u"/Users/alex/Downloads/com.evil.plist"_s, "evil");
    restore();
    EXPECT_EQ(takeTrace(), u"$ /bin/launchctl load /Users/alex/Library/LaunchAgents/com.box.plist\n"_s);
}

TEST_F(LaunchItemFlows, whatWasOffBeforeTheApplyThatIsTakenBackStaysOff) {
    addJob(kUsersAgents + kLabel, u"com.box.job"_s);
    addJob(kUsersAgents + u"com.old.plist"_s, u"com.old"_s);
    commands.launchd.sessionJobs = {u"com.box.job"_s, u"com.old"_s};
    system.beginAdminBatch();
    EXPECT_TRUE(disable({u"com.old.plist"_s}));
    EXPECT_TRUE(finishBatch());
    const KeptOff kept = system.keptOff();
    EXPECT_TRUE(disable({kLabel}));
    takeTrace();
    AdminBatch batch(system, scripts);
    LaunchItems items(system, batch);
    QCoro::waitFor(items.restore(kept));
    EXPECT_EQ(takeTrace(), u"$ /bin/launchctl enable gui/501/com.box.job\n"
                           "$ /bin/launchctl load /Users/alex/Library/LaunchAgents/com.box.plist\n"
                           "  [REVERTED] Restored 1 LaunchAgents/Daemons.\n"_s);
    EXPECT_TRUE(files.exists(kUsersBackup + u"com.old.plist"_s));
}

} // namespace quorvane
