#include "platform/macos/ScriptAnswer.h"

namespace quorvane {

ScriptOutcome scriptOutcome(const ScriptAnswer& answer) {
    ScriptOutcome outcome;
    if (answer.isGiven) {
        outcome.result = answer.text.value_or(QString());
    } else {
        outcome.errorMessage = answer.errorMessage;
        outcome.errorNumber = answer.errorNumber;
    }
    return outcome;
}

} // namespace quorvane
