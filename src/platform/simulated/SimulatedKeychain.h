#pragma once

#include "platform/Keychain.h"
#include "platform/simulated/BiometricPrompt.h"
#include "simulator/Json.h"
#include "simulator/Mac.h"

#include <optional>

namespace quorvane {

/// The keychain of a simulated Mac: "~/Library/Keychains/login.keychain-db", which on the host only its owner may read. It
/// isn't encrypted, so nobody's real password belongs there:
///
///     {"items": [{"service": "com.quorvane.app-lock", "account": "password", "accessible": "WhenUnlocked",
///                 "data": "base64"},
///                {"service": "com.quorvane.app-lock.biometric", "account": "unlock",
///                 "accessible": "WhenUnlockedThisDeviceOnly", "accessControl": 16408, "enrolment": "right index",
///                 "data": "base64"}]}
///
/// "accessControl" marks a biometric item, and is what the system calls its flags: the enrolled fingers or the passcode.
/// Once the enrolment is another (see SimulatedBiometrics) the passcode alone opens such an item.
///
/// A file that is damaged is left as it is: every read fails, and so does every write. What else goes wrong is said in the
/// state subject "keychain":
///
///     {"refusesReading": true, "refusesWriting": true, "generatorFails": true}
class SimulatedKeychain final : public Keychain {
public:
    SimulatedKeychain(const macsim::Mac& mac, BiometricPrompt& prompt)
        : m_mac(mac)
        , m_prompt(prompt) {}

    bool setPasswordItem(const QString& service, const QString& account, const QByteArray& data) override;
    std::optional<QByteArray> readPasswordItem(const QString& service, const QString& account) const override;
    void deleteKeychainItem(const QString& service, const QString& account) override;
    bool setBiometricItem(const QString& service, const QString& account, const QByteArray& data) override;
    bool keychainItemExists(const QString& service, const QString& account) const override;
    QFuture<std::optional<QByteArray>> readBiometricProtected(const QString& service, const QString& account,
                                                              const QString& reason) override;
    std::optional<QByteArray> randomBytes(int count) const override;
    void shutDown() override;

private:
    QString path() const;
    bool isOn(const char* fault) const;
    std::optional<macsim::Json> read() const;
    bool write(const macsim::Json& keychain);
    std::optional<macsim::Json> item(const QString& service, const QString& account) const;
    bool put(const macsim::Json& item);

    const macsim::Mac& m_mac;
    BiometricPrompt& m_prompt;
    bool m_isShutDown = false;
};

} // namespace quorvane
