#pragma once

#include <QList>
#include <QString>
#include <QStringList>

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

/// What a Mac is fed by, with the settings that hold meanwhile.
struct PowerSource {
    QString name; ///< "AC Power", "Battery Power", "UPS Power"; empty for settings above the first heading
    PowerSettings settings;

    bool operator==(const PowerSource&) const = default;
};

/// Reads the output of `pmset -g custom`, section by section in its order: a setting's value is the last word of the first line
/// whose first word is the setting's name. A longer name ("standbydelayhigh") is another setting. None where no setting at all is
/// listed: that tells nothing of what the Mac has.
std::optional<QList<PowerSource>> parsedPowerSources(const QString& customSettings);

/// Each setting of the first source that lists it.
PowerSettings firstListed(const QList<PowerSource>& sources);

/// True when every one of the three settings of sleep that a source lists is "0", and at least one is listed.
bool isKeptAwake(const QList<PowerSource>& sources);
/// The sources on which the Mac or its disks may sleep: one of the three settings that they list isn't "0". The mains first: a Mac on
/// a stage hangs there.
QStringList sourcesThatSleep(const QList<PowerSource>& sources);

} // namespace quorvane
