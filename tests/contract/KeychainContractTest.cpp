// What the simulated keychain and the one in memory have in common, and what the simulated one leaves on the host.

#include "fakes/HeldBiometricPrompt.h"
#include "fakes/MemoryKeychain.h"
#include "fakes/SimulatedMacFolder.h"
#include "platform/simulated/SimulatedKeychain.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <gtest/gtest.h>

#include <memory>
#include <sys/stat.h>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kService = u"com.quorvane.app-lock"_s;
const QString kAccount = u"password"_s;
const QByteArray kBinary("\0\xff\n\"é", 6);

/// A keychain, its user's fingers, and what goes wrong with it. Prompts stay open until they are answered.
class KeychainSubject {
public:
    virtual ~KeychainSubject() = default;
    virtual Keychain& keychain() = 0;
    virtual void enrol(int fingers) = 0;
    virtual void answer(bool isAccepted) = 0;
    virtual void answerByPasscode() = 0;
    virtual QStringList reasons() const = 0;
    virtual void setRefusesReading(bool refuses) = 0;
    virtual void setRefusesWriting(bool refuses) = 0;
    virtual void setGeneratorFails(bool fails) = 0;
};

class SimulatedKeychainSubject final : public KeychainSubject {
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

class MemoryKeychainSubject final : public KeychainSubject {
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

template <typename Each>
std::unique_ptr<KeychainSubject> makeKeychain() {
    return std::make_unique<Each>();
}

class KeychainContract : public ::testing::TestWithParam<std::unique_ptr<KeychainSubject> (*)()> {
protected:
    QFuture<std::optional<QByteArray>> ask(const QString& reason = u"Unlock"_s) {
        return keychain.readBiometricProtected(kService, kAccount, reason);
    }
    std::optional<QByteArray> read() const { return keychain.readPasswordItem(kService, kAccount); }
    bool exists() const { return keychain.keychainItemExists(kService, kAccount); }

    std::unique_ptr<KeychainSubject> subject = GetParam()();
    Keychain& keychain = subject->keychain();
};

void expectNone(const QFuture<std::optional<QByteArray>>& answer) {
    ASSERT_TRUE(answer.isFinished());
    EXPECT_FALSE(answer.isCanceled());
    EXPECT_EQ(answer.result(), std::nullopt);
}

} // namespace

TEST_P(KeychainContract, aFreshKeychainHoldsNothing) {
    EXPECT_EQ(read(), std::nullopt);
    EXPECT_FALSE(exists());
    expectNone(ask());
    keychain.deleteKeychainItem(kService, kAccount);
    EXPECT_FALSE(exists());
    EXPECT_EQ(subject->reasons(), QStringList());
}

TEST_P(KeychainContract, aPasswordItemIsReadAsItWasWritten) {
    for (const QByteArray& data : {QByteArray("one"), QByteArray(), kBinary, QByteArray(100000, 'x')}) {
        EXPECT_TRUE(keychain.setPasswordItem(kService, kAccount, data));
        EXPECT_EQ(read(), data);
        EXPECT_TRUE(exists());
    }
}

TEST_P(KeychainContract, anItemIsKnownByItsServiceAndItsAccount) {
    const QList<QPair<QString, QString>> names{{kService, kAccount},
                                               {kService, u"unlock"_s},
                                               {u"com.quorvane.app-lock.biometric"_s, kAccount},
                                               {u"Com.Quorvane.App-Lock"_s, kAccount},
                                               {u"Bühne \"1\""_s, {}}};
    for (const auto& [service, account] : names) {
        EXPECT_FALSE(keychain.keychainItemExists(service, account));
        EXPECT_TRUE(keychain.setPasswordItem(service, account, (service + u'/' + account).toUtf8()));
    }
    for (const auto& [service, account] : names) {
        EXPECT_EQ(keychain.readPasswordItem(service, account), (service + u'/' + account).toUtf8());
    }
    keychain.deleteKeychainItem(kService, kAccount);
    EXPECT_FALSE(exists());
    EXPECT_TRUE(keychain.keychainItemExists(kService, u"unlock"_s));
}

TEST_P(KeychainContract, aBiometricItemIsReleasedByAFingerAlone) {
    EXPECT_TRUE(keychain.setBiometricItem(kService, kAccount, kBinary));
    EXPECT_TRUE(exists());
    EXPECT_EQ(read(), std::nullopt);
    EXPECT_EQ(subject->reasons(), QStringList()) << "nobody is asked to tell that it is there";
    const auto answer = ask(u"Unlock Quorvane"_s);
    EXPECT_EQ(subject->reasons(), QStringList(u"Unlock Quorvane"_s));
    EXPECT_FALSE(answer.isFinished());
    subject->answer(true);
    ASSERT_TRUE(answer.isFinished());
    EXPECT_EQ(answer.result(), kBinary);
}

TEST_P(KeychainContract, thePasscodeReleasesTheItemToo) {
    keychain.setBiometricItem(kService, kAccount, "secret");
    const auto answer = ask();
    subject->answerByPasscode();
    EXPECT_EQ(answer.result(), "secret");
}

TEST_P(KeychainContract, aRefusedFingerReleasesNothingAndLeavesTheItem) {
    keychain.setBiometricItem(kService, kAccount, "secret");
    const auto refused = ask();
    subject->answer(false);
    expectNone(refused);
    const auto accepted = ask();
    subject->answer(true);
    EXPECT_EQ(accepted.result(), "secret");
}

TEST_P(KeychainContract, severalPromptsMayBeOpen) {
    keychain.setBiometricItem(kService, kAccount, "secret");
    const auto first = ask(u"First"_s);
    const auto second = ask(u"Second"_s);
    EXPECT_EQ(subject->reasons(), QStringList({u"First"_s, u"Second"_s}));
    subject->answer(true);
    EXPECT_EQ(first.result(), "secret");
    EXPECT_EQ(second.result(), "secret");
}

TEST_P(KeychainContract, noFingerOpensABiometricItemOnceTheFingersAreOthersButThePasscodeDoes) {
    subject->enrol(1);
    keychain.setBiometricItem(kService, kAccount, "secret");
    subject->enrol(2);
    const auto byFinger = ask();
    subject->answer(true);
    expectNone(byFinger);
    const auto byPasscode = ask();
    subject->answerByPasscode();
    EXPECT_EQ(byPasscode.result(), "secret");
    EXPECT_TRUE(keychain.setBiometricItem(kService, kAccount, "anew"));
    const auto answer = ask();
    subject->answer(true);
    EXPECT_EQ(answer.result(), "anew");
}

TEST_P(KeychainContract, fingersThatAreEnrolledWhileThePromptIsOpenReleaseNothing) {
    subject->enrol(1);
    keychain.setBiometricItem(kService, kAccount, "secret");
    const auto answer = ask();
    subject->enrol(2);
    subject->answer(true);
    expectNone(answer);
}

TEST_P(KeychainContract, otherFingersLeaveAPasswordItem) {
    subject->enrol(1);
    keychain.setPasswordItem(kService, kAccount, "record");
    subject->enrol(2);
    EXPECT_EQ(read(), "record");
    const auto answer = ask();
    ASSERT_TRUE(answer.isFinished()) << "it is given without a question";
    EXPECT_EQ(answer.result(), "record");
    EXPECT_EQ(subject->reasons(), QStringList());
}

TEST_P(KeychainContract, aBiometricItemTakesThePlaceOfAPasswordItem) {
    keychain.setPasswordItem(kService, kAccount, "record");
    keychain.setBiometricItem(kService, kAccount, "secret");
    EXPECT_EQ(read(), std::nullopt);
    keychain.deleteKeychainItem(kService, kAccount);
    EXPECT_FALSE(exists());
}

TEST_P(KeychainContract, aRefusedPasswordItemLeavesTheOneBefore) {
    keychain.setPasswordItem(kService, kAccount, "before");
    subject->setRefusesWriting(true);
    EXPECT_FALSE(keychain.setPasswordItem(kService, kAccount, "after"));
    EXPECT_FALSE(keychain.setPasswordItem(kService, u"another"_s, "after"));
    EXPECT_FALSE(keychain.setBiometricItem(kService, u"another"_s, "after"));
    subject->setRefusesWriting(false);
    EXPECT_EQ(read(), "before");
    EXPECT_FALSE(keychain.keychainItemExists(kService, u"another"_s));
}

TEST_P(KeychainContract, whatIsNotReadableNowIsThereLater) {
    keychain.setPasswordItem(kService, kAccount, "record");
    keychain.setBiometricItem(kService, u"unlock"_s, "secret");
    subject->setRefusesReading(true);
    EXPECT_EQ(read(), std::nullopt);
    EXPECT_FALSE(exists());
    expectNone(keychain.readBiometricProtected(kService, u"unlock"_s, u"Unlock"_s));
    subject->setRefusesReading(false);
    EXPECT_EQ(read(), "record");
    EXPECT_TRUE(keychain.keychainItemExists(kService, u"unlock"_s));
}

TEST_P(KeychainContract, randomBytesAreNewEachTimeAndSoManyAsAreWanted) {
    QSet<QByteArray> seen;
    for (int round = 0; round < 8; ++round) {
        const std::optional<QByteArray> bytes = keychain.randomBytes(32);
        ASSERT_TRUE(bytes);
        EXPECT_EQ(bytes->size(), 32);
        seen.insert(*bytes);
    }
    EXPECT_EQ(seen.size(), 8);
    EXPECT_EQ(keychain.randomBytes(0), QByteArray());
    subject->setGeneratorFails(true);
    EXPECT_EQ(keychain.randomBytes(32), std::nullopt);
}

TEST_P(KeychainContract, aQuitEndsOpenPromptsAndAsksNobodyAnyMore) {
    keychain.setBiometricItem(kService, kAccount, "secret");
    const auto open = ask(u"First"_s);
    keychain.shutDown();
    expectNone(open);
    expectNone(ask(u"Second"_s));
    EXPECT_EQ(subject->reasons(), QStringList(u"First"_s));
}

INSTANTIATE_TEST_SUITE_P(Simulated, KeychainContract, ::testing::Values(&makeKeychain<SimulatedKeychainSubject>));
INSTANTIATE_TEST_SUITE_P(Memory, KeychainContract, ::testing::Values(&makeKeychain<MemoryKeychainSubject>));

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
        expectNone(keychain.readBiometricProtected(kService, kAccount, u"Unlock"_s));
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
        expectNone(keychain.readBiometricProtected(kService, kAccount, u"Unlock"_s));
    }
    finger.setAnswer(BiometricAnswer::Accept);
    EXPECT_EQ(keychain.readBiometricProtected(kService, kAccount, u"Unlock"_s).result(), "secret");
}

} // namespace quorvane
