#include "platform/TreeRemoval.h"

#include <optional>
#include <utility>

namespace quorvane {

namespace {

/// Each open folder takes a file descriptor, of which a process started by the Mac's session has no more than 256.
constexpr std::size_t kMostOpenFolders = 64;

} // namespace

TreeRemoval::TreeRemoval(FileManager& files, const QString& path)
    : m_files(files)
    , m_path(path) {}

bool TreeRemoval::step() {
    if (!std::exchange(m_hasBegun, true)) {
        return begin();
    }
    if (m_levels.empty()) {
        return false;
    }
    const std::optional<QString> name = nextName(m_levels.back());
    if (name) {
        removeOrEnter(m_levels.back().folder + u'/' + *name);
        return true;
    }
    const QString emptied = m_levels.back().folder;
    m_levels.pop_back();
    removeUnlessGone(emptied);
    return !m_levels.empty();
}

/// What is missing fails here, by the words of the system.
bool TreeRemoval::begin() {
    if (m_files.status(m_path).kind == FileStatus::Kind::Folder) {
        enter(m_path);
        return true;
    }
    m_files.remove(m_path);
    return false;
}

void TreeRemoval::removeOrEnter(const QString& path) {
    if (m_files.status(path).kind == FileStatus::Kind::Folder) {
        enter(path);
    } else {
        removeUnlessGone(path);
    }
}

void TreeRemoval::enter(const QString& folder) {
    m_levels.push_back({folder, nullptr});
    if (m_levels.size() > kMostOpenFolders) {
        m_levels[m_levels.size() - 1 - kMostOpenFolders].entries.reset();
    }
}

/// A folder that was closed is opened anew, and has left only what is still to be removed.
std::optional<QString> TreeRemoval::nextName(Level& level) {
    try {
        if (!level.entries) {
            level.entries = m_files.entries(level.folder);
        }
        return level.entries->next();
    } catch (const FileError&) {
        if (m_files.status(level.folder).kind != FileStatus::Kind::Missing) {
            throw;
        }
        return std::nullopt;
    }
}

/// Others may remove what they find, too: what they were quicker with is gone as it should be.
void TreeRemoval::removeUnlessGone(const QString& path) {
    try {
        m_files.remove(path);
    } catch (const FileError&) {
        if (m_files.status(path).kind != FileStatus::Kind::Missing) {
            throw;
        }
    }
}

void removeTree(FileManager& files, const QString& path) {
    TreeRemoval removal(files, path);
    while (removal.step()) {
    }
}

} // namespace quorvane
