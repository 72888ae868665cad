#include "platform/simulated/SimulatedFileManager.h"

#include <cerrno>

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

/// A command of the Mac is a program file, as far as anybody asks who doesn't start it.
FileStatus::Kind kindOf(macsim::Volume::Kind kind) {
    switch (kind) {
    case macsim::Volume::Kind::File:
    case macsim::Volume::Kind::Tool:
        return FileStatus::Kind::File;
    case macsim::Volume::Kind::Folder:
        return FileStatus::Kind::Folder;
    case macsim::Volume::Kind::Link:
        return FileStatus::Kind::Link;
    case macsim::Volume::Kind::Missing:
        break;
    }
    return FileStatus::Kind::Missing;
}

quint32 userIdOf(macsim::Actor owner, const macsim::Machine& machine) {
    return owner == macsim::Actor::Root ? 0 : static_cast<quint32>(machine.userId);
}

/// A link is removed itself: kind() doesn't follow it, so what it leads to is never entered.
void removeWhole(const macsim::Volume& volume, const QString& path) {
    if (volume.kind(path) == macsim::Volume::Kind::Folder) {
        const QStringList names = volume.list(path);
        for (const QString& name : names) {
            removeWhole(volume, path + u'/' + name);
        }
    }
    volume.remove(path);
}

} // namespace

SimulatedFileManager::SimulatedFileManager(macsim::Volume volume)
    : m_volume(std::move(volume)) {}

bool SimulatedFileManager::exists(const QString& path) const {
    return m_volume.exists(path);
}

FileStatus SimulatedFileManager::status(const QString& path) const {
    try {
        return {kindOf(m_volume.kind(path)), userIdOf(m_volume.owner(path), m_volume.machine())};
    } catch (const macsim::FileError&) {
        return {};
    }
}

bool SimulatedFileManager::isWritable(const QString& path) const {
    return m_volume.isWritable(path);
}

QString SimulatedFileManager::resolved(const QString& path) const {
    return reported([&] {
        if (!m_volume.exists(path)) {
            throw macsim::FileError(ENOENT, path);
        }
        return m_volume.canonicalPath(path);
    });
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

void SimulatedFileManager::removeTree(const QString& path) {
    reported([&] { removeWhole(m_volume, path); });
}

void SimulatedFileManager::createFolders(const QString& folder) {
    reported([&] { m_volume.createFolders(folder); });
}

} // namespace quorvane
