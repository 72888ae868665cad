#include "json/ScriptProtocol.h"

#include "json/OrderedJson.h"

#include <array>
#include <cstdint>
#include <utility>

namespace ScriptProtocol {

namespace {

using Json = nlohmann::ordered_json;
using Kind = Message::Kind;

constexpr std::array<std::pair<Kind, const char*>, 5> kKeys{{{Kind::Source, "source"},
                                                             {Kind::Answer, "answer"},
                                                             {Kind::AuthorizationWanted, "authorizationWanted"},
                                                             {Kind::Result, "result"},
                                                             {Kind::Error, "error"}}};

constexpr const char* kNumber = "number";

Json messageOf(Kind kind, const QString& text) {
    for (const auto& [candidate, key] : kKeys) {
        if (candidate == kind) {
            return Json{{key, text.toStdString()}};
        }
    }
    return {};
}

QByteArray lineOf(const Json& message) {
    return QByteArray::fromStdString(message.dump(-1, ' ', false, Json::error_handler_t::replace)) + '\n';
}

bool isWholeNumber(const Json& json) {
    return json.is_number_unsigned() ? std::in_range<int>(json.get<std::uint64_t>())
                                     : json.is_number_integer() && std::in_range<int>(json.get<std::int64_t>());
}

/// None for what is no whole number, or none that fits.
std::optional<int> numberIn(const Json& message) {
    const auto number = message.find(kNumber);
    return number != message.end() && isWholeNumber(*number) ? std::optional(number->get<int>()) : std::nullopt;
}

} // namespace

QByteArray source(const QString& text) {
    return lineOf(messageOf(Kind::Source, text));
}

QByteArray answer(const QString& word) {
    return lineOf(messageOf(Kind::Answer, word));
}

QByteArray authorizationWanted(const QString& prompt) {
    return lineOf(messageOf(Kind::AuthorizationWanted, prompt));
}

QByteArray result(const QString& text) {
    return lineOf(messageOf(Kind::Result, text));
}

QByteArray error(const QString& text, std::optional<int> number) {
    Json message = messageOf(Kind::Error, text);
    if (number) {
        message[kNumber] = *number;
    }
    return lineOf(message);
}

Message parsed(const QByteArray& line) {
    const Json json = Json::parse(line.cbegin(), line.cend(), nullptr, false);
    for (const auto& [kind, key] : kKeys) {
        if (json.is_object() && json.contains(key) && json.at(key).is_string()) {
            const QString text = QString::fromStdString(json.at(key).get<std::string>());
            return {kind, text, kind == Kind::Error ? numberIn(json) : std::nullopt};
        }
    }
    return {};
}

} // namespace ScriptProtocol
