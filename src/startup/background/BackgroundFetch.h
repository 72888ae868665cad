#pragma once

namespace quorvane {

/// Where the background task list comes from, when it isn't known.
enum class BackgroundTaskItemsFetchMode {
    automatic,           ///< it is read at once
    deferredToAdminBatch ///< the open batch brings it
};

/// Whether the user may be asked for their password to read it.
enum class PrivilegedFetch { Refused, Allowed };

/// What the log calls the records that are switched off.
enum class BackgroundItemKind { LoginItem, CloudSyncLaunchItem };

} // namespace quorvane
