#include "platform/simulated/FaultyFileManager.h"

#include "simulator/Json.h"

#include <QFile>

#include <csignal>
#include <stdexcept>
#include <utility>

namespace quorvane {

namespace {

void addRule(FileFaults& faults, const macsim::Json& rule) {
    const int change = rule.at("change").get<int>();
    if (rule.value("kill", false)) {
        faults.killingChange = change;
    } else {
        faults.failingChange = change;
        faults.reason = QString::fromStdString(rule.at("error").get<std::string>());
    }
}

} // namespace

FileFaults fileFaultsFromFile(const QString& hostPath) {
    FileFaults faults;
    if (hostPath.isEmpty()) {
        return faults;
    }
    QFile file(hostPath);
    if (!file.open(QIODevice::ReadOnly)) {
        throw std::invalid_argument(hostPath.toStdString() + ": " + file.errorString().toStdString());
    }
    const QByteArray text = file.readAll();
    try {
        const macsim::Json rules = macsim::Json::parse(text.cbegin(), text.cend());
        for (const macsim::Json& rule : rules) {
            if (rule.value("adapter", std::string()) == "files") {
                addRule(faults, rule);
            }
        }
    } catch (const std::exception& error) {
        throw std::invalid_argument(hostPath.toStdString() + ": " + error.what());
    }
    return faults;
}

FaultyFileManager::FaultyFileManager(FileManager& files, FileFaults faults)
    : m_files(files)
    , m_faults(std::move(faults)) {}

void FaultyFileManager::beforeChange(const QString& path) {
    ++m_changes;
    if (m_faults.killingChange && m_changes == *m_faults.killingChange) {
        std::raise(SIGKILL);
    }
    if (m_faults.failingChange && m_changes >= *m_faults.failingChange) {
        throw FileError(path, m_faults.reason);
    }
}

void FaultyFileManager::writeAtomically(const QString& path, const QByteArray& bytes) {
    beforeChange(path);
    m_files.writeAtomically(path, bytes);
}

void FaultyFileManager::move(const QString& from, const QString& to) {
    beforeChange(from);
    m_files.move(from, to);
}

void FaultyFileManager::remove(const QString& path) {
    beforeChange(path);
    m_files.remove(path);
}

void FaultyFileManager::createFolders(const QString& folder) {
    beforeChange(folder);
    m_files.createFolders(folder);
}

} // namespace quorvane
