#pragma once

#include <QString>
#include <QStringList>

#include <optional>

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
    bool succeeded = true; ///< false: a step didn't do what its name says
    QStringList messages;  ///< what each step came to, in their order

    bool operator==(const MaintenanceOutcome&) const = default;

    /// Adds a step. @param problem  why it isn't done; none when it is  @param done  what is told then
    void add(const std::optional<QString>& problem, const QString& done);

    // What the user is told at the end.
    QString alertTitle() const;
    QString alertText() const;
};

} // namespace quorvane
