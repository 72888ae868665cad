#pragma once

#include "snapshots/MasterSystemBaseline.h"

#include <QString>

#include <optional>

namespace quorvane {

/// What a way back goes by.
enum class RestoreSource {
    StandardDefaults, ///< what a fresh macOS has: nothing was captured
    Snapshot,         ///< the latest local snapshot
    Baseline,         ///< the protected master baseline
};

/// The settings that a way back restores.
struct RestoreBaseline {
    SystemSnapshot snapshot;
    RestoreSource source = RestoreSource::Snapshot;
    bool isNewer = false; ///< the protected baseline was taken though there is a local snapshot
    QString deviceName{}; ///< of the protected baseline: the Mac that it was saved on

    bool operator==(const RestoreBaseline&) const = default;
};

/// The newer of the two; the local snapshot when they are of one time.
std::optional<RestoreBaseline> chosenRestoreBaseline(const std::optional<SystemSnapshot>& local,
                                                     const std::optional<MasterSystemBaseline>& master);

/// What a way back came to: every caller finds its own words in it.
struct RestoreOutcome {
    bool succeeded = false;
    RestoreSource source = RestoreSource::StandardDefaults;

    bool operator==(const RestoreOutcome&) const = default;
};

} // namespace quorvane
