#pragma once

#include "core/ClosingAlert.h"
#include "platform/AlertPresenter.h"

#include <QString>

namespace quorvane {

struct FlowRecord;
struct InterruptedOutcome;

// What is asked and told of a flow that a run of the program was in when it ended.

enum class InterruptionAnswer { Finish, GoBack, LeaveAsIs };

/// Nothing is on Return; Escape leaves everything as it is. A way back can't be gone back from: to finish it is to go back.
Alert interruptionQuestion(const FlowRecord& interrupted);
InterruptionAnswer answerTo(const Alert& question, int pressed);

QString finishingText(const FlowRecord& interrupted);
QString goingBackText(const FlowRecord& interrupted);

ClosingAlert finishedAlert(const FlowRecord& interrupted, const InterruptedOutcome& outcome);
ClosingAlert goneBackAlert(const FlowRecord& interrupted, const InterruptedOutcome& outcome);
/// In the terminal.
ClosingAlert nothingInterruptedAlert();

/// For a terminal: what can be done.
QString interruptionNote(const FlowRecord& interrupted);

} // namespace quorvane
