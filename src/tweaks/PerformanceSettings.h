#pragma once

#include "core/JsonForward.h"

#include <QMap>
#include <QString>
#include <QStringList>

#include <span>

namespace quorvane {

/// A selection of performance tweaks. True: the optimisation is to be in force.
struct PerformanceSettings {
    bool appNap = false;                ///< App Nap is bypassed
    bool spotlight = false;             ///< Spotlight indexing is off
    bool usbPower = false;              ///< the machine and the disks don't sleep
    bool timeMachine = false;           ///< Time Machine is off
    bool updates = false;               ///< automatic updates are off
    bool uiSounds = false;              ///< interface sounds are off
    bool notifications = false;         ///< notifications are suppressed
    bool airdrop = false;               ///< AirDrop is off
    bool siri = false;                  ///< Siri is off
    bool sms = false;                   ///< the sudden motion sensor is off
    bool crashReporter = false;         ///< crash reporter dialogs are off
    bool cleanReboot = false;           ///< no apps or windows reopen after a restart; the startup list is enforced
    QMap<QString, QString> customIcons; ///< by tweak key: the icon name that the user chose

    bool operator==(const PerformanceSettings&) const = default;

    /// Every tweak but the clean reboot.
    static const PerformanceSettings& fullSelection();
};

/// One of the twelve booleans and its key in a file.
struct TweakField {
    const char* key;
    bool PerformanceSettings::*isSelected;
    bool isRequired; ///< false: files written before the tweak existed lack it
};

/// The twelve booleans in the order of the record and of the file.
std::span<const TweakField> tweakFields();

/// The titles of the selected tweaks, in the order of the catalogue.
QStringList selectedTweakTitles(const PerformanceSettings& settings);

/// How many of the twelve booleans are true.
int selectedTweakCount(const PerformanceSettings& settings);

Json encodeJson(const PerformanceSettings& settings);
/// Other keys are ignored. Throws DecodingError.
void decodeJson(const Json& json, PerformanceSettings& settings);

} // namespace quorvane
