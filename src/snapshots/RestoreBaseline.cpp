#include "snapshots/RestoreBaseline.h"

namespace quorvane {

std::optional<RestoreBaseline> chosenRestoreBaseline(const std::optional<SystemSnapshot>& local,
                                                     const std::optional<MasterSystemBaseline>& master) {
    if (master && (!local || master->snapshot.dateCreated > local->dateCreated)) {
        return RestoreBaseline{master->snapshot, RestoreSource::Baseline, local.has_value(), master->deviceName};
    }
    if (local) {
        return RestoreBaseline{*local};
    }
    return std::nullopt;
}

} // namespace quorvane
