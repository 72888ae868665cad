#include "fakes/StartupSystem.h"
#include "startup/background/StartupMemory.h"

namespace quorvane {

namespace {

using Operation = MemoryFileManager::Operation;

const QString kAskForList = u"Please."_s;
const QString kSyncLabel = u"com.x.sync"_s;

class BackgroundTasks : public StartupSystem {
protected:
    void loadPrivileged() { QCoro::waitFor(system.loadPrivilegedBackgroundDump()); }
    /// A batch that needs the list.
    bool runBatch(const QSet<QString>& labels = {kSyncLabel}) {
        system.deferBackgroundTaskFetchToAdminBatch();
        system.beginAdminBatch();
        StartupConfiguration configuration;
        for (const QString& label : labels) {
            configuration.items.append(backgroundItemOff(label));
        }
        QCoro::waitFor(system.applyStartupConfiguration(configuration));
        trace.clear();
        return QCoro::waitFor(system.finishAdminBatch(kAskForList));
    }
    void leaveDump(const QByteArray& text) { files.addFile(system.backgroundDumpPath(), text); }
    void leaveWholeDump() { leaveDump(wholeDump(sync)); }

    QStringList names() const {
        QStringList found;
        for (const BackgroundTaskItem& item : system.backgroundTaskItems()->items()) {
            found.append(item.name);
        }
        return found;
    }
    bool isDumpThere() const { return files.status(system.backgroundDumpPath()).kind != FileStatus::Kind::Missing; }

    const QByteArray sync = dumpOf({backgroundRecord(u"Sync"_s, kSyncLabel)});
};

} // namespace

TEST_F(BackgroundTasks, theDumpLiesInTheTemporaryFolderUnderTheProcess) {
    EXPECT_EQ(system.backgroundDumpPath(),
              u"/var/folders/zz/alex/T/quorvane-btm-%1.txt"_s.arg(QCoreApplication::applicationPid()));
}

// ---- In a batch: root's line alone brings it

TEST_F(BackgroundTasks, itIsTheLastCommandOfTheLineAndItsFileIsRemoved) {
    dump = sync;
    system.deferBackgroundTaskFetchToAdminBatch();
    system.beginAdminBatch();
    QCoro::waitFor(system.applyCleanReboot({{u"Sync"_s}, std::nullopt, {}}));
    QCoro::waitFor(system.runAdminCommand(u"pmset -a sms 0"_s, kAskForList));
    trace.clear();
    EXPECT_TRUE(QCoro::waitFor(system.finishAdminBatch(kAskForList)));
    EXPECT_TRUE(takeTrace().startsWith(kLookAtLaunchd + prompted(u"pmset -a sms 0 ; "_s + dumpLine(), kAskForList)));
    EXPECT_EQ(names(), QStringList(u"Sync"_s));
    EXPECT_FALSE(isDumpThere());
}

TEST_F(BackgroundTasks, nobodyAsksForItAsTheUser) {
    dump = sync;
    runBatch();
    QCoro::waitFor(system.discoverStartupItems(SystemManager::StartupRefresh::Force));
    EXPECT_EQ(trace.filter(u"$> /usr/bin/sfltool"_s), QStringList()) << "that raises a dialog of the system's";
}

TEST_F(BackgroundTasks, aListWithoutTheMarkOfItsEndIsNotRead) {
    const QByteArray whole = wholeDump(sync);
    for (const qsizetype size : {qsizetype(0), sync.size() / 2, sync.size(), whole.size() - 1}) {
        leaveDump(whole.first(size));
        loadPrivileged();
        EXPECT_TRUE(system.backgroundTaskItems()->isEmpty()) << size;
        EXPECT_FALSE(isDumpThere());
    }
    leaveDump(whole);
    loadPrivileged();
    EXPECT_EQ(names(), QStringList(u"Sync"_s));
}

TEST_F(BackgroundTasks, aDumpThatSaysNothingIsAnEmptyList) {
    for (const QByteArray& text : {QByteArray(""), QByteArray("\xff\xfe#1:\nName: Sync\n"), QByteArray("No items\n")}) {
        leaveDump(wholeDump(text));
        loadPrivileged();
        EXPECT_TRUE(system.backgroundTaskItems()->isEmpty());
        EXPECT_FALSE(isDumpThere());
    }
    loadPrivileged();
    EXPECT_TRUE(system.backgroundTaskItems()->isEmpty()) << "there was no dump at all";
    EXPECT_EQ(system.logMessages(), QStringList());
}

TEST_F(BackgroundTasks, anEmptyListIsTakenAgainByTheNextBatch) {
    runBatch();
    ASSERT_TRUE(system.backgroundTaskItems()->isEmpty());
    dump = sync;
    EXPECT_TRUE(runBatch({u"com.other"_s}));
    EXPECT_EQ(names(), QStringList(u"Sync"_s));
}

TEST_F(BackgroundTasks, applicationsThatOpenByTheirOwnRegistrationAreRemembered) {
    BackgroundTaskItem application = applicationRecord(u"Chat"_s, u"com.chat"_s);
    application.disposition = u"[enabled, allowed, notified] (0xb)"_s;
    application.url = u"file:///Applications/Chat.app/"_s;
    BackgroundTaskItem off = applicationRecord(u"Quiet"_s, u"com.quiet"_s);
    off.disposition = u"[disabled, allowed, notified] (0xa)"_s;
    off.url = u"file:///Applications/Quiet.app/"_s;
    BackgroundTaskItem own = applicationRecord(u"Quorvane"_s, u"com.quorvane.app"_s);
    own.disposition = application.disposition;
    own.url = u"file:///Applications/Quorvane.app/"_s;
    cacheDump({application, off, own});
    EXPECT_EQ(StartupMemoryFile(files, machine).load().registeredApplications,
              QStringList(u"/Applications/Chat.app"_s));
}

// ---- What lies in the place of the dump

TEST_F(BackgroundTasks, whatWasPlantedThereIsGoneBeforeRootWrites) {
    files.addFile(u"/Users/alex/Documents/song.txt"_s, "la");
    files.addLink(system.backgroundDumpPath(), u"/Users/alex/Documents/song.txt"_s);
    scripts.carryOut = [this](const QString&) {
        EXPECT_FALSE(isDumpThere());
        leaveWholeDump();
    };
    runBatch();
    EXPECT_EQ(names(), QStringList(u"Sync"_s));
    EXPECT_EQ(files.read(u"/Users/alex/Documents/song.txt"_s), "la");
}

TEST_F(BackgroundTasks, onlyARegularFileOfRootOrTheUserIsRead) {
    files.addFile(u"/Users/alex/elsewhere.txt"_s, wholeDump(sync));
    files.addLink(system.backgroundDumpPath(), u"/Users/alex/elsewhere.txt"_s);
    loadPrivileged();
    EXPECT_EQ(names(), QStringList());

    leaveWholeDump();
    files.setOwner(system.backgroundDumpPath(), 502);
    loadPrivileged();
    EXPECT_EQ(names(), QStringList());

    for (const quint32 owner : {0U, MemoryFileManager::kUser}) {
        leaveWholeDump();
        files.setOwner(system.backgroundDumpPath(), owner);
        loadPrivileged();
        EXPECT_EQ(names(), QStringList(u"Sync"_s)) << owner;
    }
    EXPECT_EQ(files.read(u"/Users/alex/elsewhere.txt"_s), wholeDump(sync));
}

TEST_F(BackgroundTasks, aDumpThatCannotBeReadIsAnEmptyList) {
    leaveWholeDump();
    files.failOn(Operation::Read, system.backgroundDumpPath());
    loadPrivileged();
    EXPECT_TRUE(system.backgroundTaskItems()->isEmpty());
}

TEST_F(BackgroundTasks, aDumpThatCannotBeRemovedIsReadAllTheSame) {
    leaveWholeDump();
    files.failOn(Operation::Remove, system.backgroundDumpPath());
    loadPrivileged();
    EXPECT_EQ(names(), QStringList(u"Sync"_s));
    EXPECT_EQ(system.logMessages(), QStringList());
}

TEST_F(BackgroundTasks, rootWritesNothingWhereSomethingCannotBeRemoved) {
    files.addLink(system.backgroundDumpPath(), u"/etc/sudoers"_s);
    files.failOn(Operation::Remove, system.backgroundDumpPath());
    EXPECT_FALSE(runBatch());
    EXPECT_TRUE(takeTrace().startsWith(u"  [ERROR] Background items can't be read: "_s + system.backgroundDumpPath() +
                                       u": Operation not permitted\n"_s));
    EXPECT_EQ(prompts(), 0) << "nothing was queued";
    EXPECT_FALSE(system.backgroundTaskItems().has_value());
}

TEST_F(BackgroundTasks, whatKilledRunsHaveLeftIsGoneBeforeTheNextDump) {
    const QString folder = u"/var/folders/zz/alex/T/"_s;
    const QStringList left{u"quorvane-btm-1.txt"_s, u"quorvane-btm-99999.txt"_s};
    const QStringList others{u"quorvane-btm-.txt"_s,      u"quorvane-btm-x.txt"_s, u"quorvane-btm-12.txt.bak"_s,
                             u"my quorvane-btm-12.txt"_s, u"quorvane-btm-12"_s,    u"notes.txt"_s};
    for (const QString& name : left + others) {
        files.addFile(folder + name, sync);
        files.setOwner(folder + name, 0);
    }
    files.failOn(Operation::Remove, folder + left.first());
    EXPECT_TRUE(runBatch());
    EXPECT_EQ(prompts(), 1) << "what can't be removed stops nothing";
    QStringList names = files.list(folder);
    names.sort();
    QStringList expected = others + QStringList(left.first());
    expected.sort();
    EXPECT_EQ(names, expected);
}

TEST_F(BackgroundTasks, aRefusedBatchReadsNoDump) {
    scripts.failNext(u"User canceled."_s);
    EXPECT_FALSE(runBatch());
    leaveWholeDump();
    EXPECT_FALSE(system.backgroundTaskItems().has_value());
}

} // namespace quorvane
