// Cleaning up on scripted ports: every command, script and log line, and what is left on the disk.

#include "core/AdminScript.h"
#include "fakes/ScriptedSystem.h"
#include "maintenance/MaintenanceSelection.h"

namespace quorvane {

namespace {

using Operation = MemoryFileManager::Operation;
using Problem = std::optional<QString>;

const QString kUserCaches = u"/Users/alex/Library/Caches"_s;
const QString kLibraryCaches = u"/Library/Caches"_s;
const QString kSystemCaches = u"/System/Library/Caches"_s;
const QString kDownloads = u"/Users/alex/Downloads"_s;

const QString kAsking = u"Requesting Administrator privileges to clear system caches...\n"_s;
const QString kCancelled = u"System cache cleanup failed or was cancelled."_s;
const QString kFinderRefused = u"The Trash wasn’t emptied: Quorvane may not control the Finder."_s;
const QString kFinderPlace = u"Grant Automation permission for Finder in System Settings → Privacy & Security."_s;
const QString kCleared = u"  [APPLIED] Successfully cleared unprotected items in system caches.\n"_s;
const QString kNothingFound = u"No unprotected items found in system caches to clean.\n"_s;
const QString kFinder = u"$> /usr/bin/osascript -e "
                        "\"tell application \"Finder\" to if (count of items in trash) > 0 then empty trash\"\n"_s;

class MaintenanceTest : public ScriptedSystem {
protected:
    void clearUserCaches() { QCoro::waitFor(system.clearCacheDirectory(kUserCaches, u"User Caches"_s)); }
    // Each gives what the user is told of what isn't done.
    Problem clearSystemCaches() { return QCoro::waitFor(system.clearSystemCaches()); }
    Problem emptyTrash() { return QCoro::waitFor(system.emptyTrash()); }
    Problem purgeDownloads() { return QCoro::waitFor(system.purgeDownloads()); }
    MaintenanceOutcome run(const MaintenanceSelection& selection) {
        return QCoro::waitFor(system.runMaintenance(selection));
    }

    static QString prompted(const QString& line) {
        const QString prompt = u"Quorvane needs your administrator password to make these system changes."_s;
        return u"& "_s + ScriptedScriptEngine::withoutPath(adminScriptSource(line, prompt)) + u'\n';
    }
    /// What root's line removes, which ends with the status of its last command.
    void letRootRemove(const QStringList& paths, int status = 0) {
        if (status != 0) {
            scripts.answerNext({std::nullopt, u"rm: x: Operation not permitted"_s, status});
        }
        QObject::connect(&system, &SystemManager::messageLogged, [this, paths](const QString& line) {
            for (const QString& path : line + u'\n' == kAsking ? paths : QStringList()) {
                files.removeAsRoot(path);
            }
        });
    }
    /// What the Finder's script ends with.
    void letFinderFail(const QByteArray& error) {
        commands.respond = [error](const QStringList&) {
            CommandOutcome refused = ScriptedCommandLauncher::succeeded({});
            refused.code = 1;
            refused.standardError = error;
            return std::optional(refused);
        };
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
    letRootRemove(
        {kLibraryCaches + u"/com.maker.app"_s, kLibraryCaches + u"/Two Words"_s, kSystemCaches + u"/com.apple.x"_s});
    EXPECT_EQ(clearSystemCaches(), std::nullopt);
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
    EXPECT_EQ(clearSystemCaches(), kCancelled);
    EXPECT_EQ(takeTrace(), u"Scanning System Caches in /Library/Caches...\n"
                           "Skipping /System/Library/Caches (does not exist).\n"_s +
                               kAsking + prompted(u"rm -rf '/Library/Caches/a'"_s) +
                               u"  [ERROR] System cache cleanup was cancelled or failed: User canceled.\n"_s);
}

TEST_F(MaintenanceTest, whatRootCouldNotRemoveIsCountedAsProtected) {
    addTo(kLibraryCaches, {u"vault"_s, u"a"_s, u"other vault"_s});
    letRootRemove({kLibraryCaches + u"/a"_s});
    EXPECT_EQ(clearSystemCaches(), u"2 item(s) are protected by macOS."_s) << "though the line has succeeded";
    EXPECT_TRUE(takeTrace().endsWith(kCleared + u"  [ERROR] 2 item(s) are protected by macOS.\n"_s));
}

TEST_F(MaintenanceTest, theStatusOfTheLastCommandDoesNotCount) {
    addTo(kLibraryCaches, {u"a"_s, u"b"_s});
    letRootRemove({kLibraryCaches + u"/a"_s, kLibraryCaches + u"/b"_s}, 1);
    EXPECT_EQ(clearSystemCaches(), std::nullopt);
    EXPECT_TRUE(takeTrace().endsWith(kCleared));
    addTo(kLibraryCaches, {u"vault"_s});
    letRootRemove({}, 1);
    EXPECT_EQ(clearSystemCaches(), u"1 item(s) are protected by macOS."_s);
    EXPECT_TRUE(takeTrace().endsWith(prompted(u"rm -rf '/Library/Caches/vault'"_s) +
                                     u"  [ERROR] 1 item(s) are protected by macOS.\n"_s))
        << "nothing was cleared";
}

TEST_F(MaintenanceTest, anEntryThatItsProgramMakesAnewIsNotProtected) {
    addTo(kLibraryCaches, {u"a"_s});
    scripts.carryOut = [this](const QString&) {
        files.removeAsRoot(kLibraryCaches + u"/a"_s);
        addTo(kLibraryCaches, {u"a"_s});
    };
    EXPECT_EQ(clearSystemCaches(), std::nullopt);
    EXPECT_EQ(left(kLibraryCaches), QStringList(u"a"_s));
}

TEST_F(MaintenanceTest, withNothingToCleanNoPromptAppears) {
    addTo(kLibraryCaches, {u"Ableton"_s, u"com.apple.iconservices.store"_s});
    addTo(kSystemCaches, {});
    EXPECT_EQ(clearSystemCaches(), std::nullopt);
    EXPECT_EQ(takeTrace(), u"Scanning System Caches in /Library/Caches...\n"
                           "Scanning System Caches in /System/Library/Caches...\n"_s +
                               kNothingFound);
}

TEST_F(MaintenanceTest, theIconStoreOfTheSystemIsNotSpokenOf) {
    addTo(kLibraryCaches, {u"com.apple.iconservices.store"_s, u"Traktor"_s, u"a"_s});
    system.setDebugMode(true);
    letRootRemove({kLibraryCaches + u"/a"_s});
    EXPECT_EQ(clearSystemCaches(), std::nullopt);
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
    letRootRemove({kLibraryCaches + u"/$(touch y)"_s, kLibraryCaches + u"/a; b"_s});
    EXPECT_EQ(clearSystemCaches(), std::nullopt);
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
    letRootRemove({kSystemCaches + u"/b"_s});
    EXPECT_EQ(clearSystemCaches(), std::nullopt);
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
    EXPECT_EQ(clearSystemCaches(), kCancelled);
    EXPECT_EQ(trace.filter(u"& "_s), QStringList());
    EXPECT_TRUE(trace.last().startsWith(u"  [ERROR] System cache cleanup was cancelled or failed: The administrator "
                                        "command line is too long: "_s))
        << qPrintable(trace.last());
}

// ---- The Trash

TEST_F(MaintenanceTest, theFinderEmptiesTheTrash) {
    files.addFile(u"/Users/alex/.Trash/old"_s, "bytes");
    EXPECT_EQ(emptyTrash(), std::nullopt);
    EXPECT_EQ(takeTrace(), u"Emptying Trash...\n"_s + kFinder);
}

TEST_F(MaintenanceTest, whereTheFinderMayNotBeControlledThatIsSaid) {
    letFinderFail("13:71: execution error: Not authorized to send Apple events to Finder. (-1743)\n");
    EXPECT_EQ(emptyTrash(), kFinderRefused + u' ' + kFinderPlace);
    EXPECT_EQ(takeTrace(), u"Emptying Trash...\n"_s + kFinder + u"  [ERROR] "_s + kFinderRefused + u"\n  [INFO] "_s +
                               kFinderPlace + u'\n');
}

TEST_F(MaintenanceTest, whatElseKeepsTheTrashIsSaidInTheSystemsWords) {
    const struct {
        QByteArray error;
        QString words;
    } cases[] = {{"13:71: execution error: Finder got an error: AppleEvent handler failed. (-10000)\n",
                  u"Finder got an error: AppleEvent handler failed."_s},
                 {"13:71: execution error: User canceled. (-128)\n", u"User canceled."_s},
                 {"", u"Unknown error"_s}};
    for (const auto& [error, words] : cases) {
        letFinderFail(error);
        EXPECT_EQ(run({false, true, false}), (MaintenanceOutcome{false, {u"The Trash wasn’t emptied: "_s + words}}));
        EXPECT_EQ(takeTrace(), u"Emptying Trash...\nEmptying Trash...\n"_s + kFinder +
                                   u"  [ERROR] The Trash wasn’t emptied: "_s + words + u"\n\nCleanup Complete!\n"_s);
    }
}

TEST_F(MaintenanceTest, aScriptThatDidNotEndByItselfHasEmptiedNothing) {
    for (const CommandOutcome& outcome : ScriptedCommandLauncher::unanswered()) {
        commands.respond = [outcome](const QStringList&) { return std::optional(outcome); };
        EXPECT_TRUE(emptyTrash().has_value());
    }
}

// ---- Downloads

TEST_F(MaintenanceTest, everythingGoesFromDownloadsAndIsCounted) {
    addTo(kDownloads, {u"Ableton Live 12.dmg"_s, u"it's.zip"_s, u".DS_Store"_s});
    addTo(kDownloads + u"/Album"_s, {u"one.wav"_s, u"two.wav"_s});
    files.addLink(kDownloads + u"/dangling"_s, u"/nowhere"_s);
    system.setDebugMode(true);
    EXPECT_EQ(purgeDownloads(), std::nullopt);
    EXPECT_EQ(takeTrace(), u"Clearing Downloads folder...\n"
                           "  [APPLIED] Cleared 5 item(s) from Downloads.\n"_s);
    EXPECT_EQ(left(kDownloads), QStringList());
}

TEST_F(MaintenanceTest, whatStaysInDownloadsIsCountedByItself) {
    addTo(kDownloads, {u"a"_s, u"stuck"_s, u"b"_s});
    files.failOn(Operation::Remove, kDownloads + u"/stuck"_s);
    EXPECT_EQ(purgeDownloads(), u"1 item(s) stayed in Downloads."_s);
    EXPECT_EQ(takeTrace(), u"Clearing Downloads folder...\n"
                           "  [APPLIED] Cleared 2 item(s) from Downloads.\n"
                           "  [ERROR] 1 item(s) stayed in Downloads.\n"_s);
    system.setDebugMode(true);
    EXPECT_EQ(purgeDownloads(), u"1 item(s) stayed in Downloads."_s);
    EXPECT_EQ(takeTrace(),
              u"Clearing Downloads folder...\n"
              "  [ERROR] Removing stuck from Downloads: /Users/alex/Downloads/stuck: Operation not permitted\n"
              "  [APPLIED] Cleared 0 item(s) from Downloads.\n"
              "  [ERROR] 1 item(s) stayed in Downloads.\n"_s);
}

TEST_F(MaintenanceTest, whatIsGoneWhenItCannotBeRemovedHasNotStayed) {
    addTo(kDownloads, {u"stuck"_s, u"quick"_s});
    files.failOn(Operation::Remove, kDownloads + u"/stuck"_s);
    system.setDebugMode(true);
    QObject::connect(&system, &SystemManager::messageLogged, [this](const QString& line) {
        if (line.contains(u"Removing stuck"_s)) {
            files.removeAsRoot(kDownloads + u"/quick"_s);
        }
    });
    EXPECT_EQ(purgeDownloads(), u"1 item(s) stayed in Downloads."_s);
}

TEST_F(MaintenanceTest, downloadsThatAreMissingOrMayNotBeReadAreSaidSo) {
    EXPECT_EQ(purgeDownloads(), std::nullopt);
    EXPECT_EQ(takeTrace(), u"Clearing Downloads folder...\n"
                           "  [INFO] Downloads folder not found.\n"_s);
    addTo(kDownloads, {u"a"_s});
    files.failOn(Operation::List, kDownloads);
    EXPECT_EQ(purgeDownloads(), u"The Downloads folder may not be read."_s);
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
    EXPECT_EQ(outcome, (MaintenanceOutcome{false, {kCancelled, u"Trash emptied."_s, u"Downloads folder purged."_s}}));
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
