#include "fakes/BackgroundList.h"
#include "fakes/ScriptedSystem.h"

#include "core/AdminScript.h"
#include "startup/background/BackgroundLoginItemChangePlan.h"

namespace quorvane {

namespace {

class AdminBatchTest : public ScriptedSystem {
protected:
    CommandResult runAdmin(const QString& line, const QString& prompt) {
        return QCoro::waitFor(system.runAdminCommand(line, prompt));
    }
    static QString neutral(const QString& line) {
        return u"& do shell script \"%1\" with prompt \"Quorvane is applying system changes.\" with administrator "
               "privileges\n"_s.arg(line);
    }
    bool finish(const QString& prompt) { return QCoro::waitFor(system.finishAdminBatch(prompt)); }
};

} // namespace

TEST_F(AdminBatchTest, onlyMdutilAndTmutilAreMadeTolerant) {
    const QStringList commandList{u"mdutil -a -i off"_s, u"pmset -a sms 0"_s, u"tmutil disable"_s};
    EXPECT_EQ(joinedAdminCommands(makeAdminCommandsTolerant(commandList)),
              u"mdutil -a -i off || true ; pmset -a sms 0 ; tmutil disable || true"_s);
    EXPECT_EQ(makeAdminCommandsTolerant({}), QStringList());
}

TEST_F(AdminBatchTest, aRunWithoutABatchRunsAtOnce) {
    scripts.answerNext({u"text"_s, std::nullopt});
    const CommandResult result = runAdmin(u"pmset -a sms 0"_s, u"Please."_s);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.standardOutput, u"text"_s);
    EXPECT_EQ(result.standardError, QString());
    EXPECT_EQ(takeTrace(),
              u"& do shell script \"pmset -a sms 0\" with prompt \"Please.\" with administrator privileges\n"_s);
}

TEST_F(AdminBatchTest, aFailedRunGivesTheSystemsMessage) {
    scripts.failNext(u"User canceled."_s);
    const CommandResult cancelled = runAdmin(u"true"_s, u"Please."_s);
    EXPECT_EQ(cancelled.status, 1);
    EXPECT_EQ(cancelled.standardError, u"User canceled."_s);
    scripts.answerNext({std::nullopt, std::nullopt, std::nullopt});
    EXPECT_EQ(runAdmin(u"true"_s, u"Please."_s).standardError, u"Unknown error"_s);
    scripts.answerNext({std::nullopt, std::nullopt, -128});
    EXPECT_EQ(runAdmin(u"true"_s, u"Please."_s).standardError, u"User canceled."_s);
    scripts.answerNext({std::nullopt, std::nullopt, -60007});
    EXPECT_EQ(runAdmin(u"true"_s, u"Please."_s).standardError, u"Unknown error"_s);
    scripts.answerNext({std::nullopt, u"Abgebrochen."_s, -128});
    EXPECT_EQ(runAdmin(u"true"_s, u"Please."_s).standardError, u"Abgebrochen."_s);
}

TEST_F(AdminBatchTest, whatFailedOnTheWayToTheShellIsNotAnswered) {
    const struct {
        std::optional<int> number;
        bool isAnswered;
    } cases[] = {{1, true}, {255, true}, {-128, false}, {-60007, false}, {std::nullopt, false}};
    for (const auto& [number, isAnswered] : cases) {
        scripts.answerNext({std::nullopt, u"rm: x: Operation not permitted"_s, number});
        const CommandResult result = runAdmin(u"rm -rf x"_s, u"Please."_s);
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.isAnswered, isAnswered) << number.value_or(0);
    }
    EXPECT_FALSE(runAdmin(u"true"_s, u"7\" mix"_s).isAnswered);
    EXPECT_TRUE(runAdmin(u"true"_s, u"Please."_s).isAnswered);
}

TEST_F(AdminBatchTest, onlyTheSameLineShowsTheNeutralPrompt) {
    runAdmin(u"a"_s, u"First."_s);
    runAdmin(u"b"_s, u"Second."_s);
    runAdmin(u"a"_s, u"Third."_s);
    runAdmin(u"b "_s, u"Fourth."_s);
    EXPECT_EQ(takeTrace(), u"& do shell script \"a\" with prompt \"First.\" with administrator privileges\n"
                           "& do shell script \"b\" with prompt \"Second.\" with administrator privileges\n"_s +
                               neutral(u"a"_s) +
                               u"& do shell script \"b \" with prompt \"Fourth.\" with administrator privileges\n"_s);
}

TEST_F(AdminBatchTest, theNeutralPromptLastsFiveMinutes) {
    runAdmin(u"a"_s, u"First."_s);
    clock.time = clock.time.addMSecs(5 * 60'000 - 1);
    runAdmin(u"a"_s, u"Second."_s);
    clock.time = clock.time.addSecs(300);
    runAdmin(u"a"_s, u"Third."_s);
    clock.time = clock.time.addSecs(-1);
    runAdmin(u"a"_s, u"Fourth."_s);
    EXPECT_EQ(takeTrace(), u"& do shell script \"a\" with prompt \"First.\" with administrator privileges\n"_s +
                               neutral(u"a"_s) +
                               u"& do shell script \"a\" with prompt \"Third.\" with administrator privileges\n"
                               "& do shell script \"a\" with prompt \"Fourth.\" with administrator privileges\n"_s)
        << "the clock was set back";
}

TEST_F(AdminBatchTest, theNeutralPromptEndsWithAFailureAndWithTheAuthorization) {
    runAdmin(u"a"_s, u"First."_s);
    scripts.failNext(u"User canceled."_s);
    runAdmin(u"a"_s, u"Second."_s);
    runAdmin(u"a"_s, u"Third."_s);
    system.clearAdminAuthorization();
    runAdmin(u"a"_s, u"Fourth."_s);
    EXPECT_EQ(takeTrace(), u"& do shell script \"a\" with prompt \"First.\" with administrator privileges\n"_s +
                               neutral(u"a"_s) +
                               u"& do shell script \"a\" with prompt \"Third.\" with administrator privileges\n"
                               "& do shell script \"a\" with prompt \"Fourth.\" with administrator privileges\n"_s);
}

TEST_F(AdminBatchTest, aPromptWithADoubleQuoteNeverReachesTheScriptEngine) {
    const CommandResult result = runAdmin(u"a"_s, u"Apply \"Live\"."_s);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.standardError, u"The authorization prompt can't contain a double quote: Apply \"Live\"."_s);
    EXPECT_TRUE(trace.isEmpty());
}

TEST_F(AdminBatchTest, aPromptWithADoubleQuoteIsNotShownAfterASuccessAndSoRuns) {
    runAdmin(u"a"_s, u"First."_s);
    EXPECT_EQ(runAdmin(u"a"_s, u"Apply \"Live\"."_s).status, 0);
    EXPECT_EQ(trace.last() + u'\n', neutral(u"a"_s));
    EXPECT_EQ(runAdmin(u"b"_s, u"Apply \"Live\"."_s).status, 1);
}

TEST_F(AdminBatchTest, aLineOfMoreThanTwoHundredThousandBytesNeverReachesTheScriptEngine) {
    const QString longest = u"é"_s.repeated(100'000); // two bytes each
    EXPECT_EQ(runAdmin(longest, u"First."_s).status, 0);
    EXPECT_EQ(takeTrace(),
              u"& "_s + ScriptedScriptEngine::withoutPath(adminScriptSource(longest, u"First."_s)) + u'\n');

    const CommandResult tooLong = runAdmin(longest + u'x', u"Second."_s);
    EXPECT_EQ(tooLong.status, 1);
    EXPECT_EQ(tooLong.standardOutput, QString());
    EXPECT_EQ(tooLong.standardError, u"The administrator command line is too long: 200001 bytes of at most 200000"_s);
    EXPECT_TRUE(trace.isEmpty());

    EXPECT_EQ(runAdmin(longest, u"Third."_s).status, 0);
    EXPECT_TRUE(trace.last().contains(u"Quorvane is applying system changes."_s))
        << "the authorization that the system may hold is as it was";
}

TEST_F(AdminBatchTest, aBatchThatIsTooLongFailsAndIsLogged) {
    system.beginAdminBatch();
    system.queueAdminCommands({QString(150'000, u'a')});
    system.queueAdminCommands({QString(50'000, u'b')});
    EXPECT_FALSE(finish(u"Please."_s));
    EXPECT_EQ(takeTrace(), u"  [ERROR] Administrator authorization was cancelled or failed: The administrator command "
                           "line is too long: 200003 bytes of at most 200000\n"_s);
    EXPECT_EQ(system.adminBatchDepth(), 0);
}

TEST_F(AdminBatchTest, aLineWithANullCharacterIsRefusedBeforeAnyPrompt) {
    const CommandResult result =
        QCoro::waitFor(system.executeAdminScript(u"true '"_s + QChar::Null + u'\'', u"Please."_s));
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.standardError, u"The administrator command line holds a null character"_s);
    EXPECT_TRUE(trace.isEmpty());
}

TEST_F(AdminBatchTest, quotesAndBackslashesOfTheLineAreEscaped) {
    runAdmin(uR"(echo "a" 'it'\''s')"_s, uR"(C:\new.)"_s);
    EXPECT_EQ(takeTrace(),
              uR"(& do shell script "echo \"a\" 'it'\\''s'" with prompt "C:\\new." with administrator privileges)"_s +
                  u'\n');
}

TEST_F(AdminBatchTest, everyLineBeginsWithASearchPathOfRootsOwn) {
    QStringList sources;
    scripts.carryOut = [&sources](const QString& source) { sources.append(source); };
    runAdmin(u"pmset -a sms 0"_s, u"Please."_s);
    system.beginAdminBatch();
    system.queueAdminCommands({u"mdutil -a -i off"_s, u"networksetup -listallnetworkservices"_s});
    finish(u"Please."_s);
    EXPECT_EQ(sources,
              (QStringList{
                  u"do shell script \"PATH=/usr/bin:/bin:/usr/sbin:/sbin; export PATH; pmset -a sms 0\" with prompt "
                  "\"Please.\" with administrator privileges"_s,
                  u"do shell script \"PATH=/usr/bin:/bin:/usr/sbin:/sbin; export PATH; mdutil -a -i off || true ; "
                  "networksetup -listallnetworkservices\" with prompt \"Please.\" with administrator privileges"_s}));
}

TEST_F(AdminBatchTest, aPromptIsShownOnOneLine) {
    runAdmin(u"a"_s, u"Apply Live.\r\n\nmacOS\u2028needs\u202E it\u2066.\t"_s);
    EXPECT_EQ(takeTrace(), u"& do shell script \"a\" with prompt \"Apply Live.   macOS needs  it . \" with "
                           "administrator privileges\n"_s);
}

TEST_F(AdminBatchTest, anEmptyBatchShowsNoPromptAndSucceeds) {
    system.beginAdminBatch();
    EXPECT_EQ(system.adminBatchDepth(), 1);
    EXPECT_TRUE(finish(u"Please."_s));
    EXPECT_TRUE(trace.isEmpty());
    EXPECT_EQ(system.adminBatchDepth(), 0);
}

TEST_F(AdminBatchTest, aBatchRunsItsEntriesAsOneLineUnderOnePrompt) {
    system.beginAdminBatch();
    system.queueAdminCommands({u"mdutil -a -i off"_s, u"pmset -a sms 0"_s});
    EXPECT_EQ(runAdmin(u"false"_s, u"unused"_s).status, 0);
    EXPECT_TRUE(trace.isEmpty());
    EXPECT_TRUE(finish(u"Please."_s));
    EXPECT_EQ(takeTrace(), u"& do shell script \"mdutil -a -i off || true ; pmset -a sms 0 ; false\" with prompt "
                           "\"Please.\" with administrator privileges\n"_s);
}

TEST_F(AdminBatchTest, aFailedBatchIsLoggedAndItsCommandsAreGone) {
    system.beginAdminBatch();
    system.queueAdminCommands({u"pmset -a sms 0"_s});
    scripts.failNext(u"User canceled."_s);
    EXPECT_FALSE(finish(u"Please."_s));
    EXPECT_EQ(trace.last(), u"  [ERROR] Administrator authorization was cancelled or failed: User canceled."_s);
    EXPECT_EQ(system.adminBatchDepth(), 0);
    takeTrace();
    system.beginAdminBatch();
    EXPECT_TRUE(finish(u"Please."_s));
    EXPECT_TRUE(trace.isEmpty());
}

TEST_F(AdminBatchTest, aQueuedRunHasSucceededThoughItsBatchFailsLater) {
    system.beginAdminBatch();
    const CommandResult queued = runAdmin(u"pmset -a sms 0"_s, u"unused"_s);
    EXPECT_EQ(queued.status, 0);
    EXPECT_EQ(queued.standardOutput, QString());
    EXPECT_EQ(queued.standardError, QString());
    EXPECT_TRUE(trace.isEmpty());
    scripts.failNext(u"User canceled."_s);
    EXPECT_FALSE(finish(u"Please."_s));
    EXPECT_EQ(takeTrace(),
              u"& do shell script \"pmset -a sms 0\" with prompt \"Please.\" with administrator privileges\n"
              "  [ERROR] Administrator authorization was cancelled or failed: User canceled.\n"_s);
}

TEST_F(AdminBatchTest, anInnerBatchKeepsWhatTheOuterOneQueued) {
    system.beginAdminBatch();
    system.queueAdminCommands({u"a"_s});
    system.beginAdminBatch();
    system.queueAdminCommands({u"b"_s});
    EXPECT_TRUE(finish(u"Please."_s));
    EXPECT_EQ(system.adminBatchDepth(), 1);
    EXPECT_EQ(takeTrace(), u"& do shell script \"a ; b\" with prompt \"Please.\" with administrator privileges\n"_s);
}

// ---- Without an open batch

TEST_F(AdminBatchTest, closingWithoutABatchSucceedsAndLeavesTheNextBatchWhole) {
    EXPECT_TRUE(finish(u"Please."_s));
    EXPECT_EQ(system.adminBatchDepth(), 0);
    system.beginAdminBatch();
    EXPECT_EQ(system.adminBatchDepth(), 1);
    runAdmin(u"pmset -a sms 0"_s, u"unused"_s);
    EXPECT_TRUE(trace.isEmpty());
    EXPECT_TRUE(finish(u"Please."_s));
    EXPECT_EQ(trace.size(), 1);
    EXPECT_EQ(system.adminBatchDepth(), 0);
}

TEST_F(AdminBatchTest, whatIsQueuedWithoutABatchRunsWhenOneIsClosed) {
    system.queueAdminCommands({u"pmset -a sms 0"_s});
    EXPECT_TRUE(trace.isEmpty());
    EXPECT_TRUE(finish(u"Please."_s));
    EXPECT_EQ(takeTrace(),
              u"& do shell script \"pmset -a sms 0\" with prompt \"Please.\" with administrator privileges\n"_s);
    EXPECT_EQ(system.adminBatchDepth(), 0);
}

TEST_F(AdminBatchTest, whatIsQueuedWithoutABatchNeverRunsInTheNextOne) {
    system.queueAdminCommands({u"pmset -a sms 0"_s});
    system.beginAdminBatch();
    system.queueAdminCommands({u"pmset -a sms 1"_s});
    EXPECT_TRUE(finish(u"Please."_s));
    EXPECT_EQ(takeTrace(),
              u"& do shell script \"pmset -a sms 1\" with prompt \"Please.\" with administrator privileges\n"_s);
}

// ---- A batch that waits for the background task list

TEST_F(AdminBatchTest, aDeferredBatchBeginsWithAnEmptyPlan) {
    EXPECT_EQ(system.backgroundTaskItemsFetchMode(), SystemManager::BackgroundTaskItemsFetchMode::automatic);
    EXPECT_FALSE(system.pendingBackgroundLoginItemChanges().has_value());
    system.deferBackgroundTaskFetchToAdminBatch();
    system.beginAdminBatch();
    EXPECT_EQ(system.backgroundTaskItemsFetchMode(), SystemManager::BackgroundTaskItemsFetchMode::deferredToAdminBatch);
    EXPECT_EQ(system.pendingBackgroundLoginItemChanges(), BackgroundLoginItemChangePlan());
    EXPECT_FALSE(system.pendingBackgroundLoginItemChanges()->hasWork());
}

TEST_F(AdminBatchTest, aPlanWithoutWorkTakesNoDump) {
    system.deferBackgroundTaskFetchToAdminBatch();
    system.beginAdminBatch();
    EXPECT_TRUE(finish(u"Please."_s));
    EXPECT_TRUE(trace.isEmpty());
}

TEST_F(AdminBatchTest, theDumpIsTheLastOfTheLine) {
    system.deferBackgroundTaskFetchToAdminBatch();
    system.beginAdminBatch();
    QCoro::waitFor(system.applyCleanReboot({}));
    system.queueAdminCommands({u"mdutil -a -i off"_s});
    takeTrace();
    EXPECT_TRUE(finish(u"Please."_s));
    EXPECT_EQ(takeTrace(), kLookAtLaunchd + u"& do shell script \"mdutil -a -i off || true ; "_s +
                               backgroundListLine(system.backgroundDumpPath()) +
                               u"\" with prompt \"Please.\" with administrator privileges\n"_s + kLookAtLaunchd);
}

TEST_F(AdminBatchTest, theDeferralEndsWithItsBatchWhateverBecameOfIt) {
    for (const bool isRefused : {false, true}) {
        system.deferBackgroundTaskFetchToAdminBatch();
        system.beginAdminBatch();
        QCoro::waitFor(system.applyCleanReboot({}));
        QCoro::waitFor(system.runAdminCommand(u"pmset -a sms 0"_s, u"unused"_s));
        if (isRefused) {
            scripts.failNext(u"User canceled."_s);
        }
        EXPECT_EQ(finish(u"Please."_s), !isRefused);
        EXPECT_EQ(system.backgroundTaskItemsFetchMode(), SystemManager::BackgroundTaskItemsFetchMode::automatic);
        EXPECT_FALSE(system.pendingBackgroundLoginItemChanges().has_value());
        EXPECT_EQ(system.adminBatchDepth(), 0);
    }
}

} // namespace quorvane
