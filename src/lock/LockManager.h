#pragma once

#include "lock/UnlockGate.h"
#include "platform/Biometrics.h"

#include <QByteArray>
#include <QObject>
#include <QString>

#include <optional>

namespace QCoro {
template <typename T>
class Task;
}

namespace quorvane {

class AlertPresenter;
class Keychain;
class UserDefaults;
class Workspace;

/// The app lock: a gate inside the program that keeps a bystander from changing the system. It guards nothing on disk.
///
/// The password is stored as a salted digest. A second keychain item, which only the enrolled fingers release, holds the
/// password itself; what it releases is checked like a typed password, so an item of an older password opens nothing.
///
/// A failure of the keychain is never an exception: it is false or a text for the user. Main thread; it outlives its
/// tasks.
class LockManager : public QObject, public UnlockGate {
    Q_OBJECT

public:
    /// Reads whether the lock is on. A program that starts with the lock on is locked.
    LockManager(Keychain& keychain, Biometrics& biometrics, AlertPresenter& alerts, Workspace& workspace,
                UserDefaults& defaults, QObject* parent = nullptr);

    bool isLockEnabled() const { return m_isLockEnabled; }
    /// Always true while the lock is off. Never stored.
    bool isUnlocked() const override { return m_isUnlocked; }
    /// True while somebody suppresses it: an apply, whose administrator prompt takes the active state away.
    bool isAutoLockSuppressed() const { return m_autoLockSuppressions > 0; }

    // Each gives what is wrong, for the user; none when it is done.
    /// Locks the program at once, so that the user proves the new password. Refused while the lock is on: it would replace the
    /// password without asking for it.
    std::optional<QString> enableLock(const QString& password, const QString& confirmation);
    std::optional<QString> disableLock(const QString& password);
    std::optional<QString> changePassword(const QString& current, const QString& newPassword,
                                          const QString& confirmation);

    /// False when it isn't the password; nothing changes then.
    bool unlockWithPassword(const QString& password);
    /// Asks for a finger when the program is locked. @return whether the program is unlocked at the end
    QCoro::Task<bool> unlockWithBiometrics();
    /// Asks for a finger in place of the current password, and gives what the keychain has released, unchecked. None when the
    /// user refuses or there is nothing to ask for.
    /// @param reason  see verificationReason
    QCoro::Task<std::optional<QString>> authenticateWithBiometrics(QString reason);

    /// True when the user can use a finger in place of the password now. Asks them nothing.
    bool supportsBiometric() const;
    BiometryType biometryType() const;

    /// Locks, where the lock is on, and cancels the questions that are open.
    void lockIfEnabled();
    /// To be called when the program is about to lose the active state.
    void applicationWillResignActive();

    QCoro::Task<bool> requireUnlock(QString action) override;

Q_SIGNALS:
    void isLockEnabledChanged();
    void isUnlockedChanged();

private:
    void autoLockHeld() override { ++m_autoLockSuppressions; }
    void autoLockReleased() override;
    bool isLocked() const { return m_isLockEnabled && !m_isUnlocked; }
    void setState(bool isLockEnabled, bool isUnlocked);
    bool storePassword(const QString& password);
    bool verifyPassword(const QString& password) const;
    void keepForBiometrics(const QString& password);
    QCoro::Task<std::optional<QString>> readBiometricPassword(QString reason);
    QCoro::Task<void> showLockedAlert(QString action);

    Keychain& m_keychain;
    Biometrics& m_biometrics;
    AlertPresenter& m_alerts;
    Workspace& m_workspace;
    UserDefaults& m_defaults;
    bool m_isLockEnabled;
    bool m_isUnlocked;
    int m_autoLockSuppressions = 0;
};

} // namespace quorvane
