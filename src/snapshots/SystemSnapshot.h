#pragma once

#include "core/JsonForward.h"
#include "readings/ExportedPreferences.h"
#include "readings/PowerSettings.h"
#include "tweaks/TweakPreferences.h"

#include <QDateTime>
#include <QList>
#include <QMap>
#include <QString>
#include <QUuid>

#include <array>
#include <optional>

namespace quorvane {

/// A login item as it was captured.
struct LoginItemSnapshot {
    QString name;
    QString path;
    bool hidden = false;

    bool operator==(const LoginItemSnapshot&) const = default;
};

/// What was found of a preference when it was read: a value, or that the key isn't set.
struct CapturedValue {
    std::optional<QString> value; ///< as the tool printed it, trimmed

    bool operator==(const CapturedValue&) const = default;
};

/// The user's own values of everything that a profile can change and the way back can restore.
///
/// Preferences and power settings are the text that their tool printed, trimmed; of a preference that was set its value with its type
/// stands beside it, where that could be read.
/// None means that the setting had no value (or that the tool failed), and tells a restore to delete the key; that is not
/// the same as the text "0". Of what the first version of the file didn't know, none means that it wasn't captured.
struct SystemSnapshot {
    QUuid id;
    QDateTime dateCreated; ///< in files at whole seconds
    std::optional<QString> label;

    std::optional<QString> appNapDisabled;
    std::optional<QString> abletonAppNapDisabled;
    std::optional<QString> automaticDownload;
    std::optional<QString> automaticCheckEnabled;
    std::optional<QString> commerceAutoUpdate;
    std::optional<CapturedValue> systemAutomaticDownload;
    std::optional<CapturedValue> systemAutomaticInstall;
    std::optional<CapturedValue> systemStoreAutoUpdate;
    std::optional<QString> doNotDisturb;
    std::optional<QString> siriStatus;
    std::optional<QString> assistantEnabled;
    std::optional<QString> crashReporterDialogType;
    std::optional<QString> uiSoundsEnabled;
    std::optional<CapturedValue> interfaceSoundsEnabled;
    std::optional<QString> disableAirDrop;
    std::optional<QString> talLogoutSavesState;
    std::optional<QString> loginwindowLaunchesRelaunchApps;
    std::optional<QString> quitAlwaysKeepsWindows;
    std::optional<TypedValues> typedPreferences; ///< the same, by their places

    // Of the first source that lists them.
    std::optional<QString> pmsetStandby;
    std::optional<QString> pmsetDisksleep;
    std::optional<QString> pmsetSleep;
    std::optional<QString> pmsetSms;
    std::optional<QMap<QString, PowerSettings>> powerBySource; ///< by the sources' names

    /// Whether automatic backups were made; none where they weren't set up or couldn't be read.
    std::optional<bool> timeMachineEnabled;
    std::optional<bool> spotlightIndexingEnabled; ///< of the user's files
    /// By the volumes' paths, each "on", "off" or "search off"; one in another state is left out.
    std::optional<QMap<QString, QString>> spotlightByVolume;
    std::optional<QMap<QString, bool>> networkServicesEnabled; ///< by the services' names; none when none was found
    std::optional<QList<LoginItemSnapshot>> loginItems;        ///< in the order of System Events

    bool operator==(const SystemSnapshot&) const = default;
};

/// A preference as a snapshot keeps it: where it stands in the record and in its file.
struct SnapshotPreference : MacPreference {
    const char* jsonKey = nullptr;
    std::optional<QString> SystemSnapshot::*text = nullptr;           ///< of those that every version has captured
    std::optional<CapturedValue> SystemSnapshot::*captured = nullptr; ///< of the others

    /// None where it wasn't captured.
    std::optional<CapturedValue> in(const SystemSnapshot& snapshot) const;
    /// None where it wasn't set, or its type isn't known.
    std::optional<TypedValue> typedIn(const SystemSnapshot& snapshot) const;
    /// @param value  none where the key isn't set
    void put(const std::optional<QString>& value, SystemSnapshot& snapshot) const;
};

/// Every preference that a tweak changes, in the order in which they are read and stand in the file.
const std::array<SnapshotPreference, kMacPreferences.size()>& snapshotPreferences();

/// {"value": "1"}, or {} where the key wasn't set.
Json encodeJson(const CapturedValue& captured);
/// Throws DecodingError.
void decodeJson(const Json& json, CapturedValue& captured);

/// Settings that a source doesn't have are left out.
Json encodeJson(const PowerSettings& settings);
/// Throws DecodingError.
void decodeJson(const Json& json, PowerSettings& settings);

Json encodeJson(const LoginItemSnapshot& item);
/// All three fields are required. Throws DecodingError.
void decodeJson(const Json& json, LoginItemSnapshot& item);

/// By their places, each as its XML.
Json encodeJson(const TypedValues& values);
/// What isn't the XML of a value is left out, and comes back by its text then. Throws DecodingError.
void decodeJson(const Json& json, TypedValues& values);

/// Optional fields that are none are left out.
Json encodeJson(const SystemSnapshot& snapshot);
/// Reads a snapshot of any version by its required keys, "id" and "dateCreated"; absent fields are none. An earlier version
/// wrote that Time Machine is off where just no backup was running: that is none as well. Throws DecodingError.
void decodeJson(const Json& json, SystemSnapshot& snapshot);

} // namespace quorvane
