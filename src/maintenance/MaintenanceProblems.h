#pragma once

#include <QString>

namespace quorvane {

struct CommandResult;

// What is said of a step of maintenance that didn't do what its name says.

inline const QString kCachesNotCleared = QStringLiteral("System cache cleanup failed or was cancelled.");
inline const QString kDownloadsNotRead = QStringLiteral("The Downloads folder may not be read.");
/// Where the user lets the program control the Finder.
inline const QString kFinderPermissionPlace =
    QStringLiteral("Grant Automation permission for Finder in System Settings → Privacy & Security.");

/// @param count  of the entries that root couldn't remove either
QString protectedItemsText(qsizetype count);
/// @param script  the outcome of the one that was to empty the Trash
QString trashNotEmptiedText(const CommandResult& script);
/// @param count  of the entries that couldn't be removed
QString stayedInDownloadsText(qsizetype count);

} // namespace quorvane
