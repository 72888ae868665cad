#include "flows/LastFlow.h"

#include "fakes/FlowRecords.h"
#include "fakes/MemoryFileManager.h"
#include "fakes/ScriptedSystem.h"
#include "verification/LastFlowStanding.h"

namespace quorvane {

namespace {

using Item = ApplyVerificationResult::Item;

const QDateTime kFirst(QDate(2026, 11, 20), QTime(20, 0), Qt::UTC);

ApplyVerificationResult left() {
    ApplyVerificationResult result;
    result.verified = {Item{u"App Nap"_s, u"disabled"_s}, Item{u"Siri"_s, u"disabled"_s}};
    result.failed = {Item{u"Spotlight"_s, u"expected off"_s}};
    return result;
}

class LastFlowTest : public ::testing::Test {
protected:
    MemoryFileManager files;
    FixedMachine machine;
    LastFlowFile file{files, machine};
};

} // namespace

TEST_F(LastFlowTest, comesBackAsItWasSaved) {
    EXPECT_FALSE(file.load());
    const LastFlow last = lastFlowOf(recordOfApply(), left(), kFirst, {});
    file.save(last);
    const std::optional<LastFlow> read = file.load();
    ASSERT_TRUE(read);
    EXPECT_EQ(read->flow, RecordedFlow::Profile);
    EXPECT_EQ(read->name, u"Live Set"_s);
    EXPECT_EQ(read->ended, kFirst);
    EXPECT_EQ(read->since, kFirst);
    EXPECT_TRUE(read->profile.hasSameContent(last.profile));
    EXPECT_EQ(read->held, (QSet<QString>{u"App Nap"_s, u"Siri"_s}));
    file.remove();
    EXPECT_FALSE(file.load());
    file.remove();
}

TEST_F(LastFlowTest, isNoneOfAFileThatIsNone) {
    for (const QByteArray& bytes : {QByteArray(), QByteArray("{"), QByteArray("[]"), QByteArray("{\"flow\": \"x\"}")}) {
        files.addFile(u"/Users/alex/.quorvane/last-flow.json"_s, bytes);
        EXPECT_FALSE(file.load()) << bytes.toStdString();
    }
}

TEST_F(LastFlowTest, aProfileThatIsAppliedAgainHasBeenInForceSinceItsFirstTime) {
    const QDateTime later = kFirst.addDays(2);
    const LastFlow first = lastFlowOf(recordOfApply(), left(), kFirst, {});
    EXPECT_EQ(lastFlowOf(recordOfApply(), left(), later, first).since, kFirst);
    FlowRecord other = recordOfApply();
    other.profile.id = QUuid::createUuid();
    EXPECT_EQ(lastFlowOf(other, left(), later, first).since, later);
    FlowRecord back = recordOfApply();
    back.flow = RecordedFlow::Undo;
    EXPECT_EQ(lastFlowOf(back, left(), later, first).since, later);
}

TEST_F(LastFlowTest, whatHasChangedIsWhatHeldAndDoesNotAnyMore) {
    const LastFlow last = lastFlowOf(recordOfApply(), left(), kFirst, {});
    ApplyVerificationResult now;
    now.verified = {Item{u"App Nap"_s, u"disabled"_s}};
    now.failed = {Item{u"Siri"_s, u"expected disabled"_s}, Item{u"Spotlight"_s, u"expected off"_s},
                  Item{u"Login item: Chat"_s, u"will open at login"_s}};
    const LastFlowStanding standing = standingOf(last, now);
    EXPECT_EQ(standing.changed, QList<Item>(1, now.failed.first())) << "the others never held";
    EXPECT_EQ(changesTitle(standing), u"1 setting has changed since “Live Set” was applied"_s);
    EXPECT_EQ(changeLines(standing), QStringList(u"Siri: expected disabled"_s));
    EXPECT_EQ(standingOf(last, left()).changed, QList<Item>());
    EXPECT_EQ(changesTitle(standingOf(last, left())), QString());
}

TEST(LastFlowStanding, isToldInWords) {
    LastFlowStanding standing{
        u"Live\nSet"_s, false, true, kFirst, {Item{u"A"_s, {}}, Item{u"B"_s, u"x\ny"_s}, Item{u"C"_s, {}}}};
    EXPECT_EQ(changesTitle(standing), u"3 settings have changed since “Live Set” was applied"_s);
    EXPECT_EQ(changeLines(standing), (QStringList{u"A"_s, u"B: x y"_s, u"C"_s}));
    standing.isWayBack = true;
    EXPECT_EQ(changesTitle(standing), u"3 settings have changed since your settings were restored"_s);
}

} // namespace quorvane
