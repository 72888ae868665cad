// What happens between a keychain and its user, whichever keychain.

#include "contract/KeychainContract.h"

namespace quorvane {

namespace {

const QByteArray kBinarySecret("\0\xff\n\"é", 6);

} // namespace

TEST_P(GuardedKeychainContract, aFreshKeychainHoldsNothing) {
    EXPECT_EQ(read(), std::nullopt);
    EXPECT_FALSE(exists());
    expectNone(ask());
    keychain.deleteKeychainItem(service, account);
    EXPECT_FALSE(exists());
    EXPECT_EQ(subject->reasons(), QStringList());
}

TEST_P(GuardedKeychainContract, aBiometricItemIsReleasedByAFingerAlone) {
    EXPECT_TRUE(keychain.setBiometricItem(service, account, kBinarySecret));
    EXPECT_TRUE(exists());
    EXPECT_EQ(read(), std::nullopt);
    EXPECT_EQ(subject->reasons(), QStringList()) << "nobody is asked to tell that it is there";
    const auto answer = ask(u"Unlock Quorvane"_s);
    EXPECT_EQ(subject->reasons(), QStringList(u"Unlock Quorvane"_s));
    EXPECT_FALSE(answer.isFinished());
    subject->answer(true);
    ASSERT_TRUE(answer.isFinished());
    EXPECT_EQ(answer.result(), kBinarySecret);
}

TEST_P(GuardedKeychainContract, thePasscodeReleasesTheItemToo) {
    keychain.setBiometricItem(service, account, "secret");
    const auto answer = ask();
    subject->answerByPasscode();
    EXPECT_EQ(answer.result(), "secret");
}

TEST_P(GuardedKeychainContract, aRefusedFingerReleasesNothingAndLeavesTheItem) {
    keychain.setBiometricItem(service, account, "secret");
    const auto refused = ask();
    subject->answer(false);
    expectNone(refused);
    const auto accepted = ask();
    subject->answer(true);
    EXPECT_EQ(accepted.result(), "secret");
}

TEST_P(GuardedKeychainContract, severalPromptsMayBeOpen) {
    keychain.setBiometricItem(service, account, "secret");
    const auto first = ask(u"First"_s);
    const auto second = ask(u"Second"_s);
    EXPECT_EQ(subject->reasons(), QStringList({u"First"_s, u"Second"_s}));
    subject->answer(true);
    EXPECT_EQ(first.result(), "secret");
    EXPECT_EQ(second.result(), "secret");
}

TEST_P(GuardedKeychainContract, noFingerOpensABiometricItemOnceTheFingersAreOthersButThePasscodeDoes) {
    subject->enrol(1);
    keychain.setBiometricItem(service, account, "secret");
    subject->enrol(2);
    const auto byFinger = ask();
    subject->answer(true);
    expectNone(byFinger);
    const auto byPasscode = ask();
    subject->answerByPasscode();
    EXPECT_EQ(byPasscode.result(), "secret");
    EXPECT_TRUE(keychain.setBiometricItem(service, account, "anew"));
    const auto answer = ask();
    subject->answer(true);
    EXPECT_EQ(answer.result(), "anew");
}

TEST_P(GuardedKeychainContract, fingersThatAreEnrolledWhileThePromptIsOpenReleaseNothing) {
    subject->enrol(1);
    keychain.setBiometricItem(service, account, "secret");
    const auto answer = ask();
    subject->enrol(2);
    subject->answer(true);
    expectNone(answer);
}

TEST_P(GuardedKeychainContract, otherFingersLeaveAPasswordItem) {
    subject->enrol(1);
    keychain.setPasswordItem(service, account, "record");
    subject->enrol(2);
    EXPECT_EQ(read(), "record");
    const auto answer = ask();
    ASSERT_TRUE(answer.isFinished()) << "it is given without a question";
    EXPECT_EQ(answer.result(), "record");
    EXPECT_EQ(subject->reasons(), QStringList());
}

TEST_P(GuardedKeychainContract, aBiometricItemTakesThePlaceOfAPasswordItem) {
    keychain.setPasswordItem(service, account, "record");
    keychain.setBiometricItem(service, account, "secret");
    EXPECT_EQ(read(), std::nullopt);
    keychain.deleteKeychainItem(service, account);
    EXPECT_FALSE(exists());
}

TEST_P(GuardedKeychainContract, aRefusedPasswordItemLeavesTheOneBefore) {
    keychain.setPasswordItem(service, account, "before");
    subject->setRefusesWriting(true);
    EXPECT_FALSE(keychain.setPasswordItem(service, account, "after"));
    EXPECT_FALSE(keychain.setPasswordItem(service, u"another"_s, "after"));
    EXPECT_FALSE(keychain.setBiometricItem(service, u"another"_s, "after"));
    subject->setRefusesWriting(false);
    EXPECT_EQ(read(), "before");
    EXPECT_FALSE(keychain.keychainItemExists(service, u"another"_s));
}

TEST_P(GuardedKeychainContract, whatIsNotReadableNowIsThereLater) {
    keychain.setPasswordItem(service, account, "record");
    keychain.setBiometricItem(service, u"unlock"_s, "secret");
    subject->setRefusesReading(true);
    EXPECT_EQ(read(), std::nullopt);
    EXPECT_FALSE(exists());
    expectNone(keychain.readBiometricProtected(service, u"unlock"_s, u"Unlock"_s));
    subject->setRefusesReading(false);
    EXPECT_EQ(read(), "record");
    EXPECT_TRUE(keychain.keychainItemExists(service, u"unlock"_s));
}

TEST_P(GuardedKeychainContract, aQuitEndsOpenPromptsAndAsksNobodyAnyMore) {
    keychain.setBiometricItem(service, account, "secret");
    const auto open = ask(u"First"_s);
    keychain.shutDown();
    expectNone(open);
    expectNone(ask(u"Second"_s));
    EXPECT_EQ(subject->reasons(), QStringList(u"First"_s));
}

TEST_P(GuardedKeychainContract, aGeneratorThatFailsGivesNoBytes) {
    subject->setGeneratorFails(true);
    EXPECT_EQ(keychain.randomBytes(32), std::nullopt);
}

} // namespace quorvane
