#pragma once

#include "platform/Keychain.h"

#include <QList>
#include <QMap>
#include <QPair>
#include <QPromise>
#include <QStringList>

#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace quorvane {

/// A keychain in memory. Its user puts down a finger at once, unless a test says otherwise.
class MemoryKeychain final : public Keychain {
public:
    struct Item {
        QByteArray data;
        bool isBiometric = false;
        int enrolment = 0; ///< the fingers that it is bound to
    };
    enum class Finger { Accepted, Refused, Held, PasscodeInstead };

    QMap<QPair<QString, QString>, Item> items; ///< by service and account
    bool refusesReading = false;
    bool refusesPasswords = false;
    bool refusesBiometricItems = false;
    bool generatorFails = false;
    int enrolment = 0; ///< another number is another set of fingers
    Finger finger = Finger::Accepted;
    QStringList reasons;            ///< what the user was asked
    std::function<void()> onDelete; ///< called before an item is deleted by itself

    bool setPasswordItem(const QString& service, const QString& account, const QByteArray& data) override;
    std::optional<QByteArray> readPasswordItem(const QString& service, const QString& account) const override;
    void deleteKeychainItem(const QString& service, const QString& account) override;
    bool setBiometricItem(const QString& service, const QString& account, const QByteArray& data) override;
    bool keychainItemExists(const QString& service, const QString& account) const override;
    QFuture<std::optional<QByteArray>> readBiometricProtected(const QString& service, const QString& account,
                                                              const QString& reason) override;
    std::optional<QByteArray> randomBytes(int count) const override;
    void shutDown() override;

    /// Answers the questions that are held back.
    void answerHeld(bool isAccepted) { answerHeld(isAccepted ? Finger::Accepted : Finger::Refused); }
    void answerHeld(Finger answer);

private:
    std::optional<QByteArray> released(const Item& item, Finger answer) const;
    QFuture<std::optional<QByteArray>> heldBack(const Item& item);

    bool m_isShutDown = false;
    mutable unsigned char m_nextByte = 1;
    std::vector<std::pair<QPromise<std::optional<QByteArray>>, Item>> m_held;
};

} // namespace quorvane
