#include "fakes/ScriptedLoginItems.h"

namespace quorvane {

namespace {

using Operation = MemoryFileManager::Operation;

const QString kBackupFolder = u"/Users/alex/.quorvane_backup"_s;
const QString kRecord = kBackupFolder + u"/login_items.json"_s;

const LoginItem kDropboxItem{u"Dropbox"_s, u"/Applications/Dropbox.app"_s, false};
const LoginItem kHiddenZoom{u"Zoom"_s, u"/Applications/zoom.us.app"_s, true};
const LoginItem kDeckHelper{u"Deck Helper"_s, u"/Applications/Traktor Pro 3.app"_s, false};
const LoginItem kSyncAgent{u"Sync Agent"_s, u"/Applications/Sync.app"_s, false};

class LoginItemFlows : public ScriptedStartup {
protected:
    QList<LoginItem> raw() { return QCoro::waitFor(system.rawLoginItems()); }
    QList<LoginItem> visible() { return QCoro::waitFor(system.visibleLoginItems()); }
    bool removeByName(const QString& name) { return QCoro::waitFor(system.removeLoginItemByName(name)); }
    bool removeAtPath(const QString& path) { return QCoro::waitFor(system.removeLoginItemAtPath(path)); }
    bool add(const QString& path, bool hidden = false) { return QCoro::waitFor(system.addLoginItem(path, hidden)); }
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

TEST_F(LoginItemFlows, linesWithoutThreeFieldsAreDropped) {
    loginItems.listing = "\n\nnothing\nDropbox|/Applications/Dropbox.app\nGone|missing value|false\n||\n";
    EXPECT_EQ(raw(), (QList<LoginItem>{{u"Gone"_s, {}, false}, {{}, {}, false}}));
}

TEST_F(LoginItemFlows, nothingIsReadOfAnErrorOrABrokenText) {
    for (const char* const listing : {"ERROR|Can’t get name|of item|1\n", "A|\xff|false\n"}) {
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

TEST_F(LoginItemFlows, withoutAnyThePermissionIsProbed) {
    EXPECT_EQ(visible(), QList<LoginItem>());
    EXPECT_EQ(takeTrace(), u"$> System Events: list\n"
                           "$> System Events: probe\n"_s);
}

TEST_F(LoginItemFlows, aMissingPermissionIsSaid) {
    loginItems.items = {kDropboxItem};
    loginItems.denial = " execution error: Not authorized to send Apple events to System Events. (-1743)\n";
    EXPECT_EQ(visible(), QList<LoginItem>());
    EXPECT_EQ(takeTrace(),
              u"$> System Events: list\n"
              "$> System Events: probe\n"
              "  [ERROR] Could not read login items: execution error: Not authorized to send Apple events to System "
              "Events. (-1743)\n"
              "  [INFO] Grant Automation permission for System Events in System Settings → Privacy & Security.\n"_s);
}

TEST_F(LoginItemFlows, whatTheUserHasRefusedIsNotTriedAgainInTheSameFlow) {
    const QString permit =
        u"  [INFO] Grant Automation permission for System Events in System Settings → Privacy & Security.\n"_s;
    loginItems.items = {kDropboxItem, kHiddenZoom};
    loginItems.denial = " execution error: Not authorized to send Apple events to System Events. (-1743)\n";
    EXPECT_FALSE(removeByName(u"Dropbox"_s));
    EXPECT_EQ(takeTrace(), u"$> System Events: delete where name is Dropbox\n"_s + permit);
    EXPECT_FALSE(removeAtPath(kHiddenZoom.path));
    EXPECT_EQ(takeTrace(), u"\n"_s) << "nothing was run or logged";

    loginItems.denial.clear();
    system.invalidateStartupCaches(); // the next flow
    EXPECT_TRUE(removeAtPath(kHiddenZoom.path));
}

TEST_F(LoginItemFlows, anotherFailureIsTriedAgain) {
    loginItems.items = {kDropboxItem};
    loginItems.denial = " execution error: System Events got an error: AppleEvent timed out. (-1712)\n";
    EXPECT_FALSE(removeByName(u"Dropbox"_s));
    loginItems.denial.clear();
    EXPECT_TRUE(removeByName(u"Dropbox"_s));
}

// ---- Removing and adding one

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
    commands.respond = {};
    const QString removal = ScriptedLoginItems::deletionScript(u"name"_s, u"A"_s);
    const QString addition = ScriptedLoginItems::additionScript(u"/A.app"_s, true);
    for (const char* const reply : {"", "OK\n", "okay\n", "ok ok\n", "error:ok\n"}) {
        commands.print(commandLine({u"/usr/bin/osascript"_s, u"-e"_s, removal}), reply);
        commands.print(commandLine({u"/usr/bin/osascript"_s, u"-e"_s, addition}), reply);
        EXPECT_FALSE(removeByName(u"A"_s)) << reply;
        EXPECT_FALSE(add(u"/A.app"_s, true)) << reply;
    }
    commands.print(commandLine({u"/usr/bin/osascript"_s, u"-e"_s, removal}), " \n ok\r\n");
    EXPECT_TRUE(removeByName(u"A"_s));
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
    auto removal = system.removeLoginItemByName(u"Dropbox"_s);
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
                           "$> System Events: delete where name is Zoom\n"
                           "  [APPLIED] Removed login item: Zoom\n"
                           "$> System Events: delete where name is Dropbox\n"
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
                           "  [SKIPPED] Excluded App Background Activity login item: Sync Agent\n"
                           "  [SKIPPED] Excluded App Background Activity login item: Box Agent\n"
                           "$> System Events: delete where name is Dropbox\n"
                           "  [APPLIED] Removed login item: Dropbox\n"
                           "  [SKIPPED] Excluded App Background Activity login item: Lost Agent\n"_s);
}

TEST_F(LoginItemFlows, aRemovalThatFailsStopsNoOther) {
    loginItems.items = {kHiddenZoom, kDropboxItem};
    loginItems.unchangeable = {u"Zoom"_s};
    EXPECT_FALSE(disable({u"Zoom"_s, u"Dropbox"_s}));
    EXPECT_EQ(takeTrace(), u"$> System Events: list\n"
                           "$> System Events: delete where name is Zoom\n"
                           "  [ERROR] Failed to remove login item: Zoom\n"
                           "$> System Events: delete where name is Dropbox\n"
                           "  [APPLIED] Removed login item: Dropbox\n"_s);
}

TEST_F(LoginItemFlows, twoOfOneNameGoWithTheFirstAndTheSecondIsReportedMissing) {
    loginItems.items = {kDropboxItem, {u"Dropbox"_s, u"/Users/alex/Applications/Dropbox.app"_s, false}};
    EXPECT_FALSE(disable({u"Dropbox"_s}));
    EXPECT_EQ(takeTrace(), u"$> System Events: list\n"
                           "$> System Events: delete where name is Dropbox\n"
                           "  [APPLIED] Removed login item: Dropbox\n"
                           "$> System Events: delete where name is Dropbox\n"
                           "  [ERROR] Failed to remove login item: Dropbox\n"_s);
    EXPECT_EQ(loginItems.names(), QStringList());
}

TEST_F(LoginItemFlows, whereOneOfTheNameStaysTheOtherGoesByItsPath) {
    const LoginItem protectedOne{u"HELPER"_s, u"/Applications/Traktor Pro 3.app"_s, false};
    const LoginItem wanted{u"Helper"_s, u"/Applications/Helper.app"_s, false};
    loginItems.items = {protectedOne, wanted};
    EXPECT_TRUE(disable({u"Helper"_s}));
    EXPECT_EQ(takeTrace(), u"$> System Events: list\n"
                           "$> System Events: delete where path is /Applications/Helper.app\n"
                           "  [APPLIED] Removed login item: Helper\n"_s);
    EXPECT_EQ(loginItems.items, QList<LoginItem>{protectedOne});
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
                           "$> System Events: delete where name is Zoom\n"
                           "  [APPLIED] Removed login item: Zoom\n"
                           "$> System Events: delete where name is Dropbox\n"
                           "$> System Events: delete where name is Spotify\n"
                           "$> System Events: list\n"_s);
}

TEST_F(LoginItemFlows, aProtectedOneIsKnownThoughABarInItsNameHidesItsPath) {
    loginItems.items = {{u"Set | List"_s, u"/Applications/Ableton Live 12.app/Contents/Set List.app"_s, false}};
    EXPECT_TRUE(disable({u"Set | List"_s}));
    EXPECT_EQ(takeTrace(), u"$> System Events: list\n"
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
    EXPECT_EQ(takeTrace(), u"$> System Events: list\n"
                           "$> System Events: list\n"_s)
        << "no name is used while nobody knows whom it would take";
}

TEST_F(LoginItemFlows, whereTheListIsAnErrorNothingCountsAsGone) {
    loginItems.listing = "ERROR|Connection is invalid.\n";
    EXPECT_FALSE(disable({u"Zoom"_s}));
}

} // namespace quorvane
