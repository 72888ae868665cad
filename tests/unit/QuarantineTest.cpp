#include "fakes/MortalFileManager.h"
#include "fakes/StartupSystem.h"

#include <algorithm>

namespace quorvane {

namespace {

using Operation = MemoryFileManager::Operation;

const QString kHiddenBackup = u"/Users/alex/.quorvane_backup"_s;
const QString kHelperLabel = u"com.getdropbox.dropbox.helper"_s;
const QString kHelpers = u"/Applications/Dropbox.app/Contents/Library/LoginItems"_s;
const QString kHelperBundle = kHelpers + u"/Dropbox Helper.app"_s;
const QString kApplication = u"/Applications/Dropbox.app"_s;
const QString kLeftover = kHelperBundle + u".removed"_s;
const QString kMoved = kQuarantine + kHelperLabel + u"/Dropbox Helper.app"_s;
const QString kDitto = u"/usr/bin/ditto \""_s + kHelperBundle + u"\" \""_s + kMoved + u'"';

/// One helper that is switched off by its label, outside a batch unless the test opens one.
class Quarantine : public StartupSystem {
protected:
    Quarantine() {
        files.addFile(kHelperBundle, "helper");
        cacheDump({applicationRecord(u"Dropbox"_s, u"com.getdropbox.dropbox"_s),
                   backgroundRecord(u"Dropbox Helper"_s, kHelperLabel, u"com.getdropbox.dropbox"_s)});
    }

    bool disable(const QSet<QString>& labels = {kHelperLabel}) {
        trace.clear();
        return QCoro::waitFor(system.disableBackgroundLabels(labels));
    }
    bool finish() { return QCoro::waitFor(system.finishAdminBatch(u"Please."_s)); }

    /// What followed launchd's rung.
    QString traceOfQuarantine() {
        return takeTrace().section(u"Disabled background login item: "_s + kHelperLabel + u'\n', 1);
    }
    static QString failed(const QString& error) {
        return u"  [ERROR] Failed to quarantine bundled startup resource: Dropbox Helper.app: "_s + error + u'\n';
    }
    const QString applied = u"  [APPLIED] Quarantined bundled startup resource: Dropbox Helper.app\n"_s;
};

} // namespace

TEST_F(Quarantine, theUsersHelperIsCopiedAndThenRemoved) {
    EXPECT_TRUE(disable());
    EXPECT_EQ(traceOfQuarantine(), u"$> "_s + kDitto + u'\n' + applied);
    EXPECT_FALSE(files.exists(kHelperBundle));
    EXPECT_EQ(files.read(kMoved), "helper");
}

TEST_F(Quarantine, aHelperThatIsGoneNeedsNothing) {
    files.remove(kHelperBundle);
    EXPECT_TRUE(disable());
    EXPECT_EQ(traceOfQuarantine(), QString());
}

TEST_F(Quarantine, aCopyThatIsThereAlreadyGetsANameOfItsOwn) {
    files.addFile(kMoved, "older");
    EXPECT_TRUE(disable());
    EXPECT_EQ(traceOfQuarantine(), u"$> "_s + kDitto + u'\n' + applied);
    EXPECT_EQ(files.read(kMoved), "helper");
    EXPECT_EQ(files.read(kMoved + u".1"_s), "older");
}

TEST_F(Quarantine, everyCopyIsKeptHoweverOftenTheHelperComesBack) {
    for (const bool isRoots : {false, true}) {
        if (files.exists(kQuarantine)) {
            removeTree(files, kQuarantine.chopped(1));
        }
        for (const QByteArray& version : {QByteArray("1"), QByteArray("2"), QByteArray("3"), QByteArray("4")}) {
            files.addFile(kHelperBundle, version);
            if (isRoots) {
                giveToRoot(kApplication);
            }
            EXPECT_TRUE(disable());
        }
        EXPECT_EQ(files.read(kMoved), "4");
        QByteArrayList kept;
        for (const QString& suffix : {u".1"_s, u".2"_s, u".3"_s}) {
            kept.append(files.read(kMoved + suffix));
        }
        EXPECT_EQ(kept, QByteArrayList({"1", "2", "3"}));
    }
}

TEST_F(Quarantine, aCopyThatCannotGetAnotherNameStopsIt) {
    files.addFile(kMoved, "older");
    files.failOn(Operation::Move, kMoved);
    EXPECT_FALSE(disable());
    EXPECT_EQ(traceOfQuarantine(), failed(kMoved + u": Operation not permitted"_s));
    EXPECT_TRUE(files.exists(kHelperBundle));
    EXPECT_EQ(files.read(kMoved), "older");
}

TEST_F(Quarantine, whatAFailedCopyHasLeftDoesNotTakeThePlaceOfTheCopy) {
    stuck.insert(kHelperBundle);
    files.addFile(kMoved, "older");
    const auto answer = commands.respond;
    commands.respond = [&](const QStringList& arguments) {
        if (arguments.first() == u"/usr/bin/ditto") {
            files.addFile(kMoved, "hel");
        }
        return answer(arguments);
    };
    commands.fail(kDitto, 1, "ditto: No space left on device\n");
    EXPECT_FALSE(disable());
    EXPECT_FALSE(files.exists(kMoved));
    EXPECT_EQ(files.read(kMoved + u".1"_s), "older");
    EXPECT_EQ(files.read(kHelperBundle), "helper");
}

TEST_F(Quarantine, aSecondHelperOfOneLabelAndNameStaysWhereItIs) {
    const QString other = u"/Applications/Other.app/Contents/Library/LoginItems/Dropbox Helper.app"_s;
    files.addFile(other, "other");
    files.addFile(system.backgroundDumpPath(),
                  dumpOf({applicationRecord(u"Dropbox"_s, u"com.getdropbox.dropbox"_s),
                          applicationRecord(u"Other"_s, u"com.other"_s),
                          backgroundRecord(u"Dropbox Helper"_s, kHelperLabel, u"com.getdropbox.dropbox"_s),
                          backgroundRecord(u"Dropbox Helper"_s, kHelperLabel, u"com.other"_s)}));
    QCoro::waitFor(system.loadPrivilegedBackgroundDump());
    EXPECT_FALSE(disable()) << "it would replace the only copy of the first";
    EXPECT_EQ(files.read(kMoved), "helper");
    EXPECT_EQ(files.read(other), "other");
}

TEST_F(Quarantine, aFailedCopyLeavesTheHelper) {
    stuck.insert(kHelperBundle);
    commands.fail(kDitto, 1, "ditto: No space left on device\n");
    EXPECT_FALSE(disable());
    EXPECT_EQ(traceOfQuarantine(), u"$> "_s + kDitto + u'\n' + failed(u"ditto: No space left on device"_s));
    EXPECT_EQ(files.read(kHelperBundle), "helper");
}

TEST_F(Quarantine, aHelperThatCannotBeRemovedIsAFailureAndTheCopyStays) {
    files.makeUnwritable(kHelpers);
    EXPECT_FALSE(disable());
    EXPECT_EQ(traceOfQuarantine(), u"$> "_s + kDitto + u'\n' + failed(kHelperBundle + u": Permission denied"_s));
    EXPECT_TRUE(files.exists(kHelperBundle));
    EXPECT_EQ(files.read(kMoved), "helper");
}

TEST_F(Quarantine, whatTheSystemKeepsFromOtherProgramsIsSaidOnceWithItsPlace) {
    const QString other = kHelpers + u"/Other.app"_s;
    files.addFile(other, "other");
    files.failOn(Operation::Move, kHelperBundle);
    files.failOn(Operation::Move, other);
    const QString otherLabel = u"com.getdropbox.dropbox.other"_s;
    cacheDump({applicationRecord(u"Dropbox"_s, u"com.getdropbox.dropbox"_s),
               backgroundRecord(u"Dropbox Helper"_s, kHelperLabel, u"com.getdropbox.dropbox"_s),
               backgroundRecord(u"Other"_s, otherLabel, u"com.getdropbox.dropbox"_s)});
    EXPECT_FALSE(disable({kHelperLabel, otherLabel}));
    const QStringList lines = system.logMessages().filter(u"App Management"_s);
    EXPECT_EQ(lines,
              QStringList(u"  [INFO] Allow Quorvane in System Settings → Privacy & Security → App Management to change "
                          "other applications."_s));
    EXPECT_EQ(system.logMessages().filter(failed(QString()).trimmed().chopped(1)).size(), 1);
    EXPECT_TRUE(files.exists(kHelperBundle));
}

TEST_F(Quarantine, aHelperWhoseRemainsCannotBeRemovedIsOutOfReachAndThatIsSaid) {
    files.failOn(MemoryFileManager::Operation::Remove, kHelperBundle + u".removed"_s);
    EXPECT_TRUE(disable());
    EXPECT_TRUE(traceOfQuarantine().contains(u"  [ERROR] Could not remove "_s + kHelperBundle +
                                             u".removed: Operation not permitted\n"_s));
    EXPECT_FALSE(files.exists(kHelperBundle));
}

TEST_F(Quarantine, afterAFailureAtAnyChangeTheHelperIsInOneOfItsPlaces) {
    for (int change = 1; change <= 6; ++change) {
        files.addFile(kHelperBundle, "helper");
        files.failAtChange(change);
        disable();
        EXPECT_TRUE(files.exists(kHelperBundle) || files.exists(kMoved)) << change;
    }
    EXPECT_FALSE(files.exists(kHelperBundle)) << "the last round had no failure left";
}

// ---- What a run that was killed has left

TEST_F(Quarantine, theNextRunRemovesWhatAKilledOneHasLeft) {
    files.addFile(kMoved, "helper");
    files.move(kHelperBundle, kLeftover);
    EXPECT_TRUE(disable());
    EXPECT_FALSE(files.exists(kLeftover));
    EXPECT_EQ(files.read(kMoved), "helper");
    EXPECT_EQ(system.logMessages().filter(u"[INFO] Removed"_s),
              QStringList(u"  [INFO] Removed what an interrupted run had left: Dropbox Helper.app.removed"_s));
}

TEST_F(Quarantine, aLeftoverBesideAHelperThatHasComeBackBlocksNothing) {
    files.addFile(kMoved, "older");
    files.addFile(kLeftover, "older");
    EXPECT_TRUE(disable());
    EXPECT_FALSE(files.exists(kLeftover));
    EXPECT_FALSE(files.exists(kHelperBundle));
    EXPECT_EQ(files.read(kMoved), "helper");
    EXPECT_EQ(files.read(kMoved + u".1"_s), "older");
}

TEST_F(Quarantine, aLeftoverThatCannotBeRemovedBlocksNothingEither) {
    const QString inside = u"/Contents/MacOS/helper"_s;
    for (int round = 0; round < 2; ++round) {
        if (files.exists(kHelperBundle)) {
            removeTree(files, kHelperBundle);
        }
        files.addFile(kHelperBundle + inside, "helper");
        files.addFile(kQuarantine + u"other label/Dropbox Helper.app"_s + inside, "older");
        files.addFile(kLeftover + inside, "older");
        files.failOn(Operation::Remove, kLeftover + inside);
        EXPECT_TRUE(disable());
        EXPECT_FALSE(files.exists(kHelperBundle));
        EXPECT_EQ(files.list(kHelpers), QStringList(u"Dropbox Helper.app.removed"_s));
        EXPECT_EQ(files.read(kMoved + inside), "helper");
    }
}

TEST_F(Quarantine, aLeftoverWhoseCopyIsNotWholeIsPutBackAndTakenAnew) {
    files.addFile(kMoved, "hel");
    files.move(kHelperBundle, kLeftover);
    EXPECT_TRUE(disable());
    EXPECT_TRUE(
        system.logMessages().contains(u"  [INFO] Put back what an interrupted run had left: Dropbox Helper.app"_s));
    EXPECT_FALSE(files.exists(kLeftover));
    EXPECT_FALSE(files.exists(kHelperBundle));
    EXPECT_EQ(files.read(kMoved), "helper");
    EXPECT_EQ(files.read(kMoved + u".1"_s), "hel");
}

TEST_F(Quarantine, whatNoCopyStandsForIsNotTheProgramsAndStays) {
    files.addFile(kLeftover, "mine");
    files.addFile(kHelpers + u"/Other.app.removed"_s, "mine");
    files.addFile(kHelpers + u"/notes.removed"_s, "mine");
    files.addFile(kQuarantine + kHelperLabel + u"/notes"_s, "mine");
    files.remove(kHelperBundle);
    EXPECT_TRUE(disable());
    EXPECT_EQ(files.list(kHelpers),
              QStringList({u"Dropbox Helper.app.removed"_s, u"Other.app.removed"_s, u"notes.removed"_s}));
}

TEST_F(Quarantine, aLeftoverThatHoldsMoreThanItsCopyStaysBesideANewerHelper) {
    files.addFile(kMoved, "hel");
    files.addFile(kLeftover, "helper, older");
    EXPECT_TRUE(disable());
    EXPECT_EQ(files.read(kLeftover), "helper, older");
    EXPECT_FALSE(files.exists(kHelperBundle));
    EXPECT_EQ(files.read(kMoved), "helper");
}

TEST_F(Quarantine, aRunThatIsKilledAtAnyMomentLeavesNothingAfterTheNext) {
    const QList<BackgroundTaskItem> records{
        applicationRecord(u"Dropbox"_s, u"com.getdropbox.dropbox"_s),
        backgroundRecord(u"Dropbox Helper"_s, kHelperLabel, u"com.getdropbox.dropbox"_s)};
    const QMap<QString, QByteArray> content{{u"/Contents/Info.plist"_s, "plist"},
                                            {u"/Contents/MacOS/helper"_s, "code"},
                                            {u"/Contents/MacOS/crash reporter"_s, "more code"}};
    bool wasKilled = true;
    for (int changes = 0; wasKilled; ++changes) {
        SCOPED_TRACE(changes);
        for (const QString& folder : {kHelpers, kHiddenBackup}) {
            if (files.exists(folder)) {
                removeTree(files, folder);
            }
        }
        for (auto file = content.begin(); file != content.end(); ++file) {
            files.addFile(kHelperBundle + file.key(), *file);
        }
        MortalFileManager disk(files);
        disk.changesLeft = 1; // for the dump
        {
            SystemManager killed(hostWith(disk, clock), notifications);
            files.addFile(killed.backgroundDumpPath(), dumpOf(records));
            QCoro::waitFor(killed.loadPrivilegedBackgroundDump());
            disk.changesLeft = changes;
            QCoro::waitFor(killed.disableBackgroundLabels({kHelperLabel}));
        }
        wasKilled = disk.isDead();

        disable();
        for (const QString& name : files.list(kHelpers)) {
            EXPECT_FALSE(name.contains(u".removed"_s)) << name.toStdString();
        }
        EXPECT_FALSE(files.exists(kHelperBundle));
        bool isWhole = false;
        for (const QString& copy : files.list(kQuarantine + kHelperLabel)) {
            isWhole = isWhole || std::all_of(content.keyBegin(), content.keyEnd(), [&](const QString& path) {
                          const QString file = kQuarantine + kHelperLabel + u'/' + copy + path;
                          return files.exists(file) && files.read(file) == content.value(path);
                      });
        }
        EXPECT_TRUE(isWhole);
    }
}

// ---- As root

TEST_F(Quarantine, aHelperOfRootsAsksOnce) {
    giveToRoot(kApplication);
    EXPECT_TRUE(disable());
    EXPECT_EQ(traceOfQuarantine(), prompted(quarantineLine(kHelperBundle, kHelperLabel), kSystemChanges) + applied);
    EXPECT_EQ(files.read(kMoved), "helper");
}

TEST_F(Quarantine, rootNeverHandlesAHelperWhoseApplicationTheUserCanWrite) {
    for (const QString& writable : {kApplication, kApplication + u"/Contents"_s, kApplication + u"/Contents/Library"_s,
                                    kHelpers, kHelperBundle}) {
        for (const bool isBatch : {false, true}) {
            SCOPED_TRACE(writable.toStdString() + (isBatch ? " in a batch" : ""));
            if (files.exists(kApplication)) {
                removeTree(files, kApplication);
            }
            files.addFile(kHelperBundle, "helper");
            QString path = kHelperBundle;
            while (path != u"/Applications") {
                if (path != writable) {
                    files.makeUnwritable(path);
                }
                path = parentFolder(path);
            }
            if (isBatch) {
                system.beginAdminBatch();
            }
            disable();
            if (isBatch) {
                EXPECT_TRUE(finish());
            }
            EXPECT_EQ(trace.filter(u"& do shell script"_s).filter(u"ditto"_s), QStringList());
            EXPECT_EQ(files.read(kMoved), "helper") << "the copy is made as the user";
            // Freed for the next round.
            files.removeAsRoot(kHelperBundle);
            files.removeAsRoot(kHelperBundle + u".removed"_s);
            for (QString folder = kHelpers; folder != u"/Applications"; folder = parentFolder(folder)) {
                files.removeAsRoot(folder);
            }
        }
    }
}

TEST_F(Quarantine, rootGoesByTheRealPlaceOfAnApplicationThatIsALink) {
    const QString real = u"/Applications/Real.app"_s;
    files.move(kApplication, real);
    files.addLink(kApplication, real);
    giveToRoot(real);
    EXPECT_TRUE(disable());
    EXPECT_EQ(traceOfQuarantine(),
              prompted(quarantineLine(real + u"/Contents/Library/LoginItems/Dropbox Helper.app"_s, kHelperLabel),
                       kSystemChanges) +
                  applied);
    EXPECT_EQ(files.read(kMoved), "helper");
}

TEST_F(Quarantine, aRefusedPromptLeavesTheHelper) {
    giveToRoot(kApplication);
    scripts.failNext(u"User canceled."_s);
    EXPECT_FALSE(disable());
    EXPECT_EQ(traceOfQuarantine(),
              prompted(quarantineLine(kHelperBundle, kHelperLabel), kSystemChanges) + failed(u"User canceled."_s));
    EXPECT_TRUE(files.exists(kHelperBundle));
}

TEST_F(Quarantine, aHelperThatRootLeftInItsPlaceIsAFailureWhateverTheStatus) {
    giveToRoot(kApplication);
    stuck.insert(kHelperBundle);
    EXPECT_FALSE(disable());
    EXPECT_EQ(traceOfQuarantine(), prompted(quarantineLine(kHelperBundle, kHelperLabel), kSystemChanges) +
                                       failed(u"it is still in its place"_s));
}

TEST_F(Quarantine, ofSeveralHelpersEachSucceedsByItself) {
    const QString agent = u"/Applications/Dropbox.app/Contents/Library/LaunchAgents/com.getdropbox.updater.plist"_s;
    files.addFile(agent, "agent");
    giveToRoot(kApplication);
    stuck.insert(kHelperBundle);
    EXPECT_FALSE(disable({kHelperLabel, u"com.getdropbox.updater"_s}));
    EXPECT_EQ(trace.mid(trace.size() - 2),
              QStringList({failed(u"it is still in its place"_s).chopped(1),
                           u"  [APPLIED] Quarantined bundled startup resource: com.getdropbox.updater.plist"_s}));
}

// ---- In a batch

TEST_F(Quarantine, aBatchTakesAHelperOnlyOnce) {
    for (const bool isRoots : {false, true}) {
        files.addFile(kHelperBundle, "helper");
        if (isRoots) {
            giveToRoot(kApplication);
        }
        system.beginAdminBatch();
        EXPECT_TRUE(disable());
        EXPECT_TRUE(disable());
        trace.clear();
        EXPECT_TRUE(finish());
        EXPECT_EQ(trace.join(u'\n').count(u"/usr/bin/ditto"_s), 1);
        EXPECT_EQ(files.read(kMoved), "helper");
    }
}

TEST_F(Quarantine, theNextBatchMayTakeItAgain) {
    system.beginAdminBatch();
    EXPECT_TRUE(disable());
    scripts.failNext(u"User canceled."_s);
    EXPECT_FALSE(finish());
    system.beginAdminBatch();
    EXPECT_TRUE(disable());
    EXPECT_TRUE(finish());
    EXPECT_FALSE(files.exists(kHelperBundle));
}

// ---- What is never moved

TEST_F(Quarantine, whatLeadsOutOfTheApplicationIsNeverMoved) {
    const QString outside = u"/Users/alex/Documents/Dropbox Helper.app"_s;
    files.addFile(outside, "mine");
    removeTree(files, kHelperBundle);
    files.addLink(kHelperBundle, outside);
    EXPECT_TRUE(disable());
    EXPECT_EQ(traceOfQuarantine(), QString());

    removeTree(files, kHelpers);
    files.addLink(kHelpers, u"/Users/alex/Documents"_s);
    EXPECT_TRUE(disable());
    EXPECT_EQ(traceOfQuarantine(), QString());
    EXPECT_EQ(files.read(outside), "mine");
}

TEST_F(Quarantine, launchAgentsOfABundleThatLeadOutOfItAreNeverMoved) {
    const QString outside = u"/Library/LaunchAgents/com.getdropbox.dropbox.helper.plist"_s;
    files.addFile(outside, "system's");
    files.addLink(u"/Applications/Dropbox.app/Contents/Library/LaunchAgents"_s, u"/Library/LaunchAgents"_s);
    EXPECT_TRUE(disable());
    EXPECT_EQ(traceOfQuarantine(), u"$> "_s + kDitto + u'\n' + applied);
    EXPECT_EQ(files.read(outside), "system's");
}

TEST_F(Quarantine, anApplicationThatIsItselfALinkKeepsItsHelpersInside) {
    files.move(u"/Applications/Dropbox.app"_s, u"/Applications/Real.app"_s);
    files.addLink(u"/Applications/Dropbox.app"_s, u"/Applications/Real.app"_s);
    EXPECT_TRUE(disable());
    EXPECT_FALSE(files.exists(u"/Applications/Real.app/Contents/Library/LoginItems/Dropbox Helper.app"_s));
    EXPECT_EQ(files.read(kMoved), "helper");
}

TEST_F(Quarantine, aHelperWithTheNameOfAudioSoftwareStays) {
    // The label doesn't show it, the file does: "plug.in" is no "plug-in".
    const QString plugIn = kHelpers + u"/Plug-In.app"_s;
    files.addFile(plugIn, "audio");
    files.addFile(system.backgroundDumpPath(),
                  dumpOf({applicationRecord(u"Dropbox"_s, u"com.getdropbox.dropbox"_s),
                          backgroundRecord(u"Helper"_s, u"com.x.plug.in"_s, u"com.getdropbox.dropbox"_s)}));
    QCoro::waitFor(system.loadPrivilegedBackgroundDump());
    EXPECT_TRUE(disable({u"com.x.plug.in"_s}));
    EXPECT_EQ(trace.last(), u"  [SKIPPED] Protected bundled startup resource: Plug-In.app"_s);
    EXPECT_EQ(files.read(plugIn), "audio");
}

// ---- Where it goes

TEST_F(Quarantine, aLinkInThePlaceOfAFolderStopsIt) {
    for (const QString& folder :
         {kHiddenBackup, kHiddenBackup + u"/bundled-login-items"_s, kQuarantine + kHelperLabel}) {
        if (files.exists(kHiddenBackup)) {
            removeTree(files, kHiddenBackup);
        }
        files.addFolders(u"/Users/alex/Elsewhere"_s);
        files.addLink(folder, u"/Users/alex/Elsewhere"_s);
        EXPECT_FALSE(disable());
        EXPECT_EQ(traceOfQuarantine(), u"  [ERROR] Backup folder is not usable: "_s + folder + u'\n');
        EXPECT_TRUE(files.exists(kHelperBundle));
        EXPECT_EQ(files.list(u"/Users/alex/Elsewhere"_s), QStringList());
        files.remove(folder);
    }
}

TEST_F(Quarantine, aFileInThePlaceOfAFolderStopsItAlsoInABatch) {
    files.addFile(kHiddenBackup, "not a folder");
    system.beginAdminBatch();
    EXPECT_FALSE(disable());
    EXPECT_EQ(trace.last(), u"  [ERROR] Backup folder is not usable: "_s + kHiddenBackup);
    trace.clear();
    EXPECT_TRUE(finish());
    EXPECT_EQ(takeTrace(), prompted(queuedLaunchctl(kHelperLabel), u"Please."_s));
    EXPECT_TRUE(files.exists(kHelperBundle));
}

TEST_F(Quarantine, aFolderThatCannotBeMadeStopsIt) {
    files.failOn(Operation::CreateFolders, kHiddenBackup);
    EXPECT_FALSE(disable());
    EXPECT_EQ(traceOfQuarantine(), u"  [ERROR] Backup folder is not usable: "_s + kHiddenBackup + u'\n');
    EXPECT_TRUE(files.exists(kHelperBundle));
}

} // namespace quorvane
