#pragma once

namespace quorvane {

/// Where the background task list comes from, when it isn't known.
enum class BackgroundTaskItemsFetchMode {
    automatic,           ///< as it was read last
    deferredToAdminBatch ///< the open batch brings it
};

} // namespace quorvane
