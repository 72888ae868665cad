#include "platform/macos/MacKeychain.h"

#include "platform/macos/CfRef.h"
#include "platform/macos/KeychainStatus.h"
#include "platform/macos/TwoKeychains.h"

#import <LocalAuthentication/LocalAuthentication.h>
#import <Security/Security.h>

namespace quorvane {

namespace {

static_assert(KeychainStatus::kSuccess == errSecSuccess && KeychainStatus::kDuplicateItem == errSecDuplicateItem &&
              KeychainStatus::kItemNotFound == errSecItemNotFound && KeychainStatus::kAuthFailed == errSecAuthFailed &&
              KeychainStatus::kMissingEntitlement == errSecMissingEntitlement &&
              KeychainStatus::kInteractionNotAllowed == errSecInteractionNotAllowed);

using Query = NSMutableDictionary<id, id>;

/// Nobody is asked: what would need the user's finger is refused at once.
LAContext* silentContext() {
    LAContext* context = [[LAContext alloc] init];
    context.interactionNotAllowed = YES;
    return context;
}

CFDictionaryRef asCf(Query* query) {
    return (__bridge CFDictionaryRef)query;
}

/// Every query names its keychain: one that doesn't is for both, or for the file-based one alone, by what else stands in it.
class SecurityCalls final : public KeychainCalls {
public:
    /// @param context  decides whether the user may be asked
    explicit SecurityCalls(LAContext* context)
        : m_context(context) {}

    bool hasAccessGroup() const override {
        const CfRef<SecTaskRef> task(SecTaskCreateFromSelf(kCFAllocatorDefault));
        const CfRef<CFTypeRef> groups(
            task ? SecTaskCopyValueForEntitlement(task.get(), CFSTR("keychain-access-groups"), nullptr) : nullptr);
        return bool(groups);
    }

    int add(Store store, const KeychainItem& item, const QByteArray& data) const override {
        Query* query = queryFor(store, item);
        query[(__bridge id)kSecValueData] = data.toNSData();
        query[(__bridge id)kSecAttrAccessible] = (__bridge id)kSecAttrAccessibleWhenUnlocked;
        return SecItemAdd(asCf(query), nullptr);
    }

    int addBiometric(const KeychainItem& item, const QByteArray& data) const override {
        CfRef<CFErrorRef> error;
        const CfRef<SecAccessControlRef> access(SecAccessControlCreateWithFlags(
            kCFAllocatorDefault, kSecAttrAccessibleWhenUnlockedThisDeviceOnly,
            kSecAccessControlBiometryCurrentSet | kSecAccessControlOr | kSecAccessControlDevicePasscode, error.out()));
        if (!access) {
            return errSecParam;
        }
        Query* query = queryFor(Store::DataProtection, item);
        query[(__bridge id)kSecValueData] = data.toNSData();
        query[(__bridge id)kSecAttrAccessControl] = (__bridge id)access.get();
        return SecItemAdd(asCf(query), nullptr);
    }

    int update(Store store, const KeychainItem& item, const QByteArray& data) const override {
        Query* query = withContext(store, queryFor(store, item));
        NSDictionary* change = @{(__bridge id)kSecValueData : data.toNSData()};
        return SecItemUpdate(asCf(query), (__bridge CFDictionaryRef)change);
    }

    int remove(Store store, const KeychainItem& item) const override {
        return SecItemDelete(asCf(queryFor(store, item)));
    }

    int find(Store store, const KeychainItem& item) const override {
        Query* query = queryForOne(store, item);
        query[(__bridge id)kSecReturnAttributes] = @YES;
        CfRef<CFTypeRef> attributes;
        return SecItemCopyMatching(asCf(query), attributes.out());
    }

    int read(Store store, const KeychainItem& item, QByteArray& data) const override {
        Query* query = queryForOne(store, item);
        query[(__bridge id)kSecReturnData] = @YES;
        CfRef<CFTypeRef> found;
        const OSStatus status = SecItemCopyMatching(asCf(query), found.out());
        if (status == errSecSuccess) {
            data = QByteArray::fromNSData((__bridge NSData*)found.get()); // none for an item without bytes
        }
        return status;
    }

private:
    Query* queryFor(Store store, const KeychainItem& item) const {
        return [@{
            (__bridge id)kSecClass : (__bridge id)kSecClassGenericPassword,
            (__bridge id)kSecAttrService : item.service.toNSString(),
            (__bridge id)kSecAttrAccount : item.account.toNSString(),
            (__bridge id)kSecUseDataProtectionKeychain : @(store == Store::DataProtection),
        } mutableCopy];
    }
    Query* queryForOne(Store store, const KeychainItem& item) const {
        Query* query = queryFor(store, item);
        query[(__bridge id)kSecMatchLimit] = (__bridge id)kSecMatchLimitOne;
        return withContext(store, query);
    }
    /// The file-based keychain knows nothing of contexts.
    Query* withContext(Store store, Query* query) const {
        if (store == Store::DataProtection) {
            query[(__bridge id)kSecUseAuthenticationContext] = m_context;
        }
        return query;
    }

    LAContext* m_context;
};

} // namespace

struct MacKeychain::Prompts {
    NSMutableSet<LAContext*>* open = [NSMutableSet set]; // main thread
};

MacKeychain::MacKeychain()
    : m_prompts(std::make_unique<Prompts>()) {}

MacKeychain::~MacKeychain() {
    shutDown();
}

bool MacKeychain::setPasswordItem(const QString& service, const QString& account, const QByteArray& data) {
    return TwoKeychains::setPassword(SecurityCalls(silentContext()), {service, account}, data);
}

std::optional<QByteArray> MacKeychain::readPasswordItem(const QString& service, const QString& account) const {
    return TwoKeychains::read(SecurityCalls(silentContext()), {service, account});
}

void MacKeychain::deleteKeychainItem(const QString& service, const QString& account) {
    TwoKeychains::remove(SecurityCalls(silentContext()), {service, account});
}

bool MacKeychain::setBiometricItem(const QString& service, const QString& account, const QByteArray& data) {
    return TwoKeychains::setBiometric(SecurityCalls(silentContext()), {service, account}, data);
}

bool MacKeychain::keychainItemExists(const QString& service, const QString& account) const {
    return TwoKeychains::exists(SecurityCalls(silentContext()), {service, account});
}

QFuture<std::optional<QByteArray>> MacKeychain::readBiometricProtected(const QString& service, const QString& account,
                                                                       const QString& reason) {
    const auto question = m_answers.ask();
    if (m_answers.isClosed()) {
        return question.future;
    }
    LAContext* context = [[LAContext alloc] init];
    context.localizedReason = reason.toNSString();
    NSMutableSet<LAContext*>* open = m_prompts->open;
    [open addObject:context];
    const std::function<void(std::optional<QByteArray>)> answer = question.answer;
    const KeychainItem item{service, account};
    dispatch_async(dispatch_get_global_queue(QOS_CLASS_USER_INITIATED, 0), ^{
      @autoreleasepool {
          answer(TwoKeychains::read(SecurityCalls(context), item)); // waits for the user
      }
      dispatch_async(dispatch_get_main_queue(), ^{
        [open removeObject:context];
      });
    });
    return question.future;
}

std::optional<QByteArray> MacKeychain::randomBytes(int count) const {
    QByteArray bytes(count, Qt::Uninitialized);
    const bool isDone = SecRandomCopyBytes(kSecRandomDefault, size_t(bytes.size()), bytes.data()) == errSecSuccess;
    return isDone ? std::optional(bytes) : std::nullopt;
}

/// A prompt that the keychain itself has put up may stand on until the process ends; nobody waits for it any more.
void MacKeychain::shutDown() {
    m_answers.close();
    for (LAContext* context in m_prompts->open) {
        [context invalidate];
    }
    [m_prompts->open removeAllObjects];
}

} // namespace quorvane
