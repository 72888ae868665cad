#include "snapshots/SystemSnapshot.h"

#include "core/Json.h"

namespace quorvane {

namespace {

struct PowerField {
    const char* jsonKey;
    std::optional<QString> SystemSnapshot::*value;
};

constexpr std::array<PowerField, 4> kPowerFields{{{"pmsetStandby", &SystemSnapshot::pmsetStandby},
                                                  {"pmsetDisksleep", &SystemSnapshot::pmsetDisksleep},
                                                  {"pmsetSleep", &SystemSnapshot::pmsetSleep},
                                                  {"pmsetSms", &SystemSnapshot::pmsetSms}}};

} // namespace

const std::array<SnapshotPreference, 14>& snapshotPreferences() {
    using S = SystemSnapshot;
    static constexpr std::array<SnapshotPreference, 14> preferences{{
        {"appNapDisabled", &S::appNapDisabled, u"NSGlobalDomain", u"NSAppSleepDisabled"},
        {"abletonAppNapDisabled", &S::abletonAppNapDisabled, u"com.ableton.live", u"NSAppSleepDisabled"},
        {"automaticDownload", &S::automaticDownload, u"com.apple.SoftwareUpdate", u"AutomaticDownload"},
        {"automaticCheckEnabled", &S::automaticCheckEnabled, u"com.apple.SoftwareUpdate", u"AutomaticCheckEnabled"},
        {"commerceAutoUpdate", &S::commerceAutoUpdate, u"com.apple.commerce", u"AutoUpdate"},
        {"doNotDisturb", &S::doNotDisturb, {}, u"doNotDisturb"},
        {"siriStatus", &S::siriStatus, u"com.apple.Siri", u"Status"},
        {"assistantEnabled", &S::assistantEnabled, u"com.apple.assistant.support", u"Assistant Enabled"},
        {"crashReporterDialogType", &S::crashReporterDialogType, u"com.apple.CrashReporter", u"DialogType"},
        {"uiSoundsEnabled", &S::uiSoundsEnabled, u"com.apple.systemsound", u"com.apple.sound.uiaudio.enabled"},
        {"disableAirDrop", &S::disableAirDrop, u"com.apple.NetworkBrowser", u"DisableAirDrop"},
        {"talLogoutSavesState", &S::talLogoutSavesState, u"com.apple.loginwindow", u"TALLogoutSavesState"},
        {"loginwindowLaunchesRelaunchApps", &S::loginwindowLaunchesRelaunchApps, u"com.apple.loginwindow",
         u"LoginwindowLaunchesRelaunchApps"},
        {"quitAlwaysKeepsWindows", &S::quitAlwaysKeepsWindows, u"NSGlobalDomain", u"NSQuitAlwaysKeepsWindows"},
    }};
    return preferences;
}

Json encodeJson(const LoginItemSnapshot& item) {
    Json object = Json::object();
    appendMember(object, "name", encodeJson(item.name));
    appendMember(object, "path", encodeJson(item.path));
    appendMember(object, "hidden", encodeJson(item.hidden));
    return object;
}

void decodeJson(const Json& json, LoginItemSnapshot& item) {
    item.name = requiredMember<QString>(json, "name");
    item.path = requiredMember<QString>(json, "path");
    item.hidden = requiredMember<bool>(json, "hidden");
}

Json encodeJson(const SystemSnapshot& snapshot) {
    Json object = Json::object();
    appendMember(object, "id", encodeJson(snapshot.id));
    appendMember(object, "dateCreated", encodeJson(snapshot.dateCreated));
    appendOptionalMember(object, "label", snapshot.label);
    for (const SnapshotPreference& preference : snapshotPreferences()) {
        appendOptionalMember(object, preference.jsonKey, snapshot.*preference.value);
    }
    for (const PowerField& field : kPowerFields) {
        appendOptionalMember(object, field.jsonKey, snapshot.*field.value);
    }
    appendOptionalMember(object, "timeMachineEnabled", snapshot.timeMachineEnabled);
    appendOptionalMember(object, "spotlightIndexingEnabled", snapshot.spotlightIndexingEnabled);
    appendOptionalMember(object, "networkServicesEnabled", snapshot.networkServicesEnabled);
    appendOptionalMember(object, "loginItems", snapshot.loginItems);
    return object;
}

void decodeJson(const Json& json, SystemSnapshot& snapshot) {
    snapshot.id = requiredMember<QUuid>(json, "id");
    snapshot.dateCreated = requiredMember<QDateTime>(json, "dateCreated");
    snapshot.label = optionalMember<QString>(json, "label");
    for (const SnapshotPreference& preference : snapshotPreferences()) {
        snapshot.*preference.value = optionalMember<QString>(json, preference.jsonKey);
    }
    for (const PowerField& field : kPowerFields) {
        snapshot.*field.value = optionalMember<QString>(json, field.jsonKey);
    }
    snapshot.timeMachineEnabled = optionalMember<bool>(json, "timeMachineEnabled");
    snapshot.spotlightIndexingEnabled = optionalMember<bool>(json, "spotlightIndexingEnabled");
    snapshot.networkServicesEnabled = optionalMember<QMap<QString, bool>>(json, "networkServicesEnabled");
    snapshot.loginItems = optionalMember<QList<LoginItemSnapshot>>(json, "loginItems");
}

} // namespace quorvane
