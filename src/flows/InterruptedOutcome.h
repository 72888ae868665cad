#pragma once

#include "snapshots/RestoreBaseline.h"

#include <optional>

namespace quorvane {

/// What became of a flow that was cut off and was finished or taken back.
struct InterruptedOutcome {
    bool succeeded = false;
    std::optional<RestoreOutcome> restore{}; ///< where something was brought back

    bool operator==(const InterruptedOutcome&) const = default;
};

} // namespace quorvane
