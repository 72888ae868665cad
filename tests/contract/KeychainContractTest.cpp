// What every keychain does without its user.

#include "contract/KeychainContract.h"

#include <QPair>
#include <QSet>

namespace quorvane {

namespace {

const QByteArray kBinaryItem("\0\xff\n\"é", 6);

} // namespace

TEST_P(KeychainContract, aServiceThatNobodyUsedHasNoItem) {
    EXPECT_EQ(read(), std::nullopt);
    EXPECT_FALSE(exists());
    EXPECT_EQ(awaited(ask()), std::nullopt);
    keychain.deleteKeychainItem(service, account);
    EXPECT_FALSE(exists());
}

TEST_P(KeychainContract, aPasswordItemIsReadAsItWasWritten) {
    for (const QByteArray& data : {QByteArray("one"), QByteArray(), kBinaryItem, QByteArray(100000, 'x')}) {
        EXPECT_TRUE(keychain.setPasswordItem(service, account, data));
        EXPECT_EQ(read(), data);
        EXPECT_TRUE(exists());
    }
}

TEST_P(KeychainContract, anItemIsKnownByItsServiceAndItsAccount) {
    const QList<QPair<QString, QString>> names{{service, account},
                                               {service, u"unlock"_s},
                                               {service + u".biometric"_s, account},
                                               {service.toUpper(), account},
                                               {service + u" Bühne \"1\""_s, {}}};
    for (const auto& [name, holder] : names) {
        EXPECT_FALSE(keychain.keychainItemExists(name, holder));
        EXPECT_TRUE(keychain.setPasswordItem(name, holder, (name + u'/' + holder).toUtf8()));
    }
    for (const auto& [name, holder] : names) {
        EXPECT_EQ(keychain.readPasswordItem(name, holder), (name + u'/' + holder).toUtf8());
    }
    keychain.deleteKeychainItem(service, account);
    EXPECT_FALSE(exists());
    EXPECT_TRUE(keychain.keychainItemExists(service, u"unlock"_s));
}

TEST_P(KeychainContract, aPasswordItemIsGivenWithoutAQuestion) {
    EXPECT_TRUE(keychain.setPasswordItem(service, account, "record"));
    EXPECT_EQ(awaited(ask()), "record");
}

TEST_P(KeychainContract, whatIsDeletedIsGone) {
    EXPECT_TRUE(keychain.setPasswordItem(service, account, "record"));
    keychain.deleteKeychainItem(service, account);
    EXPECT_EQ(read(), std::nullopt);
    EXPECT_FALSE(exists());
}

TEST_P(KeychainContract, aBiometricItemIsRefusedOrIsThereAndNotReadWithoutAFinger) {
    EXPECT_TRUE(keychain.setPasswordItem(service, account, "older"));
    const bool isTaken = keychain.setBiometricItem(service, account, "secret");
    EXPECT_EQ(exists(), isTaken);
    EXPECT_EQ(read(), std::nullopt);
    keychain.deleteKeychainItem(service, account);
    EXPECT_FALSE(exists());
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
}

TEST_P(KeychainContract, theEndFinishesEveryLaterQuestionAtOnce) {
    EXPECT_TRUE(keychain.setPasswordItem(service, account, "record"));
    keychain.shutDown();
    const QFuture<std::optional<QByteArray>> answer = ask();
    ASSERT_TRUE(answer.isFinished());
    EXPECT_FALSE(answer.isCanceled());
    EXPECT_EQ(answer.result(), std::nullopt);
}

} // namespace quorvane
