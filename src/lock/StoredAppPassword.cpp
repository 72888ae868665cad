#include "lock/StoredAppPassword.h"

#include "core/Json.h"

#include <QCryptographicHash>

namespace quorvane {

namespace {

QString digestText(const QString& password, const QByteArray& salt) {
    const QByteArray input = appPasswordDigestInput(password, salt);
    return QString::fromLatin1(QCryptographicHash::hash(input, QCryptographicHash::Sha256).toHex());
}

/// Qt passes over what doesn't belong into base64, so only a text that comes out again as it was is one.
std::optional<QByteArray> saltBytes(const StoredAppPassword& stored) {
    const QByteArray text = stored.salt.toUtf8();
    const QByteArray bytes = QByteArray::fromBase64(text);
    return bytes.toBase64() == text ? std::optional(bytes) : std::nullopt;
}

} // namespace

StoredAppPassword storedAppPassword(const QString& password, const QByteArray& salt) {
    return {QString::fromLatin1(salt.toBase64()), digestText(password, salt)};
}

// Without a salt there is no digest to compare. An empty text in its place would equal an empty hash, and any password
// would be the right one.
bool isRightPassword(const StoredAppPassword& stored, const QString& password) {
    const std::optional<QByteArray> salt = saltBytes(stored);
    return salt && digestText(password, *salt) == stored.hash;
}

QByteArray appPasswordDigestInput(const QString& password, const QByteArray& salt) {
    return password.toUtf8() + salt;
}

QByteArray encodeStoredAppPassword(const StoredAppPassword& stored) {
    Json object = Json::object();
    appendMember(object, "salt", encodeJson(stored.salt));
    appendMember(object, "hash", encodeJson(stored.hash));
    return QByteArray::fromStdString(object.dump());
}

std::optional<StoredAppPassword> decodeStoredAppPassword(const QByteArray& bytes) {
    try {
        const Json object = parseJson(bytes);
        return StoredAppPassword{requiredMember<QString>(object, "salt"), requiredMember<QString>(object, "hash")};
    } catch (const DecodingError&) {
        return std::nullopt;
    }
}

} // namespace quorvane
