#include "platform/simulated/SimulatedFileManager.h"

#include "simulator/MacPaths.h"

#include <QRandomGenerator>

#include <cerrno>
#include <optional>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// Runs an operation of the simulated volume and reports its failure as the port does.
template <typename Operation>
auto reported(Operation operation) {
    try {
        return operation();
    } catch (const macsim::FileError& error) {
        throw FileError(error.path(), error.errorNumber());
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

QString sixLetters() {
    QString letters;
    for (int i = 0; i < 6; ++i) {
        letters += QChar(u'a' + QRandomGenerator::global()->bounded(26));
    }
    return letters;
}

/// Reads so many names at a time that a folder of a million needs some tens of looks at it, and a few MiB.
class SimulatedFolderEntries final : public FolderEntries {
public:
    SimulatedFolderEntries(const macsim::Volume& volume, const QString& folder)
        : m_volume(volume)
        , m_folder(folder) {
        readOn({});
    }

    std::optional<QString> next() override {
        if (m_given == m_names.size() && m_names.size() == kNamesAtATime) {
            readOn(m_names.last());
        }
        if (m_given == m_names.size()) {
            return std::nullopt;
        }
        return m_names.at(m_given++);
    }

private:
    static constexpr qsizetype kNamesAtATime = 16'384;

    void readOn(const QString& last) {
        m_names = reported([&] { return m_volume.namesAfter(m_folder, last, kNamesAtATime); });
        m_given = 0;
    }

    const macsim::Volume& m_volume;
    QString m_folder;
    QStringList m_names;
    qsizetype m_given = 0;
};

} // namespace

SimulatedFileManager::SimulatedFileManager(macsim::Volume volume, AtomicWriteWatcher watcher)
    : m_volume(std::move(volume))
    , m_watcher(std::move(watcher)) {}

bool SimulatedFileManager::exists(const QString& path) const {
    return m_volume.exists(path);
}

FileStatus SimulatedFileManager::status(const QString& path) const {
    try {
        return {kindOf(m_volume.kind(path)), userIdOf(m_volume.owner(path), m_volume.machine()),
                m_volume.fileNumber(path)};
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

std::unique_ptr<FolderEntries> SimulatedFileManager::entries(const QString& folder) const {
    return std::make_unique<SimulatedFolderEntries>(m_volume, folder);
}

QByteArray SimulatedFileManager::read(const QString& path) const {
    if (m_volume.isDataless(path)) {
        throw FileError::notDownloaded(path);
    }
    return reported([&] { return m_volume.read(path); });
}

void SimulatedFileManager::writeAtomically(const QString& path, const QByteArray& bytes) {
    const QString beside = macsim::pathInFolder(macsim::parentFolder(path), u".quorvane."_s + sixLetters());
    try {
        writeInSteps(beside, path, bytes);
    } catch (const macsim::FileError& error) {
        removeIfThere(beside);
        throw FileError(path, error.errorNumber());
    }
    announce(AtomicWriteStep::End);
}

bool SimulatedFileManager::writeNew(const QString& path, const QByteArray& bytes) {
    if (m_volume.kind(path) != macsim::Volume::Kind::Missing) {
        return false;
    }
    writeAtomically(path, bytes);
    return true;
}

/// Step by step, so that the program can be made to die at each, and not by the volume's own atomic write.
void SimulatedFileManager::writeInSteps(const QString& beside, const QString& path, const QByteArray& bytes) const {
    if (m_volume.kind(path) == macsim::Volume::Kind::Folder) {
        throw macsim::FileError(EISDIR, path);
    }
    const qsizetype half = bytes.size() / 2;
    m_volume.write(beside, {});
    announce(AtomicWriteStep::Write);
    m_volume.append(beside, bytes.first(half));
    announce(AtomicWriteStep::Flush);
    m_volume.append(beside, bytes.sliced(half));
    announce(AtomicWriteStep::Rename);
    m_volume.move(beside, path);
}

void SimulatedFileManager::announce(AtomicWriteStep step) const {
    if (m_watcher) {
        m_watcher(step);
    }
}

void SimulatedFileManager::removeIfThere(const QString& path) const {
    try {
        m_volume.remove(path);
    } catch (const macsim::FileError&) {
        return; // it couldn't even be made
    }
}

/// A simulated Mac loses no power: what is written is there.
void SimulatedFileManager::append(const QString& path, const QByteArray& bytes, Flush /*flush*/) {
    reported([&] {
        if (m_volume.kind(path) == macsim::Volume::Kind::Link) {
            throw macsim::FileError(ELOOP, path);
        }
        m_volume.append(path, bytes);
    });
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
