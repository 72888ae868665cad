#include "actions/InterruptionTexts.h"

#include "actions/ActionTexts.h"
#include "core/OneLine.h"
#include "flows/FlowRecord.h"
#include "flows/InterruptedOutcome.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kFinish = u"Finish"_s;
const QString kGoBack = u"Go Back"_s;
const QString kLeave = u"Leave as Is"_s;

QString quotedName(const FlowRecord& interrupted) {
    return u"“%1”"_s.arg(nameOnOneLine(interrupted.name));
}

} // namespace

Alert interruptionQuestion(const FlowRecord& interrupted) {
    Alert question;
    const QString steps = u"%1 of %2 steps were done."_s.arg(interrupted.done).arg(interrupted.steps.size());
    if (isWayBack(interrupted.flow)) {
        question.message = u"A Way Back Was Interrupted"_s;
        question.informativeText = quotedName(interrupted) + u" was being carried out when Quorvane ended. "_s + steps;
        question.buttons = {kFinish, kLeave};
    } else {
        question.message = u"An Apply Was Interrupted"_s;
        question.informativeText = quotedName(interrupted) + u" was being applied when Quorvane ended. "_s + steps;
        question.buttons = {kFinish, kGoBack, kLeave};
    }
    question.cancelButton = static_cast<int>(question.buttons.size()) - 1;
    question.isReturnSafe = false;
    question.style = AlertStyle::Warning;
    return question;
}

InterruptionAnswer answerTo(const Alert& question, int pressed) {
    const QString button = question.buttons.value(pressed);
    if (button == kFinish) {
        return InterruptionAnswer::Finish;
    }
    return button == kGoBack ? InterruptionAnswer::GoBack : InterruptionAnswer::LeaveAsIs;
}

QString finishingText(const FlowRecord& interrupted) {
    return u"Finishing “%1”…"_s.arg(nameOnOneLine(interrupted.name));
}

QString goingBackText(const FlowRecord& interrupted) {
    return u"Going back to before “%1”…"_s.arg(nameOnOneLine(interrupted.name));
}

ClosingAlert finishedAlert(const FlowRecord& interrupted, const InterruptedOutcome& outcome) {
    switch (interrupted.flow) {
    case RecordedFlow::Undo:
        return undoAlert(outcome.restore.value_or(RestoreOutcome()));
    case RecordedFlow::Default:
        return defaultAlert(outcome.restore.value_or(RestoreOutcome()));
    case RecordedFlow::Reinstate:
        return reinstateAlert(outcome.restore.value_or(RestoreOutcome()));
    case RecordedFlow::Profile:
    case RecordedFlow::Tweaks:
    case RecordedFlow::Startup:
        break;
    }
    if (outcome.succeeded) {
        return {u"Finished"_s, quotedName(interrupted) + u" is applied."_s, AlertStyle::Success};
    }
    return {u"Not Finished"_s, quotedName(interrupted) + u" could not be finished. Check the Logs tab for details."_s,
            AlertStyle::Warning};
}

ClosingAlert goneBackAlert(const FlowRecord& interrupted, const InterruptedOutcome& outcome) {
    if (outcome.succeeded) {
        return {u"Success"_s, u"Your Mac is as it was before %1 was applied."_s.arg(quotedName(interrupted)),
                AlertStyle::Success};
    }
    if (outcome.restore && !outcome.restore->missing.isEmpty()) {
        return exceptionsAlert(outcome.restore->missing);
    }
    return {u"Not Gone Back"_s,
            u"Not everything is as it was before %1 was applied. Check the Logs tab for details."_s.arg(
                quotedName(interrupted)),
            AlertStyle::Warning};
}

ClosingAlert nothingInterruptedAlert() {
    return {u"Nothing to Take Up"_s, u"No apply and no way back was interrupted."_s};
}

QString interruptionNote(const FlowRecord& interrupted) {
    const QString first = interruptionQuestion(interrupted).informativeText;
    return isWayBack(interrupted.flow) ? first + u" \"resume\" finishes it."_s
                                       : first + u" \"resume\" finishes it, \"rollback\" goes back to before it."_s;
}

} // namespace quorvane
