#include "flows/FlowRecord.h"

#include "core/UserDefaultKeys.h"
#include "fakes/FlowRecords.h"
#include "fakes/MemoryUserDefaults.h"

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QList<LoginItemSnapshot> kChat{{u"Chat"_s, u"/Applications/Chat.app"_s, true}};

void expectSame(const FlowRecord& read, const FlowRecord& written) {
    EXPECT_EQ(beginningOf(read).toStdString(), beginningOf(written).toStdString());
    EXPECT_TRUE(read.profile.hasSameContent(written.profile));
    EXPECT_EQ(read.before, written.before);
}

} // namespace

TEST(FlowRecord, comesBackAsItWasWritten) {
    const FlowRecord record = recordOfApply();
    const std::optional<FlowRecord> read = parsedFlowRecord(beginningOf(record));
    ASSERT_TRUE(read);
    expectSame(*read, record);
    EXPECT_EQ(read->done, 0);
    EXPECT_FALSE(read->hasEnded);
}

TEST(FlowRecord, ofAWayBackKeepsWhatItGoesBy) {
    FlowRecord record;
    record.flow = RecordedFlow::Reinstate;
    record.name = u"Reinstate System"_s;
    record.began = recordOfApply().began;
    record.baseline = RestoreBaseline{*recordOfApply().before.settings, RestoreSource::Baseline, true, u"Studio"_s};
    const std::optional<FlowRecord> read = parsedFlowRecord(beginningOf(record));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->baseline, record.baseline);
    EXPECT_TRUE(isWayBack(read->flow));
}

TEST(FlowRecord, ofTweaksKeepsTheirCleanReboot) {
    FlowRecord record = recordOfApply();
    record.flow = RecordedFlow::Tweaks;
    record.cleanReboot = CleanReboot{{u"Chat"_s}, record.profile.startup, {u"com.example.agent"_s}};
    const std::optional<FlowRecord> read = parsedFlowRecord(beginningOf(record));
    ASSERT_TRUE(read && read->cleanReboot);
    EXPECT_EQ(read->cleanReboot->permittedNames, record.cleanReboot->permittedNames);
    EXPECT_EQ(read->cleanReboot->startup, record.cleanReboot->startup);
    EXPECT_EQ(read->cleanReboot->excludedIds, record.cleanReboot->excludedIds);
}

TEST(FlowRecord, tellsHowFarItCame) {
    const FlowRecord record = recordOfApply();
    EXPECT_EQ(parsedFlowRecord(journalOf(record, 2))->done, 2);
    EXPECT_EQ(parsedFlowRecord(journalOf(record, 2) + doneLine(u"another step"_s))->done, 2);
    QByteArray often = journalOf(record, 3);
    often += doneLine(record.steps.first());
    EXPECT_EQ(parsedFlowRecord(often)->done, 3) << "never more than there are";
    EXPECT_EQ(parsedFlowRecord(journalOf(record, 1) + loginItemsLine(kChat))->before.loginItems, kChat);
    EXPECT_TRUE(parsedFlowRecord(journalOf(record, 3) + endLine())->hasEnded);
}

// A power cut takes the end of the file, wherever that is.
TEST(FlowRecord, ofAFileThatIsCutOffSaysWhatIsWhole) {
    const FlowRecord record = recordOfApply();
    const QByteArray beginning = beginningOf(record);
    const QByteArray whole = beginning + doneLine(record.steps.at(0)) + loginItemsLine(kChat);
    for (qsizetype size = 0; size <= whole.size(); ++size) {
        const std::optional<FlowRecord> read = parsedFlowRecord(whole.first(size));
        ASSERT_EQ(read.has_value(), size >= beginning.size()) << size;
        if (read) {
            EXPECT_EQ(read->done, size >= beginning.size() + doneLine(record.steps.at(0)).size() ? 1 : 0) << size;
            EXPECT_EQ(read->before.loginItems.has_value(), size == whole.size()) << size;
        }
    }
}

TEST(FlowRecord, isNoneOfWhatIsNoRecord) {
    for (const QByteArray& bytes :
         {QByteArray(), QByteArray("\n"), QByteArray("{}\n"), QByteArray("[]\n"), QByteArray("{\"flow\": \"dance\"}\n"),
          doneLine(u"App Nap"_s), QByteArray("\0\0\0\n", 4)}) {
        EXPECT_FALSE(parsedFlowRecord(bytes)) << bytes.toStdString();
    }
}

TEST(FlowRecord, readsNothingBehindALineThatIsNone) {
    const FlowRecord record = recordOfApply();
    const QByteArray bytes = journalOf(record, 1) + "garbage\n" + doneLine(record.steps.at(1)) + endLine();
    const std::optional<FlowRecord> read = parsedFlowRecord(bytes);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->done, 1);
    EXPECT_FALSE(read->hasEnded);
}

TEST(ProgramNotes, comeBackAsTheyWere) {
    MemoryUserDefaults defaults;
    const ProgramNotes none = readProgramNotes(defaults);
    const QVariantMap before = defaults.values;
    defaults.setString(kQuorvaneLastAppliedProfileName, u"Live Set"_s);
    defaults.setStringArray(kQuorvaneChangedTweaks, {u"appNap"_s});
    defaults.setStringArray(kQuorvaneManagedStartupAppPaths, {u"/Applications/Live.app"_s});
    defaults.setBoolean(kQuorvaneSwitchedBackupsOff, true);
    const ProgramNotes all = readProgramNotes(defaults);
    EXPECT_EQ(all, (ProgramNotes{u"Live Set"_s, {u"appNap"_s}, {u"/Applications/Live.app"_s}, true}));
    writeProgramNotes(none, defaults);
    EXPECT_EQ(readProgramNotes(defaults), none);
    EXPECT_FALSE(defaults.values.contains(kQuorvaneLastAppliedProfileName));
    EXPECT_FALSE(defaults.values.contains(kQuorvaneChangedTweaks));
    writeProgramNotes(all, defaults);
    EXPECT_EQ(readProgramNotes(defaults), all);
    EXPECT_EQ(before, QVariantMap());
}

} // namespace quorvane
