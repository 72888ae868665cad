#include "fakes/StartupSystem.h"

namespace quorvane {

namespace {

using Operation = MemoryFileManager::Operation;

const QString kHiddenBackup = u"/Users/alex/.quorvane_backup"_s;
const QString kHelperLabel = u"com.getdropbox.dropbox.helper"_s;
const QString kHelpers = u"/Applications/Dropbox.app/Contents/Library/LoginItems"_s;
const QString kHelperBundle = kHelpers + u"/Dropbox Helper.app"_s;
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

TEST_F(Quarantine, aNewerHelperReplacesTheOneInQuarantine) {
    files.addFile(kMoved, "older");
    EXPECT_TRUE(disable());
    EXPECT_EQ(files.read(kMoved), "helper");
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

TEST_F(Quarantine, anOldCopyThatCannotBeRemovedStopsItBeforeTheCopy) {
    files.addFile(kMoved, "older");
    files.failOn(Operation::Remove, kMoved);
    EXPECT_FALSE(disable());
    EXPECT_EQ(traceOfQuarantine(), failed(kMoved + u": Operation not permitted"_s));
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
    for (int change = 1; change <= 4; ++change) {
        files.addFile(kHelperBundle, "helper");
        files.failAtChange(change);
        disable();
        EXPECT_TRUE(files.exists(kHelperBundle) || files.exists(kMoved)) << change;
    }
    EXPECT_FALSE(files.exists(kHelperBundle)) << "the last round had no failure left";
}

// ---- As root

TEST_F(Quarantine, aHelperOfRootsAsksOnce) {
    files.makeUnwritable(kHelperBundle);
    EXPECT_TRUE(disable());
    EXPECT_EQ(traceOfQuarantine(), prompted(quarantineLine(kHelperBundle, kHelperLabel), kSystemChanges) + applied);
    EXPECT_EQ(files.read(kMoved), "helper");
}

TEST_F(Quarantine, aRefusedPromptLeavesTheHelper) {
    files.makeUnwritable(kHelperBundle);
    scripts.failNext(u"User canceled."_s);
    EXPECT_FALSE(disable());
    EXPECT_EQ(traceOfQuarantine(),
              prompted(quarantineLine(kHelperBundle, kHelperLabel), kSystemChanges) + failed(u"User canceled."_s));
    EXPECT_TRUE(files.exists(kHelperBundle));
}

TEST_F(Quarantine, aHelperThatRootLeftInItsPlaceIsAFailureWhateverTheStatus) {
    files.makeUnwritable(kHelperBundle);
    stuck.insert(kHelperBundle);
    EXPECT_FALSE(disable());
    EXPECT_EQ(traceOfQuarantine(), prompted(quarantineLine(kHelperBundle, kHelperLabel), kSystemChanges) +
                                       failed(u"it is still in its place"_s));
}

TEST_F(Quarantine, ofSeveralHelpersEachSucceedsByItself) {
    const QString agent = u"/Applications/Dropbox.app/Contents/Library/LaunchAgents/com.getdropbox.updater.plist"_s;
    files.addFile(agent, "agent");
    files.makeUnwritable(agent);
    files.makeUnwritable(kHelperBundle);
    stuck.insert(kHelperBundle);
    EXPECT_FALSE(disable({kHelperLabel, u"com.getdropbox.updater"_s}));
    EXPECT_EQ(trace.mid(trace.size() - 2),
              QStringList({failed(u"it is still in its place"_s).chopped(1),
                           u"  [APPLIED] Quarantined bundled startup resource: com.getdropbox.updater.plist"_s}));
}

// ---- In a batch

TEST_F(Quarantine, aBatchTakesAHelperOnlyOnce) {
    system.beginAdminBatch();
    EXPECT_TRUE(disable());
    EXPECT_TRUE(disable());
    trace.clear();
    EXPECT_TRUE(finish());
    EXPECT_EQ(trace.first().count(u"/usr/bin/ditto"_s), 1);
    EXPECT_EQ(files.read(kMoved), "helper");
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
    // The label doesn't show it, the file does.
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
