#include "core/AdminScript.h"
#include "fakes/ScriptedSystem.h"

#include <tuple>

namespace quorvane {

namespace {

using Operation = MemoryFileManager::Operation;

const QString kAgentFolder = u"/Library/LaunchAgents/"_s;
const QString kDaemonFolder = u"/Library/LaunchDaemons/"_s;
const QString kSupport = u"/Library/Application Support"_s;
const QString kKeptAgents = kSupport + u"/Quorvane/LaunchItems/_Library_LaunchAgents/"_s;
const QString kKeptDaemons = kSupport + u"/Quorvane/LaunchItems/_Library_LaunchDaemons/"_s;
const QString kKeptBackup = u"/Users/alex/.quorvane_backup"_s;
const QString kAgentsKept = kKeptBackup + u"/_Library_LaunchAgents/"_s;
const QString kDaemonsKept = kKeptBackup + u"/_Library_LaunchDaemons/"_s;
const QString kBoxPlist = u"com.box.plist"_s;

const QString kAgentBack =
    u"( ([ -e '/Library/LaunchAgents/com.box.plist' ] || [ -L '/Library/LaunchAgents/com.box.plist' ]) && "
    "(launchctl enable 'system/com.box.job' ; launchctl enable 'gui/501/com.box.job' ; mv "
    "'/Library/Application Support/Quorvane/LaunchItems/_Library_LaunchAgents/com.box.plist' "
    "'/Library/Application Support/Quorvane/LaunchItems/_Library_LaunchAgents/com.box.plist.replaced' ; "
    "true) || (cp -p '/Library/Application "
    "Support/Quorvane/LaunchItems/_Library_LaunchAgents/com.box.plist' '/Library/Application "
    "Support/Quorvane/LaunchItems/_Library_LaunchAgents/com.box.plist.new' && mv '/Library/Application "
    "Support/Quorvane/LaunchItems/_Library_LaunchAgents/com.box.plist.new' "
    "'/Library/LaunchAgents/com.box.plist' && (launchctl enable 'system/com.box.job' ; launchctl enable "
    "'gui/501/com.box.job' ; rm -f '/Library/Application "
    "Support/Quorvane/LaunchItems/_Library_LaunchAgents/com.box.plist'))) 2>/dev/null || true"_s;
const QString kDaemonBack =
    u"( ([ -e '/Library/LaunchDaemons/com.box.plist' ] || [ -L '/Library/LaunchDaemons/com.box.plist' ]) "
    "&& (launchctl enable 'system/com.box.job' ; launchctl enable 'gui/501/com.box.job' ; launchctl "
    "bootstrap system '/Library/LaunchDaemons/com.box.plist' ; mv '/Library/Application "
    "Support/Quorvane/LaunchItems/_Library_LaunchDaemons/com.box.plist' '/Library/Application "
    "Support/Quorvane/LaunchItems/_Library_LaunchDaemons/com.box.plist.replaced' ; true) || (cp -p "
    "'/Library/Application Support/Quorvane/LaunchItems/_Library_LaunchDaemons/com.box.plist' "
    "'/Library/Application Support/Quorvane/LaunchItems/_Library_LaunchDaemons/com.box.plist.new' && mv "
    "'/Library/Application Support/Quorvane/LaunchItems/_Library_LaunchDaemons/com.box.plist.new' "
    "'/Library/LaunchDaemons/com.box.plist' && (launchctl enable 'system/com.box.job' ; launchctl enable "
    "'gui/501/com.box.job' ; launchctl bootstrap system '/Library/LaunchDaemons/com.box.plist' ; rm -f "
    "'/Library/Application Support/Quorvane/LaunchItems/_Library_LaunchDaemons/com.box.plist'))) "
    "2>/dev/null || true"_s;
const QString kDaemonBackWithoutLabel =
    u"( ([ -e '/Library/LaunchDaemons/com.box.plist' ] || [ -L '/Library/LaunchDaemons/com.box.plist' ]) "
    "&& (mv '/Library/Application Support/Quorvane/LaunchItems/_Library_LaunchDaemons/com.box.plist' "
    "'/Library/Application Support/Quorvane/LaunchItems/_Library_LaunchDaemons/com.box.plist.replaced' ; "
    "true) || (cp -p '/Library/Application "
    "Support/Quorvane/LaunchItems/_Library_LaunchDaemons/com.box.plist' '/Library/Application "
    "Support/Quorvane/LaunchItems/_Library_LaunchDaemons/com.box.plist.new' && mv '/Library/Application "
    "Support/Quorvane/LaunchItems/_Library_LaunchDaemons/com.box.plist.new' "
    "'/Library/LaunchDaemons/com.box.plist' && (rm -f '/Library/Application "
    "Support/Quorvane/LaunchItems/_Library_LaunchDaemons/com.box.plist'))) 2>/dev/null || true"_s;
const QString kQueued = u"  [ACTION] Queued restore for system launch item: com.box.plist\n"_s;
const QString kNotRestored = u"  [INFO] Not restored: com.box.plist\n"_s;

const QString kRecordFile = u"/Users/alex/.quorvane/launchd-overrides.json"_s;
const QByteArray kTwoRecorded = R"([{"label": "com.helper", "domain": "user"},
                                    {"label": "com.my daemon", "domain": "system"}])";

const QString kMyDaemon = u"system/com.my daemon"_s;

class KeptLaunchItems : public ScriptedSystem {
protected:
    /// As the program has left it: both are off.
    void addTwoRecorded() {
        files.addFile(kRecordFile, kTwoRecorded);
        commands.launchd.overrides = {{u"gui/501/com.helper"_s, true}, {kMyDaemon, true}};
    }
    /// A folder and those around it, up to "/Library", which only root can change.
    static void addRootsFolder(MemoryFileManager& disk, const QString& folder) {
        disk.addFolders(folder);
        for (QString path = folder; path != u"/Library"_s; path = path.left(path.lastIndexOf(u'/'))) {
            disk.setOwner(path, 0);
            disk.makeUnwritable(path);
        }
    }
    /// As root has left it when it was switched off.
    void keep(const QString& path, const QByteArray& bytes, const QString& jobLabel = u"com.box.job"_s) {
        files.addFile(path, bytes);
        files.setOwner(path, 0);
        files.makeUnwritable(path);
        addRootsFolder(files, path.left(path.lastIndexOf(u'/')));
        propertyLists.lists.insert(path, {{u"Label"_s, jobLabel}});
    }
    /// As root has moved it there when it was switched off.
    void putAside(const QString& path, const QByteArray& bytes) {
        files.addFile(path, bytes);
        files.setOwner(path, 0);
    }

    /// Each batch shows its own prompt.
    void begin() {
        system.clearAdminAuthorization();
        system.beginAdminBatch();
        system.queueKeptLaunchItems();
    }
    void finishAndSettle() {
        QCoro::waitFor(system.finishAdminBatch(u"Please."_s));
        QCoro::waitFor(system.settleKeptLaunchItems());
    }
    /// A batch with nothing else in it.
    void reinstate() {
        begin();
        finishAndSettle();
    }
    /// Root's part of a line: the plist is back, or has been, and its copy is gone.
    void carryOut(const QString& keptFolder, const QString& folder, const QByteArray& bytes = "box") {
        scripts.carryOut = [=, this](const QString&) {
            files.addFile(folder + kBoxPlist, bytes);
            files.removeAsRoot(keptFolder + kBoxPlist);
        };
    }
    static QString asRoot(const QString& line) {
        return u"& "_s + ScriptedScriptEngine::withoutPath(adminScriptSource(line, u"Please."_s)) + u'\n';
    }
};

} // namespace

TEST_F(KeptLaunchItems, withoutCopiesNothingIsAskedForAndNothingSaid) {
    reinstate();
    addRootsFolder(files, kKeptAgents.chopped(1));
    reinstate();
    EXPECT_EQ(trace, QStringList());
}

TEST_F(KeptLaunchItems, aDaemonIsPutBackEnabledAndLoadedByRoot) {
    keep(kKeptDaemons + kBoxPlist, "box");
    files.addFolders(kDaemonFolder);
    putAside(kDaemonsKept + kBoxPlist, "box");
    carryOut(kKeptDaemons, kDaemonFolder);
    reinstate();
    EXPECT_EQ(takeTrace(), kQueued + asRoot(kDaemonBack));
    EXPECT_EQ(files.list(kDaemonsKept), QStringList());
}

TEST_F(KeptLaunchItems, anAgentIsPutBackByRootAndLoadedByTheUser) {
    keep(kKeptAgents + kBoxPlist, "box");
    putAside(kAgentsKept + kBoxPlist, "box");
    carryOut(kKeptAgents, kAgentFolder);
    reinstate();
    EXPECT_EQ(takeTrace(),
              kQueued + asRoot(kAgentBack) + u"$ /bin/launchctl load /Library/LaunchAgents/com.box.plist\n"_s);
    EXPECT_EQ(files.list(kAgentsKept), QStringList());
}

TEST_F(KeptLaunchItems, allGoInTheLineOfTheBatch) {
    keep(kKeptDaemons + kBoxPlist, "box");
    keep(kKeptAgents + kBoxPlist, "box");
    begin();
    system.queueAdminCommands({u"pmset -a sms 1"_s});
    trace.clear();
    EXPECT_TRUE(QCoro::waitFor(system.finishAdminBatch(u"Please."_s)));
    EXPECT_EQ(takeTrace(), asRoot(kAgentBack + u" ; "_s + kDaemonBack + u" ; pmset -a sms 1"_s));
}

TEST_F(KeptLaunchItems, whatRootCouldNotPutBackIsSaidAndItsBackupStays) {
    keep(kKeptDaemons + kBoxPlist, "box");
    keep(kKeptAgents + u"com.a.plist"_s, "a");
    putAside(kDaemonsKept + kBoxPlist, "box");
    reinstate(); // the line is only written down here
    EXPECT_TRUE(takeTrace().endsWith(u"\n  [INFO] Not restored: com.a.plist\n"_s + kNotRestored));
    EXPECT_EQ(files.read(kDaemonsKept + kBoxPlist), "box");
}

TEST_F(KeptLaunchItems, afterACancelledPromptNothingIsRestoredAndNothingRemoved) {
    keep(kKeptDaemons + kBoxPlist, "box");
    keep(kKeptAgents + u"com.a.plist"_s, "a");
    files.addFile(kDaemonFolder + kBoxPlist, "box"); // it has come back by itself
    putAside(kDaemonsKept + kBoxPlist, "box");
    putAside(kDaemonsKept + u"com.old.plist"_s, "old");
    scripts.failNext(u"User canceled."_s);
    reinstate();
    EXPECT_EQ(takeTrace().section(u'\n', 3),
              u"  [ERROR] Administrator authorization was cancelled or failed: User canceled.\n"
              "  [INFO] Not restored: com.a.plist\n"
              "  [INFO] Not restored: com.box.plist\n"
              "  [INFO] Not restored: com.old.plist\n"_s);
    EXPECT_EQ(files.list(kDaemonsKept), QStringList({kBoxPlist, u"com.old.plist"_s}));
}

TEST_F(KeptLaunchItems, aBackupOfWhichRootHasNoCopyStaysAndIsSaid) {
    putAside(kDaemonsKept + kBoxPlist, "box");
    putAside(kDaemonsKept + u".DS_Store"_s, "Finder's");
    reinstate();
    EXPECT_EQ(takeTrace(), kNotRestored);
    EXPECT_EQ(files.read(kDaemonsKept + kBoxPlist), "box");
}

TEST_F(KeptLaunchItems, aBackupWithoutACopyGoesOnceTheSamePlistIsBack) {
    putAside(kDaemonsKept + kBoxPlist, "box");
    putAside(kDaemonsKept + u"com.newer.plist"_s, "old");
    files.addFile(kDaemonFolder + kBoxPlist, "box");
    files.addFile(kDaemonFolder + u"com.newer.plist"_s, "new");
    reinstate();
    EXPECT_EQ(trace, QStringList());
    EXPECT_EQ(files.list(kDaemonsKept), QStringList(u"com.newer.plist"_s)) << "the only copy of the older one";
}

TEST_F(KeptLaunchItems, aBackupThatCannotBeRemovedStopsNothing) {
    keep(kKeptDaemons + kBoxPlist, "box");
    for (const QString& name : {kBoxPlist, u"com.z.plist"_s}) {
        putAside(kDaemonsKept + name, "box");
        files.addFile(kDaemonFolder + name, "box");
    }
    carryOut(kKeptDaemons, kDaemonFolder);
    files.failOn(Operation::Remove, kDaemonsKept + kBoxPlist);
    reinstate();
    EXPECT_EQ(takeTrace(), kQueued + asRoot(kDaemonBack) + u"  [ERROR] Could not remove "_s + kDaemonsKept + kBoxPlist +
                               u": Operation not permitted\n"_s);
    EXPECT_EQ(files.list(kDaemonsKept), QStringList(kBoxPlist));
}

TEST_F(KeptLaunchItems, whatIsBackIsSettledAlsoWhenTheBatchFailedAfterIt) {
    keep(kKeptAgents + kBoxPlist, "box");
    keep(kKeptDaemons + kBoxPlist, "box");
    putAside(kAgentsKept + kBoxPlist, "box");
    begin();
    files.addFile(kAgentFolder + kBoxPlist, "box"); // root has come so far
    files.removeAsRoot(kKeptAgents + kBoxPlist);
    scripts.failNext(u"the last command failed"_s);
    finishAndSettle();
    EXPECT_EQ(takeTrace().section(u'\n', -4),
              u"  [ERROR] Administrator authorization was cancelled or failed: the last command failed\n"
              "$ /bin/launchctl load /Library/LaunchAgents/com.box.plist\n"_s +
                  kNotRestored);
    EXPECT_EQ(files.list(kAgentsKept), QStringList());
}

// ---- What launchd was told

TEST_F(KeptLaunchItems, recordedOverridesAreLiftedByRootAndStruckOnceLaunchdShowsIt) {
    addTwoRecorded();
    begin();
    QCoro::waitFor(system.restoreLaunchItems());
    scripts.carryOut = [this](const QString&) { commands.launchd.overrides.remove(kMyDaemon); };
    finishAndSettle();
    EXPECT_EQ(takeTrace(), u"$ /bin/launchctl enable gui/501/com.helper\n"_s +
                               asRoot(u"/bin/launchctl enable system/'com.my daemon' || true"_s) + kLookAtLaunchd +
                               u"  [RESTORED] 2 background item(s) allowed to start again.\n"_s);
    EXPECT_FALSE(files.exists(kRecordFile));
}

TEST_F(KeptLaunchItems, whatLaunchdStillHasAsDisabledStaysRecordedAndIsSaid) {
    addTwoRecorded();
    begin();
    QCoro::waitFor(system.restoreLaunchItems());
    trace.clear();
    scripts.failNext(u"User canceled."_s);
    finishAndSettle();
    EXPECT_EQ(takeTrace().section(u'\n', 1),
              u"  [ERROR] Administrator authorization was cancelled or failed: User canceled.\n"_s + kLookAtLaunchd +
                  u"  [RESTORED] 1 background item(s) allowed to start again.\n"
                  "  [INFO] Not restored: com.my daemon\n"_s);
    EXPECT_EQ(files.read(kRecordFile), "[\n  {\n    \"label\": \"com.my daemon\",\n    \"domain\": \"system\"\n  }\n]");
}

TEST_F(KeptLaunchItems, whatLaunchdDoesNotTellIsNotCalledRestored) {
    addTwoRecorded();
    commands.launchd.overrides.clear();
    commands.fail(u"/bin/launchctl print-disabled system"_s, 5);
    reinstate();
    EXPECT_TRUE(takeTrace().endsWith(u"  [RESTORED] 1 background item(s) allowed to start again.\n"
                                     "  [INFO] Not restored: com.my daemon\n"_s));
}

TEST_F(KeptLaunchItems, aCopyWhoseOverrideIsRecordedIsPutBackWithoutLiftingAnyOther) {
    keep(kKeptDaemons + kBoxPlist, "box");
    files.addFile(kRecordFile, R"([{"label": "com.box.job", "domain": "system"}])");
    begin();
    QCoro::waitFor(system.finishAdminBatch(u"Please."_s));
    const QString withoutEnable = QString(kDaemonBack)
                                      .remove(u"launchctl enable 'system/com.box.job' ; "_s)
                                      .remove(u"launchctl enable 'gui/501/com.box.job' ; "_s);
    EXPECT_EQ(takeTrace(), kQueued + asRoot(u"/bin/launchctl enable system/com.box.job || true ; "_s + withoutEnable));
}

TEST_F(KeptLaunchItems, aCopyOfThisVersionsIsPutBackWithoutLiftingWhatIsNotRecorded) {
    keep(kKeptDaemons + kBoxPlist, "box");
    files.addFile(u"/Users/alex/.quorvane/launch-items-put-aside.json"_s,
                  R"(["/Library/LaunchDaemons/com.box.plist"])");
    begin();
    QCoro::waitFor(system.finishAdminBatch(u"Please."_s));
    EXPECT_FALSE(takeTrace().contains(u"launchctl enable"_s));
}

TEST_F(KeptLaunchItems, aDamagedRecordLiftsNothingIsSaidAndStays) {
    for (const QByteArray& text : {QByteArray("{"), QByteArray("{}"), QByteArray(R"([{"label": "x"}])"),
                                   QByteArray(R"([{"label": "x", "domain": "root"}])")}) {
        files.addFile(kRecordFile, text);
        reinstate();
        EXPECT_TRUE(takeTrace().startsWith(u"  [ERROR] The record of what is switched off is damaged: "_s));
        EXPECT_EQ(files.read(kRecordFile), text);
    }
}

TEST_F(KeptLaunchItems, whatIsPlantedInTheRecordIsNotGivenToRoot) {
    files.addFile(kRecordFile, R"([{"label": "com.apple.screensharing", "domain": "system"},
                                   {"label": "-x", "domain": "system"}, {"label": "a/b", "domain": "system"},
                                   {"label": "", "domain": "system"}, {"label": "a\nb", "domain": "system"}])");
    reinstate();
    EXPECT_EQ(trace, QStringList());
}

// ---- When something stands in its place

TEST_F(KeptLaunchItems, aNewerPlistStaysAndSoDoesTheBackupOfTheOlder) {
    keep(kKeptDaemons + kBoxPlist, "old");
    putAside(kDaemonsKept + kBoxPlist, "old");
    files.addFile(kDaemonFolder + kBoxPlist, "new");
    carryOut(kKeptDaemons, kDaemonFolder, "new");
    reinstate();
    EXPECT_EQ(takeTrace(), kQueued + asRoot(kDaemonBack));
    EXPECT_EQ(files.read(kDaemonFolder + kBoxPlist), "new");
    EXPECT_EQ(files.read(kDaemonsKept + kBoxPlist), "old");
}

TEST_F(KeptLaunchItems, rootDecidesAtTheLastMomentWhetherThePlaceIsTaken) {
    keep(kKeptDaemons + kBoxPlist, "box");
    begin();
    files.addFile(kDaemonFolder + kBoxPlist, "installed while the prompt was open");
    carryOut(kKeptDaemons, kDaemonFolder, "installed while the prompt was open");
    finishAndSettle();
    EXPECT_EQ(takeTrace(), kQueued + asRoot(kDaemonBack));
}

TEST_F(KeptLaunchItems, onlyWhatRootHasKeptCanComeBackAgain) {
    keep(kKeptDaemons + u"com.box.plist.replaced"_s, "older");
    keep(kKeptDaemons + u"com.box.plist.new"_s, "half");
    keep(kKeptDaemons + u"a\nb.plist"_s, "odd");
    keep(kKeptDaemons + u"folder.plist/x"_s, "in a folder");
    addRootsFolder(files, kKeptDaemons + u"folder.plist"_s);
    files.addLink(kKeptDaemons + u"link.plist"_s, kKeptDaemons + u"com.box.plist.new"_s);
    reinstate();
    EXPECT_EQ(trace, QStringList());
}

// ---- What isn't to be trusted

TEST_F(KeptLaunchItems, aLabelThatCannotBeNamedIsNotGivenToLaunchd) {
    for (const QString& label : {u""_s, u".."_s, u"-x"_s, u"a/b"_s, u"a\nb"_s}) {
        keep(kKeptDaemons + kBoxPlist, "box", label);
        reinstate();
        EXPECT_EQ(takeTrace(), kQueued + asRoot(kDaemonBackWithoutLabel) + kNotRestored) << label.toStdString();
    }
    propertyLists.lists.clear(); // as of a file that is no property list
    reinstate();
    EXPECT_EQ(takeTrace(), kQueued + asRoot(kDaemonBackWithoutLabel) + kNotRestored);
}

TEST_F(KeptLaunchItems, theLabelOfACopyThatTheUserCanChangeIsNotBelieved) {
    keep(kKeptDaemons + kBoxPlist, "box");
    files.setOwner(kKeptDaemons + kBoxPlist, 501);
    reinstate();
    EXPECT_EQ(takeTrace(), kQueued + asRoot(kDaemonBackWithoutLabel) + kNotRestored);

    MemoryFileManager open;
    open.addFile(kKeptDaemons + kBoxPlist, "box");
    open.setOwner(kKeptDaemons + kBoxPlist, 0);
    addRootsFolder(open, kKeptDaemons.chopped(1));
    SystemManager manager(hostWith(open, clock), notifications);
    manager.beginAdminBatch();
    manager.queueKeptLaunchItems();
    QCoro::waitFor(manager.finishAdminBatch(u"Please."_s));
    EXPECT_EQ(takeTrace(), asRoot(kDaemonBackWithoutLabel));
}

TEST_F(KeptLaunchItems, aHostileNameAndLabelAreQuotedForTheShellOfRoot) {
    const QString name = u"-a'; rm -rf \"$HOME\" %1 .plist"_s;
    keep(kKeptDaemons + name, "box", u"x'; touch p; '%2"_s);
    begin();
    QCoro::waitFor(system.finishAdminBatch(u"Please."_s));
    const QString place = uR"('/Library/LaunchDaemons/-a'\''; rm -rf "$HOME" %1 .plist')"_s;
    const QString kept =
        uR"('/Library/Application Support/Quorvane/LaunchItems/_Library_LaunchDaemons/-a'\''; rm -rf "$HOME" %1 .plist)"_s;
    const QString started = uR"(launchctl enable 'system/x'\''; touch p; '\''%2' ; )"
                            R"(launchctl enable 'gui/501/x'\''; touch p; '\''%2' ; launchctl bootstrap system )"_s +
                            place + u" ; "_s;
    EXPECT_EQ(takeTrace(), u"  [ACTION] Queued restore for system launch item: "_s + name + u'\n' +
                               asRoot(u"( ([ -e "_s + place + u" ] || [ -L "_s + place + u" ]) && ("_s + started +
                                      u"mv "_s + kept + u"' "_s + kept + u".replaced' ; true) || (cp -p "_s + kept +
                                      u"' "_s + kept + u".new' && mv "_s + kept + u".new' "_s + place + u" && ("_s +
                                      started + u"rm -f "_s + kept + u"'))) 2>/dev/null || true"_s));
}

/// One of the folders from "/Library" to the copies is the user's, can be written by them, or is a link.
class SpoiledCopies : public KeptLaunchItems, public ::testing::WithParamInterface<std::tuple<int, int>> {
protected:
    /// Puts a daemon's copy there, where one folder is spoiled.
    void addSpoiledCopies(MemoryFileManager& disk) {
        enum BackupKind { OfTheUser, Writable, Link };
        const auto [depth, kind] = GetParam();
        const QString spoiled = kKeptDaemons.section(u'/', 0, depth);
        const QString place = kind == Link ? u"/Library/elsewhere"_s + kKeptDaemons.mid(spoiled.size()) : kKeptDaemons;
        if (kind == Link) {
            disk.addFolders(u"/Library/elsewhere"_s);
            disk.addLink(spoiled, u"/Library/elsewhere"_s);
        }
        disk.addFile(place + kBoxPlist, "box");
        disk.setOwner(place + kBoxPlist, 0);
        for (QString path = kKeptDaemons.chopped(1); path != u"/Library"_s; path = path.left(path.lastIndexOf(u'/'))) {
            const bool isSpoiled = path == spoiled;
            disk.setOwner(path, isSpoiled && kind == OfTheUser ? 501 : 0);
            if (!(isSpoiled && kind == Writable)) {
                disk.makeUnwritable(path);
            }
        }
    }
};

INSTANTIATE_TEST_SUITE_P(EachFolderInEachWay, SpoiledCopies,
                         ::testing::Combine(::testing::Range(2, 6), ::testing::Range(0, 3)));

TEST_P(SpoiledCopies, giveRootNothing) {
    addSpoiledCopies(files);
    reinstate();
    EXPECT_EQ(takeTrace(), u"  [ERROR] Backup folder is not usable: "_s + kKeptDaemons.chopped(1) + u'\n');
}

TEST_P(SpoiledCopies, takeNothing) {
    addSpoiledCopies(files);
    files.addFile(kDaemonFolder + kBoxPlist, "box");
    EXPECT_FALSE(QCoro::waitFor(system.disableLaunchItems(QStringList(kBoxPlist), {})));
    EXPECT_EQ(takeTrace(), u"  [ERROR] Backup folder is not usable: "_s + kKeptDaemons.chopped(1) + u'\n');
}

TEST_F(KeptLaunchItems, aLinkInThePlaceOfTheBackupFolderIsLeftAlone) {
    keep(kKeptDaemons + kBoxPlist, "box");
    files.addFile(kDaemonFolder + kBoxPlist, "box");
    files.addLink(kDaemonsKept.chopped(1), u"/Library/LaunchDaemons"_s);
    carryOut(kKeptDaemons, kDaemonFolder);
    reinstate();
    EXPECT_EQ(takeTrace(), kQueued + asRoot(kDaemonBack));
    EXPECT_EQ(files.read(kDaemonFolder + kBoxPlist), "box") << "it would be its own backup";
}

// ---- Together with what the user can move back as well

TEST_F(KeptLaunchItems, theUsersMoveLeavesToRootWhatRootHasKept) {
    keep(kKeptDaemons + kBoxPlist, "box");
    putAside(kDaemonsKept + kBoxPlist, "planted");
    files.addFolders(kDaemonFolder); // which the user may write, here
    begin();
    QCoro::waitFor(system.restoreLaunchItems());
    EXPECT_EQ(files.list(kDaemonFolder), QStringList());
    finishAndSettle();
    trace.clear();
    QCoro::waitFor(system.restoreLaunchItems());
    EXPECT_EQ(files.list(kDaemonFolder), QStringList(kBoxPlist)) << "outside of the batch the user moves what they can";
}

TEST_F(KeptLaunchItems, aSecondBatchAsksAgainForWhatTheFirstDidNotBringBack) {
    keep(kKeptDaemons + kBoxPlist, "box");
    for (int attempt = 1; attempt <= 2; ++attempt) {
        scripts.failNext(u"User canceled."_s);
        reinstate();
    }
    EXPECT_EQ(trace.filter(u"& do shell script"_s).size(), 2);
    EXPECT_EQ(trace.filter(u"Not restored"_s).size(), 2);
}

TEST_F(KeptLaunchItems, whatWasNotLoadedIsPutBackAndNotLoaded) {
    keep(kKeptDaemons + kBoxPlist, "box");
    keep(kKeptAgents + kBoxPlist, "box");
    files.addFile(u"/Users/alex/.quorvane/launch-items-put-aside.json"_s,
                  R"([{"path": "/Library/LaunchDaemons/com.box.plist", "wasLoaded": false},
                      {"path": "/Library/LaunchAgents/com.box.plist"}])");
    scripts.carryOut = [this](const QString&) {
        for (const auto& [kept, folder] :
             {std::pair(kKeptDaemons, kDaemonFolder), std::pair(kKeptAgents, kAgentFolder)}) {
            files.addFile(folder + kBoxPlist, "box");
            files.removeAsRoot(kept + kBoxPlist);
        }
    };
    reinstate();
    EXPECT_EQ(trace.filter(u"bootstrap"_s), QStringList());
    EXPECT_EQ(trace.filter(u"launchctl load"_s), QStringList());
    EXPECT_EQ(trace.filter(u"rm -f"_s).size(), 1) << "but they are back";
}

TEST_F(KeptLaunchItems, aDaemonThatWasLoadedIsBootstrapped) {
    keep(kKeptDaemons + kBoxPlist, "box");
    files.addFile(u"/Users/alex/.quorvane/launch-items-put-aside.json"_s,
                  R"([{"path": "/Library/LaunchDaemons/com.box.plist", "wasLoaded": true}])");
    begin();
    EXPECT_TRUE(QCoro::waitFor(system.finishAdminBatch(u"Please."_s)));
    EXPECT_EQ(trace.filter(u"bootstrap system '/Library/LaunchDaemons/com.box.plist'"_s).size(), 1);
}

} // namespace quorvane
