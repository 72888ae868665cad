#pragma once

#include "core/JsonErrors.h"
#include "core/JsonForward.h"
#include "json/OrderedJson.h"

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QMap>
#include <QString>
#include <QUuid>

#include <optional>

// JSON files, strictly.
//
// A record has a pair of functions beside it: `Json encodeJson(const Record&)` and `void decodeJson(const
// Json&, Record&)`. They are built of the pairs below and of the members' helpers, so that every error names
// the way to its place in the file: "startup.items[3].kind". A value of another type is an error; nothing is
// converted.
namespace quorvane {

/// Reads a JSON text (UTF-8) in time linear in its size. Of two members with one key the first counts.
/// Throws DecodingError for anything that isn't JSON, and for nesting deeper than 512.
Json parseJson(const QByteArray& bytes);

/// The text of a JSON file: UTF-8, pretty-printed with an indent of two blanks.
QByteArray jsonText(const Json& json);
/// The same with the keys of every object in ascending order of their bytes.
QByteArray sortedJsonText(const Json& json);

/// The member of an object; nullptr where it is absent. Throws DecodingError for what isn't an object.
const Json* findMember(const Json& object, const char* key);

/// Adds a member at the end of an object. The key must be new; that isn't looked up.
void appendMember(Json& object, std::string key, Json value);

/// A text of a file as an error shows it: quoted, shortened, on one line.
QString quotedForError(const QString& text);

/// The text that a string or a key of JSON holds. A byte order mark at its beginning belongs to it.
QString jsonString(const std::string& utf8);

Json encodeJson(bool value);
Json encodeJson(int value);
Json encodeJson(const QString& text);
Json encodeJson(const char* text) = delete;
/// ISO 8601 in UTC at whole seconds: "2026-11-15T21:05:37Z". Throws EncodingError for a date outside the
/// years 1 to 9999.
Json encodeJson(const QDateTime& date);
/// The 36 characters of a UUID, in upper case.
Json encodeJson(const QUuid& id);

// Each throws DecodingError.
void decodeJson(const Json& json, bool& value);
/// A whole number, written without a fraction or an exponent, that fits.
void decodeJson(const Json& json, int& value);
void decodeJson(const Json& json, QString& text);
/// Exactly the form that encodeJson writes.
void decodeJson(const Json& json, QDateTime& date);
/// Exactly the 36 characters, in either case.
void decodeJson(const Json& json, QUuid& id);
void requireArray(const Json& json);
void requireObject(const Json& json);

template <typename T>
Json encodeJson(const QList<T>& values) {
    Json array = Json::array();
    for (const T& value : values) {
        array.push_back(encodeJson(value));
    }
    return array;
}

template <typename T>
void decodeJson(const Json& json, QMap<QString, T>& values);

template <typename T>
void decodeJson(const Json& json, QList<T>& values) {
    requireArray(json);
    values.clear();
    values.reserve(static_cast<qsizetype>(json.size()));
    for (const Json& element : json) {
        try {
            decodeJson(element, values.emplaceBack());
        } catch (const DecodingError& error) {
            throw error.within(QStringLiteral("[%1]").arg(values.size() - 1));
        }
    }
}

template <typename T>
Json encodeJson(const QMap<QString, T>& values) {
    Json object = Json::object();
    for (auto entry = values.begin(); entry != values.end(); ++entry) {
        appendMember(object, entry.key().toStdString(), encodeJson(entry.value()));
    }
    return object;
}

template <typename T>
T decodedValue(const Json& json) {
    T value{};
    decodeJson(json, value);
    return value;
}

template <typename T>
T decodedMember(const Json& member, const char* key) {
    try {
        return decodedValue<T>(member);
    } catch (const DecodingError& error) {
        throw error.within(QString::fromUtf8(key));
    }
}

template <typename T>
void decodeJson(const Json& json, QMap<QString, T>& values) {
    requireObject(json);
    values.clear();
    for (const auto& [name, value] : json.get_ref<const Json::object_t&>()) {
        const QString key = jsonString(name);
        if (!values.contains(key)) {
            values.insert(key, decodedMember<T>(value, name.c_str()));
        }
    }
}

/// A member that must be there.
template <typename T>
T requiredMember(const Json& object, const char* key) {
    const Json* member = findMember(object, key);
    if (member == nullptr) {
        throw DecodingError(QStringLiteral("missing"), QString::fromUtf8(key));
    }
    return decodedMember<T>(*member, key);
}

/// Adds a member at the end of an object unless there is no value.
template <typename T>
void appendOptionalMember(Json& object, const char* key, const std::optional<T>& value) {
    if (value) {
        appendMember(object, key, encodeJson(*value));
    }
}

/// A member that may be absent; null counts as absent.
template <typename T>
std::optional<T> optionalMember(const Json& object, const char* key) {
    const Json* member = findMember(object, key);
    if (member == nullptr || member->is_null()) {
        return std::nullopt;
    }
    return decodedMember<T>(*member, key);
}

} // namespace quorvane
