#include "fakes/ScriptedLoginItems.h"

#include "startup/login/LoginItemScripts.h"

namespace quorvane {

namespace {

using Operation = MemoryFileManager::Operation;

const QString kBackupFolder = u"/Users/alex/.quorvane_backup"_s;
const QString kRecord = kBackupFolder + u"/login_items.json"_s;

const LoginItem kDropboxItem{u"Dropbox"_s, u"/Applications/Dropbox.app"_s, false};
const LoginItem kHiddenZoom{u"Zoom"_s, u"/Applications/zoom.us.app"_s, true};
const LoginItem kDeckHelper{u"Deck Helper"_s, u"/Applications/Traktor Pro 3.app"_s, false};
const QString kPermit =
    u"  [INFO] Grant Automation permission for System Events in System Settings → Privacy & Security.\n"_s;
const QByteArray kNotPermitted = "ERROR|-1743|Not authorized to send Apple events to System Events.\n";

const LoginItem kSyncAgent{u"Sync Agent"_s, u"/Applications/Sync.app"_s, false};

class LoginItemFlows : public ScriptedStartup {
protected:
    QList<LoginItem> raw() { return QCoro::waitFor(system.rawLoginItems()); }
    QList<LoginItem> visible() { return QCoro::waitFor(system.visibleLoginItems()); }
    QList<bool> remove(const QList<LoginItemSelector>& selectors) {
        return QCoro::waitFor(system.removeLoginItems(selectors));
    }
    QList<bool> add(const QList<LoginItemAddition>& additions) {
        return QCoro::waitFor(system.addLoginItems(additions));
    }
    bool removeByName(const QString& name) { return remove({{name, {}}}) == QList<bool>(1, true); }
    bool removeAtPath(const QString& path) { return remove({{{}, path}}) == QList<bool>(1, true); }
    bool add(const QString& path, bool hidden = false) { return add({{path, hidden}}) == QList<bool>(1, true); }
    bool disable(const QStringList& names, const QSet<QString>& excludedIds = {}) {
        return QCoro::waitFor(system.disableLoginItems(names, excludedIds));
    }
};

} // namespace

// ---- Reading

TEST_F(LoginItemFlows, areReadOnceAndKept) {
    loginItems.items = {kDropboxItem, kHiddenZoom};
    EXPECT_EQ(raw(), (QList<LoginItem>{kDropboxItem, kHiddenZoom}));
    loginItems.items.clear();
    EXPECT_EQ(raw(), (QList<LoginItem>{kDropboxItem, kHiddenZoom}));
    EXPECT_EQ(takeTrace(), u"$> System Events: list\n"_s);
}

TEST_F(LoginItemFlows, anEmptyListIsKeptToo) {
    EXPECT_EQ(raw(), QList<LoginItem>());
    EXPECT_EQ(raw(), QList<LoginItem>());
    EXPECT_EQ(takeTrace(), u"$> System Events: list\n"_s);
}

TEST_F(LoginItemFlows, aBarInANameShiftsTheFieldsOfItsLineAlone) {
    loginItems.listing = "A|B|/Applications/A.app|true\nZoom|/Applications/zoom.us.app|TRUE\n";
    EXPECT_EQ(raw(), (QList<LoginItem>{{u"A"_s, u"B"_s, false}, kHiddenZoom}));
}

TEST_F(LoginItemFlows, aNameWithABarIsAskedForOnceInAFlow) {
    const LoginItem barred{u"A|B"_s, u"/Applications/A.app"_s, true};
    loginItems.items = {barred, kHiddenZoom};
    EXPECT_EQ(raw(), (QList<LoginItem>{barred, kHiddenZoom}));
    EXPECT_EQ(takeTrace().count(u"$> "_s), 2) << "the list, and the name";
    EXPECT_TRUE(removeByName(kHiddenZoom.name));
    EXPECT_EQ(raw(), QList<LoginItem>(1, barred));
    EXPECT_EQ(takeTrace().count(u"$> "_s), 2) << "the removal, and the list";
    system.beginAdminBatch(); // another flow, before which it may have got another name
    EXPECT_EQ(raw(), QList<LoginItem>(1, barred));
    EXPECT_EQ(takeTrace().count(u"$> "_s), 2);
}

TEST_F(LoginItemFlows, linesWithoutThreeFieldsAreDropped) {
    loginItems.listing = "\n\nnothing\nDropbox|/Applications/Dropbox.app\nGone|missing value|false\n||\n";
    EXPECT_EQ(raw(), (QList<LoginItem>{{u"Gone"_s, {}, false}, {{}, {}, false}}));
}

TEST_F(LoginItemFlows, nothingIsReadOfAnErrorOrABrokenText) {
    for (const char* const listing : {"ERROR|-1728|Can’t get name|of item|1\n", "A|\xff|false\n"}) {
        loginItems.listing = listing;
        EXPECT_EQ(QCoro::waitFor(system.readLoginItemsFromSystemEvents()).items, QList<LoginItem>());
    }
}

TEST_F(LoginItemFlows, theVisibleOnesAreNeitherAudioSoftwareNorAgents) {
    const LoginItem embedded{u"Helper"_s, u"/Applications/A.app/Contents/Library/LaunchAgents/h.plist"_s, false};
    const LoginItem byName{u"Ableton Helper"_s, u"/Applications/Helper.app"_s, false};
    loginItems.items = {kHiddenZoom, kDeckHelper, byName, kSyncAgent, embedded, kDropboxItem};
    EXPECT_EQ(visible(), (QList<LoginItem>{kHiddenZoom, kDropboxItem}));
    EXPECT_EQ(takeTrace(), u"$> System Events: list\n"_s);
}

TEST_F(LoginItemFlows, whereThereAreNoneNothingIsSaid) {
    EXPECT_EQ(visible(), QList<LoginItem>());
    EXPECT_EQ(takeTrace(), u"$> System Events: list\n"_s);
}

TEST_F(LoginItemFlows, aListThatCouldNotBeReadIsSaidWithTheSystemsWordsOnceInAFlow) {
    struct Row {
        QByteArray denial;
        QByteArray answer;
        QString text;
    };
    const QList<Row> rows{
        {{}, kNotPermitted, u"Not authorized to send Apple events to System Events."_s},
        {{},
         "ERROR|-1712|System Events got an error:\nAppleEvent timed out.\n",
         u"System Events got an error: AppleEvent timed out."_s},
        {{}, "what?\n", u"The answer of System Events isn’t understood."_s},
        {"7:20: execution error: An error of type -10810 has occurred. (-10810)\n",
         {},
         u"An error of type -10810 has occurred."_s},
        {"osascript: no such component \"AppleScript\".\n", {}, u"osascript: no such component \"AppleScript\"."_s},
    };
    loginItems.items = {kDropboxItem};
    for (const Row& row : rows) {
        loginItems.denial = row.denial;
        loginItems.answer = row.answer;
        system.invalidateStartupCaches(); // a new flow
        for (int step = 0; step < 2; ++step) {
            EXPECT_EQ(visible(), QList<LoginItem>());
        }
        EXPECT_EQ(takeTrace(),
                  u"$> System Events: list\n  [ERROR] Could not read login items: "_s + row.text + u'\n' + kPermit);
    }
}

TEST_F(LoginItemFlows, whatTheUserHasRefusedIsNotTriedAgainInTheSameFlow) {
    loginItems.items = {kDropboxItem, kHiddenZoom};
    for (const bool hasFailed : {true, false}) {
        loginItems.denial = hasFailed ? " execution error: Not authorized to send Apple events. (-1743)\n" : "";
        loginItems.answer = hasFailed ? "" : kNotPermitted;
        EXPECT_FALSE(removeByName(u"Dropbox"_s));
        EXPECT_EQ(takeTrace(), u"$> System Events: delete where name is Dropbox\n"_s + kPermit);
        EXPECT_FALSE(removeAtPath(kHiddenZoom.path));
        EXPECT_EQ(takeTrace(), u"\n"_s) << "nothing was run or logged";
        system.invalidateStartupCaches(); // the next flow
    }
    loginItems.answer.clear();
    EXPECT_TRUE(removeAtPath(kHiddenZoom.path));
}

TEST_F(LoginItemFlows, aFailureWithoutAWordIsToldByItsStatus) {
    loginItems.denial = "\n";
    EXPECT_EQ(visible(), QList<LoginItem>());
    EXPECT_EQ(takeTrace(), u"$> System Events: list\n"
                           "  [ERROR] Could not read login items: osascript has failed with status 1.\n"_s +
                               kPermit);
}

TEST_F(LoginItemFlows, aListThatAnEarlierStepOfTheFlowWasRefusedIsNotAskedForAgain) {
    loginItems.items = {kDropboxItem};
    raw();
    loginItems.denial = " execution error: Not authorized to send Apple events. (-1743)\n";
    EXPECT_FALSE(removeByName(u"Dropbox"_s));
    takeTrace();
    EXPECT_EQ(visible(), QList<LoginItem>()) << "what was known before isn't known any more";
    EXPECT_EQ(takeTrace(), u"  [ERROR] Could not read login items: Not authorized to send Apple events.\n"_s);
}

TEST_F(LoginItemFlows, aRefusalWithinTheScriptIsKnownByItsNumber) {
    loginItems.items = {kDropboxItem, kHiddenZoom};
    loginItems.unchangeable = {u"Zoom"_s};
    loginItems.changeError = -1743;
    EXPECT_EQ(remove({{u"Dropbox"_s, {}}, {u"Zoom"_s, {}}}), (QList<bool>{true, false}));
    EXPECT_EQ(takeTrace(), u"$> System Events: delete where name is Dropbox; delete where name is Zoom\n"_s + kPermit);
    EXPECT_FALSE(add(u"/Applications/Live.app"_s));
    EXPECT_EQ(takeTrace(), u"\n"_s);
}

TEST_F(LoginItemFlows, afterAReadingThatWasRefusedOrNotAnsweredNothingIsTriedEither) {
    for (const QByteArray& answer : {kNotPermitted, QByteArray("ERROR|-1712|AppleEvent timed out.\n")}) {
        system.invalidateStartupCaches();
        loginItems.answer = answer;
        raw();
        takeTrace();
        EXPECT_FALSE(add(u"/Applications/Live.app"_s));
        EXPECT_EQ(takeTrace(), kPermit);
        EXPECT_FALSE(disable({u"Zoom"_s}));
        const QString told = takeTrace();
        EXPECT_TRUE(told.startsWith(u"  [ERROR] Could not read login items: "_s));
        EXPECT_EQ(told.count(u'\n'), 1) << "nor is it read again: " << told.toStdString();
    }
}

TEST_F(LoginItemFlows, anotherFailureIsTriedAgain) {
    loginItems.items = {kDropboxItem};
    loginItems.denial = " execution error: System Events got an error: Application isn’t running. (-600)\n";
    EXPECT_FALSE(removeByName(u"Dropbox"_s));
    loginItems.denial.clear();
    EXPECT_TRUE(removeByName(u"Dropbox"_s));
}

// ---- Removing and adding

TEST_F(LoginItemFlows, aRemovalIsTrueOnlyWhenSomethingWasDeleted) {
    loginItems.items = {kDropboxItem, kHiddenZoom};
    EXPECT_TRUE(removeByName(u"Dropbox"_s));
    EXPECT_FALSE(removeByName(u"Dropbox"_s));
    EXPECT_TRUE(removeAtPath(kHiddenZoom.path));
    EXPECT_FALSE(removeAtPath(kHiddenZoom.path));
    EXPECT_EQ(loginItems.names(), QStringList());
    EXPECT_EQ(takeTrace(), u"$> System Events: delete where name is Dropbox\n"
                           "$> System Events: delete where name is Dropbox\n"
                           "$> System Events: delete where path is /Applications/zoom.us.app\n"
                           "$> System Events: delete where path is /Applications/zoom.us.app\n"_s);
}

TEST_F(LoginItemFlows, manyAreChangedByOneScriptAndEachHasItsAnswer) {
    loginItems.items = {kDropboxItem, kHiddenZoom, kSyncAgent};
    loginItems.unchangeable = {u"Sync Agent"_s, u"/Applications/Gone.app"_s};
    EXPECT_EQ(
        remove({{u"Nobody"_s, {}}, {{}, kHiddenZoom.path}, {u"Sync Agent"_s, {}}, {u"Dropbox"_s, kDropboxItem.path}}),
        (QList<bool>{false, true, false, true}));
    EXPECT_EQ(
        add({{kSyncAgent.path, false}, {u"/Applications/Gone.app"_s, false}, {u"/Applications/Live.app"_s, true}}),
        (QList<bool>{true, false, true}));
    EXPECT_EQ(takeTrace(),
              u"$> System Events: delete where name is Nobody; delete where path is /Applications/zoom.us.app; "
              "delete where name is Sync Agent; delete where path is /Applications/Dropbox.app and name is Dropbox\n"
              "$> System Events: add /Applications/Sync.app hidden:false; add /Applications/Gone.app hidden:false; "
              "add /Applications/Live.app hidden:true\n"_s);
    EXPECT_EQ(loginItems.names(), (QStringList{u"Sync Agent"_s, u"Live"_s}));
}

TEST_F(LoginItemFlows, whatTheScriptGivesNoAnswerForHasNotHappened) {
    loginItems.items = {kDropboxItem, kHiddenZoom};
    raw();
    loginItems.lastAnswered = 1;
    EXPECT_EQ(remove({{u"Nobody"_s, {}}, {u"Zoom"_s, {}}}), (QList<bool>{false, false}));
    EXPECT_EQ(add({{kDropboxItem.path, false}, {u"/a"_s, false}}), (QList<bool>{true, false}));
    takeTrace();
    raw();
    EXPECT_EQ(takeTrace(), u"$> System Events: list\n"_s) << "nobody knows what there is now";
}

TEST_F(LoginItemFlows, forNothingNothingIsRun) {
    EXPECT_EQ(remove({}), QList<bool>());
    EXPECT_EQ(add(QList<LoginItemAddition>()), QList<bool>());
    EXPECT_EQ(takeTrace(), u"\n"_s);
}

TEST_F(LoginItemFlows, aRemovalThatSystemEventsRefusesIsFalse) {
    loginItems.items = {kDropboxItem, kHiddenZoom};
    loginItems.unchangeable = {u"Dropbox"_s};
    EXPECT_FALSE(removeByName(u"Dropbox"_s));
    loginItems.denial = "Not authorized";
    EXPECT_FALSE(removeAtPath(kHiddenZoom.path));
    EXPECT_FALSE(add(u"/Applications/Live.app"_s));
    EXPECT_EQ(loginItems.names(), (QStringList{u"Dropbox"_s, u"Zoom"_s}));
}

TEST_F(LoginItemFlows, anyOtherReplyIsAFailure) {
    loginItems.items = {kDropboxItem};
    for (const char* const reply : {"\n", "OK\n", "okay\n", "ok ok\n", "error:ok\n", " ok\n"}) {
        loginItems.answer = reply;
        EXPECT_FALSE(removeByName(u"Dropbox"_s)) << reply;
        EXPECT_FALSE(add(u"/A.app"_s, true)) << reply;
    }
    loginItems.answer = "ok\n\n";
    EXPECT_TRUE(removeByName(u"Dropbox"_s));
}

TEST_F(LoginItemFlows, hostileNamesReachSystemEventsAsText) {
    const QStringList names{uR"(Bob's "Deck" \ Helper)"_s,
                            uR"(\)"_s,
                            uR"(" & (do shell script "x") & ")"_s,
                            u"%1 %2"_s,
                            u"a\nb"_s,
                            uR"(\")"_s};
    for (const QString& name : names) {
        loginItems.items = {kDropboxItem, {name, u"/Applications/"_s + name + u".app"_s, false}};
        EXPECT_TRUE(removeByName(name)) << name.toStdString();
        EXPECT_EQ(loginItems.names(), QStringList(u"Dropbox"_s)) << name.toStdString();
        EXPECT_TRUE(add(u"/Applications/"_s + name + u".app"_s)) << name.toStdString();
        EXPECT_EQ(loginItems.items.last().path, u"/Applications/"_s + name + u".app"_s);
        EXPECT_TRUE(removeAtPath(u"/Applications/"_s + name + u".app"_s)) << name.toStdString();
    }
}

TEST_F(LoginItemFlows, anAddedOneExistsAfterwardsWithItsHiddenFlag) {
    EXPECT_TRUE(add(u"/Applications/Live.app"_s, true));
    EXPECT_EQ(loginItems.items, (QList<LoginItem>{{u"Live"_s, u"/Applications/Live.app"_s, true}}));
    EXPECT_TRUE(add(u"/Applications/Live.app"_s, false));
    loginItems.unchangeable = {u"/Applications/Gone.app"_s};
    EXPECT_FALSE(add(u"/Applications/Gone.app"_s));
    EXPECT_EQ(takeTrace(), u"$> System Events: add /Applications/Live.app hidden:true\n"
                           "$> System Events: add /Applications/Live.app hidden:false\n"
                           "$> System Events: add /Applications/Gone.app hidden:false\n"_s);
}

TEST_F(LoginItemFlows, areReadAnewOnlyAfterTheyMayHaveChanged) {
    loginItems.items = {kDropboxItem, kHiddenZoom};
    raw();
    removeByName(u"Nobody"_s);
    add(kDropboxItem.path);
    EXPECT_EQ(raw().size(), 2);
    EXPECT_EQ(trace.count(u"$> System Events: list"_s), 1);
    removeByName(u"Dropbox"_s);
    EXPECT_EQ(raw().size(), 1);
    add(kDropboxItem.path);
    EXPECT_EQ(raw().size(), 2);
    loginItems.unchangeable = {u"Zoom"_s};
    removeByName(u"Zoom"_s); // an error may come after a part was deleted
    raw();
    EXPECT_EQ(trace.count(u"$> System Events: list"_s), 4);
}

TEST_F(LoginItemFlows, aListThatWasAskedForBeforeAChangeIsNotKept) {
    loginItems.items = {kDropboxItem};
    commands.hold();
    auto slow = system.rawLoginItems();
    const QList<LoginItemSelector> dropbox{{u"Dropbox"_s, {}}};
    auto removal = system.removeLoginItems(dropbox);
    commands.release();
    QCoro::waitFor(removal);
    QCoro::waitFor(slow);
    EXPECT_EQ(raw(), QList<LoginItem>());
}

// ---- Disabling a list

TEST_F(LoginItemFlows, disablingNoneDoesNothing) {
    EXPECT_TRUE(disable({}));
    EXPECT_TRUE(trace.isEmpty());
    EXPECT_FALSE(files.exists(kBackupFolder));
}

TEST_F(LoginItemFlows, areDisabledInTheOrderOfTheSystemAndWrittenDown) {
    loginItems.items = {kHiddenZoom, {u"Stays"_s, u"/Applications/Stays.app"_s, false}, kDropboxItem};
    EXPECT_TRUE(disable({u"Dropbox"_s, u"Zoom"_s}));
    EXPECT_EQ(takeTrace(), u"$> System Events: list\n"
                           "$> System Events: delete where name is Zoom; delete where name is Dropbox\n"
                           "  [APPLIED] Removed login item: Zoom\n"
                           "  [APPLIED] Removed login item: Dropbox\n"_s);
    EXPECT_EQ(loginItems.names(), QStringList(u"Stays"_s));
    EXPECT_EQ(files.read(kRecord), R"([
  {
    "name": "Zoom",
    "path": "/Applications/zoom.us.app",
    "hidden": "true"
  },
  {
    "name": "Dropbox",
    "path": "/Applications/Dropbox.app",
    "hidden": "false"
  }
])");
}

TEST_F(LoginItemFlows, theRecordIsReplacedByTheNextRunThatFindsSomething) {
    loginItems.items = {kHiddenZoom, kDropboxItem};
    disable({u"Zoom"_s});
    disable({u"Nobody"_s});
    EXPECT_TRUE(files.read(kRecord).contains("Zoom"));
    disable({u"Dropbox"_s});
    EXPECT_TRUE(files.read(kRecord).contains("Dropbox"));
    EXPECT_FALSE(files.read(kRecord).contains("Zoom"));
}

TEST_F(LoginItemFlows, aRecordThatCannotBeWrittenIsNoFailure) {
    loginItems.items = {kHiddenZoom};
    files.failOn(Operation::CreateFolders, kBackupFolder);
    files.failOn(Operation::Write, kRecord);
    EXPECT_TRUE(disable({u"Zoom"_s}));
    EXPECT_EQ(takeTrace(), u"$> System Events: list\n"
                           "  [ERROR] Could not record the removed login items: "_s +
                               kRecord +
                               u": Operation not permitted\n"
                               "$> System Events: delete where name is Zoom\n"
                               "  [APPLIED] Removed login item: Zoom\n"_s);
}

TEST_F(LoginItemFlows, audioSoftwareIsNeverDisabledByNameOrPath) {
    const LoginItem ableton{u"Ableton Helper"_s, u"/Applications/Helper.app"_s, false};
    loginItems.items = {ableton, kDeckHelper};
    EXPECT_TRUE(disable({u"Ableton Helper"_s, u"Deck Helper"_s, u"Serato Gone"_s}, {u"Ableton Helper"_s}));
    EXPECT_EQ(takeTrace(), u"$> System Events: list\n"
                           "  [SKIPPED] Protected login item: Ableton Helper\n"
                           "  [SKIPPED] Protected login item: Deck Helper\n"
                           "  [SKIPPED] Protected login item: Serato Gone\n"_s);
    EXPECT_EQ(loginItems.items, (QList<LoginItem>{ableton, kDeckHelper}));
}

TEST_F(LoginItemFlows, anExcludedAgentStaysByIdOrNameAndAnythingElseGoes) {
    const LoginItem helper{u"Box Agent"_s, u"/Applications/Box.app"_s, false};
    loginItems.items = {kSyncAgent, helper, kDropboxItem};
    EXPECT_TRUE(disable({u"Sync Agent"_s, u"Box Agent"_s, u"Dropbox"_s, u"Lost Agent"_s},
                        {u"login:/Applications/Sync.app"_s, u"Box Agent"_s, u"Dropbox"_s,
                         u"login:/Applications/Dropbox.app"_s, u"login:Lost Agent"_s}));
    EXPECT_EQ(takeTrace(), u"$> System Events: list\n"
                           "$> System Events: delete where name is Dropbox\n"
                           "  [SKIPPED] Excluded App Background Activity login item: Sync Agent\n"
                           "  [SKIPPED] Excluded App Background Activity login item: Box Agent\n"
                           "  [APPLIED] Removed login item: Dropbox\n"
                           "  [SKIPPED] Excluded App Background Activity login item: Lost Agent\n"_s);
}

TEST_F(LoginItemFlows, aRemovalThatFailsStopsNoOther) {
    loginItems.items = {kHiddenZoom, kDropboxItem};
    loginItems.unchangeable = {u"Zoom"_s};
    EXPECT_FALSE(disable({u"Zoom"_s, u"Dropbox"_s}));
    EXPECT_EQ(takeTrace(), u"$> System Events: list\n"
                           "$> System Events: delete where name is Zoom; delete where name is Dropbox\n"
                           "  [ERROR] Failed to remove login item: Zoom\n"
                           "  [APPLIED] Removed login item: Dropbox\n"_s);
}

TEST_F(LoginItemFlows, twoOfOneNameGoWithTheFirstAndTheListTellsOfTheSecond) {
    loginItems.items = {kDropboxItem, {u"Dropbox"_s, u"/Users/alex/Applications/Dropbox.app"_s, false}};
    EXPECT_TRUE(disable({u"Dropbox"_s}));
    EXPECT_EQ(takeTrace(), u"$> System Events: list\n"
                           "$> System Events: delete where name is Dropbox; delete where name is Dropbox\n"
                           "$> System Events: list\n"
                           "  [APPLIED] Removed login item: Dropbox\n"
                           "  [APPLIED] Removed login item: Dropbox\n"_s);
    EXPECT_EQ(loginItems.names(), QStringList());
}

TEST_F(LoginItemFlows, oneThatWasGoneBeforeWasNotRemoved) {
    loginItems.items = {kDropboxItem, kHiddenZoom};
    raw();
    loginItems.items = {kDropboxItem};
    EXPECT_FALSE(disable({u"Dropbox"_s, u"Zoom"_s}));
    EXPECT_TRUE(trace.contains(u"  [ERROR] Failed to remove login item: Zoom"_s));
}

const LoginItem kProtectedTwin{u"HELPER"_s, u"/Applications/Traktor Pro 3.app"_s, true};
const LoginItem kGoingTwin{u"Helper"_s, u"/Applications/Helper.app"_s, false};
const QString kTwinStep = u"$> System Events: list\n"
                          "$> System Events: delete where path is /Applications/Helper.app and name is Helper\n"
                          "$> System Events: list\n"_s;

TEST_F(LoginItemFlows, whereOneOfTheNameStaysTheOtherGoesByBothAndTheListIsReadAgain) {
    loginItems.items = {kProtectedTwin, kGoingTwin};
    EXPECT_TRUE(disable({u"Helper"_s}));
    EXPECT_EQ(takeTrace(), kTwinStep + u"  [APPLIED] Removed login item: Helper\n"_s);
    EXPECT_EQ(loginItems.items, QList<LoginItem>{kProtectedTwin});
}

TEST_F(LoginItemFlows, aTwinThatWentAlongIsAddedAgainAndWhatStayedHasNotGone) {
    loginItems.items = {kProtectedTwin, kGoingTwin};
    loginItems.deletesByName = true;
    EXPECT_FALSE(disable({u"Helper"_s}));
    EXPECT_EQ(takeTrace(), kTwinStep +
                               u"  [ERROR] Failed to remove login item: Helper\n"
                               "$> System Events: add /Applications/Traktor Pro 3.app hidden:true\n"
                               "  [INFO] Added again, it went along with another of its name or path: HELPER\n"_s);
    EXPECT_EQ(loginItems.items.size(), 2);
    EXPECT_EQ(loginItems.items.last().path, kProtectedTwin.path);
    EXPECT_TRUE(loginItems.items.last().hidden);
}

TEST_F(LoginItemFlows, aTwinThatCannotBeAddedAgainIsSaid) {
    loginItems.items = {kProtectedTwin, kGoingTwin};
    loginItems.deletesByName = true;
    loginItems.unchangeable = {kProtectedTwin.path};
    EXPECT_FALSE(disable({u"Helper"_s}));
    EXPECT_TRUE(trace.contains(
        u"  [ERROR] Went along with another of its name or path, and could not be added again: HELPER"_s));
}

TEST_F(LoginItemFlows, aTwinWhoseFileIsNotKnownCannotBeAddedAgain) {
    loginItems.items = {{u"SERATO"_s, {}, false}, {u"Serato"_s, u"/Applications/Helper.app"_s, false}};
    loginItems.deletesByName = true;
    const StartupLaunchItem helper{u"Serato"_s, u"/Applications/Helper.app"_s, false};
    system.recordManagedStartupAppPath(helper.path);
    QCoro::waitFor(system.removeManagedStartupApps(std::nullopt));
    EXPECT_TRUE(trace.contains(
        u"  [ERROR] Went along with another of its name or path, and could not be added again: SERATO"_s));
    EXPECT_FALSE(takeTrace().contains(u"System Events: add"_s));
}

TEST_F(LoginItemFlows, whereTheListCannotBeReadAgainNobodySaysWhatWent) {
    loginItems.items = {kProtectedTwin, kGoingTwin};
    raw();
    loginItems.listing = "ERROR|-609|Connection is invalid.\n";
    EXPECT_FALSE(disable({u"Helper"_s}));
    EXPECT_EQ(takeTrace(), kTwinStep + u"  [ERROR] Could not read login items: Connection is invalid.\n"_s + kPermit +
                               u"  [ERROR] Failed to remove login item: Helper\n"_s);
}

TEST_F(LoginItemFlows, whereThePathDoesNotTellThemApartEitherBothStay) {
    const LoginItem protectedOne{u"Serato"_s, u"/Applications/X.app"_s, false};
    loginItems.items = {{u"helper"_s, {}, false}, {u"Helper"_s, {}, false}, protectedOne};
    EXPECT_FALSE(disable({u"Helper"_s}));
    EXPECT_EQ(takeTrace(), u"$> System Events: list\n"
                           "  [ERROR] Failed to remove login item: Helper\n"_s);
    EXPECT_EQ(loginItems.items.size(), 3);
}

// ---- Names that the list doesn't show

TEST_F(LoginItemFlows, oneThatCameAfterTheListWasReadIsRemovedAllTheSame) {
    raw();
    loginItems.items = {kHiddenZoom};
    EXPECT_TRUE(disable({u"Zoom"_s, u"Zoom"_s}));
    EXPECT_EQ(takeTrace(), u"$> System Events: list\n"
                           "$> System Events: delete where name is Zoom\n"
                           "  [APPLIED] Removed login item: Zoom\n"_s);
    EXPECT_EQ(loginItems.names(), QStringList());
    EXPECT_FALSE(files.exists(kRecord));
}

TEST_F(LoginItemFlows, oneThatIsNotThereIsNoFailure) {
    loginItems.items = {kHiddenZoom};
    EXPECT_TRUE(disable({u"Zoom"_s, u"Dropbox"_s, u"Spotify"_s}));
    EXPECT_EQ(takeTrace(), u"$> System Events: list\n"
                           "$> System Events: delete where name is Zoom; delete where name is Dropbox; "
                           "delete where name is Spotify\n"
                           "  [APPLIED] Removed login item: Zoom\n"
                           "$> System Events: list\n"_s);
}

TEST_F(LoginItemFlows, aProtectedOneIsKnownThoughABarInItsNameHidesItsPath) {
    loginItems.items = {{u"Set | List"_s, u"/Applications/Ableton Live 12.app/Contents/Set List.app"_s, false}};
    EXPECT_TRUE(disable({u"Set | List"_s}));
    EXPECT_EQ(takeTrace(), u"$> System Events: list\n"
                           "$> System Events: names of 1\n"
                           "  [SKIPPED] Protected login item: Set | List\n"_s);
    EXPECT_EQ(loginItems.items.size(), 1);
}

TEST_F(LoginItemFlows, oneThatIsStillThereIsAFailure) {
    raw();
    loginItems.items = {kHiddenZoom};
    loginItems.unchangeable = {u"Zoom"_s};
    EXPECT_FALSE(disable({u"Zoom"_s}));
}

TEST_F(LoginItemFlows, withoutPermissionNothingCountsAsGone) {
    loginItems.denial = "Not authorized";
    EXPECT_FALSE(disable({u"Zoom"_s}));
    EXPECT_EQ(takeTrace(), u"$> System Events: list\n  [ERROR] Could not read login items: Not authorized\n"_s +
                               kPermit + u"$> System Events: list\n"_s)
        << "no name is used while nobody knows whom it would take";
}

TEST_F(LoginItemFlows, amongThemOneWithoutANameMayBeTheOneThatIsMissing) {
    loginItems.listing = "Unreadable login item 1||unreadable\n";
    EXPECT_FALSE(disable({u"Zoom"_s}));
}

TEST_F(LoginItemFlows, whereTheListIsAnErrorNothingCountsAsGone) {
    loginItems.listing = "ERROR|-609|Connection is invalid.\n";
    EXPECT_FALSE(disable({u"Zoom"_s}));
}

} // namespace quorvane
