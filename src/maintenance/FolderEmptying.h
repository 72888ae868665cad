#pragma once

#include "platform/FileManager.h"
#include "platform/TreeRemoval.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace quorvane {

/// Removes what is in a folder, one entry after the other in the order of the system, and a folder among them piece by
/// piece. It holds no more than the entry at hand, so a folder may be of any size. An entry that is a link is removed
/// itself.
class FolderEmptying {
public:
    /// Asked for each name; true leaves the entry alone.
    using IsSpared = std::function<bool(const QString& name)>;
    /// Told of each entry when it is gone, or when it can't be removed and why.
    using Report = std::function<void(const QString& name, const std::optional<QString>& error)>;

    /// Throws FileError when the folder can't be read.
    FolderEmptying(FileManager& files, const QString& folder, IsSpared isSpared, Report report);

    /// Does a little more; false when nothing is left to do. Throws FileError when the folder can't be read further.
    bool step();

private:
    void removeFurther();

    FileManager& m_files;
    QString m_folder;
    IsSpared m_isSpared;
    Report m_report;
    std::unique_ptr<FolderEntries> m_entries;
    QString m_name;                       ///< of the entry at hand
    std::optional<TreeRemoval> m_removal; ///< while an entry is being removed
};

} // namespace quorvane
