// The keychain in memory passes the contract.

#include "fakes/MemoryKeychain.h"
#include "contract/KeychainContract.h"

namespace quorvane {

namespace {

class MemoryKeychainSubject final : public GuardedKeychainSubject {
public:
    MemoryKeychainSubject() { m_keychain.finger = MemoryKeychain::Finger::Held; }
    Keychain& keychain() override { return m_keychain; }
    void enrol(int fingers) override { m_keychain.enrolment = fingers; }
    void answer(bool isAccepted) override { m_keychain.answerHeld(isAccepted); }
    void answerByPasscode() override { m_keychain.answerHeld(MemoryKeychain::Finger::PasscodeInstead); }
    QStringList reasons() const override { return m_keychain.reasons; }
    void setRefusesReading(bool refuses) override { m_keychain.refusesReading = refuses; }
    void setRefusesWriting(bool refuses) override {
        m_keychain.refusesPasswords = refuses;
        m_keychain.refusesBiometricItems = refuses;
    }
    void setGeneratorFails(bool fails) override { m_keychain.generatorFails = fails; }

private:
    MemoryKeychain m_keychain;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Memory, KeychainContract,
                         ::testing::Values(&makeSubject<KeychainSubject, MemoryKeychainSubject>));
INSTANTIATE_TEST_SUITE_P(Memory, GuardedKeychainContract,
                         ::testing::Values(&makeSubject<GuardedKeychainSubject, MemoryKeychainSubject>));

} // namespace quorvane
