#include "platform/simulated/FaultyFileManager.h"

#include "platform/simulated/AdapterFaults.h"

#include <csignal>
#include <map>
#include <stdexcept>
#include <string>
#include <utility>

namespace quorvane {

namespace {

std::optional<AtomicWriteStep> stepNamed(const std::string& name) {
    static const std::map<std::string, AtomicWriteStep> steps{{"write", AtomicWriteStep::Write},
                                                              {"flush", AtomicWriteStep::Flush},
                                                              {"rename", AtomicWriteStep::Rename},
                                                              {"end", AtomicWriteStep::End}};
    const auto step = steps.find(name);
    return step == steps.end() ? std::nullopt : std::optional(step->second);
}

bool isOfLogs(const QString& path) {
    return path.contains(QStringLiteral("/Library/Logs/Quorvane"));
}

void addRule(FileFaults& faults, const macsim::Json& rule) {
    const int change = macsim::wholeNumber<int>(rule.at("change"));
    if (!rule.value("kill", false)) {
        faults.failingChange = change;
        faults.reason = QString::fromStdString(rule.at("error").get<std::string>());
        return;
    }
    faults.killingChange = change;
    if (rule.contains("at")) {
        faults.killingStep = stepNamed(rule.at("at").get<std::string>());
        if (!faults.killingStep) {
            throw std::invalid_argument(R"("at": "write", "flush", "rename" or "end")");
        }
    }
}

} // namespace

FileFaults fileFaultsFromFile(const QString& hostPath) {
    FileFaults faults;
    const std::vector<macsim::Json> rules = adapterRules(hostPath, "files");
    try {
        for (const macsim::Json& rule : rules) {
            addRule(faults, rule);
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
    if (!isOfLogs(path)) {
        ++m_changes;
        if (m_changes == m_faults.killingChange && !m_faults.killingStep) {
            std::raise(SIGKILL);
        }
    }
    if (m_faults.failingChange && m_changes >= *m_faults.failingChange) {
        throw FileError(path, m_faults.reason);
    }
}

void FaultyFileManager::beforeStep(AtomicWriteStep step) {
    if (m_changes == m_faults.killingChange && step == m_faults.killingStep) {
        std::raise(SIGKILL);
    }
}

void FaultyFileManager::writeAtomically(const QString& path, const QByteArray& bytes) {
    beforeChange(path);
    m_files.writeAtomically(path, bytes);
}

bool FaultyFileManager::writeNew(const QString& path, const QByteArray& bytes) {
    beforeChange(path);
    return m_files.writeNew(path, bytes);
}

void FaultyFileManager::append(const QString& path, const QByteArray& bytes, Flush flush) {
    beforeChange(path);
    m_files.append(path, bytes, flush);
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
