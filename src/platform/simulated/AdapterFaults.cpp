#include "platform/simulated/AdapterFaults.h"

#include <QFile>

#include <stdexcept>
#include <string>

namespace quorvane {

std::vector<macsim::Json> adapterRules(const QString& hostPath, const char* adapter) {
    std::vector<macsim::Json> rules;
    if (hostPath.isEmpty()) {
        return rules;
    }
    QFile file(hostPath);
    if (!file.open(QIODevice::ReadOnly)) {
        throw std::invalid_argument(hostPath.toStdString() + ": " + file.errorString().toStdString());
    }
    const QByteArray text = file.readAll();
    try {
        const macsim::Json all = macsim::Json::parse(text.cbegin(), text.cend());
        for (const macsim::Json& rule : all) {
            if (rule.value("adapter", std::string()) == adapter) {
                rules.push_back(rule);
            }
        }
    } catch (const std::exception& error) {
        throw std::invalid_argument(hostPath.toStdString() + ": " + error.what());
    }
    return rules;
}

} // namespace quorvane
