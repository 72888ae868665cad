#pragma once

#include "platform/Keychain.h"
#include "platform/macos/OpenAnswers.h"

#include <memory>

namespace quorvane {

/// The user's keychains, by the Security framework; see TwoKeychains. A program that isn't signed with an access group has no
/// biometric items, and the system may ask the user whether it may use the ones of an earlier build: the main thread waits then.
class MacKeychain final : public Keychain {
public:
    MacKeychain();
    ~MacKeychain() override;

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
    struct Prompts;

    OpenAnswers<std::optional<QByteArray>> m_answers{std::nullopt};
    std::unique_ptr<Prompts> m_prompts;
};

} // namespace quorvane
