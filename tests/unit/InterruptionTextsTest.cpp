#include "actions/InterruptionTexts.h"

#include "fakes/FlowRecords.h"
#include "flows/InterruptedOutcome.h"

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

FlowRecord apply() {
    FlowRecord record = recordOfApply();
    record.done = 1;
    return record;
}

FlowRecord wayBack(RecordedFlow flow, const QString& name) {
    FlowRecord record = apply();
    record.flow = flow;
    record.name = name;
    return record;
}

} // namespace

TEST(InterruptionTexts, anApplyIsAskedAbout) {
    const Alert question = interruptionQuestion(apply());
    EXPECT_EQ(question.message, u"An Apply Was Interrupted"_s);
    EXPECT_EQ(question.informativeText, u"“Live Set” was being applied when Quorvane ended. 1 of 3 steps were done."_s);
    EXPECT_EQ(question.buttons, (QStringList{u"Finish"_s, u"Go Back"_s, u"Leave as Is"_s}));
    EXPECT_EQ(question.cancelButton, 2);
    EXPECT_EQ(question.returnButton(), std::nullopt) << "Return presses nothing";
    EXPECT_EQ(answerTo(question, 0), InterruptionAnswer::Finish);
    EXPECT_EQ(answerTo(question, 1), InterruptionAnswer::GoBack);
    EXPECT_EQ(answerTo(question, 2), InterruptionAnswer::LeaveAsIs);
}

TEST(InterruptionTexts, aWayBackIsFinishedOrLeft) {
    const Alert question = interruptionQuestion(wayBack(RecordedFlow::Reinstate, u"Reinstate System"_s));
    EXPECT_EQ(question.message, u"A Way Back Was Interrupted"_s);
    EXPECT_EQ(question.informativeText,
              u"“Reinstate System” was being carried out when Quorvane ended. 1 of 3 steps were done."_s);
    EXPECT_EQ(question.buttons, (QStringList{u"Finish"_s, u"Leave as Is"_s}));
    EXPECT_EQ(answerTo(question, 0), InterruptionAnswer::Finish);
    EXPECT_EQ(answerTo(question, 1), InterruptionAnswer::LeaveAsIs);
    EXPECT_EQ(question.cancelButton, 1);
}

TEST(InterruptionTexts, aHostileNameStaysOneLine) {
    FlowRecord record = apply();
    record.name = u"Live\nPress Finish"_s;
    EXPECT_FALSE(interruptionQuestion(record).informativeText.contains(u'\n'));
}

TEST(InterruptionTexts, tellWhatBecameOfIt) {
    EXPECT_EQ(finishedAlert(apply(), {true}).title, u"Finished"_s);
    EXPECT_EQ(finishedAlert(apply(), {false}).title, u"Not Finished"_s);
    EXPECT_EQ(finishedAlert(apply(), {false}).style, AlertStyle::Warning);
    EXPECT_EQ(goneBackAlert(apply(), {true}).text, u"Your Mac is as it was before “Live Set” was applied."_s);
    EXPECT_EQ(goneBackAlert(apply(), {false}).style, AlertStyle::Warning);
    EXPECT_EQ(interruptionNote(apply()), u"“Live Set” was being applied when Quorvane ended. 1 of 3 steps were done. "
                                         "\"resume\" finishes it, \"rollback\" goes back to before it."_s);
}

} // namespace quorvane
