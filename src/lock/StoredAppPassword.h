#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace quorvane {

/// What the keychain keeps of the app password: enough to tell whether a password is the right one, and no more. It is
/// compared and guards nothing else, so one digest is all the work that is made of it.
struct StoredAppPassword {
    QString salt; ///< base64
    QString hash; ///< the digest of password and salt: 64 hexadecimal digits in lower case

    bool operator==(const StoredAppPassword&) const = default;
};

inline constexpr int kSaltLength = 32; // bytes

/// @param salt  kSaltLength bytes that nobody can guess, new for each password that is stored
StoredAppPassword storedAppPassword(const QString& password, const QByteArray& salt);

/// Characters are compared as they were typed: an "é" of two code points isn't one of a single code point.
bool isRightPassword(const StoredAppPassword& stored, const QString& password);

/// What is digested: the password in UTF-8, and right behind it the salt.
QByteArray appPasswordDigestInput(const QString& password, const QByteArray& salt);

/// The keychain item's JSON.
QByteArray encodeStoredAppPassword(const StoredAppPassword& stored);
/// None for what isn't such a record.
std::optional<StoredAppPassword> decodeStoredAppPassword(const QByteArray& bytes);

} // namespace quorvane
