#include "network/SwitchedOffServices.h"

#include "core/Json.h"
#include "platform/FileManager.h"
#include "platform/Machine.h"

namespace quorvane {

using namespace Qt::StringLiterals;

SwitchedOffServices::SwitchedOffServices(FileManager& files, const Machine& machine)
    : m_files(files)
    , m_folder(machine.homeFolder() + u"/.quorvane"_s)
    , m_file(m_folder + u"/network-services-switched-off.json"_s) {}

QStringList SwitchedOffServices::read() const {
    try {
        return decodedValue<QList<QString>>(parseJson(m_files.read(m_file)));
    } catch (const FileError&) {
        return {};
    } catch (const DecodingError&) {
        return {};
    }
}

void SwitchedOffServices::note(const QStringList& services) {
    const QStringList before = read();
    QStringList all = before + services;
    all.removeDuplicates();
    if (all != before) {
        write(all);
    }
}

void SwitchedOffServices::strike(const QStringList& services) {
    QStringList left = read();
    if (left.removeIf([&services](const QString& service) { return services.contains(service); }) > 0) {
        write(left);
    }
}

void SwitchedOffServices::write(QStringList services) {
    services.sort();
    if (!services.isEmpty()) {
        m_files.createFolders(m_folder);
        m_files.writeAtomically(m_file, jsonText(encodeJson(services)));
    } else if (m_files.status(m_file).kind != FileStatus::Kind::Missing) {
        m_files.remove(m_file);
    }
}

} // namespace quorvane
