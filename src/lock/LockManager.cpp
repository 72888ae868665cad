#include "lock/LockManager.h"

#include "core/UserDefaultKeys.h"
#include "core/Utf8.h"
#include "lock/LockTexts.h"
#include "lock/PasswordLength.h"
#include "lock/StoredAppPassword.h"
#include "platform/AlertPresenter.h"
#include "platform/Keychain.h"
#include "platform/UserDefaults.h"
#include "platform/Workspace.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kPasswordService = u"com.quorvane.app-lock"_s;
const QString kPasswordAccount = u"password"_s;
const QString kBiometricService = u"com.quorvane.app-lock.biometric"_s;
const QString kBiometricAccount = u"unlock"_s;

} // namespace

LockManager::LockManager(Keychain& keychain, Biometrics& biometrics, AlertPresenter& alerts, Workspace& workspace,
                         UserDefaults& defaults, QObject* parent)
    : QObject(parent)
    , m_keychain(keychain)
    , m_biometrics(biometrics)
    , m_alerts(alerts)
    , m_workspace(workspace)
    , m_defaults(defaults)
    , m_isLockEnabled(defaults.boolean(kQuorvaneAppLockEnabled))
    , m_isUnlocked(!m_isLockEnabled) {}

std::optional<QString> LockManager::enableLock(const QString& password, const QString& confirmation) {
    if (m_isLockEnabled) {
        return u"The app lock is already on."_s;
    }
    if (passwordLength(password) < kMinimumPasswordLength) {
        return u"Password must be at least %1 characters."_s.arg(kMinimumPasswordLength);
    }
    if (password != confirmation) {
        return u"Passwords do not match."_s;
    }
    if (!storePassword(password)) {
        return u"Could not save the password securely."_s;
    }
    keepForBiometrics(password);
    m_defaults.setBoolean(kQuorvaneAppLockEnabled, true);
    setState(true, false);
    return std::nullopt;
}

// The preference goes first: a program that dies in between must not start locked without a password that opens it. Nor
// must one whose preferences can't be written.
std::optional<QString> LockManager::disableLock(const QString& password) {
    if (!verifyPassword(password)) {
        return kIncorrectPassword;
    }
    m_defaults.setBoolean(kQuorvaneAppLockEnabled, false);
    if (!m_defaults.boolean(kQuorvaneAppLockEnabled)) {
        m_keychain.deleteKeychainItem(kPasswordService, kPasswordAccount);
        m_keychain.deleteKeychainItem(kBiometricService, kBiometricAccount);
    }
    setState(false, true);
    return std::nullopt;
}

std::optional<QString> LockManager::changePassword(const QString& current, const QString& newPassword,
                                                   const QString& confirmation) {
    if (!verifyPassword(current)) {
        return u"Current password is incorrect."_s;
    }
    if (passwordLength(newPassword) < kMinimumPasswordLength) {
        return u"New password must be at least %1 characters."_s.arg(kMinimumPasswordLength);
    }
    if (newPassword != confirmation) {
        return u"New passwords do not match."_s;
    }
    if (!storePassword(newPassword)) {
        return u"Could not save the new password."_s;
    }
    keepForBiometrics(newPassword);
    return std::nullopt;
}

bool LockManager::unlockWithPassword(const QString& password) {
    if (!verifyPassword(password)) {
        return false;
    }
    setState(m_isLockEnabled, true);
    if (m_isLockEnabled) {
        keepForBiometrics(password); // for the fingers of now: no finger opens an older item once others are enrolled
    }
    return true;
}

QCoro::Task<bool> LockManager::unlockWithBiometrics() {
    if (!isLocked()) {
        co_return isUnlocked();
    }
    const std::optional<QString> password = co_await readBiometricPassword(u"Unlock Quorvane"_s);
    // While the prompt stood open, the program may have been unlocked by typing, or the lock taken off.
    if (password && isLocked()) {
        co_return unlockWithPassword(*password);
    }
    co_return isUnlocked();
}

QCoro::Task<std::optional<QString>> LockManager::authenticateWithBiometrics(QString reason) {
    std::optional<QString> password;
    if (m_isLockEnabled && supportsBiometric()) {
        password = co_await readBiometricPassword(reason);
    }
    if (!m_isLockEnabled) {
        password.reset(); // taken off while the prompt stood open
    }
    co_return std::as_const(password);
}

bool LockManager::supportsBiometric() const {
    return m_biometrics.canEvaluate() && m_keychain.keychainItemExists(kBiometricService, kBiometricAccount);
}

BiometryType LockManager::biometryType() const {
    return m_biometrics.type();
}

void LockManager::lockIfEnabled() {
    setState(m_isLockEnabled, !m_isLockEnabled);
}

void LockManager::applicationWillResignActive() {
    if (!isAutoLockSuppressed()) {
        lockIfEnabled();
    }
}

/// Another program may have become the active one meanwhile, and nobody tells of that again.
void LockManager::autoLockReleased() {
    --m_autoLockSuppressions;
    if (!isAutoLockSuppressed() && !m_workspace.isActive()) {
        lockIfEnabled();
    }
}

QCoro::Task<bool> LockManager::requireUnlock(QString action) {
    if (!isLocked()) {
        co_return true;
    }
    co_await showLockedAlert(action);
    co_return false;
}

QCoro::Task<void> LockManager::showLockedAlert(QString action) {
    m_workspace.activateIgnoringOtherApps();
    m_workspace.makeWindowsKeyAndOrderFront();
    const Alert alert{kLockedTitle, u"Enter your app password in the Quorvane window to "_s + action + u'.', {u"OK"_s}};
    co_await m_alerts.present(alert);
}

void LockManager::setState(bool isLockEnabled, bool isUnlocked) {
    const bool wasLockEnabled = std::exchange(m_isLockEnabled, isLockEnabled);
    const bool wasUnlocked = std::exchange(m_isUnlocked, isUnlocked);
    if (isLockEnabled != wasLockEnabled) {
        Q_EMIT isLockEnabledChanged();
    }
    if (isUnlocked != wasUnlocked) {
        Q_EMIT isUnlockedChanged();
    }
    if (wasUnlocked && !isUnlocked) {
        m_alerts.cancelOpen();
    }
}

bool LockManager::storePassword(const QString& password) {
    const std::optional<QByteArray> salt = m_keychain.randomBytes(kSaltLength);
    return salt && m_keychain.setPasswordItem(kPasswordService, kPasswordAccount,
                                              encodeStoredAppPassword(storedAppPassword(password, *salt)));
}

bool LockManager::verifyPassword(const QString& password) const {
    const std::optional<QByteArray> item = m_keychain.readPasswordItem(kPasswordService, kPasswordAccount);
    const std::optional<StoredAppPassword> stored = item ? decodeStoredAppPassword(*item) : std::nullopt;
    return stored && isRightPassword(*stored, password);
}

/// Without the item users type their password; so a failure isn't looked at.
void LockManager::keepForBiometrics(const QString& password) {
    if (m_biometrics.canEvaluate()) {
        m_keychain.setBiometricItem(kBiometricService, kBiometricAccount, password.toUtf8());
    }
}

QCoro::Task<std::optional<QString>> LockManager::readBiometricPassword(QString reason) {
    const std::optional<QByteArray> data =
        co_await m_keychain.readBiometricProtected(kBiometricService, kBiometricAccount, reason);
    co_return data ? wholeUtf8(*data) : std::nullopt;
}

} // namespace quorvane
