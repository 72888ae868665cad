#include "system/SystemManager.h"

#include "core/UserDefaultKeys.h"
#include "matching/SystemVerification.h"
#include "platform/UserDefaults.h"
#include "readings/TimeMachine.h"
#include "tweaks/TweakCommands.h"

#include <QCoroTask>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kWhereAccessIsGiven =
    u"  [INFO] Allow Quorvane to read it in System Settings › Privacy & Security › Full Disk Access."_s;

} // namespace

/// Root's commands without that for Time Machine where it isn't set up, or where it may not be read: it would be refused, and
/// the line drops the refusal. Backups that the program has switched off are switched on all the same: macOS may let root do it, and
/// nobody else will. Before a profile's switches the backups off, that is noted, since a later look may not be permitted any more.
QCoro::Task<QStringList> SystemManager::effectiveCommands(QStringList commands, BackupSwitch origin) {
    const bool switchesOff = commands.contains(timeMachineCommand(false));
    if (!switchesOff && !commands.contains(timeMachineCommand(true))) {
        co_return commands;
    }
    const Reading<TimeMachineState> state = co_await m_verification->readings().readTimeMachineState();
    const bool isOwed = state.value == TimeMachineState::NotPermitted && !switchesOff &&
                        m_verification->readings().hasSwitchedBackupsOff();
    if (!isSwitchable(state.value) && !isOwed) {
        commands.removeAll(timeMachineCommand(true));
        commands.removeAll(timeMachineCommand(false));
    }
    if (state.value == TimeMachineState::NotPermitted && origin == BackupSwitch::OfWayBack) {
        logUnreadableTimeMachine(); // of a profile the verification says so
    }
    const bool isOff = state.value == TimeMachineState::Off;
    if (isSwitchable(state.value) && !isOff && switchesOff && origin == BackupSwitch::OfProfile) {
        m_host.defaults.setBoolean(kQuorvaneSwitchedBackupsOff, true);
    }
    co_return commands;
}

/// After the batch of a way back, which doesn't tell what `tmutil` said. Seeing the backups on ends the note that the program
/// had switched them off, and so does a user's own "off" that has come back.
/// @param captured  what the way back went by; none where there was nothing to go by
QCoro::Task<void> SystemManager::lookAtRestoredBackups(std::optional<bool> captured) {
    if (captured != false && !m_verification->readings().hasSwitchedBackupsOff()) {
        co_return;
    }
    const Reading<TimeMachineState> state = co_await m_verification->readings().readTimeMachineState();
    if (captured == false && state.value == TimeMachineState::Off) {
        m_host.defaults.setBoolean(kQuorvaneSwitchedBackupsOff, false);
        log(u"  [INFO] Time Machine stays off: automatic backups were off when these settings were saved. "
            "Turn them on in System Settings."_s);
    }
}

void SystemManager::logUnreadableTimeMachine() {
    log(u"  [INFO] Time Machine may not be read."_s);
    if (!m_logMessages.contains(kWhereAccessIsGiven)) {
        log(kWhereAccessIsGiven);
    }
}

} // namespace quorvane
