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

QByteArray line(Kind kind, const std::string& text) {
    for (const auto& [candidate, key] : kKeys) {
        if (candidate == kind) {
            return QByteArray::fromStdString(Json{{key, text}}.dump(-1, ' ', false, Json::error_handler_t::replace)) +
                   '\n';
        }
    }
    return {};
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

QByteArray error(const QString& message) {
    return line(Kind::Error, message.toStdString());
}

Message parsed(const QByteArray& line) {
    const Json json = Json::parse(line.cbegin(), line.cend(), nullptr, false);
    for (const auto& [kind, key] : kKeys) {
        if (!json.is_object() || !json.contains(key) || !json.at(key).is_string()) {
            continue;
        }
        const std::string text = json.at(key).get<std::string>();
        Message message{kind, QString::fromStdString(text), Authorization::Cancel};
        if (kind == Kind::Answer) {
            const std::optional<Authorization> answer = authorizationNamed(text);
            return answer ? Message{kind, {}, *answer} : Message{};
        }
        return message;
    }
    return {};
}

} // namespace macsim::ScriptProtocol
