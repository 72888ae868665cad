#pragma once

#include "core/JsonForward.h"
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

/// The user's own values of everything that a profile can change and the way back can restore.
///
/// Preferences and power settings are the text that their tool printed, trimmed: the preference's type isn't known from it.
/// None means that the setting had no value (or that the tool failed), and tells a restore to delete the key; that is not
/// the same as the text "0".
struct SystemSnapshot {
    QUuid id;
    QDateTime dateCreated; ///< in files at whole seconds
    std::optional<QString> label;

    std::optional<QString> appNapDisabled;
    std::optional<QString> abletonAppNapDisabled;
    std::optional<QString> automaticDownload;
    std::optional<QString> automaticCheckEnabled;
    std::optional<QString> commerceAutoUpdate;
    std::optional<QString> doNotDisturb;
    std::optional<QString> siriStatus;
    std::optional<QString> assistantEnabled;
    std::optional<QString> crashReporterDialogType;
    std::optional<QString> uiSoundsEnabled;
    std::optional<QString> disableAirDrop;
    std::optional<QString> talLogoutSavesState;
    std::optional<QString> loginwindowLaunchesRelaunchApps;
    std::optional<QString> quitAlwaysKeepsWindows;

    std::optional<QString> pmsetStandby;
    std::optional<QString> pmsetDisksleep;
    std::optional<QString> pmsetSleep;
    std::optional<QString> pmsetSms;

    /// Whether automatic backups were made; none where they weren't set up or couldn't be read.
    std::optional<bool> timeMachineEnabled;
    std::optional<bool> spotlightIndexingEnabled;
    std::optional<QMap<QString, bool>> networkServicesEnabled; ///< by the services' names; none when none was found
    std::optional<QList<LoginItemSnapshot>> loginItems;        ///< in the order of System Events

    bool operator==(const SystemSnapshot&) const = default;
};

/// A preference as a snapshot keeps it: where it stands in the record and in its file.
struct SnapshotPreference : MacPreference {
    const char* jsonKey = nullptr;
    std::optional<QString> SystemSnapshot::*value = nullptr;
};

/// Every preference that a tweak changes, in the order in which they are read and stand in the file.
const std::array<SnapshotPreference, kMacPreferences.size()>& snapshotPreferences();

Json encodeJson(const LoginItemSnapshot& item);
/// All three fields are required. Throws DecodingError.
void decodeJson(const Json& json, LoginItemSnapshot& item);

/// Optional fields that are none are left out.
Json encodeJson(const SystemSnapshot& snapshot);
/// Reads a snapshot of any version by its required keys, "id" and "dateCreated"; absent fields are none. An earlier version
/// wrote that Time Machine is off where just no backup was running: that is none as well. Throws DecodingError.
void decodeJson(const Json& json, SystemSnapshot& snapshot);

} // namespace quorvane
