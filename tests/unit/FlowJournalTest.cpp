#include "flows/FlowJournal.h"

#include "core/UserDefaultKeys.h"
#include "fakes/FlowRecords.h"
#include "fakes/ScriptedSystem.h"
#include "startup/items/LoginItem.h"

namespace quorvane {

namespace {

class FlowJournalTest : public ScriptedSystem {
protected:
    /// What a next run would be told.
    std::optional<FlowRecord> leftBehind() {
        machine.running.clear();
        return FlowJournal(system).interrupted();
    }
    std::optional<FlowRecord> inFile() {
        return files.exists(kFile) ? parsedFlowRecord(files.read(kFile)) : std::nullopt;
    }
    FlowRecord flow() {
        FlowRecord record = recordOfApply();
        record.before = {};
        return record;
    }

    const QString kFile = u"/Users/alex/.quorvane/flow-under-way.jsonl"_s;
    const QStringList kSteps = recordOfApply().steps;
    FlowJournal journal{system};
};

} // namespace

TEST_F(FlowJournalTest, writesNothingBeforeTheFirstChange) {
    const FlowRecording recording = journal.record(flow());
    EXPECT_TRUE(journal.isToBegin());
    EXPECT_EQ(files.changes(), 0);
}

TEST_F(FlowJournalTest, tellsWhatWasToBeDoneAndHowFarItCame) {
    defaults.setString(kQuorvaneLastAppliedProfileName, u"Club"_s);
    const FlowRecording recording = journal.record(flow());
    journal.begin(kSteps, recordOfApply().before);
    EXPECT_FALSE(journal.isToBegin());
    journal.strike(kSteps.at(0));
    journal.strike(u"what isn't one of them"_s);
    journal.flush();
    const std::optional<FlowRecord> left = leftBehind();
    ASSERT_TRUE(left);
    EXPECT_EQ(left->name, u"Live Set"_s);
    EXPECT_EQ(left->process, u"this process"_s);
    EXPECT_EQ(left->steps, kSteps);
    EXPECT_EQ(left->done, 1);
    EXPECT_EQ(left->before.settings, recordOfApply().before.settings);
    EXPECT_EQ(left->before.notes.lastAppliedName, u"Club"_s);
}

TEST_F(FlowJournalTest, ofAFlowThatHasEndedLeavesNothing) {
    {
        const FlowRecording recording = journal.record(flow());
        journal.begin(kSteps, {});
    }
    EXPECT_FALSE(files.exists(kFile));
    EXPECT_EQ(leftBehind(), std::nullopt);
    EXPECT_FALSE(journal.underWay());
}

TEST_F(FlowJournalTest, staysWhereTheProgramQuitsInTheMidstOfAFlow) {
    {
        const FlowRecording recording = journal.record(flow());
        journal.begin(kSteps, {});
        journal.strike(kSteps.at(0));
        commands.shutDown();
        journal.strike(kSteps.at(1));
    }
    const std::optional<FlowRecord> left = leftBehind();
    ASSERT_TRUE(left);
    EXPECT_EQ(left->done, 1) << "what is gone through while the tools are ended isn't done";
}

TEST_F(FlowJournalTest, isLeftAloneWhileItsProcessLives) {
    const FlowRecord others = recordOfApply();
    files.addFile(kFile, journalOf(others, 1));
    machine.running.insert(others.process);
    EXPECT_EQ(journal.interrupted(), std::nullopt);
    {
        const FlowRecording recording = journal.record(flow());
        journal.begin(kSteps, {});
        journal.strike(kSteps.at(0));
    }
    EXPECT_EQ(files.read(kFile), journalOf(others, 1)) << "it is the other's";
    EXPECT_EQ(takeTrace(),
              u"  [INFO] Not noted how far this comes, in case it is interrupted: another Quorvane is at work\n"_s);
    machine.running.remove(others.process);
    EXPECT_TRUE(journal.interrupted());
}

TEST_F(FlowJournalTest, ofOnesOwnProcessNumberIsAnEarlierRuns) {
    FlowRecord earlier = recordOfApply();
    earlier.process = machine.processName();
    files.addFile(kFile, journalOf(earlier, 1));
    EXPECT_TRUE(journal.interrupted());
}

TEST_F(FlowJournalTest, aFlowTakenUpAgainKeepsWhatWasThereBeforeItsFirstAttempt) {
    const FlowRecord interrupted = recordOfApply();
    files.addFile(kFile, journalOf(interrupted, 1) + loginItemsLine({{u"Chat"_s, u"/Applications/Chat.app"_s, false}}));
    const FlowRecord found = journal.interrupted().value();
    journal.takeUp(found);
    const FlowRecording recording = journal.record(flow());
    StateBefore halfDone;
    halfDone.keptOff.plists = {u"/Library/LaunchAgents/com.example.plist"_s};
    journal.begin(kSteps, halfDone);
    journal.noteLoginItems({});
    ASSERT_TRUE(inFile());
    EXPECT_EQ(inFile()->before, found.before);
}

TEST_F(FlowJournalTest, theFirstListOfLoginItemsCounts) {
    const FlowRecording recording = journal.record(flow());
    journal.noteLoginItems({LoginItem{u"Early"_s, u"/Applications/Early.app"_s, false}});
    journal.begin(kSteps, {});
    journal.noteLoginItems({LoginItem{u"Chat"_s, u"/Applications/Chat.app"_s, true}});
    journal.noteLoginItems({});
    EXPECT_EQ(inFile()->before.loginItems, (QList<LoginItemSnapshot>{{u"Chat"_s, u"/Applications/Chat.app"_s, true}}));
}

// Each change of the file fails in turn: the flow goes on, and says it once.
TEST_F(FlowJournalTest, aFullDiskIsToldOnceAndStopsNothing) {
    for (int change = 1; change <= 8; ++change) {
        files.failAtChange(change);
        {
            const FlowRecording recording = journal.record(flow());
            journal.begin(kSteps, {});
            journal.noteLoginItems({});
            journal.strike(kSteps.at(0));
            journal.flush();
            journal.strike(kSteps.at(1));
        }
        files.failAtChange(0);
        const QString told = takeTrace();
        EXPECT_LE(told.count(u'\n'), 1) << told.toStdString();
        EXPECT_EQ(journal.interrupted(), std::nullopt) << "it has ended";
        journal.forget();
    }
}

TEST_F(FlowJournalTest, aDamagedRecordIsNone) {
    files.addFile(kFile, "{\"flow\": ");
    EXPECT_EQ(journal.interrupted(), std::nullopt);
    const FlowRecording recording = journal.record(flow());
    journal.begin(kSteps, {});
    EXPECT_TRUE(inFile()) << "and it is in nobody's way";
}

TEST_F(FlowJournalTest, isForgottenOnRequest) {
    files.addFile(kFile, journalOf(recordOfApply(), 1));
    journal.forget();
    EXPECT_EQ(journal.interrupted(), std::nullopt);
    journal.forget();
    EXPECT_EQ(trace, QStringList());
}

} // namespace quorvane
