#pragma once

#include "platform/FileManager.h"

#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace quorvane {

/// Removes a file, a link, or a folder with everything in it, one entry at a time, so that whoever removes much can let
/// others have their turn in between. Links are removed, not followed. An entry that goes by itself meanwhile is no
/// failure.
class TreeRemoval {
public:
    TreeRemoval(FileManager& files, const QString& path);

    /// Removes at most one more entry; false when nothing is left. Throws FileError, also when nothing is there to begin
    /// with; what is gone by then is gone, and nothing further is removed.
    bool step();

private:
    struct Level {
        QString folder;
        std::unique_ptr<FolderEntries> entries; ///< closed while too many are open
    };

    bool begin();
    void enter(const QString& folder);
    void removeOrEnter(const QString& path);
    void removeUnlessGone(const QString& path);
    std::optional<QString> nextName(Level& level);

    FileManager& m_files;
    QString m_path;
    bool m_hasBegun = false;
    std::vector<Level> m_levels;
};

/// All of it at once. Throws FileError; a failure may leave a part of the folder.
void removeTree(FileManager& files, const QString& path);

} // namespace quorvane
