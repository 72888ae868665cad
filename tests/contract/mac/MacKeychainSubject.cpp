// The user's keychain passes the contract, by items of a service that nobody else has.

#include "contract/KeychainContract.h"
#include "platform/macos/MacKeychain.h"

#include <QCoreApplication>

namespace quorvane {

namespace {

class MacKeychainSubject final : public KeychainSubject {
public:
    ~MacKeychainSubject() override {
        for (const QString& name :
             {service(), service() + u".biometric"_s, service().toUpper(), service() + u" Bühne \"1\""_s}) {
            for (const QString& account : {u"password"_s, u"unlock"_s, QString()}) {
                m_keychain.deleteKeychainItem(name, account);
            }
        }
    }
    Keychain& keychain() override { return m_keychain; }
    QString service() const override { return u"com.quorvane.app.test.%1"_s.arg(QCoreApplication::applicationPid()); }

private:
    MacKeychain m_keychain;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Mac, KeychainContract, ::testing::Values(&makeSubject<KeychainSubject, MacKeychainSubject>));

} // namespace quorvane
