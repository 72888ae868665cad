#include "simulator/Mac.h"

#include <QDir>

#include <stdexcept>

namespace macsim {

using namespace Qt::StringLiterals;

Machine machineFromJson(const Json& json) {
    const auto text = [&json](const char* key, const QString& otherwise) {
        return json.contains(key) ? QString::fromStdString(json.at(key).get<std::string>()) : otherwise;
    };
    Machine machine;
    machine.userName = text("userName", machine.userName);
    machine.userId = json.contains("userId") ? wholeNumber<int>(json.at("userId")) : machine.userId;
    machine.computerName = text("computerName", machine.computerName);
    machine.hardwareUuid = text("hardwareUuid", machine.hardwareUuid);
    machine.systemVersion = text("systemVersion", machine.systemVersion);
    machine.model = text("model", machine.model);
    machine.caseSensitiveVolume = json.value("caseSensitiveVolume", machine.caseSensitiveVolume);
    machine.password = text("password", machine.password);
    return machine;
}

Mac::Mac(const QString& hostFolder)
    : m_hostFolder(QDir(hostFolder).canonicalPath())
    , m_state(m_hostFolder + kStateFolder.toString()) {
    const Json machine = m_state.read("machine");
    if (m_hostFolder.isEmpty() || machine.is_null()) {
        throw std::runtime_error(hostFolder.toStdString() + ": there is no simulated Mac in this folder");
    }
    m_machine = machineFromJson(machine);
}

QString Mac::homeFolder(Actor actor) const {
    return actor == Actor::Root ? u"/var/root"_s : u"/Users/"_s + m_machine.userName;
}

QString Mac::temporaryFolder() const {
    return userTemporaryFolder(m_machine).mid(8) + u"/T/"_s;
}

} // namespace macsim
