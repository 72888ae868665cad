// Cleaning up on scripted ports: every command, script and log line, and what is left on the disk.

#include "core/AdminScript.h"
#include "fakes/ScriptedSystem.h"
#include "maintenance/MaintenanceSelection.h"

namespace quorvane {

namespace {

using Operation = MemoryFileManager::Operation;

const QString kUserCaches = u"/Users/alex/Library/Caches"_s;
const QString kLibraryCaches = u"/Library/Caches"_s;
const QString kSystemCaches = u"/System/Library/Caches"_s;
const QString kDownloads = u"/Users/alex/Downloads"_s;

const QString kAsking = u"Requesting Administrator privileges to clear system caches...\n"_s;
const QString kCleared = u"  [APPLIED] Successfully cleared unprotected items in system caches.\n"_s;
const QString kNothingFound = u"No unprotected items found in system caches to clean.\n"_s;
const QString kFinder = u"$> /usr/bin/osascript -e "
                        "\"tell application \"Finder\" to if (count of items in trash) > 0 then empty trash\"\n"_s;

class MaintenanceTest : public ScriptedSystem {
protected:
    void clearUserCaches() { QCoro::waitFor(system.clearCacheDirectory(kUserCaches, u"User Caches"_s)); }
    bool clearSystemCaches() { return QCoro::waitFor(system.clearSystemCaches()); }
    void emptyTrash() { QCoro::waitFor(system.emptyTrash()); }
    void purgeDownloads() { QCoro::waitFor(system.purgeDownloads()); }
    MaintenanceOutcome run(const MaintenanceSelection& selection) {
        return QCoro::waitFor(system.runMaintenance(selection));
    }

    static QString prompted(const QString& line) {
        const QString prompt = u"Quorvane needs your administrator password to make these system changes."_s;
        return u"& "_s + ScriptedScriptEngine::withoutPath(adminScriptSource(line, prompt)) + u'\n';
    }
    void addTo(const QString& folder, const QStringList& names) {
        files.addFolders(folder);
        for (const QString& name : names) {
            files.addFile(folder + u'/' + name, "bytes");
        }
    }
    QStringList left(const QString& folder) const { return files.list(folder); }
};

} // namespace

// ---- The user's caches

TEST_F(MaintenanceTest, theUsersCachesGoButForThoseOfAudioSoftware) {
    addTo(kUserCaches, {u"com.spotify.client"_s, u"Ableton"_s, u"my.AUDIOUNIT.scan"_s, u"SeratoDJ"_s,
                        u"com.apple.iconservices.store"_s, u"clapboard"_s, u"Google"_s});
    addTo(kUserCaches + u"/Browser/Profile"_s, {u"Ableton page"_s});
    clearUserCaches();
    EXPECT_EQ(left(kUserCaches), QStringList({u"Ableton"_s, u"my.AUDIOUNIT.scan"_s, u"SeratoDJ"_s, u"clapboard"_s}));
    EXPECT_EQ(takeTrace(), u"Scanning User Caches in /Users/alex/Library/Caches...\n"_s);
}

TEST_F(MaintenanceTest, debugModeTellsOfEachEntryInTheOrderOfTheSystem) {
    addTo(kUserCaches, {u"b %1"_s, u"Logic"_s, u"a"_s, u"stuck"_s});
    files.failOn(Operation::Remove, kUserCaches + u"/stuck"_s);
    system.setDebugMode(true);
    clearUserCaches();
    EXPECT_EQ(takeTrace(), u"Scanning User Caches in /Users/alex/Library/Caches...\n"
                           "  [DELETED] b %1\n"
                           "  [SKIPPED] Logic (Protected)\n"
                           "  [DELETED] a\n"
                           "  [ERROR] Removing stuck: /Users/alex/Library/Caches/stuck: Operation not permitted\n"_s);
    EXPECT_EQ(left(kUserCaches), QStringList({u"Logic"_s, u"stuck"_s}));
}

TEST_F(MaintenanceTest, withoutDebugModeAFailureIsPassedOver) {
    addTo(kUserCaches, {u"stuck"_s, u"a"_s});
    files.failOn(Operation::Remove, kUserCaches + u"/stuck"_s);
    clearUserCaches();
    EXPECT_EQ(takeTrace(), u"Scanning User Caches in /Users/alex/Library/Caches...\n"_s);
    EXPECT_EQ(left(kUserCaches), QStringList(u"stuck"_s));
}

TEST_F(MaintenanceTest, aMissingCacheFolderIsSkipped) {
    clearUserCaches();
    EXPECT_EQ(takeTrace(), u"Skipping /Users/alex/Library/Caches (does not exist).\n"_s);
}

TEST_F(MaintenanceTest, aCacheFolderThatMayNotBeReadIsLeftAlone) {
    addTo(kUserCaches, {u"a"_s});
    files.failOn(Operation::List, kUserCaches);
    clearUserCaches();
    EXPECT_EQ(takeTrace(), u"Scanning User Caches in /Users/alex/Library/Caches...\n"
                           "Permission denied to read /Users/alex/Library/Caches.\n"_s);
    EXPECT_EQ(files.changes(), 0);
}

TEST_F(MaintenanceTest, anEntryThatIsALinkGoesAndItsTargetStays) {
    addTo(u"/Users/alex/Music"_s, {u"song"_s});
    files.addLink(kUserCaches + u"/link"_s, u"/Users/alex/Music"_s);
    files.addLink(kUserCaches + u"/dangling"_s, u"/nowhere"_s);
    clearUserCaches();
    EXPECT_EQ(left(kUserCaches), QStringList());
    EXPECT_EQ(left(u"/Users/alex/Music"_s), QStringList(u"song"_s));
}

TEST_F(MaintenanceTest, cachesOnAnotherDiskAreReachedThroughTheLink) {
    addTo(u"/Volumes/Fast/Caches"_s, {u"a"_s, u"Ableton"_s});
    files.addLink(kUserCaches, u"/Volumes/Fast/Caches"_s);
    clearUserCaches();
    EXPECT_EQ(files.status(kUserCaches).kind, FileStatus::Kind::Link);
    EXPECT_EQ(left(u"/Volumes/Fast/Caches"_s), QStringList(u"Ableton"_s));
}

TEST_F(MaintenanceTest, namesThatWouldTroubleAShellGoFromTheUsersCaches) {
    addTo(kUserCaches, {u"it's"_s, u"a\"b"_s, u"back\\slash"_s, u"line\nend"_s});
    clearUserCaches();
    EXPECT_EQ(left(kUserCaches), QStringList());
}

TEST_F(MaintenanceTest, anEntryThatHasGoneMeanwhileIsPassedOver) {
    addTo(kUserCaches, {u"a"_s, u"b"_s, u"c"_s});
    system.setDebugMode(true);
    QObject::connect(&system, &SystemManager::messageLogged, [this](const QString& line) {
        if (line == u"  [DELETED] a"_s) {
            files.remove(kUserCaches + u"/b"_s);
        }
    });
    clearUserCaches();
    EXPECT_EQ(takeTrace(), u"Scanning User Caches in /Users/alex/Library/Caches...\n"
                           "  [DELETED] a\n"
                           "  [DELETED] c\n"_s);
}

// ---- The caches of the system

TEST_F(MaintenanceTest, theSystemsCachesGoInOneLineUnderOnePrompt) {
    addTo(kLibraryCaches, {u"com.maker.app"_s, u"Native Instruments"_s, u"Two Words"_s});
    addTo(kSystemCaches, {u"com.apple.x"_s});
    EXPECT_TRUE(clearSystemCaches());
    EXPECT_EQ(takeTrace(), u"Scanning System Caches in /Library/Caches...\n"
                           "Scanning System Caches in /System/Library/Caches...\n"_s +
                               kAsking +
                               prompted(u"rm -rf '/Library/Caches/com.maker.app'; rm -rf '/Library/Caches/Two Words'; "
                                        "rm -rf '/System/Library/Caches/com.apple.x'"_s) +
                               kCleared);
    EXPECT_EQ(files.changes(), 0) << "only root removes there";
}

TEST_F(MaintenanceTest, aRefusedPromptIsAFailure) {
    addTo(kLibraryCaches, {u"a"_s});
    scripts.failNext(u"User canceled."_s);
    EXPECT_FALSE(clearSystemCaches());
    EXPECT_EQ(takeTrace(), u"Scanning System Caches in /Library/Caches...\n"
                           "Skipping /System/Library/Caches (does not exist).\n"_s +
                               kAsking + prompted(u"rm -rf '/Library/Caches/a'"_s) +
                               u"  [ERROR] System cache cleanup was cancelled or failed: User canceled.\n"_s);
}

TEST_F(MaintenanceTest, withNothingToCleanNoPromptAppears) {
    addTo(kLibraryCaches, {u"Ableton"_s, u"com.apple.iconservices.store"_s});
    addTo(kSystemCaches, {});
    EXPECT_TRUE(clearSystemCaches());
    EXPECT_EQ(takeTrace(), u"Scanning System Caches in /Library/Caches...\n"
                           "Scanning System Caches in /System/Library/Caches...\n"_s +
                               kNothingFound);
}

TEST_F(MaintenanceTest, theIconStoreOfTheSystemIsNotSpokenOf) {
    addTo(kLibraryCaches, {u"com.apple.iconservices.store"_s, u"Traktor"_s, u"a"_s});
    system.setDebugMode(true);
    EXPECT_TRUE(clearSystemCaches());
    EXPECT_EQ(takeTrace(), u"Scanning System Caches in /Library/Caches...\n"
                           "  [SKIPPED] Traktor (Protected)\n"
                           "Skipping /System/Library/Caches (does not exist).\n"_s +
                               kAsking + prompted(u"rm -rf '/Library/Caches/a'"_s) + kCleared);
}

TEST_F(MaintenanceTest, aNameThatCouldEndItsQuotesNeverReachesRootsLine) {
    const QStringList hostile{u"x'; touch \"$HOME\"; '"_s, u"a\"b"_s, u"back\\slash"_s, u"line\nend"_s,
                              u"escape\x1b[2J"_s};
    addTo(kLibraryCaches, hostile + QStringList{u"$(touch y)"_s, u"a; b"_s});
    system.setDebugMode(true);
    EXPECT_TRUE(clearSystemCaches());
    QString skipped;
    for (const QString& name : hostile) {
        skipped += u"  [SKIPPED] %1 (Protected)\n"_s.arg(name);
    }
    EXPECT_EQ(takeTrace(), u"Scanning System Caches in /Library/Caches...\n"_s + skipped +
                               u"Skipping /System/Library/Caches (does not exist).\n"_s + kAsking +
                               prompted(u"rm -rf '/Library/Caches/$(touch y)'; rm -rf '/Library/Caches/a; b'"_s) +
                               kCleared);
}

TEST_F(MaintenanceTest, aSystemFolderThatMayNotBeReadDoesNotKeepTheOther) {
    addTo(kLibraryCaches, {u"a"_s});
    addTo(kSystemCaches, {u"b"_s});
    files.failOn(Operation::List, kLibraryCaches);
    EXPECT_TRUE(clearSystemCaches());
    EXPECT_EQ(takeTrace(), u"Scanning System Caches in /Library/Caches...\n"
                           "Permission denied to read /Library/Caches.\n"
                           "Scanning System Caches in /System/Library/Caches...\n"_s +
                               kAsking + prompted(u"rm -rf '/System/Library/Caches/b'"_s) + kCleared);
}

TEST_F(MaintenanceTest, moreThanALineHoldsFailsBeforeAnyPrompt) {
    QStringList names;
    for (int number = 0; number < 1000; ++number) {
        names.append(QString(200, u'n') + QString::number(number));
    }
    addTo(kLibraryCaches, names);
    EXPECT_FALSE(clearSystemCaches());
    EXPECT_EQ(trace.filter(u"& "_s), QStringList());
    EXPECT_TRUE(trace.last().startsWith(u"  [ERROR] System cache cleanup was cancelled or failed: The administrator "
                                        "command line is too long: "_s))
        << qPrintable(trace.last());
}

// ---- The Trash

TEST_F(MaintenanceTest, theFinderEmptiesTheTrash) {
    files.addFile(u"/Users/alex/.Trash/old"_s, "bytes");
    emptyTrash();
    EXPECT_EQ(takeTrace(), u"Emptying Trash...\n"
                           "$ /bin/rm -rf /Users/alex/.Trash/*\n"
                           "  [APPLIED] Cleared items from Trash folder.\n"_s +
                               kFinder);
}

TEST_F(MaintenanceTest, withoutATrashFolderTheFinderIsAskedAllTheSame) {
    emptyTrash();
    EXPECT_EQ(takeTrace(), u"Emptying Trash...\n"_s + kFinder);
}

TEST_F(MaintenanceTest, whereTheFinderMayNotBeControlledThatIsSaid) {
    commands.respond = [](const QStringList&) {
        CommandOutcome refused = ScriptedCommandLauncher::succeeded({});
        refused.code = 1;
        refused.standardError = "13:71: execution error: Not authorized to send Apple events to Finder. (-1743)\n";
        return std::optional(refused);
    };
    emptyTrash();
    EXPECT_EQ(takeTrace(),
              u"Emptying Trash...\n"_s + kFinder +
                  u"  [INFO] Grant Automation permission for Finder in System Settings → Privacy & Security.\n"_s);
}

TEST_F(MaintenanceTest, whatTheToolsSayOfTheTrashDoesNotMatter) {
    files.addFolders(u"/Users/alex/.Trash"_s);
    commands.respond = [](const QStringList&) {
        CommandOutcome refused = ScriptedCommandLauncher::succeeded({});
        refused.code = 1;
        return std::optional(refused);
    };
    const MaintenanceOutcome outcome = run({false, true, false});
    EXPECT_EQ(outcome, (MaintenanceOutcome{true, {u"Trash emptied."_s}}));
    EXPECT_EQ(takeTrace(), u"Emptying Trash...\n"
                           "Emptying Trash...\n"
                           "$ /bin/rm -rf /Users/alex/.Trash/*\n"
                           "  [APPLIED] Cleared items from Trash folder.\n"_s +
                               kFinder + u"\nCleanup Complete!\n"_s);
}

// ---- Downloads

TEST_F(MaintenanceTest, everythingGoesFromDownloadsAndIsCounted) {
    addTo(kDownloads, {u"Ableton Live 12.dmg"_s, u"it's.zip"_s, u".DS_Store"_s});
    addTo(kDownloads + u"/Album"_s, {u"one.wav"_s, u"two.wav"_s});
    files.addLink(kDownloads + u"/dangling"_s, u"/nowhere"_s);
    system.setDebugMode(true);
    purgeDownloads();
    EXPECT_EQ(takeTrace(), u"Clearing Downloads folder...\n"
                           "  [APPLIED] Cleared 5 item(s) from Downloads.\n"_s);
    EXPECT_EQ(left(kDownloads), QStringList());
}

TEST_F(MaintenanceTest, whatStaysInDownloadsIsNotCounted) {
    addTo(kDownloads, {u"a"_s, u"stuck"_s, u"b"_s});
    files.failOn(Operation::Remove, kDownloads + u"/stuck"_s);
    purgeDownloads();
    EXPECT_EQ(takeTrace(), u"Clearing Downloads folder...\n"
                           "  [APPLIED] Cleared 2 item(s) from Downloads.\n"_s);
    system.setDebugMode(true);
    purgeDownloads();
    EXPECT_EQ(takeTrace(),
              u"Clearing Downloads folder...\n"
              "  [ERROR] Removing stuck from Downloads: /Users/alex/Downloads/stuck: Operation not permitted\n"
              "  [APPLIED] Cleared 0 item(s) from Downloads.\n"_s);
}

TEST_F(MaintenanceTest, downloadsThatAreMissingOrMayNotBeReadAreSaidSo) {
    purgeDownloads();
    EXPECT_EQ(takeTrace(), u"Clearing Downloads folder...\n"
                           "  [INFO] Downloads folder not found.\n"_s);
    addTo(kDownloads, {u"a"_s});
    files.failOn(Operation::List, kDownloads);
    purgeDownloads();
    EXPECT_EQ(takeTrace(), u"Clearing Downloads folder...\n"
                           "  [ERROR] Failed to clear Downloads: /Users/alex/Downloads: Operation not permitted\n"_s);
}

// ---- All of it

TEST_F(MaintenanceTest, theStepsFollowEachOtherWhateverBecameOfTheOneBefore) {
    addTo(kUserCaches, {u"a"_s});
    addTo(kLibraryCaches, {u"b"_s});
    addTo(kDownloads, {u"c"_s});
    scripts.failNext(u"User canceled."_s);
    const MaintenanceOutcome outcome = run({true, true, true});
    EXPECT_EQ(outcome, (MaintenanceOutcome{false,
                                           {u"System cache cleanup failed or was cancelled."_s, u"Trash emptied."_s,
                                            u"Downloads folder purged."_s}}));
    EXPECT_EQ(takeTrace(), u"Starting cache cleanup...\n"
                           "Scanning User Caches in /Users/alex/Library/Caches...\n"
                           "Scanning System Caches in /Library/Caches...\n"
                           "Skipping /System/Library/Caches (does not exist).\n"_s +
                               kAsking + prompted(u"rm -rf '/Library/Caches/b'"_s) +
                               u"  [ERROR] System cache cleanup was cancelled or failed: User canceled.\n"
                               "Emptying Trash...\n"
                               "Emptying Trash...\n"_s +
                               kFinder +
                               u"Purging Downloads folder...\n"
                               "Clearing Downloads folder...\n"
                               "  [APPLIED] Cleared 1 item(s) from Downloads.\n"
                               "\nCleanup Complete!\n"_s);
}

TEST_F(MaintenanceTest, whatIsNotSelectedIsNotTouched) {
    addTo(kUserCaches, {u"a"_s});
    addTo(kDownloads, {u"b"_s});
    EXPECT_EQ(run({}), MaintenanceOutcome());
    EXPECT_EQ(takeTrace(), u"\nCleanup Complete!\n"_s);
    EXPECT_EQ(run({true, false, false}), (MaintenanceOutcome{true, {u"System caches cleared."_s}}));
    EXPECT_EQ(left(kDownloads), QStringList(u"b"_s));
    EXPECT_EQ(run({false, false, true}), (MaintenanceOutcome{true, {u"Downloads folder purged."_s}}));
    EXPECT_EQ(left(kDownloads), QStringList());
}

TEST_F(MaintenanceTest, theProgramIsBusyFromTheFirstLineToTheLast) {
    QStringList busy;
    QObject::connect(&system, &SystemManager::messageLogged,
                     [&](const QString&) { busy.append(system.busyMessage()); });
    run({false, true, false});
    ASSERT_FALSE(busy.isEmpty());
    EXPECT_EQ(busy.count(u"Running maintenance…"_s), busy.size());
    EXPECT_FALSE(system.isBusy());
}

} // namespace quorvane
