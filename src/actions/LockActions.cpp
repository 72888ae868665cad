#include "actions/LockActions.h"

#include "actions/ActionStage.h"
#include "actions/AppPasswordEntry.h"
#include "lock/LockManager.h"
#include "lock/LockTexts.h"

#include <QCoroFuture>
#include <QCoroTask>
#include <QScopeGuard>

namespace quorvane {

namespace {

/// @return what is wrong; none when it is done
std::optional<QString> take(LockManager& lock, AppPasswordSheetMode mode,
                            const AppPasswordEntry::Passwords& passwords) {
    switch (mode) {
    case AppPasswordSheetMode::enable:
        return lock.enableLock(passwords.newPassword, passwords.confirmation);
    case AppPasswordSheetMode::change:
        return lock.changePassword(passwords.current, passwords.newPassword, passwords.confirmation);
    case AppPasswordSheetMode::disable:
        break;
    }
    return lock.disableLock(passwords.current);
}

} // namespace

void LockActions::lockNow() {
    m_lock.lockIfEnabled();
}

QCoro::Task<ActionOutcome> LockActions::askPassword(AppPasswordSheetMode mode, ActionListener& listener) {
    return m_stage.run(listener, [=, this](Action& action) { return carryOut(action, mode); });
}

QCoro::Task<void> LockActions::carryOut(Action& action, AppPasswordSheetMode mode) {
    const auto entry = std::make_shared<AppPasswordEntry>(mode, biometryFor(mode));
    const auto goes = qScopeGuard([entry] { entry->end(); });
    action.show(entry);
    std::optional<AppPasswordEntry::Answer> answer = co_await entry->answer();
    while (answer) {
        if (answer->asksForFinger) {
            co_await askForFinger(action, entry);
        } else if (const std::optional<QString> error = take(m_lock, mode, answer->passwords)) {
            entry->fail(*error);
        } else {
            action.outcome.succeeded = true;
            co_return;
        }
        answer = co_await entry->answer();
    }
}

/// What it releases goes nowhere when the program was locked meanwhile.
QCoro::Task<void> LockActions::askForFinger(Action& action, std::shared_ptr<AppPasswordEntry> entry) {
    entry->beginVerifying();
    std::optional<QString> password;
    {
        const UnlockGate::AutoLockSuppression isOurOwn = action.suppressAutoLock();
        const QString reason = verificationReason(entry->mode()).value_or(QString());
        password = co_await m_lock.authenticateWithBiometrics(reason);
    }
    if (!m_lock.isUnlocked()) {
        entry->endVerifying(std::nullopt, {});
    } else {
        entry->endVerifying(password, password ? QString() : verificationFailedText(m_lock.biometryType()));
    }
}

std::optional<BiometryType> LockActions::biometryFor(AppPasswordSheetMode mode) const {
    const bool canBeUsed = verificationReason(mode).has_value() && m_lock.supportsBiometric();
    return canBeUsed ? std::optional(m_lock.biometryType()) : std::nullopt;
}

} // namespace quorvane
