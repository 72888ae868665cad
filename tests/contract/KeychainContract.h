#pragma once

#include "contract/Awaited.h"
#include "contract/Subject.h"
#include "platform/Keychain.h"

#include <QString>
#include <QStringList>

namespace quorvane {

using namespace Qt::StringLiterals;

/// A keychain without items of certain services.
class KeychainSubject {
public:
    virtual ~KeychainSubject() = default;
    virtual Keychain& keychain() = 0;
    /// Whatever begins with this is a service of the test's.
    virtual QString service() const = 0;
};

/// A keychain, its user's fingers, and what goes wrong with it. Prompts stay open until they are answered.
class GuardedKeychainSubject : public KeychainSubject {
public:
    QString service() const override { return u"com.quorvane.app-lock"_s; }
    virtual void enrol(int fingers) = 0;
    virtual void answer(bool isAccepted) = 0;
    virtual void answerByPasscode() = 0;
    virtual QStringList reasons() const = 0;
    virtual void setRefusesReading(bool refuses) = 0;
    virtual void setRefusesWriting(bool refuses) = 0;
    virtual void setGeneratorFails(bool fails) = 0;
};

template <typename Subject>
class OnKeychain : public ContractTest<Subject> {
protected:
    QFuture<std::optional<QByteArray>> ask(const QString& reason = u"Unlock"_s) {
        return keychain.readBiometricProtected(service, account, reason);
    }
    std::optional<QByteArray> read() const { return keychain.readPasswordItem(service, account); }
    bool exists() const { return keychain.keychainItemExists(service, account); }

    Keychain& keychain = this->subject->keychain();
    const QString service = this->subject->service();
    const QString account = u"password"_s;
};

/// What a keychain does without its user.
class KeychainContract : public OnKeychain<KeychainSubject> {};

/// What happens between a keychain and its user.
class GuardedKeychainContract : public OnKeychain<GuardedKeychainSubject> {
protected:
    /// At once.
    static void expectNone(const QFuture<std::optional<QByteArray>>& answer) {
        ASSERT_TRUE(answer.isFinished());
        EXPECT_FALSE(answer.isCanceled());
        EXPECT_EQ(answer.result(), std::nullopt);
    }
};

} // namespace quorvane
