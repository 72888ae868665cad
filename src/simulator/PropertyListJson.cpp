#include "simulator/PropertyList.h"

#include <limits>
#include <stdexcept>
#include <string>

namespace macsim {

namespace {

[[noreturn]] void refuseJson(const std::string& reason) {
    throw std::invalid_argument("property list: " + reason);
}

PropertyList listOfJson(const Json& json, int depth);

QByteArray dataOfJson(const Json& base64) {
    const auto text = QByteArray::fromStdString(base64.get<std::string>());
    const auto decoded = QByteArray::fromBase64Encoding(text, QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded) {
        refuseJson("$data isn't base64");
    }
    return *decoded;
}

QDateTime dateOfJson(const Json& iso8601) {
    const auto text = QString::fromStdString(iso8601.get<std::string>());
    QDateTime date = QDateTime::fromString(text, Qt::ISODate).toUTC();
    if (!date.isValid()) {
        refuseJson("$date isn't a date of ISO 8601");
    }
    return date;
}

PropertyList listOfJsonObject(const Json& json, int depth) {
    if (json.size() == 1 && json.begin()->is_string()) {
        if (json.begin().key() == "$data") {
            return dataOfJson(json.front());
        }
        if (json.begin().key() == "$date") {
            return dateOfJson(json.front());
        }
    }
    PropertyList::Dictionary dictionary;
    for (const auto& [key, value] : json.items()) {
        dictionary.insert_or_assign(QString::fromStdString(key), listOfJson(value, depth + 1));
    }
    return dictionary;
}

PropertyList listOfJson(const Json& json, int depth) {
    if (depth > kMaximumPropertyListDepth) {
        refuseJson("nested too deeply");
    }
    switch (json.type()) {
    case Json::value_t::boolean:
        return json.get<bool>();
    case Json::value_t::number_float:
        return json.get<double>();
    case Json::value_t::number_unsigned:
        if (json.get<quint64>() > static_cast<quint64>(std::numeric_limits<qint64>::max())) {
            refuseJson("an integer above 2^63 - 1");
        }
        return json.get<qint64>();
    case Json::value_t::number_integer:
        return json.get<qint64>();
    case Json::value_t::string:
        return QString::fromStdString(json.get<std::string>());
    case Json::value_t::object:
        return listOfJsonObject(json, depth);
    case Json::value_t::array: {
        PropertyList::Array array;
        for (const Json& item : json) {
            array.push_back(listOfJson(item, depth + 1));
        }
        return array;
    }
    default:
        refuseJson("has no null");
    }
}

} // namespace

PropertyList propertyListFromJson(const Json& json) {
    return listOfJson(json, 0);
}

} // namespace macsim
