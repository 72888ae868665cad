#include "fakes/StartupSystem.h"

namespace quorvane {

namespace {

using Fetch = SystemManager::PrivilegedFetch;
using Operation = MemoryFileManager::Operation;

const QString kTool = u"/usr/bin/sfltool dumpbtm"_s;
const QString kAsk = u"Please."_s;

class BackgroundTasks : public StartupSystem {
protected:
    BackgroundTasks() { commands.fail(kTool, 1, "sfltool[9:9] authorization failed\n"); }

    void ensure(Fetch privileged = Fetch::Allowed) {
        QCoro::waitFor(system.ensureBackgroundTaskItems(kAsk, privileged));
    }
    void load() { QCoro::waitFor(system.loadBackgroundTaskItems()); }
    void loadPrivileged() { QCoro::waitFor(system.loadPrivilegedBackgroundDump()); }
    auto readUnprivileged() { return QCoro::waitFor(system.readBackgroundTaskDumpUnprivileged()); }
    bool finish() { return QCoro::waitFor(system.finishAdminBatch(kAsk)); }
    void leaveDump(const QByteArray& text) { files.addFile(system.backgroundDumpPath(), text); }

    QStringList names() const {
        QStringList found;
        for (const BackgroundTaskItem& item : system.backgroundTaskItems()->items()) {
            found.append(item.name);
        }
        return found;
    }
    bool isDumpThere() const { return files.status(system.backgroundDumpPath()).kind != FileStatus::Kind::Missing; }

    const QByteArray sync = dumpOf({backgroundRecord(u"Sync"_s, u"com.x.sync"_s)});
};

} // namespace

TEST_F(BackgroundTasks, theDumpLiesInTheTemporaryFolderUnderTheProcess) {
    EXPECT_EQ(system.backgroundDumpPath(),
              u"/var/folders/zz/alex/T/quorvane-btm-%1.txt"_s.arg(QCoreApplication::applicationPid()));
}

// ---- Without administrator rights

TEST_F(BackgroundTasks, aRefusedReadGivesNothing) {
    EXPECT_EQ(readUnprivileged(), std::nullopt);
    EXPECT_EQ(takeTrace(), u"$> /usr/bin/sfltool dumpbtm\n"_s);
}

TEST_F(BackgroundTasks, aReadThatFailsGivesNothingWhateverItPrinted) {
    CommandOutcome outcome = ScriptedCommandLauncher::succeeded(sync);
    outcome.code = 1;
    commands.answer(kTool, outcome);
    EXPECT_EQ(readUnprivileged(), std::nullopt);
}

TEST_F(BackgroundTasks, aReadWithoutARecordGivesNothing) {
    for (const QByteArray& text :
         {QByteArray(), QByteArray(" \n\t\n"), QByteArray("no records\n"), QByteArray("\xff")}) {
        commands.print(kTool, text);
        EXPECT_EQ(readUnprivileged(), std::nullopt) << text.toStdString();
    }
}

TEST_F(BackgroundTasks, bothStreamsAreReadStandardOutputFirst) {
    CommandOutcome outcome = ScriptedCommandLauncher::succeeded("#1:\nName: First\n");
    outcome.standardError = "#2:\nName: Second\n";
    commands.answer(kTool, outcome);
    ASSERT_EQ(readUnprivileged()->size(), 2);
    EXPECT_EQ(readUnprivileged()->first().name, u"First"_s);
}

TEST_F(BackgroundTasks, aLoadFillsTheCacheOnceAndAFailedOneLeavesItAbsent) {
    load();
    EXPECT_FALSE(system.backgroundTaskItems().has_value());
    commands.print(kTool, sync);
    load();
    EXPECT_EQ(names(), QStringList(u"Sync"_s));
    load();
    EXPECT_EQ(takeTrace(), u"$> /usr/bin/sfltool dumpbtm\n$> /usr/bin/sfltool dumpbtm\n"_s);
}

// ---- With administrator rights

TEST_F(BackgroundTasks, whatTheUserMayReadNeedsNoPrompt) {
    commands.print(kTool, sync);
    ensure();
    EXPECT_EQ(names(), QStringList(u"Sync"_s));
    EXPECT_EQ(takeTrace(), u"$> /usr/bin/sfltool dumpbtm\n"_s);
    ensure();
    EXPECT_EQ(trace, QStringList());
}

TEST_F(BackgroundTasks, aRefusedReadIsRepeatedAsRootAndTheFileRemoved) {
    dump = sync;
    ensure();
    EXPECT_EQ(names(), QStringList(u"Sync"_s));
    EXPECT_EQ(takeTrace(), u"$> /usr/bin/sfltool dumpbtm\n"_s + prompted(dumpLine(), kAsk));
    EXPECT_FALSE(isDumpThere());
}

TEST_F(BackgroundTasks, aPromptThatIsNotAllowedIsNotShown) {
    ensure(Fetch::Refused);
    EXPECT_FALSE(system.backgroundTaskItems().has_value());
    EXPECT_EQ(takeTrace(), u"$> /usr/bin/sfltool dumpbtm\n"_s);
}

TEST_F(BackgroundTasks, aRefusedPromptLeavesTheCacheAbsentAndNoLine) {
    scripts.failNext(u"User canceled."_s);
    ensure();
    EXPECT_FALSE(system.backgroundTaskItems().has_value());
    EXPECT_EQ(system.logMessages(), QStringList());
    dump = sync;
    ensure();
    EXPECT_EQ(names(), QStringList(u"Sync"_s));
}

TEST_F(BackgroundTasks, aDumpThatSaysNothingIsAnEmptyList) {
    for (const QByteArray& text : {QByteArray(""), QByteArray("\xff\xfe#1:\nName: Sync\n"), QByteArray("No items\n")}) {
        leaveDump(text);
        loadPrivileged();
        EXPECT_TRUE(system.backgroundTaskItems()->isEmpty());
        EXPECT_FALSE(isDumpThere());
    }
    loadPrivileged();
    EXPECT_TRUE(system.backgroundTaskItems()->isEmpty()) << "there was no dump at all";
    EXPECT_EQ(system.logMessages(), QStringList());
}

TEST_F(BackgroundTasks, anEmptyListCountsAsReadAndIsNotReadAgain) {
    ensure();
    EXPECT_TRUE(system.backgroundTaskItems()->isEmpty());
    trace.clear();
    ensure();
    EXPECT_EQ(trace, QStringList());
}

TEST_F(BackgroundTasks, lineEndsOfAScriptAreRead) {
    leaveDump(QByteArray(sync).replace('\n', '\r'));
    loadPrivileged();
    EXPECT_EQ(names(), QStringList(u"Sync"_s));
}

// ---- What lies in the place of the dump

TEST_F(BackgroundTasks, whatWasPlantedThereIsGoneBeforeRootWrites) {
    files.addFile(u"/Users/alex/Documents/song.txt"_s, "la");
    files.addLink(system.backgroundDumpPath(), u"/Users/alex/Documents/song.txt"_s);
    scripts.carryOut = [this](const QString&) {
        EXPECT_FALSE(isDumpThere());
        leaveDump(sync);
    };
    ensure();
    EXPECT_EQ(names(), QStringList(u"Sync"_s));
    EXPECT_EQ(files.read(u"/Users/alex/Documents/song.txt"_s), "la");
}

TEST_F(BackgroundTasks, whatWasPlantedThereIsGoneBeforeTheLineIsQueued) {
    leaveDump(sync);
    system.beginAdminBatch();
    ensure();
    EXPECT_FALSE(isDumpThere());
}

TEST_F(BackgroundTasks, onlyARegularFileOfRootOrTheUserIsRead) {
    files.addFile(u"/Users/alex/elsewhere.txt"_s, sync);
    files.addLink(system.backgroundDumpPath(), u"/Users/alex/elsewhere.txt"_s);
    loadPrivileged();
    EXPECT_EQ(names(), QStringList());

    leaveDump(sync);
    files.setOwner(system.backgroundDumpPath(), 502);
    loadPrivileged();
    EXPECT_EQ(names(), QStringList());

    for (const quint32 owner : {0U, MemoryFileManager::kUser}) {
        leaveDump(sync);
        files.setOwner(system.backgroundDumpPath(), owner);
        loadPrivileged();
        EXPECT_EQ(names(), QStringList(u"Sync"_s)) << owner;
    }
    EXPECT_EQ(files.read(u"/Users/alex/elsewhere.txt"_s), sync);
}

TEST_F(BackgroundTasks, aDumpThatCannotBeReadIsAnEmptyList) {
    leaveDump(sync);
    files.failOn(Operation::Read, system.backgroundDumpPath());
    loadPrivileged();
    EXPECT_TRUE(system.backgroundTaskItems()->isEmpty());
}

TEST_F(BackgroundTasks, aDumpThatCannotBeRemovedIsReadAllTheSame) {
    leaveDump(sync);
    files.failOn(Operation::Remove, system.backgroundDumpPath());
    loadPrivileged();
    EXPECT_EQ(names(), QStringList(u"Sync"_s));
    EXPECT_EQ(system.logMessages(), QStringList());
}

TEST_F(BackgroundTasks, rootWritesNothingWhereSomethingCannotBeRemoved) {
    files.addLink(system.backgroundDumpPath(), u"/etc/sudoers"_s);
    files.failOn(Operation::Remove, system.backgroundDumpPath());
    ensure();
    const QString refusal = u"  [ERROR] Background items can't be read: "_s + system.backgroundDumpPath() +
                            u": Operation not permitted\n"_s;
    EXPECT_EQ(takeTrace(), u"$> /usr/bin/sfltool dumpbtm\n"_s + refusal);
    EXPECT_FALSE(system.backgroundTaskItems().has_value());

    system.beginAdminBatch();
    ensure();
    EXPECT_TRUE(finish());
    EXPECT_EQ(takeTrace(), refusal) << "nothing was queued";
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
    ensure();
    EXPECT_EQ(prompts(), 1) << "what can't be removed stops nothing";
    QStringList names = files.list(folder);
    names.sort();
    QStringList expected = others + QStringList(left.first());
    expected.sort();
    EXPECT_EQ(names, expected);

    system.beginAdminBatch();
    files.addFile(folder + left.last(), sync);
    ensure();
    EXPECT_TRUE(finish());
    EXPECT_FALSE(files.exists(folder + left.last()));
}

// ---- In a batch

TEST_F(BackgroundTasks, anOpenBatchTakesTheDumpAndItsFlushReadsIt) {
    dump = sync;
    system.beginAdminBatch();
    ensure();
    EXPECT_EQ(trace, QStringList());
    EXPECT_FALSE(system.backgroundTaskItems().has_value());
    EXPECT_TRUE(finish());
    EXPECT_EQ(takeTrace(), prompted(dumpLine(), kAsk));
    EXPECT_EQ(names(), QStringList(u"Sync"_s));
}

TEST_F(BackgroundTasks, aKnownListIsNotTakenAgainInABatch) {
    cacheDump({backgroundRecord(u"Sync"_s, u"com.x.sync"_s)});
    system.beginAdminBatch();
    ensure();
    EXPECT_TRUE(finish());
    EXPECT_EQ(trace, QStringList());
}

TEST_F(BackgroundTasks, anEmptyListIsTakenAgainInABatch) {
    ensure();
    ASSERT_TRUE(system.backgroundTaskItems()->isEmpty());
    trace.clear();
    dump = sync;
    system.beginAdminBatch();
    ensure();
    EXPECT_TRUE(finish());
    EXPECT_EQ(takeTrace(), prompted(dumpLine(), kNeutral));
    EXPECT_EQ(names(), QStringList(u"Sync"_s));
}

TEST_F(BackgroundTasks, aRefusedBatchReadsNoDump) {
    system.beginAdminBatch();
    ensure();
    leaveDump(sync);
    scripts.failNext(u"User canceled."_s);
    EXPECT_FALSE(finish());
    EXPECT_FALSE(system.backgroundTaskItems().has_value());
}

// ---- After something was switched off

TEST_F(BackgroundTasks, onlyRecordsWithExactlyThatLabelAreMarkedAsOff) {
    BackgroundTaskItem unlabelled = backgroundRecord(u"Unlabelled"_s, {});
    unlabelled.identifier = u"unlabelled"_s;
    cacheDump({backgroundRecord(u"Sync"_s, u"com.x.sync"_s), backgroundRecord(u"Twin"_s, u"com.x.sync"_s),
               backgroundRecord(u"Case"_s, u"com.x.Sync"_s), unlabelled});
    system.markBackgroundLabelDisabled(u"com.x.sync"_s);
    QStringList dispositions;
    for (const BackgroundTaskItem& item : system.backgroundTaskItems()->items()) {
        dispositions.append(item.disposition);
    }
    const QString off = u"[disabled, allowed, not notified] (0x2)"_s;
    const QString on = u"[enabled, allowed, notified] (0xb)"_s;
    EXPECT_EQ(dispositions, QStringList({off, off, on, on}));
}

TEST_F(BackgroundTasks, withoutAListThereIsNothingToMark) {
    system.markBackgroundLabelDisabled(u"com.x.sync"_s);
    EXPECT_FALSE(system.backgroundTaskItems().has_value());
}

} // namespace quorvane
