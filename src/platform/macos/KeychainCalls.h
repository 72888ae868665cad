#pragma once

#include <QByteArray>
#include <QString>

namespace quorvane {

/// A generic password is known by these.
struct KeychainItem {
    QString service;
    QString account;
};

/// What the system's two keychains are asked to do, each call for one of them. All but `hasAccessGroup` give the system's
/// OSStatus (see KeychainStatus); that of the data-protection keychain is errSecMissingEntitlement for a program whose
/// signature has no access group (Apple TN3137). Any thread.
class KeychainCalls {
public:
    /// FileBased: the user's login keychain, which a program without a signature may use, too.
    enum class Store { DataProtection, FileBased };

    KeychainCalls() = default;
    KeychainCalls(const KeychainCalls&) = delete;
    KeychainCalls& operator=(const KeychainCalls&) = delete;
    virtual ~KeychainCalls() = default;

    /// Whether the program's signature lets it into the data-protection keychain.
    virtual bool hasAccessGroup() const = 0;

    /// Readable while the Mac is unlocked.
    virtual int add(Store store, const KeychainItem& item, const QByteArray& data) const = 0;
    /// Into the data-protection keychain, which alone has such items: bound to this Mac, and to the fingers that are enrolled
    /// now or the Mac's passcode.
    virtual int addBiometric(const KeychainItem& item, const QByteArray& data) const = 0;
    virtual int update(Store store, const KeychainItem& item, const QByteArray& data) const = 0;
    virtual int remove(Store store, const KeychainItem& item) const = 0;
    /// Whether it is there, without its data.
    virtual int find(Store store, const KeychainItem& item) const = 0;
    /// @param data  set on success alone
    virtual int read(Store store, const KeychainItem& item, QByteArray& data) const = 0;
};

} // namespace quorvane
