#include "simulator/Faults.h"

#include "simulator/MacPaths.h"

#include <QFile>

#include <array>
#include <stdexcept>
#include <string_view>

namespace macsim {

namespace {

void requireKnownKeys(const Json& rule) {
    static constexpr std::array<std::string_view, 11> kKeys{
        "tool",   "arguments", "delayMilliseconds", "hang",       "signal", "diskFull", "status",
        "output", "error",     "outputBase64",      "errorBase64"};
    for (const auto& [key, value] : rule.items()) {
        if (std::find(kKeys.begin(), kKeys.end(), key) == kKeys.end()) {
            throw std::invalid_argument("unknown key \"" + key + '"');
        }
    }
}

QByteArray bytes(const Json& rule, const char* textKey, const char* base64Key) {
    if (rule.contains(base64Key)) {
        return QByteArray::fromBase64(QByteArray::fromStdString(rule.at(base64Key).get<std::string>()));
    }
    return QByteArray::fromStdString(rule.value(textKey, std::string()));
}

Fault faultFromJson(const Json& rule) {
    if (!rule.is_object()) {
        throw std::invalid_argument("a rule is an object");
    }
    requireKnownKeys(rule);
    Fault fault;
    fault.tool = QString::fromStdString(rule.at("tool").get<std::string>());
    fault.arguments.setPattern(QString::fromStdString(rule.value("arguments", std::string())));
    if (!fault.arguments.isValid()) {
        throw std::invalid_argument("\"arguments\": " + fault.arguments.errorString().toStdString());
    }
    fault.delay = std::chrono::milliseconds(wholeNumberIn(rule, "delayMilliseconds"));
    fault.hangs = rule.value("hang", false);
    fault.signal = wholeNumberIn(rule, "signal");
    fault.diskFull = rule.value("diskFull", false);
    if (rule.contains("status")) {
        fault.status = wholeNumber<int>(rule.at("status"));
    }
    fault.output = bytes(rule, "output", "outputBase64");
    fault.error = bytes(rule, "error", "errorBase64");
    return fault;
}

} // namespace

Faults::Faults(const Json& rules) {
    if (!rules.is_array()) {
        throw std::invalid_argument("the rules are an array");
    }
    for (const Json& rule : rules) {
        if (rule.is_object() && rule.contains("adapter")) {
            continue; // for the program's own adapters, not for a tool
        }
        try {
            m_faults.push_back(faultFromJson(rule));
        } catch (const std::exception& error) {
            throw std::invalid_argument("rule " + std::to_string(m_faults.size() + 1) + ": " + error.what());
        }
    }
}

Faults Faults::fromFile(const QString& hostPath) {
    QFile file(hostPath);
    if (!file.open(QIODevice::ReadOnly)) {
        throw std::invalid_argument(hostPath.toStdString() + ": " + file.errorString().toStdString());
    }
    const QByteArray text = file.readAll();
    try {
        return Faults(Json::parse(text.cbegin(), text.cend()));
    } catch (const std::exception& error) {
        throw std::invalid_argument(hostPath.toStdString() + ": " + error.what());
    }
}

const Fault* Faults::find(const QString& path, const QStringList& arguments) const {
    const QString tool = lastPathComponent(path);
    const QString line = arguments.join(u' ');
    for (const Fault& fault : m_faults) {
        if (fault.tool == tool && fault.arguments.match(line).hasMatch()) {
            return &fault;
        }
    }
    return nullptr;
}

} // namespace macsim
