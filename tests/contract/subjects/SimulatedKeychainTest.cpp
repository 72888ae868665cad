// The simulated keychain: the contract, and what it leaves on the host.

#include "platform/simulated/SimulatedKeychain.h"
#include "contract/KeychainContract.h"
#include "fakes/HeldBiometricPrompt.h"
#include "fakes/SimulatedMacFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

namespace quorvane {

namespace {

const QString kService = u"com.quorvane.app-lock"_s;
const QString kAccount = u"password"_s;

class SimulatedKeychainSubject final : public GuardedKeychainSubject {
public:
    Keychain& keychain() override { return m_keychain; }
    void enrol(int fingers) override {
        m_mac.mac.state().update("biometrics", [fingers](macsim::Json& state) {
            state = {{"type", 1}, {"canEvaluate", true}, {"enrolment", std::to_string(fingers)}};
        });
    }
    void answer(bool isAccepted) override {
        m_prompt.answer(isAccepted ? BiometricAnswer::Accept : BiometricAnswer::Refuse);
    }
    void answerByPasscode() override { m_prompt.answer(BiometricAnswer::Passcode); }
    QStringList reasons() const override { return m_prompt.reasons; }
    void setRefusesReading(bool refuses) override { set("refusesReading", refuses); }
    void setRefusesWriting(bool refuses) override { set("refusesWriting", refuses); }
    void setGeneratorFails(bool fails) override { set("generatorFails", fails); }

private:
    void set(const char* fault, bool isOn) {
        m_mac.mac.state().update("keychain", [&](macsim::Json& state) { state[fault] = isOn; });
    }

    macsim::SimulatedMacFolder m_mac;
    HeldBiometricPrompt m_prompt;
    SimulatedKeychain m_keychain{m_mac.mac, m_prompt};
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Simulated, KeychainContract,
                         ::testing::Values(&makeSubject<KeychainSubject, SimulatedKeychainSubject>));
INSTANTIATE_TEST_SUITE_P(Simulated, GuardedKeychainContract,
                         ::testing::Values(&makeSubject<GuardedKeychainSubject, SimulatedKeychainSubject>));

namespace {

class SimulatedKeychainFile : public ::testing::Test {
protected:
    SimulatedKeychainFile() {
        mac.mac.state().update("biometrics", [](macsim::Json& state) {
            state = {{"type", 1}, {"canEvaluate", true}, {"enrolment", "right index"}};
        });
    }

    QString hostFile() const { return mac.hostFolder() + kFile; }
    QByteArray bytes() const {
        QFile file(hostFile());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("nothing");
    }
    void damage(const QByteArray& content) const {
        mac.mac.volume(macsim::Actor::User).createFolders(kFolder);
        mac.mac.volume(macsim::Actor::User).write(kFile, content);
    }
    mode_t mode() const {
        struct stat info {};
        EXPECT_EQ(::stat(QFile::encodeName(hostFile()).constData(), &info), 0);
        return info.st_mode & 07777;
    }

    static inline const QString kFolder = u"/Users/alex/Library/Keychains"_s;
    static inline const QString kFile = kFolder + u"/login.keychain-db"_s;

    macsim::SimulatedMacFolder mac;
    BiometricPolicy finger{BiometricAnswer::Accept};
    SimulatedKeychain keychain{mac.mac, finger};
};

} // namespace

TEST_F(SimulatedKeychainFile, saysHowEachItemIsProtected) {
    keychain.setPasswordItem(kService, kAccount, "record");
    keychain.setBiometricItem(u"com.quorvane.app-lock.biometric"_s, u"unlock"_s, "gig7");
    EXPECT_EQ(macsim::Json::parse(bytes().toStdString()), macsim::Json::parse(R"({"items": [
        {"service": "com.quorvane.app-lock", "account": "password", "data": "cmVjb3Jk", "accessible": "WhenUnlocked"},
        {"service": "com.quorvane.app-lock.biometric", "account": "unlock", "data": "Z2lnNw==",
         "accessible": "WhenUnlockedThisDeviceOnly", "accessControl": 16408, "enrolment": "right index"}]})"));
}

TEST_F(SimulatedKeychainFile, isSharedByThoseWhoOpenIt) {
    SimulatedKeychain other(mac.mac, finger);
    keychain.setPasswordItem(kService, kAccount, "record");
    EXPECT_EQ(other.readPasswordItem(kService, kAccount), "record");
    other.deleteKeychainItem(kService, kAccount);
    EXPECT_FALSE(keychain.keychainItemExists(kService, kAccount));
}

TEST_F(SimulatedKeychainFile, isItsOwnersAloneWhateverTheProcessGivesToOthers) {
    const mode_t before = ::umask(0);
    EXPECT_TRUE(keychain.setPasswordItem(kService, kAccount, "record"));
    EXPECT_EQ(mode(), mode_t{0600});
    QFile::setPermissions(hostFile(), QFile::permissions(hostFile()) | QFile::ReadOther | QFile::ReadGroup);
    EXPECT_TRUE(keychain.setPasswordItem(kService, kAccount, "another"));
    EXPECT_EQ(mode(), mode_t{0600});
    keychain.deleteKeychainItem(kService, kAccount);
    EXPECT_EQ(mode(), mode_t{0600});
    ::umask(before);
}

TEST_F(SimulatedKeychainFile, leavesNothingBesideIt) {
    keychain.setPasswordItem(kService, kAccount, "record");
    keychain.setPasswordItem(kService, kAccount, "another");
    EXPECT_EQ(mac.mac.volume(macsim::Actor::User).list(kFolder), QStringList(u"login.keychain-db"_s));
}

TEST_F(SimulatedKeychainFile, clearsAwayWhatAWriteThatWasCutOffHasLeft) {
    damage(R"({"items": []})");
    mac.mac.volume(macsim::Actor::User).write(kFile + u".new"_s, "half of a secret");
    keychain.setPasswordItem(kService, kAccount, "record");
    EXPECT_EQ(mac.mac.volume(macsim::Actor::User).list(kFolder), QStringList(u"login.keychain-db"_s));
    EXPECT_EQ(mode(), mode_t{0600});
}

TEST_F(SimulatedKeychainFile, isLeftAsItIsWhenItIsDamaged) {
    for (const QByteArray& damaged : {QByteArray(), QByteArray("{\"items\": ["), QByteArray("[]"),
                                      QByteArray("{\"items\": 1}"), QByteArray("\xff")}) {
        damage(damaged);
        EXPECT_FALSE(keychain.setPasswordItem(kService, kAccount, "record"));
        EXPECT_FALSE(keychain.setBiometricItem(kService, kAccount, "secret"));
        EXPECT_EQ(keychain.readPasswordItem(kService, kAccount), std::nullopt);
        EXPECT_FALSE(keychain.keychainItemExists(kService, kAccount));
        keychain.deleteKeychainItem(kService, kAccount);
        EXPECT_EQ(awaited(keychain.readBiometricProtected(kService, kAccount, u"Unlock"_s)), std::nullopt);
        EXPECT_EQ(bytes(), damaged);
    }
}

TEST_F(SimulatedKeychainFile, passesOverWhatIsNoItem) {
    damage(R"({"items": [1, null, {"service": 5}, {"service": "com.quorvane.app-lock", "account": "password"}]})");
    EXPECT_TRUE(keychain.keychainItemExists(kService, kAccount));
    EXPECT_EQ(keychain.readPasswordItem(kService, kAccount), std::nullopt) << "it has no data";
    EXPECT_TRUE(keychain.setPasswordItem(kService, kAccount, "record"));
    EXPECT_EQ(keychain.readPasswordItem(kService, kAccount), "record");
}

TEST_F(SimulatedKeychainFile, isNotReplacedByAFolderInItsPlace) {
    mac.mac.volume(macsim::Actor::User).createFolders(kFile);
    EXPECT_FALSE(keychain.setPasswordItem(kService, kAccount, "record"));
    EXPECT_FALSE(keychain.keychainItemExists(kService, kAccount));
    EXPECT_EQ(mac.mac.volume(macsim::Actor::User).list(kFolder), QStringList(u"login.keychain-db"_s));
}

TEST_F(SimulatedKeychainFile, staysInsideTheMacWhereverALinkLeads) {
    const macsim::Volume disk = mac.mac.volume(macsim::Actor::User);
    const QString outside = mac.outside() + u"/elsewhere"_s;
    ASSERT_TRUE(QDir().mkpath(outside));
    disk.createFolders(u"/Users/alex/Library"_s);
    disk.createLink(kFolder, outside);
    EXPECT_FALSE(keychain.setPasswordItem(kService, kAccount, "record"));
    EXPECT_TRUE(QDir(outside).isEmpty());

    disk.remove(kFolder);
    disk.createFolders(u"/Users/alex/Keys"_s);
    disk.createLink(kFolder, u"/Users/alex/Keys"_s);
    EXPECT_TRUE(keychain.setPasswordItem(kService, kAccount, "record"));
    EXPECT_EQ(keychain.readPasswordItem(kService, kAccount), "record");
    EXPECT_EQ(disk.list(u"/Users/alex/Keys"_s), QStringList(u"login.keychain-db"_s));
}

TEST_F(SimulatedKeychainFile, anItemIsKeptFromACancelledFingerToo) {
    keychain.setBiometricItem(kService, kAccount, "secret");
    for (const BiometricAnswer answer : {BiometricAnswer::Cancel, BiometricAnswer::Refuse}) {
        finger.setAnswer(answer);
        EXPECT_EQ(awaited(keychain.readBiometricProtected(kService, kAccount, u"Unlock"_s)), std::nullopt);
    }
    finger.setAnswer(BiometricAnswer::Accept);
    EXPECT_EQ(keychain.readBiometricProtected(kService, kAccount, u"Unlock"_s).result(), "secret");
}

} // namespace quorvane
