#include "platform/macos/TwoKeychains.h"

#include "platform/macos/KeychainStatus.h"

#include <array>

namespace quorvane {

namespace {

using Store = KeychainCalls::Store;

constexpr std::array<Store, 2> kStores{Store::DataProtection, Store::FileBased};

/// A program without an access group has nothing in the data-protection keychain.
bool isAbsent(int status) {
    return status == KeychainStatus::kItemNotFound || status == KeychainStatus::kMissingEntitlement;
}

/// An item that is kept back is there.
bool isPresent(int status) {
    return status == KeychainStatus::kSuccess || status == KeychainStatus::kInteractionNotAllowed ||
           status == KeychainStatus::kAuthFailed;
}

int put(const KeychainCalls& calls, Store store, const KeychainItem& item, const QByteArray& data) {
    const int status = calls.add(store, item, data);
    return status == KeychainStatus::kDuplicateItem ? calls.update(store, item, data) : status;
}

} // namespace

bool TwoKeychains::setPassword(const KeychainCalls& calls, const KeychainItem& item, const QByteArray& data) {
    const bool isProtected = calls.hasAccessGroup();
    if (put(calls, isProtected ? Store::DataProtection : Store::FileBased, item, data) != KeychainStatus::kSuccess) {
        return false;
    }
    calls.remove(isProtected ? Store::FileBased : Store::DataProtection, item);
    return true;
}

bool TwoKeychains::setBiometric(const KeychainCalls& calls, const KeychainItem& item, const QByteArray& data) {
    remove(calls, item);
    return calls.addBiometric(item, data) == KeychainStatus::kSuccess;
}

std::optional<QByteArray> TwoKeychains::read(const KeychainCalls& calls, const KeychainItem& item) {
    for (const Store store : kStores) {
        QByteArray data;
        const int status = calls.read(store, item, data);
        if (!isAbsent(status)) {
            return status == KeychainStatus::kSuccess ? std::optional(data) : std::nullopt;
        }
    }
    return std::nullopt;
}

bool TwoKeychains::exists(const KeychainCalls& calls, const KeychainItem& item) {
    return isPresent(calls.find(Store::DataProtection, item)) || isPresent(calls.find(Store::FileBased, item));
}

void TwoKeychains::remove(const KeychainCalls& calls, const KeychainItem& item) {
    for (const Store store : kStores) {
        calls.remove(store, item);
    }
}

} // namespace quorvane
