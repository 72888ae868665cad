#include "platform/simulated/SimulatedFileManager.h"

#include <utility>

namespace quorvane {

namespace {

/// Runs an operation of the simulated volume and reports its failure as the port does.
template <typename Operation>
auto reported(Operation operation) {
    try {
        return operation();
    } catch (const macsim::FileError& error) {
        throw FileError(error.path(), error.reason());
    }
}

} // namespace

SimulatedFileManager::SimulatedFileManager(macsim::Volume volume)
    : m_volume(std::move(volume)) {}

bool SimulatedFileManager::exists(const QString& path) const {
    return m_volume.exists(path);
}

QStringList SimulatedFileManager::list(const QString& folder) const {
    return reported([&] { return m_volume.list(folder); });
}

QByteArray SimulatedFileManager::read(const QString& path) const {
    return reported([&] { return m_volume.read(path); });
}

void SimulatedFileManager::writeAtomically(const QString& path, const QByteArray& bytes) {
    reported([&] { m_volume.writeAtomically(path, bytes); });
}

void SimulatedFileManager::move(const QString& from, const QString& to) {
    reported([&] { m_volume.move(from, to); });
}

void SimulatedFileManager::remove(const QString& path) {
    reported([&] { m_volume.remove(path); });
}

void SimulatedFileManager::createFolders(const QString& folder) {
    reported([&] { m_volume.createFolders(folder); });
}

} // namespace quorvane
