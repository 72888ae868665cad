#include "readings/TimeMachine.h"

#include "core/CommandResult.h"
#include "tweaks/ValueTests.h"

namespace quorvane {

using namespace Qt::StringLiterals;

std::optional<TimeMachineState> timeMachineStateOf(const QString& stored) {
    if (isTruthy(stored)) {
        return TimeMachineState::On;
    }
    return isFalsy(stored) ? std::optional(TimeMachineState::Off) : std::nullopt;
}

std::optional<bool> hasBackupDestination(const CommandResult& destinations) {
    // Systems differ in the status and in the stream.
    const QString text = destinations.standardOutput + destinations.standardError;
    if (text.contains(u"No destinations configured"_s)) {
        return false;
    }
    const bool tellsOfOne = destinations.status == 0 && !destinations.standardOutput.trimmed().isEmpty();
    return tellsOfOne ? std::optional(true) : std::nullopt;
}

bool isBackupRunning(const CommandResult& status) {
    return status.isAnswered && status.status == 0 && status.standardOutput.contains(u"Running = 1"_s);
}

std::optional<bool> automaticBackups(const std::optional<TimeMachineState>& state) {
    if (state == TimeMachineState::On) {
        return true;
    }
    return state == TimeMachineState::Off ? std::optional(false) : std::nullopt;
}

bool isSwitchable(const std::optional<TimeMachineState>& state) {
    return state != TimeMachineState::NotSetUp && state != TimeMachineState::NotPermitted;
}

} // namespace quorvane
