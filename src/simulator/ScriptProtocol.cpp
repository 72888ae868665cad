#include "simulator/ScriptProtocol.h"

#include "simulator/Json.h"

#include <array>
#include <utility>

namespace macsim::ScriptProtocol {

namespace {

using Kind = Message::Kind;

constexpr std::array<std::pair<Kind, const char*>, 5> kKeys{{{Kind::Source, "source"},
                                                             {Kind::Answer, "answer"},
                                                             {Kind::AuthorizationWanted, "authorizationWanted"},
                                                             {Kind::Result, "result"},
                                                             {Kind::Error, "error"}}};

constexpr const char* kNumber = "number";

QByteArray line(const Json& message) {
    return QByteArray::fromStdString(message.dump(-1, ' ', false, Json::error_handler_t::replace)) + '\n';
}

Json message(Kind kind, const std::string& text) {
    for (const auto& [candidate, key] : kKeys) {
        if (candidate == kind) {
            return Json{{key, text}};
        }
    }
    return {};
}

QByteArray line(Kind kind, const std::string& text) {
    return line(message(kind, text));
}

} // namespace

QByteArray source(const QString& text) {
    return line(Kind::Source, text.toStdString());
}

QByteArray answer(Authorization answer) {
    return line(Kind::Answer, authorizationName(answer));
}

QByteArray authorizationWanted(const QString& prompt) {
    return line(Kind::AuthorizationWanted, prompt.toStdString());
}

QByteArray result(const QString& text) {
    return line(Kind::Result, text.toStdString());
}

QByteArray error(const QString& text, int number) {
    Json error = message(Kind::Error, text.toStdString());
    error[kNumber] = number;
    return line(error);
}

Message parsed(const QByteArray& line) {
    const Json json = Json::parse(line.cbegin(), line.cend(), nullptr, false);
    for (const auto& [kind, key] : kKeys) {
        if (!json.is_object() || !json.contains(key) || !json.at(key).is_string()) {
            continue;
        }
        const std::string text = json.at(key).get<std::string>();
        Message message{kind, QString::fromStdString(text)};
        if (kind == Kind::Answer) {
            const std::optional<Authorization> answer = authorizationNamed(text);
            return answer ? Message{kind, {}, *answer} : Message{};
        }
        if (kind == Kind::Error && json.contains(kNumber) && json.at(kNumber).is_number_integer()) {
            message.number = json.at(kNumber).get<int>();
        }
        return message;
    }
    return {};
}

} // namespace macsim::ScriptProtocol
