#include "platform/macos/TwoKeychains.h"

#include "platform/macos/KeychainStatus.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <map>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using Store = KeychainCalls::Store;

/// The two keychains of one Mac, and what a program's signature lets it do. Biometric items are kept back.
struct MemoryKeychains final : public KeychainCalls {
    bool hasAccessGroup() const override { return isSigned; }

    int add(Store store, const KeychainItem& item, const QByteArray& data) const override {
        return make(store, item, data, u"add"_s);
    }
    int addBiometric(const KeychainItem& item, const QByteArray& data) const override {
        const int status = make(Store::DataProtection, item, data, u"add biometric"_s);
        if (status == KeychainStatus::kSuccess) {
            keptBack = KeychainStatus::kInteractionNotAllowed;
        }
        return status;
    }
    int update(Store store, const KeychainItem& item, const QByteArray& data) const override {
        note(u"update"_s, store);
        return change(store, item, [&data](QByteArray& value) { value = data; });
    }
    int remove(Store store, const KeychainItem& item) const override {
        note(u"remove"_s, store);
        const int status = statusOf(store, item);
        items[store].erase(key(item));
        return status;
    }
    int find(Store store, const KeychainItem& item) const override {
        note(u"find"_s, store);
        return keptBackOr(store, statusOf(store, item));
    }
    int read(Store store, const KeychainItem& item, QByteArray& data) const override {
        note(u"read"_s, store);
        const int status = keptBackOr(store, statusOf(store, item));
        if (status == KeychainStatus::kSuccess) {
            data = items[store].at(key(item));
        }
        return status;
    }

    QByteArray in(Store store, const KeychainItem& item) const { return items[store][key(item)]; }
    bool holds(Store store, const KeychainItem& item) const { return items[store].contains(key(item)); }

    bool isSigned = true;
    int refusal = KeychainStatus::kSuccess;          ///< of every write
    mutable int keptBack = KeychainStatus::kSuccess; ///< instead of the data of what the data-protection keychain has
    mutable QStringList calls;

private:
    static QString key(const KeychainItem& item) { return item.service + u'/' + item.account; }
    bool isClosed(Store store) const { return store == Store::DataProtection && !isSigned; }
    void note(const QString& call, Store store) const {
        calls.append(call + (store == Store::DataProtection ? u" protected"_s : u" file"_s));
    }
    int statusOf(Store store, const KeychainItem& item) const {
        if (isClosed(store)) {
            return KeychainStatus::kMissingEntitlement;
        }
        return items[store].contains(key(item)) ? KeychainStatus::kSuccess : KeychainStatus::kItemNotFound;
    }
    int keptBackOr(Store store, int status) const {
        return store == Store::DataProtection && status == KeychainStatus::kSuccess ? keptBack : status;
    }
    int make(Store store, const KeychainItem& item, const QByteArray& data, const QString& call) const {
        note(call, store);
        const int status = statusOf(store, item);
        if (status == KeychainStatus::kSuccess) {
            return KeychainStatus::kDuplicateItem;
        }
        if (status == KeychainStatus::kItemNotFound && refusal == KeychainStatus::kSuccess) {
            items[store][key(item)] = data;
            return KeychainStatus::kSuccess;
        }
        return status == KeychainStatus::kItemNotFound ? refusal : status;
    }
    template <typename Change>
    int change(Store store, const KeychainItem& item, Change change) const {
        const int status = statusOf(store, item);
        if (status == KeychainStatus::kSuccess && refusal == KeychainStatus::kSuccess) {
            change(items[store][key(item)]);
        }
        return status == KeychainStatus::kSuccess ? refusal : status;
    }

    mutable std::map<Store, std::map<QString, QByteArray>> items;
};

constexpr int kRefused = -25244; // errSecInvalidOwnerEdit, as an example of the many

class KeychainRules : public ::testing::Test {
protected:
    const KeychainItem item{u"com.quorvane.app-lock"_s, u"password"_s};
    MemoryKeychains keychains;
};

} // namespace

TEST_F(KeychainRules, aSignedProgramStoresInTheProtectedKeychain) {
    EXPECT_TRUE(TwoKeychains::setPassword(keychains, item, "one"));
    EXPECT_EQ(keychains.in(Store::DataProtection, item), "one");
    EXPECT_FALSE(keychains.holds(Store::FileBased, item));
    EXPECT_EQ(TwoKeychains::read(keychains, item), "one");
}

TEST_F(KeychainRules, anUnsignedProgramStoresInTheFile) {
    keychains.isSigned = false;
    EXPECT_EQ(TwoKeychains::read(keychains, item), std::nullopt);
    EXPECT_FALSE(TwoKeychains::exists(keychains, item));
    EXPECT_TRUE(TwoKeychains::setPassword(keychains, item, "one"));
    EXPECT_EQ(keychains.in(Store::FileBased, item), "one");
    EXPECT_EQ(TwoKeychains::read(keychains, item), "one");
    EXPECT_TRUE(TwoKeychains::exists(keychains, item));
}

TEST_F(KeychainRules, aPasswordOfAnUnsignedProgramOpensTheSignedOneAndMovesAtItsNextChange) {
    keychains.isSigned = false;
    TwoKeychains::setPassword(keychains, item, "old");
    keychains.isSigned = true;
    EXPECT_EQ(TwoKeychains::read(keychains, item), "old");
    EXPECT_TRUE(TwoKeychains::exists(keychains, item));
    keychains.calls.clear();
    EXPECT_TRUE(TwoKeychains::setPassword(keychains, item, "new"));
    EXPECT_EQ(keychains.calls, QStringList({u"add protected"_s, u"remove file"_s})) << "first stored, then removed";
    EXPECT_FALSE(keychains.holds(Store::FileBased, item));
    EXPECT_EQ(TwoKeychains::read(keychains, item), "new");
}

TEST_F(KeychainRules, aRefusedChangeLeavesWhatWasThere) {
    keychains.isSigned = false;
    TwoKeychains::setPassword(keychains, item, "old");
    keychains.isSigned = true;
    keychains.refusal = kRefused;
    EXPECT_FALSE(TwoKeychains::setPassword(keychains, item, "new"));
    EXPECT_EQ(TwoKeychains::read(keychains, item), "old") << "in the other keychain";
    keychains.refusal = KeychainStatus::kSuccess;
    TwoKeychains::setPassword(keychains, item, "newer");
    keychains.refusal = kRefused;
    EXPECT_FALSE(TwoKeychains::setPassword(keychains, item, "newest"));
    EXPECT_EQ(TwoKeychains::read(keychains, item), "newer") << "in its own";
}

TEST_F(KeychainRules, anItemThatIsThereGetsTheNewValue) {
    TwoKeychains::setPassword(keychains, item, "one");
    keychains.calls.clear();
    EXPECT_TRUE(TwoKeychains::setPassword(keychains, item, "two"));
    EXPECT_EQ(TwoKeychains::read(keychains, item), "two");
    EXPECT_EQ(keychains.calls.mid(0, 2), QStringList({u"add protected"_s, u"update protected"_s}));
}

TEST_F(KeychainRules, theProtectedKeychainIsReadFirst) {
    keychains.isSigned = false;
    TwoKeychains::setPassword(keychains, item, "file");
    keychains.isSigned = true;
    keychains.add(Store::DataProtection, item, "protected");
    EXPECT_EQ(TwoKeychains::read(keychains, item), "protected");
}

TEST_F(KeychainRules, whatIsKeptBackIsThereAndIsNotReadFromTheOtherKeychain) {
    keychains.add(Store::FileBased, item, "file");
    keychains.add(Store::DataProtection, item, "protected");
    for (const int status : {KeychainStatus::kInteractionNotAllowed, KeychainStatus::kAuthFailed}) {
        keychains.keptBack = status;
        EXPECT_EQ(TwoKeychains::read(keychains, item), std::nullopt);
        EXPECT_TRUE(TwoKeychains::exists(keychains, item));
    }
    keychains.remove(Store::FileBased, item);
    EXPECT_TRUE(TwoKeychains::exists(keychains, item));
    keychains.keptBack = kRefused;
    EXPECT_FALSE(TwoKeychains::exists(keychains, item));
}

TEST_F(KeychainRules, aRemovedItemIsInNeither) {
    keychains.add(Store::FileBased, item, "file");
    keychains.add(Store::DataProtection, item, "protected");
    TwoKeychains::remove(keychains, item);
    EXPECT_FALSE(TwoKeychains::exists(keychains, item));
}

TEST_F(KeychainRules, aBiometricItemTakesThePlaceOfBoth) {
    keychains.add(Store::FileBased, item, "file");
    keychains.add(Store::DataProtection, item, "protected");
    EXPECT_TRUE(TwoKeychains::setBiometric(keychains, item, "secret"));
    EXPECT_EQ(keychains.in(Store::DataProtection, item), "secret");
    EXPECT_FALSE(keychains.holds(Store::FileBased, item));
    EXPECT_EQ(TwoKeychains::read(keychains, item), std::nullopt);
    EXPECT_TRUE(TwoKeychains::exists(keychains, item));
}

TEST_F(KeychainRules, anUnsignedProgramHasNoBiometricItems) {
    keychains.isSigned = false;
    TwoKeychains::setPassword(keychains, item, "older");
    EXPECT_FALSE(TwoKeychains::setBiometric(keychains, item, "secret"));
    EXPECT_FALSE(TwoKeychains::exists(keychains, item)) << "the older one is gone";
}

} // namespace quorvane
