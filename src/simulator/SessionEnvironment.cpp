#include "simulator/SessionEnvironment.h"

#include "simulator/StateStore.h"

namespace macsim {

namespace {

constexpr const char* kSubject = "sessionEnvironment";

} // namespace

QMap<QString, QString> sessionEnvironment(const StateStore& state) {
    QMap<QString, QString> variables;
    const Json stored = state.read(kSubject);
    for (const auto& [name, value] : stored.items()) {
        variables.insert(QString::fromStdString(name), QString::fromStdString(value.get<std::string>()));
    }
    return variables;
}

void setSessionVariable(const StateStore& state, const QString& name, const QString& value) {
    state.update(kSubject, [&](Json& stored) { stored[name.toStdString()] = value.toStdString(); });
}

void unsetSessionVariable(const StateStore& state, const QString& name) {
    state.update(kSubject, [&](Json& stored) {
        if (stored.is_object()) {
            stored.erase(name.toStdString());
        }
    });
}

} // namespace macsim
