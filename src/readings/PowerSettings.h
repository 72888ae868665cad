#pragma once

#include <QString>

#include <optional>

namespace quorvane {

/// The power settings that a tweak changes, as the text that `pmset` prints; none where the Mac doesn't have them.
struct PowerSettings {
    std::optional<QString> standby;
    std::optional<QString> disksleep;
    std::optional<QString> sleep;
    std::optional<QString> sms; ///< the sudden motion sensor, on Macs with a rotating disk

    bool operator==(const PowerSettings&) const = default;
};

/// Reads the output of `pmset -g custom`: a field's value is the last word of the first line whose first word is the field's
/// name, whichever power source's section it stands in. A longer name ("standbydelayhigh") is another setting. None where
/// no setting at all is listed: that tells nothing of what the Mac has.
std::optional<PowerSettings> parsedPowerSettings(const QString& customSettings);

} // namespace quorvane
