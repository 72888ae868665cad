#pragma once

#include <QString>

#include <optional>

namespace quorvane {

/// Reads the output of `mdutil -s`: whether a volume is indexed; none for every other state ("No index.", a change that is
/// under way, an unknown one) and for what is no state.
std::optional<bool> parsedSpotlightState(const QString& state);

} // namespace quorvane
