#pragma once

#include <QByteArray>
#include <QFuture>
#include <QString>

#include <optional>

namespace quorvane {

/// The user's keychain: generic passwords, each known by a service and an account, and the system's generator of random
/// numbers. Main thread.
///
/// An item is protected in one of two ways. A password item can be read while the Mac is unlocked. A biometric item can
/// be read on this Mac alone, and only after the user has put down a finger or typed the Mac's passcode. Once fingers have been
/// enrolled or removed no finger opens it any more; the passcode still does (SecAccessControl.h: BiometryCurrentSet voids its own
/// branch alone).
class Keychain {
public:
    Keychain() = default;
    Keychain(const Keychain&) = delete;
    Keychain& operator=(const Keychain&) = delete;
    virtual ~Keychain() = default;

    /// Makes the item or gives it a new value. False when the system refuses.
    virtual bool setPasswordItem(const QString& service, const QString& account, const QByteArray& data) = 0;
    /// None when there is no such item or the system refuses.
    virtual std::optional<QByteArray> readPasswordItem(const QString& service, const QString& account) const = 0;
    /// Of either kind. What comes of it is not reported.
    virtual void deleteKeychainItem(const QString& service, const QString& account) = 0;

    /// Makes the item anew, bound to the fingers that are enrolled now. False when the system refuses; an older item is
    /// gone then.
    virtual bool setBiometricItem(const QString& service, const QString& account, const QByteArray& data) = 0;
    /// Of either kind. Asks the user nothing.
    virtual bool keychainItemExists(const QString& service, const QString& account) const = 0;
    /// Asks the user, off the main thread, and waits for their answer. None when they refuse, and when there is no item. Where
    /// the enrolled fingers are others now only the passcode opens it. A password item is given without a question. What was asked for
    /// may be another item by the time of the answer. The future is never cancelled and holds no exception.
    /// @param reason  what the prompt says: "Unlock Quorvane"
    virtual QFuture<std::optional<QByteArray>> readBiometricProtected(const QString& service, const QString& account,
                                                                      const QString& reason) = 0;

    /// Bytes that nobody can guess; none when the generator fails.
    virtual std::optional<QByteArray> randomBytes(int count) const = 0;

    /// Ends what waits for an answer, and every later question at once; see CommandLauncher::shutDown.
    virtual void shutDown() = 0;
};

} // namespace quorvane
