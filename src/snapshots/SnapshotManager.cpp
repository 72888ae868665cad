#include "snapshots/SnapshotManager.h"

#include "core/Json.h"
#include "platform/FileManager.h"
#include "platform/Machine.h"

namespace quorvane {

using namespace Qt::StringLiterals;

SnapshotManager::SnapshotManager(FileManager& files, const Machine& machine)
    : m_files(files)
    , m_folder(machine.applicationSupportFolder() + u"/Quorvane"_s) {}

QString SnapshotManager::snapshotFileURL() const {
    try {
        m_files.createFolders(m_folder);
    } catch (const FileError&) {
        // The write that follows tells of it, in words of its own.
    }
    return path();
}

/// Whoever only looks creates no folder.
QString SnapshotManager::path() const {
    return m_folder + u"/system_snapshot.json"_s;
}

void SnapshotManager::save(const SystemSnapshot& snapshot) const {
    m_files.writeAtomically(snapshotFileURL(), jsonText(encodeJson(snapshot)));
}

std::optional<SystemSnapshot> SnapshotManager::load() const {
    try {
        return decodedValue<SystemSnapshot>(parseJson(m_files.read(path())));
    } catch (const FileError&) {
        return std::nullopt;
    } catch (const DecodingError&) {
        return std::nullopt;
    }
}

bool SnapshotManager::hasSnapshotFile() const {
    return m_files.exists(path());
}

} // namespace quorvane
