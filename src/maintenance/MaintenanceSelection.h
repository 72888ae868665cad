#pragma once

#include <QString>
#include <QStringList>

namespace quorvane {

/// What the user chose to clean up.
struct MaintenanceSelection {
    bool clearCache = false;     ///< cache files, the user's and the system's
    bool cleanTrash = false;     ///< everything in the Trash
    bool purgeDownloads = false; ///< everything in the Downloads folder

    bool operator==(const MaintenanceSelection&) const = default;
};

/// What became of it.
struct MaintenanceOutcome {
    bool succeeded = true; ///< false: the caches of the system couldn't be cleared. The other steps don't fail.
    QStringList messages;  ///< one sentence for each step

    bool operator==(const MaintenanceOutcome&) const = default;

    // What the user is told at the end.
    QString alertTitle() const;
    QString alertText() const;
};

} // namespace quorvane
